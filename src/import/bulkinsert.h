#pragma once
// Many rows into one table at the speed of the server's own bulk load: one prepared
// statement "INSERT ... VALUES (?, ...)" executed for an array of rows at a time (the
// server's array binding), every value a bound parameter. Rows keep their order, so their
// ids follow the order in which they were added. The caller owns the transaction.

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <vector>

class DbConnection;

class BulkInsert {
public:
    // head: "INSERT INTO table (col, ...)"; tail: what follows the values, such as
    // " ON DUPLICATE KEY UPDATE ...".
    BulkInsert(DbConnection &conn, const QString &head, int columns, const QString &tail = QString());
    BulkInsert(const BulkInsert &) = delete;
    BulkInsert &operator=(const BulkInsert &) = delete;

    // One row, a value for each column; sent when a batch is full. False on a failure.
    bool add(std::initializer_list<QString> row);
    // Sends what is left. False on a failure.
    bool flush();
    int count() const { return m_count; }
    // The failure as a Czech sentence.
    QString error() const { return m_error; }

private:
    DbConnection &m_conn;
    QString m_sql;
    int m_columns;
    QByteArray m_data;                  // the batch's values, UTF-8, one after another
    std::vector<qsizetype> m_ends;      // where each value of the batch ends in m_data
    int m_count = 0;
    QString m_error;
};
