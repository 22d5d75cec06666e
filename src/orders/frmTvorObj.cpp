#include "orders/frmTvorObj.h"

#include "core/config.h"
#include "core/db.h"
#include "core/frmKalendar.h"
#include "core/msg.h"
#include "core/number.h"
#include "core/routing.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objeditor.h"
#include "orders/objfooter.h"
#include "orders/objhtml.h"
#include "orders/objrecord.h"
#include "registers/frmFirmy.h"
#include "stock/frmCHEMIK.h"
#include "stock/frmTyp.h"

#include <QComboBox>
#include <QDate>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {
QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

QLineEdit *box(QWidget *parent, const QString &name)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

// Grid columns: name, quantity, unit, price for one.
enum { ColName, ColQty, ColUnit, ColPrice };
} // namespace

std::optional<std::pair<QString, QString>> PickStockLine(QWidget *parent, const QString &warehouse,
                                                         const QString &nameFilter, const QString &centreDb)
{
    frmCHEMIK chemik(parent);
    if (!centreDb.isEmpty())
        chemik.CentreDb = centreDb;
    chemik.OpenFile = warehouse;
    chemik.VyberObjedn = true;
    chemik.NazevFilter = nameFilter;
    if (!chemik.Load() || chemik.exec() != QDialog::Accepted || chemik.mLineInput.isEmpty())
        return std::nullopt;
    return std::pair{chemik.OpenFile, chemik.mLineInput};
}

