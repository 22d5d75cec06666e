#include "core/db.h"

#include "core/config.h"
#include "core/msg.h"
#include "core/session.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFile>
#include <QHostInfo>
#include <QRegularExpression>
#include <QSqlRecord>
#include <QTextStream>

QString BuildConnStr(const QString &database, const QString &computerName, const QString &server,
                     const QString &port, const QString &user, const QString &password)
{
    if (computerName == QLatin1String(DeveloperComputer))
        return QStringLiteral("ODBC;DATABASE=") + database + QStringLiteral(";CHARSET=cp1250;DSN=127.0.0.1;PORT=") +
               port + QStringLiteral(";SERVER=127.0.0.1;UID=root;") + QStringLiteral("OPTION=") +
               QString::number(DriverOption);
    return QStringLiteral("ODBC;DATABASE=") + database + QStringLiteral(";DSN=") + server + QStringLiteral(";PORT=") +
           port + QStringLiteral(";SERVER=") + server + QStringLiteral(";UID=") + user +
           QStringLiteral(";CHARSET=cp1250;PWD=") + password + QStringLiteral(";") + QStringLiteral("OPTION=") +
           QString::number(DriverOption);
}

QString ComputerName() { return QHostInfo::localHostName(); }

QString ConnStrFor(const QString &database)
{
    return BuildConnStr(database, ComputerName(), GetServerIP(), GetServerPort(), Session().DbUser,
                        Session().DbPassword);
}

QString ConnStrSys() { return ConnStrFor(QLatin1String(SysDbName)); }
QString ConnStrCentre() { return ConnStrFor(Session().MysqlDb); }
QString ConnStrGranty() { return ConnStrFor(QLatin1String(GrantyDbName)); }

QMap<QString, QString> ParseConnStr(const QString &connStr)
{
    QMap<QString, QString> keys;
    const QStringList parts = connStr.split(QLatin1Char(';'));
    for (const QString &part : parts) {
        const qsizetype eq = part.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;   // "ODBC" and empty pieces
        keys.insert(part.left(eq).trimmed().toUpper(), part.mid(eq + 1));
    }
    return keys;
}

QString OptionFilePath()
{
    const QString env = qEnvironmentVariable("FONDARIX_MYCNF");
    if (!env.isEmpty())
        return env;
    return QDir::homePath() + QStringLiteral("/.my.cnf");
}

std::optional<DbAccount> ReadOptionFile(const QString &path, QString *error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error)
            *error = QStringLiteral("Soubor s přístupem k databázi %1 nelze přečíst.").arg(path);
        return std::nullopt;
    }
    QTextStream in(&f);
    bool inGroup = false;
    bool groupFound = false;
    DbAccount account;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char(';')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line.compare(QLatin1String("[fondarix]"), Qt::CaseInsensitive) == 0;
            groupFound = groupFound || inGroup;
            continue;
        }
        if (!inGroup)
            continue;
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        const QString key = line.left(eq).trimmed().toLower();
        QString value = line.mid(eq + 1).trimmed();
        if (value.size() >= 2 && (value.startsWith(QLatin1Char('"')) || value.startsWith(QLatin1Char('\''))) &&
            value.endsWith(value.front()))
            value = value.mid(1, value.size() - 2);
        if (key == QLatin1String("user"))
            account.user = value;
        else if (key == QLatin1String("password"))
            account.password = value;
    }
    if (!groupFound) {
        if (error)
            *error = QStringLiteral("V souboru %1 chybí skupina [fondarix] s přístupem k databázi.").arg(path);
        return std::nullopt;
    }
    return account;
}

// ---------------------------------------------------------------------------

namespace {
QString nextConnectionName()
{
    static QAtomicInteger<quint64> counter;
    return QStringLiteral("fondarix-%1").arg(++counter);
}
} // namespace

DbConnection::DbConnection(const QString &connStr) : m_name(nextConnectionName())
{
    const QMap<QString, QString> keys = ParseConnStr(connStr);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), m_name);
    if (!db.isValid()) {
        m_error = QStringLiteral("Ovladač databáze MySQL není k dispozici.");
        return;
    }
    QString accountError;
    const std::optional<DbAccount> account = ReadOptionFile(OptionFilePath(), &accountError);
    if (!account) {
        m_error = accountError;
        return;
    }
    // "localhost" would mean the default socket: the server is always reached over TCP.
    QString host = keys.value(QStringLiteral("SERVER"));
    if (host.isEmpty() || host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0)
        host = QStringLiteral("127.0.0.1");
    db.setHostName(host);
    db.setPort(keys.value(QStringLiteral("PORT")).toInt());
    db.setDatabaseName(keys.value(QStringLiteral("DATABASE")));
    db.setUserName(account->user);
    db.setPassword(account->password);
    db.setConnectOptions(QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=4;MYSQL_OPT_READ_TIMEOUT=60;MYSQL_OPT_WRITE_TIMEOUT=60"));
    m_open = db.open();
    if (!m_open)
        m_error = db.lastError().text();
}

