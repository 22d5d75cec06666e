#include "core/session.h"
#include "import/rozdelsoubor.h"
#include "samplefiles.h"
#include "support/testenv.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {
QList<QByteArray> numbered(int count)
{
    QList<QByteArray> lines;
    for (int i = 1; i <= count; ++i)
        lines << "radek " + QByteArray::number(i);
    return lines;
}

QList<QByteArray> chunkLines(int n)
{
    QFile f(ChunkFileName(n));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = f.readAll().split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray &l : lines)
        l.chop(1);   // the CR
    return lines;
}

int chunkCount()
{
    int n = 0;
    while (QFile::exists(ChunkFileName(n + 1)))
        ++n;
    return n;
}
} // namespace

TEST(RozdelSoubor, ChunksOf499UnpaddedNamesOldSeriesDeletedFirst)
{
    EXPECT_TRUE(ChunkFileName(1).endsWith("/IF0001.txt"));
    EXPECT_TRUE(ChunkFileName(12).endsWith("/IF00012.txt"));
    EXPECT_TRUE(ChunkFileName(1).startsWith(Session().TempDir));

    // Every chunk but the last holds 499 lines, in order: 500 lines make two chunks.
    for (const auto &[lines, chunks] : {std::pair{499, 1}, {500, 2}, {1000, 3}, {1200, 3}}) {
        EXPECT_EQ(RozdelSoubor(WriteSample("in.txt", numbered(lines).join("\r\n") + "\r\n")), lines);
        ASSERT_EQ(chunkCount(), chunks) << lines;
        QList<QByteArray> all;
        for (int c = 1; c <= chunks; ++c) {
            if (c < chunks)
                EXPECT_EQ(chunkLines(c).size(), 499) << lines;
            all += chunkLines(c);
        }
        EXPECT_EQ(all, numbered(lines));
    }
    EXPECT_EQ(RozdelSoubor(WriteSample("small.txt", "a\r\nb")), 2);   // last line without an end counts
    EXPECT_EQ(chunkCount(), 1);
    EXPECT_EQ(chunkLines(1), (QList<QByteArray>{"a", "b"}));

    // A missing input still clears the old series; an empty file gives no chunk; a folder is no input.
    EXPECT_EQ(RozdelSoubor(Session().TempDir + "/nothing-here.txt"), 0);
    EXPECT_EQ(chunkCount(), 0);
    EXPECT_EQ(RozdelSoubor(WriteSample("empty.txt", "")), 0);
    EXPECT_EQ(chunkCount(), 0);
    EXPECT_EQ(RozdelSoubor(Session().TempDir), 0);
}

TEST(RozdelSoubor, LinesCleanedOverlongCutBinarySurvives)
{
    // Windows-1250 bytes pass unchanged; quotes and code 255 go, commas become points.
    const QByteArray line = "01.02.2024\t\"Faktura, \x8a" "koda\"\t1 234,50\t\xff" "501100\r\n";
    EXPECT_EQ(RozdelSoubor(WriteSample("clean.txt", line + "\r\n")), 2);
    EXPECT_EQ(chunkLines(1), (QList<QByteArray>{"01.02.2024\tFaktura. \x8a" "koda\t1 234.50\t501100", ""}));

    QByteArray text(150000, 'x');
    EXPECT_EQ(RozdelSoubor(WriteSample("long.txt", text + "\r\nnext\r\n")), 2);
    EXPECT_EQ(chunkLines(1), (QList<QByteArray>{QByteArray(100000, 'x'), "next"}));

    // CR LF, LF and CR alone each end one line; NUL bytes are dropped.
    for (const auto &[content, lines] : {std::pair{QByteArray("a\rb\r\nc\nd"), 4}, {QByteArray("a\r\n\r\nb\r\n"), 3},
                                         {QByteArray("\r"), 1}, {QByteArray("a\n\rb"), 3}}) {
        EXPECT_EQ(RozdelSoubor(WriteSample("ends.txt", content)), lines) << content.constData();
    }
    EXPECT_EQ(RozdelSoubor(WriteSample("nul.txt", QByteArray("50\x00" "1\r\n", 6))), 1);
    EXPECT_EQ(chunkLines(1).value(0), "501");

    EXPECT_GT(RozdelSoubor(WriteSample("binary.bin", BinaryBytes(20000))), 0);
    EXPECT_GE(chunkCount(), 1);
}
