#include "core/buildobjlj.h"
#include "core/codepage.h"
#include "core/config.h"
#include "core/db.h"
#include "core/htmlviewer.h"
#include "core/number.h"
#include "core/session.h"
#include "core/text.h"
#include "support/testenv.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QLineEdit>
#include <QMenuBar>
#include <QSqlQueryModel>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>

using namespace testenv;

namespace {
QString formatted(const QString &value, short width, short *widthBack = nullptr)
{
    QString v = value;
    short w = width;
    const QString text = FormatCastka(v, w);
    EXPECT_EQ(v, value) << "the value is left as it was";
    if (widthBack)
        *widthBack = w;
    return text;
}

QString blanks(int n) { return QString(n, QLatin1Char(' ')); }
} // namespace

// --- amounts ----------------------------------------------------------------------

TEST(FormatCastka, PaddedTextAndTheWidthGivenBack)
{
    // (value, width, blanks, digits, width given back; -1: not checked). Nothing to read is
    // zero. "1234,5" is six long: the width loses six, then the plain "1234,5,50" (nine) is
    // the least it may be. The sign stands ahead of the padding and comes from the amount
    // before rounding: a tiny debit stays a debit.
    const struct { const char *value; short width; int blanks; const char *digits; short back; } cases[] = {
        {"", 12, 8, "0,00", 12},   {"0", 12, 8, "0,00", 12},  {"abc", 12, 8, "0,00", 12}, {".", 12, 8, "0,00", 12},
        {",", 12, 8, "0,00", 12},  {"  ", 12, 8, "0,00", 12}, {"-", 12, 8, "0,00", 12},
        {"1234.5", 14, 1, "1 234,50", 9},                      {"1234,5", 14, 1, "1 234,50", -1},
        {"1 234 567,891", 0, 0, "1 234 567,89", -1},           {"123456789012,34", 0, 0, "123 456 789 012,34", -1},
        {"12abc", 0, 0, "12,00", -1},                          {"1,5e3", 0, 0, "1 500,00", -1},
        {"-0.5", 12, 6, "-0,50", 10},                          {"-1 234,50", 20, 6, "-1 234,50", -1},
        {"-0,001", 12, 8, "-0,00", -1},
        // The width loses the amount's length as the program's own rule counts it.
        {"5", 20, 16, "5,00", 20},          {"10", 20, 14, "10,00", 19},        {"100", 20, 12, "100,00", 18},
        {"1,5", 20, 14, "1,50", 18},        {"1000", 20, 8, "1 000,00", 16},    {"10000", 20, 6, "10 000,00", 15},
        {"100000", 20, 4, "100 000,00", 14}, {"1000000", 20, 0, "1 000 000,00", 12},
        {"10000000", 20, 0, "10 000 000,00", 11}, {"100000000", 20, 0, "100 000 000,00", 10},
        {"1000000000", 20, 4, "1 000 000 000,00", 20},
    };
    for (const auto &c : cases) {
        short w = 0;
        const QString digits = QString::fromLatin1(c.digits);
        const QString expected = digits.startsWith('-') ? "-" + blanks(c.blanks) + digits.mid(1) : blanks(c.blanks) + digits;
        EXPECT_EQ(formatted(QString::fromLatin1(c.value), c.width, &w), expected) << c.value;
        if (c.back >= 0)
            EXPECT_EQ(w, c.back) << c.value;
    }
}

TEST(FormatCastka, TwoDecimalsAndHalfHellersToEven)
{
    // One decimal digit means tens of hellers. Ties go to the even heller, large amounts
    // too: their products lie further from .5 than those of small ones. FormatAmount is
    // the unpadded form the tables store: the sign by the digits.
    const std::pair<const char *, const char *> cases[] = {
        {"0,5", "0,50"},   {"3,1", "3,10"},   {"3,05", "3,05"},         {"3,25", "3,25"},
        {"0,01", "0,01"},  {"7", "7,00"},     {"0,125", "0,12"},        {"0,375", "0,38"},
        {"-0,125", "-0,12"},                  {"999,995", "1 000,00"},  {"290766,915", "290 766,92"},
        {"-335061,465", "-335 061,46"},       {"289794066371,475", "289 794 066 371,48"},
        {"290766,9149", "290 766,91"},        {"-28505,5", "-28 505,50"}, {"", "0,00"},
    };
    for (const auto &[value, expected] : cases)
        EXPECT_EQ(FormatAmount(QString::fromUtf8(value)), expected) << value;
    EXPECT_EQ(FormatAmount(-616.5), "-616,50");
    EXPECT_EQ(FormatAmount(1973300.15), "1 973 300,15");
}

