#include "stock/frmTyp.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "stock/frmCHEMIK.h"
#include "stock/sklad.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSqlQueryModel>
#include <QTableView>
#include <QVBoxLayout>

// The names of the warehouses; a name is renamed in place.
class SkladListModel : public QSqlQueryModel {
public:
    std::function<bool(const QString &file, const QString &name)> rename;

    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return QSqlQueryModel::flags(index) | (index.column() == 0 ? Qt::ItemIsEditable : Qt::NoItemFlags);
    }
    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        if (role != Qt::EditRole || index.column() != 0 || !rename)
            return false;
        return rename(this->index(index.row(), 1).data().toString(), value.toString());
    }
};

frmTyp::frmTyp(QWidget *parent) : QDialog(parent), CentreDb(Session().MysqlDb)
{
    setWindowTitle(QStringLiteral("Sklady"));
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    DataGrid1->horizontalHeader()->setStretchLastSection(true);
    DataGrid1->verticalHeader()->hide();

    auto button = [this](const char *name, const QString &caption) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        return b;
    };
    cmdOk = button("cmdOk", QStringLiteral("Vybrat sklad"));
    cmdAdd = button("cmdAdd", QStringLiteral("&Nový"));
    cmdDelete = button("cmdDelete", QStringLiteral("Smazat sklad"));
    cmdEdit = button("cmdEdit", QStringLiteral("Změnit název "));
    CmdExit = button("CmdExit", QStringLiteral("Zavřít"));
    auto *buttons = new QVBoxLayout;
    for (QPushButton *b : {cmdOk, cmdAdd, cmdEdit, cmdDelete})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(CmdExit);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(buttons);
    resize(520, 360);

    connect(cmdOk, &QPushButton::clicked, this, &frmTyp::cmdOk_Click);
    connect(cmdAdd, &QPushButton::clicked, this, &frmTyp::cmdAdd_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmTyp::cmdDelete_Click);
    connect(cmdEdit, &QPushButton::clicked, this, &frmTyp::cmdEdit_Click);
    connect(CmdExit, &QPushButton::clicked, this, &QDialog::reject);
    connect(DataGrid1, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.column() != 0 || VyberPending)
            cmdOk_Click();
    });
}

frmTyp::~frmTyp() = default;

bool frmTyp::Load()
{
    m_centre = std::make_unique<DbConnection>(ConnStrFor(CentreDb));
    if (!OpenOrFatal(*m_centre))
        return false;
    m_model = std::make_unique<SkladListModel>();
    m_model->rename = [this](const QString &file, const QString &name) {
        QString error;
        if (!RenameSklad(*m_centre, file, name, &error)) {
            MsgBox(error, MsgCritical);
            return false;
        }
        refresh(file);
        return true;
    };
    DataGrid1->setModel(m_model.get());
    refresh(QString());
    DataGrid1->setColumnHidden(1, true);
    return true;
}

void frmTyp::refresh(const QString &file)
{
    m_model->setQuery(QStringLiteral("SELECT Typ, File FROM typ ORDER BY Typ"), m_centre->db());
    while (m_model->canFetchMore())
        m_model->fetchMore();
    m_model->setHeaderData(0, Qt::Horizontal, QStringLiteral("Sklad"));
    int row = 0;
    for (int r = 0; r < m_model->rowCount(); ++r)
        if (!file.isEmpty() && m_model->index(r, 1).data().toString() == file)
            row = r;
    if (m_model->rowCount() > 0)
        DataGrid1->setCurrentIndex(m_model->index(row, 0));
}

QString frmTyp::currentTyp() const
{
    const QModelIndex index = DataGrid1->currentIndex();
    return m_model && index.isValid() ? m_model->index(index.row(), 0).data().toString() : QString();
}

QString frmTyp::currentFile() const
{
    const QModelIndex index = DataGrid1->currentIndex();
    return m_model && index.isValid() ? m_model->index(index.row(), 1).data().toString() : QString();
}

void frmTyp::cmdOk_Click()
{
    const QString file = currentFile();
    if (file.isEmpty())
        return;
    const SkladRef sklad{currentTyp(), file};
    if (VyberPending) {
        mOpenFile = sklad.openFile();
        accept();
        return;
    }
    if (!SkladTableExists(*m_centre, CentreDb, file)) {
        QString error;
        if (!RemoveOrphanSklad(*m_centre, file, &error))
            MsgBox(error, MsgCritical);
        refresh(QString());
        return;
    }
    frmCHEMIK chemik(this);
    chemik.CentreDb = CentreDb;
    chemik.OpenFile = sklad.openFile();
    if (chemik.Load())
        chemik.exec();
}

void frmTyp::cmdAdd_Click()
{
    if (!m_model
        || !Confirmed(MsgBox(QStringLiteral("Opravdu si přejete přídat nový sklad?"), MsgQuestionOkCancel,
                             QStringLiteral("Informace"))))
        return;
    const std::optional<QString> name = InputBox(QStringLiteral("Zadejte název skladu"), QStringLiteral("New:"));
    if (!name || name->isEmpty())
        return;
    const QString file = NewSkladTableName(QDateTime::currentDateTime());
    QString error;
    const bool made = CreateSklad(*m_centre, *name, file, &error);
    refresh(file);
    if (!made)
        MsgBox(error, MsgCritical);
}

void frmTyp::cmdDelete_Click()
{
    const QString file = currentFile();
    if (file.isEmpty()
        || !Confirmed(MsgBox(QStringLiteral("Chcete opravdu zrušit sklad - ") + currentTyp() + QStringLiteral(" ?"),
                             MsgQuestionOkCancel, QStringLiteral("Zrušit záznam ?"))))
        return;
    QString error;
    if (!DropSklad(*m_centre, file, &error))
        MsgBox(error, MsgCritical);
    refresh(QString());
}

void frmTyp::cmdEdit_Click()
{
    const QString file = currentFile();
    if (file.isEmpty())
        return;
    const std::optional<QString> name =
        InputBox(QStringLiteral("Zadejte nový název skladu"), QStringLiteral("Změnit název"), currentTyp());
    if (name && !name->isEmpty())
        m_model->setData(DataGrid1->currentIndex().siblingAtColumn(0), *name, Qt::EditRole);
}

void ShowSklady(QWidget *parent)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    frmTyp screen(parent);
    screen.VyberSklad = -1;
    const bool loaded = screen.Load();
    QApplication::restoreOverrideCursor();
    if (loaded)
        screen.exec();
}
