#include "core/schemaupgrade.h"

#include "core/db.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QSqlQuery>

namespace {
bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

QString unquoted(const QString &name) { return QString(name).remove(QLatin1Char('`')); }

// A name of the schema file or of the server, written into a statement between backticks.
bool quotable(const QString &name) { return !name.isEmpty() && !name.contains(QLatin1Char('`')); }

// The name a column definition starts with: "`MD/DAL` VARCHAR(5)" gives MD/DAL.
QString columnName(const QString &item)
{
    if (item.startsWith(QLatin1Char('`')))
        return item.mid(1, item.indexOf(QLatin1Char('`'), 1) - 1);
    return item.section(QRegularExpression(QStringLiteral("\\s+")), 0, 0);
}

// The parts of a definition list split at the commas outside parentheses and quotes.
QStringList splitTopLevel(const QString &text)
{
    QStringList parts;
    QString current;
    int depth = 0;
    QChar quote;
    for (const QChar c : text) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`')) {
            quote = c;
        } else if (c == QLatin1Char('(')) {
            ++depth;
        } else if (c == QLatin1Char(')')) {
            --depth;
        } else if (c == QLatin1Char(',') && depth == 0) {
            parts << current.trimmed();
            current.clear();
            continue;
        }
        current += c;
    }
    if (!current.trimmed().isEmpty())
        parts << current.trimmed();
    return parts;
}

// A key as the server keeps it: its name, whether unique, and its columns with their prefix
// lengths in a comparable form ("sklad(60),nam_chim").
struct Key {
    QString name;
    bool unique = false;
    QString columnList;   // as written, "(cis_obj, nom, Dat_obj)"
    QString signature() const
    {
        QStringList cols;
        for (QString c : splitTopLevel(columnList.mid(1, columnList.size() - 2))) {
            c = unquoted(c).simplified().toLower();
            c.remove(QRegularExpression(QStringLiteral("\\s+(asc|desc)$")));
            cols << c.remove(QLatin1Char(' '));
        }
        return (unique ? QStringLiteral("u:") : QString()) + cols.join(QLatin1Char(','));
    }
};

// "KEY [name] (cols)", "INDEX ...", "UNIQUE [KEY|INDEX] ..." read; other items give false. An
// unnamed key is named as the server names it: after its first column, "_2", "_3" when taken.
bool parseKey(const QString &item, const QStringList &taken, Key *key)
{
    static const QRegularExpression re(QStringLiteral("^(UNIQUE\\s+)?(?:(?:KEY|INDEX)\\s+)?(`[^`]+`|\\w+)?\\s*(\\(.*\\))$"),
                                       QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression head(QStringLiteral("^(UNIQUE|KEY|INDEX)\\b"), QRegularExpression::CaseInsensitiveOption);
    if (!head.match(item).hasMatch())
        return false;
    const QRegularExpressionMatch m = re.match(item);
    if (!m.hasMatch())
        return false;
    key->unique = !m.captured(1).isEmpty();
    key->columnList = m.captured(3);
    key->name = unquoted(m.captured(2));
    if (key->name.isEmpty() || key->name.compare(QLatin1String("KEY"), Qt::CaseInsensitive) == 0
        || key->name.compare(QLatin1String("INDEX"), Qt::CaseInsensitive) == 0) {
        const QString written = unquoted(splitTopLevel(key->columnList.mid(1, key->columnList.size() - 2)).value(0))
                                    .section(QLatin1Char('('), 0, 0).trimmed();
        key->name = written;
        for (int n = 2; taken.contains(key->name, Qt::CaseInsensitive); ++n)
            key->name = written + QStringLiteral("_%1").arg(n);
    }
    return true;
}

// The keys of an existing table, primary key left out, by lower-cased name.
bool existingKeys(DbConnection &conn, const QString &table, QMap<QString, QString> *signatures, QString *error)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT INDEX_NAME, NON_UNIQUE, COLUMN_NAME, SUB_PART FROM information_schema.STATISTICS "
                                     "WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = ? AND INDEX_NAME <> 'PRIMARY' "
                                     "ORDER BY INDEX_NAME, SEQ_IN_INDEX"),
                   {table}))
        return fail(error, conn.errorText());
    while (q.next()) {
        QString &sig = (*signatures)[q.value(0).toString().toLower()];
        if (sig.isEmpty() && q.value(1).toInt() == 0)
            sig = QStringLiteral("u:");
        else if (!sig.isEmpty() && !sig.endsWith(QLatin1Char(':')))
            sig += QLatin1Char(',');
        sig += q.value(2).toString().toLower();
        if (!q.value(3).isNull())
            sig += QStringLiteral("(%1)").arg(q.value(3).toInt());
    }
    return true;
}