TEST(FormatCastka, WidthReusedAndTooSmall)
{
    // A caller that reuses its variable gets a narrower column each time.
    QString v = "1000";
    short w = 20;
    FormatCastka(v, w);
    FormatCastka(v, w);
    EXPECT_EQ(w, 12);
    // A width too small for the amount grows to its plain length; nothing is cut off.
    w = 0;
    EXPECT_EQ(FormatCastka(v, w), "1 000,00");
    EXPECT_EQ(w, 5);
    w = SHRT_MIN;
    EXPECT_EQ(FormatCastka(v, w), "1 000,00");
}

TEST(FormatCastka, BigAmountsKeepTheirDigits)
{
    // Beyond the mask's four groups the first group takes the rest.
    EXPECT_EQ(formatted("1234567890123,45", 0), "1234 567 890 123,45");
    short w = 0;
    EXPECT_EQ(formatted("1e15", 30, &w), blanks(3) + "1000000 000 000 000,00");
    EXPECT_EQ(w, 25);   // "1E+15" is five characters long
    EXPECT_EQ(FormatAmount(QString("12345678901234,57")), "12345 678 901 234,60");   // fifteen digits are known
    // Fifteen digits, then zeros: 301 digits, three blanks, the decimals.
    const QString huge = formatted("1e300", 0);
    EXPECT_EQ(huge.size(), 301 + 3 + 3);
    EXPECT_TRUE(huge.startsWith("1000000000000000000000"));
    EXPECT_TRUE(huge.endsWith("000 000 000,00"));
    EXPECT_EQ(formatted("1e999", 12), blanks(8) + "0,00");
    EXPECT_EQ(formatted(QString(5000, QLatin1Char('9')).prepend("x"), 4), "0,00");
}

// --- packed fields ---------------------------------------------------------------

