#include "import/importsouboru.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/number.h"
#include "core/text.h"
#include "grants/amount.h"
#include "grants/filter.h"
#include "import/bulkinsert.h"
#include "import/linereader.h"
#include "import/pozice.h"
#include "import/rozdelsoubor.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlQuery>

#include <algorithm>
#include <cmath>
#include <optional>
#include <array>

namespace {
constexpr int ProgressEvery = 15;     // records between two reports of progress

const QString ErrorMark = QStringLiteral("  Error !");
const QString FindErrorMark = QStringLiteral("   Find error !   ");
const char *const SettingsSection = "Ver 2.4.1";

struct Target {
    const char *table;
    QStringList columns;
    QString insert() const
    {
        return QStringLiteral("INSERT INTO ") + QLatin1String(table) + QStringLiteral(" (") + columns.join(QLatin1Char(','))
               + QLatin1Char(')');
    }
};
const Target &TargetOf(short mode)
{
    static const Target ucty{"memImport", {"UCET", "NAZEV", "`GRANT`", "CASTKA"}};
    static const Target pohyby{"ImportUctyCastky",
                               {"Datum", "Doklad", "`Text`", "Castka", "Ucet", "`Grant`", "NazevUctu", "`MD/DAL`"}};
    static const Target rozpocet{"RozpocetFakt", {"Castka", "`Grant`", "NazevUctu", "Ucet", "`Text`"}};
    return mode == ImportUcty ? ucty : mode == ImportPohyby ? pohyby : rozpocet;
}

// A cost centre or account field as the rows keep it: normalised when it is a number.
QString NumberOrError(QString field)
{
    return IsNumberText(field) ? field : ErrorMark;
}

// Mode 1 keeps the grant as the number's own text: "0012" gives "12".
QString GrantFromNumber(QString field)
{
    if (!IsNumberText(field))
        return ErrorMark;
    const double value = ScanNumber(field.remove(QChar(0xA0)));
    if (value == std::floor(value) && std::fabs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', 15);
}

bool IsMarked(const QString &value, const QString &mark) { return value.trimmed() == mark.trimmed(); }

QString Cut(const QString &text, int width) { return text.left(width).leftJustified(width); }

int CountRows(DbConnection &conn, const char *table)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table)) || !q.next())
        return -1;
    return q.value(0).toInt();
}

QString FileTime(const QString &fileName)
{
    return QFileInfo(fileName).lastModified().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
}
} // namespace

// --- pieces -------------------------------------------------------------------------------

QStringList PrefixList(const QStringList &filters, const QString &extraFilter)
{
    QStringList prefixes;
    for (const QString &filter : filters)
        prefixes << FilterItems(filter);
    if (!extraFilter.trimmed().isEmpty())
        prefixes << FilterItems(extraFilter);
    return prefixes;
}

bool LoadPrefixList(DbConnection &conn, const QString &extraFilter, QStringList *prefixes)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT Ucet FROM SkupUctu ORDER BY id")))
        return false;
    QStringList filters;
    while (q.next())
        filters << q.value(0).toString();
    *prefixes = PrefixList(filters, extraFilter);
    return true;
}

bool UcetVeFiltru(const QString &account, const QStringList &prefixes)
{
    if (account.isEmpty())
        return false;
    for (const QString &prefix : prefixes) {
        const qsizetype n = std::min(account.size(), prefix.size());
        if (QStringView(account).left(n) == QStringView(prefix).left(n))
            return true;
    }
    return false;
}

QString FormatCastky(const QString &text)
{
    QString amount = text;
    amount.replace(QLatin1Char(','), QLatin1Char('.'));
    if (!amount.isEmpty()) {
        QString copy = amount;
        if (!IsNumberText(copy))
            return FindErrorMark;
    }
    // The stored form of every amount, behind the two blanks of the import's rows.
    return QStringLiteral("  ") + FormatAmount(amount);
}

QString DropLeadingZeros(const QString &grant)
{
    qsizetype i = 0;
    while (i < grant.size() && grant.at(i) == QLatin1Char('0'))
        ++i;
    const QString rest = grant.mid(i);
    return rest.trimmed().isEmpty() ? QStringLiteral("0") : rest;
}

bool IsDataRecord(const QString &record)
{
    const qsizetype tab = record.indexOf(QLatin1Char('\t'));
    const QStringView first = QStringView(record).left(tab < 0 ? record.size() : tab);
    return !first.isEmpty() && first.back() >= QLatin1Char('0') && first.back() <= QLatin1Char('9');
}

