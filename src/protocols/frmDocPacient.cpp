#include "protocols/frmDocPacient.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "protocols/frmDocDesignForm.h"
#include "protocols/protokolpdf.h"

#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSqlQuery>
#include <QTabBar>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QString Informace = QStringLiteral("Informace");

// The search fields and the column each searches.
const std::pair<const char *, const char *> SearchFields[] = {
    {"  Příjmení", "prijmeni,jmeno"}, {"  Jměno", "jmeno"},          {"  RČ", "rc"},
    {"  Číslo biopsie", "prijmcislo"}, {"  Registrací", "pegistraci"},
};

QTableWidget *grid(QWidget *parent, const char *name, const QStringList &captions)
{
    auto *g = new QTableWidget(0, int(captions.size()), parent);
    g->setObjectName(QLatin1String(name));
    g->setHorizontalHeaderLabels(captions);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->verticalHeader()->hide();
    g->horizontalHeader()->setStretchLastSection(true);
    return g;
}

void setRow(QTableWidget *g, int row, const QStringList &cells)
{
    for (int c = 0; c < cells.size(); ++c)
        g->setItem(row, c, new QTableWidgetItem(cells[c]));
}

bool ask(const QString &text)
{
    QString title = Informace;
    return Confirmed(MsgBoxPos(text, MsgQuestionOkCancel, title));
}
} // namespace

