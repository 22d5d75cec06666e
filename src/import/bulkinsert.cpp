#include "import/bulkinsert.h"

#include "core/db.h"

#include <QSqlDriver>

#include <mysql.h>

namespace {
// Rows of one execution. The server hands out the ids of one execution in runs of 1, 2, 4, ...
// 512: with 1023 rows a full batch uses all it was given and the ids stay without gaps.
constexpr int RowsPerBatch = 1023;

MYSQL *HandleOf(DbConnection &conn)
{
    const QVariant v = conn.db().driver()->handle();
    // The driver gives its handle as "MYSQL*" or under the structure's own name.
    if (!v.isValid() || (qstrcmp(v.typeName(), "MYSQL*") != 0 && qstrcmp(v.typeName(), "st_mysql*") != 0))
        return nullptr;
    return *static_cast<MYSQL *const *>(v.constData());
}
} // namespace

BulkInsert::BulkInsert(DbConnection &conn, const QString &head, int columns, const QString &tail)
    : m_conn(conn), m_columns(columns)
{
    m_sql = head + QStringLiteral(" VALUES (") + QStringList(columns, QStringLiteral("?")).join(QLatin1Char(','))
            + QLatin1Char(')') + tail;
    m_ends.reserve(size_t(RowsPerBatch) * size_t(columns));
}

BulkInsert::~BulkInsert()
{
    if (m_stmt)
        mysql_stmt_close(m_stmt);
}

bool BulkInsert::fail(const QString &code, const QString &text)
{
    m_error = DbErrorMessage(QSqlError(QString(), text, QSqlError::StatementError, code));
    return false;
}

bool BulkInsert::add(std::initializer_list<QString> row)
{
    for (const QString &value : row) {
        m_data += value.toUtf8();
        m_ends.push_back(m_data.size());
    }
    ++m_count;
    return m_ends.size() < size_t(RowsPerBatch) * size_t(m_columns) || flush();
}

bool BulkInsert::flush()
{
    if (m_ends.empty())
        return true;
    if (!m_stmt) {
        MYSQL *mysql = HandleOf(m_conn);
        if (!mysql)
            return fail(QString(), QStringLiteral("spojení není otevřené"));
        m_stmt = mysql_stmt_init(mysql);
        const QByteArray sql = m_sql.toUtf8();
        if (!m_stmt)
            return fail(QString::number(mysql_errno(mysql)), QString::fromUtf8(mysql_error(mysql)));
        if (mysql_stmt_prepare(m_stmt, sql.constData(), (unsigned long)sql.size()) != 0)
            return fail(QString::number(mysql_stmt_errno(m_stmt)), QString::fromUtf8(mysql_stmt_error(m_stmt)));
    }
    // Column-wise arrays: for each column a pointer and a length per row.
    const size_t rows = m_ends.size() / size_t(m_columns);
    std::vector<char *> pointers(m_ends.size());
    std::vector<unsigned long> lengths(m_ends.size());
    char *data = m_data.data();
    for (size_t r = 0; r < rows; ++r)
        for (size_t c = 0; c < size_t(m_columns); ++c) {
            const size_t i = r * size_t(m_columns) + c;
            const qsizetype begin = i == 0 ? 0 : m_ends[i - 1];
            pointers[c * rows + r] = data + begin;
            lengths[c * rows + r] = (unsigned long)(m_ends[i] - begin);
        }
    std::vector<MYSQL_BIND> binds(static_cast<size_t>(m_columns));
    for (size_t c = 0; c < size_t(m_columns); ++c) {
        binds[c] = MYSQL_BIND{};
        binds[c].buffer_type = MYSQL_TYPE_STRING;
        binds[c].buffer = pointers.data() + c * rows;
        binds[c].length = lengths.data() + c * rows;
    }
    unsigned int arraySize = (unsigned int)rows;
    if (mysql_stmt_attr_set(m_stmt, STMT_ATTR_ARRAY_SIZE, &arraySize) != 0 || mysql_stmt_bind_param(m_stmt, binds.data()) != 0
        || mysql_stmt_execute(m_stmt) != 0)
        return fail(QString::number(mysql_stmt_errno(m_stmt)), QString::fromUtf8(mysql_stmt_error(m_stmt)));
    m_data.resize(0);
    m_ends.clear();   // keeps the capacity for the next batch
    return true;
}
