// The order archive as its users meet it: the clerk, the pharmacy and the order manager;
// the PDF form and the exchange panel beside the list.

#include "core/msg.h"
#include "core/session.h"
#include "orders/exchange.h"
#include "orders/frmArchObj.h"
#include "orders/objexchangepanel.h"
#include "orders/objpdfform.h"
#include "orders/objrecord.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

using namespace testenv;
using namespace seed;

namespace {

// Types into a box and leaves it with Enter.
void TypeEnter(QWidget *s, const char *name, const QString &text)
{
    QLineEdit *e = Box(s, name);
    e->setFocus();
    e->setText(text);
    e->setModified(true);
    QTest::keyClick(e, Qt::Key_Return);
    emit e->editingFinished();
}

// 28 or 29 rows of one year in processing.
void SeedRows(int count)
{
    EmptyCentre();
    for (int i = 1; i <= count; ++i)
        Insert({{"cis_obj", QStringLiteral("%1/05012025").arg(i, 4, 10, QLatin1Char('0'))}, {"Dat_obj", "2025-01-05 10:00:00"},
                {"objWF", "06.01.2025"}, {"Castka", "0,00##"}, {"Grant", i % 2 ? "1201" : "1201, 1202"}, {"Typ", "1"}});
}

// The first row of the page whose order is of that kind.
int RowOfKind(QWidget *s, const QString &typ)
{
    const QStringList ofKind = Column(Centre, QStringLiteral("SELECT cis_obj FROM archobj WHERE Typ='%1'").arg(typ));
    for (int r = 0; r < GridRows(s); ++r)
        if (ofKind.contains(GridText(s, r, 1)))
            return r;
    return -1;
}

// The archive of the demo centre opened by the order clerk, with no viewer started.
class frmArchObjPdf : public ::testing::Test {
protected:
    void SetUp() override
    {
        FreshDatabases(true);
        LoginAs(4);
        ObjExchangeDesktop::NoView() = true;
        archive = std::make_unique<frmArchObj>();   // after the login: it reads the session
        archive->Load();
        archive->show();
    }
    void TearDown() override
    {
        ObjExchangeDesktop::NoView() = false;
        ObjExchangeDesktop::ChooseFile() = nullptr;
    }
    ScriptedMessages messages;
    std::unique_ptr<frmArchObj> archive;
};
} // namespace

TEST(frmArchObj, PagesOf28And29RowsAndTheSumsWithoutSharedGrants)
{
    for (int count : {28, 29}) {
        SeedRows(count);
        // The page's first row is a text order whose body is lost: entered once, told once.
        Exec(Centre, QStringLiteral("UPDATE archobj SET Typ='2', `Text`='F.txt' WHERE cis_obj='%1/05012025'")
                         .arg(count - 27, 4, 10, QLatin1Char('0')));
        LoginAs(2);
        ScriptedMessages messages;
        frmArchObj screen;
        screen.Load();
        EXPECT_EQ(messages.shown.size(), 1u) << count;
        EXPECT_EQ(GridRows(&screen), 28) << count;
        EXPECT_EQ(Box(&screen, "txtPages")->text(), count == 28 ? "1" : "2");
        EXPECT_FALSE(Enabled(&screen, "cmdUp"));
        EXPECT_EQ(Enabled(&screen, "cmdDown"), count == 29);
        EXPECT_EQ(GridText(&screen, 27, 1), QStringLiteral("%1/05012025").arg(count, 4, 10, QLatin1Char('0')));
        if (count == 29) {
            Click(&screen, "cmdDown");
            EXPECT_EQ(Box(&screen, "txtPage")->text(), "1");
            EXPECT_EQ(GridText(&screen, 0, 1), "0001/05012025");
            EXPECT_TRUE(Enabled(&screen, "cmdUp"));
            EXPECT_FALSE(Enabled(&screen, "cmdDown"));
        }
        // Prices of rows on one grant only: every other row is on two grants.
        Exec(Centre, "UPDATE archobj SET Castka='100,00#40,00#'");
        Click(&screen, "cmdRefresh");
        EXPECT_EQ(Child<QLabel>(&screen, "Label20")->text(), "1 400,00");
        EXPECT_EQ(Child<QLabel>(&screen, "Label21")->text(), "560,00");
        // A status list is one page of all its rows, and so are its sums.
        Exec(Centre, "UPDATE archobj SET Castka='100,00#0,00#', Dat_vyriz='07.01.2025'");
        Choose(&screen, "Combo2", "Vyfakturována");
        EXPECT_EQ(GridRows(&screen), count);
        EXPECT_EQ(Box(&screen, "txtPages")->text(), "1");
        EXPECT_EQ(Child<QLabel>(&screen, "Label20")->text(), count == 28 ? "1 400,00" : "1 500,00");
        EXPECT_EQ(GridColour(&screen, count - 1, 0), ObjColours::Red);
    }
}