TEST(GetField, PicksPiecesFromZero)
{
    struct Case {
        const char *text;
        short index;
        short sep;   // 0: the default "#"
        const char *expected;
    };
    const Case cases[] = {
        {"a#b#c", 0, 0, "a"},  {"a#b#c", 1, 0, "b"}, {"a#b#c", 2, 0, "c"}, {"a#b#c", 3, 0, ""},
        {"a#b#c", -1, 0, ""},  {"", 0, 0, ""},       {"###", 1, 0, ""},    {"###", 3, 0, ""},
        {"a,b", 1, ',', "b"},  {"Příliš~žluťoučký~kůň", 2, '~', "kůň"},    {"ařbřc", 1, short(u'ř'), "b"},
        {"a~b", 0, 0, "a~b"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(GetField(QString::fromUtf8(c.text), c.index, c.sep), QString::fromUtf8(c.expected))
            << c.text << " " << c.index;

    QStringList pieces;
    for (int i = 0; i < 30000; ++i)
        pieces << QString::number(i);
    const QString huge = pieces.join('#');
    EXPECT_EQ(GetField(huge, 29999), "29999");
    EXPECT_EQ(GetField(huge, 12345), "12345");
    EXPECT_EQ(GetField(huge, SHRT_MAX), "");
}

TEST(CountSep, CountsEachSeparatorOnce)
{
    // Each find leaves a "$" behind, which may join the next one: "xx$" holds "x$" twice.
    const std::tuple<const char *, const char *, int> cases[] = {
        {"", ",", 0},        {"abc", ",", 0},  {"###", "#", 3},    {"12,34,", ",", 2}, {"aaa", "aa", 1},
        {"č~ř~ž", "~", 2},   {"ařbřc", "ř", 2}, {"a$b", "$", 0},    {"abc", "", 0},     {"$$$$", "$$", 3},
        {"xx$", "x$", 2},
    };
    for (const auto &[text, sep, count] : cases)
        EXPECT_EQ(CountSep(QString::fromUtf8(text), QString::fromUtf8(sep)), count) << text << " " << sep;
    EXPECT_EQ(CountSep(QString(40000, ','), ","), SHRT_MAX);
}

TEST(IsNumberText, PlainNumbersAndWhatItWritesBack)
{
    // (text, a number?, the text written back; null: not checked). Blank text is not
    // touched; only blanks make a text blank: character 160 alone passes, a tab does not.
    // Digits of another script are not digits here.
    const QChar nbsp(0xA0);
    const std::tuple<QString, bool, QString> cases[] = {
        {"1 234,5", true, QString("1") + nbsp + "234.5"}, {"1,2,3", false, "1.2.3"}, {"-12", true, "12"},
        {"12a", false, {}},  {"1\t2", false, {}},  {"1e5", false, {}},  {"+1", false, {}},
        {"", false, ""},     {"   ", false, "   "}, {QString(nbsp), true, {}},
        {" \t ", false, QString(nbsp) + "\t" + nbsp},  {"١٢", false, {}},
    };
    for (const auto &[text, number, back] : cases) {
        QString t = text;
        EXPECT_EQ(IsNumberView(text), number) << text.toStdString();
        EXPECT_EQ(IsNumberText(t), number) << text.toStdString();
        if (!back.isNull())
            EXPECT_EQ(t, back) << text.toStdString();
    }
}

TEST(DateTwoDigits, PadsDayAndMonth)
{
    const std::pair<const char *, const char *> cases[] = {
        {"1.2.2024", "01.02.2024"}, {"12.11.2024", "12.11.2024"}, {"1.2.24", "01.02.24"},
        {"", ""},                   {"1.2", "01.02"},             {"x", "0x"},
    };
    for (const auto &[date, expected] : cases)
        EXPECT_EQ(DateTwoDigits(date), expected) << date;
}

// --- grant filters ------------------------------------------------------------------

TEST(GrantFilter, LikeTermsArchivTermsNeedACommaAndHugeLists)
{
    // (filter, like terms, archiv terms): the trailing comma adds an empty term.
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"12", "_GRANT like '12%'", ""},
        {"", "_GRANT like '%'", ""},
        {"12,34", "_GRANT like '12%' or _GRANT like '34%'",
         "(_GRANT = '12' AND archiv<>'1') or (_GRANT = '34' AND archiv<>'1')"},
        {"12,", "_GRANT like '12%' or _GRANT like '%'",
         "(_GRANT = '12' AND archiv<>'1') or (_GRANT = '' AND archiv<>'1')"},
    };
    for (const auto &[filter, like, archiv] : cases) {
        EXPECT_EQ(BuildGrantLike(filter), like) << filter;
        EXPECT_EQ(BuildGrantArchiv(filter), archiv) << filter;
    }
    // More commas than a 16-bit count holds: one term per field, and no endless loop.
    const QString commas(40000, QLatin1Char(','));
    EXPECT_EQ(BuildGrantLike(commas).count(" or "), 40000);
    EXPECT_EQ(BuildGrantArchiv(commas).count("AND archiv<>'1')"), 40001);
    EXPECT_EQ(BuildGrantLike("Ωμέγα,Москва"), "_GRANT like 'Ωμέγα%' or _GRANT like 'Москва%'");
}

TEST(GrantFilter, TermsSelectOnTheServer)
{
    FreshDatabases(false);
    const QString rows = "SELECT _GRANT FROM (SELECT '12' AS _GRANT, '0' AS archiv UNION ALL "
                         "SELECT '120', '1' UNION ALL SELECT '34', '' UNION ALL SELECT '1''2', '') t WHERE ";
    EXPECT_EQ(Column("fondarix_sys", rows + BuildGrantLike("12") + " ORDER BY 1"), QStringList({"12", "120"}));
    EXPECT_EQ(Column("fondarix_sys", rows + BuildGrantLike("12,") + " ORDER BY 1").size(), 4);
    EXPECT_EQ(Column("fondarix_sys", rows + "(" + BuildGrantArchiv("120,34") + ") ORDER BY 1"), QStringList({"34"}));
    // A quote in a filter is part of a grant number, not of the statement.
    EXPECT_EQ(Column("fondarix_sys", rows + BuildGrantLike("1'2")), QStringList({"1'2"}));
    EXPECT_EQ(Column("fondarix_sys", rows + "(" + BuildGrantArchiv("1'2,x\\") + ")"), QStringList({"1'2"}));
}

