// The HTML forms of orders compared as bytes with the expected files beside this test, the
// bank account switch, the footers and pictures, the file names, the reports on orders, and
// one form opened in a real browser engine.

#include "core/codepage.h"
#include "fondarix_paths.h"
#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "orders/objfooter.h"
#include "orders/objhtml.h"
#include "orders/objrecord.h"
#include "orders/objreports.h"
#include "orders/objsave.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace testenv;
using seed::ReadFile;
using seed::RecordLine;

namespace {
const QString ExpectedDir = QStringLiteral(FONDARIX_SOURCE_DIR "/tests/orders/expected");

ObjFormContext Context()
{
    ObjFormContext c;
    c.font = QStringLiteral("4");
    c.role = 4;
    c.firma = QStringLiteral("Ústav klinického výzkumu Lhotka");
    c.adresa = QStringLiteral("Nemocniční 1024/12");
    c.psc = QStringLiteral("100 00");
    c.mesto = QStringLiteral("Lhotka");
    c.ico = QStringLiteral("123 456");
    c.dic = QStringLiteral(" ");
    c.banka = QStringLiteral("Banka Lhotka-město");
    c.ucet = QStringLiteral("11111-222/0100 ");
    c.ucet2 = QStringLiteral("22222-333/0300");
    c.newdateUcet = QStringLiteral("1735689600");   // 1 January 2025
    c.department = QStringLiteral("Oddělení klinické farmakologie");
    c.now = QDateTime(QDate(2026, 11, 22), QTime(10, 0));
    c.pictureFooter = QStringLiteral("<img src='file:/tmp/paticka.bmp'>");
    return c;
}

QString Goods()
{
    return RecordLine({{0, "0007/22112026"}, {1, "2026-11-22 10:15:00"}, {2, "1201"}, {3, "Lach-Ner, s.r.o."},
                 {4, "Katalog 2025"}, {5, "Tovární 157"}, {6, "277 11"}, {7, "Neratovice"}, {8, "315 664 111"},
                 {9, "315 664 112"}, {10, "510"}, {14, "1"}, {16, "Dodat do laboratoře 3. patro"},
                 {17, "#VVZ#Dodat do laboratoře"}, {19, "Ethanol 96% p.a., 1 l#245,00#l"}, {20, "2"},
                 {21, "Pipetové špičky 200 µl#189,00#bal"}, {22, "3 bal"}, {23, "Parafilm M"}, {25, "Pufr <PBS> & 'x'#2 340,00#ks"},
                 {26, "1"}, {35, "Tomáš Černý"}, {36, "267 161 111"}, {37, "2345"}, {38, "1 057,00"}, {39, "1"},
                 {40, "<p>S pozdravem<br>Tomáš Černý</p>"}});
}

QString TextOrder(const char *kind)
{
    return RecordLine({{0, "0008/22112026"}, {1, "2026-11-22 11:00:00"}, {2, "1201, 1202"}, {3, "Servis s.r.o."}, {5, "Služeb 4"},
                 {7, "Praha 10"}, {14, kind}, {15, "F0008/22112026.txt"}, {17, "#GRANTU#"}, {35, "Lenka Procházková"},
                 {36, "267 161 112"}, {37, "2346"}, {39, "3"},
                 {40, "<p class=MsoNormal><o:p>&nbsp;</o:p><BR>Lenka<span>normal'><o:p>&nbsp;</o:p></span><BR></p>"}});
}

QString Letter(const char *kind, const char *poc9)
{
    QString line = RecordLine({{0, "0009/22112026"}, {1, "2026-11-22 12:00:00"}, {3, "Acme"}, {14, kind}, {19, "Acme Ltd."},
                         {21, "1 High Street#"}, {23, "Oxford OX1 1AA"}, {25, "United Kingdom"}, {27, " "},
                         {35, "Tomáš Černý"}, {36, poc9}, {37, "2345"}});
    return line;
}

// Byte comparison; a difference names the first differing line of both.
void ExpectSameFile(const QString &actualPath, const QString &expectedName)
{
    const QByteArray actual = ReadFile(actualPath);
    const QByteArray expected = ReadFile(ExpectedDir + QLatin1Char('/') + expectedName);
    ASSERT_FALSE(expected.isEmpty()) << "missing expected file " << expectedName.toStdString();
    if (actual == expected)
        return;
    const QList<QByteArray> a = actual.split('\n'), e = expected.split('\n');
    for (qsizetype i = 0; i < std::max(a.size(), e.size()); ++i)
        if (a.value(i) != e.value(i)) {
            ADD_FAILURE() << expectedName.toStdString() << " line " << i + 1 << "\n  written:  "
                          << FromCp1250(a.value(i)).toStdString() << "\n  expected: " << FromCp1250(e.value(i)).toStdString();
            return;
        }
}

QString WrittenLine(const QString &path, const QString &start)
{
    for (const QByteArray &l : ReadFile(path).split('\n'))
        if (FromCp1250(l).trimmed().startsWith(start))
            return FromCp1250(l).trimmed();
    return QString();
}
} // namespace

