#include "grants/frmGrantPlan.h"

#include "core/config.h"
#include "core/db.h"
#include "core/frmKalendar.h"
#include "core/msg.h"
#include "core/rights.h"
#include "core/session.h"
#include "documents/frmDocuments.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"
#include "grants/skupuctugrant.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QColor>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <functional>

// The grid MSFlexGrid2: eleven columns, the last two hidden, a row number in the fixed cell.
class GrantPlanModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRows(const QVector<GrantPlanRow> &rows, const QString &active)
    {
        beginResetModel();
        m_rows = rows;
        m_active = active;
        endResetModel();
    }
    const QVector<GrantPlanRow> &rows() const { return m_rows; }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 11; }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid())
            return {};
        const GrantPlanRow &r = m_rows.at(index.row());
        if (role == Qt::DisplayRole) {
            switch (index.column()) {
            case 0: return r.grant;
            case 1: return r.castka1;
            case 2: return r.poskytnute;
            case 3: return r.cislo;
            case 4: return r.stredisko;
            case 5: return r.agentura;
            case 6: return r.zahajeni;
            case 7: return r.ukonceni;
            case 8: return r.castka2;
            case 9: return r.archiv;
            case 10: return r.id;
            }
        }
        if (role == Qt::TextAlignmentRole && (index.column() == 1 || index.column() == 2))
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role == Qt::BackgroundRole) {
            // Later rules win: the grant in view over archived over ended.
            QColor colour(0xFFFFFF);
            if (IsGrantEnded(r))
                colour = QColor(0x00FF00);
            if (IsGrantArchived(r))
                colour = QColor(0xC0C0C0);
            if (!m_active.isEmpty() && r.grant == m_active)
                colour = QColor(0xFFFF00);
            return colour;
        }
        return {};
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        if (orientation == Qt::Vertical)
            return QString::number(section + 1) + QLatin1Char('.');
        static const char *const captions[] = {"GRANT",
                                               " Rozpočet plán, Kč",
                                               " Poskytnuté, Kč",
                                               "   Číslo projektu",
                                               "    Středisko",
                                               "    Agentura",
                                               "  Zahájení",
                                               " Ukončení",
                                               "          Řešitel GRANTU",
                                               "archiv",
                                               "key"};
        return section >= 0 && section < 11 ? QString::fromUtf8(captions[section]) : QVariant();
    }

private:
    QVector<GrantPlanRow> m_rows;
    QString m_active;
};

namespace {
// No maximum length: a text too long for its column is refused by the server and said,
// where a box would cut a pasted text without a word.
QLineEdit *detailBox(QWidget *parent, const char *name)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

// Runs a command's database work on a connection of its own; a failure is said and gives false.
bool onGranty(const std::function<bool(DbConnection &)> &work, const FieldCaptions &captions = {})
{
    DbConnection conn(ConnStrGranty());
    if (!OpenOrFatal(conn))
        return false;
    conn.setCaptions(captions);
    return work(conn) || ShowDbError(conn);
}

} // namespace

