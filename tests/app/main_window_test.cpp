#include "app/commands.h"
#include "app/frmMDIMain.h"
#include "app/frmShowMenu.h"
#include "app/frmZast.h"
#include "app/screens.h"
#include "app/startup.h"
#include "core/config.h"
#include "core/msg.h"
#include "core/routing.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTcpServer>
#include <QTimer>
#include <QToolBar>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QStringList RoleKeys{"SPRAVA GR", "SKLAD", "FIRMY", "TISKY", "OBJEDN", "SPRAVA PR"};

// The test server; the version check goes to a port where nothing listens.
void writeIni()
{
    WriteIni(QStringLiteral("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\nWEB_SERVER=127.0.0.1:1\r\n")
                 .arg(ServerPort()));
}

void freshStart()
{
    qputenv("FONDARIX_NO_BROWSER", "1");
    FreshDatabases();
    writeIni();
}

QAction *action(QWidget &window, const QString &name)
{
    QAction *a = window.findChild<QAction *>(name);
    EXPECT_NE(a, nullptr) << name.toStdString();
    return a;
}

QStringList visibleRoleKeys(frmMDIMain &window)
{
    QStringList keys;
    for (const QString &key : RoleKeys)
        if (action(window, key)->isVisible())
            keys << key;
    return keys;
}

// Counts the runs of a command, in place of its screen.
struct CommandProbe {
    explicit CommandProbe(const QString &command)
    {
        RegisterCommand(command, [this](QWidget *) { ++runs; });
    }
    int runs = 0;
};

// Logs in through the login screen once its modal loop runs.
void loginWhenAsked(const QString &login, const QString &password)
{
    QTimer::singleShot(0, [login, password] {
        QWidget *dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        ASSERT_EQ(dialog->objectName(), "frmLogin");
        dialog->findChild<QLineEdit *>("txtLogin")->setText(login);
        dialog->findChild<QLineEdit *>("txtHeslo")->setText(password);
        dialog->findChild<QPushButton *>("cmdLogin")->click();
    });
}
} // namespace

TEST(MainWindow, FirstActivationAsksForTheLoginAndEachRoleSeesItsToolbar)
{
    freshStart();
    {
        ScriptedMessages messages;
        frmMDIMain window;
        ASSERT_EQ(Session().UserTyp, -1);
        loginWhenAsked("novakova", "grant1");
        window.Activate();
        EXPECT_EQ(Session().UserTyp, 1);
        EXPECT_EQ(window.findChild<QLabel *>("Panel1")->text(), "Otevřená databáze - fondarix_ofk: Jana Nováková");
        EXPECT_TRUE(messages.shown.empty());
    }
    const QList<QStringList> shown{
        {"SPRAVA PR"},
        {"SPRAVA GR", "SKLAD", "FIRMY", "TISKY", "OBJEDN", "SPRAVA PR"},
        {"TISKY", "SPRAVA PR"},
        {"SKLAD", "FIRMY", "TISKY", "OBJEDN", "SPRAVA PR"},
        {"TISKY", "SPRAVA PR"},
        {"TISKY", "SPRAVA PR"},
    };
    for (int role = 1; role <= 6; ++role) {
        LoginAs(role);
        frmMDIMain window;
        window.Activate();
        EXPECT_EQ(visibleRoleKeys(window), shown[role - 1]) << "role " << role;
        // The other positions are never hidden.
        for (const char *key : {"GRANT", "UPGRADE", "GRAPH", "POST", "PROTOKOLS", "PROTOKOL", "STUDIO", "ARCHIV",
                                "HELP", "AUTOR", "END"})
            EXPECT_TRUE(action(window, key)->isVisible()) << key;
        if (role == 1 || role == 2)
            SaveScreen(&window, QStringLiteral("frmMDIMain_role%1").arg(role));
    }

    // The toolbar's positions and the menus' items with their captions.
    frmMDIMain window;
    int positions = 0;
    for (QAction *a : window.findChild<QToolBar *>("Toolbar1")->actions())
        positions += a->isSeparator() || !a->objectName().isEmpty();
    EXPECT_EQ(positions, 24);
    EXPECT_EQ(action(window, "SPRAVA GR")->toolTip(), "Správa GRANTu");
    EXPECT_EQ(action(window, "ARCHIV")->toolTip(), "Archiv čerpaní GRANTu za minule roky");
    EXPECT_EQ(action(window, "mnuBuildTree")->text(), "&Tvorbá  \"stromů\" účtů");
    EXPECT_EQ(action(window, "mnuImportDal")->text(), "Import souboru  \"&Dal\"");
    EXPECT_EQ(action(window, "IMPArchiv")->text(), "Import archivu       (lokální disk -> síť)");
    EXPECT_EQ(action(window, "mnu34")->text(), "Import souboru  čerpání, částky \"MD\"");
    EXPECT_EQ(action(window, "SPRAVA GR")->menu()->actions().size(), 13);
    EXPECT_EQ(action(window, "OBJEDN")->menu()->actions().size(), 7);
    EXPECT_EQ(action(window, "SPRAVA PR")->menu()->actions().size(), 8);
}

