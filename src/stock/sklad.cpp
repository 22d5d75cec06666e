#include "stock/sklad.h"

#include "core/db.h"
#include "core/schemaupgrade.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {
bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

bool checkTable(const QString &file, QString *error)
{
    if (IsSafeIdentifier(file))
        return true;
    return fail(error, QStringLiteral("Neplatný název tabulky skladu: %1").arg(file.left(80)));
}

QString dbError(DbConnection &c) { return c.errorText(); }

QDate parseDate(const QString &text)
{
    for (const char *format : {"d.M.yyyy", "yyyy-MM-dd"}) {
        const QDate d = QDate::fromString(text.trimmed(), QLatin1String(format));
        if (d.isValid())
            return d;
    }
    return QDate();
}
} // namespace

SkladRef ParseOpenFile(const QString &openFile)
{
    const qsizetype at = openFile.indexOf(QLatin1Char('~'));
    if (at < 0)
        return {openFile, QString()};
    return {openFile.left(at), openFile.mid(at + 1).section(QLatin1Char('~'), 0, 0)};
}

QString NewSkladTableName(const QDateTime &now)
{
    return QStringLiteral("Skl") + now.date().toString(QStringLiteral("d.M.yyyy")).remove(QLatin1Char('.'))
        + now.time().toString(QStringLiteral("H:mm:ss")).remove(QLatin1Char(':'));
}

QStringList CreateSkladStatements(const QString &file)
{
    return {
        QStringLiteral("CREATE TABLE ") + file + QStringLiteral("  AS SELECT * FROM PLASTY"),
        QStringLiteral("TRUNCATE TABLE  ") + file + QStringLiteral(";"),
        QStringLiteral("ALTER TABLE ") + file + QStringLiteral(" DROP `nom`;"),
        QStringLiteral("ALTER TABLE ") + file
            + QStringLiteral(" ADD `nom` INT( 11 ) UNSIGNED NOT NULL AUTO_INCREMENT AFTER `TypBal2` , "
                             "ADD PRIMARY KEY ( `nom` ) ;"),
        QStringLiteral("ALTER TABLE ") + file + QStringLiteral(" ADD ") + SkladKeys().join(QStringLiteral(", ADD ")),
    };
}

const QStringList &SkladKeys()
{
    static const QStringList keys{QStringLiteral("KEY (`Nazev`, `Katal`, `ZKATALOG`)"), QStringLiteral("KEY (`Katal`)"),
                                  QStringLiteral("KEY (`ZKATALOG`)")};
    return keys;
}

bool UpgradeSklady(DbConnection &centre, QStringList *changes, QString *error)
{
    for (const SkladRef &sklad : ListSklady(centre)) {
        if (!IsSafeIdentifier(sklad.file)) {
            changes->append(QStringLiteral("typ: sklad %1 má neplatný název tabulky (%2), vynechán").arg(sklad.typ, sklad.file.left(80)));
            continue;
        }
        if (!UpgradeKeys(centre, sklad.file, SkladKeys(), changes, error))
            return false;
    }
    return true;
}

bool CreateSklad(DbConnection &centre, const QString &name, const QString &file, QString *error)
{
    if (!checkTable(file, error))
        return false;
    if (!centre.exec(QStringLiteral("INSERT INTO typ (Typ, File) VALUES (?, ?)"), {name, file}))
        return fail(error, dbError(centre));
    for (const QString &sql : CreateSkladStatements(file))
        if (!centre.exec(sql))
            return fail(error, QStringLiteral("Sklad se nepodařilo vytvořit (tabulka %1).\n%2").arg(file, dbError(centre)));
    return true;
}

bool RenameSklad(DbConnection &centre, const QString &file, const QString &newName, QString *error)
{
    if (!centre.exec(QStringLiteral("UPDATE typ SET `typ` = ? WHERE `file` = ?"), {newName, file}))
        return fail(error, dbError(centre));
    return true;
}

bool DropSklad(DbConnection &centre, const QString &file, QString *error)
{
    if (!checkTable(file, error))
        return false;
    if (!centre.exec(QStringLiteral("DROP TABLE IF EXISTS ") + file)
        || !centre.exec(QStringLiteral("DELETE FROM typ WHERE `file` = ?"), {file}))
        return fail(error, dbError(centre));
    return true;
}