frmDocPacient::frmDocPacient(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDocPacient"));
    setWindowTitle(QStringLiteral("Protokoly"));
    resize(1100, 760);

    auto line = [this](const char *name) {
        auto *l = new QLineEdit(this);
        l->setObjectName(QLatin1String(name));
        return l;
    };
    auto button = [this](const char *name, const char *caption) {
        auto *b = new QPushButton(QString::fromUtf8(caption), this);
        b->setObjectName(QLatin1String(name));
        return b;
    };

    cmbHledat = new QComboBox(this);
    cmbHledat->setObjectName(QStringLiteral("cmbHledat"));
    for (const auto &[caption, column] : SearchFields)
        cmbHledat->addItem(QString::fromUtf8(caption), QString::fromLatin1(column));
    txtHledat = line("txtHledat");
    cmdHledat = button("cmdHledat", "Hledat");
    auto *search = new QHBoxLayout;
    search->addWidget(cmbHledat);
    search->addWidget(txtHledat, 1);
    search->addWidget(cmdHledat);

    MSFlexGrid1 = grid(this, "MSFlexGrid1",
                       {QStringLiteral("Reg. číslo"), QStringLiteral("Příjmení a jměno"), QStringLiteral("RČ"),
                        QStringLiteral("Číslo biopsie"), QStringLiteral("Registrován dne")});

    txtPrijmeni = line("txtPrijmeni");
    txtJmeno = line("txtJmeno");
    txtRC = line("txtRC");
    txtPrijmCislo = line("txtPrijmCislo");
    txtRegistraci = line("txtRegistraci");
    txtPoznamka = line("txtPoznamka");
    const char *dataNames[DataPacientItems] = {"txtTitul", "txtAdresa1", "txtAdresa2", "txtAdresa3", "txtTelefon",
                                               "txtPoznamka2"};
    for (int i = 0; i < DataPacientItems; ++i)
        txtData[i] = line(dataNames[i]);
    auto *detail = new QFormLayout;
    detail->addRow(QStringLiteral("Příjmení"), txtPrijmeni);
    detail->addRow(QStringLiteral("Jméno"), txtJmeno);
    detail->addRow(QStringLiteral("Titul"), txtData[0]);
    detail->addRow(QStringLiteral("RČ"), txtRC);
    detail->addRow(QStringLiteral("Číslo biopsie"), txtPrijmCislo);
    detail->addRow(QStringLiteral("Registrován dne"), txtRegistraci);
    detail->addRow(QStringLiteral("Adresa"), txtData[1]);
    detail->addRow(QString(), txtData[2]);
    detail->addRow(QString(), txtData[3]);
    detail->addRow(QStringLiteral("Telefon"), txtData[4]);
    detail->addRow(QStringLiteral("Poznámka"), txtPoznamka);
    detail->addRow(QString(), txtData[5]);
    cmdNewPac = button("cmdNewPac", "Nový pacient");
    cmdSavePac = button("cmdSavePac", "Uložit pacienta");
    cmdDelPac = button("cmdDelPac", "Smazat pacienta");
    auto *pacButtons = new QHBoxLayout;
    for (QPushButton *b : {cmdNewPac, cmdSavePac, cmdDelPac})
        pacButtons->addWidget(b);

    TabStrip1 = new QTabBar(this);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    MSFlexGrid2 = grid(this, "MSFlexGrid2", {QStringLiteral("Číslo protokolu"), QStringLiteral("Vytvořeno, dne ")});
    cmdAddDoc = button("cmdAddDoc", "Nový protokol");
    cmdEditDoc = button("cmdEditDoc", "Editovat");
    cmdDelDoc = button("cmdDelDoc", "Smazat");
    cmdPDFForm = button("cmdPDFForm", "PDF");
    cmdPDFList = button("cmdPDFList", "PDF všech");
    cmdPristup = button("cmdPristup", "Zamknout");
    cmdDesign = button("cmdDesign", "Studio");
    auto *docButtons = new QHBoxLayout;
    for (QPushButton *b : {cmdAddDoc, cmdEditDoc, cmdDelDoc, cmdPDFForm, cmdPDFList, cmdPristup, cmdDesign})
        docButtons->addWidget(b);
    txtKorekce = new QPlainTextEdit(this);
    txtKorekce->setObjectName(QStringLiteral("txtKorekce"));
    txtKorekce->setReadOnly(true);
    txtNovaKorekce = line("txtNovaKorekce");
    cmdAddKorekce = button("cmdAddKorekce", "Přidat korekci");
    auto *korekce = new QHBoxLayout;
    korekce->addWidget(txtNovaKorekce, 1);
    korekce->addWidget(cmdAddKorekce);

    auto *left = new QVBoxLayout;
    left->addLayout(search);
    left->addWidget(MSFlexGrid1, 1);
    left->addLayout(detail);
    left->addLayout(pacButtons);
    auto *right = new QVBoxLayout;
    right->addWidget(TabStrip1);
    right->addWidget(MSFlexGrid2, 1);
    right->addLayout(docButtons);
    right->addWidget(new QLabel(QStringLiteral("Korekce"), this));
    right->addWidget(txtKorekce, 1);
    right->addLayout(korekce);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(left, 3);
    layout->addLayout(right, 2);

    connect(cmdHledat, &QPushButton::clicked, this, &frmDocPacient::cmdHledat_Click);
    connect(txtHledat, &QLineEdit::returnPressed, this, &frmDocPacient::cmdHledat_Click);
    connect(MSFlexGrid1, &QTableWidget::itemSelectionChanged, this, &frmDocPacient::pacientChosen);
    connect(MSFlexGrid2, &QTableWidget::itemSelectionChanged, this, &frmDocPacient::protocolChosen);
    connect(TabStrip1, &QTabBar::currentChanged, this, &frmDocPacient::showProtocols);
    connect(cmdNewPac, &QPushButton::clicked, this, &frmDocPacient::cmdNewPac_Click);
    connect(cmdSavePac, &QPushButton::clicked, this, &frmDocPacient::cmdSavePac_Click);
    connect(cmdDelPac, &QPushButton::clicked, this, &frmDocPacient::cmdDelPac_Click);
    connect(cmdAddDoc, &QPushButton::clicked, this, &frmDocPacient::cmdAddDoc_Click);
    connect(cmdEditDoc, &QPushButton::clicked, this, &frmDocPacient::cmdEditDoc_Click);
    connect(cmdDelDoc, &QPushButton::clicked, this, &frmDocPacient::cmdDelDoc_Click);
    connect(cmdPDFForm, &QPushButton::clicked, this, &frmDocPacient::cmdPDFForm_Click);
    connect(cmdPDFList, &QPushButton::clicked, this, &frmDocPacient::cmdPDFList_Click);
    connect(cmdPristup, &QPushButton::clicked, this, &frmDocPacient::cmdPristup_Click);
    connect(cmdAddKorekce, &QPushButton::clicked, this, &frmDocPacient::cmdAddKorekce_Click);
    connect(cmdDesign, &QPushButton::clicked, this, &frmDocPacient::cmdDesign_Click);
}

