#include "core/session.h"
#include "import/rozdelsoubor.h"
#include "samplefiles.h"
#include "support/testenv.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {
QByteArray numberedLines(int count)
{
    QByteArray text;
    for (int i = 1; i <= count; ++i)
        text += "radek " + QByteArray::number(i) + "\r\n";
    return text;
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

TEST(RozdelSoubor, ChunkNamesAreUnpadded)
{
    EXPECT_TRUE(ChunkFileName(1).endsWith("/IF0001.txt"));
    EXPECT_TRUE(ChunkFileName(12).endsWith("/IF00012.txt"));
    EXPECT_TRUE(ChunkFileName(1).startsWith(Session().TempDir));
}

TEST(RozdelSoubor, FourHundredNinetyNineLinesMakeOneChunkFiveHundredTwo)
{
    EXPECT_EQ(RozdelSoubor(WriteSample("in499.txt", numberedLines(499))), 499);
    EXPECT_EQ(chunkCount(), 1);
    EXPECT_EQ(chunkLines(1).size(), 499);
    EXPECT_EQ(chunkLines(1).last(), "radek 499");

    EXPECT_EQ(RozdelSoubor(WriteSample("in500.txt", numberedLines(500))), 500);
    EXPECT_EQ(chunkCount(), 2);
    EXPECT_EQ(chunkLines(1).size(), 499);
    EXPECT_EQ(chunkLines(2), QList<QByteArray>{"radek 500"});

    // Every chunk after the first holds 499 lines as well.
    EXPECT_EQ(RozdelSoubor(WriteSample("in1000.txt", numberedLines(1000))), 1000);
    EXPECT_EQ(chunkCount(), 3);
    EXPECT_EQ(chunkLines(2).size(), 499);
    EXPECT_EQ(chunkLines(2).first(), "radek 500");
    EXPECT_EQ(chunkLines(3), (QList<QByteArray>{"radek 999", "radek 1000"}));
}

TEST(RozdelSoubor, OldSeriesIsDeletedFirst)
{
    RozdelSoubor(WriteSample("big.txt", numberedLines(1200)));
    ASSERT_EQ(chunkCount(), 3);
    EXPECT_EQ(RozdelSoubor(WriteSample("small.txt", "a\r\nb")), 2);   // last line without an end counts
    EXPECT_EQ(chunkCount(), 1);
    EXPECT_EQ(chunkLines(1), (QList<QByteArray>{"a", "b"}));

    // A missing input still clears the old series.
    EXPECT_EQ(RozdelSoubor(Session().TempDir + "/nothing-here.txt"), 0);
    EXPECT_EQ(chunkCount(), 0);
    // An empty file has no lines and gives no chunk; a folder is no input.
    EXPECT_EQ(RozdelSoubor(WriteSample("empty.txt", "")), 0);
    EXPECT_EQ(chunkCount(), 0);
    EXPECT_EQ(RozdelSoubor(Session().TempDir), 0);
}

TEST(RozdelSoubor, LinesAreCleanedForTheImporter)
{
    // Windows-1250 bytes pass unchanged; quotes and code 255 go, commas become points.
    const QByteArray line = "01.02.2024\t\"Faktura, \x8a" "koda\"\t1 234,50\t\xff" "501100\r\n";
    EXPECT_EQ(RozdelSoubor(WriteSample("clean.txt", line + "\r\n")), 2);
    const QList<QByteArray> lines = chunkLines(1);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0], QByteArray("01.02.2024\tFaktura. \x8a" "koda\t1 234.50\t501100"));
    EXPECT_EQ(lines[1], "");   // an empty line is a line
}

TEST(RozdelSoubor, OverlongLineIsCutAndBinaryInputSurvives)
{
    QByteArray text(150000, 'x');
    text += "\r\nnext\r\n";
    EXPECT_EQ(RozdelSoubor(WriteSample("long.txt", text)), 2);
    const QList<QByteArray> lines = chunkLines(1);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].size(), 100000);
    EXPECT_EQ(lines[1], "next");

    const QByteArray binary = BinaryBytes(20000);
    const int lines2 = RozdelSoubor(WriteSample("binary.bin", binary));
    EXPECT_EQ(lines2, binary.count('\n') + (binary.endsWith('\n') ? 0 : 1));
    EXPECT_GE(chunkCount(), 1);
}