bool SkladTableExists(DbConnection &centre, const QString &database, const QString &file)
{
    if (!IsSafeIdentifier(database))
        return false;
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SHOW TABLES FROM ") + database))
        return false;
    while (q.next())
        if (q.value(0).toString().compare(file, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

bool RemoveOrphanSklad(DbConnection &centre, const QString &file, QString *error)
{
    if (!centre.exec(QStringLiteral("DELETE FROM typ  WHERE `file` = ?"), {file}))
        return fail(error, dbError(centre));
    return true;
}

QVector<SkladRef> ListSklady(DbConnection &centre)
{
    QVector<SkladRef> list;
    QSqlQuery q = centre.query();
    if (centre.exec(q, QStringLiteral("SELECT Typ, File FROM typ ORDER BY Typ")))
        while (q.next())
            list.push_back({FieldText(q, 0), FieldText(q, 1)});
    return list;
}

// --- items -----------------------------------------------------------------------------

QString YearCondition() { return QStringLiteral("dat_obj >= ? AND dat_obj <= ?"); }

QVariantList YearValues(int year, int lastYear)
{
    const int first = lastYear ? std::min(year, lastYear) : year;
    const int last = std::max(year, lastYear);
    return {QStringLiteral("%1-01-01").arg(first), QStringLiteral("%1-12-31").arg(last)};
}

double ParseQuantity(const QString &text)
{
    const QString t = text.trimmed();
    int marks = 0;
    int digits = 0;
    for (const QChar c : t) {
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            ++digits;
        else if (c == QLatin1Char(',') || c == QLatin1Char('.'))
            ++marks;
        else
            return 0;
    }
    if (digits == 0 || marks > 1 || digits > 12)
        return 0;
    QString n = t;
    return n.replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
}

double MovementPieces(const QString &packages, const QString &pieces)
{
    const double p = ParseQuantity(packages);
    const double s = ParseQuantity(pieces);
    return p * (s == 0 ? 1 : s);
}

quint32 AddItem(DbConnection &centre, const QString &file, const QString &name, const QDate &today, QString *error)
{
    if (!checkTable(file, error))
        return 0;
    const QString blank = QStringLiteral(" ");
    QSqlQuery q = centre.query();
    const bool ok = centre.exec(
        q,
        QStringLiteral("INSERT INTO ") + file
            + QStringLiteral(" (Nazev, Katal, Prijem, Mira, CENA, Mena, DPH, Firma, Poznam, Kus_vy, Mnoz_obj, "
                             "Kus_obj, VYDEJ, KUS_PR, `GRANT`, DAT_OBJ, DAT_VYD, EXPIR, DAT_PRI, TypBal1, TypBal2, "
                             "ZKATALOG) VALUES (?, ?, ?, ?, '0,00', ?, ?, ?, ?, 0, 0, 0, 0, 0, ?, ?, NULL, NULL, ?, ?, "
                             "?, ?)"),
        {name, blank, blank, blank, blank, blank, blank, blank, blank, today, today, blank, blank, blank});
    if (!ok) {
        fail(error, dbError(centre));
        return 0;
    }
    return q.lastInsertId().toUInt();
}

bool SaveItem(DbConnection &centre, const QString &file, quint32 nom, const ItemEdit &edit, QString *error)
{
    if (!checkTable(file, error))
        return false;
    const QDate date = parseDate(edit.datObj);
    if (!date.isValid())
        return fail(error, QStringLiteral("Chybné datum zápisu: %1").arg(edit.datObj.left(40)));
    QString name = edit.nazev;
    name.replace(QLatin1Char('\''), QLatin1Char('`'));
    if (!centre.exec(QStringLiteral("UPDATE ") + file
                         + QStringLiteral(" SET `firma` = ?, `dat_obj` = ?, `nazev` = ?, `katal` = ?, `poznam` = ?, "
                                          "`mira` = ?, `ZKATALOG` = ?, `cena` = ?  WHERE nom=?"),
                     {edit.firma, date, name, edit.katal, edit.poznam, edit.mira, edit.zkatalog, edit.cena, nom}))
        return fail(error, dbError(centre));
    return true;
}

bool ReceiveItem(DbConnection &centre, const QString &file, quint32 nom, const QString &packages,
                 const QString &pieces, QString *error)
{
    if (!checkTable(file, error))
        return false;
    const double amount = MovementPieces(packages, pieces);
    if (amount == 0)
        return true;
    if (!centre.exec(QStringLiteral("UPDATE ") + file
                         + QStringLiteral(" SET KUS_PR = COALESCE(KUS_PR, 0) + ? WHERE nom=?"),
                     {amount, nom}))
        return fail(error, dbError(centre));
    return true;
}

QString IssueText(const QString &packages, const QString &pieces)
{
    return packages + QStringLiteral(" x ") + pieces;
}

bool IssueItem(DbConnection &centre, const QString &file, quint32 nom, const IssueInput &issue, QString *error)
{
    if (!checkTable(file, error))
        return false;
    const QDate date = parseDate(issue.date);
    if (!date.isValid())
        return fail(error, QStringLiteral("Chybné datum výdeje: %1").arg(issue.date.left(40)));
    Transaction transaction(centre);
    if (!centre.exec(QStringLiteral("INSERT INTO CHEM_VYD (NAM_CHIM, KATAL, KOMU, MIRA, DAT_VYD, KUS_VY, sklad) "
                                    "VALUES (?, ?, ?, ?, ?, ?, ?)"),
                     {issue.nazev, issue.katal, issue.komu, issue.mira, date, IssueText(issue.packages, issue.pieces),
                      issue.sklad.isEmpty() ? QVariant() : QVariant(issue.sklad)}))
        return fail(error, dbError(centre));
    const double amount = MovementPieces(issue.packages, issue.pieces);
    if (amount != 0
        && !centre.exec(QStringLiteral("UPDATE ") + file
                            + QStringLiteral(" SET KUS_PR = COALESCE(KUS_PR, 0) - ? WHERE nom=?"),
                        {amount, nom}))
        return fail(error, dbError(centre));
    if (!transaction.commit())
        return fail(error, QStringLiteral("Výdej se nepodařilo uložit."));
    return true;
}

int DeleteItemsByName(DbConnection &centre, const QString &file, const QString &name, QString *error)
{
    if (!checkTable(file, error))
        return -1;
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("DELETE FROM ") + file + QStringLiteral(" WHERE NAZEV = ?"), {name})) {
        fail(error, dbError(centre));
        return -1;
    }
    return q.numRowsAffected();
}

const QStringList &BufferColumns()
{
    static const QStringList columns{
        QStringLiteral("Nazev"),   QStringLiteral("Katal"),    QStringLiteral("Prijem"),  QStringLiteral("Mira"),
        QStringLiteral("CENA"),    QStringLiteral("Mena"),     QStringLiteral("DPH"),     QStringLiteral("Firma"),
        QStringLiteral("Poznam"),  QStringLiteral("Kus_vy"),   QStringLiteral("Mnoz_obj"), QStringLiteral("Kus_obj"),
        QStringLiteral("GRANT"),   QStringLiteral("DAT_OBJ"),  QStringLiteral("DAT_VYD"), QStringLiteral("EXPIR"),
        QStringLiteral("DAT_PRI"), QStringLiteral("VYDEJ"),    QStringLiteral("KUS_PR"),  QStringLiteral("TypBal1"),
        QStringLiteral("TypBal2"), QStringLiteral("ZKATALOG"),
    };
    return columns;
}

namespace {
QString columnList()
{
    QStringList quoted;
    for (const QString &c : BufferColumns())
        quoted << QLatin1Char('`') + c + QLatin1Char('`');
    return quoted.join(QStringLiteral(", "));
}

// A buffered piece back as a value: " " is an empty text; dates and numbers empty are NULL.
QVariant bufferValue(const QString &column, const QString &piece)
{
    static const QStringList typed{QStringLiteral("Kus_vy"), QStringLiteral("Mnoz_obj"), QStringLiteral("Kus_obj"),
                                   QStringLiteral("DAT_OBJ"), QStringLiteral("DAT_VYD"), QStringLiteral("EXPIR"),
                                   QStringLiteral("DAT_PRI"), QStringLiteral("VYDEJ"), QStringLiteral("KUS_PR")};
    if (typed.contains(column) && piece.trimmed().isEmpty())
        return QVariant();
    return piece;
}
} // namespace

QStringList ReadRowsToBuffer(DbConnection &centre, const QString &file, const QVector<quint32> &noms)
{
    QStringList buffer;
    if (!IsSafeIdentifier(file))
        return buffer;
    QSqlQuery q = centre.query();
    for (const quint32 nom : noms) {
        if (!centre.exec(q, QStringLiteral("SELECT ") + columnList() + QStringLiteral(" FROM ") + file
                                + QStringLiteral(" WHERE nom=?"), {nom})
            || !q.next())
            continue;
        QStringList pieces;
        for (int i = 0; i < BufferColumns().size(); ++i) {
            const QVariant v = q.value(i);
            QString text = v.isNull() ? QString()
                           : v.typeId() == QMetaType::QDate ? v.toDate().toString(Qt::ISODate)
                                                            : v.toString();
            text.remove(QLatin1Char('~'));   // the separator of the buffer
            pieces << (text.isEmpty() ? QStringLiteral(" ") : text);
        }
        buffer << pieces.join(QLatin1Char('~'));
    }
    return buffer;
}

bool CopyRows(DbConnection &centre, const QString &targetFile, const QStringList &buffer, QString *error)
{
    if (!checkTable(targetFile, error))
        return false;
    QString marks = QStringLiteral("?");
    for (int i = 1; i < BufferColumns().size(); ++i)
        marks += QStringLiteral(", ?");
    const QString sql = QStringLiteral("INSERT INTO ") + targetFile + QStringLiteral(" (") + columnList()
        + QStringLiteral(") VALUES (") + marks + QStringLiteral(")");
    Transaction transaction(centre);
    for (const QString &row : buffer) {
        const QStringList pieces = row.split(QLatin1Char('~'));
        QVariantList values;
        for (int i = 0; i < BufferColumns().size(); ++i)
            values << bufferValue(BufferColumns().at(i), pieces.value(i));
        if (!centre.exec(sql, values))
            return fail(error, QStringLiteral("Kopírování do skladu se nezdařilo, nic nebylo zkopírováno.\n%1")
                                   .arg(dbError(centre)));
    }
    if (!transaction.commit())
        return fail(error, QStringLiteral("Kopírování do skladu se nezdařilo, nic nebylo zkopírováno."));
    return true;
}

quint32 FindInSklad(DbConnection &centre, const QString &file, const QString &text, const QString &where,
                    const QVariantList &whereValues, const QString &orderBy)
{
    if (!IsSafeIdentifier(file))
        return 0;
    QString pattern = text;
    pattern.replace(QLatin1Char('*'), QLatin1Char('%'));
    pattern += QLatin1Char('%');
    QSqlQuery q = centre.query();
    for (const char *column : {"Nazev", "ZKATALOG", "KATAL", "POZNAM", "CENA"}) {
        QString sql = QStringLiteral("SELECT nom FROM ") + file + QStringLiteral(" WHERE ");
        if (!where.isEmpty())
            sql += QLatin1Char('(') + where + QStringLiteral(") AND ");
        sql += QLatin1String(column) + QStringLiteral(" LIKE ?");
        if (!orderBy.isEmpty())
            sql += QStringLiteral(" ORDER BY ") + orderBy;
        sql += QStringLiteral(" LIMIT 1");
        QVariantList values = whereValues;
        values << pattern;
        if (centre.exec(q, sql, values) && q.next())
            return q.value(0).toUInt();
    }
    return 0;
}

QString ItemWord(int count)
{
    if (count == 1)
        return QStringLiteral("položku");
    if (count >= 2 && count <= 4)
        return QStringLiteral("položky");
    return QStringLiteral(" položek ");
}

QString NumberedNames(const QStringList &names)
{
    QStringList numbered;
    for (int i = 0; i < names.size(); ++i)
        numbered << QStringLiteral("%1. %2").arg(i + 1).arg(names.at(i));
    return numbered.join(QStringLiteral("\r\n"));
}

QString PickLine(const QSqlRecord &item)
{
    auto text = [&](const char *column) {
        const QVariant v = item.value(QLatin1String(column));
        QString t = v.isNull() ? QString() : v.toString().trimmed();
        return t.remove(QLatin1Char('~'));
    };
    QString name = text("Nazev");
    const QString b1 = text("TypBal1");
    const QString b2 = text("TypBal2");
    if (!b1.isEmpty() || !b2.isEmpty())
        name += QStringLiteral(", (") + b1 + QStringLiteral(" x ") + b2 + QLatin1Char(')');
    return QStringList{name, text("Katal"), text("Mira"), text("CENA"), text("Firma"), text("ZKATALOG"), text("nom")}
        .join(QLatin1Char('~'));
}

bool IsExpired(const QVariant &expir, const QDate &today)
{
    const QDate d = expir.toDate();
    return d.isValid() && d < today;
}

bool SetExpiry(DbConnection &centre, const QString &file, quint32 nom, const QString &date, QString *error)
{
    if (!checkTable(file, error))
        return false;
    QVariant value;
    if (!date.trimmed().isEmpty()) {
        const QDate d = parseDate(date);
        if (!d.isValid())
            return fail(error, QStringLiteral("Chybné datum expirace: %1").arg(date.left(40)));
        value = d;
    }
    if (!centre.exec(QStringLiteral("UPDATE ") + file + QStringLiteral(" SET EXPIR = ? WHERE nom=?"), {value, nom}))
        return fail(error, dbError(centre));
    return true;
}
