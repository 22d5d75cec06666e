#include "core/db.h"

#include "core/config.h"
#include "core/msg.h"
#include "core/session.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFile>
#include <QHostInfo>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlRecord>
#include <QTextStream>

#include <mysql.h>

#include <memory>

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
    m_array.reset();   // the statement goes before its connection
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

st_mysql *NativeHandle(const DbConnection &conn)
{
    const QVariant v = conn.db().driver()->handle();
    // The driver gives its handle as "MYSQL*" or under the structure's own name.
    if (!conn.isOpen() || !v.isValid() || (qstrcmp(v.typeName(), "MYSQL*") != 0 && qstrcmp(v.typeName(), "st_mysql*") != 0))
        return nullptr;
    return *static_cast<MYSQL *const *>(v.constData());
}

namespace {
struct StmtClose {
    void operator()(MYSQL_STMT *stmt) const { mysql_stmt_close(stmt); }
};
using Stmt = std::unique_ptr<MYSQL_STMT, StmtClose>;

QSqlError StmtError(MYSQL_STMT *stmt)
{
    return QSqlError(QString(), QString::fromUtf8(mysql_stmt_error(stmt)), QSqlError::StatementError,
                     QString::number(mysql_stmt_errno(stmt)));
}

// The statement prepared on the connection; on failure nullptr and the error.
Stmt Prepare(const DbConnection &conn, const QString &sql, QSqlError *error)
{
    MYSQL *mysql = NativeHandle(conn);
    if (!mysql) {
        *error = QSqlError(QString(), QStringLiteral("spojení není otevřené"), QSqlError::ConnectionError);
        return nullptr;
    }
    Stmt stmt(mysql_stmt_init(mysql));
    if (!stmt) {
        *error = QSqlError(QString(), QString::fromUtf8(mysql_error(mysql)), QSqlError::StatementError,
                           QString::number(mysql_errno(mysql)));
        return nullptr;
    }
    const QByteArray text = sql.toUtf8();
    if (mysql_stmt_prepare(stmt.get(), text.constData(), (unsigned long)text.size()) != 0) {
        *error = StmtError(stmt.get());
        return nullptr;
    }
    return stmt;
}

// Binds text values to the "?" in order: values holds rows of binds.size() values each, one
// row as values themselves, or as arrays of pointers and lengths for the array binding.
void BindTexts(std::vector<MYSQL_BIND> &binds, const std::vector<std::string_view> &values, bool array,
               std::vector<char *> &pointers, std::vector<unsigned long> &lengths)
{
    const size_t columns = binds.size(), rows = columns == 0 ? 0 : values.size() / columns;
    pointers.resize(rows * columns);
    lengths.resize(rows * columns);
    for (size_t r = 0; r < rows; ++r)
        for (size_t c = 0; c < columns; ++c) {
            const std::string_view v = values[r * columns + c];
            pointers[c * rows + r] = const_cast<char *>(v.data());
            lengths[c * rows + r] = (unsigned long)v.size();
        }
    for (size_t c = 0; c < columns; ++c) {
        binds[c] = MYSQL_BIND{};
        binds[c].buffer_type = MYSQL_TYPE_STRING;
        binds[c].buffer = array ? static_cast<void *>(pointers.data() + c * rows) : static_cast<void *>(pointers[c]);
        binds[c].buffer_length = array ? 0 : lengths[c];
        binds[c].length = lengths.data() + c * rows;
    }
}
} // namespace

