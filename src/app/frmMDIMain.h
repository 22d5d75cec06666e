#pragma once
// The frame of the application: menu, toolbar and status bar. It shows nothing of
// its own; every command is routed to the screen registered for it.

#include <QMainWindow>

class QLabel;
class QPushButton;
class QToolBar;
class frmShowMenu;

class frmMDIMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMDIMain(QWidget *parent = nullptr);
    ~frmMDIMain() override;

    // What each activation does: the login when nobody is logged in, then the status
    // text, the toolbar of the role and the institution's data.
    void Activate();
    // A toolbar button and a drop-down item of the toolbar, by key.
    void ToolbarClick(const QString &key);
    void DropDownClick(const QString &key);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    bool DoLogin();
    void ShowRoleToolbar();
    void runCommand(const QString &command);
    void buildMenu();
    void buildToolbar();

    QToolBar *Toolbar1;
    QLabel *panel1;
    QLabel *panel2;
    QPushButton *cmdLogin;
    QPushButton *cmdAbout;
    QPushButton *cmdExit;
    frmShowMenu *tray = nullptr;
    bool activating = false;
};
