#include "core/buildobjlj.h"
#include "core/codepage.h"
#include "core/session.h"
#include "fondarix_paths.h"
#include "grants/grantreports.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
QByteArray ReadBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The first line where two files differ, shown from both.
std::string FirstDifference(const QByteArray &actual, const QByteArray &expected)
{
    const QList<QByteArray> a = actual.split('\n'), e = expected.split('\n');
    for (qsizetype i = 0; i < std::max(a.size(), e.size()); ++i)
        if (a.value(i) != e.value(i))
            return "line " + std::to_string(i + 1) + "\n  actual:   " + a.value(i).toStdString() +
                   "\n  expected: " + e.value(i).toStdString();
    return {};
}

QString Write(const std::function<void(BuildObjLJ &)> &body)
{
    QString path, error;
    EXPECT_TRUE(WriteReport(body, &path, &error)) << error.toStdString();
    return path;
}

const GrantHead Grant1201{1, "1201", "2 450 000,00", "1 800 000,00", "prof. MUDr. Karel Veselý, CSc.", "1 667 466,69",
                          "510 Klinická farmakologie"};

QVector<GroupRow> Groups()
{
    return {{1, "1201", "501,502", "Materiál a energie", "539 000,00", "97 020,00", "441 980,00", "82,00"},
            {2, "1201", "512*", "Cestovné", "98 000,00", "81 951,11", "16 048,89", "16,40"},
            {3, "1201", "-602*", "Tržby & <výnosy>", "0,00", "-12 000,00", "12 000,00", "0,00"}};
}
} // namespace

TEST(Reports, GroupsOfAGrantByteForByteAsExpected)
{
    const QString path = Write([](BuildObjLJ &html) { CreateSestavuUctu(html, Grant1201, Groups(), "2"); });
    EXPECT_EQ(QFileInfo(path).fileName(), "List.htm");
    EXPECT_EQ(QFileInfo(path).absolutePath(), QFileInfo(Session().TempDir).absoluteFilePath());
    const QByteArray actual = ReadBytes(path);
    // A copy beside the other samples, for whoever wants to open it.
    QFile::remove(SamplesDir("grants") + "/sestava_uctu.htm");
    QFile::copy(path, SamplesDir("grants") + "/sestava_uctu.htm");
    const QByteArray expected = ReadBytes(QStringLiteral(FONDARIX_SOURCE_DIR "/tests/grants/expected/sestava_uctu.htm"));
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_TRUE(actual == expected) << FirstDifference(actual, expected);
}

TEST(Reports, SizesFiltersEmptyGrantsAndOverwriting)
{
    const struct { const char *size, *font; } sizes[] = {{"0", "1"}, {"", "1"}, {" 3 ", "3"}, {"7", "7"}};
    for (const auto &s : sizes) {
        EXPECT_EQ(ReportFontSize(s.size), s.font) << s.size;
        const QString html = ReadFileCp1250(Write([&](BuildObjLJ &h) { CreateSestavuUctu(h, Grant1201, Groups(), s.size); }));
        EXPECT_TRUE(html.contains(QStringLiteral("<font size=%1>GRANT : </font>").arg(s.font))) << s.size;
        EXPECT_FALSE(html.contains("<font size=0>")) << s.size;
    }
    // The first group's filter as read: "501,502" shows "501, 502".
    QString html = ReadFileCp1250(Write([](BuildObjLJ &h) { CreateSestavuUctu(h, Grant1201, Groups(), "2"); }));
    EXPECT_TRUE(html.contains("<td><em><font size=2>501, 502</font></em></td>"));
    EXPECT_TRUE(html.contains("Tržby &amp; &lt;výnosy&gt;"));

    // A grant without groups: the head, the heading and a total row of zeros; the second report
    // replaces the first in the same file.
    html = ReadFileCp1250(Write([](BuildObjLJ &h) { CreateSestavuUctu(h, Grant1201, {}, "2"); }));
    EXPECT_FALSE(html.contains("Materiál"));
    EXPECT_TRUE(html.contains("<font size=2>Celkem za GRANT, Kč</font></td>\r\n"
                              "    <td align=right style='border-top:2px solid black;border-bottom:1px solid black'>"
                              "<font size=2>0,00</font></td>"));
    EXPECT_EQ(html.count(">0,00</font>"), 3);

    // Reports on no rows write nothing at all.
    BuildObjLJ none;
    const QString empty = Session().TempDir + "/empty.htm";
    ASSERT_TRUE(none.Open(empty));
    GrantListReport(none, {}, "", "", "2");
    SelectionReport(none, ListSpec{}, SelectionSums{});
    none.Close();
    EXPECT_TRUE(ReadBytes(empty).isEmpty());
}