QDate ParseImportDate(const QString &text)
{
    static const QRegularExpression czech(QStringLiteral("^\\s*(\\d{1,2})\\.(\\d{1,2})\\.(\\d{4})\\s*$"));
    static const QRegularExpression iso(QStringLiteral("^\\s*(\\d{4})-(\\d{1,2})-(\\d{1,2})\\s*$"));
    const QString t = text.left(10);
    QRegularExpressionMatch m = czech.match(t);
    if (m.hasMatch())
        return QDate(m.captured(3).toInt(), m.captured(2).toInt(), m.captured(1).toInt());
    m = iso.match(t);
    if (m.hasMatch())
        return QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    return QDate();
}

QString ErrorLineImport(int number, const QString &ucet, const QString &doklad, const QString &datum,
                        const QString &nazev, const QString &castka, const QString &side)
{
    return (QString::number(number) + QLatin1Char('.')).leftJustified(5) + QLatin1Char('\t') + QStringLiteral(" Účet : ")
           + ucet + QLatin1Char('\t') + QStringLiteral("dokl.: ") + doklad.leftJustified(20) + QLatin1Char('\t')
           + QStringLiteral(" dne : ") + datum + QLatin1Char('\t') + Cut(nazev, 40) + QLatin1Char('\t')
           + QStringLiteral("Částka : ") + castka.leftJustified(15) + QLatin1Char('\t') + side;
}

int DeletePeriod(DbConnection &conn, const QString &side, const QDate &from, const QDate &to)
{
    // Dates are text "dd.mm.yyyy"; compared as yyyymmdd so that no conversion can fail.
    QSqlQuery q = conn.query();
    if (!conn.exec(q,
                   QStringLiteral("DELETE FROM ImportUctyCastky WHERE UPPER(`MD/DAL`) = UPPER(?) "
                                  "AND Datum REGEXP '^[0-9]{2}[.][0-9]{2}[.][0-9]{4}' "
                                  "AND CONCAT(SUBSTRING(Datum, 7, 4), SUBSTRING(Datum, 4, 2), SUBSTRING(Datum, 1, 2)) "
                                  "BETWEEN ? AND ?"),
                   {side, from.toString(QStringLiteral("yyyyMMdd")), to.toString(QStringLiteral("yyyyMMdd"))}))
        return -1;
    return q.numRowsAffected();
}

bool IsRepeatedFile(const QString &fileName, RepeatKeys keys)
{
    const QString length = GetSetting(QLatin1String(SettingsSection), QLatin1String(keys.length));
    if (length.isEmpty())
        return false;
    const QFileInfo info(fileName);
    return length == QString::number(info.size())
           || GetSetting(QLatin1String(SettingsSection), QLatin1String(keys.time)) == FileTime(fileName);
}

void RememberFile(const QString &fileName, RepeatKeys keys)
{
    SaveSetting(QLatin1String(SettingsSection), QLatin1String(keys.length), QString::number(QFileInfo(fileName).size()));
    SaveSetting(QLatin1String(SettingsSection), QLatin1String(keys.time), FileTime(fileName));
}

bool SumPoskytnute(DbConnection &conn, const QString &filter)
{
    Transaction tx(conn);
    QSqlQuery grants = conn.query();
    if (!conn.exec(grants, QStringLiteral("SELECT DISTINCT _grant FROM GrantyPlan ORDER BY _grant")))
        return false;
    while (grants.next()) {
        const QString grant = grants.value(0).toString();
        const Criterion c = BuildCriterion(CriterionForm::Budget, filter, grant);
        QSqlQuery rows = conn.query();
        if (!conn.exec(rows, QStringLiteral("SELECT Castka, `Text` FROM RozpocetFakt")
                                 + (c.isEmpty() ? QString() : QStringLiteral(" WHERE ") + c.where),
                       c.values))
            return false;
        double sum = 0;
        while (rows.next())
            if (rows.value(1).toString().trimmed() == QLatin1String("CZK"))
                sum += AmountValue(rows.value(0).toString());
        if (!conn.exec(QStringLiteral("UPDATE GrantyPlan SET Poskytnute = ? WHERE _grant = ?"), {FormatAmount(sum), grant}))
            return false;
    }
    return tx.commit();
}

// --- the reader --------------------------------------------------------------------------

namespace {
class Reader {
public:
    Reader(DbConnection &conn, const ImportRequest &rq) : m_conn(conn), m_rq(rq), m_rows(conn, TargetOf(rq.mode).insert(), int(TargetOf(rq.mode).columns.size()))
    {
    }

