#include "app/frmShowMenu.h"

#include "core/msg.h"
#include "core/text.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QWidget>

frmShowMenu::frmShowMenu(QWidget *mainWindow)
    : QObject(mainWindow)
    , mainWindow(mainWindow)
{
    // The menu stands ready even where the desktop has no tray, so that it can be shown and tried.
    menu = new QMenu(QStringLiteral("Shell Menu"), mainWindow);
    menu->setObjectName(QStringLiteral("Shell Menu"));
    QAction *show = menu->addAction(QStringLiteral("Zobrazit seznam"));
    show->setObjectName(QStringLiteral("itm_Show"));   // has no action of its own
    QAction *quit = menu->addAction(QStringLiteral("Ukončit program"));
    quit->setObjectName(QStringLiteral("itm_quit"));
    connect(quit, &QAction::triggered, this, [this] {
        Remove();
        EndProcess(0);
    });

    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    icon = new QSystemTrayIcon(mainWindow->windowIcon(), this);
    icon->setToolTip(QStringLiteral("Program Fondarix"));
    icon->setContextMenu(menu);
    connect(icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            ShowMainWindow();
    });
    icon->show();
}

void frmShowMenu::ShowMainWindow()
{
    if (mainWindow->isMinimized())
        mainWindow->showNormal();
    mainWindow->show();
    SetTopMost(mainWindow, true);
    mainWindow->activateWindow();
}

void frmShowMenu::Remove()
{
    if (icon)
        icon->hide();
}
