#include "core/frmLoginUser.h"

#include "core/msg.h"
#include "core/rights.h"
#include "core/session.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QStringList &GridCaptions()
{
    static const QStringList captions{QString(),
                                      QStringLiteral("   Příjmení"),
                                      QStringLiteral("  Jméno"),
                                      QStringLiteral("Titul"),
                                      QStringLiteral("   Uživatel"),
                                      QStringLiteral("     Heslo"),
                                      QStringLiteral("         Typ"),
                                      QStringLiteral("     Filtr GRANTu")};
    return captions;
}

QString NoUserSelected() { return QStringLiteral("Není vybrán žádný uživatel."); }

QLineEdit *lineEdit(QWidget *parent, const char *name)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    return edit;
}

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}
} // namespace

frmLoginUser::frmLoginUser(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLoginUser"));
    setWindowTitle(QStringLiteral("Uživatelé programu"));

    const bool admin = CanEditAllUsers(Session().UserTyp);
    // The non-administrator's grid hides login, password, role and filter (and the title).
    const int columns = admin ? 8 : 3;

    MSFlexGrid1 = new QTableWidget(0, columns, this);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    MSFlexGrid1->setHorizontalHeaderLabels(GridCaptions().mid(0, columns));
    MSFlexGrid1->verticalHeader()->hide();
    MSFlexGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    MSFlexGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    MSFlexGrid1->horizontalHeader()->setStretchLastSection(true);

    txtPrijmeni = lineEdit(this, "txtPrijmeni");
    txtJmeno = lineEdit(this, "txtJmeno");
    txtTitul = lineEdit(this, "txtTitul");
    txtUser = lineEdit(this, "txtUser");
    txtHeslo = lineEdit(this, "txtHeslo");
    txtFiltr = lineEdit(this, "txtFiltr");
    txtIDPac = lineEdit(this, "txtIDPac");
    txtIDPac->hide();
    txtFiltr->installEventFilter(this);

    cmbTyp0 = new QComboBox(this);
    cmbTyp0->setObjectName(QStringLiteral("cmbTyp0"));
    cmbTyp0->addItems(TypListNames());
    cmbTyp1 = new QComboBox(this);
    cmbTyp1->setObjectName(QStringLiteral("cmbTyp1"));
    cmbTyp1->addItems(TypFilterNames());
    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    for (const QString &grant : GrantNumbers())
        if (!grant.isEmpty())
            Combo2->addItem(grant);
    Combo2->setCurrentIndex(-1);
    Combo2->setMinimumWidth(120);

    cmdAdd = button(this, "cmdAdd", QStringLiteral("&Přidat"));
    cmdSave = button(this, "cmdSave", QStringLiteral("&Uložit"));
    cmdDelete = button(this, "cmdDelete", QStringLiteral("&Smazat"));
    cmdClose = button(this, "cmdClose", QStringLiteral("&Zavřít"));

    auto *filterRow = new QHBoxLayout;
    filterRow->addWidget(new QLabel(QStringLiteral("Zobrazit typ:"), this));
    filterRow->addWidget(cmbTyp1);
    filterRow->addStretch();

    auto *grantRow = new QHBoxLayout;
    grantRow->addWidget(txtFiltr, 1);
    grantRow->addWidget(Combo2);

    auto *fields = new QFormLayout;
    // Each row's label is the caption of the column it saves to.
    const auto addRow = [this, fields](const QString &label, auto *field, const char *column) {
        fields->addRow(label, field);
        m_captions.insert(QLatin1String(column), CaptionOf(label));
    };
    addRow(QStringLiteral("Příjmení:"), txtPrijmeni, "prijmeni");
    addRow(QStringLiteral("Jméno:"), txtJmeno, "jmeno");
    addRow(QStringLiteral("Titul:"), txtTitul, "titul");
    addRow(QStringLiteral("Uživatel:"), txtUser, "login");
    addRow(QStringLiteral("Heslo:"), txtHeslo, "password");
    addRow(QStringLiteral("Typ:"), cmbTyp0, "typ");
    addRow(QStringLiteral("Filtr GRANTu:"), grantRow, "filtr_grant");

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdSave);
    buttons->addWidget(cmdDelete);
    buttons->addStretch();
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(filterRow);
    layout->addWidget(MSFlexGrid1, 1);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    resize(780, 520);

    connect(MSFlexGrid1, &QTableWidget::currentCellChanged, this, [this](int row) { showRow(row); });
    connect(cmbTyp1, &QComboBox::currentIndexChanged, this,
            [this](int index) { FillUsers(TypFromFilterList(index)); });
    connect(Combo2, &QComboBox::activated, this, &frmLoginUser::pickGrant);
    connect(cmdAdd, &QPushButton::clicked, this, [this] { Users(UsersMode::Add); });
    connect(cmdSave, &QPushButton::clicked, this, [this] { Users(UsersMode::Save); });
    connect(cmdDelete, &QPushButton::clicked, this, [this] { Users(UsersMode::Delete); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::close);

    if (!admin) {
        for (QWidget *locked : std::initializer_list<QWidget *>{txtUser, txtJmeno, txtPrijmeni, cmbTyp0, cmbTyp1,
                                                                 Combo2, txtFiltr, cmdDelete, cmdAdd})
            locked->setEnabled(false);
    }
    FillUsers(0);
    // The own row is the only one: show it at once.
    if (!admin && !m_rows.isEmpty())
        MSFlexGrid1->setCurrentCell(0, 0);
}

