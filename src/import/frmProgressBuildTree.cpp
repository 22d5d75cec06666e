#include "import/frmProgressBuildTree.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"
#include "import/buildtree.h"
#include "import/frmErrControl.h"
#include "import/importscreens.h"
#include "import/pozice.h"
#include "import/revize.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QProgressBar *Bar(QWidget *screen, const char *name)
{
    auto *bar = new QProgressBar(screen);
    bar->setObjectName(QLatin1String(name));
    bar->setRange(0, 100);
    bar->setValue(0);
    return bar;
}
} // namespace

frmProgressBuildTree::frmProgressBuildTree(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmProgressBuildTree"));
    setWindowTitle(QStringLiteral("Build/calculate GRANT"));
    resize(520, 240);
    Label2 = new QLabel(QStringLiteral("Tvorba stromu účtů GRANTu"), this);
    Label2->setObjectName(QStringLiteral("Label2"));
    Label3 = new QLabel(this);
    Label3->setObjectName(QStringLiteral("Label3"));
    // The three steps as marks that light up in turn: list, movements, tree.
    auto picture = [this](const char *name, const QString &text) {
        auto *p = new QLabel(text, this);
        p->setObjectName(QLatin1String(name));
        p->setFrameShape(QFrame::Box);
        p->setAlignment(Qt::AlignCenter);
        p->setMinimumHeight(32);
        return p;
    };
    Picture1 = picture("Picture1", QStringLiteral("Seznam účtů"));
    Picture2 = picture("Picture2", QStringLiteral("Pohyby MD/DAL"));
    Picture3 = picture("Picture3", QStringLiteral("Strom účtů"));
    ProgressBar1 = Bar(this, "ProgressBar1");
    ProgressBar2 = Bar(this, "ProgressBar2");
    CmdOk = CommandButton(this, "CmdOk", QStringLiteral("&OK"));
    CmdExit = CommandButton(this, "CmdExit", QStringLiteral("&Cancel"));

    auto *pictures = new QHBoxLayout;
    for (QLabel *p : {Picture1, Picture2, Picture3})
        pictures->addWidget(p);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(CmdOk);
    buttons->addWidget(CmdExit);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(pictures);
    layout->addWidget(Label2);
    layout->addWidget(Label3);
    layout->addWidget(ProgressBar1);
    layout->addWidget(ProgressBar2);
    layout->addLayout(buttons);

    connect(CmdOk, &QPushButton::clicked, this, &frmProgressBuildTree::CmdOk_Click);
    connect(CmdExit, &QPushButton::clicked, this, &frmProgressBuildTree::CmdExit_Click);
}

void frmProgressBuildTree::load()
{
    QLabel *pictures[] = {Picture1, Picture2, Picture3};
    for (int i = 0; i < 3; ++i)
        pictures[i]->setStyleSheet(i < TypPicture ? QStringLiteral("background:#c8e6c9") : QString());
    ProgressBar2->setVisible(TypAkce == 2 && LineData.isEmpty());
    if (!LineData.isEmpty())
        Label2->setText(QStringLiteral("Kontrola souboru: ") + LineData.section(QLatin1Char('~'), 0, 0));
}

bool frmProgressBuildTree::showProgress(const QString &step, int accounts, int movements)
{
    Label3->setText(step);
    ProgressBar1->setValue(accounts);
    ProgressBar2->setValue(movements);
    QApplication::processEvents();
    return !m_cancel;
}

void frmProgressBuildTree::runRevize()
{
    const QStringList parts = LineData.split(QLatin1Char('~'));
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen()) {
        ShowDbError(conn);
        return;
    }
    const RevizeResult r = KontrolaSouboru(conn, parts.value(0), parts.value(1), parts.value(2),
                                           [this](int percent) { return showProgress(QString(), percent, 0); });
    if (r.ok && r.lines.isEmpty())
        MsgBox(QStringLiteral("Kontrola souboru neodhalila žádný neevidovaný účet."), MsgInformation, QStringLiteral("Info"));
    ShowErrControl(parentWidget(), QString::fromUtf8(TitleRevize), r.lines, true, r.totalMD, r.totalDal);
}

void frmProgressBuildTree::runBuild()
{
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen()) {
        ShowDbError(conn);
        return;
    }
    const TreeResult r = BuildTree(conn, TypAkce == 2, [this](const TreeProgress &p) {
        if (TypAkce == 2 && p.movements > 0)
            Picture2->setStyleSheet(QStringLiteral("background:#c8e6c9"));
        return showProgress(p.step, p.accounts, p.movements);
    });
    if (r.ok) {
        Picture3->setStyleSheet(QStringLiteral("background:#c8e6c9"));
        MsgBox(QString::fromUtf8(TextTreeDone), MsgInformation, QStringLiteral("Informace"));
        if (TypAkce == 2)
            reviseAfterBuild();
    } else if (r.cancelled) {
        MsgBox(r.failure, MsgInformation, QStringLiteral("Informace"));
    }
}

// After the movements are in, the user may check the export against the account list:
// the file chosen (the one just imported, as a rule) over the period of the import screen.
void frmProgressBuildTree::reviseAfterBuild()
{
    if (!Confirmed(MsgBox(QString::fromUtf8(TextRevizeQuestion), MsgQuestionOkCancel)))
        return;
    const QString file = ChooseExistingImportFile(this, QLatin1String(FilterImportFiles));
    if (file.isEmpty() || !NactiPozice(file, PoziceMD_DAL))
        return;
    RememberImportFolder(file);
    LineData = file + QLatin1Char('~') + GetDatumOd() + QLatin1Char('~') + GetDatumDo();
    runRevize();
    LineData.clear();
}

void frmProgressBuildTree::CmdOk_Click()
{
    if (m_running)
        return;
    m_running = true;
    m_cancel = false;
    CmdOk->setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (LineData.isEmpty())
        runBuild();
    else
        runRevize();
    QApplication::restoreOverrideCursor();
    m_running = false;
    CmdOk->setEnabled(true);
    if (UnLoadBuldTree)
        accept();
}

void frmProgressBuildTree::CmdExit_Click()
{
    if (m_running)
        m_cancel = true;
    else
        reject();
}

void ShowBuildTree(QWidget *parent, int typAkce, int typPicture, bool unload)
{
    frmProgressBuildTree screen(parent);
    screen.TypAkce = typAkce;
    screen.TypPicture = typPicture;
    screen.UnLoadBuldTree = unload;
    screen.load();
    screen.exec();
}
