#include "stock/frmVydeji.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "stock/journal.h"
#include "stock/sklad.h"
#include "stock/summaries.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

// The journal as the grid shows it: every row counted, a page read from the server when the
// grid first asks for one of its rows, and only the pages seen last kept.
class JournalModel : public QAbstractTableModel {
public:
    static constexpr int PageSize = 200;
    static constexpr int PagesKept = 16;

    JournalModel(DbConnection &centre, const QString &sklad, int rows) : m_centre(centre), m_sklad(sklad), m_rows(rows) {}

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_rows; }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 7; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole || !index.isValid())
            return QVariant();
        const QVector<JournalRow> &page = pageOf(index.row());
        const int at = index.row() % PageSize;
        if (at >= page.size())
            return QVariant();
        const JournalRow &r = page.at(at);
        switch (index.column()) {
        case 0: return r.nazev;
        case 1: return r.katal;
        case 2: return r.kusVy;
        case 3: return r.mira;
        case 4: return r.komu;
        case 5: return r.datVyd.isValid() ? r.datVyd.toString(QStringLiteral("dd.MM.yyyy")) : QString();
        default: return r.sklad;
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        static const char *const heads[] = {"Název zboží", "Katal. číslo", "Množství", "Míra", "Komu", "Datum výdeje", "Sklad"};
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 7)
            return QString::fromUtf8(heads[section]);
        return QAbstractTableModel::headerData(section, orientation, role);
    }

private:
    const QVector<JournalRow> &pageOf(int row) const
    {
        const int page = row / PageSize;
        auto found = m_pages.find(page);
        if (found != m_pages.end()) {
            m_recent.removeOne(page);
            m_recent.append(page);
            return *found;
        }
        if (m_broken)
            return m_failed;
        QVector<JournalRow> rows;
        QString error;
        if (!ReadJournal(m_centre, m_sklad, page * PageSize, PageSize, &rows, &error)) {
            readFailed(page, error);
            return m_failed;
        }
        if (m_recent.size() >= PagesKept)
            m_pages.remove(m_recent.takeFirst());
        m_recent.append(page);
        return *m_pages.insert(page, std::move(rows));
    }

    // The journal stops reading: the pages held stay (none is dropped any more), the rows
    // from the failed page on leave the grid unless a later page is held, and the user is
    // told once. Both wait until the view has finished asking, which it does while painting.
    void readFailed(int page, const QString &error) const
    {
        m_broken = true;
        auto *self = const_cast<JournalModel *>(this);
        QMetaObject::invokeMethod(
            self,
            [self, page, error] {
                const QList<int> held = self->m_pages.keys();
                const bool laterHeld = std::any_of(held.begin(), held.end(), [page](int p) { return p > page; });
                const int kept = std::min(self->m_rows, page * PageSize);
                if (!laterHeld && kept < self->m_rows) {
                    self->beginRemoveRows(QModelIndex(), kept, self->m_rows - 1);
                    self->m_rows = kept;
                    self->endRemoveRows();
                }
                MsgBox(QStringLiteral("Další řádky výdeje nelze načíst, zobrazeny zůstávají řádky načtené dříve.\n")
                           + error,
                       MsgWarning);
            },
            Qt::QueuedConnection);
    }

    DbConnection &m_centre;
    QString m_sklad;
    int m_rows;
    mutable QHash<int, QVector<JournalRow>> m_pages;
    mutable QList<int> m_recent;
    mutable bool m_broken = false;
    const QVector<JournalRow> m_failed;
};

frmVydeji::frmVydeji(QWidget *parent) : QDialog(parent), CentreDb(Session().MysqlDb)
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
    m_centre = std::make_unique<DbConnection>(ConnStrFor(CentreDb));
    if (!OpenOrFatal(*m_centre))
        return false;
    const QString sklad = ParseOpenFile(OpenFile).typ;
    Label3->setText(sklad);
    QString error;
    const int rows = CountJournal(*m_centre, sklad, &error);
    if (rows < 0) {
        MsgBox(error, MsgCritical);
        return false;
    }
    m_model = std::make_unique<JournalModel>(*m_centre, sklad, rows);
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