frmTvorObj::frmTvorObj(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTvorObj"));
    setWindowTitle(QStringLiteral("Objednávka"));
    DatePicker = PickDate;
    FirmPicker = [](QWidget *parent) -> std::optional<QString> {
        frmFirmy firmy(parent);
        firmy.VyberSet = true;
        if (!firmy.Load() || firmy.exec() != QDialog::Accepted || firmy.CancelForm)
            return std::nullopt;
        return firmy.ObjednFirma;
    };
    WarehousePicker = [](QWidget *parent) -> std::optional<QString> {
        frmTyp typ(parent);
        typ.VyberPending = true;
        if (!typ.Load() || typ.exec() != QDialog::Accepted || typ.mOpenFile.isEmpty())
            return std::nullopt;
        return typ.mOpenFile;
    };
    StockPicker = [](QWidget *parent, const QString &warehouse) { return PickStockLine(parent, warehouse); };

    txtObjCislo = box(this, QStringLiteral("txtObjCislo"));
    txtObjCislo->setReadOnly(true);
    datDatum = box(this, QStringLiteral("datDatum"));
    txtStredisko = box(this, QStringLiteral("txtStredisko"));
    for (int i = 0; i < 7; ++i)
        txtField[i] = box(this, QStringLiteral("txtField%1").arg(i));
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    txtGrant = box(this, QStringLiteral("txtGrant"));
    Combo4 = new QComboBox(this);
    Combo4->setObjectName(QStringLiteral("Combo4"));
    Text3 = box(this, QStringLiteral("Text3"));
    txtPozn = box(this, QStringLiteral("txtPozn"));
    txtCena = box(this, QStringLiteral("txtCena"));
    cmdKalendar = button(this, "cmdKalendar", QStringLiteral("Kalendář"));
    cmdFirmy = button(this, "cmdFirmy", QStringLiteral("Kartotéka firem"));

    auto *head = new QGridLayout;
    int r = 0;
    auto row = [&](const char *caption, QWidget *a, QWidget *b = nullptr) {
        head->addWidget(new QLabel(QString::fromUtf8(caption), this), r, 0);
        head->addWidget(a, r, 1);
        if (b)
            head->addWidget(b, r, 2);
        ++r;
    };
    row("Objednávka číslo:", txtObjCislo);
    row("Dne:", datDatum, cmdKalendar);
    row("Středisko:", txtStredisko);
    row("Dodavátel:", txtField[0], cmdFirmy);
    row("Z katalogu:", txtField[1]);
    row("Adresa:", txtField[2]);
    row("PSČ, Město:", txtField[3], txtField[4]);
    row("Tel.:", txtField[5]);
    row("Fax:", txtField[6]);
    row("Číslo GRANTU", Combo1, txtGrant);
    row("Hrazeno z", Combo4, Text3);
    row("Poznámka", txtPozn);
    auto *cenaLabel = new QLabel(QStringLiteral("Předpokladaná cena s DPH, Kč:"), this);
    head->addWidget(cenaLabel, r, 0);
    head->addWidget(txtCena, r, 1);

    // Goods, kind 1.
    FrameGoods = new QFrame(this);
    FrameGoods->setObjectName(QStringLiteral("FrameGoods"));
    MSHFlexGrid1 = new QTableWidget(8, 4, FrameGoods);
    MSHFlexGrid1->setObjectName(QStringLiteral("MSHFlexGrid1"));
    MSHFlexGrid1->setHorizontalHeaderLabels({QStringLiteral("                                   Název materialu"),
                                             QStringLiteral(" Množství"), QStringLiteral(" Míra"), QStringLiteral(" Cena za 1")});
    MSHFlexGrid1->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    MSHFlexGrid1->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    for (int i = 0; i < 8; ++i)
        for (int c = 0; c < 4; ++c)
            MSHFlexGrid1->setItem(i, c, new QTableWidgetItem);
    Text1 = box(FrameGoods, QStringLiteral("Text1"));
    cmdAddRow = button(FrameGoods, "cmdAddRow", QStringLiteral("Výbrat"));
    cmdDel = button(FrameGoods, "cmdDel", QStringLiteral("Smazat řádek"));
    cmdSklady = button(FrameGoods, "cmdSklady", QStringLiteral("Sklady"));
    cmdSelect = button(FrameGoods, "cmdSelect", QStringLiteral("Zobrazit"));
    cmdRecalk = button(FrameGoods, "cmdRecalk", QStringLiteral("Přepočítat cenu"));
    Label13 = new QLabel(QStringLiteral("Atuální sklad"), FrameGoods);
    Label13->setObjectName(QStringLiteral("Label13"));
    auto *goods = new QVBoxLayout(FrameGoods);
    auto *goodsTools = new QHBoxLayout;
    goodsTools->addWidget(new QLabel(QStringLiteral("Množství (číslo):"), FrameGoods));
    goodsTools->addWidget(Text1);
    for (QWidget *w : {static_cast<QWidget *>(cmdAddRow), static_cast<QWidget *>(cmdDel), static_cast<QWidget *>(cmdRecalk),
                       static_cast<QWidget *>(cmdSklady), static_cast<QWidget *>(cmdSelect), static_cast<QWidget *>(Label13)})
        goodsTools->addWidget(w);
    goods->addLayout(goodsTools);
    goods->addWidget(MSHFlexGrid1);

    // Formatted text, kind 2; plain text, kind 5.
    editor = new ObjTextEditor(this);
    Frame5 = new QFrame(this);
    Frame5->setObjectName(QStringLiteral("Frame5"));
    Text2 = new QPlainTextEdit(Frame5);
    Text2->setObjectName(QStringLiteral("Text2"));
    auto *plain = new QVBoxLayout(Frame5);
    plain->addWidget(new QLabel(QStringLiteral("Objednávám zboží:"), Frame5));
    plain->addWidget(Text2);
    plain->addWidget(new QLabel(QStringLiteral("*  Pro vložení kódu \"Enter\" (nový řádek) - použijte kombinace kláves \"Shift\"+\"Enter\"  nebo  \"Ctrl\" + \"Enter\""), Frame5));

    cmdSave = button(this, "cmdSave", QStringLiteral("&Uložit"));
    cmdView = button(this, "cmdView", QStringLiteral("Zobrazit"));
    cmdClose = button(this, "cmdClose", QStringLiteral("Zavřít"));
    cmdPageSetup = button(this, "cmdPageSetup", QStringLiteral("Page setup"));
    cmdSetup = button(this, "cmdSetup", QStringLiteral("Nastavení programu"));
    auto *commands = new QHBoxLayout;
    for (QPushButton *b : {cmdSave, cmdView, cmdPageSetup, cmdSetup})
        commands->addWidget(b);
    commands->addStretch();
    commands->addWidget(cmdClose);

    auto *main = new QVBoxLayout(this);
    main->addLayout(head);
    main->addWidget(FrameGoods, 1);
    main->addWidget(editor, 1);
    main->addWidget(Frame5, 1);
    main->addLayout(commands);
    resize(900, 760);

    auto save = [this] {
        if (!m_loading)
            SaveObj();
    };
    connect(cmdSave, &QPushButton::clicked, this, &frmTvorObj::cmdSave_Click);
    connect(cmdView, &QPushButton::clicked, this, &frmTvorObj::cmdView_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdAddRow, &QPushButton::clicked, this, &frmTvorObj::addRow);
    connect(cmdDel, &QPushButton::clicked, this, &frmTvorObj::deleteRow);
    connect(cmdRecalk, &QPushButton::clicked, this, [this, save] {
        recalk();
        save();
    });
    connect(cmdSelect, &QPushButton::clicked, this, &frmTvorObj::pickStock);
    connect(cmdSklady, &QPushButton::clicked, this, &frmTvorObj::pickWarehouse);
    connect(MSHFlexGrid1, &QTableWidget::cellDoubleClicked, this, &frmTvorObj::pickStock);
    // Typed goods cells count like picked ones.
    connect(MSHFlexGrid1, &QTableWidget::cellChanged, this, [this, save] {
        if (m_loading)
            return;
        recalk();
        save();
    });
    connect(cmdFirmy, &QPushButton::clicked, this, &frmTvorObj::pickFirm);
    connect(cmdKalendar, &QPushButton::clicked, this, [this, save] {
        const std::optional<QString> date = DatePicker(this, datDatum->text());
        if (date && *date != QLatin1String("00:00:00")) {
            datDatum->setText(*date);
            save();
        }
    });
    connect(cmdPageSetup, &QPushButton::clicked, this, [this] { RunCommand(QStringLiteral("cmdPageSetup"), this); });
    connect(cmdSetup, &QPushButton::clicked, this, [this] { RunCommand(QStringLiteral("mnuSysItem"), parentWidget()); });
    connect(Combo1, &QComboBox::activated, this, [this, save](int index) {
        if (index < 0)
            return;
        const QString grant = Combo1->itemText(index);
        txtGrant->setText(txtGrant->text().isEmpty() ? grant : txtGrant->text() + QStringLiteral(", ") + grant);
        save();
    });
    connect(Combo4, &QComboBox::activated, this, [this, save](int index) {
        Text3->setText(Combo4->itemText(index));
        save();
    });
    connect(txtCena, &QLineEdit::editingFinished, this, [this, save] {
        if (!txtCena->isModified())
            return;
        txtCena->setModified(false);
        txtCena->setText(FormatAmount(txtCena->text()));
        save();
    });
    connect(datDatum, &QLineEdit::editingFinished, this, &frmTvorObj::dateLeft);
    for (QLineEdit *e : {Text3, txtGrant})
        connect(e, &QLineEdit::editingFinished, this, [e, save] {
            if (e->isModified()) {
                e->setModified(false);
                save();
            }
        });
    connect(editor, &ObjTextEditor::left, this, save);
    Text2->installEventFilter(this);
}