TEST(ObjForms, EachKindAsTheExpectedBytes)
{
    const QString dir = SamplesDir(QStringLiteral("orders"));
    ObjFormContext small = Context();
    small.font = QStringLiteral("0");              // size 1, and 0 for the smaller elements
    ObjFormContext request = Context();
    request.formPoz = true;
    const struct {
        const char *file;
        ObjFormContext ctx;
        QString line, body;
    } cases[] = {
        {"goods.html", small, Goods(), QString()},
        {"goods-request.html", request, Goods(), QString()},
        {"text.html", Context(), TextOrder("2"), QStringLiteral("<p>Objednáváme <b>servis</b> přístroje.</p>")},
        {"services.html", Context(), TextOrder("5"), QStringLiteral("Servis chladicího boxu.<br>Termín dle dohody.<br>")},
        {"letter-cz.html", Context(), Letter("3", "267 161 111"), QStringLiteral("<p>Žádáme o nabídku.</p>")},
        {"letter-an.html", Context(), Letter("4", "+420 267 161 111~cerny@ukv-lhotka.cz"),
         QStringLiteral("<p>We ask for an offer.</p>")},
    };
    for (const auto &c : cases) {
        BuildObjLJ out;
        const QString path = dir + QLatin1Char('/') + QLatin1String(c.file);
        ASSERT_TRUE(WriteObjForm(out, c.ctx, path, c.line, c.body)) << out.Error().toStdString();
        ExpectSameFile(path, QLatin1String(c.file));
    }
}

TEST(ObjForms, BankAccountByDateLinesBeforeTheBodyAndThePaymentSource)
{
    const QString dir = SamplesDir(QStringLiteral("orders"));
    const QString path = dir + QStringLiteral("/cases.html");
    // The new account from the second after its date (seconds since 1970 of the local clock).
    const struct {
        const char *newdate, *ucet2;
        QDateTime now;
        const char *account;
    } accounts[] = {
        {"1735689600", "22222-333/0300", {{2025, 1, 1}, {0, 0, 1}}, "22222-333/0300"},
        {"1735689600", "22222-333/0300", {{2025, 1, 1}, {0, 0}}, "11111-222/0100"},   // not yet: the old one, trimmed
        {"1735689600", "99999-999/0100", {{2026, 1, 1}, {12, 0}}, "11111-222/0100"},   // the placeholder is never printed
        {"0", "22222-333/0300", {{2026, 1, 1}, {12, 0}}, "11111-222/0100"},
        {"", "22222-333/0300", {{2026, 1, 1}, {12, 0}}, "11111-222/0100"},
    };
    for (const auto &a : accounts) {
        ObjFormContext ctx = Context();
        ctx.newdateUcet = a.newdate;
        ctx.ucet2 = a.ucet2;
        ctx.now = a.now;
        BuildObjLJ out;
        ASSERT_TRUE(BuildFormObj2(out, ctx, path, Goods(), QString()));
        EXPECT_EQ(WrittenLine(path, "Bankovní spojení"), QStringLiteral("Bankovní spojení Banka Lhotka-město,  ") + a.account + "</font></p></td>");
    }

    // Blank lines before the body: rows - (top + 1), six more for footers up to 2, four less.
    const struct {
        const char *rows, *top, *paticka;
        int lines;
    } counts[] = {{"24", "0", "1", 25}, {"24", "0", "3", 19}, {"24", "2", "3", 17}, {"24", "x", "3", 20}, {"", "0", "1", 0}};
    for (const auto &c : counts) {
        ObjFormContext ctx = Context();
        ctx.rows = c.rows;
        ctx.top = c.top;
        QString line = TextOrder("2");
        line.replace("~3~<p class", QStringLiteral("~%1~<p class").arg(c.paticka));
        BuildObjLJ out;
        ASSERT_TRUE(BuildFormObj2(out, ctx, path, line, "BODY"));
        const QString text = FromCp1250(ReadFile(path));
        const qsizetype from = text.indexOf("<table border=0 width=100%><tr><td valign=top>");
        EXPECT_EQ(text.mid(from, text.indexOf("BODY") - from).count("<BR>"), c.lines) << c.rows << "/" << c.top << "/" << c.paticka;
    }

    // The payment source: GRANT... prints "GRANTu:", anything else itself and "číslo".
    for (const auto &[prikazce, shown] : {std::pair{"#GRANTU#", "Hrazeno z GRANTu:&nbsp;<strong>"}, std::pair{"#grant VZ#", "Hrazeno z GRANTu:&nbsp;<strong>"},
                                          std::pair{"#VVZ#", "Hrazeno z VVZ, číslo:&nbsp;<strong>"}}) {
        QString line = TextOrder("2");
        line.replace("#GRANTU#", prikazce);
        BuildObjLJ out;
        ASSERT_TRUE(BuildFormObj2(out, Context(), path, line, "x"));
        EXPECT_TRUE(FromCp1250(ReadFile(path)).contains(QString::fromUtf8(shown))) << prikazce;
    }
}

