#include "stock/frmCHEMIK.h"

#include "core/db.h"
#include "core/frmKalendar.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "registers/frmFindAll.h"
#include "stock/frmTyp.h"
#include "stock/frmVydeji.h"
#include "stock/sklad.h"
#include "stock/summaries.h"

#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QSqlRecord>
#include <QTableView>
#include <QVBoxLayout>

// The warehouse rows: dates as the users write them, items past their expiry in red.
class StockGridModel : public QSqlQueryModel {
public:
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::BackgroundRole || role == Qt::ForegroundRole) {
            const int expir = record().indexOf(QStringLiteral("EXPIR"));
            if (expir >= 0 && IsExpired(QSqlQueryModel::data(this->index(index.row(), expir)), QDate::currentDate()))
                return role == Qt::BackgroundRole ? QVariant(QColor(255, 214, 214)) : QVariant(QColor(150, 0, 0));
            return QVariant();
        }
        const QVariant v = QSqlQueryModel::data(index, role);
        if (role == Qt::DisplayRole && v.typeId() == QMetaType::QDate)
            return v.toDate().toString(QStringLiteral("dd.MM.yyyy"));
        return v;
    }
    int rowOf(quint32 nom)
    {
        const int column = record().indexOf(QStringLiteral("nom"));
        for (int r = 0; column >= 0; ++r) {
            if (r >= rowCount()) {
                if (!canFetchMore())
                    break;
                fetchMore();
                continue;
            }
            if (QSqlQueryModel::data(index(r, column)).toUInt() == nom)
                return r;
        }
        return -1;
    }
};

namespace {
// A typed start of a name as the pattern of "Nazev LIKE": "*" stands for any text.
QString namePattern(QString text)
{
    return text.replace(QLatin1Char('*'), QLatin1Char('%')) + QLatin1Char('%');
}

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

QLineEdit *edit(QWidget *parent, const char *name)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(QLatin1String(name));
    return e;
}

// The columns a click on the header sorts by.
const QStringList &SortColumns()
{
    static const QStringList columns{QStringLiteral("Nazev"), QStringLiteral("zkatalog"), QStringLiteral("Katal"),
                                     QStringLiteral("Mira"),  QStringLiteral("Cena"),     QStringLiteral("poznam"),
                                     QStringLiteral("dat_obj")};
    return columns;
}
} // namespace

