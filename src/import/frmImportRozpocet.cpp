#include "import/frmImportRozpocet.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"
#include "import/DefinFieldsExport.h"
#include "import/importscreens.h"
#include "import/importsouboru.h"
#include "import/pozice.h"

#include <QApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

frmImportRozpocet::frmImportRozpocet(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImportRozpocet"));
    setWindowTitle(QStringLiteral("Import poskytnutých rozpočtových částek"));
    resize(640, 220);
    txtUcty = new QLineEdit(GetFiltrUctyRozp(), this);
    txtUcty->setObjectName(QStringLiteral("txtUcty"));
    lblOpenFile = new QLabel(this);
    lblOpenFile->setObjectName(QStringLiteral("lblOpenFile"));
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setRange(0, 100);
    cmdOpenFile = CommandButton(this, "cmdOpenFile", QStringLiteral("&Náčist soubor"));
    cmdDefinice = CommandButton(this, "cmdDefinice", QStringLiteral("&Definice TAB"));
    cmdImportAct = CommandButton(this, "cmdImportAct", QStringLiteral("&Import"));
    Command1 = CommandButton(this, "Command1", QStringLiteral("&Konec"));
    cmdImportAct->setEnabled(false);

    auto *layout = new QGridLayout(this);
    layout->addWidget(HeadingLabel(this, QStringLiteral("Import poskytnutých rozpočtových částek")), 0, 0, 1, 4);
    layout->addWidget(new QLabel(QStringLiteral("Započítat účty dle filtru"), this), 1, 0);
    layout->addWidget(txtUcty, 1, 1, 1, 3);
    layout->addWidget(new QLabel(QStringLiteral("  Filtr pro načítaní účtu zadejte způsobem  např. 6*,801*,123000"), this), 2, 0, 1, 4);
    layout->addWidget(lblOpenFile, 3, 0, 1, 4);
    layout->addWidget(ProgressBar1, 4, 0, 1, 4);
    layout->addWidget(cmdOpenFile, 5, 0);
    layout->addWidget(cmdDefinice, 5, 1);
    layout->addWidget(cmdImportAct, 5, 2);
    layout->addWidget(Command1, 5, 3);

    connect(cmdOpenFile, &QPushButton::clicked, this, &frmImportRozpocet::cmdOpenFile_Click);
    connect(cmdDefinice, &QPushButton::clicked, this, [this] { ShowDefinFieldsExp(this); });
    connect(cmdImportAct, &QPushButton::clicked, this, &frmImportRozpocet::cmdImportAct_Click);
    connect(Command1, &QPushButton::clicked, this, &QDialog::reject);
    connect(txtUcty, &QLineEdit::editingFinished, this, [this] { SetFiltrUctyRozp(txtUcty->text().trimmed()); });
}

void frmImportRozpocet::cmdOpenFile_Click()
{
    const QString file = ChooseExistingImportFile(this, QLatin1String(FilterImportFiles));
    if (file.isEmpty())
        return;
    const QString name = QFileInfo(file).fileName();
    if (IsRepeatedFile(file, RepeatBudget)
        && !Confirmed(MsgBox(QStringLiteral("Soubor  ") + name
                                 + QStringLiteral("  je už jedno importován. Pokud si přejete opakovat import dat, původně "
                                                  "nahrána data z toho to souboru budou vymazána!"),
                             MsgQuestionOkCancel)))
        return;
    RememberFile(file, RepeatBudget);
    RememberImportFolder(file);
    if (!NactiPozice(file, PoziceUcty))
        return;
    // RozpocetFakt is emptied by the import itself, in its transaction.
    m_file = file;
    lblOpenFile->setText(file.toLower());
    cmdImportAct->setEnabled(true);
}

void frmImportRozpocet::cmdImportAct_Click()
{
    if (m_file.isEmpty())
        return;
    cmdImportAct->setEnabled(false);
    SetFiltrUctyRozp(txtUcty->text().trimmed());
    ImportRequest rq;
    rq.fileName = m_file;
    rq.mode = ImportRozpocet;
    rq.extraFilter = txtUcty->text().trimmed();
    rq.emptyTarget = true;
    rq.progress = [this](const ImportProgress &p) {
        ProgressBar1->setValue(p.percent);
        QApplication::processEvents();
        return true;
    };
    m_file.clear();
    DbConnection conn(ConnStrGranty());
    const bool ok = conn.isOpen() && ImportSouboru(conn, rq).ok && SumPoskytnute(conn, rq.extraFilter);
    MsgBox(ok ? QStringLiteral("Import file complete.") : QStringLiteral("Není Import file complete."));
}

void ShowImportRozpocet(QWidget *parent)
{
    frmImportRozpocet screen(parent);
    screen.exec();
}