TEST(ObjForms, FileNamesBadTextsAndAnUnwritableFolder)
{
    EXPECT_EQ(ObjFormPath("/x/Objednavky", "0012/05012026"), "/x/Objednavky/0012-05012026.html");
    EXPECT_EQ(ObjFormPath("/x", "../../etc"), "/x/..-..-etc.html");
    EXPECT_EQ(CerpaniPath("/x", "12/01"), "/x/Čerpání-12-01.html");

    // Quotes, separators, script and 10,000 characters: the file is still complete.
    QString line = Goods();
    line.replace("Lach-Ner, s.r.o.", QString("\"`#<script>alert(1)</script>") + QString(10000, QChar(u'ž')));
    const QString path = SamplesDir("orders") + "/bad.html";
    BuildObjLJ out;
    ASSERT_TRUE(BuildFormObj2(out, Context(), path, line, QString()));
    EXPECT_TRUE(ReadFile(path).endsWith("</div></body></html>\r\n"));

    // A folder that cannot be written (a file stands where it should be): refused in Czech.
    QTemporaryDir tmp;
    QFile(tmp.path() + "/Objednavky").open(QIODevice::WriteOnly);
    BuildObjLJ refused;
    EXPECT_FALSE(BuildFormObj2(refused, Context(), ObjFormPath(tmp.path() + "/Objednavky", "0001/01"), Goods(), QString()));
    EXPECT_TRUE(refused.Error().startsWith("Soubor ")) << refused.Error().toStdString();
}

