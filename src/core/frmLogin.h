#pragma once
// The login screen: login and password, "Přihlásit" and "Zavřít".

#include <QDialog>

class QLineEdit;
class QPushButton;

class frmLogin : public QDialog {
    Q_OBJECT
public:
    explicit frmLogin(QWidget *parent = nullptr);

    bool LoginSucceeded = false;

    // Escape and the window's close button do nothing: the screen is left by a
    // login or by "Zavřít", never into a program with nobody logged in.
    void reject() override {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void login();

    QLineEdit *txtLogin;    // index 18
    QLineEdit *txtHeslo;    // index 19
    QPushButton *cmdLogin;
    QPushButton *Command2;
};

// Closes the order archive when it is open: one user's archive must not stay
// open for the next.
void UnloadOrderArchive();