bool DbConnection::eachRow(const QString &sql, const QStringList &values, const std::function<void(const RawRow &)> &row)
{
    QSqlError error;
    const Stmt stmt = Prepare(*this, sql, &error);
    const auto fail = [&] {
        m_error = DbErrorMessage(stmt ? StmtError(stmt.get()) : error, m_captions);
        return false;
    };
    if (!stmt)
        return fail();
    std::vector<QByteArray> texts;
    std::vector<std::string_view> views;
    for (const QString &v : values)
        texts.push_back(v.toUtf8());
    for (const QByteArray &t : texts)
        views.emplace_back(t.constData(), size_t(t.size()));
    std::vector<MYSQL_BIND> params(texts.size());
    std::vector<char *> pointers;
    std::vector<unsigned long> paramLengths;
    BindTexts(params, views, false, pointers, paramLengths);
    if ((!params.empty() && mysql_stmt_bind_param(stmt.get(), params.data()) != 0) || mysql_stmt_execute(stmt.get()) != 0)
        return fail();
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> meta(mysql_stmt_result_metadata(stmt.get()),
                                                                        &mysql_free_result);
    if (!meta)
        return fail();
    const unsigned columns = mysql_num_fields(meta.get());
    const MYSQL_FIELD *fields = mysql_fetch_fields(meta.get());
    // Every value as text, in a buffer of the column's size; a longer one (a TEXT column)
    // is fetched again whole.
    std::vector<std::vector<char>> buffers(columns);
    std::vector<MYSQL_BIND> binds(columns, MYSQL_BIND{});
    std::vector<unsigned long> lengths(columns);
    std::vector<my_bool> nulls(columns);
    for (unsigned c = 0; c < columns; ++c) {
        buffers[c].resize(std::clamp<unsigned long>(fields[c].length, 1, 4096));
        binds[c].buffer_type = MYSQL_TYPE_STRING;
        binds[c].buffer = buffers[c].data();
        binds[c].buffer_length = (unsigned long)buffers[c].size();
        binds[c].length = &lengths[c];
        binds[c].is_null = &nulls[c];
    }
    if (mysql_stmt_bind_result(stmt.get(), binds.data()) != 0)
        return fail();
    RawRow current(columns);
    for (;;) {
        const int status = mysql_stmt_fetch(stmt.get());
        if (status == MYSQL_NO_DATA)
            return true;
        if (status != 0 && status != MYSQL_DATA_TRUNCATED)
            return fail();
        for (unsigned c = 0; c < columns; ++c) {
            if (nulls[c]) {
                current[c].reset();
                continue;
            }
            if (lengths[c] > buffers[c].size()) {
                buffers[c].resize(lengths[c]);
                binds[c].buffer = buffers[c].data();
                binds[c].buffer_length = lengths[c];
                if (mysql_stmt_fetch_column(stmt.get(), &binds[c], c, 0) != 0 ||
                    mysql_stmt_bind_result(stmt.get(), binds.data()) != 0)
                    return fail();
            }
            current[c] = std::string_view(buffers[c].data(), lengths[c]);
        }
        row(current);
    }
}

struct DbConnection::ArrayStatement {
    QString sql;
    Stmt stmt;
};

bool DbConnection::execArray(const QString &sql, int columns, const std::vector<std::string_view> &values)
{
    const size_t rows = columns <= 0 ? 0 : values.size() / size_t(columns);
    if (rows == 0)
        return true;
    if (!m_array || m_array->sql != sql) {
        m_array.reset();
        QSqlError error;
        Stmt stmt = Prepare(*this, sql, &error);
        if (!stmt) {
            m_error = DbErrorMessage(error, m_captions);
            return false;
        }
        m_array.reset(new ArrayStatement{sql, std::move(stmt)});
    }
    MYSQL_STMT *stmt = m_array->stmt.get();
    std::vector<MYSQL_BIND> binds(static_cast<size_t>(columns));
    std::vector<char *> pointers;
    std::vector<unsigned long> lengths;
    BindTexts(binds, values, true, pointers, lengths);
    unsigned int arraySize = (unsigned int)rows;
    if (mysql_stmt_attr_set(stmt, STMT_ATTR_ARRAY_SIZE, &arraySize) != 0 ||
        mysql_stmt_bind_param(stmt, binds.data()) != 0 || mysql_stmt_execute(stmt) != 0) {
        m_error = DbErrorMessage(StmtError(stmt), m_captions);
        m_array.reset();   // prepared again next time, whatever state the failure left
        return false;
    }
    return true;
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

bool IsSafeIdentifier(const QString &name)
{
    static const QRegularExpression valid(QStringLiteral("^[A-Za-z0-9_]{1,64}$"));
    return valid.match(name).hasMatch();
}

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
    if (!IsSafeIdentifier(name)) {
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

bool CentreDatabaseNames(QStringList *names, QString *error)
{
    DbConnection sys(ConnStrFor(QLatin1String(SysDbName)));
    QSqlQuery q = sys.query();
    if (!q.exec(QStringLiteral("SELECT DISTINCT mysql_db FROM sys_db_kvl"))) {
        *error = sys.isOpen() ? q.lastError().text() : sys.errorText();
        return false;
    }
    while (q.next())
        if (!FieldText(q, 0).isEmpty())
            *names << FieldText(q, 0);
    return true;
}

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
    if (!CentreDatabaseNames(&centres, error))
        return false;
    for (const QString &centre : centres)
        if (!createOne(server, centre, scripts(QStringLiteral("centre")), dropExisting, error))
            return false;
    return true;
}
