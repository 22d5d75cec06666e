#include "orders/frmArchObj.h"

#include "core/config.h"
#include "core/db.h"
#include "core/frmKalendar.h"
#include "core/msg.h"
#include "core/routing.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objeditor.h"
#include "orders/objexchangepanel.h"
#include "orders/objhtml.h"
#include "orders/objlist.h"
#include "orders/objreports.h"
#include "orders/objsave.h"
#include "orders/frmTvorObj.h"
#include "registers/frmFindAll.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDate>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlRecord>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const QString Title = QStringLiteral("Informace");
const char *const GridCaptions[] = {" iD", "  Číslo dokladu", "  Zapsáno", "  GRANT", "          Název firmy",
                                    "  Skut. Kč ", "  Zaúčt. Kč", "  L", ""};
constexpr int ColumnL = 7;

QLineEdit *box(QWidget *parent, const QString &name, bool readOnly = false)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setReadOnly(readOnly);
    return e;
}

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

// The name box of goods line i (0..7): lines 7 and 8 have boxes of their own numbers.
int nameBox(int i) { return i < 6 ? i : (i == 6 ? 24 : 32); }

// A failed write on the archive's row: what was not done, and why.
QString failed(const QString &what, const DbConnection &conn)
{
    return what + QStringLiteral("\r\n")
           + (conn.isOpen() ? conn.errorText() : QStringLiteral("Spojení s databází střediska se nepodařilo otevřít."));
}
} // namespace

// The grid's rows: the list holds their keys, and a row's texts, colours and handover mark
// are read when it is painted, so a status list of thousands of rows shows as fast as a page.
class ObjListModel : public QAbstractTableModel {
public:
    ObjListModel(const QList<int> &keys, std::function<const ObjListRow &(int)> rowAt, const QSet<int> &chosen,
                 const QIcon &handover, QObject *parent)
        : QAbstractTableModel(parent), m_keys(keys), m_rowAt(std::move(rowAt)), m_chosen(chosen), m_handover(handover)
    {
    }
    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(m_keys.size()); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 9; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid() || index.row() >= m_keys.size()
            || (role != Qt::DisplayRole && role != Qt::BackgroundRole && role != Qt::DecorationRole))
            return {};
        const ObjListRow &row = m_rowAt(index.row());
        switch (role) {
        case Qt::DisplayRole:
            switch (index.column()) {
            case 0: return QString::number(row.nom);
            case 1: return row.cisObj;
            case 2: return ObjDateText(row.datObj);
            case 3: return row.grant;
            case 4: return row.firma;
            case 5: return GetField(row.castka, 0);
            case 6: return GetField(row.castka, 1);
            default: return QString();
            }
        case Qt::BackgroundRole: return QBrush(ObjCellColour(row.state, index.column(), m_chosen.contains(row.nom)));
        case Qt::DecorationRole: return index.column() == ColumnL && row.coml ? QVariant(m_handover) : QVariant();
        default: return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 9)
            return QString::fromUtf8(GridCaptions[section]);
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    void reset()
    {
        beginResetModel();
        endResetModel();
    }
    void rowChanged(int r) { emit dataChanged(index(r, 0), index(r, 8)); }

private:
    const QList<int> &m_keys;
    std::function<const ObjListRow &(int)> m_rowAt;
    const QSet<int> &m_chosen;
    QIcon m_handover;
};

frmArchObj::frmArchObj(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmArchObj"));
    setWindowTitle(QStringLiteral("Seznam zádanek"));
    m_db = Session().MysqlDb;
    m_role = Session().UserTyp;
    DatePicker = PickDate;
    SkladPicker = [](QWidget *parent, const QString &centreDb, const QString &name) -> std::optional<std::pair<QString, QString>> {
        // The warehouses that hold goods of that name, then the stock screen on the one chosen.
        frmFindAll find(parent);
        find.CentreDb = centreDb;
        find.mLineInput = name;
        if (!find.Load())
            return std::nullopt;
        find.setWindowTitle(QStringLiteral("Seznam skladu - ") + name);
        if (find.exec() != QDialog::Accepted || find.mActualSklad.isEmpty())
            return std::nullopt;
        return PickStockLine(parent, find.mNazActualSklad + QLatin1Char('~') + find.mActualSklad, name, centreDb);
    };
    buildUi();
}

