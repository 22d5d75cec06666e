#include "core/frmLogin.h"

#include "core/login.h"
#include "core/msg.h"
#include "core/session.h"

#include <QApplication>
#include <QEvent>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const char *const TextWrongLogin = "Mate uvedeno špatné přihlašovací JMÉNO nebo HESLO...";
const char *const IndexProperty = "index";
} // namespace

void UnloadOrderArchive()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmArchObj"))
            w->close();
}

frmLogin::frmLogin(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("Přihlášení"));

    txtLogin = new QLineEdit(this);
    txtLogin->setObjectName(QStringLiteral("txtLogin"));
    txtLogin->setProperty(IndexProperty, 18);
    txtHeslo = new QLineEdit(this);
    txtHeslo->setObjectName(QStringLiteral("txtHeslo"));
    txtHeslo->setProperty(IndexProperty, 19);
    txtHeslo->setEchoMode(QLineEdit::Password);
    for (QLineEdit *field : {txtLogin, txtHeslo})
        field->installEventFilter(this);

    cmdLogin = new QPushButton(QStringLiteral("Přihlásit"), this);
    cmdLogin->setObjectName(QStringLiteral("cmdLogin"));
    cmdLogin->setDefault(true);
    Command2 = new QPushButton(QStringLiteral("Zavřít"), this);
    Command2->setObjectName(QStringLiteral("Command2"));

    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("Login:"), txtLogin);
    fields->addRow(QStringLiteral("Heslo:"), txtHeslo);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdLogin);
    buttons->addWidget(Command2);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    setMinimumWidth(320);

    connect(cmdLogin, &QPushButton::clicked, this, &frmLogin::login);
    connect(Command2, &QPushButton::clicked, this, [this] {
        // Ends the program, also at a re-login from the running program.
        EndProcess(0);
        done(Rejected);
    });
}

void frmLogin::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->geometry().center() - rect().center());
    txtLogin->setFocus();
}

bool frmLogin::eventFilter(QObject *watched, QEvent *event)
{
    auto *field = qobject_cast<QLineEdit *>(watched);
    if (field && event->type() == QEvent::FocusIn) {
        // Select after the click has placed the cursor.
        QTimer::singleShot(0, field, &QLineEdit::selectAll);
    } else if (field && event->type() == QEvent::FocusOut) {
        if (field->property(IndexProperty).toInt() == 18)
            Session().LoginText = field->text();
        UnloadOrderArchive();
    }
    return QDialog::eventFilter(watched, event);
}

void frmLogin::login()
{
    LoginSucceeded = false;
    const QString login = txtLogin->text().trimmed();
    const QString password = txtHeslo->text().trimmed();
    LoginResult result = LoginResult::Refused;
    if (!login.isEmpty() && !password.isEmpty())
        result = CheckLogin(login, password);
    switch (result) {
    case LoginResult::Succeeded:
        LoginSucceeded = true;
        accept();
        break;
    case LoginResult::Refused:
        MsgBox(QString::fromUtf8(TextWrongLogin), MsgCritical);
        txtLogin->setFocus();
        break;
    case LoginResult::Failed:
        done(Rejected);   // the process has been ended
        break;
    }
}