DbConnection::~DbConnection()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
}

QSqlDatabase DbConnection::db() const { return QSqlDatabase::database(m_name, false); }

QSqlQuery DbConnection::query() const { return QSqlQuery(db()); }

bool DbConnection::exec(QSqlQuery &query, const QString &sql, const QVariantList &values)
{
    if (!m_open)
        return false;
    if (!query.prepare(sql)) {
        m_error = DbErrorMessage(query.lastError(), m_captions);
        return false;
    }
    for (const QVariant &v : values)
        query.addBindValue(v);
    if (!query.exec()) {
        m_error = DbErrorMessage(query.lastError(), m_captions);
        return false;
    }
    return true;
}

bool DbConnection::exec(const QString &sql, const QVariantList &values)
{
    QSqlQuery q = query();
    return exec(q, sql, values);
}

bool OpenOrFatal(DbConnection &connection)
{
    if (connection.isOpen())
        return true;
    FatalConnectionError();
    return false;
}

QString FieldText(const QSqlQuery &query, const QString &column)
{
    const QVariant v = query.value(column);
    return v.isNull() ? QString() : v.toString().trimmed();
}

QString FieldText(const QSqlQuery &query, int column)
{
    const QVariant v = query.value(column);
    return v.isNull() ? QString() : v.toString().trimmed();
}

namespace {
// The column named in a server message: "... for column `db`.`table`.`col` at row 1".
QString columnOf(const QString &text)
{
    const qsizetype at = text.indexOf(QLatin1String("for column "));
    if (at < 0)
        return QStringLiteral("?");
    QString name = text.mid(at + 11);
    const qsizetype row = name.indexOf(QLatin1String(" at row"));
    if (row >= 0)
        name.truncate(row);
    name = name.section(QLatin1Char('.'), -1);
    name.remove(QLatin1Char('`')).remove(QLatin1Char('\''));
    return name.trimmed();
}

// The caption of a column, else the column's own name.
QString captionOf(const QString &column, const FieldCaptions &captions)
{
    for (auto it = captions.begin(); it != captions.end(); ++it)
        if (it.key().compare(column, Qt::CaseInsensitive) == 0)
            return it.value();
    return column;
}
} // namespace

QString CaptionOf(const QString &label)
{
    QString caption = label.simplified();
    while (caption.endsWith(QLatin1Char(':')))
        caption.chop(1);
    return caption.trimmed();
}

QString DbErrorMessage(const QSqlError &error, const FieldCaptions &captions)
{
    const QString code = error.nativeErrorCode();
    const QString text = error.databaseText();
    const QString field = QStringLiteral("„%1“").arg(captionOf(columnOf(text), captions));
    // 1366: a value the column cannot take (a character outside the code page, or a text in
    // a number column); 1265: a value that would have to be cut; 1406: a text longer than the
    // column. Strict mode refuses the statement: the value is neither stored nor cut.
    if (code == QLatin1String("1366") && text.startsWith(QLatin1String("Incorrect string value")))
        return QStringLiteral("Pole %1 obsahuje znak, který nelze uložit ve znakové sadě Windows-1250; "
                              "text nebyl uložen.")
            .arg(field);
    if (code == QLatin1String("1366") || code == QLatin1String("1265"))
        return QStringLiteral("Pole %1 má hodnotu, kterou nelze uložit; nebyla uložena.").arg(field);
    if (code == QLatin1String("1406"))
        return QStringLiteral("Text v poli %1 je příliš dlouhý; nebyl uložen ani zkrácen. Zkraťte jej prosím.")
            .arg(field);
    // 2006, 2013: the server has gone or dropped the connection; 1927: the connection was ended
    // on the server. What the statement had begun is rolled back by the server.
    if (code == QLatin1String("2006") || code == QLatin1String("2013") || code == QLatin1String("1927"))
        return QStringLiteral("Spojení s databázovým serverem bylo přerušeno; rozpracovaná změna nebyla uložena.");
    const QString t = error.text().trimmed();
    return QStringLiteral("Chyba databáze: %1").arg(t.isEmpty() ? QStringLiteral("neznámá") : t);
}

