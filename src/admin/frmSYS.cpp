#include "admin/frmSYS.h"

#include "admin/frmSysPageSetup.h"
#include "core/config.h"
#include "core/db.h"
#include "core/frmLoginUser.h"
#include "core/frmSeznamUs.h"
#include "core/frmSeznamUz.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/users.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const char *const TextDigitsOnly = "Do tohoto pole lze zadat pouze číslice.";

template <typename T>
T *named(T *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

QPushButton *command(QWidget *screen, const char *name, const QString &caption)
{
    return named(new QPushButton(caption, screen), QLatin1String(name));
}

QComboBox *editableCombo(QWidget *screen, const char *name)
{
    auto *c = named(new QComboBox(screen), QLatin1String(name));
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    return c;
}

// The system database for one command; a refused statement is said and gives false.
bool onSys(const std::function<bool(DbConnection &)> &work)
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return false;
    if (work(sys))
        return true;
    MsgBox(sys.errorText(), MsgCritical);
    return false;
}

bool ask(const QString &question)
{
    return Confirmed(MsgBox(question, MsgQuestionOkCancel, QStringLiteral("Informace")));
}
} // namespace

frmSYS::frmSYS(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSYS"));
    setWindowTitle(QStringLiteral("Nastavení programu"));
    resize(940, 640);

    ChooseFile = [](QWidget *owner, const QStringList &filters, const QString &defaultName) {
        QStringList forDialog;
        for (QString f : filters)   // the dialog reads patterns apart by blanks
            forDialog << f.replace(QLatin1Char(';'), QLatin1Char(' ')).replace(QLatin1String(" )"), QLatin1String(")"));
        return QFileDialog::getOpenFileName(owner, QString(), defaultName, forDialog.join(QLatin1String(";;")));
    };
    OpenScreen = [](QDialog *screen) { screen->exec(); };

    // The text fields: 0 folder of the order pages, 1 administrator of the workstation,
    // 2 form type, 3 telephone, 4 extension, 5 accounts the revision leaves out,
    // 6 e-mail, 7 English telephone, 8 footer type of the orders.
    static const char *const fieldCaptions[FieldCount] = {
        "Složka objednávek:", "Správce programu:", "Typ formuláře:", "Telefon:", "Linka:",
        "Nekontrolované účty:", "E-mail:", "Telefon (anglický formulář):", "Patička objednávky (0 až 3):"};
    QLabel *fieldLabels[FieldCount];
    for (int i = 0; i < FieldCount; ++i) {
        txtFields[i] = named(new QLineEdit(this), QStringLiteral("txtFields%1").arg(i));
        fieldLabels[i] = new QLabel(QString::fromUtf8(fieldCaptions[i]), this);
    }
    static const char *const printCaptions[4] = {
        "Velikost fontu tiskové sestavy                                                            (1,2,3,4,..)",
        "Počet všech řádku v textovém bloku objednávky",
        "Posunout rámeček s adresou pro obálku vertikálně na              řádku dolu",
        "Posinout texty blok objednávky vlevo na                                          znaků"};
    for (int i = 0; i < 4; ++i)
        txtPrint[i] = named(new QLineEdit(this), QStringLiteral("txtPrint%1").arg(i));
    // The workstation: its name and configuration file are shown only, the server is edited.
    txtPocitac = named(new QLineEdit(ComputerName(), this), QStringLiteral("txtPocitac"));
    txtIniPath = named(new QLineEdit(QDir::toNativeSeparators(IniFilePath()), this), QStringLiteral("txtIniPath"));
    for (QLineEdit *shown : {txtPocitac, txtIniPath})
        shown->setReadOnly(true);
    txtServerIP = named(new QLineEdit(this), QStringLiteral("txtServerIP"));
    txtServerIP->setMaxLength(19);
    txtServerPort = named(new QLineEdit(this), QStringLiteral("txtServerPort"));
    Check1 = named(new QCheckBox(QStringLiteral("Zobrazit menu v okně prohlížeče IE "), this), QStringLiteral("Check1"));
    Combo2 = named(new QComboBox(this), QStringLiteral("Combo2"));
    txtFiltr = named(new QLineEdit(this), QStringLiteral("txtFiltr"));
    connect(Combo2, &QComboBox::activated, this, [this](int index) {
        if (index >= 0)
            txtFiltr->setText(FilterAfterPick(txtFiltr->text(), Combo2->itemText(index)));
    });
    txtFiltr->installEventFilter(this);

    cmbVyrizuje = editableCombo(this, "cmbVyrizuje");
    cmbPrikObj = editableCombo(this, "cmbPrikObj");
    cmbSpravObj = editableCombo(this, "cmbSpravObj");
    connect(cmbVyrizuje, &QComboBox::textActivated, this, &frmSYS::personChosen);
    connect(cmbVyrizuje->lineEdit(), &QLineEdit::textEdited, this, &frmSYS::personChosen);

    QLineEdit **institution[] = {&txtFirma, &txtAdresa, &txtPSC, &txtMesto, &txtICO, &txtDIC,
                                 &txtUcet, &txtBanka, &txtUcet2, &txtNewdate};
    static const char *const institutionNames[] = {"txtFirma", "txtAdresa", "txtPSC", "txtMesto", "txtICO",
                                                   "txtDIC", "txtUcet", "txtBanka", "txtUcet2", "txtNewdate"};
    for (int i = 0; i < 10; ++i)
        *institution[i] = named(new QLineEdit(this), QLatin1String(institutionNames[i]));

    // Number boxes: digits and Backspace only.
    for (QLineEdit *box : {txtPrint[0], txtPrint[1], txtPrint[2], txtPrint[3], txtFields[8], txtNewdate, txtServerPort}) {
        box->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), box));
        box->setProperty("digitsOnly", true);
        box->installEventFilter(this);
    }

    MSFlexGrid2 = named(new QTableWidget(0, 4, this), QStringLiteral("MSFlexGrid2"));
    MSFlexGrid2->setHorizontalHeaderLabels({QStringLiteral("    Kód "), QStringLiteral("   Název střediska"),
                                            QStringLiteral(" MySQL DB"), QStringLiteral(" IP PC")});
    MSFlexGrid2->setSelectionBehavior(QAbstractItemView::SelectRows);
    MSFlexGrid2->setSelectionMode(QAbstractItemView::SingleSelection);
    MSFlexGrid2->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid2->verticalHeader()->hide();
    MSFlexGrid2->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    connect(MSFlexGrid2, &QTableWidget::currentCellChanged, this, &frmSYS::showCentre);
    txtKodStred = named(new QLineEdit(this), QStringLiteral("txtKodStred"));
    txtStredisko = named(new QLineEdit(this), QStringLiteral("txtStredisko"));
    txtDBStred = named(new QLineEdit(this), QStringLiteral("txtDBStred"));
    txtIPstred = named(new QLineEdit(this), QStringLiteral("txtIPstred"));
    txtIPDB = named(new QLineEdit(this), QStringLiteral("txtIPDB"));
    chkLekarna = named(new QCheckBox(QStringLiteral("Lékárna (v objednávkách se jako středisko nenabízí)"), this),
                       QStringLiteral("chkLekarna"));

    cmdUsers = command(this, "cmdUsers", QStringLiteral("Editace uživatele"));
    cmdGrant = command(this, "cmdGrant", QStringLiteral("Řešitelé GRANTů"));
    cmdPrik = command(this, "cmdPrik", QStringLiteral("Příkazci objednávek"));
    cmdSprav = command(this, "cmdSprav", QStringLiteral("Správci objednávek"));
    cmdSeznam = command(this, "cmdSeznam", QStringLiteral("Objednávající osoby"));
    cmdPageSetup = command(this, "cmdPageSetup", QStringLiteral("Page setup"));
    Command1 = command(this, "Command1", QStringLiteral("Cesta ke staré databázi..."));
    cmdAdd = command(this, "cmdAdd", QStringLiteral("Přidat záznam"));
    cmdDelete = command(this, "cmdDelete", QStringLiteral("Smazat záznam"));
    cmdSaveStred = command(this, "cmdSaveStred", QStringLiteral("Uložit středisko"));
    cmdOk = command(this, "cmdOk", QStringLiteral("OK"));
    cmdClose = command(this, "cmdClose", QStringLiteral("Zavřít"));
    connect(cmdUsers, &QPushButton::clicked, this, &frmSYS::cmdUsers_Click);
    connect(cmdGrant, &QPushButton::clicked, this, [this] {
        cmdList_Click(QStringLiteral("SYS_PRAVA"), QStringLiteral("Seznam řešitelé GRANTu"), QString(), nullptr);
    });
    connect(cmdPrik, &QPushButton::clicked, this, [this] {
        cmdList_Click(QStringLiteral("sys_prikazce"), QStringLiteral("Seznam přikazce objednávek"),
                      QStringLiteral("Jmeno"), cmbPrikObj);
    });
    connect(cmdSprav, &QPushButton::clicked, this, [this] {
        cmdList_Click(QStringLiteral("sys_spravcerozp"), QStringLiteral("Seznam správce objednávek"),
                      QStringLiteral("Jmeno"), nullptr);
    });
    connect(cmdSeznam, &QPushButton::clicked, this, &frmSYS::cmdSeznam_Click);
    connect(cmdPageSetup, &QPushButton::clicked, this, &frmSYS::cmdPageSetup_Click);
    connect(Command1, &QPushButton::clicked, this, &frmSYS::Command1_Click);
    connect(cmdAdd, &QPushButton::clicked, this, &frmSYS::cmdAdd_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmSYS::cmdDelete_Click);
    connect(cmdSaveStred, &QPushButton::clicked, this, &frmSYS::cmdSaveStred_Click);
    connect(cmdOk, &QPushButton::clicked, this, &frmSYS::cmdOk_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);

    static const char *const slotCaptions[FooterSlotCount + 1] = {
        "", "Patička 1:", "Patička 2:", "Patička 3:", "Patička 4 (text k obrázku):", "Patička s obrázkem:",
        "Logo (PDF formulář):"};
    cmdFile[0] = nullptr;
    lblFile[0] = nullptr;
    for (int slot = 1; slot <= FooterSlotCount; ++slot) {
        cmdFile[slot] = command(this, "", QStringLiteral("Vybrat soubor..."));
        cmdFile[slot]->setObjectName(QStringLiteral("cmdFile%1").arg(slot));
        lblFile[slot] = named(new QLabel(this), QStringLiteral("lblFile%1").arg(slot));
        connect(cmdFile[slot], &QPushButton::clicked, this, [this, slot] { cmdFile_Click(slot); });
    }
    Image1 = named(new QLabel(this), QStringLiteral("Image1"));
    Image2 = named(new QLabel(this), QStringLiteral("Image2"));
    for (QLabel *image : {Image1, Image2}) {
        image->setFixedSize(260, 120);
        image->setFrameShape(QFrame::StyledPanel);
        image->setAlignment(Qt::AlignCenter);
    }
    Timer1 = named(new QTimer(this), QStringLiteral("Timer1"));
    Timer1->setSingleShot(true);
    connect(Timer1, &QTimer::timeout, this, [this] { showPicture(PictureSlot, QStringLiteral("typ4_tmp.bmp"), Image1); });
    // Closed before the picture came (OK at once): a new server address may already stand in the file.
    connect(this, &QDialog::finished, Timer1, &QTimer::stop);

    // --- layout: one tab per kind of setting
    auto *tabs = new QTabWidget(this);
    const auto page = [tabs](const QString &title) {
        auto *w = new QWidget;
        tabs->addTab(w, title);
        return w;
    };

    auto *general = new QFormLayout(page(QStringLiteral("Pracoviště")));
    general->addRow(QStringLiteral("Název počítače:"), txtPocitac);
    general->addRow(QStringLiteral("Konfigurační soubor:"), txtIniPath);
    auto *serverBox = new QWidget;
    auto *server = new QHBoxLayout(serverBox);
    server->setContentsMargins(0, 0, 0, 0);
    server->addWidget(txtServerIP, 3);
    server->addWidget(new QLabel(QStringLiteral("Port:")));
    server->addWidget(txtServerPort, 1);
    auto *serverLabel = new QLabel(QStringLiteral("Adresa serveru MySQL:"));
    general->addRow(serverLabel, serverBox);
    for (int i : {0, 1, 2, 5, 8})
        general->addRow(fieldLabels[i], txtFields[i]);
    for (int i = 0; i < 4; ++i) {
        auto *caption = new QLabel(QString::fromUtf8(printCaptions[i]));
        caption->setWordWrap(true);
        general->addRow(caption, txtPrint[i]);
    }
    general->addRow(Check1);
    auto *filter = new QHBoxLayout;
    filter->addWidget(txtFiltr, 1);
    filter->addWidget(Combo2);
    general->addRow(QStringLiteral("Filtr GRANTu:"), filter);

    auto *orders = new QFormLayout(page(QStringLiteral("Objednávky")));
    orders->addRow(QStringLiteral("Vyřizuje:"), cmbVyrizuje);
    for (int i : {3, 4, 6, 7})
        orders->addRow(fieldLabels[i], txtFields[i]);
    orders->addRow(QStringLiteral("Příkazce:"), cmbPrikObj);
    orders->addRow(QStringLiteral("Správce rozpočtu:"), cmbSpravObj);
    auto *lists = new QHBoxLayout;
    for (QPushButton *b : {cmdUsers, cmdGrant, cmdPrik, cmdSprav, cmdSeznam})
        lists->addWidget(b);
    orders->addRow(lists);

    auto *inst = new QFormLayout(page(QStringLiteral("Instituce")));
    for (int i = 0; i < 10; ++i)
        inst->addRow(InstitutionCaptions()[i] + QLatin1Char(':'), *institution[i]);

    auto *centres = new QVBoxLayout(page(QStringLiteral("Střediska")));
    centres->addWidget(MSFlexGrid2, 1);
    auto *centreFields = new QFormLayout;
    centreFields->addRow(QStringLiteral("Kód:"), txtKodStred);
    centreFields->addRow(QStringLiteral("Název střediska:"), txtStredisko);
    centreFields->addRow(QStringLiteral("MySQL DB:"), txtDBStred);
    centreFields->addRow(QStringLiteral("IP PC:"), txtIPstred);
    centreFields->addRow(QStringLiteral("IP serveru:"), txtIPDB);
    centreFields->addRow(chkLekarna);
    centres->addLayout(centreFields);
    auto *centreButtons = new QHBoxLayout;
    for (QPushButton *b : {cmdAdd, cmdSaveStred, cmdDelete})
        centreButtons->addWidget(b);
    centreButtons->addStretch();
    centreButtons->addWidget(Command1);
    centres->addLayout(centreButtons);

    auto *footers = new QGridLayout(page(QStringLiteral("Patičky a logo")));
    for (int slot = 1; slot <= FooterSlotCount; ++slot) {
        footers->addWidget(new QLabel(QString::fromUtf8(slotCaptions[slot])), slot - 1, 0);
        footers->addWidget(lblFile[slot], slot - 1, 1);
        footers->addWidget(cmdFile[slot], slot - 1, 2);
    }
    footers->addWidget(Image1, FooterSlotCount, 1);
    footers->addWidget(Image2, FooterSlotCount, 2);
    footers->setColumnStretch(1, 1);
    footers->setRowStretch(FooterSlotCount + 1, 1);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPageSetup);
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabs, 1);
    layout->addLayout(buttons);

    // What a role sees: the accounts of the revision are the administrator's; an order
    // creator keeps only the three fields of the signature line.
    const short typ = Session().UserTyp;
    if (typ != 2) {
        fieldLabels[5]->hide();
        txtFields[5]->hide();
        Combo2->setEnabled(false);
        txtFiltr->setEnabled(false);
    }
    if (typ == 4) {
        for (int i : {0, 1, 2, 7, 8}) {
            fieldLabels[i]->hide();
            txtFields[i]->hide();
        }
        serverLabel->hide();
        serverBox->hide();
    }
}