    ImportResult run();

private:
    bool refuse(const QString &text, int style = MsgWarning, const QString &title = QStringLiteral("Import"))
    {
        m_result.failure = text;
        MsgBox(text, style, title);
        return false;
    }
    bool dbFailed(const QString &error)
    {
        return refuse(QStringLiteral("Import se nezdařil, data zůstala beze změny.\n") + error, MsgCritical);
    }
    bool prepare();
    bool readChunks();
    bool record(const QString &line);
    bool recordUcty(const QStringList &f);
    bool recordPohyb(const QStringList &f);
    bool recordRozpocet(const QStringList &f);
    bool report();

    DbConnection &m_conn;
    const ImportRequest &m_rq;
    BulkInsert m_rows;
    ImportResult m_result;
    QStringList m_prefixes;
    std::array<short, 10> m_pos{};
    QDate m_from, m_to;
    QSet<QString> m_seen;
    int m_rowsBefore = 0;
    double m_percent = 0;
    QString m_chunkTime;
};

bool Reader::prepare()
{
    if (!LoadPrefixList(m_conn, m_rq.extraFilter, &m_prefixes))
        return dbFailed(m_conn.errorText());
    if (m_rq.mode != ImportRozpocet && m_prefixes.isEmpty())
        return refuse(QStringLiteral("Není nadefinovaná žádna skupina účtů. Vytvořte filtry dle skupin účtu a opakujte volbu!"));
    if (m_rq.mode != ImportUcty) {
        const bool movements = m_rq.mode == ImportPohyby;
        const QVector<PoziceRadek> &rows = PoziceRadky(movements ? PoziceMD_DAL : PoziceUcty);
        for (qsizetype i = 0; i < rows.size(); ++i) {
            // The column number is under the key without "N_" for movements, with it for accounts.
            m_pos[size_t(i)] = PoziceVPameti(ReadPozice(movements ? PoziceMD_DAL : PoziceUcty, rows[i].keyCod));
            if (m_pos[size_t(i)] < 0)
                return refuse(QStringLiteral("Není definovaná pozice TAB pro import! Nelze pokračovat v importu dat."),
                              MsgQuestionOkCancel);
        }
    }
    if (!m_rq.dateFrom.trimmed().isEmpty()) {
        m_from = ParseImportDate(m_rq.dateFrom);
        m_to = ParseImportDate(m_rq.dateTo);
        if (!m_from.isValid() || !m_to.isValid())
            return refuse(QStringLiteral("Špatný formát datumu."));
    }
    if (!QFileInfo(m_rq.fileName).isFile())
        return refuse(QStringLiteral("Importní soubor neexistuje..."));
    return true;
}

bool Reader::report()
{
    if (!m_rq.progress)
        return true;
    ImportProgress p;
    p.percent = int(std::min(100.0, m_percent));
    p.rows = m_rowsBefore + m_rows.count();
    p.record = m_result.lines ? int(m_percent * m_result.lines / 100) : 0;
    p.chunkTime = m_chunkTime;
    if (m_rq.progress(p))
        return true;
    m_result.cancelled = true;
    return refuse(QStringLiteral("Import byl přerušen, data zůstala beze změny."), MsgInformation);
}

ImportResult Reader::run()
{
    if (m_rq.fileName.isEmpty()) {
        m_result.ok = true;
        return m_result;
    }
    if (!prepare())
        return m_result;
    m_result.lines = RozdelSoubor(m_rq.fileName);
    if (m_result.lines == 0 && !QFileInfo(m_rq.fileName).isFile()) {
        refuse(QStringLiteral("Importní soubor neexistuje..."));
        return m_result;
    }

    Transaction tx(m_conn);
    if (!tx.active()) {
        dbFailed(DbErrorMessage(m_conn.db().lastError()));
        return m_result;
    }
    if (m_rq.emptyTarget) {
        static const QList<const char *> ucty{"memImport", "grant_devize_1", "grant_devize_2", "grant_devize_3", "granttabl_main"};
        static const QList<const char *> rozpocet{"RozpocetFakt"};
        for (const char *table : m_rq.mode == ImportUcty ? ucty : m_rq.mode == ImportRozpocet ? rozpocet : QList<const char *>())
            if (!m_conn.exec(QStringLiteral("DELETE FROM ") + QLatin1String(table))) {
                dbFailed(m_conn.errorText());
                return m_result;
            }
    }
    if (m_rq.replacePeriod && m_rq.mode == ImportPohyby && m_from.isValid()) {
        m_result.deleted = DeletePeriod(m_conn, m_rq.side, m_from, m_to);
        if (m_result.deleted < 0) {
            dbFailed(m_conn.errorText());
            return m_result;
        }
    }
    m_rowsBefore = CountRows(m_conn, TargetOf(m_rq.mode).table);
    if (m_rowsBefore < 0 || !report()) {
        if (!m_result.cancelled)
            dbFailed(m_conn.errorText());
        return m_result;
    }
    if (!readChunks())
        return m_result;
    if (!m_rows.flush()) {
        dbFailed(m_rows.error());
        return m_result;
    }
    if (!tx.commit()) {
        dbFailed(DbErrorMessage(m_conn.db().lastError()));
        return m_result;
    }
    m_result.stored = m_rows.count();
    m_percent = 100;
    report();
    m_result.ok = true;
    return m_result;
}

bool Reader::readChunks()
{
    return WalkChunks(
        m_result.lines, ProgressEvery, [this](const QString &line) { return record(line); },
        [this](double percent, const QString &time) {
            m_percent = percent;
            m_chunkTime = time;
            return report();
        });
}

bool Reader::record(const QString &line)
{
    if (!IsDataRecord(line))
        return true;
    ++m_result.dataRecords;
    const int before = m_rows.count();
    const QStringList fields = line.split(QLatin1Char('\t'));
    const bool ok = m_rq.mode == ImportUcty     ? recordUcty(fields)
                    : m_rq.mode == ImportPohyby ? recordPohyb(fields)
                                                : recordRozpocet(fields);
    if (!ok)
        return dbFailed(m_rows.error());
    if (m_rows.count() == before)
        ++m_result.skipped;
    return true;
}

bool Reader::recordUcty(const QStringList &f)
{
    const QString account = f.value(0), name = f.value(1), centre = f.value(2);
    if (!UcetVeFiltru(account, m_prefixes) || m_seen.contains(account.trimmed() + QLatin1Char('~') + centre.trimmed()))
        return true;
    const QString ucet = NumberOrError(account);
    const QString grant = DropLeadingZeros(GrantFromNumber(centre));
    m_seen.insert(ucet.trimmed() + QLatin1Char('~') + grant.trimmed());
    return m_rows.add({ucet, QStringLiteral("  ") + name, grant, QStringLiteral("0,00")});
}

bool Reader::recordPohyb(const QStringList &f)
{
    auto field = [&](int i) { return f.value(m_pos[size_t(i)]); };
    QString datum = field(0).left(10);
    const QDate date = ParseImportDate(datum);
    if (date.isValid())
        datum = date.toString(QStringLiteral("dd.MM.yyyy"));
    if (m_from.isValid() && (!date.isValid() || date < m_from || date > m_to))
        return true;
    const QString doklad = QStringLiteral("  ") + field(1);
    const QString text = field(2);
    struct Side {
        int ucet, grant, nazev;
        const char *property, *stored;
    };
    for (const Side &s : {Side{4, 6, 8, "MD", "MD"}, Side{5, 7, 9, "Dal", "DAL"}}) {
        const QString account = field(s.ucet);
        if (!UcetVeFiltru(account, m_prefixes))
            continue;
        const QString castka = !m_rq.side.isEmpty() && m_rq.side != QLatin1String(s.property) ? QStringLiteral("0,00")
                                                                                                : FormatCastky(field(3));
        const QString ucet = NumberOrError(account);
        const QString grant = DropLeadingZeros(NumberOrError(field(s.grant)));
        const QString nazev = field(s.nazev);
        if (!m_rows.add({datum, doklad, text, castka, ucet, grant, nazev, QLatin1String(s.stored)}))
            return false;
        if (IsMarked(ucet, ErrorMark) || IsMarked(grant, ErrorMark) || IsMarked(castka, FindErrorMark))
            m_result.errors << ErrorLineImport(int(m_result.errors.size()) + 1, ucet, doklad, datum, nazev, castka,
                                               QLatin1String(s.stored));
    }
    return true;
}

bool Reader::recordRozpocet(const QStringList &f)
{
    auto field = [&](int i) { return f.value(m_pos[size_t(i)]); };
    return m_rows.add({FormatCastky(field(3)), DropLeadingZeros(NumberOrError(field(2))), QStringLiteral("  ") + field(1),
                       field(0), field(4)});
}
} // namespace

ImportResult ImportSouboru(DbConnection &conn, const ImportRequest &request)
{
    return Reader(conn, request).run();
}