// --- lists ----------------------------------------------------------------------------

TEST(ListHasValue, SaysSoUnlessSilent)
{
    ScriptedMessages messages;
    const QStringList list = {"12", "34", "Ďábel"};
    EXPECT_TRUE(ListHasValue("34", list));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.lastText(), "Zadána hodnota  34  v seznamu již existuje, opakujte prosím volbu.");
    EXPECT_TRUE(ListHasValue("Ďábel", list, true));
    EXPECT_FALSE(ListHasValue("ďábel", list));
    EXPECT_FALSE(ListHasValue("56", list));
    EXPECT_FALSE(ListHasValue("", {}));
    EXPECT_EQ(messages.shown.size(), 1u);
}

TEST(Collections, FillFromModelAndKeys)
{
    FreshDatabases(false);
    DbConnection conn(ConnStrSys());
    ASSERT_TRUE(conn.isOpen());
    QSqlQueryModel model;
    model.setQuery(QStringLiteral("SELECT 'Žár' AS nazev, 1 AS n UNION ALL SELECT NULL, 2 UNION ALL SELECT 'b', 3"),
                   conn.db());
    QStringList list = {"first"};
    FillCollection(model, list, "nazev");
    EXPECT_EQ(list, QStringList({"first", "Žár", "", "b"}));
    FillCollection(model, list, "missing");
    EXPECT_EQ(list.size(), 4);

    const QMap<QString, QString> map = {{"Heslo", "x"}, {"Prazdne", ""}};
    EXPECT_TRUE(KeyInCollection(map, "Heslo"));
    EXPECT_TRUE(KeyInCollection(map, "HESLO"));
    EXPECT_FALSE(KeyInCollection(map, "Prazdne"));
    EXPECT_FALSE(KeyInCollection(map, "jine"));
}

TEST(RecordFind, FiltersTheRowsAndLeavesTheFilterOn)
{
    FreshDatabases(false);
    DbConnection conn(ConnStrSys());
    ASSERT_TRUE(conn.isOpen());
    QSqlQueryModel model;
    model.setQuery(QStringLiteral("SELECT '12' AS _GRANT, '0' AS archiv, 'Nováková' AS `Vyrizuje`, 5 AS n "
                                  "UNION ALL SELECT '120', '1', 'Černý', 10 "
                                  "UNION ALL SELECT '34', NULL, 'novák', 2 "
                                  "UNION ALL SELECT '56', '', NULL, 7"),
                   conn.db());
    RecordSet rows;
    rows.setSourceModel(&model);
    auto grants = [&rows] {
        QStringList g;
        for (int r = 0; r < rows.rowCount(); ++r)
            g << rows.data(rows.index(r, 0)).toString();
        return g;
    };
    EXPECT_TRUE(RecordFind(rows, "archiv='' or archiv=null or archiv='0'"));
    EXPECT_EQ(grants(), QStringList({"12", "34", "56"}));
    EXPECT_EQ(rows.currentRow(), 0);
    EXPECT_EQ(rows.recordFilter(), "archiv='' or archiv=null or archiv='0'");
    rows.setRecordFilter(QString());
    EXPECT_EQ(rows.rowCount(), 4);

    // Neither AND nor OR comes first: read from the left.
    const std::pair<QString, QStringList> finds[] = {
        {"Vyrizuje LIKE 'NOV*'", {"12", "34"}},
        {BuildGrantLike("12"), {"12", "120"}},
        {"(" + BuildGrantArchiv("120,12") + ") AND n >= 5", {"12"}},
        {"_GRANT = '34' OR _GRANT = '56' AND n > 5", {"56"}},
        {"[Vyrizuje] = 'o''brien' OR `_GRANT` <> '12' AND n < 10", {"34", "56"}},
    };
    for (const auto &[filter, kept] : finds) {
        rows.setRecordFilter(QString());
        EXPECT_TRUE(RecordFind(rows, filter)) << filter.toStdString();
        EXPECT_EQ(grants(), kept) << filter.toStdString();
    }

    // Nothing kept: false, the cursor past the end, and the filter stays on, so the next
    // search finds no rows at all until the filter is cleared.
    rows.setRecordFilter(QString());
    EXPECT_FALSE(RecordFind(rows, "_GRANT = '99'"));
    EXPECT_EQ(rows.rowCount(), 0);
    EXPECT_EQ(rows.currentRow(), -1);
    EXPECT_FALSE(RecordFind(rows, "_GRANT = '12'"));
    rows.setRecordFilter(QString());
    EXPECT_TRUE(RecordFind(rows, "_GRANT = '12'"));

    // A filter that cannot be read keeps nothing; nothing crashes on any text.
    for (const QString &bad : {QString("_GRANT ="), QString("(((x"), QString("a = 'b"), QString("neznámý = 1"),
                               QString("= = ="), QString(200, '('), QString(5000, QLatin1Char(',')), QString("Ωμέγα LIKE '*'")}) {
        rows.setRecordFilter(QString());
        EXPECT_FALSE(RecordFind(rows, bad)) << bad.left(40).toStdString();
    }
    RecordSet empty;
    EXPECT_FALSE(RecordFind(empty, "a = 1"));
}