void frmDocPacient::load()
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return;
    QSqlQuery q = sys.query();
    m_kinds.clear();
    if (sys.exec(q, QStringLiteral("SELECT id, name FROM documents_prot ORDER BY id")))
        while (q.next())
            m_kinds.emplace_back(q.value(0).toInt(), FieldText(q, 1));
    const QSignalBlocker block(TabStrip1);
    while (TabStrip1->count() > 0)
        TabStrip1->removeTab(0);
    for (const auto &kind : m_kinds)
        TabStrip1->addTab(QStringLiteral("Protokol ") + kind.second);
    showPacients(QString(), QString());
}

void frmDocPacient::showPacients(const QString &column, const QString &text)
{
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    const auto rows = SearchPacients(centre, column, text, &error);
    if (!rows) {
        MsgBox(error, MsgWarning);
        return;
    }
    m_pacients = *rows;
    const QSignalBlocker block(MSFlexGrid1);
    MSFlexGrid1->setRowCount(int(m_pacients.size()));
    for (int r = 0; r < int(m_pacients.size()); ++r) {
        const Pacient &p = m_pacients[size_t(r)];
        setRow(MSFlexGrid1, r, {QString::number(p.id), p.prijmeni + QLatin1Char(' ') + p.jmeno, p.rc, p.prijmcislo,
                                p.registraci});
    }
    MSFlexGrid1->resizeColumnsToContents();
    if (!m_pacients.empty())
        MSFlexGrid1->selectRow(0);
    pacientChosen();
}

const Pacient *frmDocPacient::currentPacient() const
{
    const int row = MSFlexGrid1->currentRow();
    return row >= 0 && row < int(m_pacients.size()) && MSFlexGrid1->selectionModel()->hasSelection()
               ? &m_pacients[size_t(row)]
               : nullptr;
}

const ProtocolRow *frmDocPacient::currentProtocol() const
{
    const int row = MSFlexGrid2->currentRow();
    return row >= 0 && row < int(m_protocols.size()) && MSFlexGrid2->selectionModel()->hasSelection()
               ? &m_protocols[size_t(row)]
               : nullptr;
}

int frmDocPacient::currentFormId() const
{
    const int tab = TabStrip1->currentIndex();
    return tab >= 0 && tab < int(m_kinds.size()) ? m_kinds[size_t(tab)].first : 0;
}

void frmDocPacient::pacientChosen()
{
    const Pacient *p = currentPacient();
    const Pacient none;
    const Pacient &shown = p ? *p : none;
    txtPrijmeni->setText(shown.prijmeni);
    txtJmeno->setText(shown.jmeno);
    txtRC->setText(shown.rc);
    txtPrijmCislo->setText(shown.prijmcislo);
    txtRegistraci->setText(shown.registraci);
    txtPoznamka->setText(shown.poznamka);
    // A patient without further data shows empty fields.
    const QStringList data = shown.datapacient.split(QLatin1Char('~'));
    for (int i = 0; i < DataPacientItems; ++i)
        txtData[i]->setText(data.value(i));
    for (QPushButton *b : {cmdSavePac, cmdDelPac, cmdAddDoc})
        b->setEnabled(p != nullptr);
    showProtocols();
}

void frmDocPacient::showProtocols()
{
    const Pacient *p = currentPacient();
    m_protocols.clear();
    if (p) {
        DbConnection centre(ConnStrCentre());
        if (!OpenOrFatal(centre))
            return;
        QString error;
        auto rows = ListProtocols(centre, p->key, currentFormId(), &error);
        if (rows)
            m_protocols = std::move(*rows);
        else
            MsgBox(error, MsgWarning);
    }
    const QSignalBlocker block(MSFlexGrid2);
    MSFlexGrid2->setRowCount(int(m_protocols.size()));
    for (int r = 0; r < int(m_protocols.size()); ++r)
        setRow(MSFlexGrid2, r, {m_protocols[size_t(r)].cislo_prot, m_protocols[size_t(r)].date_create});
    if (!m_protocols.empty())
        MSFlexGrid2->selectRow(0);
    protocolChosen();
}

