#include "stock/frmVydeji.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "stock/sklad.h"
#include "stock/summaries.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {
// The journal as the grid shows it: dates as users write them.
class JournalModel : public QSqlQueryModel {
public:
    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant v = QSqlQueryModel::data(index, role);
        if (role == Qt::DisplayRole && v.typeId() == QMetaType::QDate)
            return v.toDate().toString(QStringLiteral("dd.MM.yyyy"));
        return v;
    }
};
} // namespace

frmVydeji::frmVydeji(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Výdej"));
    Label3 = new QLabel(this);
    Label3->setObjectName(QStringLiteral("Label3"));
    QFont bold = Label3->font();
    bold.setBold(true);
    Label3->setFont(bold);
    lblZaznam = new QLabel(this);
    lblZaznam->setObjectName(QStringLiteral("lblZaznam"));
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->horizontalHeader()->setStretchLastSection(true);
    cmdArchVyd = new QPushButton(QStringLiteral("Tisk výdeju"), this);
    cmdArchVyd->setObjectName(QStringLiteral("cmdArchVyd"));
    cmdClose = new QPushButton(QStringLiteral("Zavřít"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));

    auto *top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Výdej skladu:"), this));
    top->addWidget(Label3, 1);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(lblZaznam);
    bottom->addStretch();
    bottom->addWidget(cmdArchVyd);
    bottom->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(bottom);
    resize(900, 560);
    connect(cmdArchVyd, &QPushButton::clicked, this, &frmVydeji::cmdArchVyd_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
}

frmVydeji::~frmVydeji() = default;

bool frmVydeji::Load()
{
    m_centre = std::make_unique<DbConnection>(ConnStrCentre());
    if (!OpenOrFatal(*m_centre))
        return false;
    const QString sklad = ParseOpenFile(OpenFile).typ;
    Label3->setText(sklad);
    QSqlQuery q = m_centre->query();
    const QString sql = QStringLiteral("SELECT NAM_CHIM, KATAL, KUS_VY, MIRA, KOMU, DAT_VYD, sklad FROM CHEM_VYD")
        + (sklad.isEmpty() ? QString() : QStringLiteral(" WHERE sklad=?")) + QStringLiteral(" ORDER BY nam_chim,katal");
    if (!m_centre->exec(q, sql, sklad.isEmpty() ? QVariantList() : QVariantList{sklad})) {
        MsgBox(m_centre->errorText(), MsgCritical);
        return false;
    }
    m_model = std::make_unique<JournalModel>();
    m_model->setQuery(std::move(q));
    const char *const headers[] = {"Název zboží", "Katal. číslo", "Množství", "Míra", "Komu", "Datum výdeje", "Sklad"};
    for (int c = 0; c < 7; ++c)
        m_model->setHeaderData(c, Qt::Horizontal, QString::fromUtf8(headers[c]));
    DataGrid1->setModel(m_model.get());
    DataGrid1->setColumnWidth(0, 280);
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &frmVydeji::showPosition);
    if (m_model->rowCount() > 0)
        DataGrid1->setCurrentIndex(m_model->index(0, 0));
    showPosition();
    return true;
}

void frmVydeji::showPosition()
{
    const QModelIndex index = DataGrid1->currentIndex();
    lblZaznam->setText(QStringLiteral("Záznam číslo: ") + (index.isValid() ? QString::number(index.row() + 1) : QString()));
}

QString frmVydeji::cmdArchVyd_Click()
{
    if (!m_centre)
        return QString();
    const QString sklad = ParseOpenFile(OpenFile).typ;
    const QString path = VydejSummaryPath(Session().TempDir, sklad);
    QString error;
    if (WriteVydejSummary(*m_centre, sklad, path, &error) < 0) {
        MsgBox(error, MsgCritical);
        return QString();
    }
    ViewHTML(path);
    return path;
}

void ShowVydeji(QWidget *parent)
{
    frmVydeji screen(parent);
    if (screen.Load())
        screen.exec();
}
