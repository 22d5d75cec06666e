#include "admin/frmSysPageSetup.h"
#include "admin/page_setup.h"
#include "admin/print.h"
#include "core/config.h"
#include "core/msg.h"
#include "support/testenv.h"

#include <QFile>
#include <QLineEdit>
#include <QPageSize>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QTextDocument>
#include <QPrinter>

#include <gtest/gtest.h>

#include <utility>

using namespace testenv;

namespace {
void clearStore() { QSettings(QStringLiteral("Fondarix"), QStringLiteral("Fondarix")).clear(); }

QString stored(const char *name) { return GetSetting(PageSetupKey, QLatin1String(name)); }

QLineEdit *field(QWidget &screen, const char *name) { return Child<QLineEdit>(&screen, name); }

// Types as a user does, then leaves the field.
void retype(QLineEdit *f, const QString &text)
{
    f->setFocus();
    f->selectAll();
    QTest::keyClick(f, Qt::Key_Delete);
    QTest::keyClicks(f, text);
    emit f->editingFinished();
}

struct Word {
    QString text;
    double xMin;
    double yMin;
    double yMax;
};

// What pdftotext makes of a PDF with the given option.
QString pdftotext(const QString &option, const QString &path)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {option, path, QStringLiteral("-")});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

// Words of a PDF with their boxes, in points from the top-left corner of the page.
QList<Word> pdfWords(const QString &path)
{
    const QString html = pdftotext(QStringLiteral("-bbox"), path);
    QList<Word> words;
    static const QRegularExpression word(
        QStringLiteral("<word xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"[0-9.]+\" yMax=\"([0-9.]+)\">([^<]*)</word>"));
    for (auto it = word.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        words << Word{m.captured(4), m.captured(1).toDouble(), m.captured(2).toDouble(), m.captured(3).toDouble()};
    }
    return words;
}

Word firstWord(const QList<Word> &words, const char *text)
{
    for (const Word &w : words)
        if (w.text == QString::fromUtf8(text))
            return w;
    ADD_FAILURE() << "no word " << text;
    return {};
}
} // namespace

TEST(PageSetup, MillimetreAndInchTexts)
{
    for (const auto &[stored, mm] : {std::pair{"0,31596", "8,03"}, {"0.5", "12,7"}, {"1", "25,4"}, {"0", "0"}})
        EXPECT_EQ(MillimetresText(MarginInches(stored)), mm) << stored;
    for (const char *bad : {"abc", "-1"})
        EXPECT_DOUBLE_EQ(MarginInches(bad), 0.31596) << bad;

    for (const auto &[mm, stored] : {std::pair{"12,7", "0,50000"}, {"8", "0,31496"}}) {
        QString inches;
        EXPECT_TRUE(InchesText(mm, &inches)) << mm;
        EXPECT_EQ(inches, stored) << mm;
    }
    QString inches;
    for (const char *bad : {"8,,5", "", "100,5"})
        EXPECT_FALSE(InchesText(bad, &inches)) << bad;
    EXPECT_EQ(MarginTyped("-3 mm"), "3");
}

TEST(PageSetup, EditorSavesInInchesAndStornoSavesNothing)
{
    clearStore();
    ScriptedMessages messages;
    {
        frmSysPageSetup screen;
        EXPECT_EQ(screen.windowTitle(), "Vzhled stránky ");
        EXPECT_EQ(field(screen, "txtLeft")->text(), "8,03");
        EXPECT_EQ(field(screen, "txtBottom")->text(), "8,03");
        retype(field(screen, "txtLeft"), "15");
        field(screen, "txtHeader")->setText("Přehled");
        screen.findChild<QPushButton *>("Command1")->click();
        EXPECT_EQ(screen.result(), QDialog::Rejected);
    }
    EXPECT_EQ(stored("margin_left"), "");
    EXPECT_EQ(stored("header"), "");

    frmSysPageSetup screen;
    screen.show();
    retype(field(screen, "txtLeft"), "12.5");
    EXPECT_EQ(field(screen, "txtLeft")->text(), "12,5");
    retype(field(screen, "txtTop"), "");
    EXPECT_EQ(field(screen, "txtTop")->text(), "0");
    field(screen, "txtHeader")->setText("&w&bStrana &p z &P");
    field(screen, "txtFooter")->setText("&d");
    SaveScreen(&screen, "frmSysPageSetup");
    retype(field(screen, "txtRight"), "150");

    auto *ok = screen.findChild<QPushButton *>("cmdOk");
    ok->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].style, MsgWarning);
    EXPECT_TRUE(messages.shown[0].text.contains("Vpravo"));
    EXPECT_EQ(stored("margin_left"), "");   // nothing written while a margin is wrong

    retype(field(screen, "txtRight"), "5");
    ok->click();
    EXPECT_EQ(screen.result(), QDialog::Accepted);
    // The bottom margin is the 8,03 mm shown, not the default it came from.
    const std::pair<const char *, const char *> saved[] = {
        {"margin_left", "0,49213"}, {"margin_right", "0,19685"}, {"margin_top", "0,00000"},
        {"margin_bottom", "0,31614"}, {"header", "&w&bStrana &p z &P"}, {"footer", "&d"},
    };
    for (const auto &[name, value] : saved)
        EXPECT_EQ(stored(name), value) << name;
    // Printing reads them back as inches.
    const PageSetupValues v = ReadPageSetup();
    EXPECT_EQ(v.header, "&w&bStrana &p z &P");
    EXPECT_DOUBLE_EQ(v.left, 0.49213);
    EXPECT_DOUBLE_EQ(v.top, 0);
}

