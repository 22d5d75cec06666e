#include "import/DefinFieldsExport.h"

#include "core/config.h"
#include "core/msg.h"
#include "import/pozice.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const char *const TextBadNumber = "Špatný formát datumu.";   // the program's text, although a number is meant
}

PoziceScreen::PoziceScreen(int kind, QWidget *parent) : QDialog(parent), m_kind(kind)
{
    setWindowTitle(QStringLiteral("Pozice pole v souboře při importu"));
    setModal(true);

    auto *grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Sloupec")), 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("Název pole v hlavičce souboru")), 0, 2);
    const QVector<PoziceRadek> &rows = PoziceRadky(kind);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        auto *cod = new QLineEdit(this);
        cod->setObjectName(QStringLiteral("txtCod"));
        cod->setProperty("Index", int(i));
        cod->setMaxLength(2);
        cod->setFixedWidth(48);
        cod->installEventFilter(this);
        auto *name = new QLineEdit(this);
        name->setObjectName(QStringLiteral("txtName"));
        name->setProperty("Index", int(i));
        name->setMinimumWidth(260);
        name->installEventFilter(this);
        grid->addWidget(new QLabel(rows[i].caption), int(i) + 1, 0);
        grid->addWidget(cod, int(i) + 1, 1);
        grid->addWidget(name, int(i) + 1, 2);
        m_cod << cod;
        m_name << name;
    }

    cmdFile = new QPushButton(QStringLiteral("Nahrat pozice TAB pole dle jeho názvy"), this);
    cmdFile->setObjectName(QStringLiteral("cmdFile"));
    cmdClose = new QPushButton(QStringLiteral("&Ok"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    // Enter belongs to the boxes (it moves on), never to a default button.
    for (QPushButton *b : {cmdFile, cmdClose}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    connect(cmdFile, &QPushButton::clicked, this, &PoziceScreen::cmdFileClick);
    connect(cmdClose, &QPushButton::clicked, this, &PoziceScreen::cmdCloseClick);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdFile);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    loadRows();
}

void PoziceScreen::loadRows()
{
    const QVector<PoziceRadek> &rows = PoziceRadky(m_kind);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        m_cod[i]->setText(ReadPozice(m_kind, rows[i].keyCod));
        m_name[i]->setText(ReadPozice(m_kind, rows[i].keyName));
    }
}

QVector<QString> PoziceScreen::numbers() const
{
    QVector<QString> v;
    for (const QLineEdit *e : m_cod)
        v << e->text();
    return v;
}

QVector<QString> PoziceScreen::headings() const
{
    QVector<QString> v;
    for (const QLineEdit *e : m_name)
        v << e->text();
    return v;
}

bool PoziceScreen::checkCod(QLineEdit *box)
{
    if (IsColumnNumberText(box->text()))
        return true;
    m_checking = true;
    MsgBox(QString::fromUtf8(TextBadNumber), MsgWarning);
    m_checking = false;
    // After the focus change that is under way has finished.
    QTimer::singleShot(0, box, [box] { box->setFocus(); });
    return false;
}

bool PoziceScreen::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = qobject_cast<QLineEdit *>(watched);
    if (box && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            focusNextChild();
            return true;
        }
    }
    // Only a move within the screen is checked, not the screen losing the focus.
    if (box && event->type() == QEvent::FocusOut && !m_checking && m_cod.contains(box)) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            checkCod(box);
    }
    return QDialog::eventFilter(watched, event);
}

QString PoziceScreen::chooseSample()
{
    const QString section = QStringLiteral("Ver 2.4.1");
    QString dir = GetSetting(section, QStringLiteral("LastDir"));
    if (dir.isEmpty())
        dir = GetDirExe();
    const QString file = QFileDialog::getOpenFileName(
        this, QString(), dir,
        QStringLiteral("Import files (*.txt);;Import files (*.doc);;Import files (*.doc *.txt)"));
    if (!file.isEmpty())
        SaveSetting(section, QStringLiteral("LastDir"), QDir::toNativeSeparators(QFileInfo(file).absolutePath()));
    return file;
}

bool PoziceScreen::allCodsValid()
{
    for (QLineEdit *box : m_cod)
        if (!checkCod(box))
            return false;
    return true;
}

void PoziceScreen::cmdFileClick()
{
    if (!allCodsValid())
        return;
    const QString file = SampleFile.isEmpty() ? chooseSample() : SampleFile;
    if (file.isEmpty())
        return;
    QVector<QString> cod = numbers();
    if (!PoziceZeVzorku(file, m_kind, cod, headings()))
        return;
    for (qsizetype i = 0; i < cod.size(); ++i)
        m_cod[i]->setText(cod[i]);
}

void PoziceScreen::cmdCloseClick()
{
    if (!allCodsValid())
        return;
    UlozPozice(m_kind, numbers(), headings());
    accept();
}

DefinFieldsExport::DefinFieldsExport(QWidget *parent) : PoziceScreen(PoziceMD_DAL, parent) {}

frmDefinFieldsExp::frmDefinFieldsExp(QWidget *parent) : PoziceScreen(PoziceUcty, parent) {}

void ShowDefinFieldsExport(QWidget *parent)
{
    DefinFieldsExport screen(parent);
    screen.exec();
}

void ShowDefinFieldsExp(QWidget *parent)
{
    frmDefinFieldsExp screen(parent);
    screen.exec();
}
