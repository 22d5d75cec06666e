#include "orders/objrecord.h"

#include "core/db.h"
#include "core/number.h"
#include "core/text.h"

#include <QRegularExpression>
#include <QSqlRecord>

#include <algorithm>
#include <cmath>

const QStringList &ObjRecordColumns()
{
    static const QStringList columns = [] {
        QStringList c{"CIS_OBJ", "DAT_OBJ", "GRANT", "Firma", "Pobocka", "Adres", "PSC", "Mesto", "Tel", "Fax",
                      "Autor", "Dat_vyriz", "Cis_global", "Castka", "Typ", "Text", "Text1", "Prikazce", "SpravceRozp"};
        for (int i = 1; i <= 10; ++i)
            c << QStringLiteral("LineRec%1").arg(i) << QStringLiteral("Poc%1").arg(i);
        c << "paticka" << "file_paticka";
        return c;
    }();
    return columns;
}

QString ObjRecordLine(const QSqlRecord &row)
{
    QString line;
    for (const QString &column : ObjRecordColumns()) {
        const QVariant v = row.value(column);
        if (!v.isNull())
            line += v.toString();
        line += QLatin1Char('~');
    }
    return line;
}

double AmountOf(const QString &piece)
{
    return ScanNumber(QString(piece).replace(QLatin1Char(','), QLatin1Char('.')));
}

QString ObjDateText(const QString &datObj)
{
    const QDate d = QDate::fromString(datObj.left(10), Qt::ISODate);
    return d.isValid() ? d.toString(QStringLiteral("dd.MM.yyyy")) : DateTwoDigits(datObj);
}

QString FormFontSize(const QString &param)
{
    const QString f = param.trimmed();
    return f.isEmpty() || f == QLatin1String("0") ? QStringLiteral("1") : f;
}

short NextObjCounterFrom(const QStringList &cisObjNumbers)
{
    if (cisObjNumbers.isEmpty())
        return 1;
    const QString last = *std::max_element(cisObjNumbers.begin(), cisObjNumbers.end());
    const double value = ScanNumber(last.section(QLatin1Char('/'), 0, 0));
    // An unreadable piece, or one the 16-bit counter cannot hold, counts as 0.
    if (!(value >= 0 && value < 32767))
        return 1;
    return short(std::floor(value) + 1);
}

bool NextObjCounter(DbConnection &conn, short *counter)
{
    // The last row in text order decides: only that row is read.
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT cis_obj FROM archobj WHERE cis_obj IS NOT NULL "
                                     "ORDER BY cis_obj DESC LIMIT 1")))
        return false;
    QStringList last;
    if (q.next())
        last << q.value(0).toString();
    *counter = NextObjCounterFrom(last);
    return true;
}

QString MakeObjCislo(short counter, const QDate &date)
{
    const QString digits = QString::number(counter);
    return QString(std::max<qsizetype>(0, 4 - digits.size()), QLatin1Char('0')) + digits + QLatin1Char('/')
           + date.toString(QStringLiteral("ddMMyyyy"));
}

bool ReserveObj(DbConnection &conn, const QString &cisObj)
{
    return conn.exec(QStringLiteral("INSERT INTO archobj (cis_obj) VALUES (?);"), {cisObj});
}

// --- the list filter ----------------------------------------------------------------

const QStringList &ObjStatusEntries()
{
    static const QStringList entries{"- Vše -", "Výřizování", "Dodáno", "Vyfakturována", "Zaúčtována"};
    return entries;
}

QString ObjStatusFilterText(int statusIndex)
{
    static const char *const texts[] = {
        "",
        "(castka = '0,00' AND objWF <> '' AND dat_vyriz = '') OR (castka = '0,00##' AND objWF <> '' AND "
        "dat_vyriz = '') OR (castka = '' AND objWF <> '' AND dat_vyriz = '')",
        "(dat_vyriz <> '' AND castka = '0,00##') OR (dat_vyriz <> '' AND castka = '0,00') OR (dat_vyriz <> '' "
        "AND castka = '')",
        "(dat_vyriz <> '' AND objWF <> '' AND (castka <> '' AND castka <> '0,00' AND castka <> '0,00##'))",
        "(objZauct <> '' )",
    };
    if (statusIndex < 1 || statusIndex > 4)
        return QString();
    return QString::fromUtf8(texts[statusIndex]);
}

namespace {
// A status text as SQL: each "column op 'literal'" compared byte for byte (the server's
// collation would take a single blank for the empty text), the literal bound. The compared
// columns have an image of their first nine characters in the table (<column>_f, indexed with
// the colour), which answers a comparison with a literal of up to eight characters as the
// whole text does; so a status list is read from the index alone.
void statusToSql(const QString &text, QString *sql, QVariantList *values)
{
    static const QRegularExpression clause(QStringLiteral("(\\w+) (=|<>) '([^']*)'"));
    static const QStringList imaged{QStringLiteral("castka"), QStringLiteral("objwf"), QStringLiteral("dat_vyriz"),
                                    QStringLiteral("objzauct")};
    qsizetype from = 0;
    for (auto it = clause.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        *sql += text.mid(from, m.capturedStart() - from);
        const QString column = m.captured(1).toLower();
        const bool image = imaged.contains(column) && m.captured(3).size() <= 8;
        *sql += QStringLiteral("BINARY %1 %2 ?").arg(image ? column + QStringLiteral("_f") : m.captured(1), m.captured(2));
        *values << m.captured(3);
        from = m.capturedEnd();
    }
    *sql += text.mid(from);
}
} // namespace