TEST(BubbleSortNumbers, Ascending)
{
    QVector<double> numbers = {3, 1, 2, -5, 2.5, 1, 1e300, -0.0};
    QVector<double> expected = numbers;
    std::sort(expected.begin(), expected.end());
    BubbleSortNumbers(numbers);
    EXPECT_EQ(numbers, expected);
    QVector<double> none;
    BubbleSortNumbers(none);
    EXPECT_TRUE(none.isEmpty());
}

// --- files ----------------------------------------------------------------------------

TEST(NormalizePath, DoubledSeparatorsButNetworkPrefix)
{
    const std::pair<const char *, const char *> cases[] = {
        {R"(\\server\\share\\dir\file.htm)", R"(\\server\share\dir\file.htm)"},
        {R"(C:\\temp\\List.htm)", R"(C:\temp\List.htm)"},
        {"/tmp//fondarix//List.htm", "/tmp/fondarix/List.htm"},
        {"//server//share", "//server/share"},
        {"", ""},
    };
    for (const auto &[path, expected] : cases)
        EXPECT_EQ(NormalizePath(path), expected) << path;
}

TEST(SafeFileName, AccentTableAndWhatPassesThrough)
{
    EXPECT_EQ(SafeFileName(" příliš žluťoučký kůň / Ťa Ňo Ďu Ó\\x "), "PRILIS_ZLUŤOUCKY_KUŇ___ŤA_ŇO_ĎU_Ó_X");
    EXPECT_EQ(SafeFileName("Úřední Éra Ýbr"), "UREDNI_ERA_YBR");
    EXPECT_EQ(SafeFileName(""), "");
}

TEST(ReadWholeFile, LinesJoinedOrBytesAsTheyStand)
{
    const QString path = Session().TempDir + "/whole.txt";
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(ToCp1250("Řádek\r\nb\rc\nd"));
    f.close();
    EXPECT_EQ(ReadWholeFile(path, true), "Řádekbc\nd");
    EXPECT_EQ(ReadWholeFile(path, false), "Řádek\r\nb\rc\nd");

    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray(1000005, 'x') + "\r\ny");
    f.close();
    const QString long_ = ReadWholeFile(path, true);
    EXPECT_EQ(long_.size(), 1000001);
    EXPECT_TRUE(long_.endsWith("xy"));
    EXPECT_EQ(ReadWholeFile(path, false).size(), 1000008);

    EXPECT_EQ(ReadWholeFile(path + ".missing", true), "");
    EXPECT_EQ(ReadWholeFile(path + ".missing", false), "");
    EXPECT_EQ(ReadWholeFile(Session().TempDir, false), "");
}

TEST(Scramble, NumbersByPositionAndBack)
{
    EXPECT_EQ(ScrambleText("ab"), "118~118");
    EXPECT_EQ(ScrambleText("č"), QString::number(0xE8 + 21));   // its Windows-1250 code
    EXPECT_EQ(ScrambleText(""), "");
    const QString texts[] = {"Heslo čŘ€ ~ 123", QString(300, QLatin1Char(' ')) + "konec",
                             "Москва 😀", "\t\n"};
    for (const QString &t : texts) {
        const QString hidden = ScrambleText(t);
        EXPECT_FALSE(hidden.contains(' '));
        EXPECT_EQ(UnscrambleText(hidden), t);
    }
    // Damaged text gives what it can, never a failure.
    EXPECT_EQ(UnscrambleText("118~x~~99999999"), "a");
    EXPECT_EQ(UnscrambleText(""), "");
}