TEST(MainWindow, ActivationWritesStatusAndRepairsTheInstitution)
{
    freshStart();
    LoginAs(2);
    frmMDIMain window;
    EXPECT_TRUE(window.findChild<QLabel *>("Panel2")->text().startsWith("Fondarix verze " + ProgramVersion() +
                                                                        "  © Copyright "));
    Exec("fondarix_sys", "UPDATE sys_nastaveni SET PSC=''");
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(&window, &activate);
    EXPECT_EQ(window.findChild<QLabel *>("Panel1")->text(), "Otevřená databáze - fondarix_ofk: Petr Svoboda");
    EXPECT_EQ(Session().InstPSC, "100 00");   // the repair itself is the institution test's

    // Each activation reads again: a change on the server shows at the next one.
    Exec("fondarix_sys", "UPDATE sys_nastaveni SET PSC='', Mesto='Horní Lhotka'");
    QApplication::sendEvent(&window, &activate);
    EXPECT_EQ(Session().InstMesto, "Horní Lhotka");
    EXPECT_EQ(Session().InstPSC, "100 00");
}

TEST(MainWindow, ToolbarClicksRouteOrDoNothing)
{
    freshStart();
    LoginAs(2);
    ScriptedMessages messages;
    // Registered before the window is built: the "Protokoly" menu then gets its own item.
    CommandProbe protocols("mnuArchivProt");
    CommandProbe studio("mnu131");
    frmMDIMain window;
    CommandProbe graph("mnuGraf");
    CommandProbe importMd("mnuImportMDDal");
    const int windowsBefore = QApplication::topLevelWidgets().size();

    for (const char *key : {"POST", "UPGRADE", "PROTOKOL", "ARCHIV"}) {
        action(window, key)->trigger();
        EXPECT_EQ(Session().LastToolbarKey, key);
    }
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windowsBefore);
    EXPECT_TRUE(messages.shown.empty());

    // The protocol screens: from their buttons, and from the "Protokoly" menu's two items.
    action(window, "PROTOKOLS")->trigger();
    action(window, "STUDIO")->trigger();
    const QList<QAction *> menu = window.findChild<QMenu *>("mnuArchivProt")->actions();
    ASSERT_EQ(menu.size(), 2);
    EXPECT_EQ(menu[0]->text(), "Protokoly");
    menu[0]->trigger();
    menu[1]->trigger();
    EXPECT_EQ(protocols.runs, 2);
    EXPECT_EQ(studio.runs, 2);

    action(window, "GRAPH")->trigger();
    action(window, "SPRAVA GR")->trigger();
    action(window, "mnuImportMDDal")->trigger();
    EXPECT_EQ(graph.runs, 1);
    EXPECT_EQ(importMd.runs, 2);
    EXPECT_EQ(Session().LastToolbarKey, "SPRAVA GR");
    EXPECT_FALSE(Session().ToolbarMenuUsed);
}