void frmArchObj::buildUi()
{
    MSFlexGrid2 = new QTableView(this);
    MSFlexGrid2->setObjectName(QStringLiteral("MSFlexGrid2"));
    m_model = new ObjListModel(m_keys, [this](int r) -> const ObjListRow & { return rowAt(r); }, m_chosen,
                               style()->standardIcon(QStyle::SP_DialogApplyButton), this);
    MSFlexGrid2->setModel(m_model);
    MSFlexGrid2->verticalHeader()->hide();
    MSFlexGrid2->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid2->setSelectionMode(QAbstractItemView::SingleSelection);
    MSFlexGrid2->setSelectionBehavior(QAbstractItemView::SelectRows);
    MSFlexGrid2->installEventFilter(this);
    MSFlexGrid2->viewport()->installEventFilter(this);
    const int widths[] = {45, 110, 80, 80, 200, 90, 90, 28, 10};
    for (int c = 0; c < 9; ++c)
        MSFlexGrid2->setColumnWidth(c, widths[c]);
    MSFlexGrid2->setMinimumWidth(760);
    // The cursor row is aqua like the chosen ones.
    MSFlexGrid2->setStyleSheet(QStringLiteral("QTableView::item:selected { background: #00FFFF; color: black; }"));

    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo5 = new QComboBox(this);
    Combo5->setObjectName(QStringLiteral("Combo5"));
    cmbStrediska = new QComboBox(this);
    cmbStrediska->setObjectName(QStringLiteral("cmbStrediska"));
    lblSelStredisko = new QLabel(this);
    lblSelStredisko->setObjectName(QStringLiteral("lblSelStredisko"));
    auto *filters = new QHBoxLayout;
    filters->addWidget(new QLabel(QStringLiteral("Stav:"), this));
    filters->addWidget(Combo2, 1);
    filters->addWidget(new QLabel(QStringLiteral("Rok:"), this));
    filters->addWidget(Combo5);
    filters->addWidget(new QLabel(QStringLiteral("Středisko:"), this));
    filters->addWidget(cmbStrediska, 1);
    filters->addWidget(lblSelStredisko);

    // The legend of the colours.
    auto *legend = new QHBoxLayout;
    const struct {
        QColor colour;
        const char *caption;
    } legendItems[] = {{ObjColours::White, "- vytvořena"},     {ObjColours::White, "- připravena"},
                       {ObjColours::Yellow, "- stáv výřizování"}, {ObjColours::Green, "- dodáno"},
                       {ObjColours::Red, "- vyfakturována"},      {ObjColours::Grey, "- zaúčtována"},
                       {ObjColours::Aqua, "- vybrána, kursor"}};
    for (const auto &item : legendItems) {
        auto *swatch = new QLabel(this);
        swatch->setFixedSize(14, 14);
        swatch->setStyleSheet(QStringLiteral("background:%1; border:1px solid gray").arg(item.colour.name()));
        legend->addWidget(swatch);
        legend->addWidget(new QLabel(QString::fromUtf8(item.caption), this));
    }
    legend->addStretch();

    txtPage = box(this, QStringLiteral("txtPage"), true);
    txtPages = box(this, QStringLiteral("txtPages"), true);
    txtPage->setMaximumWidth(50);
    txtPages->setMaximumWidth(50);
    Label20 = new QLabel(this);
    Label20->setObjectName(QStringLiteral("Label20"));
    Label21 = new QLabel(this);
    Label21->setObjectName(QStringLiteral("Label21"));
    cmdTop = button(this, "cmdTop", QStringLiteral("Na konec"));
    cmdBot = button(this, "cmdBot", QStringLiteral("Na začátek"));
    cmdUp = button(this, "cmdUp", QStringLiteral("Stranka nahoru"));
    cmdDown = button(this, "cmdDown", QStringLiteral("Stranka dolů"));
    auto *paging = new QHBoxLayout;
    paging->addWidget(new QLabel(QStringLiteral("Stránka:"), this));
    paging->addWidget(txtPage);
    paging->addWidget(new QLabel(QStringLiteral("Počet stránek:"), this));
    paging->addWidget(txtPages);
    for (QPushButton *b : {cmdBot, cmdDown, cmdUp, cmdTop})
        paging->addWidget(b);
    paging->addStretch();
    paging->addWidget(new QLabel(QStringLiteral("Celkem:"), this));
    paging->addWidget(Label20);
    paging->addWidget(Label21);

    // The detail.
    auto *detail = new QGridLayout;
    Text6 = box(this, QStringLiteral("Text6"), true);
    Text2 = box(this, QStringLiteral("Text2"));
    Text8 = box(this, QStringLiteral("Text8"));
    Text7 = box(this, QStringLiteral("Text7"));
    Text9 = box(this, QStringLiteral("Text9"));
    txtDatObj = box(this, QStringLiteral("txtDatObj"), true);
    txtGrant = box(this, QStringLiteral("txtGrant"));
    txtCena = box(this, QStringLiteral("txtCena"));
    txtCastka = box(this, QStringLiteral("txtCastka"));
    txtZauct = box(this, QStringLiteral("txtZauct"));
    txtPrijemce = box(this, QStringLiteral("txtPrijemce"));
    txtHrazeno = box(this, QStringLiteral("txtHrazeno"));
    Text4 = box(this, QStringLiteral("Text4"));
    txtPozn = box(this, QStringLiteral("txtPozn"));
    Text5 = box(this, QStringLiteral("Text5"));
    Text5->hide();
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setEditable(true);
    Combo1->setInsertPolicy(QComboBox::NoInsert);
    lblVyrizuje = new QLabel(this);   // the telephone and extension that came with the person
    lblVyrizuje->setObjectName(QStringLiteral("lblVyrizuje"));
    Command2 = button(this, "Command2", QStringLiteral("..."));
    cmdPristup = button(this, "cmdPristup", QStringLiteral("..."));
    // The column a box is saved to takes the box's label as caption in messages.
    const struct {
        const char *caption;
        QWidget *w;
        QWidget *extra;
        const char *column;
    } rows[] = {{"Interni číslo objedn. :", Text6, nullptr, nullptr},
                {"Číslo objednávky:", Text2, nullptr, "Cis_global"},
                {"Dne:", txtDatObj, nullptr, nullptr},
                {"Zapsáno dne:", Text8, nullptr, "objWF"},
                {"Dodáno  dne:", Text7, Command2, "Dat_vyriz"},
                {"Zaúčtováno:", Text9, cmdPristup, "objZauct"},
                {"Číslo GRANTU:", txtGrant, nullptr, "GRANT"},
                {"Předpokladaná cena s DPH, Kč:", txtCena, nullptr, "Poc10"},
                {"Skutečna cena, Kč:", txtCastka, nullptr, "Castka"},
                {"Zaúčtováno, Kč:", txtZauct, nullptr, nullptr},
                {"Přijemce:", txtPrijemce, nullptr, nullptr},
                {"Hrazeno z:", txtHrazeno, Text4, "Prikazce"},
                {"Poznámka", txtPozn, nullptr, "Text1"},
                {"Vyřizuje", Combo1, lblVyrizuje, nullptr}};
    int r = 0;
    for (const auto &row : rows) {
        if (row.column)
            m_captions.insert(QLatin1String(row.column), CaptionOf(QString::fromUtf8(row.caption)));
        detail->addWidget(new QLabel(QString::fromUtf8(row.caption), this), r, 0);
        detail->addWidget(row.w, r, 1);
        if (row.extra)
            detail->addWidget(row.extra, r, 2);
        ++r;
    }
    // The box numbers follow the goods and firm blocks; the numbers between them are unused.
    for (int i = 0; i < 43; ++i) {
        txtFields[i] = box(this, QStringLiteral("txtFields%1").arg(i));
        txtFields[i]->hide();
    }
    for (int i = 0; i < 9; ++i) {
        txtData[i] = box(this, QStringLiteral("txtData%1").arg(i));
        txtData[i]->hide();
    }

    // Firm block and the kinds' frames.
    auto *firm = new QFormLayout;
    const char *firmCaptions[] = {"Firma:", "Z katalogu:", "Adresa:", "PSČ:", "Město:", "Tel.:", "Fax:"};
    for (int i = 0; i < 7; ++i) {
        firm->addRow(QString::fromUtf8(firmCaptions[i]), txtFields[31 - i]);
        txtFields[31 - i]->show();
    }

    FrameZbozi = new QFrame(this);
    FrameZbozi->setObjectName(QStringLiteral("FrameZbozi"));
    auto *goods = new QGridLayout(FrameZbozi);
    goods->addWidget(new QLabel(QStringLiteral("Zboží :"), FrameZbozi), 0, 0);
    goods->addWidget(new QLabel(QStringLiteral("Cena za 1"), FrameZbozi), 0, 1);
    goods->addWidget(new QLabel(QStringLiteral("Množ."), FrameZbozi), 0, 2);
    for (int i = 0; i < 8; ++i) {
        goods->addWidget(txtFields[nameBox(i)], i + 1, 0);
        goods->addWidget(txtFields[8 + i], i + 1, 1);
        goods->addWidget(txtFields[35 + i], i + 1, 2);
        cmdSklad[i] = button(FrameZbozi, "cmdSklad", QStringLiteral("Sklad"));
        cmdSklad[i]->setObjectName(QStringLiteral("cmdSklad%1").arg(i));
        goods->addWidget(cmdSklad[i], i + 1, 3);
        txtLabel1[i] = new QLabel(FrameZbozi);   // the warehouse of the last pick
        txtLabel1[i]->setObjectName(QStringLiteral("txtLabel1_%1").arg(i));
        goods->addWidget(txtLabel1[i], i + 1, 4);
        connect(cmdSklad[i], &QPushButton::clicked, this, [this, i] { cmdSklad_Click(i); });
        for (int b : {nameBox(i), 8 + i, 35 + i})
            txtFields[b]->show();
    }
    lblDruh = new QLabel(this);
    lblDruh->setObjectName(QStringLiteral("lblDruh"));

    FrameText = new QFrame(this);
    FrameText->setObjectName(QStringLiteral("FrameText"));
    editor = new ObjTextEditor(FrameText);
    cmdEdit = button(FrameText, "cmdEdit", QStringLiteral("Unlock"));
    cmdSaveHTML = button(FrameText, "cmdSaveHTML", QStringLiteral("Save"));
    auto *textLayout = new QVBoxLayout(FrameText);
    auto *textButtons = new QHBoxLayout;
    textButtons->addWidget(new QLabel(QStringLiteral("T e x t"), FrameText));
    textButtons->addStretch();
    textButtons->addWidget(cmdEdit);
    textButtons->addWidget(cmdSaveHTML);
    textLayout->addLayout(textButtons);
    textLayout->addWidget(editor);

    FrameForm = new QFrame(this);
    FrameForm->setObjectName(QStringLiteral("FrameForm"));
    auto *formLayout = new QVBoxLayout(FrameForm);
    formLayout->addWidget(new QLabel(QStringLiteral("Formulář"), FrameForm));
    for (int i = 0; i < 5; ++i) {
        Text1[i] = box(FrameForm, QStringLiteral("Text1_%1").arg(i));
        formLayout->addWidget(Text1[i]);
    }

    Frame6 = new QFrame(this);
    Frame6->setObjectName(QStringLiteral("Frame6"));

    cmdView = button(this, "cmdView", QStringLiteral("&Zobrazit"));
    cmdPDFForm = button(this, "cmdPDFForm", QStringLiteral("Náhled v PDF"));
    cmdCopy = button(this, "cmdCopy", QStringLiteral("&Kopírovat"));
    cmdDelete = button(this, "cmdDelete", QStringLiteral("&Smazat"));
    cmdTransfer = button(this, "cmdTransfer", QStringLiteral("&Přenest v archiv"));
    cmdArchiv = button(this, "cmdArchiv", QStringLiteral("Archivy"));
    cmdRefresh = button(this, "cmdRefresh", QStringLiteral("Refresh"));
    cmdRozpocet = button(this, "cmdRozpocet", QStringLiteral("Rozpočet"));
    cmdCerpani = button(this, "cmdCerpani", QStringLiteral("Čerpání"));
    cmdLekarna = button(this, "cmdLekarna", QStringLiteral("Objednávky na Lekárně"));
    cmdFind = button(this, "cmdFind", QStringLiteral("F7-&Najit"));
    cmdClose = button(this, "cmdClose", QStringLiteral("Zavřít"));
    Command3 = button(this, "Command3", QStringLiteral("Save"));
    auto *commands = new QHBoxLayout;
    for (QPushButton *b : {cmdView, cmdPDFForm, cmdCopy, cmdDelete, cmdTransfer, cmdArchiv, cmdRefresh, cmdRozpocet,
                           cmdCerpani, cmdLekarna, cmdFind, Command3, cmdClose})
        commands->addWidget(b);
    AddObjExchangeCommands(this, commands);

    auto *left = new QVBoxLayout;
    left->addLayout(filters);
    left->addWidget(MSFlexGrid2, 1);
    left->addLayout(legend);
    left->addLayout(paging);
    auto *right = new QVBoxLayout;
    right->addLayout(detail);
    right->addLayout(firm);
    right->addWidget(lblDruh);
    right->addWidget(FrameZbozi);
    right->addWidget(FrameText, 1);
    right->addWidget(FrameForm);
    right->addWidget(Frame6);
    auto *top = new QHBoxLayout;
    top->addLayout(left, 3);
    top->addLayout(right, 2);
    auto *main = new QVBoxLayout(this);
    main->addLayout(top, 1);
    main->addLayout(commands);
    resize(1400, 820);

    // Wiring.
    connect(Combo2, &QComboBox::activated, this, [this] { FilterObj(); });
    connect(Combo5, &QComboBox::activated, this, [this] { FilterObj(); });
    connect(cmbStrediska, &QComboBox::activated, this, [this](int index) {
        if (index <= 0)
            return;
        m_db = cmbStrediska->itemData(index).toString();
        lblSelStredisko->setText(cmbStrediska->itemText(index));
        m_chosen.clear();
        FilterObj();
    });
    connect(MSFlexGrid2->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { enterRow(current.row()); });
    connect(MSFlexGrid2, &QTableView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == ColumnL)
            toggleHandover(index.row());
    });
    connect(Combo1, &QComboBox::activated, this, &frmArchObj::Combo1_Click);
    connect(cmdTop, &QPushButton::clicked, this, [this] { FillPage(m_pages); });
    connect(cmdBot, &QPushButton::clicked, this, [this] { FillPage(1); });
    connect(cmdUp, &QPushButton::clicked, this, [this] { FillPage(std::min(m_pages, m_page + 1)); });
    connect(cmdDown, &QPushButton::clicked, this, [this] { FillPage(std::max(1, m_page - 1)); });
    connect(cmdRefresh, &QPushButton::clicked, this, [this] { FilterObj(); });
    connect(cmdCopy, &QPushButton::clicked, this, &frmArchObj::cmdCopy_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmArchObj::cmdDelete_Click);
    connect(cmdView, &QPushButton::clicked, this, &frmArchObj::cmdView_Click);
    connect(cmdPDFForm, &QPushButton::clicked, this, [this] {
        if (m_nom)
            ObjPdfPreview(this, m_nom);
    });
    connect(cmdCerpani, &QPushButton::clicked, this, &frmArchObj::cmdCerpani_Click);
    connect(cmdRozpocet, &QPushButton::clicked, this, [this] { RunCommand(QStringLiteral("mnuRozpocet"), parentWidget()); });
    connect(cmdLekarna, &QPushButton::clicked, this, &frmArchObj::cmdLekarna_Click);
    connect(cmdEdit, &QPushButton::clicked, this, [this] { editor->setLocked(false); });
    connect(cmdSaveHTML, &QPushButton::clicked, this, &frmArchObj::cmdSaveHTML_Click);
    connect(Command3, &QPushButton::clicked, this, [this] { SaveByRole(); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    connect(Command2, &QPushButton::clicked, this, [this] { pickDate(Text7); });
    connect(cmdPristup, &QPushButton::clicked, this, [this] { pickDate(Text9); });

    // Enter in a detail box saves; the date and amount boxes also save when left.
    for (QLineEdit *e : {Text2, Text8, txtGrant, txtCena, txtPrijemce, txtHrazeno, Text4, txtPozn})
        connect(e, &QLineEdit::returnPressed, this, [this] { SaveByRole(); });
    for (QLineEdit *e : txtFields)
        connect(e, &QLineEdit::returnPressed, this, [this] { SaveByRole(); });
    for (QLineEdit *e : Text1)
        connect(e, &QLineEdit::returnPressed, this, [this] { SaveByRole(); });
    for (QLineEdit *e : {Text7, Text9}) {
        e->installEventFilter(this);
        connect(e, &QLineEdit::editingFinished, this, [this, e] {
            if (!m_filling && e->isModified()) {
                e->setText(DateTwoDigits(e->text().trimmed()));
                e->setModified(false);
                SaveByRole();
            }
        });
    }
    for (QLineEdit *e : {txtCastka, txtZauct})
        connect(e, &QLineEdit::editingFinished, this, [this, e] {
            if (!m_filling && e->isModified()) {
                e->setModified(false);
                amountLeft();
            }
        });
}

void frmArchObj::fillLists()
{
    DbConnection sys(ConnStrSys());
    if (sys.isOpen()) {
        QSqlQuery q = sys.query();
        // The payment sources, with the three of every institute when the table is empty.
        if (sys.exec(q, QStringLiteral("SELECT COUNT(*) FROM sys_hrazeno")) && q.next() && q.value(0).toInt() == 0)
            for (const char *typ : {"GRANTU", "VVZ", "NS"})
                sys.exec(QStringLiteral("INSERT INTO sys_hrazeno (Typ) VALUES (?)"), {QString::fromLatin1(typ)});
        Combo1->clear();
        if (sys.exec(q, QStringLiteral("SELECT Vyrizuje FROM sys_nastaveniobj ORDER BY Vyrizuje")))
            while (q.next())
                Combo1->addItem(q.value(0).toString());
        cmbStrediska->clear();
        cmbStrediska->addItem(QStringLiteral("- Výbrat -"));
        // The pharmacy's own row is no centre of orders.
        if (sys.exec(q, QStringLiteral("SELECT code_stredisko, name_stredisko, mysql_db FROM sys_db_kvl WHERE lekarna = 0 "
                                       "ORDER BY code_stredisko")))
            while (q.next())
                cmbStrediska->addItem(q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString(), q.value(2));
    }
    Combo2->clear();
    Combo2->addItems(ObjStatusEntries());
    Combo2->addItems(UserGrantList(Session().UserFiltrGrant));
    Combo2->setCurrentIndex(0);
    Combo5->clear();
    const int year = QDate::currentDate().year();
    for (int y = year; y >= year - 20; --y)
        Combo5->addItem(QString::number(y));
    Combo5->setCurrentIndex(-1);
}

void frmArchObj::Load()
{
    fillLists();
    applyRole();
    FilterObj();
}

void frmArchObj::applyRole()
{
    const int own = Session().UserTyp;
    cmbStrediska->setVisible(own == 2 || own == 5);
    lblSelStredisko->setVisible(own == 2 || own == 5);
    Command3->setEnabled(m_role != 5);
    cmdEdit->setEnabled(m_role != 5 && m_role != 3);
    cmdRozpocet->setEnabled(m_role != 3);
    cmdCerpani->setEnabled(m_role != 3);
    // The pharmacy saves the price and the dates only, the order manager nothing.
    const bool lines = m_role != 5 && m_role != 3;
    Combo1->setEnabled(lines);
    for (QPushButton *b : cmdSklad)
        b->setEnabled(lines);
}

void frmArchObj::FilterObj(const QString &field)
{
    const int status = Combo2->currentIndex();
    m_filter = ::FilterObj(status, Combo2->currentText(), Combo5->currentIndex() >= 0 ? Combo5->currentText() : QString(),
                           m_role == 3, field);
    m_keys.clear();
    m_cache.clear();
    m_sums = {};
    m_total = 0;
    DbConnection conn(ConnStrFor(m_db));
    short counter = 1;
    if (conn.isOpen() && NextObjCounter(conn, &counter))
        m_nextNumber = MakeObjCislo(counter);
    // A database of an earlier version is said once, not met with a failing statement.
    if (conn.isOpen() && m_checkedDb != m_db) {
        m_checkedDb = m_db;
        m_upToDate = ObjListUpToDate(conn);
        if (!m_upToDate)
            MsgBox(ObjListOldDatabaseText(m_db), MsgWarning);
    }
    // A status list is one page of every row whose colour fits, its sums over them all.
    if (status >= 1 && status <= 4) {
        ObjListKeys list;
        if (conn.isOpen() && m_upToDate && ObjListKeysOf(conn, m_filter, status, &list)) {
            m_keys = list.noms;
            m_sums = list.sums;
            m_total = int(m_keys.size());
        }
    } else if (conn.isOpen()) {
        ObjListCount(conn, m_filter, &m_total);
    }
    FillPage(0);
}

void frmArchObj::FillPage(int page)
{
    const int status = Combo2->currentIndex();
    const bool statusList = status >= 1 && status <= 4;
    m_pages = statusList ? (m_keys.isEmpty() ? 0 : 1) : ObjPageCount(m_total);
    m_page = page <= 0 || page > m_pages ? m_pages : page;
    if (!statusList) {
        QList<ObjListRow> rows;
        DbConnection conn(ConnStrFor(m_db));
        if (conn.isOpen())
            ObjListPage(conn, m_filter, m_total, ObjPageStart(m_total, m_page), ObjPageRows, &rows);
        m_keys.clear();
        m_cache.clear();
        m_sums = {};
        for (const ObjListRow &row : rows) {
            m_keys << row.nom;
            m_cache.insert(row.nom, row);
            m_sums.add(row.castka, row.grant.contains(QLatin1Char(',')));
        }
    }

    m_filling = true;
    m_model->reset();
    Label20->setText(FormatAmount(QString::number(m_sums.price, 'f', 2)));
    Label21->setText(FormatAmount(QString::number(m_sums.booked, 'f', 2)));
    txtPage->setText(QString::number(m_page));
    txtPages->setText(QString::number(m_pages));
    cmdDown->setEnabled(!(m_total < 29 || m_page <= 1));
    cmdUp->setEnabled(!(m_total < 29 || m_page >= m_pages));
    const bool any = !m_keys.isEmpty();
    for (QPushButton *b : {cmdDelete, cmdCopy, Command2})
        b->setEnabled(any);
    if (any)
        selectRow(0);   // entered once, below, not by the cursor's move as well
    m_filling = false;
    if (any) {
        enterRow(0);
    } else {
        clearDetail();
    }
}

void frmArchObj::paintRow(int r)
{
    m_model->rowChanged(r);
}

const ObjListRow &frmArchObj::rowAt(int r)
{
    const int nom = m_keys[r];
    if (const auto it = m_cache.constFind(nom); it != m_cache.cend())
        return *it;
    // The rows around it are read with it: a painted screenful costs one statement.
    constexpr int Block = 64;
    QList<int> keys;
    for (int i = r / Block * Block; i < std::min(int(m_keys.size()), (r / Block + 1) * Block); ++i)
        if (!m_cache.contains(m_keys[i]))
            keys << m_keys[i];
    QList<ObjListRow> rows;
    DbConnection conn(ConnStrFor(m_db));
    if (conn.isOpen())
        ObjListRowsOf(conn, keys, &rows);
    for (const ObjListRow &row : rows)
        m_cache.insert(row.nom, row);
    // A row gone meanwhile shows its key alone.
    for (int key : keys)
        if (!m_cache.contains(key))
            m_cache[key].nom = key;
    return m_cache[nom];
}

int frmArchObj::currentRow() const
{
    return MSFlexGrid2->currentIndex().row();
}

void frmArchObj::selectRow(int r)
{
    MSFlexGrid2->setCurrentIndex(m_model->index(r, 1));
}

void frmArchObj::enterRow(int r)
{
    if (m_filling || r < 0 || r >= m_keys.size())
        return;
    ShowObj(m_keys[r]);
}

void frmArchObj::clearDetail()
{
    m_nom = 0;
    m_typ = 0;
    for (QLineEdit *e : {Text6, Text2, Text8, Text7, Text9, txtDatObj, txtGrant, txtCena, txtCastka, txtZauct,
                         txtPrijemce, txtHrazeno, Text4, txtPozn, Text5})
        e->clear();
    for (QLineEdit *e : txtFields)
        e->clear();
    for (QLineEdit *e : txtData)
        e->clear();
    for (QLineEdit *e : Text1)
        e->clear();
    editor->setHtml(QString());
}

void frmArchObj::ShowObj(int nom)
{
    DbConnection conn(ConnStrFor(m_db));
    QSqlQuery q = conn.query();
    if (!conn.isOpen() || !conn.exec(q, QStringLiteral("SELECT * FROM archobj WHERE nom = ?"), {nom}) || !q.next())
        return;   // gone meanwhile: nothing to show
    m_filling = true;
    clearDetail();
    m_nom = nom;
    auto v = [&q](const char *column) { return q.value(QLatin1String(column)).toString(); };
    m_typ = short(v("Typ").trimmed().toInt());
    Text6->setText(v("cis_obj"));
    Text2->setText(v("Cis_global"));
    Text8->setText(v("objWF"));
    Text7->setText(v("Dat_vyriz"));
    Text9->setText(v("objZauct"));
    txtDatObj->setText(ObjDateText(v("Dat_obj")));
    txtGrant->setText(v("Grant"));
    txtCena->setText(v("poc10"));
    const QString castka = v("Castka");
    txtData[8]->setText(castka);
    txtCastka->setText(GetField(castka, 0));
    txtZauct->setText(GetField(castka, 1));
    txtPrijemce->setText(GetField(castka, 2));
    txtHrazeno->setText(GetField(v("Prikazce"), 1));
    Text4->setText(GetField(v("Prikazce"), 2));
    txtPozn->setText(GetField(v("Text1"), 0));
    Text5->setText(v("Text1"));
    const char *firm[] = {"Firma", "Pobocka", "Adres", "PSC", "Mesto", "Tel", "Fax"};
    for (int i = 0; i < 7; ++i)
        txtFields[31 - i]->setText(v(firm[i]));
    for (int i = 0; i < 8; ++i) {
        const QString rec = q.value(QStringLiteral("LineRec%1").arg(i + 1)).toString();
        const QString poc = q.value(QStringLiteral("Poc%1").arg(i + 1)).toString().trimmed();
        const QString unit = GetField(rec, 2).trimmed();
        txtData[i]->setText(rec);
        txtFields[nameBox(i)]->setText(GetField(rec, 0));
        txtFields[8 + i]->setText(GetField(rec, 1));
        txtFields[35 + i]->setText(poc.isEmpty() || unit.isEmpty() || poc.contains(unit) ? poc : poc + QLatin1Char(' ') + unit);
    }
    for (int i = 0; i < 5; ++i)
        Text1[i]->setText(q.value(QStringLiteral("LineRec%1").arg(i + 1)).toString().remove(QLatin1Char('#')));
    Combo1->setEditText(v("LineRec9"));
    lblVyrizuje->setText(QStringList{v("Poc9"), v("LineRec10")}.join(QStringLiteral(", ")));
    for (QLabel *l : txtLabel1)
        l->clear();

    FrameZbozi->setVisible(m_typ == KindSklad);
    FrameText->setVisible(m_typ == KindText || m_typ == KindSluzby);
    FrameForm->setVisible(m_typ == KindFormCZ || m_typ == KindFormAN);
    lblDruh->setText(m_typ == KindSklad ? QStringLiteral("objednávka sklad")
                     : m_typ == KindFormCZ || m_typ == KindFormAN ? QStringLiteral("formulář")
                                                                  : QStringLiteral("objednávka text"));
    const QString body = v("file_html_text");
    editor->setHtml(body);
    editor->setLocked(true);
    m_filling = false;
    if (m_typ != KindSklad && body.isEmpty() && !v("Text").trimmed().isEmpty())
        MsgBox(QStringLiteral("Nemužu zobrazit text dokladu, možna je smazan nebo poškožen: \r\n") + v("Text"));
}

bool frmArchObj::SaveByRole()
{
    if (m_filling || m_nom == 0 || m_role == 5)
        return false;
    DbConnection conn(ConnStrFor(m_db));
    if (!conn.isOpen())
        return false;
    conn.setCaptions(m_captions);
    ObjWrite result;
    if (m_role == 3) {
        result = SaveObjLekarna(conn, m_nom, txtData[8]->text(), Text7->text(), Text8->text());
    } else {
        ObjArchiveDetail d;
        d.typ = m_typ;
        for (int i = 0; i < 7; ++i)
            d.firm[i] = txtFields[31 - i]->text();
        const bool letter = m_typ == KindFormCZ || m_typ == KindFormAN;
        for (int i = 0; i < 8; ++i) {
            if (letter)
                d.lineRec[i] = i < 5 ? Text1[i]->text() : txtData[i]->text();
            else
                d.lineRec[i] = txtFields[nameBox(i)]->text() + QLatin1Char('#') + txtFields[8 + i]->text() + QLatin1Char('#')
                               + GetField(txtData[i]->text(), 2);
            d.poc[i] = txtFields[35 + i]->text();
        }
        // The body as stored; only cmdSaveHTML replaces it with the editor's.
        QSqlQuery q = conn.query();
        if (m_typ != KindSklad && conn.exec(q, QStringLiteral("SELECT file_html_text FROM archobj WHERE nom = ?"), {m_nom}) && q.next())
            d.body = q.value(0).toString();
        d.poc10 = txtCena->text();
        d.castka = txtData[8]->text();
        d.prikazce = QLatin1Char('#') + txtHrazeno->text() + QLatin1Char('#') + Text4->text();
        d.datVyriz = DateTwoDigits(Text7->text().trimmed());
        d.grant = txtGrant->text();
        // The note box holds piece 0 of the whole note; the rest stays.
        QString note = Text5->text();
        const qsizetype hash = note.indexOf(QLatin1Char('#'));
        d.text1 = hash < 0 ? txtPozn->text() : txtPozn->text() + note.mid(hash);
        d.cisGlobal = Text2->text();
        d.objWF = Text8->text();
        d.objZauct = Text9->text();
        result = SaveObjArchive(conn, m_nom, d);
    }
    return afterWrite(conn, result);
}

bool frmArchObj::afterWrite(DbConnection &conn, ObjWrite result)
{
    if (result == ObjWrite::Failed) {
        MsgBox(conn.errorText(), MsgCritical);   // the failed statement's, under the boxes' captions
        return false;
    }
    // The row's state may have changed: read it again for the grid (gone rows leave the list).
    const int nom = m_nom;
    const int current = currentRow();
    if (result == ObjWrite::Missing) {
        FilterObj();
        return false;
    }
    ObjListRow fresh;
    if (current >= 0 && current < m_keys.size() && m_keys[current] == nom && ObjListRowOf(conn, nom, &fresh)) {
        m_cache[nom] = fresh;
        paintRow(current);
    }
    return true;
}

void frmArchObj::amountLeft()
{
    txtCastka->setText(FormatAmount(txtCastka->text()));
    txtZauct->setText(FormatAmount(txtZauct->text()));
    txtData[8]->setText(txtCastka->text() + QLatin1Char('#') + txtZauct->text() + QLatin1Char('#') + txtPrijemce->text());
    SaveByRole();
}

void frmArchObj::toggleChosen()
{
    const int r = currentRow();
    if (r < 0 || r >= m_keys.size())
        return;
    const int nom = m_keys[r];
    if (m_chosen.contains(nom))
        m_chosen.remove(nom);
    else
        m_chosen.insert(nom);
    paintRow(r);
}

void frmArchObj::toggleHandover(int r)
{
    if (r < 0 || r >= m_keys.size() || !CanToggleHandover(m_role))
        return;
    const int nom = m_keys[r];
    DbConnection conn(ConnStrFor(m_db));
    QSqlQuery q = conn.query();
    if (!conn.isOpen() || !conn.exec(q, QStringLiteral("SELECT * FROM ArchObj WHERE nom=?"), {nom}) || !q.next())
        return;
    const bool handed = q.value(QStringLiteral("coml")).toInt() == 1;
    QString title = Title;
    if (!Confirmed(MsgBoxPos(HandoverQuestion(q.value(QStringLiteral("cis_obj")).toString(), handed), MsgQuestionOkCancel, title)))
        return;
    if (!SetHandover(conn, nom, !handed))
        return;
    if (const auto it = m_cache.find(nom); it != m_cache.end())
        it->coml = !handed;
    paintRow(r);
}

void frmArchObj::cmdCopy_Click()
{
    if (m_nom == 0)
        return;
    QString title = Title;
    if (!Confirmed(MsgBoxPos(QStringLiteral("Chcete opravdu kopirovat objednávku číslo ") + Text6->text() + QStringLiteral(" ?"),
                             MsgQuestionOkCancel, title)))
        return;
    const std::optional<QString> number = InputBox(QStringLiteral("Zadejte číslo objednávku"),
                                                   QStringLiteral("Kopírovat objednávku:"), m_nextNumber);
    if (!number || number->trimmed().isEmpty())
        return;
    DbConnection conn(ConnStrFor(m_db));
    const int copy = conn.isOpen() ? CopyObj(conn, m_nom, number->trimmed()) : -1;
    if (copy < 0) {
        MsgBox(failed(QStringLiteral("Objednávku číslo %1 se nepodařilo zkopírovat.").arg(Text6->text()), conn), MsgCritical);
        return;
    }
    FilterObj();
    for (int page = m_pages; copy > 0 && page >= 1; --page) {
        if (const qsizetype r = m_keys.indexOf(copy); r >= 0) {
            selectRow(int(r));
            return;
        }
        if (page > 1)
            FillPage(page - 1);
    }
}

void frmArchObj::cmdDelete_Click()
{
    DbConnection conn(ConnStrFor(m_db));
    QString title = Title;
    if (!m_chosen.isEmpty()) {
        if (!Confirmed(MsgBoxPos(MultiDeleteQuestion(int(m_chosen.size())), MsgQuestionOkCancel, title)))
            return;
        const int count = conn.isOpen() ? DeleteObjRows(conn, m_chosen.values()) : -1;
        if (count < 0) {
            MsgBox(failed(QStringLiteral("Vybrané objednávky se nepodařilo smazat; žádná nebyla smazána."), conn), MsgCritical);
            return;
        }
        m_chosen.clear();
        MsgBox(QString::number(count) + QStringLiteral(" - řádky/ů bylo smazano."));
    } else {
        if (m_nom == 0)
            return;
        if (!Confirmed(MsgBoxPos(QStringLiteral("Chcete opravdu zrušit tuto objednávku? Pozor, budou zrušene vše objednávky ID ")
                                     + Text6->text() + QLatin1Char('.'),
                                 MsgQuestionOkCancel, title)))
            return;
        if (!conn.isOpen() || DeleteObjNumber(conn, Text6->text()) < 0) {
            MsgBox(failed(QStringLiteral("Objednávku číslo %1 se nepodařilo smazat.").arg(Text6->text()), conn), MsgCritical);
            return;
        }
    }
    const int page = m_page;
    FilterObj();
    if (page < m_pages)
        FillPage(page);
}

void frmArchObj::cmdView_Click()
{
    if (m_nom != 0)
        ViewObjForm(m_db, Text6->text());
}

void frmArchObj::cmdCerpani_Click()
{
    if (Combo2->currentIndex() < 5) {
        MsgBox(QStringLiteral("Není vybrány žádny GRANT. Za pomocí rolovacího seznamu Stav vyberte grant..."));
        return;
    }
    const QString grant = Combo2->currentText();
    DbConnection conn(ConnStrFor(m_db));
    DbConnection granty(ConnStrGranty());
    QString ask, error;
    BuildObjLJ out;
    const QString folder = GetZadankySave();
    QDir().mkpath(folder);
    const QString path = CerpaniPath(folder, grant);
    if (!TiskGrantTabl(out, conn, granty, path, grant, GetSetPrintSize(ask), &error)) {
        MsgBox(error.isEmpty() ? out.Error() : error, MsgCritical);
        return;
    }
    ViewHTML(path);
}

void frmArchObj::cmdLekarna_Click()
{
    m_role = m_role == 3 ? Session().UserTyp : 3;
    m_chosen.clear();
    applyRole();
    FilterObj();
}

void frmArchObj::cmdSaveHTML_Click()
{
    if (m_nom == 0 || m_role == 5)
        return;
    DbConnection conn(ConnStrFor(m_db));
    const QString text = QStringLiteral("F") + QString(Text6->text()).replace(QLatin1Char('/'), QLatin1Char('_')) + QStringLiteral(".txt");
    if (!conn.exec(QStringLiteral("UPDATE ArchObj SET `Text` = ?, `file_html_text` = ? WHERE nom=?"), {text, editor->html(), m_nom})) {
        MsgBox(failed(QStringLiteral("Text objednávky číslo %1 se nepodařilo uložit.").arg(Text6->text()), conn), MsgCritical);
        return;
    }
    editor->setLocked(true);
    SaveByRole();
}

void frmArchObj::pickDate(QLineEdit *target)
{
    const std::optional<QString> date = DatePicker(this, target->text());
    if (!date || *date == QLatin1String("00:00:00"))
        return;
    target->setText(*date);
    SaveByRole();
}

void frmArchObj::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_F3: cmdView_Click(); return;
    case Qt::Key_F8: cmdDelete_Click(); return;
    case Qt::Key_F5:
    case Qt::Key_F7: return;
    case Qt::Key_F10:
    case Qt::Key_Escape: putIntoTray(); return;
    default: QDialog::keyPressEvent(event);
    }
}