frmCHEMIK::frmCHEMIK(QWidget *parent) : QDialog(parent), CentreDb(Session().MysqlDb)
{
    setWindowTitle(QStringLiteral("Sklad"));
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    QFont bold = Label1->font();
    bold.setBold(true);
    bold.setPointSize(bold.pointSize() + 2);
    Label1->setFont(bold);
    Combo5 = new QComboBox(this);
    Combo5->setObjectName(QStringLiteral("Combo5"));
    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));

    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    DataGrid1->verticalHeader()->setDefaultSectionSize(22);

    Text4 = edit(this, "Text4");
    Text8 = edit(this, "Text8");
    Text5 = edit(this, "Text5");
    Text6 = edit(this, "Text6");
    Text2 = edit(this, "Text2");
    Text7 = edit(this, "Text7");
    Text9 = edit(this, "Text9");
    Text3 = edit(this, "Text3");
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Text7->installEventFilter(this);

    auto *fields = new QGridLayout;
    const std::pair<const char *, QLineEdit *> captions[] = {
        {"Název zboží:", Text5}, {"Katalogové číslo:", Text6}, {"Z katalogu:", Text9}, {"Firma dodavátel:", Text4},
        {"Míra:", Text7},        {"Cena:", Text3},              {"Zápis dne:", Text8},  {"Poznámka:", Text2},
    };
    int n = 0;
    for (const auto &[caption, field] : captions) {
        fields->addWidget(new QLabel(QString::fromUtf8(caption), this), n / 2, (n % 2) * 2);
        fields->addWidget(field, n / 2, (n % 2) * 2 + 1);
        ++n;
    }
    fields->addWidget(Combo1, 4, 4);

    cmdAdd = button(this, "cmdAdd", QStringLiteral(" Přidat"));
    Command2 = button(this, "Command2", QStringLiteral("&Editovat"));
    cmdSave = button(this, "cmdSave", QStringLiteral("Uložit"));
    cmdDelete = button(this, "cmdDelete", QStringLiteral("Smazat"));
    cmdFind = button(this, "cmdFind", QStringLiteral("Najit v aktuálním sklade  (Ctrl+F)"));
    cmdFindAll = button(this, "cmdFindAll", QStringLiteral("Najit ve všech skladech  (Ctrl+C)"));
    cmdVyber = button(this, "cmdVyber", QStringLiteral("Vy&ber"));
    cmdCopy = button(this, "cmdCopy", QStringLiteral("Kopírovat"));
    cmdOrder = button(this, "cmdOrder", QStringLiteral("Objednáno"));
    cmdArchVyd = button(this, "cmdArchVyd", QStringLiteral("&Archiv výdeju"));
    cmdPrijem = button(this, "cmdPrijem", QStringLiteral("&Příjem"));
    cmdVydej = button(this, "cmdVydej", QStringLiteral("Vý&dej"));
    cmdTransfer = button(this, "cmdTransfer", QStringLiteral("&Převzít položku"));
    cmdArchObjedn = button(this, "cmdArchObjedn", QStringLiteral("Objednáno archiv SKLAD"));
    cmdPolozkaObjedn = button(this, "cmdPolozkaObjedn", QStringLiteral("Objednáno archiv vybrané"));
    cmdSklady = button(this, "cmdSklady", QStringLiteral("&Změnit sklad"));
    cmdClose = button(this, "cmdClose", QStringLiteral("Zavřít"));
    cmdKalendar = button(this, "cmdKalendar", QStringLiteral("Expirace..."));
    fields->addWidget(cmdKalendar, 3, 4);

    // Receipt panel.
    FramePrijem = new QFrame(this);
    FramePrijem->setObjectName(QStringLiteral("FramePrijem"));
    FramePrijem->setFrameShape(QFrame::StyledPanel);
    lblPrijem = new QLabel(QStringLiteral("Příjem, množství: "), FramePrijem);
    TypBal1 = edit(FramePrijem, "TypBal1");
    TypBal2 = edit(FramePrijem, "TypBal2");
    TypBal1->installEventFilter(this);
    TypBal2->installEventFilter(this);
    auto *prijem = new QHBoxLayout(FramePrijem);
    prijem->addWidget(lblPrijem);
    prijem->addWidget(TypBal1);
    prijem->addWidget(new QLabel(QStringLiteral("balení"), FramePrijem));
    prijem->addWidget(TypBal2);
    prijem->addWidget(new QLabel(QStringLiteral("kusů"), FramePrijem));
    FramePrijem->hide();

    // Issue panel.
    Frame5 = new QFrame(this);
    Frame5->setObjectName(QStringLiteral("Frame5"));
    Frame5->setFrameShape(QFrame::StyledPanel);
    txtNazevVydej = edit(Frame5, "txtNazevVydej");
    txtKatalVydej = edit(Frame5, "txtKatalVydej");
    txtMira = edit(Frame5, "txtMira");
    txtDatVyd = edit(Frame5, "txtDatVyd");
    Text10 = edit(Frame5, "Text10");
    Text11 = edit(Frame5, "Text11");
    txtMnoz = edit(Frame5, "txtMnoz");
    txtMnoz->setReadOnly(true);
    txtKomuVydej = edit(Frame5, "txtKomuVydej");
    lblStavVydej = new QLabel(Frame5);
    lblStavVydej->setObjectName(QStringLiteral("lblStavVydej"));
    cmdKalendar2 = button(Frame5, "cmdKalendar2", QStringLiteral("..."));
    cmdSaveVydej = button(Frame5, "cmdSaveVydej", QStringLiteral("Uložit výdej"));
    auto *vydej = new QGridLayout(Frame5);
    vydej->addWidget(new QLabel(QStringLiteral("Výdej:"), Frame5), 0, 0);
    vydej->addWidget(txtNazevVydej, 0, 1, 1, 3);
    vydej->addWidget(txtKatalVydej, 0, 4);
    vydej->addWidget(txtMira, 0, 5);
    vydej->addWidget(new QLabel(QStringLiteral("Komu:"), Frame5), 1, 0);
    vydej->addWidget(txtKomuVydej, 1, 1, 1, 3);
    vydej->addWidget(txtDatVyd, 1, 4);
    vydej->addWidget(cmdKalendar2, 1, 5);
    vydej->addWidget(new QLabel(QStringLiteral("balení"), Frame5), 2, 0);
    vydej->addWidget(Text10, 2, 1);
    vydej->addWidget(new QLabel(QStringLiteral("kusů"), Frame5), 2, 2);
    vydej->addWidget(Text11, 2, 3);
    vydej->addWidget(txtMnoz, 2, 4);
    vydej->addWidget(cmdSaveVydej, 2, 5);
    vydej->addWidget(lblStavVydej, 3, 0, 1, 6);
    Frame5->hide();

    lblTip = new QLabel(QStringLiteral("jednotlívý výběr položek, přenest výbrane položky do jiného skladu; "
                                       "Shift+Up/Dn, F5-Kopírovat"),
                        this);
    lblTip->setObjectName(QStringLiteral("UserHelpCmd1"));
    lblTip->setStyleSheet(QStringLiteral("color: #555"));

    auto *top = new QHBoxLayout;
    top->addWidget(Label1, 1);
    top->addWidget(new QLabel(QStringLiteral("Rok:"), this));
    top->addWidget(Combo5);
    top->addWidget(new QLabel(QStringLiteral("do:"), this));
    top->addWidget(Combo2);
    auto *commands = new QGridLayout;
    const QList<QPushButton *> row1{cmdAdd, Command2, cmdSave, cmdDelete, cmdPrijem, cmdVydej, cmdCopy, cmdVyber, cmdTransfer};
    const QList<QPushButton *> row2{cmdFind, cmdFindAll, cmdOrder, cmdArchObjedn, cmdPolozkaObjedn, cmdArchVyd, cmdSklady, cmdClose};
    for (int i = 0; i < row1.size(); ++i)
        commands->addWidget(row1[i], 0, i);
    for (int i = 0; i < row2.size(); ++i)
        commands->addWidget(row2[i], 1, i);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(fields);
    layout->addWidget(FramePrijem);
    layout->addWidget(Frame5);
    layout->addLayout(commands);
    layout->addWidget(lblTip);
    resize(1180, 760);

    connect(cmdAdd, &QPushButton::clicked, this, &frmCHEMIK::cmdAdd_Click);
    connect(Command2, &QPushButton::clicked, this, &frmCHEMIK::Command2_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmCHEMIK::cmdSave_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmCHEMIK::cmdDelete_Click);
    connect(cmdFind, &QPushButton::clicked, this, &frmCHEMIK::cmdFind_Click);
    connect(cmdFindAll, &QPushButton::clicked, this, &frmCHEMIK::cmdFindAll_Click);
    connect(cmdVyber, &QPushButton::clicked, this, &frmCHEMIK::cmdVyber_Click);
    connect(cmdTransfer, &QPushButton::clicked, this, &frmCHEMIK::cmdVyber_Click);
    connect(cmdCopy, &QPushButton::clicked, this, &frmCHEMIK::cmdCopy_Click);
    connect(cmdPrijem, &QPushButton::clicked, this, &frmCHEMIK::cmdPrijem_Click);
    connect(cmdVydej, &QPushButton::clicked, this, &frmCHEMIK::cmdVydej_Click);
    connect(cmdSaveVydej, &QPushButton::clicked, this, &frmCHEMIK::cmdSaveVydej_Click);
    connect(cmdKalendar, &QPushButton::clicked, this, &frmCHEMIK::cmdKalendar_Click);
    connect(cmdKalendar2, &QPushButton::clicked, this, &frmCHEMIK::cmdKalendar2_Click);
    connect(cmdSklady, &QPushButton::clicked, this, &frmCHEMIK::cmdSklady_Click);
    connect(cmdArchVyd, &QPushButton::clicked, this, &frmCHEMIK::cmdArchVyd_Click);
    connect(cmdOrder, &QPushButton::clicked, this, &frmCHEMIK::cmdOrder_Click);
    connect(cmdArchObjedn, &QPushButton::clicked, this, &frmCHEMIK::cmdArchObjedn_Click);
    connect(cmdPolozkaObjedn, &QPushButton::clicked, this, &frmCHEMIK::cmdPolozkaObjedn_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(DataGrid1->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmCHEMIK::sortOn);
    connect(DataGrid1, &QTableView::doubleClicked, this, [this] {
        if (VyberObjedn)
            cmdVyber_Click();
    });
    // A year chosen in Combo5 shows that year alone; Combo2 then widens it to a span of years.
    connect(Combo5, &QComboBox::activated, this, [this] {
        Combo2->setCurrentIndex(Combo5->currentIndex());
        m_nameFilter.clear();
        refresh(currentNom());
    });
    connect(Combo2, &QComboBox::activated, this, [this] {
        m_nameFilter.clear();
        refresh(currentNom());
    });
    connect(Combo1, &QComboBox::textActivated, Text7, &QLineEdit::setText);
    connect(Text5, &QLineEdit::textEdited, this, [this] { ChangeNazev = true; });
    connect(Text3, &QLineEdit::textEdited, this, [this] { ChangeCena = true; });
    connect(Text10, &QLineEdit::textChanged, this, &frmCHEMIK::showIssueBalance);
    connect(Text11, &QLineEdit::textChanged, this, &frmCHEMIK::showIssueBalance);
}

