#include "core/codepage.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/htmlviewer.h"
#include "stock/frmCHEMIK.h"
#include "stock/frmVydeji.h"
#include "stock/summaries.h"
#include "support/testenv.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableView>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Centre = QStringLiteral("fondarix_ofk");
const QString Chem = QStringLiteral("Skl1022026081512");
QString One(const QString &sql) { return Column(Centre, sql).value(0); }

QByteArray Bytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The head every summary starts with, as bytes in Windows-1250.
QByteArray Head(const QString &title, const QString &sklad)
{
    return ToCp1250("<head>\r\n<meta http-equiv=Content-Language content=cs>\r\n"
                    "<meta http-equiv=Content-Type content=text/html; charset=windows-1250>\r\n<title>"
                    + title + "</title>\r\n</head></body>\r\n<style>\r\n");
}

int Rows(const QByteArray &html) { return html.count("<tr>") - 1; }   // less the header row

// The page as a real browser engine draws it; skipped where the engine is not installed.
void Render(const QString &html, const QString &name)
{
    const QString browser = QStandardPaths::findExecutable("chromium-headless-shell");
    if (browser.isEmpty())
        GTEST_SKIP() << "chromium-headless-shell missing";
    const QString png = SamplesDir("stock") + "/" + name + ".png";
    QFile::remove(png);
    QProcess p;
    p.start(browser, {"--no-sandbox", "--disable-gpu", "--window-size=1100,500", "--screenshot=" + png,
                      QUrl::fromLocalFile(html).toString()});
    ASSERT_TRUE(p.waitForFinished(60000));
    const QImage image(png);
    ASSERT_FALSE(image.isNull()) << p.readAllStandardError().toStdString();
    EXPECT_EQ(image.width(), 1100);
    int dark = 0;   // the grey header and the text
    for (int y = 0; y < image.height(); y += 2)
        for (int x = 0; x < image.width(); x += 2)
            dark += qGray(image.pixel(x, y)) < 200;
    EXPECT_GT(dark, 2000) << "a blank page";
}

struct Closer {   // viewers a command opened
    ~Closer()
    {
        QList<QPointer<QWidget>> viewers;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (qobject_cast<HtmlViewer *>(w))
                viewers << w;
        for (const QPointer<QWidget> &w : viewers)
            delete w.data();
    }
};
} // namespace

TEST(StockSummaries, OrderedGoodsOfAWarehouseAnItemAndAYearAndFromTheScreen)
{
    FreshDatabases(true);
    LoginAs(3);
    DbConnection centre(ConnStrCentre());
    Exec(Centre, "DELETE FROM archobj");
    Exec(Centre, "INSERT INTO archobj (cis_obj, Cis_global, Firma, Pobocka, Dat_obj, Dat_vyriz, Typ, LineRec1, Poc1, "
                 "LineRec2, Poc2, LineRec3, Poc3, LineRec9, objZauct, `Grant`) VALUES "
                 "('0001/05012026', 'OBJ-1', 'BioChem Brno a.s.', 'Katalog', '2026-01-05 10:00:00', '12.01.2026', '1', "
                 "'Tris base, (1 x 2)#1 240,00#bal', '3', 'Stůl#5 000,00#ks', '1', 'Agaróza pro elektroforézu#3 180,00#bal', "
                 "'1,5', 'Tomáš Černý', '20.01.2026', '1201'), "
                 "('0002/05012025', NULL, 'Lach-Ner s.r.o.', '', '2025-06-05 10:00:00', NULL, '1', "
                 "'Tris base#1 000,00#bal', '1', NULL, NULL, NULL, NULL, 'Lenka Procházková', ' ', '1202'), "
                 "('0003/05012026', NULL, 'Lach-Ner s.r.o.', '', '2026-03-05 10:00:00', NULL, '2', "
                 "'Tris base#1,00#bal', '1', NULL, NULL, NULL, NULL, '', ' ', '1202')");
    const QString path = ObjednSummaryPath(SamplesDir("stock"), "Chemikálie");
    QString error;
    ObjednFilter all;
    all.skladFile = Chem;
    // Kind 1 orders only, lines of goods this warehouse holds, the packaging of a pick allowed.
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", all, path, &error), 3) << error.toStdString();
    const QByteArray html = Bytes(path);
    EXPECT_TRUE(html.startsWith(Head("Souhrn objednaného zboži", "Chemikálie")));
    EXPECT_TRUE(html.contains(ToCp1250("<td class=cell_top width=80px>FIRMA<br>DODAVATEL</td>")));
    EXPECT_TRUE(html.contains(ToCp1250(">OBJADNÁNO</td>")));
    EXPECT_TRUE(html.contains(ToCp1250("<td class=cellw>Tris base, (1 x 2)</td><td class=cellw>BioChem Brno a.s.</td>"
                                       "<td class=cellw>Katalog</td><td class=cellb>3</td><td class=cellb>3 720,00</td>"
                                       "<td class=cellw>OBJ-1</td><td class=cellw>1201</td><td class=cellw>Tomáš Černý</td>"
                                       "<td class=cellw>05.01.2026</td><td class=cellw>12.01.2026</td>"
                                       "<td class=cellw>20.01.2026</td>")));
    EXPECT_TRUE(html.contains("<td class=cellb>4 770,00</td>"));   // 1,5 × 3 180,00
    EXPECT_TRUE(html.contains("<td class=cellw>0002/05012025</td>"));   // no official number: the internal one
    EXPECT_FALSE(html.contains(ToCp1250("Stůl")));
    Render(path, "objednano");

    ObjednFilter item = all;
    item.item = "Agaróza pro elektroforézu";
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", item, path, &error), 1);
    ObjednFilter year = all;
    year.year = 2025;
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", year, path, &error), 1);
    year.firma = "BioChem";
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", year, path, &error), 0);
    EXPECT_EQ(Rows(Bytes(path)), 0);
    ObjednFilter from = all;
    from.from = QDate(2026, 1, 1);
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", from, path, &error), 2);
    ObjednFilter bad = all;
    bad.skladFile = "x; DROP TABLE archobj";
    EXPECT_EQ(WriteObjednSummary(centre, "Chemikálie", bad, path, &error), -1);
    EXPECT_EQ(One("SELECT COUNT(*) FROM archobj"), "3");

    // The stock screen's summaries ask first, then write to the scratch folder.
    ScriptedMessages messages;
    Closer closer;
    frmCHEMIK screen;
    screen.OpenFile = "Chemikálie~" + Chem;
    ASSERT_TRUE(screen.Load());
    messages.answers = {AnswerCancel, AnswerOk};
    EXPECT_TRUE(screen.cmdArchObjedn_Click().isEmpty());
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete vytvořit tiskovou sestavu všeho, co bylo objednáno na skladě?");
    const QString shown = screen.cmdArchObjedn_Click();
    EXPECT_EQ(shown, Session().TempDir + "/Souhrn objednaného zboži - Chemikálie.html");
    messages.answers = {AnswerOk};
    const QString name = Child<QTableView>(&screen, "DataGrid1")->model()->index(0, 0).data().toString();
    EXPECT_EQ(screen.cmdPolozkaObjedn_Click(), shown);
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete vytvořit tiskovou sestavu pro položku: " + name + "- ?");
    EXPECT_EQ(screen.cmdOrder_Click(), shown);
}