void frmDocPacient::protocolChosen()
{
    const ProtocolRow *row = currentProtocol();
    txtKorekce->setPlainText(row ? row->korekce_fields : QString());
    const bool open = row && !row->lock;
    cmdEditDoc->setEnabled(open);
    cmdDelDoc->setEnabled(open);
    cmdPristup->setEnabled(open);
    cmdPDFForm->setEnabled(row != nullptr);
    cmdPDFList->setEnabled(!m_protocols.empty());
    // Corrections are for closed protocols only.
    cmdAddKorekce->setEnabled(row && row->lock);
    txtNovaKorekce->setEnabled(row && row->lock);
}

void frmDocPacient::cmdHledat_Click()
{
    showPacients(cmbHledat->currentData().toString(), txtHledat->text());
}

void frmDocPacient::cmdNewPac_Click()
{
    if (!ask(QStringLiteral("Opravdu si přejete přídat nového pacienta? ")))
        return;
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    const int key = NewPacient(centre, QDate::currentDate(), &error);
    if (key == 0) {
        MsgBox(error, MsgWarning);
        return;
    }
    txtHledat->clear();
    showPacients(QString(), QString());
    for (int r = 0; r < int(m_pacients.size()); ++r)
        if (m_pacients[size_t(r)].key == key)
            MSFlexGrid1->selectRow(r);
    txtPrijmeni->setFocus();
}

void frmDocPacient::cmdSavePac_Click()
{
    const Pacient *current = currentPacient();
    if (!current)
        return;
    Pacient p = *current;
    p.prijmeni = txtPrijmeni->text().trimmed();
    p.jmeno = txtJmeno->text().trimmed();
    p.rc = txtRC->text().trimmed();
    p.prijmcislo = txtPrijmCislo->text().trimmed();
    p.registraci = txtRegistraci->text().trimmed();
    p.poznamka = txtPoznamka->text().trimmed();
    QStringList data;
    for (QLineEdit *item : txtData)
        data << item->text();
    p.datapacient = data.join(QLatin1Char('~')) + QStringLiteral("~~~");
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    if (!SavePacient(centre, p, &error)) {
        MsgBox(error, MsgWarning);
        return;
    }
    const int row = MSFlexGrid1->currentRow();
    m_pacients[size_t(row)] = p;
    const QSignalBlocker block(MSFlexGrid1);
    setRow(MSFlexGrid1, row, {QString::number(p.id), p.prijmeni + QLatin1Char(' ') + p.jmeno, p.rc, p.prijmcislo,
                              p.registraci});
}

void frmDocPacient::cmdDelPac_Click()
{
    const Pacient *p = currentPacient();
    if (!p || !ask(QStringLiteral("Opravdu si přejete smazat pacienta? ")))
        return;
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    if (!DeletePacient(centre, p->key, &error)) {
        MsgBox(error, MsgWarning);
        return;
    }
    showPacients(cmbHledat->currentData().toString(), txtHledat->text());
}

void frmDocPacient::openForm(int idProt, const QString &nazDoc)
{
    const Pacient *p = currentPacient();
    if (!p)
        return;
    const int tab = TabStrip1->currentIndex();
    frmDocDesignForm form(this);
    form.LoadModeFrm = 0;
    form.ActivTabIndex = short(tab);
    form.IDPac = p->key;
    form.IDForm = currentFormId();
    form.IDProt = idProt;
    form.NazDoc = nazDoc;
    form.TitleForm = TabStrip1->tabText(tab);
    form.NoView = NoView;
    if (form.load())
        form.exec();
    showProtocols();
}