TEST(MainWindow, RoleFiveIsRefusedTheListedItemsAndRoleZeroEverything)
{
    freshStart();
    ScriptedMessages messages;
    CommandProbe skupiny("mnuSkupiny");
    CommandProbe rozpocet("mnuRozpocet");
    CommandProbe imports("mnuImport");
    LoginAs(5);
    {
        frmMDIMain window;
        action(window, "mnu314")->trigger();
        action(window, "mnu31")->trigger();
        EXPECT_EQ(skupiny.runs, 0);
        EXPECT_EQ(imports.runs, 0);
        EXPECT_TRUE(Session().ToolbarMenuUsed);
        action(window, "mnu315")->trigger();
        EXPECT_EQ(rozpocet.runs, 1);
    }
    LoginAs(2);
    frmMDIMain window;
    action(window, "mnu314")->trigger();
    EXPECT_EQ(skupiny.runs, 1);
    EXPECT_TRUE(messages.shown.empty());

    // An unknown drop-down key asks for the login again, and role 0 is refused.
    Exec("fondarix_sys", "UPDATE sys_users SET typ=0 WHERE login='cerny'");
    // mnu131 has a row: nothing happens, no login.
    window.DropDownClick("mnu131");
    EXPECT_TRUE(messages.shown.empty());

    loginWhenAsked("cerny", "tvurce4");
    window.DropDownClick("mnu999");
    EXPECT_EQ(Session().UserTyp, 0);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Nemate oprávnění k editaci žádného formuláře, pokračování není možné.");
    EXPECT_EQ(messages.shown[0].style, MsgInformation);
}

TEST(MainWindow, ServerGoneAtTheNextActivationGivesTheMessage)
{
    freshStart();
    LoginAs(2);
    frmMDIMain window;
    window.Activate();
    WriteIni("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=1\r\nWEB_SERVER=127.0.0.1:1\r\n");
    ScriptedMessages messages;
    ProcessEndRecorder end;
    window.Activate();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(messages.shown[0].text.startsWith(QString::fromUtf8(TextNotConnected)));
    EXPECT_EQ(messages.shown[0].style, MsgCritical);
    EXPECT_TRUE(end.ended);
}

TEST(MainWindow, OwnCommandsTheTrayAndTheEnd)
{
    freshStart();
    LoginAs(2);
    RegisterScreens();
    for (const char *command : {"mnuKalendar", "mnuHelp", CommandAbout, "mnuDefineFields", "mnuStredisko",
                                "mnuBuildSkup", "mnuSkupiny", "mnuRozpocet", "mnuArchivProt", "mnu131"})
        EXPECT_TRUE(CommandAvailable(command)) << command;

    frmMDIMain window;
    // The about screen opens modally from its toolbar button.
    QTimer::singleShot(0, [] {
        QWidget *about = QApplication::activeModalWidget();
        ASSERT_NE(about, nullptr);
        EXPECT_EQ(about->objectName(), "frmAbout");
        EXPECT_EQ(about->windowTitle(), "O autoře");
        EXPECT_EQ(about->findChild<QLabel *>("lblCopyright")->text(),
                  "© Copyright " + QString::number(QDate::currentDate().year()) + ". Všechna práva vyhrazena");
        SaveScreen(about, "frmAbout");
        about->findChild<QPushButton *>("cmdOk")->click();
    });
    action(window, "AUTOR")->trigger();

    // The help page opens in the viewer.
    const int before = QApplication::topLevelWidgets().size();
    action(window, "HELP")->trigger();
    EXPECT_GT(QApplication::topLevelWidgets().size(), before);

    // The tray brings the minimised window back on top; its menu's first item does nothing,
    // the second ends the program, as does the toolbar's END.
    window.showMinimized();
    auto *tray = window.findChild<frmShowMenu *>();
    ASSERT_NE(tray, nullptr);
    tray->ShowMainWindow();
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    auto *menu = Child<QMenu>(&window, "Shell Menu");
    menu->popup(window.geometry().center());
    SaveScreen(menu, "frmShowMenu");
    ProcessEndRecorder end;
    action(*menu, "itm_Show")->trigger();
    EXPECT_FALSE(end.ended);
    action(*menu, "itm_quit")->trigger();
    EXPECT_TRUE(end.ended);
    end.ended = false;
    action(window, "END")->trigger();
    EXPECT_TRUE(end.ended);
}

