#include "core/config.h"
#include "import/frmErrControl.h"
#include "import/frmImportBegin.h"
#include "import/frmImportPohyb.h"
#include "import/frmImportRozpocet.h"
#include "import/frmRevize.h"
#include "import/importscreens.h"
#include "import/importsouboru.h"
#include "importdata.h"

#include "core/msg.h"
#include "import/revize.h"

#include <QApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableView>
#include <QTest>
#include <QTimer>

using namespace testenv;

namespace {
void Click(QWidget *screen, const char *name)
{
    QPushButton *b = Child<QPushButton>(screen, name);
    ASSERT_TRUE(b && b->isEnabled()) << name;
    QTest::mouseClick(b, Qt::LeftButton);
}

// The next modal screen of that name gets a click on the button once it shows
// (the tree builder and the revision run inside their own dialog).
void WhenModal(const QString &screen, const char *button, const std::function<void(QWidget *)> &before = {})
{
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [=] {
        QWidget *w = QApplication::activeModalWidget();
        if (w && w->objectName() == screen) {
            if (before)
                before(w);
            QTest::mouseClick(w->findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
            return;
        }
        QTimer::singleShot(20, *poll);
    };
    QTimer::singleShot(20, *poll);
}

// The list shown with that title ("Error info" of an import or of the revision).
QWidget *ErrorList(const char *title = TitleChybyImportu)
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmErrControl") && w->isVisible()
            && Child<QLabel>(w, "Label1")->text() == QString::fromUtf8(title))
            return w;
    return nullptr;
}

int Count(const char *table) { return Rows(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table)).value(0).toInt(); }

class ImportScreens : public ::testing::Test {
protected:
    void SetUp() override
    {
        FreshDatabases(true);
        LoginAs(2);
        DefineDemoColumns();
    }
    void TearDown() override
    {
        SetImportFileChooser({});
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->objectName() == QLatin1String("frmErrControl"))
                w->close();
    }
    static void Choose(const QString &file)
    {
        SetImportFileChooser([file](const QString &) { return file; });
    }
};
} // namespace

TEST_F(ImportScreens, AccountListImportThenPickerOfTheGroupCatalogue)
{
    frmImportBegin screen;
    screen.Load();
    screen.show();
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdVyber")->isVisible());
    Choose(DemoExport("ucty.txt"));
    ScriptedMessages messages;
    Click(&screen, "cmdOpenFile");
    EXPECT_EQ(Child<QLabel>(&screen, "Label2")->text(), DemoExport("ucty.txt").toLower());
    WhenModal("frmProgressBuildTree", "CmdOk");
    Click(&screen, "cmdImportAct");
    EXPECT_TRUE(messages.saw("Import file complete "));
    // The tree waits for the movements.
    EXPECT_TRUE(messages.saw("Mate prázdný export souboru MD/DAL, importujte soubor funkce :\n      - Export souboru MD/DAL. "));
    EXPECT_EQ(Count("memImport"), 378);
    QTableView *list = Child<QTableView>(&screen, "DataGrid1");
    EXPECT_EQ(list->model()->rowCount(), 378);
    // An administrator corrects a name in the grid: stored at once.
    list->setCurrentIndex(list->model()->index(2, 1));
    QTest::keyClick(list, Qt::Key_F2);
    QLineEdit *editor = list->findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, "  Opraveno 'x'");
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();   // the delegate commits on the next turn
    EXPECT_EQ(Rows("SELECT NAZEV FROM memImport ORDER BY id").value(2), "  Opraveno 'x'");
    SaveScreen(&screen, "frmImportBegin");
    LoginAs(1);
    frmImportBegin readOnly;
    readOnly.Load();
    EXPECT_FALSE(Child<QTableView>(&readOnly, "DataGrid1")->model()->flags(list->model()->index(2, 1)) & Qt::ItemIsEditable);

    LoginAs(2);
    frmImportBegin picker;
    picker.VyberUcet = true;
    picker.Load();
    picker.show();
    EXPECT_FALSE(Child<QPushButton>(&picker, "cmdOpenFile")->isVisible());
    QTableView *grid = Child<QTableView>(&picker, "DataGrid1");
    EXPECT_EQ(grid->editTriggers(), QAbstractItemView::NoEditTriggers);
    grid->selectRow(1);
    Click(&picker, "cmdVyber");
    EXPECT_EQ(picker.selectedAccounts(), QStringList{Rows("SELECT UCET FROM memImport ORDER BY id").value(1)});
}