bool frmTvorObj::Open()
{
    m_loading = true;
    const bool goods = TypObjedn == KindSklad;
    FrameGoods->setVisible(goods);
    txtCena->setVisible(goods);
    editor->setVisible(TypObjedn == KindText);
    Frame5->setVisible(TypObjedn == KindSluzby);
    cmdView->setEnabled(false);

    Combo1->addItems(UserGrantList(Session().UserFiltrGrant));
    Combo1->setCurrentIndex(-1);
    DbConnection sys(ConnStrSys());
    if (sys.isOpen()) {
        QSqlQuery q = sys.query();
        if (sys.exec(q, QStringLiteral("SELECT Typ FROM sys_hrazeno ORDER BY id")))
            while (q.next())
                Combo4->addItem(q.value(0).toString());
        txtStredisko->setText(ObjCentreCode(sys, Session().MysqlDb));
    }
    Combo4->setCurrentIndex(-1);

    DbConnection centre(ConnStrFor(Session().MysqlDb));
    short counter = 1;
    if (!centre.isOpen() || !NextObjCounter(centre, &counter)) {
        MsgBox(centre.isOpen() ? centre.errorText() : centre.errorText(), MsgCritical);
        m_loading = false;
        return false;
    }
    txtObjCislo->setText(MakeObjCislo(counter));
    datDatum->setText(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
    // The number is taken now; a screen closed without saving leaves it in the archive.
    if (!ReserveObj(centre, txtObjCislo->text())) {
        MsgBox(centre.errorText(), MsgCritical);
        m_loading = false;
        return false;
    }
    m_loading = false;
    return true;
}

QString frmTvorObj::Number() const { return txtObjCislo->text(); }

ObjEntry frmTvorObj::entry() const
{
    ObjEntry e;
    const SessionRecord &s = Session();
    e.cisObj = txtObjCislo->text();
    e.typ = TypObjedn;
    e.datum = datDatum->text();
    e.stredisko = txtStredisko->text();
    for (int i = 0; i < 7; ++i)
        e.firm[i] = txtField[i]->text();
    e.grant = txtGrant->text();
    e.hrazeno = Text3->text();
    e.pozn = txtPozn->text();
    e.cena = txtCena->text();
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 4; ++c)
            e.rows[r][c] = MSHFlexGrid1->item(r, c)->text();
    e.body = TypObjedn == KindText ? editor->html() : Text2->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    e.vyrizuje = s.UserJmeno + QLatin1Char(' ') + s.UserPrijmeni;
    e.telefon = GetTelefon();
    e.linka = GetLinka();
    return e;
}