ObjFilter FilterObj(int statusIndex, const QString &statusText, const QString &year, bool pharmacy,
                    const QString &field)
{
    ObjFilter f;
    QString statusSql;
    QVariantList statusValues;
    QString status;
    if (statusIndex >= 1 && statusIndex <= 4) {
        status = ObjStatusFilterText(statusIndex);
        statusToSql(status, &statusSql, &statusValues);
    } else if (statusIndex >= 5 && IsSafeIdentifier(field)) {
        status = QStringLiteral("%1 like '%%2%'").arg(field, statusText);
        statusSql = QStringLiteral("`%1` like ?").arg(field);
        statusValues << QStringLiteral("%") + statusText + QStringLiteral("%");
    }

    if (!year.isEmpty()) {
        f.text = QStringLiteral("dat_obj >= %1-01-01 AND dat_obj <= %1-12-31").arg(year);
        // Dat_obj compares byte for byte by its column's collation, and its index serves this.
        f.sql = QStringLiteral("dat_obj >= ? AND dat_obj <= ?");
        f.values << year + QStringLiteral("-01-01") << year + QStringLiteral("-12-31");
        if (!status.isEmpty()) {
            f.text += QStringLiteral(" AND ") + status;
            f.sql += QStringLiteral(" AND ") + statusSql;
            f.values += statusValues;
        }
    } else if (statusIndex >= 5) {
        // Without a year only a grant entry filters; a status entry is left to the colours.
        f.text = status;
        f.sql = statusSql;
        f.values = statusValues;
    }
    if (pharmacy && !f.text.isEmpty()) {
        f.text.prepend(QStringLiteral("coml=1 AND "));
        f.sql.prepend(QStringLiteral("coml=1 AND "));
    }
    return f;
}

// --- the row colour ----------------------------------------------------------------------

QColor ObjColour(const ObjStateFields &row)
{
    const QString castka = row.castka.trimmed();
    const double p0 = AmountOf(GetField(castka, 0));
    const double p1 = AmountOf(GetField(castka, 1));
    QColor c = ObjColours::White;
    if (!row.castkaNull && !castka.isEmpty() && p0 != 0 && p1 == 0) {
        c = ObjColours::Red;
    } else if (!row.datVyriz.trimmed().isEmpty() && (row.castkaNull || p0 == 0)) {
        c = ObjColours::Green;
    } else if (!row.objWF.trimmed().isEmpty() && (row.castkaNull || p0 == 0)) {
        c = ObjColours::Yellow;
    }
    if (!row.cisGlobal.trimmed().isEmpty() && !row.castkaNull && p1 != 0)
        c = ObjColours::Grey;
    return c;
}

QColor ObjCellColour(const ObjStateFields &row, int column, bool chosen)
{
    if (chosen)
        return ObjColours::Aqua;
    if (row.cisGlobal.trimmed().isEmpty() && column != 0)
        return ObjColours::White;
    return ObjColour(row);
}

bool ObjColourFitsStatus(const QColor &colour, int statusIndex)
{
    switch (statusIndex) {
    case 1: return colour == ObjColours::Yellow;
    case 2: return colour == ObjColours::Green;
    case 3: return colour == ObjColours::Red;
    case 4: return colour == ObjColours::Grey;
    default: return true;
    }
}

// --- pages -------------------------------------------------------------------------------

int ObjPageCount(int rows)
{
    return rows <= 0 ? 0 : (rows + ObjPageRows - 1) / ObjPageRows;
}

int ObjPageStart(int rows, int page)
{
    const int pages = ObjPageCount(rows);
    if (page <= 0 || page > pages)
        page = pages;
    return std::max(0, rows - (pages + 1 - page) * ObjPageRows);
}

// --- the pharmacy ----------------------------------------------------------------------

bool CanToggleHandover(int role)
{
    return role != 3 && role != 5;
}

QString HandoverQuestion(const QString &cisObj, bool handedOver)
{
    if (!handedOver)
        return QStringLiteral("Opravdu chcete objednávku číslo: ") + cisObj + QStringLiteral("\r\n předat do Lékárny?");
    return QStringLiteral("Opravdu chcete zrušyt předání objednávky číslo: ") + cisObj
           + QStringLiteral("\r\n do Lékárny?");
}

bool SetHandover(DbConnection &conn, int nom, bool handedOver)
{
    return conn.exec(QStringLiteral("UPDATE ArchObj SET coml=?  WHERE nom=?"), {handedOver ? 1 : 0, nom});
}

QString ObjCentreCode(DbConnection &sys, const QString &mysqlDb)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT code_stredisko FROM sys_db_kvl WHERE mysql_db = ?"), {mysqlDb}) || !q.next())
        return QString();
    return q.value(0).toString().section(QLatin1Char(','), 0, 0).trimmed();
}

QStringList UserGrantList(const QString &filtrGrant)
{
    QStringList grants;
    DbConnection conn(ConnStrGranty());
    QSqlQuery q = conn.query();
    if (!conn.isOpen() || !conn.exec(q, QStringLiteral("SELECT _grant FROM GrantyPlan ORDER BY _grant")))
        return grants;
    QStringList wanted;
    for (const QString &piece : filtrGrant.split(QLatin1Char(','), Qt::SkipEmptyParts))
        if (piece.trimmed() != QLatin1String("0"))
            wanted << piece.trimmed();
    while (q.next()) {
        const QString g = q.value(0).toString().trimmed();
        if (g.isEmpty())
            continue;
        if (wanted.isEmpty() || std::any_of(wanted.begin(), wanted.end(), [&](const QString &w) { return g.startsWith(w); }))
            grants << g;
    }
    return grants;
}
