#pragma once
// Connections to the three kinds of database and the habits of SQL shared by all screens.
// No connection lives across commands: whoever opens one closes it (DbConnection does).

#include <QMap>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

struct st_mysql;

inline constexpr const char *SysDbName = "fondarix_sys";
inline constexpr const char *GrantyDbName = "fondarix_granty";
inline constexpr int DriverOption = 165932;
inline constexpr const char *DeveloperComputer = "DEVBOX-01";

// The connection text for a database, as a workstation builds it. On the developer's
// computer (exact, case-sensitive name) the local form is returned instead.
QString BuildConnStr(const QString &database, const QString &computerName,
                     const QString &server, const QString &port,
                     const QString &user = QString(), const QString &password = QString());
QString ConnStrSys();
QString ConnStrCentre();
QString ConnStrGranty();
// Same form for a named database (administrative look into another centre, server-level work).
QString ConnStrFor(const QString &database);

// The computer's name (host name).
QString ComputerName();

// Keywords of a connection text, upper-cased keys, "ODBC;" prefix skipped.
QMap<QString, QString> ParseConnStr(const QString &connStr);

// The database account, from group [fondarix] of a MySQL option file.
struct DbAccount {
    QString user;
    QString password;
};
// Path of the option file: $FONDARIX_MYCNF, else ~/.my.cnf.
QString OptionFilePath();
// Reads the account; on failure returns nullopt and a Czech message naming the file.
std::optional<DbAccount> ReadOptionFile(const QString &path, QString *error);

// What the user sees as a field's name, by column name (letter case ignored): a screen
// passes the captions of the fields it saves (DbConnection::setCaptions, or DbErrorMessage
// directly for a table model), so that a value the server refuses is reported as
// "Řešitel", not as "Castka2". A column without a caption is named as it stands.
using FieldCaptions = QMap<QString, QString>;
// A label's text as a caption: "Poskytnuté,     Kč:" gives "Poskytnuté, Kč".
QString CaptionOf(const QString &label);

// An open connection, closed and removed when it goes out of scope.
class DbConnection {
public:
    explicit DbConnection(const QString &connStr);
    ~DbConnection();
    DbConnection(const DbConnection &) = delete;
    DbConnection &operator=(const DbConnection &) = delete;

    bool isOpen() const { return m_open; }
    QString errorText() const { return m_error; }
    QSqlDatabase db() const;

    // Runs a statement with bound values. On failure returns false and keeps the error.
    bool exec(QSqlQuery &query, const QString &sql, const QVariantList &values = {});
    bool exec(const QString &sql, const QVariantList &values = {});
    // A query ready to be executed, on this connection.
    QSqlQuery query() const;
    // Runs a query with bound values and hands each row's values to row() as the server sent
    // them: UTF-8 bytes, nullopt for NULL, valid only during the call. For reads of a million
    // rows, where a QVariant per value costs more than the server takes to send it.
    using RawRow = std::vector<std::optional<std::string_view>>;
    bool eachRow(const QString &sql, const QStringList &values, const std::function<void(const RawRow &)> &row);
    // Runs one statement for many rows of values in one round trip (the server's array
    // binding): values holds the rows one after another, `columns` texts (UTF-8) each, bound
    // to the "?" of the statement in order.
    bool execArray(const QString &sql, int columns, const std::vector<std::string_view> &values);
    // Captions for the messages of the statements that fail from now on.
    void setCaptions(const FieldCaptions &captions) { m_captions = captions; }

private:
    QString m_name;
    bool m_open = false;
    QString m_error;
    FieldCaptions m_captions;
    // The statement of the last execArray, kept prepared: a bulk load sends many batches of
    // the same statement, and a prepare per batch costs a round trip each.
    struct ArrayStatement;
    std::unique_ptr<ArrayStatement> m_array;
};

// The client library's handle of an open connection (for the array binding and raw reads);
// nullptr when it is not open.
st_mysql *NativeHandle(const DbConnection &conn);

// Opens a connection; on failure shows the fatal message and ends the process
// (returns false, and the caller returns at once).
bool OpenOrFatal(DbConnection &connection);

// A column's value as text: NULL gives empty text, otherwise trimmed.
QString FieldText(const QSqlQuery &query, const QString &column);
QString FieldText(const QSqlQuery &query, int column);

// A server error as a Czech sentence. A value refused for its field (a character the code
// page cannot hold, a text longer than the column) names the field by its caption.
QString DbErrorMessage(const QSqlError &error, const FieldCaptions &captions = {});

// Rolls back unless committed.
class Transaction {
public:
    explicit Transaction(DbConnection &connection);
    ~Transaction();
    bool commit();
    bool active() const { return m_active; }

private:
    QSqlDatabase m_db;
    bool m_active = false;
};

// A name that may stand in a statement as a table or database: letters, digits and "_" only.
bool IsSafeIdentifier(const QString &name);

// Splits a script into statements at ";" ending a line, outside quotes; comments dropped.
QStringList SplitSqlScript(const QString &script);

// The centre databases named in sys_db_kvl.
bool CentreDatabaseNames(QStringList *names, QString *error);

// Creates fondarix_sys, fondarix_granty and every centre database named in sys_db_kvl
// from the schema files in schemaDir; with demoDir, loads the demo institute as well.
// Existing databases of these names are dropped first when dropExisting is set,
// otherwise a database that exists is left alone.
bool CreateDatabases(const QString &schemaDir, const QString &demoDir, bool dropExisting,
                     QString *error);