Transaction::Transaction(DbConnection &connection) : m_db(connection.db())
{
    m_active = m_db.isOpen() && m_db.transaction();
}

Transaction::~Transaction()
{
    if (m_active)
        m_db.rollback();
}

bool Transaction::commit()
{
    if (!m_active)
        return false;
    m_active = false;
    return m_db.commit();
}

// ---------------------------------------------------------------------------

QStringList SplitSqlScript(const QString &script)
{
    QStringList statements;
    QString current;
    QChar quote;
    for (qsizetype i = 0; i < script.size(); ++i) {
        const QChar c = script.at(i);
        if (!quote.isNull()) {
            current += c;
            if (c == QLatin1Char('\\') && i + 1 < script.size()) {
                current += script.at(++i);
            } else if (c == quote) {
                quote = QChar();
            }
            continue;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`')) {
            quote = c;
            current += c;
        } else if (c == QLatin1Char('-') && script.mid(i, 3) == QLatin1String("-- ")) {
            while (i < script.size() && script.at(i) != QLatin1Char('\n'))
                ++i;
            current += QLatin1Char('\n');
        } else if (c == QLatin1Char(';')) {
            if (!current.trimmed().isEmpty())
                statements << current.trimmed();
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.trimmed().isEmpty())
        statements << current.trimmed();
    return statements;
}

namespace {
bool runScript(DbConnection &conn, const QString &path, QString *error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Soubor %1 nelze přečíst.").arg(path);
        return false;
    }
    const QStringList statements = SplitSqlScript(QString::fromUtf8(f.readAll()));
    for (const QString &sql : statements) {
        QSqlQuery q = conn.query();
        if (!q.exec(sql)) {
            *error = QStringLiteral("%1: %2\n%3").arg(path, q.lastError().text(), sql.left(200));
            return false;
        }
    }
    return true;
}

bool createOne(DbConnection &server, const QString &name, const QStringList &scripts, bool dropExisting,
               QString *error)
{
    static const QRegularExpression valid(QStringLiteral("^[A-Za-z0-9_]+$"));
    if (!valid.match(name).hasMatch()) {
        *error = QStringLiteral("Neplatný název databáze: %1").arg(name);
        return false;
    }
    QSqlQuery q = server.query();
    if (dropExisting && !q.exec(QStringLiteral("DROP DATABASE IF EXISTS `%1`").arg(name))) {
        *error = q.lastError().text();
        return false;
    }
    if (!q.exec(QStringLiteral("SELECT 1 FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = '%1'").arg(name))) {
        *error = q.lastError().text();
        return false;
    }
    if (q.next())
        return true;   // left alone
    if (!q.exec(QStringLiteral("CREATE DATABASE `%1` CHARACTER SET cp1250 COLLATE cp1250_general_ci").arg(name))) {
        *error = q.lastError().text();
        return false;
    }
    DbConnection conn(ConnStrFor(name));
    if (!conn.isOpen()) {
        *error = conn.errorText();
        return false;
    }
    for (const QString &script : scripts)
        if (QFile::exists(script) && !runScript(conn, script, error))
            return false;
    return true;
}
} // namespace

bool CreateDatabases(const QString &schemaDir, const QString &demoDir, bool dropExisting, QString *error)
{
    QString dummy;
    if (!error)
        error = &dummy;
    DbConnection server(ConnStrFor(QString()));
    if (!server.isOpen()) {
        *error = server.errorText();
        return false;
    }
    const bool demo = !demoDir.isEmpty();
    auto scripts = [&](const QString &kind) {
        QStringList list{schemaDir + QLatin1Char('/') + kind + QStringLiteral(".sql")};
        if (demo)
            list << demoDir + QLatin1Char('/') + kind + QStringLiteral(".sql");
        return list;
    };
    if (!createOne(server, QLatin1String(SysDbName), scripts(QStringLiteral("sys")), dropExisting, error) ||
        !createOne(server, QLatin1String(GrantyDbName), scripts(QStringLiteral("granty")), dropExisting, error))
        return false;

    QStringList centres;
    {
        DbConnection sys(ConnStrFor(QLatin1String(SysDbName)));
        QSqlQuery q = sys.query();
        if (!q.exec(QStringLiteral("SELECT DISTINCT mysql_db FROM sys_db_kvl"))) {
            *error = q.lastError().text();
            return false;
        }
        while (q.next())
            if (!FieldText(q, 0).isEmpty())
                centres << FieldText(q, 0);
    }
    for (const QString &centre : centres)
        if (!createOne(server, centre, scripts(QStringLiteral("centre")), dropExisting, error))
            return false;
    return true;
}
