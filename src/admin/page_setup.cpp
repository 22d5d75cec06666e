#include "admin/page_setup.h"

#include "core/config.h"

#include <QHostInfo>

#include <cmath>

namespace {
constexpr double MmPerInch = 25.4;

QString valueName(SetPageSetup::PageValue name)
{
    switch (name) {
    case SetPageSetup::Footer: return QStringLiteral("footer");
    case SetPageSetup::Header: return QStringLiteral("header");
    case SetPageSetup::MarginTop: return QStringLiteral("margin_top");
    case SetPageSetup::MarginBottom: return QStringLiteral("margin_bottom");
    case SetPageSetup::MarginLeft: return QStringLiteral("margin_left");
    case SetPageSetup::MarginRight: return QStringLiteral("margin_right");
    }
    return QString();
}

QString orDefaultHost(const QString &host)
{
    const QString h = host.trimmed();
    return h.isEmpty() ? QString::fromLatin1(DefaultMailHost) : h;
}

// A decimal text with either separator; ok false for anything else.
double decimal(const QString &text, bool *ok)
{
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    return t.toDouble(ok);
}
} // namespace

QString SetPageSetup::SetPagesSetup(PageValue name, QString &value) const
{
    value = GetSetting(QLatin1String(PageSetupKey), valueName(name));
    if (value.isEmpty() && name != Footer && name != Header)
        value = QString::fromLatin1(DefaultMargin);
    return value;
}

QString SetPageSetup::GetSMTPSetup() const
{
    return orDefaultHost(GetSetting(QStringLiteral("Mail"), QStringLiteral("SMTP Server")));
}

void SetPageSetup::SavePagesSetup(const QString &header, const QString &footer, const QString &top,
                                  const QString &bottom, const QString &left, const QString &right) const
{
    const QString key = QString::fromLatin1(PageSetupKey);
    WriteRegistry(key, valueName(Header), header);
    WriteRegistry(key, valueName(Footer), footer);
    WriteRegistry(key, valueName(MarginTop), top);
    WriteRegistry(key, valueName(MarginBottom), bottom);
    WriteRegistry(key, valueName(MarginLeft), left);
    WriteRegistry(key, valueName(MarginRight), right);
}

QString SetPageSetup::GetSMTPSetup2() const { return orDefaultHost(qEnvironmentVariable("USERDNSDOMAIN")); }

QString SetPageSetup::GetSMTPSetup3() const { return orDefaultHost(QHostInfo::localDomainName()); }

QString SetPageSetup::GetSMTPSetup4() const { return GetSMTPSetup3(); }

void SetPageSetup::WriteRegistry(const QString &key, const QString &name, const QString &value) const
{
    SaveSetting(key, name, value);
}

PageSetupValues ReadPageSetup()
{
    const SetPageSetup setup;
    PageSetupValues v;
    QString text;
    v.header = setup.SetPagesSetup(SetPageSetup::Header, text);
    v.footer = setup.SetPagesSetup(SetPageSetup::Footer, text);
    v.top = MarginInches(setup.SetPagesSetup(SetPageSetup::MarginTop, text));
    v.bottom = MarginInches(setup.SetPagesSetup(SetPageSetup::MarginBottom, text));
    v.left = MarginInches(setup.SetPagesSetup(SetPageSetup::MarginLeft, text));
    v.right = MarginInches(setup.SetPagesSetup(SetPageSetup::MarginRight, text));
    return v;
}

double MarginInches(const QString &stored)
{
    bool ok = false;
    const double inches = decimal(stored, &ok);
    if (ok && inches >= 0 && inches <= MaxMarginMm / MmPerInch)
        return inches;
    return decimal(QString::fromLatin1(DefaultMargin), &ok);
}

QString MillimetresText(double inches)
{
    QString text = QString::number(std::round(inches * MmPerInch * 100) / 100, 'f', 2);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.replace(QLatin1Char('.'), QLatin1Char(','));
}

bool InchesText(const QString &millimetreText, QString *inchText)
{
    bool ok = false;
    const double mm = decimal(millimetreText, &ok);
    if (!ok || mm < 0 || mm > MaxMarginMm)
        return false;
    *inchText = QString::number(mm / MmPerInch, 'f', 5).replace(QLatin1Char('.'), QLatin1Char(','));
    return true;
}

QString MarginTyped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            result += c;
        else if (c == QLatin1Char('.') || c == QLatin1Char(','))
            result += QLatin1Char(',');
    }
    return result;
}

QString MarginFinished(const QString &text) { return text.isEmpty() ? QStringLiteral("0") : text; }