frmCHEMIK::~frmCHEMIK() = default;

bool frmCHEMIK::Load()
{
    m_centre = std::make_unique<DbConnection>(ConnStrFor(CentreDb));
    if (!OpenOrFatal(*m_centre))
        return false;
    m_model = std::make_unique<StockGridModel>();
    DataGrid1->setModel(m_model.get());
    QString open = OpenFile;
    if (ParseOpenFile(open).isEmpty()) {
        const QVector<SkladRef> sklady = ListSklady(*m_centre);
        if (!sklady.isEmpty())
            open = sklady.first().openFile();
    }
    FillYears();
    cmdSklady->setVisible(!VyberObjedn);
    cmdVyber->setVisible(VyberObjedn);
    cmdTransfer->setVisible(VyberObjedn);
    if (!NazevFilter.isEmpty())
        m_nameFilter = namePattern(NazevFilter);
    return bindSklad(open);
}

bool frmCHEMIK::bindSklad(const QString &openFile)
{
    const SkladRef sklad = ParseOpenFile(openFile);
    if (!IsSafeIdentifier(sklad.file)) {
        MsgBox(QStringLiteral("Není zvolen žádný sklad."), MsgWarning);
        return false;
    }
    OpenFile = sklad.openFile();
    m_file = sklad.file;
    Label1->setText(sklad.typ);
    refresh(0);
    return true;
}