TEST(PageSetup, MailHostConfiguredElseDefault)
{
    clearStore();
    const SetPageSetup setup;
    EXPECT_EQ(setup.GetSMTPSetup(), DefaultMailHost);
    SaveSetting("Mail", "SMTP Server", " smtp.ukv-lhotka.cz ");
    EXPECT_EQ(setup.GetSMTPSetup(), "smtp.ukv-lhotka.cz");

    qunsetenv("USERDNSDOMAIN");
    EXPECT_EQ(setup.GetSMTPSetup2(), DefaultMailHost);
    qputenv("USERDNSDOMAIN", "ukv-lhotka.cz");
    EXPECT_EQ(setup.GetSMTPSetup2(), "ukv-lhotka.cz");
    qunsetenv("USERDNSDOMAIN");
    EXPECT_FALSE(setup.GetSMTPSetup3().isEmpty());
}

TEST(PagePrint, HeaderAndFooterCodes)
{
    PageContext c;
    c.title = "Čerpání grantu";
    c.url = "List.htm";
    c.page = 2;
    c.pages = 3;
    c.when = QDateTime(QDate(2024, 3, 5), QTime(14, 7));
    EXPECT_EQ(ExpandPageCodes("&w&bStrana &p z &P", c), (QStringList{"Čerpání grantu", "", "Strana 2 z 3"}));
    EXPECT_EQ(ExpandPageCodes("&u&b&d&b&t", c), (QStringList{"List.htm", "05.03.2024", "14:07"}));
    EXPECT_EQ(ExpandPageCodes("A && B &q &", c), (QStringList{"A & B &q &", "", ""}));
    // A third split has nowhere to go: its text stays on the right.
    EXPECT_EQ(ExpandPageCodes("a&bb&bc&bd", c), (QStringList{"a", "b", "cd"}));
}

TEST(PagePrint, PdfHasMarginsHeaderAndFooterOnEveryPage)
{
    QTextDocument document;
    QString html = "<html><head><title>Čerpání grantu 12</title></head><body>";
    for (int i = 1; i <= 120; ++i)
        html += QString("<p>Radek%1 účtu</p>").arg(i);
    document.setHtml(html + "</body></html>");

    PageSetupValues setup;
    setup.header = "&w&bStrana &p z &P";
    setup.footer = "Zapati &bkonec";
    setup.left = 1.0;
    setup.top = 0.5;
    setup.right = 0.5;
    setup.bottom = 0.75;

    const QString path = SamplesDir("print") + "/report.pdf";
    QFile::remove(path);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setPageSize(QPageSize(QPageSize::A4));
    ASSERT_TRUE(PrintDocument(&document, printer, setup));

    const QString text = pdftotext("-layout", path);
    EXPECT_TRUE(text.contains("Čerpání grantu 12")) << text.left(400).toStdString();
    const int pages = int(text.count(QChar('\f')));
    ASSERT_GE(pages, 2);
    for (int page = 1; page <= pages; ++page)
        EXPECT_TRUE(text.contains(QString("Strana %1 z %2").arg(page).arg(pages))) << page;
    EXPECT_EQ(text.count("Zapati"), pages);
    EXPECT_TRUE(text.contains("Radek120"));

    // Positions in points from the page's top left, 1 inch is 72; A4 is 595.3 x 841.9.
    const QList<Word> words = pdfWords(path);
    const Word header = firstWord(words, "Čerpání"), footer = firstWord(words, "Zapati");
    const Word right = firstWord(words, "konec"), body = firstWord(words, "Radek1");
    EXPECT_NEAR(header.xMin, 72, 2);
    EXPECT_NEAR(header.yMin, 36, 4);
    EXPECT_NEAR(footer.xMin, 72, 2);
    EXPECT_NEAR(footer.yMax, 841.9 - 54 - 9, 10);
    EXPECT_NEAR(right.xMin, 595.3 - 36 - 30, 30);   // right-aligned inside the right margin
    EXPECT_NEAR(body.xMin, 76, 4);
    EXPECT_GT(body.yMin, 36 + 8);   // below the header

    // Without header and footer the body starts at the top margin.
    setup.header.clear();
    setup.footer.clear();
    setup.left = 2.0;
    const QString plain = SamplesDir("print") + "/plain.pdf";
    printer.setOutputFileName(plain);
    ASSERT_TRUE(PrintDocument(&document, printer, setup));
    const Word plainBody = firstWord(pdfWords(plain), "Radek1");
    EXPECT_NEAR(plainBody.xMin, 148, 4);
    EXPECT_LT(plainBody.yMin, 36 + 12);
    EXPECT_FALSE(pdftotext("-layout", plain).contains("Strana"));
}
