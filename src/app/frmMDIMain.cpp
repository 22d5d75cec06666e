#include "app/frmMDIMain.h"

#include "admin/version_check.h"
#include "app/commands.h"
#include "app/frmShowMenu.h"
#include "core/config.h"
#include "core/db.h"
#include "core/frmAbout.h"
#include "core/frmLogin.h"
#include "core/institution.h"
#include "core/msg.h"
#include "core/rights.h"
#include "core/routing.h"
#include "core/session.h"
#include "core/text.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

namespace {
const char *const TextNoFormRights = "Nemate oprávnění k editaci žádného formuláře, pokračování není možné.";

QStyle::StandardPixmap toolbarIcon(const QString &key)
{
    static const QHash<QString, QStyle::StandardPixmap> icons{
        {QStringLiteral("GRANT"), QStyle::SP_FileDialogDetailedView},
        {QStringLiteral("UPGRADE"), QStyle::SP_ArrowDown},
        {QStringLiteral("GRAPH"), QStyle::SP_FileDialogContentsView},
        {QStringLiteral("SPRAVA GR"), QStyle::SP_FileDialogListView},
        {QStringLiteral("SKLAD"), QStyle::SP_DriveHDIcon},
        {QStringLiteral("FIRMY"), QStyle::SP_DirHomeIcon},
        {QStringLiteral("TISKY"), QStyle::SP_DirOpenIcon},
        {QStringLiteral("OBJEDN"), QStyle::SP_FileIcon},
        {QStringLiteral("POST"), QStyle::SP_DriveNetIcon},
        {QStringLiteral("PROTOKOLS"), QStyle::SP_DirClosedIcon},
        {QStringLiteral("PROTOKOL"), QStyle::SP_FileDialogNewFolder},
        {QStringLiteral("STUDIO"), QStyle::SP_DesktopIcon},
        {QStringLiteral("ARCHIV"), QStyle::SP_DialogOpenButton},
        {QStringLiteral("SPRAVA PR"), QStyle::SP_ComputerIcon},
        {QStringLiteral("HELP"), QStyle::SP_DialogHelpButton},
        {QStringLiteral("AUTOR"), QStyle::SP_MessageBoxInformation},
        {QStringLiteral("END"), QStyle::SP_DialogCloseButton},
    };
    return icons.value(key, QStyle::SP_FileIcon);
}
} // namespace

frmMDIMain::frmMDIMain(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMDIMain"));
    setWindowTitle(AppTitle());
    setCentralWidget(new QMdiArea(this));

    Toolbar1 = new QToolBar(this);
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    addToolBar(Toolbar1);
    buildMenu();
    buildToolbar();

    auto *status = new QStatusBar(this);
    status->setObjectName(QStringLiteral("StatusBar1"));
    setStatusBar(status);
    panel1 = new QLabel(status);
    panel1->setObjectName(QStringLiteral("Panel1"));
    panel2 = new QLabel(status);
    panel2->setObjectName(QStringLiteral("Panel2"));
    status->addWidget(panel1, 1);
    status->addPermanentWidget(panel2);

    // Commands the window keeps for itself, not shown.
    cmdLogin = new QPushButton(this);
    cmdLogin->setObjectName(QStringLiteral("cmdLogin"));
    cmdAbout = new QPushButton(this);
    cmdAbout->setObjectName(QStringLiteral("cmdAbout"));
    cmdExit = new QPushButton(this);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    for (QPushButton *b : {cmdLogin, cmdAbout, cmdExit})
        b->hide();
    connect(cmdLogin, &QPushButton::clicked, this, &frmMDIMain::Activate);
    connect(cmdAbout, &QPushButton::clicked, this, [this] { runCommand(QLatin1String(CommandAbout)); });
    connect(cmdExit, &QPushButton::clicked, this, &QWidget::close);

    resize(1000, 700);

    // The load: tray icon, the executable's folder, the version check (before
    // anybody has logged in) and the version in the status bar.
    tray = new frmShowMenu(this);
    Session().DirExe = NormalizePath(GetDirExe());
    CheckNewVersion();
    panel2->setText(StatusVersionText());
}

frmMDIMain::~frmMDIMain() = default;

void frmMDIMain::buildMenu()
{
    // The menu currently open at each level; level 0 is the menu bar itself.
    QMenu *open[3] = {nullptr, nullptr, nullptr};
    for (const MenuEntry &entry : MainMenu()) {
        const QString name = QLatin1String(entry.name);
        const QString caption = QString::fromUtf8(entry.caption);
        QMenu *parentMenu = entry.level > 0 ? open[entry.level - 1] : nullptr;
        if (entry.heading) {
            QMenu *menu = parentMenu ? parentMenu->addMenu(caption) : menuBar()->addMenu(caption);
            menu->setObjectName(name);
            menu->menuAction()->setObjectName(name);
            open[entry.level] = menu;
            // A menu that is also a command of its own ("Protokoly") opens it from its first item.
            if (CommandAvailable(name))
                connect(menu->addAction(caption), &QAction::triggered, this, [this, name] { runCommand(name); });
            continue;
        }
        QAction *action = caption.isEmpty()
                              ? (parentMenu ? parentMenu->addSeparator() : nullptr)
                              : (parentMenu ? parentMenu->addAction(caption) : menuBar()->addAction(caption));
        if (!action)
            continue;
        action->setObjectName(name);
        if (!caption.isEmpty())
            connect(action, &QAction::triggered, this, [this, name] { runCommand(name); });
    }
}