bool frmArchObj::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == MSFlexGrid2 && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Space) {
            toggleChosen();
            return true;
        }
        if (key->key() == Qt::Key_F3 || key->key() == Qt::Key_F8 || key->key() == Qt::Key_F10 || key->key() == Qt::Key_Escape) {
            keyPressEvent(key);
            return true;
        }
    }
    if (watched == MSFlexGrid2->viewport() && event->type() == QEvent::MouseMove) {
        // A hand over the handover column when the grid has rows.
        const int column = MSFlexGrid2->columnAt(static_cast<QMouseEvent *>(event)->position().toPoint().x());
        MSFlexGrid2->viewport()->setCursor(column == ColumnL && !m_keys.isEmpty() ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
    auto *dateBox = qobject_cast<QLineEdit *>(watched);
    if (dateBox && (dateBox == Text7 || dateBox == Text9)) {
        if (event->type() == QEvent::FocusIn && dateBox->text().isEmpty() && !m_keys.isEmpty() && !m_filling) {
            dateBox->setText(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
            dateBox->setModified(true);
        } else if (event->type() == QEvent::KeyPress) {
            const int k = static_cast<QKeyEvent *>(event)->key();
            if (k == Qt::Key_Backspace || k == Qt::Key_Space || k == Qt::Key_Delete) {
                dateBox->clear();
                dateBox->setModified(true);
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmArchObj::putIntoTray()
{
    // The program goes to the tray with its main window; its icon there brings it back.
    QWidget *main = parentWidget() ? parentWidget()->window() : this;
    main->showMinimized();
}

void frmArchObj::cmdSklad_Click(int i)
{
    if (m_nom == 0 || m_typ != KindSklad)
        return;
    const QString name = txtFields[nameBox(i)]->text().trimmed();
    const auto picked = SkladPicker(this, m_db, name);
    if (!picked)
        return;
    const QString &line = picked->second;
    const QString unit = GetField(line, 2, '~');
    txtFields[nameBox(i)]->setText(GetField(line, 0, '~'));
    if (GetField(line, 3, '~').trimmed() != QLatin1String("0,00"))
        txtFields[8 + i]->setText(GetField(line, 3, '~'));
    txtFields[35 + i]->setText(QStringLiteral("1 ") + unit);
    // The line's unit is kept in its whole text, from which the save takes it.
    txtData[i]->setText(txtFields[nameBox(i)]->text() + QLatin1Char('#') + txtFields[8 + i]->text() + QLatin1Char('#') + unit);
    txtLabel1[i]->setText(GetField(picked->first, 0, '~'));
    SaveByRole();
}

void frmArchObj::Combo1_Click(int index)
{
    if (m_filling || m_nom == 0 || index < 0 || m_role == 3 || m_role == 5)
        return;
    DbConnection sys(ConnStrSys());
    ObjVyrizuje person;
    if (!sys.isOpen() || !ReadVyrizuje(sys, Combo1->itemText(index), &person))
        return;
    DbConnection conn(ConnStrFor(m_db));
    if (conn.isOpen() && afterWrite(conn, SaveObjVyrizuje(conn, m_nom, person)))
        lblVyrizuje->setText(QStringList{person.telefon, person.linka}.join(QStringLiteral(", ")));
}

void ShowArchObj(QWidget *parent)
{
    auto *screen = new frmArchObj(parent);
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->Load();
    screen->show();
}