frmGrantPlan::frmGrantPlan(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Rozpočet"));
    resize(1220, 680);

    m_model = new GrantPlanModel(this);
    MSFlexGrid2 = RowsGrid(this, m_model);
    MSFlexGrid2->setObjectName(QStringLiteral("MSFlexGrid2"));
    MSFlexGrid2->horizontalHeader()->setSectionsClickable(true);
    // A see-through selection, so that the row colours stay visible under it.
    QPalette palette = MSFlexGrid2->palette();
    palette.setColor(QPalette::Highlight, QColor(0, 0, 128, 70));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    MSFlexGrid2->setPalette(palette);
    MSFlexGrid2->setColumnHidden(9, true);
    MSFlexGrid2->setColumnHidden(10, true);
    const int widths[] = {70, 125, 115, 120, 180, 170, 80, 80, 230};
    for (int c = 0; c < 9; ++c)
        MSFlexGrid2->setColumnWidth(c, widths[c]);
    connect(MSFlexGrid2->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmGrantPlan::headingClick);
    connect(MSFlexGrid2->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { showDetails(); });

    Text4 = detailBox(this, "Text4");
    Text4->setReadOnly(true);
    Text5 = detailBox(this, "Text5");
    Text8 = detailBox(this, "Text8");
    Text6 = detailBox(this, "Text6");
    Text3 = detailBox(this, "Text3");
    Text1 = detailBox(this, "Text1");
    Text2 = detailBox(this, "Text2");
    Text7 = detailBox(this, "Text7");
    Text9 = detailBox(this, "Text9");
    for (QLineEdit *amount : {Text5, Text8}) {
        amount->setAlignment(Qt::AlignRight);
        connect(amount, &QLineEdit::editingFinished, this,
                [amount] { amount->setText(GrantAmountText(amount->text())); });
    }
    m_dateTarget = Text3;
    Text3->installEventFilter(this);
    Text1->installEventFilter(this);

    Check1 = new QCheckBox(QStringLiteral("Archiv:"), this);
    Check1->setObjectName(QStringLiteral("Check1"));
    Check2 = new QCheckBox(QStringLiteral("Skrýt archivní:"), this);
    Check2->setObjectName(QStringLiteral("Check2"));
    Check3 = new QCheckBox(QStringLiteral("Skrýt ukončené:"), this);
    Check3->setObjectName(QStringLiteral("Check3"));
    connect(Check2, &QCheckBox::toggled, this, &frmGrantPlan::hideBoxChanged);
    connect(Check3, &QCheckBox::toggled, this, &frmGrantPlan::hideBoxChanged);

    PocetDocum = new QLabel(this);
    PocetDocum->setObjectName(QStringLiteral("PocetDocum"));
    Command2 = CommandButton(this, "Command2", QStringLiteral("Zobrazit dokumenty:"));

    cmdNewRow = CommandButton(this, "cmdNewRow", QStringLiteral("Přidat GRANT"));
    cmdEdit = CommandButton(this, "cmdEdit", QStringLiteral("Změnit číslo GRANTu"));
    cmdDelete = CommandButton(this, "cmdDelete", QStringLiteral("Smazat GRANT"));
    cmdSave = CommandButton(this, "cmdSave", QStringLiteral("Uložit"));
    cmdKalendar = CommandButton(this, "cmdKalendar", QStringLiteral("Kalendář"));
    Command1 = CommandButton(this, "Command1", QStringLiteral("Zavřít"));
    connect(cmdNewRow, &QPushButton::clicked, this, &frmGrantPlan::cmdNewRow_Click);
    connect(cmdEdit, &QPushButton::clicked, this, &frmGrantPlan::cmdEdit_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmGrantPlan::cmdDelete_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmGrantPlan::cmdSave_Click);
    connect(cmdKalendar, &QPushButton::clicked, this, &frmGrantPlan::cmdKalendar_Click);
    connect(Command1, &QPushButton::clicked, this, &QDialog::close);
    connect(Command2, &QPushButton::clicked, this, [this] {
        const QString grant = selectedGrant();
        if (grant.isEmpty())
            return;
        ShowDocuments(this, grant);
        showDetails();   // the count of documents may have changed
    });

    auto *form = new QGridLayout;
    // A box saved to a column gives the column its label as caption.
    const auto addField = [this, form](int row, int col, const QString &caption, QWidget *field,
                                       const char *column = nullptr) {
        form->addWidget(new QLabel(caption), row, col * 2);
        form->addWidget(field, row, col * 2 + 1);
        if (column)
            m_captions.insert(QLatin1String(column), CaptionOf(caption));
    };
    addField(0, 0, QStringLiteral("GRANT:"), Text4);
    addField(1, 0, QStringLiteral("Rozpočet plán, Kč:"), Text5, "Castka1");
    addField(2, 0, QStringLiteral("Poskytnuté,     Kč:"), Text8, "Poskytnute");
    addField(3, 0, QStringLiteral("Řešitel:"), Text6, "Castka2");
    addField(0, 1, QStringLiteral("Zahájení projektu:"), Text3, "zahajeni");
    addField(1, 1, QStringLiteral("Ukončení projektu:"), Text1, "ukonceni");
    addField(2, 1, QStringLiteral("Číslo projektu:"), Text2, "cislo");
    addField(3, 1, QStringLiteral("Nákladové středisko:"), Text7, "stredisko");
    addField(4, 1, QStringLiteral("Grantová agentura:"), Text9, "agentura");
    addField(4, 0, QStringLiteral("Počet dokumentů:"), PocetDocum);
    form->addWidget(Check1, 0, 4);
    form->addWidget(Check2, 1, 4);
    form->addWidget(Check3, 2, 4);
    form->addWidget(cmdKalendar, 3, 4);
    form->addWidget(Command2, 4, 4);
    form->setColumnStretch(1, 1);
    form->setColumnStretch(3, 1);

    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdNewRow, cmdEdit, cmdSave, cmdDelete})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(Command1);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MSFlexGrid2, 1);
    layout->addLayout(form);
    layout->addLayout(buttons);
}