bool frmSYS::Load()
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return false;
    const WorkstationSettings s = ReadWorkstationSettings();
    m_serverIp = s.serverIp;
    m_serverPort = s.serverPort;
    txtServerIP->setText(s.serverIp);
    txtServerPort->setText(s.serverPort);
    const QString fieldValues[FieldCount] = {s.zadankySave, s.spravceName, s.typFormulara, s.telefon, s.linka,
                                             s.uctyNotControl, s.email, s.telefonEng, s.selectTypBottom};
    for (int i = 0; i < FieldCount; ++i)
        txtFields[i]->setText(fieldValues[i]);
    const QString printValues[4] = {s.printSize, s.printRows, s.printTop, s.printMargin};
    for (int i = 0; i < 4; ++i)
        txtPrint[i]->setText(printValues[i]);
    Check1->setChecked(s.toolBar == QLatin1String("1"));

    Combo2->clear();
    Combo2->addItems(GrantNumbers());
    Combo2->setCurrentIndex(-1);
    txtFiltr->setText(Session().UserFiltrGrant);

    fillPersons(s.vyrizuje);
    fillNames(cmbPrikObj, QStringLiteral("sys_prikazce"), s.prikObj);
    fillNames(cmbSpravObj, QStringLiteral("sys_spravcerozp"), s.spravObj);

    if (!ReadInstitutionFields(sys, &m_institution)) {
        MsgBox(sys.errorText(), MsgCritical);
        return false;
    }
    const InstitutionFields &f = m_institution;
    const QString institutionValues[] = {f.firma, f.adresa, f.psc, f.mesto, f.ico, f.dic, f.ucet, f.banka, f.ucet2,
                                         f.newdateUcet};
    QLineEdit *const institutionBoxes[] = {txtFirma, txtAdresa, txtPSC, txtMesto, txtICO, txtDIC,
                                           txtUcet, txtBanka, txtUcet2, txtNewdate};
    for (int i = 0; i < 10; ++i)
        institutionBoxes[i]->setText(institutionValues[i]);

    fillCentres(0);
    showFooters();
    showPicture(LogoSlot, QStringLiteral("logo_kvl_tmp.bmp"), Image2);
    Timer1->start(0);
    return true;
}