void frmCHEMIK::FillYears()
{
    const int now = QDate::currentDate().year();
    int first = now - 5;
    QSqlQuery q = m_centre->query();
    const SkladRef sklad = ParseOpenFile(OpenFile);
    if (IsSafeIdentifier(sklad.file)
        && m_centre->exec(q, QStringLiteral("SELECT MIN(YEAR(dat_obj)) FROM ") + sklad.file) && q.next()
        && !q.value(0).isNull())
        first = std::min(first, std::max(q.value(0).toInt(), 1990));
    for (QComboBox *combo : {Combo5, Combo2}) {
        combo->clear();
        for (int y = now; y >= first; --y)
            combo->addItem(QString::number(y));
    }
}

int frmCHEMIK::year() const { return Combo5->currentText().toInt(); }

QVariantList frmCHEMIK::years() const { return YearValues(year(), Combo2->currentText().toInt()); }

void frmCHEMIK::refresh(quint32 nom)
{
    if (!m_model || m_file.isEmpty())
        return;
    QSqlQuery q = m_centre->query();
    QString sql = QStringLiteral("SELECT * FROM ") + m_file + QStringLiteral(" WHERE ");
    QVariantList values;
    // A search in all warehouses shows the hits of every year.
    if (m_nameFilter.isEmpty()) {
        sql += YearCondition();
        values = years();
    } else {
        sql += QStringLiteral("Nazev LIKE ?");
        values << m_nameFilter;
    }
    sql += QStringLiteral(" ORDER BY ") + m_sort;
    if (!m_centre->exec(q, sql, values)) {
        fail(m_centre->errorText());
        m_model->clear();
        return;
    }
    const bool first = m_model->columnCount() == 0;
    m_model->setQuery(std::move(q));
    if (first)
        DataGrid1->setColumnWidth(m_model->record().indexOf(QStringLiteral("Nazev")), 260);
    const int row = nom ? m_model->rowOf(nom) : -1;
    if (m_model->rowCount() > 0)
        DataGrid1->setCurrentIndex(m_model->index(std::max(row, 0), 0));
    if (row >= 0)
        DataGrid1->scrollTo(DataGrid1->currentIndex());
}