bool frmGrantPlan::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && (watched == Text3 || watched == Text1))
        m_dateTarget = static_cast<QLineEdit *>(watched);
    return QDialog::eventFilter(watched, event);
}

void frmGrantPlan::Load()
{
    m_view.grantActiv = GrantActiv;
    m_view.userFilter = GetFiltrGrant();
    m_view.hideArchived = GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("ARCHIVNI")).toInt() != 0;
    m_view.hideEnded = GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("UKONCENE")).toInt() != 0;
    for (auto [box, on] : {std::pair{Check2, m_view.hideArchived}, std::pair{Check3, m_view.hideEnded}}) {
        const QSignalBlocker block(box);
        box->setChecked(on);
    }

    const bool editable = IsWholeRegister(GrantActiv);
    for (QWidget *w : std::initializer_list<QWidget *>{Text5, Text8, Text6, Text3, Text1, Text2, Text7, Text9, Check1,
                                                       Check2, Check3, cmdNewRow, cmdDelete, cmdSave})
        w->setEnabled(editable);
    const bool administrator = CanEditGrantPlan(Session().UserTyp);
    cmdEdit->setEnabled(editable && administrator);
    cmdKalendar->setEnabled(editable && administrator);

    fill(IsWholeRegister(GrantActiv) ? QString() : GrantActiv.trimmed());
}

void frmGrantPlan::fill(const QString &grant)
{
    GrantPlanList list;
    if (!onGranty([&](DbConnection &conn) { return FillGrantPlan(conn, m_view, &list); }))
        return;
    m_grants = list.grants;
    m_model->setRows(list.rows, IsWholeRegister(GrantActiv) ? QString() : GrantActiv.trimmed());
    int row = 0;
    for (int i = 0; i < list.rows.size(); ++i)
        if (list.rows[i].grant == grant) {
            row = i;
            break;
        }
    selectRow(row);
}

void frmGrantPlan::selectRow(int row)
{
    if (row < m_model->rowCount()) {
        MSFlexGrid2->setCurrentIndex(m_model->index(row, 0));
        MSFlexGrid2->selectRow(row);
    }
    showDetails();
}

QString frmGrantPlan::selectedGrant() const
{
    const QModelIndex current = MSFlexGrid2->currentIndex();
    return current.isValid() ? m_model->rows().at(current.row()).grant : QString();
}

void frmGrantPlan::showDetails()
{
    const QModelIndex current = MSFlexGrid2->currentIndex();
    const GrantPlanRow r = current.isValid() ? m_model->rows().at(current.row()) : GrantPlanRow();
    Text4->setText(r.grant);
    Text5->setText(r.castka1);
    Text8->setText(r.poskytnute);
    Text6->setText(r.castka2);
    Text3->setText(r.zahajeni);
    Text1->setText(r.ukonceni);
    Text2->setText(r.cislo);
    Text7->setText(r.stredisko);
    Text9->setText(r.agentura);
    Check1->setChecked(IsGrantArchived(r));
    PocetDocum->clear();
    if (!current.isValid())
        return;
    int count = 0;
    if (!onGranty([&](DbConnection &conn) { return CountDocuments(conn, r.grant, &count); }))
        return;
    PocetDocum->setText(QString::number(count));
}

