#include "import/frmImportBegin.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"
#include "import/frmProgressBuildTree.h"
#include "import/importscreens.h"
#include "import/importsouboru.h"

#include <QApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlQuery>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const QStringList Columns{QStringLiteral("Ucet"), QStringLiteral("Nazev"), QStringLiteral("Grant")};
}

frmImportBegin::frmImportBegin(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImportBegin"));
    setWindowTitle(QStringLiteral("Importována data"));
    resize(820, 600);
    m_model = new ImportRowsModel(QStringLiteral("memImport"), Columns, this);
    DataGrid1 = RowsGrid(this, m_model);
    DataGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    DataGrid1->setColumnWidth(1, 380);
    auto label = [this](const char *name, const QString &text = QString()) {
        auto *l = new QLabel(text, this);
        l->setObjectName(QLatin1String(name));
        return l;
    };
    Label2 = label("Label2");
    Label3 = label("Label3", QStringLiteral("Progress :"));
    lblDatOd = label("lblDatOd");
    lblDatDo = label("lblDatDo");
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setRange(0, 100);
    cmdOpenFile = CommandButton(this, "cmdOpenFile", QStringLiteral("&Otevřít soubor"));
    cmdImportAct = CommandButton(this, "cmdImportAct", QStringLiteral("&Import"));
    cmdFind = CommandButton(this, "cmdFind", QStringLiteral("F7-&Najit"));
    cmdVyber = CommandButton(this, "cmdVyber", QStringLiteral("&Výběr"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("&Konec"));
    cmdFind->setShortcut(QKeySequence(Qt::Key_F7));
    cmdImportAct->setEnabled(false);

    auto *top = new QGridLayout;
    top->addWidget(new QLabel(QStringLiteral("Importní soubor :"), this), 0, 0);
    top->addWidget(Label2, 0, 1, 1, 3);
    top->addWidget(new QLabel(QStringLiteral("Datum poslední aktualizace :"), this), 1, 0);
    top->addWidget(new QLabel(QStringLiteral("Aktualizace čerpání účtů za období  od"), this), 1, 1);
    top->addWidget(lblDatOd, 1, 2);
    top->addWidget(lblDatDo, 1, 3);
    top->addWidget(Label3, 2, 0);
    top->addWidget(ProgressBar1, 2, 1, 1, 2);
    top->addWidget(new QLabel(QStringLiteral("Záznam číslo:"), this), 2, 3);
    top->addWidget(Text1, 2, 4);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdOpenFile, cmdImportAct, cmdFind})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdVyber);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(buttons);

    connect(cmdOpenFile, &QPushButton::clicked, this, &frmImportBegin::cmdOpenFile_Click);
    connect(cmdImportAct, &QPushButton::clicked, this, &frmImportBegin::cmdImportAct_Click);
    connect(cmdFind, &QPushButton::clicked, this, &frmImportBegin::cmdFind_Click);
    connect(cmdVyber, &QPushButton::clicked, this, &frmImportBegin::cmdVyber_Click);
    connect(cmdClose, &QPushButton::clicked, this, [this] {
        if (m_running)
            m_cancel = true;
        else
            reject();
    });
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { showCount(); });
}

void frmImportBegin::Load()
{
    cmdVyber->setVisible(VyberUcet);
    cmdOpenFile->setVisible(!VyberUcet);
    cmdImportAct->setVisible(!VyberUcet);
    Label3->setVisible(false);
    ProgressBar1->setVisible(false);
    // Only an administrator corrects the list by hand; the picker only chooses.
    const bool editable = Session().UserTyp == 2 && !VyberUcet;
    m_model->setEditable(editable);
    DataGrid1->setEditTriggers(editable ? QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                              | QAbstractItemView::AnyKeyPressed
                                        : QAbstractItemView::NoEditTriggers);
    m_model->refresh();
    // The period of the movements the tree was last built from.
    DbConnection conn(ConnStrGranty());
    QSqlQuery q = conn.query();
    if (conn.exec(q, QStringLiteral("SELECT Datum FROM ImportUctyCastky"))) {
        QDate first, last;
        while (q.next()) {
            const QDate d = ParseImportDate(q.value(0).toString());
            if (d.isValid() && (!first.isValid() || d < first))
                first = d;
            if (d.isValid() && (!last.isValid() || d > last))
                last = d;
        }
        lblDatOd->setText(first.toString(QStringLiteral("dd.MM.yyyy")));
        lblDatDo->setText(last.toString(QStringLiteral("dd.MM.yyyy")));
    }
    if (m_model->rowCount() > 0)
        DataGrid1->selectRow(0);
    showCount();
}