TEST(frmArchObj, ClerkFiltersTypesTheLaterFactsCopiesDeletesAndHandsOver)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmArchObj screen;
    screen.Load();
    screen.show();
    EXPECT_EQ(screen.windowTitle(), "Seznam zádanek");
    const int demoRows = Column(Centre, "SELECT COUNT(*) FROM archobj").value(0).toInt();
    EXPECT_EQ(Box(&screen, "txtPages")->text(), QString::number(ObjPageCount(demoRows)));
    EXPECT_EQ(ArchGrid(&screen)->model()->headerData(4, Qt::Horizontal).toString(), "          Název firmy");
    SaveScreen(&screen, "frmArchObj");

    // A status list is one page of rows of that colour only.
    Choose(&screen, "Combo2", "Výřizování");
    ASSERT_GT(GridRows(&screen), 0);
    EXPECT_EQ(Box(&screen, "txtPages")->text(), "1");
    for (int r = 0; r < GridRows(&screen); ++r)
        EXPECT_EQ(GridColour(&screen, r, 0), ObjColours::Yellow) << r;
    SaveScreen(&screen, "frmArchObj-status");
    Choose(&screen, "Combo2", "1203");
    for (int r = 0; r < GridRows(&screen); ++r)
        EXPECT_TRUE(GridText(&screen, r, 3).contains("1203"));

    // The later facts of an order: the official number, delivery, price.
    SeedRows(3);
    Choose(&screen, "Combo2", "- Vše -");
    SelectRow(&screen, GridRowOf(&screen, "0002/05012025"));
    EXPECT_EQ(Box(&screen, "Text6")->text(), "0002/05012025");
    TypeEnter(&screen, "Text2", "OBJ-'7'");
    // A character outside Windows-1250 is refused and said under the box's label.
    TypeEnter(&screen, "Text2", "OBJ-Ж");
    ASSERT_FALSE(messages.shown.empty());
    EXPECT_EQ(messages.shown.back().text, "Pole „Číslo objednávky“ obsahuje znak, který nelze uložit ve znakové sadě "
                                          "Windows-1250; text nebyl uložen.");
    EXPECT_EQ(Row("Cis_global", "0002/05012025"), "OBJ-7");
    TypeEnter(&screen, "Text2", "OBJ-7");
    TypeEnter(&screen, "Text7", "9.1.2025");
    EXPECT_EQ(Row("Cis_global, Dat_vyriz, Castka", "0002/05012025"), "OBJ-7|09.01.2025|0,00##");
    EXPECT_EQ(GridColour(&screen, GridRowOf(&screen, "0002/05012025"), 3), ObjColours::Green);
    TypeEnter(&screen, "txtCastka", "1250");
    EXPECT_EQ(Box(&screen, "txtCastka")->text(), "1 250,00");
    EXPECT_EQ(Row("Castka", "0002/05012025"), "1 250,00#0,00#");
    EXPECT_EQ(GridColour(&screen, GridRowOf(&screen, "0002/05012025"), 3), ObjColours::Red);
    TypeEnter(&screen, "txtZauct", "1250");
    Box(&screen, "Text9")->setText("31.01.2025");
    TypeEnter(&screen, "Text9", "31.01.2025");
    EXPECT_EQ(Row("Castka, objZauct", "0002/05012025"), "1 250,00#1 250,00#|31.01.2025");
    EXPECT_EQ(GridColour(&screen, GridRowOf(&screen, "0002/05012025"), 3), ObjColours::Grey);

    // Copy under the offered number, then under an existing one.
    messages.answers = {AnswerOk, AnswerOk};
    messages.inputs = {std::nullopt, QString("0002/05012025")};
    Click(&screen, "cmdCopy");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu kopirovat objednávku číslo 0002/05012025 ?");
    EXPECT_EQ(messages.prompts.back(), "Zadejte číslo objednávku");
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj").value(0), "3");   // cancelled input: nothing
    Click(&screen, "cmdCopy");
    // The copy is a new order: dates of processing and booking blank, not handed over.
    EXPECT_EQ(Column(Centre, "SELECT CONCAT_WS('|', Castka, objWF, objZauct, coml) FROM archobj WHERE cis_obj='0002/05012025' "
                             "ORDER BY nom"),
              QStringList({"1 250,00#1 250,00#|06.01.2025|31.01.2025", "1 250,00#1 250,00#| | |0"}));

    // Handover by a click in the "  L" column, asked first.
    const int r1 = GridRowOf(&screen, "0001/05012025");
    messages.answers = {AnswerOk};
    ClickCell(&screen, r1, 7);
    EXPECT_EQ(messages.shown.back().text, "Opravdu chcete objednávku číslo: 0001/05012025\r\n předat do Lékárny?");
    EXPECT_EQ(Row("coml", "0001/05012025"), "1");
    EXPECT_FALSE(GridData(&screen, r1, 7, Qt::DecorationRole).isNull());
    messages.answers = {AnswerOk, AnswerOk};
    ClickCell(&screen, r1, 7);
    EXPECT_EQ(messages.shown.back().text, "Opravdu chcete zrušyt předání objednávky číslo: 0001/05012025\r\n do Lékárny?");
    EXPECT_TRUE(GridData(&screen, r1, 7, Qt::DecorationRole).isNull());
    ClickCell(&screen, r1, 7);

    // Space chooses rows (aqua), F8 deletes the chosen ones after the question.
    SelectRow(&screen, GridRowOf(&screen, "0001/05012025"));
    QTest::keyClick(ArchGrid(&screen), Qt::Key_Space);
    SelectRow(&screen, GridRowOf(&screen, "0003/05012025"));
    QTest::keyClick(ArchGrid(&screen), Qt::Key_Space);
    EXPECT_EQ(GridColour(&screen, GridRowOf(&screen, "0003/05012025"), 4), ObjColours::Aqua);
    SaveScreen(&screen, "frmArchObj-chosen");
    messages.answers = {AnswerOk};
    QTest::keyClick(ArchGrid(&screen), Qt::Key_F8);
    EXPECT_TRUE(messages.saw("Chcete opravdu smazat 2 položky  objednavky? \r\n\r\n"));
    EXPECT_TRUE(messages.saw("2 - řádky/ů bylo smazano."));
    EXPECT_EQ(Column(Centre, "SELECT cis_obj FROM archobj"), QStringList({"0002/05012025", "0002/05012025"}));
    // F8 with none chosen deletes the order's number: both rows of it.
    messages.answers = {AnswerOk};
    QTest::keyClick(ArchGrid(&screen), Qt::Key_F8);
    EXPECT_EQ(messages.lastText(), "Chcete opravdu zrušit tuto objednávku? Pozor, budou zrušene vše objednávky ID 0002/05012025.");
    EXPECT_EQ(GridRows(&screen), 0);

    // A row deleted by another user meanwhile: saving does nothing and the list drops it.
    Insert({{"cis_obj", "0009/05012025"}});
    Click(&screen, "cmdRefresh");
    SelectRow(&screen, 0);
    Exec(Centre, "DELETE FROM archobj");
    TypeEnter(&screen, "Text2", "X");
    EXPECT_EQ(GridRows(&screen), 0);
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj").value(0), "0");
}