quint32 frmCHEMIK::currentNom() const
{
    const QString nom = value("nom");
    return nom.toUInt();
}

QString frmCHEMIK::value(const char *column) const
{
    const QModelIndex index = DataGrid1->currentIndex();
    if (!m_model || !index.isValid())
        return QString();
    const int c = m_model->record().indexOf(QLatin1String(column));
    if (c < 0)
        return QString();
    const QVariant v = m_model->QSqlQueryModel::data(m_model->index(index.row(), c));
    if (v.isNull())
        return QString();
    if (v.typeId() == QMetaType::QDate)
        return v.toDate().toString(QStringLiteral("dd.MM.yyyy"));
    return v.toString().trimmed();
}

QString frmCHEMIK::skladName() const { return ParseOpenFile(OpenFile).typ; }

void frmCHEMIK::fail(const QString &error) { MsgBox(error, MsgCritical); }

void frmCHEMIK::sortOn(int column)
{
    if (!m_model)
        return;
    const QString name = m_model->record().fieldName(column);
    for (const QString &sortable : SortColumns()) {
        if (sortable.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        m_sort = sortable + (m_sort.contains(QLatin1String("DESC")) ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
        refresh(currentNom());
        return;
    }
}

void frmCHEMIK::cmdAdd_Click()
{
    if (m_file.isEmpty()
        || !Confirmed(MsgBox(QStringLiteral("Chcete opravdu přídat položku ?"), MsgQuestionOkCancel,
                             QStringLiteral("Informace"))))
        return;
    QString error;
    const quint32 nom = AddItem(*m_centre, m_file, Text5->text(), QDate::currentDate(), &error);
    if (!nom)
        return fail(error);
    // The new item belongs to this year.
    m_nameFilter.clear();
    Combo5->setCurrentIndex(0);
    Combo2->setCurrentIndex(0);
    refresh(nom);
}

void frmCHEMIK::Command2_Click()
{
    m_editNom = currentNom();
    if (!m_editNom)
        return;
    ParamAkce = 1;
    Text4->setText(value("firma"));
    Text8->setText(value("dat_obj"));
    Text5->setText(value("nazev"));
    Text6->setText(value("katal"));
    Text2->setText(value("poznam"));
    Text7->setText(value("mira"));
    Text9->setText(value("ZKATALOG"));
    Text3->setText(value("cena"));
    ChangeNazev = ChangeCena = false;
    Text5->setFocus();
}

void frmCHEMIK::cmdSave_Click()
{
    if (!m_editNom)
        return;
    const ItemEdit item{Text4->text(), Text8->text(), Text5->text(), Text6->text(),
                        Text2->text(), Text7->text(), Text9->text(), Text3->text()};
    QString error;
    if (!SaveItem(*m_centre, m_file, m_editNom, item, &error))
        return fail(error);
    Text5->setText(Text5->text().replace(QLatin1Char('\''), QLatin1Char('`')));
    ParamAkce = 0;
    ChangeNazev = ChangeCena = false;
    refresh(m_editNom);
}

void frmCHEMIK::cmdDelete_Click()
{
    if (!m_model)
        return;
    const QModelIndexList rows = DataGrid1->selectionModel()->selectedRows();
    QString error;
    if (rows.size() <= 1) {
        const quint32 nom = currentNom();
        if (!nom)
            return;
        const QString name = value("Nazev");
        if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete smazat položku: ") + name + QStringLiteral(" ?"),
                              MsgQuestionOkCancel, QStringLiteral("Smazat položku ?"))))
            return;
        if (!m_centre->exec(QStringLiteral("DELETE FROM ") + m_file + QStringLiteral(" WHERE nom=?"), {nom}))
            fail(m_centre->errorText());
        refresh(0);
        return;
    }
    const int nameColumn = m_model->record().indexOf(QStringLiteral("Nazev"));
    QStringList names;
    for (const QModelIndex &row : rows)
        names << m_model->index(row.row(), nameColumn).data().toString().trimmed();
    const QString question = QStringLiteral("Opravdu si přejete smazat %1 %2 ?").arg(names.size()).arg(ItemWord(names.size()));
    if (!Confirmed(MsgBox(NumberedNames(names) + QStringLiteral("\r\n\r\n") + question, MsgQuestionOkCancel,
                          QStringLiteral("Smazat vybrané položky ?"))))
        return;
    for (const QString &name : names)
        if (DeleteItemsByName(*m_centre, m_file, name, &error) < 0)
            return fail(error);
    refresh(0);
}