void frmLoginUser::FillUsers(int filterTyp)
{
    QString error;
    QVector<UserRow> rows;
    if (!::FillUsers(Session(), filterTyp, rows, &error))
        MsgBox(error, MsgCritical);
    m_rows = rows;
    const QSignalBlocker block(MSFlexGrid1);
    MSFlexGrid1->clearContents();
    MSFlexGrid1->setRowCount(int(m_rows.size()));
    for (int row = 0; row < m_rows.size(); ++row)
        setRowCells(row);
    MSFlexGrid1->resizeColumnsToContents();
    MSFlexGrid1->setCurrentCell(-1, -1);
}

void frmLoginUser::setRowCells(int row)
{
    const UserRow &u = m_rows[row];
    const QStringList cells{QStringLiteral("%1.").arg(row + 1), u.prijmeni, u.jmeno, u.titul, u.login,
                            u.password, TypName(u.typ), u.filtrGrant};
    for (int column = 0; column < MSFlexGrid1->columnCount(); ++column)
        MSFlexGrid1->setItem(row, column, new QTableWidgetItem(cells[column]));
}

int frmLoginUser::rowOfKey(int key) const
{
    for (int row = 0; row < m_rows.size(); ++row)
        if (m_rows[row].key == key)
            return row;
    return -1;
}

void frmLoginUser::showRow(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    const UserRow &u = m_rows[row];
    txtPrijmeni->setText(u.prijmeni);
    txtJmeno->setText(u.jmeno);
    txtTitul->setText(u.titul);
    txtUser->setText(u.login);
    txtHeslo->setText(u.password);
    txtFiltr->setText(u.filtrGrant);
    // The role goes by the grid's text, as the row shows it.
    cmbTyp0->setCurrentIndex(ListPositionFromTypText(TypName(u.typ)));
    txtIDPac->setText(QString::number(u.key));
}

void frmLoginUser::clearFields()
{
    for (QLineEdit *edit : {txtPrijmeni, txtJmeno, txtTitul, txtUser, txtHeslo, txtFiltr, txtIDPac})
        edit->clear();
}

UserRow frmLoginUser::rowFromFields() const
{
    UserRow u;
    u.key = txtIDPac->text().toInt();
    u.prijmeni = txtPrijmeni->text().trimmed();
    u.jmeno = txtJmeno->text().trimmed();
    u.titul = txtTitul->text().trimmed();
    u.login = txtUser->text().trimmed();
    u.password = txtHeslo->text().trimmed();
    u.typ = TypFromList(cmbTyp0->currentIndex());
    u.filtrGrant = ReadFilterText(txtFiltr->text());
    return u;
}

void frmLoginUser::Users(UsersMode mode)
{
    QString error;
    const int filterTyp = TypFromFilterList(cmbTyp1->currentIndex());
    if (mode == UsersMode::Add) {
        if (!CanEditAllUsers(Session().UserTyp))
            return;
        if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete přídat nového uživatele? "), MsgQuestionOkCancel,
                              QStringLiteral("Informace"))))
            return;
        int key = 0;
        if (!AddUser(&key, &error)) {
            MsgBox(error, MsgCritical);
            return;
        }
        FillUsers(filterTyp);
        clearFields();
        txtIDPac->setText(QString::number(key));
        const int row = rowOfKey(key);
        if (row >= 0)
            MSFlexGrid1->setCurrentCell(row, 0);
        txtPrijmeni->setFocus();
        return;
    }

    if (txtIDPac->text().isEmpty()) {
        MsgBox(NoUserSelected(), MsgWarning);
        return;
    }
    if (mode == UsersMode::Save) {
        const UserRow u = rowFromFields();
        if (!SaveUser(u, &error, m_captions)) {
            MsgBox(error, MsgCritical);
            return;
        }
        txtFiltr->setText(u.filtrGrant);
        const int row = rowOfKey(u.key);
        if (row >= 0) {
            m_rows[row] = u;
            setRowCells(row);
        }
        MsgBox(QStringLiteral("Akce byla úspěšně provedena..."));
        return;
    }

    if (!CanEditAllUsers(Session().UserTyp))
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete smazat uživatele? "), MsgQuestionOkCancel,
                          QStringLiteral("Informace"))))
        return;
    if (!DeleteUser(txtIDPac->text().toInt(), &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    clearFields();
    FillUsers(filterTyp);
}

void frmLoginUser::pickGrant(int index)
{
    if (index >= 0)
        txtFiltr->setText(FilterAfterPick(txtFiltr->text(), Combo2->itemText(index)));
}

bool frmLoginUser::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtFiltr && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Backspace) {
        txtFiltr->setText(FilterAfterBackspace(txtFiltr->text()));
        return true;
    }
    return QDialog::eventFilter(watched, event);
}