bool tableExists(DbConnection &conn, const QString &table, bool *exists, QString *error)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT 1 FROM information_schema.TABLES WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = ?"),
                   {table}))
        return fail(error, conn.errorText());
    *exists = q.next();
    return true;
}

// The ALTER clauses that make the table's keys the given ones, with a line for each.
bool keyClauses(DbConnection &conn, const QString &table, const QStringList &keyItems, QStringList *clauses,
                QStringList *changes, QString *error)
{
    QMap<QString, QString> have;
    if (!existingKeys(conn, table, &have, error))
        return false;
    QStringList names;
    QStringList adds;
    for (const QString &item : keyItems) {
        Key key;
        if (!parseKey(item, names, &key) || !quotable(key.name))
            return fail(error, QStringLiteral("%1: neznámý zápis klíče: %2").arg(table, item.left(120)));
        names << key.name;
        const QString lower = key.name.toLower();
        const QString add = QStringLiteral("ADD %1INDEX %4 `%2` %3")
                                .arg(key.unique ? QStringLiteral("UNIQUE ") : QString(), key.name, key.columnList);
        if (!have.contains(lower)) {
            adds << add.arg(QStringLiteral("IF NOT EXISTS"));
            changes->append(QStringLiteral("%1: přidán index %2").arg(table, key.name));
        } else if (have.value(lower) != key.signature()) {
            // The same name over other columns: dropped first, made again below.
            clauses->append(QStringLiteral("DROP INDEX `%1`").arg(key.name));
            adds << add.arg(QString());
            changes->append(QStringLiteral("%1: index %2 přestavěn na %3").arg(table, key.name, key.columnList));
        }
        have.remove(lower);
    }
    for (auto it = have.cbegin(); it != have.cend(); ++it) {
        if (!quotable(it.key()))
            return fail(error, QStringLiteral("%1: neplatný název indexu %2").arg(table, it.key().left(80)));
        clauses->append(QStringLiteral("DROP INDEX IF EXISTS `%1`").arg(it.key()));
        changes->append(QStringLiteral("%1: zrušen index %2").arg(table, it.key()));
    }
    *clauses << adds;
    return true;
}

bool alter(DbConnection &conn, const QString &table, const QStringList &clauses, QString *error)
{
    if (clauses.isEmpty())
        return true;
    if (!conn.exec(QStringLiteral("ALTER TABLE `%1` %2").arg(table, clauses.join(QStringLiteral(", ")))))
        return fail(error, QStringLiteral("%1: %2").arg(table, conn.errorText()));
    return true;
}

const QRegularExpression &createTable()
{
    static const QRegularExpression re(QStringLiteral("^CREATE\\s+TABLE\\s+(`[^`]+`|\\w+)\\s*\\((.*)\\)[^)]*$"),
                                       QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return re;
}
} // namespace

bool UpgradeKeys(DbConnection &conn, const QString &table, const QStringList &keys, QStringList *changes, QString *error)
{
    if (!IsSafeIdentifier(table))
        return fail(error, QStringLiteral("Neplatný název tabulky: %1").arg(table.left(80)));
    bool exists = false;
    if (!tableExists(conn, table, &exists, error))
        return false;
    QStringList clauses;
    return !exists || (keyClauses(conn, table, keys, &clauses, changes, error) && alter(conn, table, clauses, error));
}

