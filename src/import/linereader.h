#pragma once
// Lines of an export file, whatever ends them: CR LF, LF alone or CR alone. A line longer
// than the buffer of the format is cut there and the rest of it skipped, so no input makes
// the reader hold more than one block and one line.

#include <QByteArray>
#include <QFile>

class LineReader {
public:
    static constexpr qsizetype LineBuffer = 100000;

    explicit LineReader(QFile &file) : m_file(file) {}
    // The next line without its end; false at the end of the file.
    bool next(QByteArray &line);

private:
    QFile &m_file;
    QByteArray m_block;
    qsizetype m_pos = 0;
    bool m_afterCr = false;   // a CR ended the last line: a LF right after it belongs to it
};
