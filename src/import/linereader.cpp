#include "import/linereader.h"

#include <cstring>

bool LineReader::next(QByteArray &line)
{
    constexpr qint64 BlockSize = 1 << 20;
    line.clear();
    bool any = false;
    for (;;) {
        if (m_pos >= m_block.size()) {
            m_block = m_file.read(BlockSize);
            m_pos = 0;
            if (m_block.isEmpty())
                return any;
        }
        if (m_afterCr) {
            m_afterCr = false;
            if (m_block.at(m_pos) == '\n') {
                ++m_pos;
                continue;
            }
        }
        any = true;
        const char *data = m_block.constData() + m_pos;
        const qsizetype left = m_block.size() - m_pos;
        qsizetype end = 0;
        while (end < left && data[end] != '\n' && data[end] != '\r')
            ++end;
        const qsizetype room = LineBuffer - line.size();
        if (room > 0)
            line.append(data, qMin(end, room));
        if (end < left) {
            m_afterCr = data[end] == '\r';
            m_pos += end + 1;
            return true;
        }
        m_pos = m_block.size();
    }
}