bool frmSYS::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (watched == txtFiltr && key->key() == Qt::Key_Backspace) {
            txtFiltr->setText(FilterAfterBackspace(txtFiltr->text()));
            return true;
        }
        // Backspace (8) and other control keys pass; a printable key must be a digit.
        const QString text = key->text();
        if (watched->property("digitsOnly").toBool() && !text.isEmpty() && text.at(0) >= QLatin1Char(' ')
            && !IsDigitsOnly(text)) {
            MsgBox(QString::fromUtf8(TextDigitsOnly), MsgWarning);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmSYS::fillPersons(const QString &current)
{
    QVector<OrderingPerson> persons;
    if (!onSys([&](DbConnection &sys) { return ReadOrderingPersons(sys, &persons); }))
        return;
    m_persons = persons;
    cmbVyrizuje->clear();
    for (const OrderingPerson &p : persons)
        cmbVyrizuje->addItem(p.vyrizuje);
    cmbVyrizuje->setEditText(current);
}

void frmSYS::personChosen(const QString &text)
{
    const int i = FindOrderingPerson(m_persons, text);
    if (i < 0)
        return;
    txtFields[3]->setText(m_persons[i].telefon);
    txtFields[4]->setText(m_persons[i].linka);
    txtFields[6]->setText(m_persons[i].email);
}

void frmSYS::fillNames(QComboBox *combo, const QString &table, const QString &current)
{
    QStringList names;
    if (!onSys([&](DbConnection &sys) { return ReadNames(sys, table, &names); }))
        return;
    combo->clear();
    combo->addItems(names);
    combo->setEditText(current);
}

void frmSYS::fillCentres(int selectId)
{
    QVector<CentreRow> rows;
    if (!onSys([&](DbConnection &sys) { return ReadCentres(sys, Session().MysqlDb, Session().IpServer, &rows); }))
        return;
    m_centres = rows;
    const QSignalBlocker block(MSFlexGrid2);
    MSFlexGrid2->setRowCount(int(rows.size()));
    int select = rows.isEmpty() ? -1 : 0;
    for (int i = 0; i < rows.size(); ++i) {
        const QStringList cells{rows[i].code, rows[i].name, rows[i].database, rows[i].ipPc};
        for (int c = 0; c < cells.size(); ++c)
            MSFlexGrid2->setItem(i, c, new QTableWidgetItem(cells[c]));
        if (rows[i].id == selectId)
            select = i;
    }
    MSFlexGrid2->setCurrentCell(select, 0);
    showCentre();
}

void frmSYS::showCentre()
{
    const int row = MSFlexGrid2->currentRow();
    const CentreRow r = row >= 0 && row < m_centres.size() ? m_centres[row] : CentreRow();
    txtKodStred->setText(r.code);
    txtStredisko->setText(r.name);
    txtDBStred->setText(r.database);
    txtIPstred->setText(r.ipPc);
    txtIPDB->setText(r.ipServer);
    chkLekarna->setChecked(r.lekarna);
    cmdDelete->setEnabled(r.id > 0);
    cmdSaveStred->setEnabled(r.id > 0);
}

CentreRow frmSYS::centreFromFields() const
{
    const int row = MSFlexGrid2->currentRow();
    CentreRow r;
    r.id = row >= 0 && row < m_centres.size() ? m_centres[row].id : 0;
    r.code = txtKodStred->text();
    r.name = txtStredisko->text();
    r.database = txtDBStred->text();
    r.ipPc = txtIPstred->text();
    r.ipServer = txtIPDB->text();
    r.lekarna = chkLekarna->isChecked();
    return r;
}

void frmSYS::showFooters()
{
    onSys([&](DbConnection &sys) {
        for (int slot = 1; slot <= FooterSlotCount; ++slot) {
            const QString stored = StoredFooterDescription(sys, slot, Session().UserLogin);
            lblFile[slot]->setText(stored.isEmpty() ? QStringLiteral("(neuloženo)") : stored);
        }
        return true;
    });
}

void frmSYS::showPicture(int slot, const QString &fileName, QLabel *image)
{
    const QString path = QDir(Session().TempDir).filePath(fileName);
    QFile::remove(path);
    bool written = false;
    onSys([&](DbConnection &sys) {
        QDir().mkpath(Session().TempDir);
        written = WriteStoredPicture(sys, slot, Session().UserLogin, path);
        return true;
    });
    // The file keeps the old ".bmp" name whatever the picture is: read by content.
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QImage picture = written ? reader.read() : QImage();
    if (picture.isNull()) {
        image->setPixmap(QPixmap());
        image->setText(QStringLiteral("(bez obrázku)"));
        return;
    }
    image->setPixmap(QPixmap::fromImage(picture.scaled(image->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

QLineEdit *frmSYS::badDigitBox() const
{
    for (QLineEdit *box : findChildren<QLineEdit *>())
        if (box->property("digitsOnly").toBool() && !IsDigitsOnly(box->text().trimmed()))
            return box;
    return nullptr;
}

bool frmSYS::serverAddressAccepted()
{
    const QString ip = txtServerIP->text().trimmed(), port = txtServerPort->text().trimmed();
    if (ip == m_serverIp && port == m_serverPort)
        return true;
    const QString problem = ServerAddressProblem(ip, port);
    if (!problem.isEmpty()) {
        MsgBox(problem, MsgWarning);
        txtServerIP->setFocus();
        return false;
    }
    // A wrong address would end the program at its next start: say so before it is written.
    QString error;
    return ServerAnswers(ip, port, &error)
        || ask(QStringLiteral("Server %1, port %2 neodpovídá: %3\nPo uložení se program k databázi nepřipojí. "
                              "Přesto adresu uložit?")
                   .arg(ip, port, error));
}

void frmSYS::cmdUsers_Click()
{
    frmLoginUser users(this);
    OpenScreen(&users);
}

void frmSYS::cmdList_Click(const QString &table, const QString &title, const QString &key, QComboBox *reload)
{
    frmSeznamUs list(this);
    list.Tabulka = table;
    list.Titulek = title;
    list.Klic = key;
    OpenScreen(&list);
    if (reload)
        fillNames(reload, table, reload->currentText());
}

void frmSYS::cmdSeznam_Click()
{
    frmSeznamUz list(this);
    OpenScreen(&list);
    fillPersons(cmbVyrizuje->currentText());
}

void frmSYS::cmdPageSetup_Click()
{
    frmSysPageSetup setup(this);
    OpenScreen(&setup);
}

void frmSYS::cmdFile_Click(int slot)
{
    const QString path = ChooseFile(this, FooterFileFilters(), QString());
    if (path.isEmpty())
        return;
    SaveSetting(QStringLiteral("Ver 2.4.1"), QStringLiteral("OpenDir"), QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    QString problem;
    if (!onSys([&](DbConnection &sys) {
            problem = StoreFooterFile(sys, slot, Session().UserLogin, path);
            return true;
        }))
        return;
    if (!problem.isEmpty()) {
        MsgBox(problem, MsgCritical);
        return;
    }
    showFooters();
    if (slot == LogoSlot)
        showPicture(LogoSlot, QStringLiteral("logo_kvl_tmp.bmp"), Image2);
    else if (slot == PictureSlot)
        showPicture(PictureSlot, QStringLiteral("typ4_tmp.bmp"), Image1);
}

void frmSYS::Command1_Click()
{
    const QString path = ChooseFile(this, {QStringLiteral("*.mdb (*.mdb)")}, QStringLiteral("db1.mdb"));
    if (!path.isEmpty())
        onSys([&](DbConnection &sys) { return SaveOldDatabasePath(sys, path); });
}

void frmSYS::cmdAdd_Click()
{
    if (!ask(QStringLiteral("Opravdu si přejete přídat záznam? ")))
        return;
    const CentreRow row = centreFromFields();
    const QString problem = CentreProblem(row);
    if (!problem.isEmpty()) {
        MsgBox(problem, MsgWarning);
        return;
    }
    int id = 0;
    if (onSys([&](DbConnection &sys) { return AddCentre(sys, row, &id); }))
        fillCentres(id);
}

void frmSYS::cmdDelete_Click()
{
    const CentreRow row = centreFromFields();
    if (row.id <= 0 || !ask(QStringLiteral("Opravdu si přejete smazat záznam? ")))
        return;
    if (onSys([&](DbConnection &sys) { return DeleteCentre(sys, row.id); }))
        fillCentres(0);
}

void frmSYS::cmdSaveStred_Click()
{
    const CentreRow row = centreFromFields();
    if (row.id <= 0)
        return;
    const QString problem = CentreProblem(row);
    if (!problem.isEmpty()) {
        MsgBox(problem, MsgWarning);
        return;
    }
    if (onSys([&](DbConnection &sys) { return SaveCentre(sys, row); }))
        fillCentres(row.id);
}

void frmSYS::cmdOk_Click()
{
    // Everything is checked before the first value is written.
    if (QLineEdit *bad = badDigitBox()) {
        MsgBox(QString::fromUtf8(TextDigitsOnly), MsgWarning);
        bad->setFocus();
        return;
    }
    if (!serverAddressAccepted())
        return;
    InstitutionFields f = m_institution;
    QLineEdit *const institution[] = {txtFirma, txtAdresa, txtPSC, txtMesto, txtICO, txtDIC,
                                      txtUcet, txtBanka, txtUcet2, txtNewdate};
    QString *const values[] = {&f.firma, &f.adresa, &f.psc, &f.mesto, &f.ico, &f.dic,
                               &f.ucet, &f.banka, &f.ucet2, &f.newdateUcet};
    for (int i = 0; i < 10; ++i)
        *values[i] = institution[i]->text().trimmed();

    WorkstationSettings s;
    s.zadankySave = txtFields[0]->text().trimmed();
    s.spravceName = txtFields[1]->text().trimmed();
    s.typFormulara = txtFields[2]->text().trimmed();
    s.vyrizuje = cmbVyrizuje->currentText().trimmed();
    s.telefon = txtFields[3]->text().trimmed();
    s.telefonEng = txtFields[7]->text().trimmed();
    s.email = txtFields[6]->text().trimmed();
    s.linka = txtFields[4]->text().trimmed();
    s.spravObj = cmbSpravObj->currentText().trimmed();
    s.prikObj = cmbPrikObj->currentText().trimmed();
    s.uctyNotControl = txtFields[5]->text();
    s.selectTypBottom = txtFields[8]->text().trimmed();
    s.printSize = txtPrint[0]->text();
    s.printRows = txtPrint[1]->text();
    s.printTop = txtPrint[2]->text();
    s.printMargin = txtPrint[3]->text();
    s.toolBar = Check1->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    // The institution's row is written first but committed after the file and the store: a value
    // the server refuses leaves everything as it was.
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return;
    Transaction transaction(sys);
    const bool administrator = Session().UserTyp == 2;
    if (!SaveInstitutionFields(sys, f)
        || (administrator && !SaveOwnGrantFilter(sys, Session().UserLogin, txtFiltr->text()))) {
        MsgBox(sys.errorText(), MsgCritical);
        return;
    }
    const QString ip = txtServerIP->text().trimmed(), port = txtServerPort->text().trimmed();
    if ((ip != m_serverIp || port != m_serverPort) && !SaveServerAddress(ip, port)) {
        MsgBox(QStringLiteral("Konfigurační soubor %1 nelze zapsat, nic nebylo uloženo.")
                   .arg(QDir::toNativeSeparators(IniFilePath())),
               MsgCritical);
        return;
    }
    SaveWorkstationSettings(s);
    if (!transaction.commit()) {
        MsgBox(sys.errorText(), MsgCritical);
        return;
    }
    accept();
}

void ShowSYS(QWidget *parent)
{
    frmSYS screen(parent);
    if (screen.Load())
        screen.exec();
}