TEST(frmArchObj, PharmacySavesPriceAndDatesOnlyAndCannotHandOver)
{
    SeedRows(2);
    Exec(Centre, "UPDATE archobj SET coml=1 WHERE cis_obj='0001/05012025'");
    LoginAs(3);
    ScriptedMessages messages;
    frmArchObj screen;
    screen.Load();
    EXPECT_FALSE(Enabled(&screen, "cmdCerpani"));
    EXPECT_FALSE(Enabled(&screen, "cmdRozpocet"));
    EXPECT_FALSE(Child<QComboBox>(&screen, "Combo1")->isEnabled());
    EXPECT_FALSE(Enabled(&screen, "cmdSklad0"));
    // With no year chosen the pharmacy sees every row; with a year, its own first alternative.
    EXPECT_EQ(GridRows(&screen), 2);
    Choose(&screen, "Combo5", "2025");
    EXPECT_EQ(GridRows(&screen), 1);
    SelectRow(&screen, 0);
    TypeEnter(&screen, "Text2", "OBJ-1");          // not a pharmacy column
    TypeEnter(&screen, "txtCastka", "99,5");
    TypeEnter(&screen, "Text8", "07.01.2025");
    EXPECT_EQ(Row("IFNULL(Cis_global,'-'), Castka, objWF", "0001/05012025"), "-|99,50#0,00#|07.01.2025");
    ClickCell(&screen, 0, 7);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Row("coml", "0001/05012025"), "1");
    SaveScreen(&screen, "frmArchObj-pharmacy");

    // The order manager (role 5) only reads.
    LoginAs(5);
    frmArchObj manager;
    manager.Load();
    EXPECT_FALSE(Enabled(&manager, "Command3"));
    EXPECT_TRUE(Child<QComboBox>(&manager, "cmbStrediska")->isVisibleTo(&manager));
    SelectRow(&manager, 1);
    TypeEnter(&manager, "Text2", "OBJ-5");
    EXPECT_EQ(Row("IFNULL(Cis_global,'-')", "0002/05012025"), "-");
    ClickCell(&manager, 1, 7);
    EXPECT_TRUE(messages.shown.empty());
}