bool UpgradeTable(DbConnection &conn, const QString &createStatement, QStringList *changes, QString *error)
{
    const QRegularExpressionMatch m = createTable().match(createStatement.trimmed());
    const QString table = unquoted(m.captured(1));
    if (!m.hasMatch() || !quotable(table))
        return fail(error, QStringLiteral("Neznámý zápis tabulky: %1").arg(createStatement.left(120)));

    QMap<QString, QString> collations;   // lower-cased column name -> collation
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT COLUMN_NAME, COLLATION_NAME FROM information_schema.COLUMNS "
                                     "WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = ?"),
                   {table}))
        return fail(error, conn.errorText());
    while (q.next())
        collations.insert(q.value(0).toString().toLower(), q.value(1).toString());

    static const QRegularExpression collate(QStringLiteral("\\bCOLLATE\\s+(\\w+)"), QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression inlineKey(QStringLiteral("^PRIMARY\\s+KEY\\b|^CONSTRAINT\\b|^FOREIGN\\b|^CHECK\\b"),
                                              QRegularExpression::CaseInsensitiveOption);
    QStringList clauses, keys;
    QString previous;
    for (const QString &item : splitTopLevel(m.captured(2))) {
        Key key;
        if (parseKey(item, {}, &key)) {
            keys << item;
            continue;
        }
        if (inlineKey.match(item).hasMatch())
            continue;
        const QString column = columnName(item);
        if (!quotable(column))
            return fail(error, QStringLiteral("%1: neznámý zápis sloupce: %2").arg(table, item.left(120)));
        const QString place = previous.isEmpty() ? QStringLiteral("FIRST") : QStringLiteral("AFTER `%1`").arg(previous);
        previous = column;
        if (!collations.contains(column.toLower())) {
            clauses << QStringLiteral("ADD COLUMN IF NOT EXISTS %1 %2").arg(item, place);
            changes->append(QStringLiteral("%1: přidán sloupec %2").arg(table, column));
            continue;
        }
        const QString wanted = collate.match(item).captured(1);
        if (!wanted.isEmpty() && wanted.compare(collations.value(column.toLower()), Qt::CaseInsensitive) != 0) {
            clauses << QStringLiteral("MODIFY COLUMN %1").arg(item);
            changes->append(QStringLiteral("%1: sloupec %2 porovnáván jako %3").arg(table, column, wanted));
        }
    }
    return keyClauses(conn, table, keys, &clauses, changes, error) && alter(conn, table, clauses, error);
}

bool UpgradeSchema(DbConnection &conn, const QString &schemaFile, QStringList *changes, QString *error)
{
    QFile f(schemaFile);
    if (!f.open(QIODevice::ReadOnly))
        return fail(error, QStringLiteral("Soubor %1 nelze přečíst.").arg(schemaFile));
    static const QRegularExpression createView(QStringLiteral("^CREATE\\s+VIEW\\s+(`[^`]+`|\\w+)"),
                                               QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression insertInto(QStringLiteral("^INSERT\\s+INTO\\s+(`[^`]+`|\\w+)"),
                                               QRegularExpression::CaseInsensitiveOption);
    QSet<QString> created;   // tables made now: the file's rows for them go in as well
    for (const QString &sql : SplitSqlScript(QString::fromUtf8(f.readAll()))) {
        QRegularExpressionMatch m = createTable().match(sql);
        const bool isTable = m.hasMatch();
        if (!isTable)
            m = createView.match(sql);
        if (m.hasMatch()) {
            const QString name = unquoted(m.captured(1));
            bool exists = false;
            if (!tableExists(conn, name, &exists, error))
                return false;
            if (exists) {
                if (isTable && !UpgradeTable(conn, sql, changes, error))
                    return false;
                continue;
            }
            if (!conn.exec(sql))
                return fail(error, QStringLiteral("%1: %2").arg(name, conn.errorText()));
            created.insert(name.toLower());
            changes->append(QStringLiteral("%1: vytvořena").arg(name));
            continue;
        }
        m = insertInto.match(sql);
        if (m.hasMatch() && created.contains(unquoted(m.captured(1)).toLower()) && !conn.exec(sql))
            return fail(error, conn.errorText());
    }
    return true;
}