// --- waiting and windows ----------------------------------------------------------------

TEST(Pause, WaitsWithEventsRunning)
{
    bool fired = false;
    QTimer::singleShot(10, [&fired] { fired = true; });
    QElapsedTimer clock;
    clock.start();
    Pause(60);
    EXPECT_GE(clock.elapsed(), 59);
    EXPECT_TRUE(fired);
    Pause(-5);
}

TEST(Windows, FormOpenByTitleOrNameTopMostAndSpecialFolders)
{
    EXPECT_EQ(GetSpecialFolderPath(0), Session().WinDir);
    EXPECT_FALSE(GetSpecialFolderPath(16).isEmpty());
    EXPECT_EQ(GetSpecialFolderPath(12345), "");

    QWidget archive;
    archive.setWindowTitle("Seznam zádanek");
    QWidget studio;
    studio.setWindowTitle("Fondarix - Studio");
    QWidget firms;
    firms.setObjectName("frmFirmy");
    firms.setWindowTitle("Firmy");
    EXPECT_FALSE(IsFormOpen("frmArchObj"));
    archive.show();
    studio.show();
    firms.show();
    for (const char *open : {"frmArchObj", "frmDocPanelForm", "frmFirmy", "Firmy"})
        EXPECT_TRUE(IsFormOpen(open)) << open;
    EXPECT_FALSE(IsFormOpen("Seznam zadanek"));
    archive.hide();
    EXPECT_FALSE(IsFormOpen("frmArchObj"));

    SetTopMost(&firms, true);
    EXPECT_TRUE(firms.windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(firms.isVisible());
    SetTopMost(&firms, false);
    EXPECT_FALSE(firms.windowFlags() & Qt::WindowStaysOnTopHint);
    SetTopMost(nullptr, true);
    DragWindow(nullptr);   // no window: nothing happens, no crash
}

// --- the HTML viewer -------------------------------------------------------------------------

namespace {
QList<HtmlViewer *> viewers()
{
    QList<HtmlViewer *> found;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        if (auto *v = qobject_cast<HtmlViewer *>(w))
            found << v;
    }
    return found;
}

void closeViewers()
{
    for (HtmlViewer *v : viewers())
        delete v;
}
} // namespace

TEST(ViewHTML, ShowsWindows1250PageAndNothingForAMissingFile)
{
    FreshDatabases(true);
    LoginAs(1);
    closeViewers();
    ViewHTML(Session().TempDir + "/nothing-here.htm");
    ViewHTML(QString());
    EXPECT_TRUE(viewers().isEmpty());
    qputenv("FONDARIX_NO_BROWSER", "1");
    const QString path = Session().TempDir + "/List.htm";
    ASSERT_TRUE(WriteFileCp1250(path, "<html><head><title>Přehled čerpání</title></head><body>"
                                      "<h2>Čerpání grantu 12</h2><p>Žluťoučký kůň úpěl ďábelské ódy</p>"
                                      "<table border=1><tr><td>Materiál</td><td>1 234,50</td></tr></table>"
                                      "</body></html>"));
    ViewHTML(Session().TempDir + "//List.htm");
    ASSERT_EQ(viewers().size(), 1);
    HtmlViewer *viewer = viewers().first();
    EXPECT_TRUE(viewer->isVisible());
    EXPECT_EQ(viewer->windowTitle(), "Přehled čerpání");
    EXPECT_TRUE(viewer->browser()->toPlainText().contains("Žluťoučký kůň úpěl ďábelské ódy"));
    EXPECT_EQ(viewer->path(), path);
    EXPECT_EQ(viewer->findChild<QLineEdit *>("txtAddress")->text(), path);
    EXPECT_EQ(viewer->geometry().topLeft(), QPoint(10, 10));
    EXPECT_EQ(viewer->width(), 780);
    EXPECT_EQ(viewer->height(), QGuiApplication::primaryScreen()->size().height() - 50);
    EXPECT_FALSE(Session().ScreenSize.isEmpty());
    EXPECT_NE(viewer->findChild<QMenuBar *>("menuBar"), nullptr);   // the default setting is "1"

    QString printed;
    QWidget *printParent = nullptr;
    HtmlViewer::setPrintHandler([&](QTextDocument *doc, QWidget *parent) {
        printed = doc->toPlainText();
        printParent = parent;
    });
    viewer->findChild<QAction *>("actPrint")->trigger();
    HtmlViewer::setPrintHandler({});
    EXPECT_TRUE(printed.contains("Čerpání grantu 12"));
    EXPECT_EQ(printParent, viewer);
    viewer->findChild<QAction *>("actOpenBrowser")->trigger();   // no browser under tests

    SaveScreen(viewer, "html_viewer");
    closeViewers();

    // The user's setting "0" takes the menu bar away.
    QString off = "0";
    GetSetToolBar(off);
    ViewHTML(path);
    ASSERT_EQ(viewers().size(), 1);
    EXPECT_EQ(viewers().first()->findChild<QMenuBar *>("menuBar"), nullptr);
    closeViewers();
}