void frmDocPacient::cmdAddDoc_Click()
{
    if (!currentPacient() || currentFormId() == 0)
        return;
    const QString kind = m_kinds[size_t(TabStrip1->currentIndex())].second;
    const std::optional<QString> number =
        InputBox(QStringLiteral("Zadejte číslo nového dokumentu, například: Protokol ") + kind +
                     QStringLiteral(" XX/XXXX, \r\n\r\nXX/XXXX - číslo biopsie"),
                 QStringLiteral("Přidat nový dokument:"));
    if (!number || number->trimmed().isEmpty())
        return;
    openForm(0, number->trimmed());
}

void frmDocPacient::cmdEditDoc_Click()
{
    const ProtocolRow *row = currentProtocol();
    if (row && !row->lock)
        openForm(row->key, row->cislo_prot);
}

void frmDocPacient::cmdDelDoc_Click()
{
    const ProtocolRow *row = currentProtocol();
    if (!row || !ask(QStringLiteral("Opravdu si přejete smazat dokument: ") + row->cislo_prot))
        return;
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    if (!DeleteProtocol(centre, row->key, &error))
        MsgBox(error, MsgWarning);
    showProtocols();
}

void frmDocPacient::cmdPDFForm_Click()
{
    const ProtocolRow *row = currentProtocol();
    if (!row)
        return;
    DbConnection centre(ConnStrCentre()), sys(ConnStrSys());
    if (!OpenOrFatal(centre) || !OpenOrFatal(sys))
        return;
    QString error;
    if (!ProtokolPdf(centre, sys, QString::number(row->key), NoView, QString(), nullptr, &error))
        MsgBox(error, MsgWarning);
}

// The list shown, each protocol to its own file under PROTOKOLY_SAVE; a whole list is not
// opened file by file, the message names the folder instead.
void frmDocPacient::cmdPDFList_Click()
{
    const Pacient *p = currentPacient();
    if (!p || m_protocols.empty())
        return;
    DbConnection centre(ConnStrCentre()), sys(ConnStrSys());
    if (!OpenOrFatal(centre) || !OpenOrFatal(sys))
        return;
    QStringList files;
    QString error;
    if (!ProtokolListPdf(centre, sys, p->key, currentFormId(), QString(), &files, &error)) {
        MsgBox(error, MsgWarning);
        return;
    }
    MsgBox(QStringLiteral("Protokoly pacienta (%1) jsou uloženy do složky: %2")
               .arg(files.size())
               .arg(QDir::toNativeSeparators(QFileInfo(files.value(0)).absolutePath())),
           MsgInformation);
}

void frmDocPacient::cmdPristup_Click()
{
    const ProtocolRow *row = currentProtocol();
    if (!row || !ask(QStringLiteral("Opravdu si přejete ukončit editaci a zamknout protokol?")))
        return;
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    if (!LockProtocol(centre, row->key, &error)) {
        MsgBox(error, MsgWarning);
        return;
    }
    m_protocols[size_t(MSFlexGrid2->currentRow())].lock = true;
    protocolChosen();
}

void frmDocPacient::cmdAddKorekce_Click()
{
    const ProtocolRow *row = currentProtocol();
    if (!row || !row->lock || !ask(QStringLiteral("Opravdu si přejete přídat text korekce? ")))
        return;
    const SessionRecord &s = Session();
    const QString text = KorekceEntry(row->korekce_fields, txtNovaKorekce->text(), QDateTime::currentDateTime(),
                                      s.UserJmeno + QLatin1Char(' ') + s.UserPrijmeni);
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    QString error;
    if (!SavePacientData(centre, row->key, text, &error)) {
        MsgBox(error, MsgWarning);
        return;
    }
    m_protocols[size_t(MSFlexGrid2->currentRow())].korekce_fields = text;
    txtKorekce->setPlainText(text);
    txtNovaKorekce->clear();
}

void frmDocPacient::cmdDesign_Click()
{
    if (currentFormId() == 0)
        return;
    frmDocDesignForm form(this);
    form.LoadModeFrm = 1;
    form.IDForm = currentFormId();
    form.NoView = NoView;
    if (form.load())
        form.exec();
}

void ShowDocPacient(QWidget *parent)
{
    frmDocPacient screen(parent);
    screen.load();
    screen.exec();
}
