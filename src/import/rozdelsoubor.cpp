#include "import/rozdelsoubor.h"

#include "core/msg.h"
#include "core/session.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
constexpr int ChunkLines = 500;         // the counter at which a new chunk begins
constexpr qint64 LineBuffer = 100000;   // longest line taken; the rest is an export error

void deleteSeries()
{
    for (int n = 1; QFile::exists(ChunkFileName(n)); ++n)
        QFile::remove(ChunkFileName(n));
}

// Reads one line without its end; a line longer than the buffer is cut and the rest skipped.
QByteArray readLine(QFile &in)
{
    QByteArray line = in.readLine(LineBuffer + 1);
    if (!line.endsWith('\n') && !in.atEnd()) {
        char c = 0;
        while (in.getChar(&c) && c != '\n') {
        }
    }
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return line;
}

// A half-written series would be imported as if it were the whole file: drop it and say so.
int failed(const QFile &out)
{
    MsgBox(QStringLiteral("Nelze zapsat pracovní soubor ") + QDir::toNativeSeparators(out.fileName()) +
               QStringLiteral(", import nelze provést."),
           MsgCritical);
    deleteSeries();
    return 0;
}

// The file is in the single-byte code page of the export, so the cleaning works on bytes.
QByteArray cleaned(QByteArray line)
{
    line.removeIf([](char c) { return c == '"' || static_cast<unsigned char>(c) == 255; });
    line.replace(',', '.');
    return line;
}
} // namespace

QString ChunkFileName(int n)
{
    return Session().TempDir + QStringLiteral("/IF000") + QString::number(n) + QStringLiteral(".txt");
}

int RozdelSoubor(const QString &fileName)
{
    deleteSeries();
    QFile in(fileName);
    if (!QFileInfo(fileName).isFile() || !in.open(QIODevice::ReadOnly))
        return 0;
    QDir().mkpath(Session().TempDir);

    int lines = 0;
    int counter = 0;
    int chunk = 0;
    QFile out;
    while (!in.atEnd()) {
        const QByteArray line = readLine(in);
        ++lines;
        ++counter;
        if (counter == 1 || counter == ChunkLines) {
            counter = 1;
            if (out.isOpen() && !out.flush())
                return failed(out);
            out.close();
            out.setFileName(ChunkFileName(++chunk));
            if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
                return failed(out);
        }
        if (out.write(cleaned(line) + "\r\n") < 0)
            return failed(out);
    }
    if (out.isOpen() && !out.flush())
        return failed(out);
    out.close();
    return lines;
}
