#include "core/institution.h"

#include "core/config.h"
#include "core/db.h"
#include "core/session.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QStringList>

namespace {
struct Column {
    const char *name;
    const char *defaultValue;   // nullptr: no default
    QString SessionRecord::*field;
};

const Column columns[] = {
    {"Firma", nullptr, &SessionRecord::InstFirma},
    {"Adresa", nullptr, &SessionRecord::InstAdresa},
    {"PSC", "100 00", &SessionRecord::InstPSC},
    {"Mesto", "Lhotka", &SessionRecord::InstMesto},
    {"ICO", "123 456", &SessionRecord::InstICO},
    {"DIC", " ", &SessionRecord::InstDIC},
    {"Cislo uctu", "11111-222/0100", &SessionRecord::InstUcet},
    {"Nazev banky", "Banka Lhotka-město", &SessionRecord::InstBanka},
    {"Cislo uctu_2", "99999-999/0100", &SessionRecord::InstUcet2},
    {"newdate_ucet", nullptr, &SessionRecord::InstNewdateUcet},
};
} // namespace

QString NewdateUcetText(const QDateTime &localNow)
{
    const QDateTime asUtc(localNow.date(), localNow.time(), Qt::UTC);
    return QString::number(asUtc.toSecsSinceEpoch());
}

bool ReadInstitution(DbConnection &sys)
{
    SessionRecord &s = Session();
    for (const Column &c : columns)
        s.*c.field = QString();

    QSqlQuery row = sys.query();
    if (!sys.exec(row, QStringLiteral("SELECT * FROM sys_nastaveni")))
        return false;
    if (!row.next())
        return true;

    QStringList assignments;
    QVariantList values;
    for (const Column &c : columns) {
        // The raw value: a single blank is a valid DIC and must not be trimmed away.
        QString value = row.value(QLatin1String(c.name)).toString();
        QString fallback;
        if (c.defaultValue)
            fallback = QString::fromUtf8(c.defaultValue);
        else if (qstrcmp(c.name, "newdate_ucet") == 0)
            fallback = NewdateUcetText(QDateTime::currentDateTime());
        if (value.isEmpty() && !fallback.isEmpty()) {
            value = fallback;
            assignments << QStringLiteral("`%1`=?").arg(QLatin1String(c.name));
            values << value;
        }
        s.*c.field = value;
    }
    if (assignments.isEmpty())
        return true;
    values << row.value(QStringLiteral("id"));
    return sys.exec(QStringLiteral("UPDATE sys_nastaveni SET %1 WHERE id=?").arg(assignments.join(QStringLiteral(", "))),
                    values);
}

QString ObjBankAccount(const QString &ucet, const QString &ucet2, const QString &newdateUcet, const QDateTime &now)
{
    const double from = newdateUcet.trimmed().toDouble();
    if (from != 0 && NewdateUcetText(now).toDouble() > from && ucet2.trimmed() != QLatin1String("99999-999/0100"))
        return ucet2;
    return ucet.trimmed();
}

ObjPdfLetterhead ReadObjPdfLetterhead()
{
    const SessionRecord &s = Session();
    auto site = [](const char *key) {
        return ClipIniValue(ReadProfileString(QStringLiteral("HLAVICKA"), QLatin1String(key), QString(), 255));
    };
    ObjPdfLetterhead head;
    head.Firma = s.InstFirma.trimmed();
    head.Adresa = s.InstAdresa.trimmed();
    head.PscMesto = (s.InstPSC.trimmed() + QLatin1Char(' ') + s.InstMesto.trimmed()).trimmed();
    head.ICO = s.InstICO.trimmed();
    head.DIC = s.InstDIC.trimmed();
    head.Banka = s.InstBanka.trimmed();
    head.Ucet = ObjBankAccount(s.InstUcet, s.InstUcet2, s.InstNewdateUcet, QDateTime::currentDateTime());
    head.Telefon = site("TELEFON");
    head.Fax = site("FAX");
    head.Email = site("EMAIL");
    head.Web = site("WWW");
    head.NameEn = site("NAZEV-ENG");
    head.AddressEn = site("ADRESA-ENG");
    head.DepartmentEn = site("ODDELENI-ENG");
    if (head.NameEn.isEmpty())
        head.NameEn = head.Firma;
    if (head.AddressEn.isEmpty())
        head.AddressEn = (head.Adresa + QStringLiteral(", ") + head.PscMesto).trimmed();
    return head;
}

namespace {
// The text with blanks added up to each column; a text longer than its column
// is followed by one blank.
QString AtColumns(const std::initializer_list<std::pair<int, QString>> &cells)
{
    QString row;
    for (const auto &[column, value] : cells) {
        if (row.size() < column)
            row += QString(column - row.size(), QLatin1Char(' '));
        else if (!row.isEmpty())
            row += QLatin1Char(' ');
        row += value;
    }
    return row;
}
} // namespace

QStringList LetterheadRows(const ObjPdfLetterhead &head)
{
    return {QStringLiteral("IČO                                                         Bankovní spojení"
                           "                                  Telefon                                Fax"
                           "                                     E-mail"),
            AtColumns({{0, head.ICO}, {57, head.Banka}, {107, head.Telefon}, {141, head.Fax}, {176, head.Email}}),
            AtColumns({{65, head.Ucet}, {205, head.Web}})};
}

bool PictureToFolder(const QByteArray &blob, const QString &name, const QString &folder)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") || QImage::fromData(blob).isNull())
        return false;
    const QString path = QDir(folder).filePath(name);
    if (QFile::exists(path))
        return true;
    QDir().mkpath(folder);
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(blob) == blob.size();
}

QString LogoToTemp(DbConnection &sys, const QString &folder)
{
    const QString name = QStringLiteral("logo_kvl_tmp.bmp");
    QFile::remove(QDir(folder).filePath(name));
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT oleObrazek FROM sys_logo_kvl WHERE typ = 1")) || !q.next())
        return QString();
    return PictureToFolder(q.value(0).toByteArray(), name, folder) ? QDir(folder).filePath(name) : QString();
}