TEST_F(ImportScreens, MovementsOfBothSidesFromTheDemoExport)
{
    {
        DbConnection conn(ConnStrGranty());
        ImportRequest rq;
        rq.fileName = DemoExport("ucty.txt");
        ASSERT_TRUE(ImportSouboru(conn, rq).ok);
    }
    frmImportPohyb md;
    md.TypImportu = "MD";
    md.Load();
    md.show();
    EXPECT_EQ(md.windowTitle(), "Import částek - MD");
    Child<QLineEdit>(&md, "datDatumOd")->setText("01.01.2025");
    Child<QLineEdit>(&md, "datDatumDo")->setText("31.01.2025");
    Choose(DemoExport("pohyby.txt"));
    ScriptedMessages messages;
    messages.answers = {AnswerYes};
    Click(&md, "cmdOpenFile");
    EXPECT_TRUE(messages.saw("Přejete si zahájit import?"));
    WhenModal("frmProgressBuildTree", "CmdOk");
    // Done, tree done, and no revision after the build.
    messages.answers = {AnswerOk, AnswerOk, AnswerCancel};
    Click(&md, "cmdImportAct");
    EXPECT_TRUE(messages.saw("Akce byla úspěšně ukončena."));
    EXPECT_EQ(messages.lastText(), QString::fromUtf8(TextRevizeQuestion));
    EXPECT_EQ(ErrorList(TitleRevize), nullptr);
    const int mdRows = Count("ImportUctyCastky");
    EXPECT_GT(mdRows, 1000);
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM ImportUctyCastky WHERE Datum NOT LIKE '%.01.2025'").value(0), "0");
    EXPECT_EQ(Child<QLineEdit>(&md, "Text2")->text().toInt(), mdRows);
    EXPECT_GT(Count("Grant_devize_3"), 0);
    QWidget *errors = ErrorList();
    ASSERT_NE(errors, nullptr);
    EXPECT_GT(Child<QListWidget>(errors, "List1")->count(), 0);
    SaveScreen(errors, "frmErrControl");
    SaveScreen(&md, "frmImportPohyb");

    // The Dal side of the same file: a repeat, and the period's Dal rows replaced.
    frmImportPohyb dal;
    dal.TypImportu = "Dal";
    dal.Load();
    for (const auto &[box, date] : {std::pair{"datDatumOd", "01.01.2025"}, {"datDatumDo", "31.01.2025"}}) {
        Child<QLineEdit>(&dal, box)->setText(date);
        emit Child<QLineEdit>(&dal, box)->editingFinished();   // the period is kept on leaving the box
    }
    const QStringList mdSide = Rows("SELECT id, Castka FROM ImportUctyCastky WHERE `MD/DAL` = 'MD' ORDER BY id");
    messages.answers = {AnswerYes, AnswerYes, AnswerOk};
    Click(&dal, "cmdOpenFile");
    EXPECT_TRUE(messages.saw("Soubor  pohyby.txt  je už jedno importován. Přejete si pokračovat?"));
    EXPECT_TRUE(messages.saw("Přejete si vymazat řádky částek - Dal v terminu od 01.01.2025 do 31.01.2025?"));
    WhenModal("frmProgressBuildTree", "CmdOk");
    Click(&dal, "cmdImportAct");   // the revision after the build is wanted this time (OK)
    ASSERT_NE(ErrorList(TitleRevize), nullptr);
    EXPECT_GT(Child<QListWidget>(ErrorList(TitleRevize), "List1")->count(), 0);
    EXPECT_EQ(Rows("SELECT id, Castka FROM ImportUctyCastky WHERE `MD/DAL` = 'MD' AND id <= " + mdSide.last().section('|', 0, 0)
                   + " ORDER BY id"),
              mdSide);
    EXPECT_GT(Rows("SELECT COUNT(*) FROM ImportUctyCastky WHERE `MD/DAL` = 'DAL' AND Castka <> '0,00'").value(0).toInt(), 0);

    // Find, and delete all after the question.
    messages.inputs = {std::optional<QString>("15.01.2025")};
    Child<QTableView>(&dal, "DataGrid1")->setCurrentIndex({});
    Click(&dal, "cmdFind");
    EXPECT_EQ(messages.prompts.value(0), "Zadejte parameter pole - Datum");
    messages.answers = {AnswerOk};
    Click(&dal, "cmdDel");
    EXPECT_TRUE(messages.saw("Opravdu si přejete vymazat vše položky?"));
    EXPECT_EQ(Count("ImportUctyCastky"), 0);
}

