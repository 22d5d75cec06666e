#include "import/pozice.h"

#include "core/codepage.h"
#include "core/config.h"
#include "core/msg.h"
#include "core/number.h"
#include "core/text.h"

#include <QFile>

const char *const TextPoziceNedefinovane =
    "Není správně nadefinovaná názvy pole v importním soubore ve funkci Definice TAB, "
    "pokračování v importu není možné!";

QString TextPoleNeexistuje(const QString &heading)
{
    return QStringLiteral("Pole: ") + heading +
           QStringLiteral(" ve sloupcích importního souboru neexistuje, zkontrolujte prosím správnost názvy pole!");
}

const QVector<PoziceRadek> &PoziceRadky(int kind)
{
    static const QVector<PoziceRadek> tab{
        {QStringLiteral("  1. Datum dokumentů"), QStringLiteral("Datum"), QStringLiteral("N_Datum")},
        {QStringLiteral("  2. Číslo dokumentů"), QStringLiteral("Doklad"), QStringLiteral("N_Doklad")},
        {QStringLiteral("  3. Text  dokumentů"), QStringLiteral("Text"), QStringLiteral("N_Text")},
        {QStringLiteral("  4. Částka"), QStringLiteral("Castka"), QStringLiteral("N_Castka")},
        {QStringLiteral("  5. Účet  MD"), QStringLiteral("Ucet MD"), QStringLiteral("N_Ucet MD")},
        {QStringLiteral("  6. Účet  DAL"), QStringLiteral("Ucet DAL"), QStringLiteral("N_Ucet DAL")},
        {QStringLiteral("  7. Středisko  MD"), QStringLiteral("Grant MD"), QStringLiteral("N_Grant MD")},
        {QStringLiteral("  8. Středisko DAL"), QStringLiteral("Grant DAL"), QStringLiteral("N_Grant DAL")},
        {QStringLiteral("  9.  Název účtu MD"), QStringLiteral("Nazev MD"), QStringLiteral("N_Nazev MD")},
        {QStringLiteral("10.  Název účtu DAL"), QStringLiteral("Nazev DAL"), QStringLiteral("N_Nazev DAL")},
    };
    static const QVector<PoziceRadek> tab2{
        {QStringLiteral("  1. Účet"), QStringLiteral("N_Ucet"), QStringLiteral("Ucet")},
        {QStringLiteral("  2. Název účtu"), QStringLiteral("N_Nazev"), QStringLiteral("Nazev")},
        {QStringLiteral("  3. Středisko"), QStringLiteral("N_Stredisko"), QStringLiteral("Stredisko")},
        {QStringLiteral("  4. Stav"), QStringLiteral("N_Stav"), QStringLiteral("Stav")},
        {QStringLiteral("  5. Měna"), QStringLiteral("N_Mena"), QStringLiteral("Mena")},
    };
    return kind == PoziceUcty ? tab2 : tab;
}

QString ReadPozice(int kind, const QString &key)
{
    return kind == PoziceUcty ? GetPoziceTab2(key) : GetPoziceTab(key);
}

bool WritePozice(int kind, const QString &key, const QString &value)
{
    return kind == PoziceUcty ? SetPoziceTab2(key, value) : SetPoziceTab(key, value);
}

bool IsColumnNumberText(const QString &text)
{
    if (text.size() > 2)
        return false;
    for (const QChar c : text)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return true;
}

short PoziceVPameti(const QString &value)
{
    const QString t = value.trimmed();
    if (t.isEmpty())
        return 0;
    // Read as a number the way every number is read; text without one gives -1,
    // which the imports refuse as an undefined position.
    const double n = ScanNumber(t);
    return n >= 0 && n <= 32767 ? short(int(n) - 1) : short(-1);
}

short PocetOddelovacu(const QString &text, const QString &separator)
{
    return CountSep(text, separator);
}

QString ReadHeadLine(const QString &fileName)
{
    constexpr qint64 bufferSize = 1000;
    QFile f(fileName);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    // Only the first record matters, however long or binary the file is.
    QByteArray line = f.readLine(bufferSize + 1);
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    const qsizetype cr = line.indexOf('\r');
    if (cr >= 0)
        line.truncate(cr);
    return FromCp1250(line).replace(QLatin1Char('\t'), QLatin1Char('~'));
}

short ColumnOfHeading(const QString &headLine, const QString &heading)
{
    if (heading.isEmpty())
        return 0;
    const qsizetype at = headLine.indexOf(heading);
    if (at < 0)
        return 0;
    return short(PocetOddelovacu(headLine.left(at), QStringLiteral("~")) + 1);
}

void UlozPozice(int kind, const QVector<QString> &numbers, const QVector<QString> &headings)
{
    const QVector<PoziceRadek> &rows = PoziceRadky(kind);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        WritePozice(kind, rows[i].keyCod, numbers.value(i).trimmed());
        WritePozice(kind, rows[i].keyName, headings.value(i).trimmed());
    }
}

bool PoziceZeVzorku(const QString &fileName, int kind, QVector<QString> &numbers,
                    const QVector<QString> &headings)
{
    const QString head = ReadHeadLine(fileName);
    if (head.isEmpty())
        return false;
    numbers.resize(PoziceRadky(kind).size());
    for (qsizetype i = 0; i < numbers.size(); ++i) {
        const short column = ColumnOfHeading(head, headings.value(i).trimmed());
        if (column > 0)
            numbers[i] = QString::number(column);
    }
    UlozPozice(kind, numbers, headings);
    return true;
}

bool NactiPozice(const QString &fileName, int kind, std::array<short, 10> *positions)
{
    // The currency of the account list is never checked.
    const qsizetype count = kind == PoziceUcty ? 4 : 10;
    const QString head = ReadHeadLine(fileName);
    if (head.isEmpty())
        return false;
    const QVector<PoziceRadek> &rows = PoziceRadky(kind);
    for (qsizetype i = 0; i < count; ++i) {
        const QString heading = ReadPozice(kind, rows[i].keyName).trimmed();
        if (heading.isEmpty()) {
            MsgBox(QString::fromUtf8(TextPoziceNedefinovane), MsgWarning);
            return false;
        }
        const short column = ColumnOfHeading(head, heading);
        if (column == 0) {
            MsgBox(TextPoleNeexistuje(heading), MsgWarning);
            return false;
        }
        if (positions)
            (*positions)[size_t(i)] = column;
    }
    return true;
}