TEST(Reports, GrantListSelectionAndBudgetsPerGrant)
{
    GrantHead other{2, "2301", "4 100 000,00", "3 000 000,00", "RNDr. Martin Procházka, Ph.D.", "1 973 300,15",
                    "520 Molekulární genetika"};
    QString html = ReadFileCp1250(Write([&](BuildObjLJ &h) { GrantListReport(h, {Grant1201, other}, "01.01.2025", "31.03.2025", "2"); }));
    EXPECT_TRUE(html.startsWith("<html>\r\n"));
    EXPECT_TRUE(html.contains("<body bgcolor=#FFFFFF>\r\n<div align=center><center>"));
    EXPECT_TRUE(html.contains("Seznam GRANTu za období 01.01.2025 - 31.03.2025"));
    // The drawdown per grant and the sums: 782 533,31 + 2 126 699,85.
    EXPECT_TRUE(html.contains("<font size=2>782 533,31</font>"));
    EXPECT_TRUE(html.contains("<font size=2>2 909 233,16</font>"));
    EXPECT_TRUE(html.contains("<font size=2>6 550 000,00</font>"));

    ListSpec list{"1201", "501, 512", "Účty~Název~Rozpočet, Kč~Čerpání, Kč~Zůstatek, Kč~%", {}, 2, "3"};
    for (const GroupRow &g : Groups())
        list.rows.append({g.ucet, g.nazev, g.plan, g.cerpani, g.zustatek, g.procent});
    html = ReadFileCp1250(Write([&](BuildObjLJ &h) {
        SelectionReport(h, list, {"1201", "prof. MUDr. Karel Veselý, CSc.", 637000, 166971.11, 470028.89});
    }));
    // Two less than the size asked; the remaining share from the whole crowns: 470 028 of 637 000.
    EXPECT_TRUE(html.contains("<font size=1>Zůstatek za výběr, %  </font></strong></td><td><em><font size=1>73,80</font>"));
    EXPECT_TRUE(html.contains("<META http-equiv=Content-Language content=cs>"));
    EXPECT_TRUE(html.contains("<font size=1>470 028,89</font>"));
    html = ReadFileCp1250(Write([&](BuildObjLJ &h) { SelectionReport(h, list, {"1201", "", 0, 5, -5}); }));
    EXPECT_TRUE(html.contains("Zůstatek za výběr, %  </font></strong></td><td><em><font size=1>0,00</font>"));

    // Budgets per grant: each grant's head, rows and sums; a grant missing from the register
    // keeps an empty head.
    QVector<GroupRow> groups = Groups();
    groups.append({9, "9999", "5*", "Ostatní", "10,00", "2,00", "8,00", "80,00"});
    html = ReadFileCp1250(Write([&](BuildObjLJ &h) { PrintSkupUctu(h, groups, {Grant1201, other}, "2"); }));
    EXPECT_EQ(html.count("GRANT -</font>"), 2);
    EXPECT_TRUE(html.contains("<td><em><font size=2>2 450 000,00 Kč</font></em></td>"));
    EXPECT_TRUE(html.contains("<td><em><font size=2>0,00 Kč</font></em></td>"));
    EXPECT_EQ(html.count("<TABLE cellpadding='3' cellspacing='0' border='0' width=700>"), 2);
}

TEST(Reports, ShownByARealBrowserEngine)
{
    const QString chromium = QStandardPaths::findExecutable("chromium-headless-shell");
    if (chromium.isEmpty())
        GTEST_SKIP() << "chromium-headless-shell is not installed";
    const QString path = Write([](BuildObjLJ &html) { CreateSestavuUctu(html, Grant1201, Groups(), "3"); });
    const QString png = QDir(SamplesDir("grants")).filePath("sestava_uctu.png");
    QFile::remove(png);
    QProcess browser;
    browser.start(chromium, {"--no-sandbox", "--disable-gpu", "--screenshot=" + png, "--window-size=900,500",
                             QUrl::fromLocalFile(path).toString()});
    ASSERT_TRUE(browser.waitForFinished(60000));
    const QImage shot(png);
    ASSERT_FALSE(shot.isNull()) << browser.readAllStandardError().toStdString();
    // The heading row's grey stands where the table begins: some pixel of it is #C0C0C0.
    bool grey = false;
    for (int y = 0; y < shot.height() && !grey; ++y)
        grey = shot.pixelColor(shot.width() / 2, y) == QColor(0xC0, 0xC0, 0xC0);
    EXPECT_TRUE(grey);
}