TEST(ScanNumber, ReadsLikeTheProgramsNumberRule)
{
    // Blanks, tabs and line feeds are skipped; a carriage return ends the number; out of
    // range reads as nothing.
    const std::pair<const char16_t *, double> cases[] = {
        {u"1 234.50", 1234.5},  {u"1 234,50", 1234.0}, {u"  -12.5abc", -12.5},   {u"+7", 7.0},
        {u"1.2.3", 1.2},        {u"2.5E3x", 2500.0},   {u"2.5E", 2.5},           {u"\t\n 42", 42.0},
        {u"1\t2\n3", 123.0},    {u"12\r3", 12.0},      {u"\r5", 0.0},            {u"1 e - 0 2", 0.01},
        {u"1e0000001", 10.0},   {u"1e-99999999", 0.0}, {u"abc", 0.0},            {u"-", 0.0},
        {u"", 0.0},             {u"1e999", 0.0},
    };
    for (const auto &[text, value] : cases)
        EXPECT_DOUBLE_EQ(ScanNumber(text), value) << QString::fromUtf16(text).toStdString();
    // A number longer than the small buffer still reads whole.
    const QString longNumber = QString(100, '1') + ".5";
    EXPECT_DOUBLE_EQ(ScanNumber(longNumber), std::stod(longNumber.toStdString()));
}

TEST(RoundHalfEven, TiesGoToTheEvenDigit)
{
    const std::tuple<double, int, double> cases[] = {
        {0.125, 2, 0.12},          {0.135, 2, 0.14},          {2.5, 0, 2.0},
        {-2.5, 0, -2.0},           {1.26, 1, 1.3},            {2.675, 2, 2.68},
        {290766.915, 2, 290766.92}, {650264669.325, 2, 650264669.32},
        {650264669.3251, 2, 650264669.33},                    {1234567.85, 1, 1234567.8},
    };
    for (const auto &[value, places, rounded] : cases)
        EXPECT_DOUBLE_EQ(RoundHalfEven(value, places), rounded) << value << " " << places;
}

TEST(BuildObjLJ, WritesWindows1250LinesWithCrLfAndReportsAFolderThatIsNotThere)
{
    const QString path = QDir::temp().filePath(QStringLiteral("fx-buildobjlj-%1.htm").arg(QCoreApplication::applicationPid()));
    BuildObjLJ out;
    ASSERT_TRUE(out.Open(path));
    out.Line(QStringLiteral("<td>Čerpání</td>"));
    out.Line(QString());
    out.Line(QStringLiteral("€ ☺"));
    ASSERT_TRUE(out.Close());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("<td>\xC8" "erp\xE1n\xED</td>\r\n\r\n\x80 ?\r\n"));
    file.remove();

    BuildObjLJ missing;
    EXPECT_FALSE(missing.Open(QStringLiteral("/nonexistent-folder/List.htm")));
    EXPECT_TRUE(missing.Error().startsWith(QStringLiteral("Soubor /nonexistent-folder/List.htm nelze zapsat")));
}