TEST(frmVydeji, JournalOfAWarehouseItsPrintAndTheSummary)
{
    FreshDatabases(true);
    LoginAs(3);
    ScriptedMessages messages;
    Closer closer;
    Exec(Centre, "INSERT INTO CHEM_VYD (NAM_CHIM, KATAL, KOMU, MIRA, DAT_VYD, KUS_VY, sklad) VALUES "
                 "('<b>Aceton</b> & spol.', 'A-1', 'Laboratoř', 'l', '2026-02-03', '2 x 1', 'Kancelář')");
    frmVydeji screen;
    screen.OpenFile = "Kancelář~Skl1622026094003";
    ASSERT_TRUE(screen.Load());
    EXPECT_EQ(screen.windowTitle(), "Výdej");
    EXPECT_EQ(Child<QLabel>(&screen, "Label3")->text(), "Kancelář");
    auto *grid = Child<QTableView>(&screen, "DataGrid1");
    const int rows = One("SELECT COUNT(*) FROM CHEM_VYD WHERE sklad='Kancelář'").toInt();
    EXPECT_EQ(grid->model()->rowCount(), rows);
    EXPECT_EQ(grid->model()->index(0, 0).data().toString(), "<b>Aceton</b> & spol.");   // by name
    EXPECT_EQ(Child<QLabel>(&screen, "lblZaznam")->text(), "Záznam číslo: 1");
    grid->setCurrentIndex(grid->model()->index(2, 0));
    EXPECT_EQ(Child<QLabel>(&screen, "lblZaznam")->text(), "Záznam číslo: 3");
    SaveScreen(&screen, "frmVydeji");
    const QString path = screen.cmdArchVyd_Click();
    EXPECT_EQ(path, Session().TempDir + "/Souhrn výdaného zboži - Kancelář.html");
    bool shown = false;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *viewer = qobject_cast<HtmlViewer *>(w))
            shown = shown || QFileInfo(viewer->path()) == QFileInfo(path);
    EXPECT_TRUE(shown);

    // The summary printed: the journal's rows in its order, a name in HTML written as text.
    const QByteArray html = Bytes(path);
    EXPECT_TRUE(html.startsWith(Head("Souhrn výdaného zboži", "Kancelář")));
    EXPECT_TRUE(html.contains(ToCp1250("<p><b><i>Seznam položek: sklad - Kancelář</i></b></p>")));
    EXPECT_TRUE(html.contains("N&nbsp;\xc1&nbsp;Z&nbsp;E&nbsp;V"));
    EXPECT_EQ(Rows(html), rows);
    EXPECT_LT(html.indexOf("&lt;b&gt;Aceton&lt;/b&gt; &amp; spol."),
              html.indexOf(ToCp1250(grid->model()->index(1, 0).data().toString())));
    EXPECT_TRUE(html.contains("<td class=cell_first>1</td>"));
    EXPECT_TRUE(html.endsWith("</table>\r\n</body></html>\r\n"));
    Render(path, "vydeje");
    // Its file name; a warehouse without issues, all warehouses, a folder that is not there.
    const QString dir = SamplesDir("stock");
    EXPECT_EQ(VydejSummaryPath(dir, "a/b:c*?"), dir + "/Souhrn výdaného zboži - a_b_c__.html");
    EXPECT_EQ(QFileInfo(VydejSummaryPath(dir, QString(300, 'x'))).fileName().size(), 24 + 120 + 5);
    DbConnection centre(ConnStrCentre());
    QString error;
    EXPECT_EQ(WriteVydejSummary(centre, "Prázdný", path, &error), 0);
    EXPECT_TRUE(Bytes(path).contains(ToCp1250("Seznam položek: sklad - Prázdný")));
    EXPECT_EQ(Rows(Bytes(path)), 0);
    EXPECT_TRUE(Bytes(path).contains("<td class=cell_top width=250px>"));
    EXPECT_EQ(WriteVydejSummary(centre, "", path, &error), One("SELECT COUNT(*) FROM CHEM_VYD").toInt());
    EXPECT_EQ(WriteVydejSummary(centre, "x", "/nonexistent/dir/x.html", &error), -1);
    EXPECT_FALSE(error.isEmpty());

    frmVydeji all;
    ASSERT_TRUE(all.Load());
    EXPECT_EQ(Child<QTableView>(&all, "DataGrid1")->model()->rowCount(), One("SELECT COUNT(*) FROM CHEM_VYD").toInt());

    // A journal of several pages, with names missing and names and numbers repeated: the grid
    // reads each page as it is reached, from the end back here, and every row stands in the
    // journal's order once.
    Exec(Centre, "INSERT INTO CHEM_VYD (NAM_CHIM, KATAL, KOMU, sklad) SELECT IF(seq % 7 = 0, NULL, "
                 "CONCAT('Položka ', seq % 40)), seq % 3, CONCAT('Komu ', seq), 'Velký' FROM seq_1_to_450");
    frmVydeji big;
    big.OpenFile = "Velký~Skl1";
    ASSERT_TRUE(big.Load());
    auto *bigGrid = Child<QTableView>(&big, "DataGrid1");
    QAbstractItemModel *m = bigGrid->model();
    ASSERT_EQ(m->rowCount(), 450);
    const QStringList expected = Column(Centre, "SELECT CONCAT_WS('|', IFNULL(NAM_CHIM, ''), KATAL, KOMU) FROM CHEM_VYD "
                                                "WHERE sklad='Velký' ORDER BY NAM_CHIM, KATAL, id");
    QStringList read;
    for (int r = m->rowCount() - 1; r >= 0; --r)
        read.prepend(m->index(r, 0).data().toString() + "|" + m->index(r, 1).data().toString() + "|"
                      + m->index(r, 4).data().toString());
    EXPECT_EQ(read, expected);
    bigGrid->setCurrentIndex(m->index(449, 0));
    EXPECT_EQ(Child<QLabel>(&big, "lblZaznam")->text(), "Záznam číslo: 450");
    EXPECT_EQ(Rows(Bytes(big.cmdArchVyd_Click())), 450);   // the print takes the whole journal
    SaveScreen(&big, "frmVydeji_konec");

    // A page that cannot be read once the journal is open: said once, the rows read before stay
    // and the grid ends where they end.
    frmVydeji broken;
    broken.OpenFile = "Velký~Skl1";
    ASSERT_TRUE(broken.Load());
    m = Child<QTableView>(&broken, "DataGrid1")->model();
    const QString first = m->index(0, 4).data().toString();
    Exec(Centre, "RENAME TABLE CHEM_VYD TO CHEM_VYD_pryc");
    const size_t before = messages.shown.size();
    EXPECT_EQ(m->index(250, 4).data().toString(), "");
    EXPECT_EQ(m->index(420, 4).data().toString(), "");
    QApplication::sendPostedEvents();
    ASSERT_EQ(messages.shown.size(), before + 1);
    EXPECT_TRUE(messages.lastText().startsWith("Další řádky výdeje nelze načíst, zobrazeny zůstávají řádky načtené dříve.\n"))
        << messages.lastText().toStdString();
    EXPECT_EQ(m->rowCount(), 200);
    EXPECT_EQ(m->index(0, 4).data().toString(), first);
    EXPECT_EQ(m->index(199, 4).data().toString(), read.value(199).section('|', 2));
}
