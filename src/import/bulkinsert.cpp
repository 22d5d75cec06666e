#include "import/bulkinsert.h"

#include "core/db.h"

namespace {
// Rows of one execution. The server hands out the ids of one execution in runs of 1, 2, 4, ...
// 512: with 1023 rows a full batch uses all it was given and the ids stay without gaps.
constexpr int RowsPerBatch = 1023;
} // namespace

BulkInsert::BulkInsert(DbConnection &conn, const QString &head, int columns, const QString &tail)
    : m_conn(conn), m_columns(columns)
{
    m_sql = head + QStringLiteral(" VALUES (") + QStringList(columns, QStringLiteral("?")).join(QLatin1Char(','))
            + QLatin1Char(')') + tail;
    m_ends.reserve(size_t(RowsPerBatch) * size_t(columns));
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
    std::vector<std::string_view> values(m_ends.size());
    for (size_t i = 0; i < m_ends.size(); ++i) {
        const qsizetype begin = i == 0 ? 0 : m_ends[i - 1];
        values[i] = std::string_view(m_data.constData() + begin, size_t(m_ends[i] - begin));
    }
    if (!m_conn.execArray(m_sql, m_columns, values)) {
        m_error = m_conn.errorText();
        return false;
    }
    m_data.resize(0);
    m_ends.clear();   // keeps the capacity for the next batch
    return true;
}