GrantPlanRow frmGrantPlan::details() const
{
    GrantPlanRow d;
    d.grant = Text4->text();
    d.castka1 = Text5->text();
    d.poskytnute = Text8->text();
    d.castka2 = Text6->text();
    d.zahajeni = Text3->text();
    d.ukonceni = Text1->text();
    d.cislo = Text2->text();
    d.stredisko = Text7->text();
    d.agentura = Text9->text();
    d.archiv = Check1->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    return d;
}

void frmGrantPlan::headingClick(int column)
{
    const QString key = GrantPlanSortKey(column);
    if (key.isEmpty())
        return;
    m_view.sortKey = key;
    m_view.descending = m_nextDescending;
    m_nextDescending = !m_nextDescending;
    fill(selectedGrant());
}

void frmGrantPlan::hideBoxChanged()
{
    m_view.hideArchived = Check2->isChecked();
    m_view.hideEnded = Check3->isChecked();
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("ARCHIVNI"), m_view.hideArchived ? "1" : "0");
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("UKONCENE"), m_view.hideEnded ? "1" : "0");
    fill(selectedGrant());
}

std::optional<QString> frmGrantPlan::askNewNumber(const QString &prompt, const QString &title,
                                                  const QString &offered) const
{
    const QString number = InputBox(prompt, title, offered).value_or(QString()).trimmed();
    // An empty answer or a number already in the register is ignored without a word.
    if (number.isEmpty() || m_grants.contains(number))
        return std::nullopt;
    if (const QString problem = GrantNumberProblem(number); !problem.isEmpty()) {
        MsgBox(problem, MsgWarning);
        return std::nullopt;
    }
    return number;
}

void frmGrantPlan::cmdNewRow_Click()
{
    const std::optional<QString> answer =
        askNewNumber(QStringLiteral("Zadejte číslo noveho GRANTu: "), QStringLiteral("Přidat položku"), QString());
    if (!answer)
        return;
    const QString number = *answer;
    if (!onGranty([&](DbConnection &conn) { return AddGrant(conn, number); }))
        return;
    m_grants.insert(number);
    fill(number);
}

void frmGrantPlan::cmdEdit_Click()
{
    const QString current = selectedGrant();
    if (current.isEmpty())
        return;
    const std::optional<QString> answer =
        askNewNumber(QStringLiteral("Číslo GRANTu :"), QStringLiteral("Editovat položku"), current);
    if (!answer)
        return;
    const QString renamed = *answer;
    bool done = false;
    if (!onGranty([&](DbConnection &conn) { return RenameGrant(conn, current, renamed, &done); }))
        return;
    fill(done ? renamed : current);
}

void frmGrantPlan::cmdSave_Click()
{
    const GrantPlanRow d = details();
    if (d.grant.isEmpty())
        return;
    if (!onGranty([&](DbConnection &conn) { return SaveGrantPlan(conn, d); }, m_captions))
        return;
    fill(d.grant);
}

void frmGrantPlan::cmdDelete_Click()
{
    if (m_model->rowCount() == 0)
        return;
    const QString grant = selectedGrant();
    if (grant.isEmpty())
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu zrušit GRANT ") + grant + QStringLiteral("?"),
                          MsgQuestionOkCancel, QStringLiteral("Delete row"))))
        return;
    if (!onGranty([&](DbConnection &conn) { return DeleteGrantCascade(conn, grant); }))
        return;
    m_grants.remove(grant);
    // The previous row is selected afterwards, the first one when there is none.
    const int row = MSFlexGrid2->currentIndex().row();
    fill(row > 0 ? m_model->rows().at(row - 1).grant : QString());
}

void frmGrantPlan::cmdKalendar_Click()
{
    const auto pick = DatePicker ? DatePicker : PickDate;
    if (const std::optional<QString> date = pick(this, m_dateTarget->text()))
        m_dateTarget->setText(*date);
}

void ShowGrantPlan(QWidget *parent, const QString &grantActiv)
{
    frmGrantPlan screen(parent);
    screen.GrantActiv = grantActiv;
    screen.Load();
    screen.exec();
}