TEST(frmArchObj, ClerkPicksGoodsFromStockChoosesWhoHandlesItAndGoesToTheTray)
{
    EmptyCentre();
    Insert({{"cis_obj", "0001/05012025"}, {"Dat_obj", "2025-01-05 10:00:00"}, {"Typ", "1"}, {"LineRec1", "Ethanol#0,00#"},
            {"Poc1", "2"}, {"LineRec9", "Tomáš Černý"}, {"Poc9", "267 161 111"}, {"LineRec10", "2345"}});
    LoginAs(2);
    ScriptedMessages messages;
    QWidget main;
    frmArchObj screen(&main);
    QString asked;
    const auto stockScreens = screen.SkladPicker;
    screen.SkladPicker = [&](QWidget *, const QString &, const QString &name) -> std::optional<std::pair<QString, QString>> {
        asked = name;
        return std::pair{QStringLiteral("Chemikálie~sklad_chem"), QStringLiteral("Ethanol 96%, (1 l)~~l~135,50")};
    };
    screen.Load();
    // The pharmacy's own row of the centres is no centre of orders.
    auto *centres = Child<QComboBox>(&screen, "cmbStrediska");
    EXPECT_EQ(centres->count(), 2);
    EXPECT_EQ(centres->findText("590 Lékárna"), -1);
    EXPECT_GE(centres->findText("510 Oddělení klinické farmakologie"), 0);

    SelectRow(&screen, 0);
    Click(&screen, "cmdSklad0");
    EXPECT_EQ(asked, "Ethanol");
    EXPECT_EQ(Box(&screen, "txtFields0")->text(), "Ethanol 96%, (1 l)");
    EXPECT_EQ(Box(&screen, "txtFields8")->text(), "135,50");
    EXPECT_EQ(Box(&screen, "txtFields35")->text(), "1 l");
    EXPECT_EQ(Child<QLabel>(&screen, "txtLabel1_0")->text(), "Chemikálie");
    EXPECT_EQ(Row("LineRec1, Poc1", "0001/05012025"), "Ethanol 96%, (1 l)#135,50#l|1 l");
    // A picked price of "0,00" leaves the line's price as it was.
    screen.SkladPicker = [](QWidget *, const QString &, const QString &) -> std::optional<std::pair<QString, QString>> {
        return std::pair{QStringLiteral("Sklad B~sklad_b"), QStringLiteral("Pipety~~ks~0,00")};
    };
    Click(&screen, "cmdSklad0");
    EXPECT_EQ(Row("LineRec1, Poc1", "0001/05012025"), "Pipety#135,50#ks|1 ks");

    // The person who handles it brings telephone and extension from the list of persons.
    Choose(&screen, "Combo1", "Lenka Procházková");
    EXPECT_EQ(Row("LineRec9, Poc9, LineRec10", "0001/05012025"), "Lenka Procházková|267 161 112|2346");
    EXPECT_EQ(Child<QLabel>(&screen, "lblVyrizuje")->text(), "267 161 112, 2346");
    SaveScreen(&screen, "frmArchObj-sklad");

    // A copy the server refuses is said in Czech, naming the order.
    messages.answers = {AnswerOk};
    messages.inputs = {QString(50, QLatin1Char('9'))};
    Click(&screen, "cmdCopy");
    EXPECT_TRUE(messages.shown.back().text.startsWith("Objednávku číslo 0001/05012025 se nepodařilo zkopírovat.\r\n"))
        << messages.shown.back().text.toStdString();
    EXPECT_EQ(messages.shown.back().style, MsgCritical);
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj").value(0), "1");

    // The stock screens search the centre chosen in the list, not the user's own (here a
    // database without warehouses): the search finds the ethanol, the stock screen shows it.
    Session().MysqlDb = QStringLiteral("fondarix_granty");
    screen.SkladPicker = stockScreens;
    Choose(&screen, "cmbStrediska", "510 Oddělení klinické farmakologie");
    SelectRow(&screen, 0);
    Box(&screen, "txtFields0")->setText("Ethanol");
    QString findTitle;
    int found = -1, shown = -1;
    QTimer::singleShot(0, [&] {
        auto *find = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!find)
            return;
        findTitle = find->windowTitle();
        found = Child<QTableView>(find, "MSFlexGrid1")->model()->rowCount();
        QTimer::singleShot(0, [&] {
            auto *chemik = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!chemik)
                return;
            shown = Child<QTableView>(chemik, "DataGrid1")->model()->rowCount();
            chemik->reject();
        });
        Child<QPushButton>(find, "cmdOk")->click();
    });
    Click(&screen, "cmdSklad0");
    EXPECT_EQ(findTitle, "Seznam skladu - Ethanol");
    EXPECT_GT(found, 0);
    EXPECT_GT(shown, 0);

    // F10 and Esc put the program into the tray with its main window; the list stays open.
    for (Qt::Key key : {Qt::Key_F10, Qt::Key_Escape}) {
        main.showNormal();
        QTest::keyClick(ArchGrid(&screen), key);
        EXPECT_TRUE(main.isMinimized()) << key;
        EXPECT_FALSE(screen.isHidden()) << key;
    }
}