TEST(ObjForms, FootersPicturesLogoAndTheFormFileOfAnOrder)
{
    seed::EmptyCentre();
    LoginAs(4);
    DbConnection sys(ConnStrSys());
    DbConnection centre(ConnStrFor(seed::Centre));
    EXPECT_EQ(FooterHtml(sys, "1", "cerny"), "<p>S pozdravem<br>Tomáš Černý</p>");
    EXPECT_EQ(FooterHtml(sys, "9", "cerny"), "");

    // The picture is written once, under its stored name; a BLOB that is no image gives none.
    QTemporaryDir tmp;
    const QString html = FooterPictureHtml(sys, QString(), "cerny", tmp.path());
    EXPECT_EQ(html, "<img src='file:" + tmp.path() + "/paticka_cerny.bmp'>");
    EXPECT_FALSE(QImage(tmp.path() + "/paticka_cerny.bmp").isNull());
    Exec("fondarix_sys", "UPDATE sys_paticky_obrazky SET oleObrazek='not an image', filename='..' WHERE login='svoboda'");
    EXPECT_EQ(FooterPictureHtml(sys, QString(), "svoboda", tmp.path()), "");
    EXPECT_EQ(QImage(LogoToTemp(sys, tmp.path())).width(), 32);

    // The footer record of an order: added once, "&nbsp;" without a footer.
    ASSERT_TRUE(SaveObjFooter(centre, "0001/01", {"2", "<p>x</p>"}));
    ASSERT_TRUE(SaveObjFooter(centre, "0001/01", {"0", ""}));
    EXPECT_EQ(ObjFooterText(centre, "0001/01"), "&nbsp;");
    EXPECT_EQ(ObjFooterType(centre, "0001/01"), "0");
    EXPECT_EQ(Column(seed::Centre, "SELECT COUNT(*) FROM objedn_footer").value(0), "1");

    // The form of a stored order, found by its number, by the batch verb; an unknown number is refused.
    seed::Insert({{"cis_obj", "0005/22112026"}, {"Typ", "5"}, {"Firma", "Servis"}, {"file_html_text", "Text<br>"}, {"Dat_obj", "2026-11-22 10:00:00"}});
    const CliRun written = Cli({"order", "html", "0005/22112026", "--folder", tmp.path() + "/forms", "--login", "cerny"});
    EXPECT_EQ(written.out, tmp.path() + "/forms/0005-22112026.html\n") << written.err.toStdString();
    const QString form = FromCp1250(ReadFile(tmp.path() + "/forms/0005-22112026.html"));
    EXPECT_TRUE(form.contains("Text<br></td>"));
    EXPECT_TRUE(form.contains("IČO&nbsp;123 456"));   // the institution from the settings
    const CliRun refused = Cli({"order", "html", "9999/01", "--login", "cerny"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.err.contains("Objednávka číslo 9999/01 neexistuje.")) << refused.err.toStdString();
}

TEST(ObjReports, OrdersOfAGrantAndOfASearchWithSumsWithoutSharedGrants)
{
    seed::EmptyCentre();
    seed::Insert({{"cis_obj", "0001/01"}, {"Grant", "1201"}, {"Castka", "1 000,00#400,00#"}, {"LineRec1", "Ethanol#1,00#l"}, {"Poc1", "2"}, {"Firma", "<b>&</b>"}});
    seed::Insert({{"cis_obj", "0002/01"}, {"Grant", "1201, 1202"}, {"Castka", "500,00#500,00#"}, {"LineRec2", "Ethanol absolutní#1#l"}});
    seed::Insert({{"cis_obj", "0003/01"}, {"Grant", "1203"}, {"Castka", "7,00##"}});
    DbConnection centre(ConnStrFor(seed::Centre));
    DbConnection granty(ConnStrGranty());
    QTemporaryDir tmp;
    const QString path = tmp.path() + "/r.html";
    QString error;
    BuildObjLJ out;
    ASSERT_TRUE(TiskGrantTabl(out, centre, granty, path, "1201", "0", &error)) << error.toStdString();
    QString text = FromCp1250(ReadFile(path));
    EXPECT_TRUE(text.contains("<em>2 450 000,00 Kč</em>"));
    EXPECT_EQ(text.count("<tr>\r\n<td valign=top>"), 2);
    EXPECT_TRUE(text.contains("Celkem za GRANT, Kč</strong></font></td>\r\n<td align=right><font size=1><strong>1 000,00</strong>"));
    ASSERT_TRUE(BuildCerpani(out, centre, path, "ethanol", "3", &error));
    text = FromCp1250(ReadFile(path));
    EXPECT_TRUE(text.contains("2 Ethanol<")) << "quantity and name of the line";
    EXPECT_TRUE(text.contains("Ethanol absolutní"));
    EXPECT_FALSE(text.contains("0003/01"));
    EXPECT_TRUE(text.contains("&lt;b&gt;&amp;&lt;/b&gt;")) << "a firm's text is shown, not read as markup";
}

TEST(ObjForms, OpenedInAHeadlessBrowser)
{
    const QString chromium = QStandardPaths::findExecutable("chromium-headless-shell");
    if (chromium.isEmpty())
        GTEST_SKIP() << "chromium-headless-shell is not installed";
    const QString dir = SamplesDir("orders");
    BuildObjLJ out;
    ASSERT_TRUE(BuildFormObj2(out, Context(), dir + "/browser.html", Goods(), QString()));
    const QString png = dir + "/browser.png";
    QFile::remove(png);
    QProcess p;
    p.start(chromium, {"--no-sandbox", "--disable-gpu", "--screenshot=" + png, "--window-size=900,1300",
                       "file://" + dir + "/browser.html"});
    ASSERT_TRUE(p.waitForFinished(60000));
    const QImage shot(png);
    ASSERT_FALSE(shot.isNull()) << p.readAllStandardError().toStdString();
    EXPECT_EQ(shot.width(), 900);
    // Something was drawn: the form is not a blank page.
    int dark = 0;
    for (int y = 0; y < shot.height(); y += 4)
        for (int x = 0; x < shot.width(); x += 4)
            dark += qGray(shot.pixel(x, y)) < 128;
    EXPECT_GT(dark, 200);
}
