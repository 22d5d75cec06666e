#pragma once
// The tray icon of the program and its pop-up menu "Shell Menu".

#include <QObject>

class QMenu;
class QSystemTrayIcon;
class QWidget;

class frmShowMenu : public QObject {
    Q_OBJECT
public:
    // Adds the icon for the main window; nothing appears where the desktop has no tray.
    explicit frmShowMenu(QWidget *mainWindow);

    // Takes the icon away (at the end of the program).
    void Remove();
    // A left click on the icon: the main window back from the task bar, shown and
    // kept on top of the other programs' windows.
    void ShowMainWindow();

private:
    QWidget *mainWindow;
    QMenu *menu = nullptr;
    QSystemTrayIcon *icon = nullptr;
};