// "Náhled v PDF" on an order of each generator's kind writes its form to the
// scratch folder.
TEST_F(frmArchObjPdf, PreviewWritesTheFormOfTheOrdersKind)
{
    frmArchObj &screen = *archive;
    for (const char *typ : {"1", "3", "4", "5"}) {
        const int row = RowOfKind(&screen, QLatin1String(typ));
        ASSERT_GE(row, 0) << typ;
        SelectRow(&screen, row);
        const QString cisObj = GridText(&screen, row, 1);
        const QString path = ObjPdfPath(cisObj);
        QFile::remove(path);
        Click(&screen, "cmdPDFForm");
        QFile pdf(path);
        ASSERT_TRUE(pdf.open(QIODevice::ReadOnly)) << typ << " " << path.toStdString();
        const QByteArray bytes = pdf.readAll();
        EXPECT_TRUE(bytes.startsWith("%PDF-1.3")) << typ;
        // The kind decides the head: the English letter has "To", the others their Czech title.
        EXPECT_TRUE(bytes.contains(QByteArray(typ) == "4" ? "(To) Tj" : "(\x8e\xc1" "DANKA - \xe8.) Tj")
                    || bytes.contains("(PO\x8e" "ADAVEK na n\xe1kup - \xe8.) Tj"))
            << typ;
        EXPECT_TRUE(bytes.contains("/Name /Img1") || QByteArray(typ) == "4") << typ;   // the demo's logo
    }
    EXPECT_TRUE(messages.shown.empty());
    SaveScreen(&screen, QStringLiteral("frmArchObj-pdf"));
}

