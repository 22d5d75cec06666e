#include "registers/frmFindAll.h"

#include "core/db.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

frmFindAll::frmFindAll(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Find"));
    MSFlexGrid1 = new QTableWidget(0, 4, this);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    MSFlexGrid1->setHorizontalHeaderLabels({QStringLiteral("  N"), QStringLiteral("            Název zboží"),
                                            QStringLiteral("          Katal.číslo"), QStringLiteral("        Sklad ")});
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
    connect(MSFlexGrid1, &QTableWidget::cellDoubleClicked, this, &frmFindAll::cmdOk_Click);
    connect(CmdExit, &QPushButton::clicked, this, [this] {
        mActualSklad.clear();
        mNazActualSklad.clear();
        mLineOutput.clear();
        reject();
    });
}

bool frmFindAll::Load()
{
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return false;
    m_hits = FindInAllSklady(centre, mLineInput);
    MSFlexGrid1->setRowCount(m_hits.size());
    for (int r = 0; r < m_hits.size(); ++r) {
        const FindAllHit &hit = m_hits.at(r);
        const QStringList cells{QString::number(r + 1), hit.nazev, hit.katal, hit.skladName};
        for (int c = 0; c < cells.size(); ++c)
            MSFlexGrid1->setItem(r, c, new QTableWidgetItem(cells.at(c)));
    }
    if (!m_hits.isEmpty())
        MSFlexGrid1->setCurrentCell(0, 1);
    return true;
}

void frmFindAll::cmdOk_Click()
{
    const int row = MSFlexGrid1->currentRow();
    if (row < 0 || row >= m_hits.size())
        return;
    const FindAllHit &hit = m_hits.at(row);
    mActualSklad = hit.skladFile;
    mNazActualSklad = hit.skladName;
    mLineOutput = hit.nazev + QLatin1Char('~') + hit.katal + QLatin1Char('~') + hit.skladName;
    OpenFile = hit.skladName + QLatin1Char('~') + hit.skladFile;
    accept();
}