void frmCHEMIK::cmdFind_Click()
{
    if (m_file.isEmpty())
        return;
    const std::optional<QString> text =
        InputBox(QStringLiteral("Zadejte název zboží"), QStringLiteral("Vyhledávání v aktuálním skladu"));
    if (!text || text->isEmpty())
        return;
    QString where = YearCondition();
    QVariantList values = years();
    if (!m_nameFilter.isEmpty()) {
        where = QStringLiteral("Nazev LIKE ?");
        values = {m_nameFilter};
    }
    const quint32 nom = FindInSklad(*m_centre, m_file, *text, where, values, m_sort);
    if (!nom) {
        MsgBox(QStringLiteral("Položka nenajdena!"), MsgInformation, QStringLiteral("Find"));
        return;
    }
    refresh(nom);
}

void frmCHEMIK::cmdFindAll_Click()
{
    const std::optional<QString> text =
        InputBox(QStringLiteral("Zadejte název zboží (maximálně 2 znaky)"), QStringLiteral("Najit ve všech skladech"));
    if (!text || text->isEmpty())
        return;
    frmFindAll find(this);
    find.CentreDb = CentreDb;
    find.mLineInput = *text;
    find.Load();
    if (find.exec() != QDialog::Accepted || find.mActualSklad.isEmpty())
        return;
    m_nameFilter = namePattern(*text);
    if (!bindSklad(find.mNazActualSklad + QLatin1Char('~') + find.mActualSklad))
        m_nameFilter.clear();
}

void frmCHEMIK::cmdVyber_Click()
{
    if (!currentNom())
        return;
    QSqlQuery q = m_centre->query();
    if (!m_centre->exec(q, QStringLiteral("SELECT * FROM ") + m_file + QStringLiteral(" WHERE nom=?"), {currentNom()})
        || !q.next())
        return;
    mLineInput = PickLine(q.record());
    accept();
}