void frmImportBegin::showCount()
{
    const QModelIndex current = DataGrid1->currentIndex();
    Text1->setText(QString::number(current.isValid() ? current.row() + 1 : m_model->rowCount()));
}

void frmImportBegin::cmdOpenFile_Click()
{
    const QString file = ChooseImportFile(this, QLatin1String(FilterTxt));
    if (file.isEmpty())
        return;
    RememberImportFolder(file);
    if (!QFileInfo(file).isFile()) {
        Label2->setText(QStringLiteral("Import file not exist..."));
        return;
    }
    DbConnection conn(ConnStrGranty());
    for (const char *table : {"memImport", "grant_devize_1", "grant_devize_2", "grant_devize_3", "granttabl_main"})
        if (!conn.isOpen() || !VymazTabulku(conn, QLatin1String(table))) {
            ShowDbError(conn);
            return;
        }
    m_file = file;
    Label2->setText(file.toLower());
    cmdImportAct->setEnabled(true);
    cmdOpenFile->setEnabled(false);
    m_model->refresh();
    showCount();
}

void frmImportBegin::cmdImportAct_Click()
{
    if (m_file.isEmpty() || m_running)
        return;
    Label3->setVisible(true);
    ProgressBar1->setValue(0);
    ProgressBar1->setVisible(true);
    cmdImportAct->setEnabled(false);
    m_running = true;
    m_cancel = false;
    ImportRequest rq;
    rq.fileName = m_file;
    rq.mode = ImportUcty;
    rq.progress = [this](const ImportProgress &p) {
        ProgressBar1->setValue(p.percent);
        Text1->setText(QString::number(p.rows));
        QApplication::processEvents();
        return !m_cancel;
    };
    ImportResult r;
    {
        DbConnection conn(ConnStrGranty());
        if (conn.isOpen())
            r = ImportSouboru(conn, rq);
        else
            ShowDbError(conn);
    }
    m_running = false;
    m_file.clear();
    cmdOpenFile->setEnabled(true);
    m_model->refresh();
    if (!r.ok) {
        showCount();
        return;
    }
    Label3->setVisible(false);
    ProgressBar1->setVisible(false);
    if (m_model->rowCount() > 0)
        DataGrid1->selectRow(0);
    showCount();
    MsgBox(QStringLiteral("Import file complete "), MsgInformation, QStringLiteral("Info"));
    ShowBuildTree(this, 1, 1, true);
}

void frmImportBegin::cmdFind_Click()
{
    const QModelIndex current = DataGrid1->currentIndex();
    const int column = current.isValid() ? current.column() : 0;
    const std::optional<QString> value =
        InputBox(QStringLiteral("Zadejte parameter pole - ") + Columns.at(column), QStringLiteral("Find :"));
    if (!value)
        return;
    // The names are stored behind two blanks.
    const int row = m_model->find(column, column == 1 ? QStringLiteral("  ") + *value : *value);
    if (row < 0) {
        MsgBox(QStringLiteral("No search found !"));
        return;
    }
    DataGrid1->setCurrentIndex(m_model->index(row, column));
    showCount();
}

void frmImportBegin::cmdVyber_Click()
{
    m_selected.clear();
    for (const QModelIndex &row : DataGrid1->selectionModel()->selectedRows())
        m_selected << m_model->text(row.row(), 0).trimmed();
    accept();
}

void ShowImportBegin(QWidget *parent)
{
    frmImportBegin screen(parent);
    screen.Load();
    screen.exec();
}

QStringList PickAccounts(QWidget *parent)
{
    frmImportBegin screen(parent);
    screen.VyberUcet = true;
    screen.Load();
    return screen.exec() == QDialog::Accepted ? screen.selectedAccounts() : QStringList();
}