void frmMDIMain::buildToolbar()
{
    for (const ToolbarEntry &entry : ToolbarPositions()) {
        const QString key = QLatin1String(entry.key);
        if (key.isEmpty()) {
            Toolbar1->addSeparator();
            continue;
        }
        QAction *action = Toolbar1->addAction(style()->standardIcon(toolbarIcon(key)), QString::fromUtf8(entry.tip));
        action->setObjectName(key);
        action->setToolTip(QString::fromUtf8(entry.tip));
        connect(action, &QAction::triggered, this, [this, key] { ToolbarClick(key); });

        QMenu *dropDown = nullptr;
        for (const DropDownEntry &item : DropDownItems()) {
            if (key != QLatin1String(item.button))
                continue;
            if (!dropDown)
                dropDown = new QMenu(this);
            const QString itemKey = QLatin1String(item.key);
            QAction *itemAction = dropDown->addAction(QString::fromUtf8(item.caption));
            itemAction->setObjectName(itemKey);
            connect(itemAction, &QAction::triggered, this, [this, itemKey] { DropDownClick(itemKey); });
        }
        if (dropDown) {
            action->setMenu(dropDown);
            if (auto *button = qobject_cast<QToolButton *>(Toolbar1->widgetForAction(action)))
                button->setPopupMode(QToolButton::MenuButtonPopup);
        }
    }
}

bool frmMDIMain::event(QEvent *event)
{
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::WindowActivate)
        Activate();
    return handled;
}

void frmMDIMain::Activate()
{
    // A modal screen opened from here activates the window again when it closes.
    if (activating)
        return;
    activating = true;
    SessionRecord &s = Session();
    if (s.UserTyp == -1)
        DoLogin();
    panel1->setText(QStringLiteral("Otevřená databáze - ") + s.MysqlDb + QStringLiteral(": ") + s.UserJmeno +
                    QLatin1Char(' ') + s.UserPrijmeni);
    ShowRoleToolbar();
    DbConnection sys(ConnStrSys());
    if (OpenOrFatal(sys) && !ReadInstitution(sys))
        FatalConnectionError();
    activating = false;
}

bool frmMDIMain::DoLogin()
{
    frmLogin login(this);
    login.exec();
    if (login.LoginSucceeded && Session().LastToolbarKey != QLatin1String("OBJEDN"))
        UnloadOrderArchive();
    return login.LoginSucceeded;
}

void frmMDIMain::ShowRoleToolbar()
{
    const int typ = Session().UserTyp;
    for (const ToolbarEntry &entry : ToolbarPositions())
        if (QAction *action = Toolbar1->findChild<QAction *>(QLatin1String(entry.key), Qt::FindDirectChildrenOnly))
            action->setVisible(ToolbarButtonVisible(QLatin1String(entry.key), typ));
}

void frmMDIMain::ToolbarClick(const QString &key)
{
    Session().LastToolbarKey = key;
    runCommand(ToolbarCommand(key));
}

void frmMDIMain::DropDownClick(const QString &key)
{
    SessionRecord &s = Session();
    if (s.UserTyp == -1 && DoLogin() && s.UserTyp == 0)
        runCommand(QStringLiteral("mnuObjednVyd"));
    s.ToolbarMenuUsed = true;
    const std::optional<QString> command = DropDownCommand(key);
    if (!command) {
        frmLogin login(this);
        login.exec();
        if (login.LoginSucceeded && s.UserTyp == 0)
            MsgBox(QString::fromUtf8(TextNoFormRights), MsgInformation);
        return;
    }
    if (DropDownRefused(key, s.UserTyp))
        return;
    runCommand(*command);
}

void frmMDIMain::runCommand(const QString &command)
{
    if (command.isEmpty())
        return;
    if (command == QLatin1String(CommandExit)) {
        close();
        return;
    }
    RunCommand(command, this);
}

void frmMDIMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    const int inner = centralWidget() ? centralWidget()->width() : width();
    cmdExit->move(inner - 200, cmdExit->y());
    cmdLogin->move(inner - 10, cmdLogin->y());
}

void frmMDIMain::closeEvent(QCloseEvent *event)
{
    // No question: the window's end is the program's end.
    tray->Remove();
    event->accept();
    EndProcess(0);
}