void frmCHEMIK::cmdCopy_Click()
{
    if (!m_model)
        return;
    const QModelIndexList rows = DataGrid1->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    const int nomColumn = m_model->record().indexOf(QStringLiteral("nom"));
    const int nameColumn = m_model->record().indexOf(QStringLiteral("Nazev"));
    QVector<quint32> noms;
    QStringList names;
    for (const QModelIndex &row : rows) {
        noms << m_model->index(row.row(), nomColumn).data().toUInt();
        names << m_model->index(row.row(), nameColumn).data().toString().trimmed();
    }
    const QStringList buffer = ReadRowsToBuffer(*m_centre, m_file, noms);
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu zkopirovát %1 %2?").arg(buffer.size()).arg(ItemWord(buffer.size()))
                              + QStringLiteral("\r\n\r\n") + NumberedNames(names),
                          MsgQuestionOkCancel, QStringLiteral("Kopírovat"))))
        return;
    frmTyp typ(this);
    typ.CentreDb = CentreDb;
    typ.VyberSklad = -1;
    typ.VyberPending = true;
    typ.Load();
    if (typ.exec() != QDialog::Accepted || typ.mOpenFile.isEmpty())
        return;
    const SkladRef target = ParseOpenFile(typ.mOpenFile);
    if (!SkladTableExists(*m_centre, CentreDb, target.file)) {
        MsgBox(QStringLiteral("Sklad - ") + target.typ + QStringLiteral(" nemá svou tabulku, nic nebylo zkopírováno."),
               MsgWarning);
        return;
    }
    QString error;
    if (!CopyRows(*m_centre, target.file, buffer, &error))
        return fail(error);
    MsgBox(QString::number(buffer.size()) + QStringLiteral(" řádků bylo zkopírováno do skladu - ") + target.typ,
           MsgInformation);
    refresh(currentNom());
}

void frmCHEMIK::cmdPrijem_Click()
{
    if (!currentNom())
        return;
    if (FramePrijem->isVisible()) {
        FramePrijem->hide();
        cmdPrijem->setDown(false);
        ParamAkce = 0;
        return;
    }
    ParamAkce = 2;
    TypBal1->setText(QStringLiteral("0,00"));
    TypBal2->setText(QStringLiteral("0,00"));
    lblPrijem->setText(QStringLiteral("Příjem, množství: ") + value("Nazev"));
    FramePrijem->show();
    TypBal1->setFocus();
    TypBal1->selectAll();
}

void frmCHEMIK::confirmReceipt()
{
    QString error;
    const quint32 nom = currentNom();
    ChangeBaleni = true;
    if (!ReceiveItem(*m_centre, m_file, nom, TypBal1->text(), TypBal2->text(), &error))
        fail(error);
    TypBal1->setText(QStringLiteral("0,00"));
    TypBal2->setText(QStringLiteral("0,00"));
    FramePrijem->hide();
    ParamAkce = 0;
    refresh(nom);
}