bool frmTvorObj::SaveObj()
{
    DbConnection sys(ConnStrSys());
    DbConnection centre(ConnStrFor(Session().MysqlDb));
    if (!sys.isOpen() || !centre.isOpen()) {
        MsgBox(sys.isOpen() ? centre.errorText() : sys.errorText(), MsgCritical);
        return false;
    }
    switch (::SaveObj(centre, entry(), CurrentFooterChoice(sys, Session().UserLogin))) {
    case ObjWrite::Saved:
        cmdView->setEnabled(true);
        return true;
    case ObjWrite::Missing:
        MsgBox(QStringLiteral("Objednávka číslo %1 už v databázi není, mezitím ji někdo smazal. Nic nebylo uloženo.")
                   .arg(txtObjCislo->text()),
               MsgWarning);
        return false;
    case ObjWrite::Failed:
        break;
    }
    MsgBox(centre.errorText(), MsgCritical);
    return false;
}

void frmTvorObj::recalk()
{
    std::array<std::array<QString, 4>, 8> rows;
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 4; ++c)
            rows[r][c] = MSHFlexGrid1->item(r, c)->text();
    txtCena->setText(RecalkObj(rows));
}

void frmTvorObj::addRow()
{
    const int r = MSHFlexGrid1->currentRow();
    const QString qty = Text1->text().trimmed();
    // A quantity is taken only when its whole number is not zero.
    if (r >= 0 && std::trunc(ScanNumber(QString(qty).replace(QLatin1Char(','), QLatin1Char('.')))) != 0) {
        m_loading = true;
        MSHFlexGrid1->item(r, ColQty)->setText(qty);
        m_loading = false;
    }
    recalk();
    SaveObj();
    Text1->setFocus();
}