TEST_F(ImportScreens, RevisionListsAndPrintsTheUnknownAccounts)
{
    {
        DbConnection conn(ConnStrGranty());
        ImportRequest rq;
        rq.fileName = DemoExport("ucty.txt");
        ASSERT_TRUE(ImportSouboru(conn, rq).ok);
    }
    SaveSetting("NASTAVENI", "UctyNotControl", "311,321,331");
    frmRevize screen;
    screen.show();
    Child<QLineEdit>(&screen, "datDatumOd")->setText("01.02.2025");
    Child<QLineEdit>(&screen, "datDatumDo")->setText("28.02.2025");
    Choose(DemoExport("pohyby.txt"));
    ScriptedMessages messages;
    SaveScreen(&screen, "frmRevize");
    WhenModal("frmProgressBuildTree", "CmdOk", [](QWidget *w) {
        EXPECT_EQ(w->windowTitle(), "Error counts control");
        SaveScreen(w, "frmProgressBuildTree");
    });
    Click(&screen, "cmdControl");
    QWidget *errors = ErrorList(TitleRevize);
    ASSERT_NE(errors, nullptr);
    const QListWidget *list = Child<QListWidget>(errors, "List1");
    ASSERT_GT(list->count(), 10);
    // Only the accounts no group counts are unknown; suppliers and the like are excused.
    for (int i = 0; i < list->count(); ++i)
        EXPECT_TRUE(list->item(i)->text().contains(QRegularExpression("   (513100|538100)   "))) << list->item(i)->text().toStdString();
    EXPECT_NE(Child<QLabel>(errors, "lblMD")->text(), "MD:");
    SaveScreen(errors, "frmErrControl-revize");

    const QString html = static_cast<frmErrControl *>(errors)->writePrintFile();
    const QString text = ReadFileCp1250(html);
    EXPECT_TRUE(text.contains(QString::fromUtf8(TitleRevize)));
    EXPECT_TRUE(text.contains(list->item(0)->text().toHtmlEscaped()));
    const QString chromium = QStandardPaths::findExecutable("chromium-headless-shell");
    if (chromium.isEmpty())
        GTEST_SKIP() << "chromium-headless-shell missing";
    const QString png = SamplesDir("import") + "/ErrInfo.png";
    QProcess::execute(chromium, {"--no-sandbox", "--screenshot=" + png, "--window-size=900,600", html});
    EXPECT_GT(QFileInfo(png).size(), 1000);
}

TEST_F(ImportScreens, BudgetSumsTheFilteredCzkAmounts)
{
    frmImportRozpocet screen;
    screen.show();
    Child<QLineEdit>(&screen, "txtUcty")->setText("672*");
    Choose(DemoExport("rozpocet.txt"));
    ScriptedMessages messages;
    Click(&screen, "cmdOpenFile");
    Click(&screen, "cmdImportAct");
    EXPECT_TRUE(messages.saw("Import file complete."));
    EXPECT_EQ(GetFiltrUctyRozp(), "672*");
    EXPECT_GT(Count("RozpocetFakt"), 12);
    // A grant's sum is its CZK rows of 672* in the demo's export.
    EXPECT_EQ(Rows("SELECT _grant, Poskytnute FROM GrantyPlan WHERE _grant IN ('1201', '2306') ORDER BY _grant"),
              (QStringList{"1201|313 898,45", "2306|35 255,39"}));
    SaveScreen(&screen, "frmImportRozpocet");
    // The same file again: asked, and refused stops.
    messages.answers = {AnswerCancel};
    Click(&screen, "cmdOpenFile");
    EXPECT_TRUE(messages.lastText().startsWith("Soubor  rozpocet.txt  je už jedno importován."));
}
