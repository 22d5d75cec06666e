#include "registers/frmFindAll.h"

#include "core/db.h"
#include "core/session.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QAbstractTableModel>
#include <QTableView>
#include <QVBoxLayout>

// The hits as the grid shows them: a one-letter search may bring thousands of rows.
class FindAllModel : public QAbstractTableModel {
public:
    QVector<FindAllHit> hits;

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(hits.size()); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 4; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole || !index.isValid())
            return QVariant();
        const FindAllHit &hit = hits.at(index.row());
        switch (index.column()) {
        case 0: return index.row() + 1;
        case 1: return hit.nazev;
        case 2: return hit.katal;
        default: return hit.skladName;
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        static const char *const heads[] = {"  N", "            Název zboží", "          Katal.číslo", "        Sklad "};
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 4)
            return QString::fromUtf8(heads[section]);
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    void reset(QVector<FindAllHit> rows)
    {
        beginResetModel();
        hits = std::move(rows);
        endResetModel();
    }
};

frmFindAll::frmFindAll(QWidget *parent) : QDialog(parent), CentreDb(Session().MysqlDb)
{
    setWindowTitle(QStringLiteral("Find"));
    MSFlexGrid1 = new QTableView(this);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_model = new FindAllModel;
    m_model->setParent(this);
    MSFlexGrid1->setModel(m_model);
    MSFlexGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    MSFlexGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    MSFlexGrid1->verticalHeader()->hide();
    MSFlexGrid1->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    cmdOk = new QPushButton(QStringLiteral("Výběr"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    CmdExit = new QPushButton(QStringLiteral("Zavřit"), this);
    CmdExit->setObjectName(QStringLiteral("CmdExit"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(CmdExit);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Vyhledávání přes vše sklady "), this));
    layout->addWidget(MSFlexGrid1, 1);
    layout->addLayout(buttons);
    resize(720, 420);
    connect(cmdOk, &QPushButton::clicked, this, &frmFindAll::cmdOk_Click);
    connect(MSFlexGrid1, &QTableView::doubleClicked, this, &frmFindAll::cmdOk_Click);
    connect(CmdExit, &QPushButton::clicked, this, [this] {
        mActualSklad.clear();
        mNazActualSklad.clear();
        mLineOutput.clear();
        reject();
    });
}

bool frmFindAll::Load()
{
    DbConnection centre(ConnStrFor(CentreDb));
    if (!OpenOrFatal(centre))
        return false;
    m_model->reset(FindInAllSklady(centre, mLineInput));
    if (m_model->rowCount() > 0)
        MSFlexGrid1->setCurrentIndex(m_model->index(0, 1));
    return true;
}

void frmFindAll::cmdOk_Click()
{
    const int row = MSFlexGrid1->currentIndex().row();
    if (row < 0 || row >= m_model->hits.size())
        return;
    const FindAllHit &hit = m_model->hits.at(row);
    mActualSklad = hit.skladFile;
    mNazActualSklad = hit.skladName;
    mLineOutput = hit.nazev + QLatin1Char('~') + hit.katal + QLatin1Char('~') + hit.skladName;
    OpenFile = hit.skladName + QLatin1Char('~') + hit.skladFile;
    accept();
}