// The settings as a user reaches them: the menu, the toolbar button and its drop-down item.
TEST(MainWindow, SettingsOpenFromTheMenuTheToolbarAndItsDropDown)
{
    freshStart();
    LoginAs(2);
    RegisterScreens();
    ScriptedMessages messages;
    frmMDIMain window;
    QString deadPort;
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        deadPort = QString::number(probe.serverPort());
    }
    const struct {
        const char *entry, *field;
        QString value;
    } flows[] = {{"mnuSysItem", "txtMesto", "Horní Lhotka"},
                 {"SPRAVA PR", "txtFields1", "Jan Správce"},
                 {"mnu112", "txtServerPort", deadPort}};
    for (const auto &f : flows) {
        SCOPED_TRACE(f.entry);
        messages.shown.clear();
        messages.answers = {AnswerCancel, AnswerOk};
        bool opened = false;
        QTimer::singleShot(0, [&] {
            QWidget *sys = QApplication::activeModalWidget();
            ASSERT_TRUE(sys && sys->objectName() == "frmSYS");
            opened = true;
            Child<QLineEdit>(sys, f.field)->setText(f.value);
            if (f.entry == flows[0].entry)
                SaveScreen(sys, "frmSYS-pracoviste");
            Child<QPushButton>(sys, "cmdOk")->click();
            // A server that does not answer is asked about: Cancel saves nothing, OK saves.
            if (sys->isVisible()) {
                EXPECT_TRUE(messages.lastText().startsWith("Server 127.0.0.1, port " + deadPort + " neodpovídá"));
                EXPECT_EQ(GetServerPort(), QString::number(ServerPort()));
                Child<QPushButton>(sys, "cmdOk")->click();
            }
        });
        action(window, f.entry)->trigger();
        EXPECT_TRUE(opened);
    }
    EXPECT_EQ(messages.shown.size(), 2u);   // the question, twice
    EXPECT_EQ(GetServerPort(), deadPort);
    EXPECT_EQ(GetSetting("SPRAVCE", "Name"), "Jan Správce");
    writeIni();
    EXPECT_EQ(Column("fondarix_sys", "SELECT Mesto FROM sys_nastaveni"), QStringList{"Horní Lhotka"});
}

TEST(Startup, SplashShowsVersionAndCopyrightAndClosesItself)
{
    FreshDatabases(false);
    frmZast splash;
    const QString year = QString::number(QDate::currentDate().year());
    EXPECT_EQ(Child<QLabel>(&splash, "lblVersion")->text(), "verze " + ProgramVersion());
    EXPECT_EQ(Child<QLabel>(&splash, "lblCopyright")->text(), "© Copyright " + year + ". All rights reserved");
    SaveScreen(&splash, "frmZast");
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(splash.exec(), QDialog::Accepted);
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST(Startup, SecondInstanceIsRefused)
{
    FreshDatabases(false);
    ScriptedMessages messages;
    const auto first = AcquireInstanceLock();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(AcquireInstanceLock(), nullptr);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Mate tento program už jedno zpuštěn !");
    EXPECT_EQ(messages.shown[0].style, MsgInformation);
    // The first keeps its lock.
    EXPECT_TRUE(first->isLocked());
}

TEST(Startup, HelpPageIsShippedInTheReportsCodePage)
{
    QFile help(HelpFilePath());
    ASSERT_TRUE(help.open(QIODevice::ReadOnly)) << HelpFilePath().toStdString();
    const QByteArray bytes = help.readAll();
    EXPECT_TRUE(bytes.contains("charset=windows-1250"));
    // "Správa" in Windows-1250: á is 0xE1.
    EXPECT_TRUE(bytes.contains("Spr\xE1va"));
}