// The export panel: the chosen order's firm goes into the list, the list is
// written into SMTP_Email, cleared and closed; a file is imported back.
TEST_F(frmArchObjPdf, ExportPanelAndImport)
{
    frmArchObj &screen = *archive;
    auto *panel = Child<QFrame>(&screen, "Frame6");
    EXPECT_FALSE(panel->isVisible());

    const int row = RowOfKind(&screen, QStringLiteral("1"));
    ASSERT_GE(row, 0);
    SelectRow(&screen, row);
    const QString cisObj = GridText(&screen, row, 1);
    const QString firma = Column(Centre, QStringLiteral("SELECT Firma FROM archobj WHERE cis_obj='%1'").arg(cisObj)).value(0);
    Click(&screen, "cmdEmail");
    EXPECT_TRUE(panel->isVisible());
    auto *list = Child<QTableWidget>(&screen, "MSFlexGrid1");
    EXPECT_EQ(list->item(0, 0)->text(), cisObj);
    EXPECT_EQ(list->item(0, 1)->text(), firma);
    SaveScreen(&screen, QStringLiteral("frmArchObj-Frame6"));

    Click(&screen, "cmdPostServer");   // does nothing, as it always has
    EXPECT_TRUE(messages.shown.empty());
    Click(&screen, "cmdExportObj");
    const QString file = ExchangeFileName(firma);
    EXPECT_EQ(Child<QLineEdit>(&screen, "Text3")->text(), QDir::toNativeSeparators(file));
    ASSERT_TRUE(QFile::exists(file));

    Click(&screen, "cmdClear");
    EXPECT_EQ(list->item(0, 0), nullptr);
    Click(&screen, "cmdExitExp");
    EXPECT_FALSE(panel->isVisible());

    // Import: cancelled, then the file written above.
    const int before = Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt();
    QString offered;
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &folder) {
        offered = folder;
        return QString();
    };
    Click(&screen, "cmdImportObj");
    EXPECT_EQ(offered, Pop3Folder());
    EXPECT_TRUE(messages.shown.empty());
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &) { return file; };
    Click(&screen, "cmdImportObj");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Export file complete"));
    EXPECT_EQ(Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt(), before + 1);

    // A file the server refuses: the Czech message, nothing stored.
    const QString bad = QDir(Session().TempDir).filePath(QStringLiteral("bad.txt"));
    QFile out(bad);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("0700/01012026~1\r\n" + QByteArray(60, '7') + "~2\r\n");
    out.close();
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &) { return bad; };
    Click(&screen, "cmdImportObj");
    EXPECT_TRUE(messages.lastText().startsWith(QStringLiteral("Objednávku 2 ze souboru nelze uložit")));
    EXPECT_EQ(messages.shown.back().style, int(MsgCritical));
    EXPECT_EQ(Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt(), before + 1);
}
