#include "import/rozdelsoubor.h"

#include "core/msg.h"
#include "core/session.h"
#include "import/linereader.h"

#include <QDir>
#include <QFile>
#include <QDateTime>
#include <QFileInfo>
#include <QStringDecoder>

namespace {
constexpr int ChunkLines = 500;         // the counter at which a new chunk begins

void deleteSeries()
{
    for (int n = 1; QFile::exists(ChunkFileName(n)); ++n)
        QFile::remove(ChunkFileName(n));
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
    // NUL bytes go too: no export has them, and they would end a text on the way.
    line.removeIf([](char c) { return c == '"' || c == 0 || static_cast<unsigned char>(c) == 255; });
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
    LineReader reader(in);
    QByteArray line;
    while (reader.next(line)) {
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

bool WalkChunks(int lines, int every, const std::function<bool(const QString &record)> &record,
                const std::function<bool(double percent, const QString &chunkTime)> &tick)
{
    QStringDecoder decode("windows-1250");
    const double step = lines > 0 ? 100.0 / lines : 100.0;
    double percent = 0;
    int sinceTick = 0;
    for (int n = 1; QFile::exists(ChunkFileName(n)); ++n) {
        QFile chunk(ChunkFileName(n));
        if (!chunk.open(QIODevice::ReadOnly)) {
            MsgBox(QStringLiteral("Nelze číst pracovní soubor ") + QDir::toNativeSeparators(chunk.fileName()) + QLatin1Char('.'),
                   MsgCritical);
            return false;
        }
        const QString time = QFileInfo(chunk).lastModified().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
        LineReader reader(chunk);
        QByteArray bytes;
        while (reader.next(bytes) && !bytes.isEmpty()) {
            if (!record(decode(bytes)))
                return false;
            percent = std::min(100.0, percent + step);
            if (++sinceTick == every) {
                sinceTick = 0;
                if (!tick(percent, time))
                    return false;
            }
        }
    }
    return true;
}