void frmCHEMIK::cmdVydej_Click()
{
    if (!currentNom())
        return;
    ParamAkce = 3;
    m_issueBalance = value("KUS_PR").toDouble();
    txtNazevVydej->setText(value("Nazev"));
    txtKatalVydej->setText(value("Katal"));
    txtMira->setText(value("Mira"));
    txtDatVyd->setText(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
    Text10->setText(value("TypBal1"));
    Text11->setText(value("TypBal2"));
    txtKomuVydej->clear();
    Frame5->show();
    showIssueBalance();
    txtKomuVydej->setFocus();
}

void frmCHEMIK::showIssueBalance()
{
    txtMnoz->setText(IssueText(Text10->text(), Text11->text()));
    const double after = m_issueBalance - MovementPieces(Text10->text(), Text11->text());
    lblStavVydej->setText(QStringLiteral("Stav před výdejem: %1   po výdeji: <b>%2</b>")
                              .arg(QString::number(m_issueBalance, 'g', 12), QString::number(after, 'g', 12)));
    lblStavVydej->setStyleSheet(after < 0 ? QStringLiteral("color: #c00000") : QString());
}

void frmCHEMIK::cmdSaveVydej_Click()
{
    const quint32 nom = currentNom();
    if (!nom || !Frame5->isVisible())
        return;
    const IssueInput issue{txtNazevVydej->text(), txtKatalVydej->text(), txtKomuVydej->text(), txtMira->text(),
                           txtDatVyd->text(),     Text10->text(),        Text11->text(),       skladName()};
    QString error;
    if (!IssueItem(*m_centre, m_file, nom, issue, &error))
        return fail(error);
    Frame5->hide();
    ParamAkce = 0;
    refresh(nom);
}

void frmCHEMIK::cmdKalendar_Click()
{
    const quint32 nom = currentNom();
    if (!nom)
        return;
    const std::optional<QString> date = PickDate(this, value("EXPIR"));
    if (!date)
        return;
    QString error;
    if (!SetExpiry(*m_centre, m_file, nom, QString(*date).remove(QStringLiteral("00:00:00")).trimmed(), &error))
        return fail(error);
    refresh(nom);
}

void frmCHEMIK::cmdKalendar2_Click()
{
    const std::optional<QString> date = PickDate(this, txtDatVyd->text());
    if (date)
        txtDatVyd->setText(QString(*date).remove(QStringLiteral("00:00:00")).trimmed());
}

void frmCHEMIK::cmdSklady_Click()
{
    frmTyp typ(this);
    typ.CentreDb = CentreDb;
    typ.VyberSklad = -1;
    typ.VyberPending = true;
    typ.Load();
    if (typ.exec() == QDialog::Accepted && !typ.mOpenFile.isEmpty()) {
        m_nameFilter.clear();
        bindSklad(typ.mOpenFile);
    }
}

void frmCHEMIK::cmdArchVyd_Click()
{
    frmVydeji vydeji(this);
    vydeji.CentreDb = CentreDb;
    vydeji.OpenFile = OpenFile;
    if (vydeji.Load())
        vydeji.exec();
}

QString frmCHEMIK::writeObjedn(const ObjednFilter &filter)
{
    if (m_file.isEmpty())
        return QString();
    const QString path = ObjednSummaryPath(Session().TempDir, skladName());
    QString error;
    if (WriteObjednSummary(*m_centre, skladName(), filter, path, &error) < 0) {
        fail(error);
        return QString();
    }
    ViewHTML(path);
    return path;
}

QString frmCHEMIK::cmdOrder_Click()
{
    ObjednFilter filter;
    filter.skladFile = m_file;
    filter.year = year();
    filter.firma = Text4->text().trimmed();
    filter.from = QDate::fromString(Text8->text().trimmed(), QStringLiteral("d.M.yyyy"));
    return writeObjedn(filter);
}

QString frmCHEMIK::cmdArchObjedn_Click()
{
    if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete vytvořit tiskovou sestavu všeho, co bylo objednáno na skladě")
                              + QStringLiteral("?"),
                          MsgQuestionOkCancel, QStringLiteral("Informace"))))
        return QString();
    ObjednFilter filter;
    filter.skladFile = m_file;
    return writeObjedn(filter);
}

QString frmCHEMIK::cmdPolozkaObjedn_Click()
{
    const QString name = value("Nazev");
    if (!currentNom()
        || !Confirmed(MsgBox(QStringLiteral("Opravdu si přejete vytvořit tiskovou sestavu pro položku: ") + name
                                 + QStringLiteral("- ") + QStringLiteral("?"),
                             MsgQuestionOkCancel, QStringLiteral("Informace"))))
        return QString();
    ObjednFilter filter;
    filter.skladFile = m_file;
    filter.item = name;
    return writeObjedn(filter);
}

bool frmCHEMIK::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Text7 && event->type() == QEvent::FocusIn && Combo1->count() == 0) {
        // The units are read when the unit field is first entered.
        DbConnection sys(ConnStrSys());
        QSqlQuery q = sys.query();
        if (sys.exec(q, QStringLiteral("SELECT Nazev FROM sys_MIRA ORDER BY Nazev")))
            while (q.next())
                Combo1->addItem(FieldText(q, 0));
    }
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (watched == TypBal1) {
                TypBal1->setText(TypBal1->text().replace(QLatin1Char(','), QLatin1Char('.')));
                TypBal2->setFocus();
                TypBal2->selectAll();
                return true;
            }
            if (watched == TypBal2) {
                confirmReceipt();
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmCHEMIK::keyPressEvent(QKeyEvent *event)
{
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    if (ctrl && event->key() == Qt::Key_F)
        return cmdFind->click();
    if (ctrl && event->key() == Qt::Key_C)
        return cmdFindAll->click();
    if (event->key() == Qt::Key_F5)
        return cmdCopy->click();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return;   // Enter belongs to the panels, never to a default button
    QDialog::keyPressEvent(event);
}