void frmTvorObj::deleteRow()
{
    const int r = MSHFlexGrid1->currentRow();
    if (r < 0)
        return;
    m_loading = true;
    for (int c = 0; c < 4; ++c)
        MSHFlexGrid1->item(r, c)->setText(QString());
    m_loading = false;
    recalk();
    SaveObj();
}

void frmTvorObj::pickWarehouse()
{
    const std::optional<QString> warehouse = WarehousePicker(this);
    if (!warehouse)
        return;
    m_warehouse = *warehouse;
    Label13->setText(GetField(m_warehouse, 0, '~'));
}

void frmTvorObj::pickStock()
{
    if (m_warehouse.isEmpty()) {
        MsgBox(QStringLiteral("Není zvolen aktuální sklad!"));
        return;
    }
    int used = 0;
    for (int r = 0; r < 8; ++r)
        used += !MSHFlexGrid1->item(r, ColName)->text().trimmed().isEmpty();
    if (used >= 8)
        return;   // no ninth row
    const auto picked = StockPicker(this, m_warehouse);
    if (!picked)
        return;
    m_warehouse = picked->first;
    Label13->setText(GetField(m_warehouse, 0, '~'));
    int r = MSHFlexGrid1->currentRow();
    if (r < 0 || !MSHFlexGrid1->item(r, ColName)->text().trimmed().isEmpty())
        for (r = 0; r < 8 && !MSHFlexGrid1->item(r, ColName)->text().trimmed().isEmpty(); ++r) {
        }
    m_loading = true;
    MSHFlexGrid1->item(r, ColName)->setText(GetField(picked->second, 0, '~'));
    MSHFlexGrid1->item(r, ColUnit)->setText(GetField(picked->second, 2, '~'));
    MSHFlexGrid1->item(r, ColPrice)->setText(GetField(picked->second, 3, '~'));
    m_loading = false;
    MSHFlexGrid1->setCurrentCell(r, ColQty);
    recalk();
    SaveObj();
    Text1->setFocus();
}

void frmTvorObj::pickFirm()
{
    const std::optional<QString> firm = FirmPicker(this);
    if (!firm)
        return;
    m_loading = true;
    for (int i = 0; i < 7; ++i)
        txtField[i]->setText(GetField(*firm, short(i)));
    m_loading = false;
    SaveObj();
}

void frmTvorObj::dateLeft()
{
    if (m_loading || !datDatum->isModified())
        return;
    datDatum->setModified(false);
    if (!IsDateText(datDatum->text())) {
        MsgBox(QStringLiteral("Špatný formát datumu."));
        datDatum->setFocus();
        return;
    }
    datDatum->setText(DateTwoDigits(datDatum->text().trimmed()));
    SaveObj();
}

void frmTvorObj::cmdSave_Click()
{
    const bool incomplete = (txtField[0]->text().trimmed().isEmpty() || txtGrant->text().trimmed().isEmpty())
                            && TypObjedn != KindSluzby;
    QString title = QStringLiteral("Informace");
    if (Confirmed(MsgBoxPos(incomplete ? QStringLiteral("Objednávka není kompletní. Chcete uložit objednávku?")
                                       : QStringLiteral("Opravdu si přejete uložit objednávku?"),
                            MsgQuestionOkCancel, title)))
        SaveObj();
}

void frmTvorObj::cmdView_Click()
{
    ViewObjForm(Session().MysqlDb, txtObjCislo->text());
}

bool frmTvorObj::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Text2 && event->type() == QEvent::FocusOut && !m_loading)
        SaveObj();
    return QDialog::eventFilter(watched, event);
}

void ShowTvorObj(QWidget *parent, short typObjedn)
{
    auto *screen = new frmTvorObj(parent);
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->TypObjedn = typObjedn;
    if (!screen->Open()) {
        delete screen;
        return;
    }
    screen->show();
}
