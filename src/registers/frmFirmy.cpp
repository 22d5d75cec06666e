#include "registers/frmFirmy.h"

#include "core/db.h"
#include "core/msg.h"
#include "registers/firmy.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
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

namespace {
// Captions of the fields, in the order of FirmaColumns.
const char *const Captions[] = {
    "Název firmy:", "Pobočka:", "Adresa:", "", "PSČ:", "Město:", "Fax:", "E-mail:", "http://",
    "Telefon:", "Telefon:", "IČO:", "DIČ:", "Banka:", "Účet:", "DPH", "Poznámka:", "Za firmu jedná:",
};
} // namespace

frmFirmy::frmFirmy(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Seznam firem"));
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->verticalHeader()->hide();
    DataGrid1->horizontalHeader()->setStretchLastSection(true);

    auto *fields = new QGridLayout;
    for (int i = 0; i < FirmaColumns().size(); ++i) {
        auto *edit = new QLineEdit(this);
        edit->setObjectName(QStringLiteral("txtFields%1").arg(i));
        edit->installEventFilter(this);
        connect(edit, &QLineEdit::editingFinished, this, [this, i] { SaveField(i); });
        txtFields << edit;
        fields->addWidget(new QLabel(QString::fromUtf8(Captions[i]), this), i / 2, (i % 2) * 2);
        fields->addWidget(edit, i / 2, (i % 2) * 2 + 1);
    }
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    fields->addWidget(Combo1, FirmaColumns().size() / 2, 3);
    connect(Combo1, &QComboBox::textActivated, this, [this](const QString &rate) {
        txtFields[FirmaDphField]->setText(rate);
        SaveField(FirmaDphField);
    });
    lblZaznam = new QLabel(this);
    lblZaznam->setObjectName(QStringLiteral("lblZaznam"));

    cmdAdd = new QPushButton(QStringLiteral("Přidat"), this);
    cmdAdd->setObjectName(QStringLiteral("cmdAdd"));
    cmdDelete = new QPushButton(QStringLiteral("Smazat"), this);
    cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    cmdFind = new QPushButton(QStringLiteral("F7-&Najit"), this);
    cmdFind->setObjectName(QStringLiteral("cmdFind"));
    cmdVyber = new QPushButton(QStringLiteral("&Vyber"), this);
    cmdVyber->setObjectName(QStringLiteral("cmdVyber"));
    cmdClose = new QPushButton(QStringLiteral("Zavřít"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));

    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdAdd, cmdDelete, cmdFind, cmdVyber})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(lblZaznam);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    resize(820, 640);

    connect(cmdAdd, &QPushButton::clicked, this, &frmFirmy::cmdAdd_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmFirmy::cmdDelete_Click);
    connect(cmdFind, &QPushButton::clicked, this, &frmFirmy::cmdFind_Click);
    connect(cmdVyber, &QPushButton::clicked, this, &frmFirmy::cmdVyber_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmFirmy::cmdClose_Click);
    connect(DataGrid1, &QTableView::doubleClicked, this, [this] {
        if (VyberSet)
            cmdVyber_Click();
    });
    connect(DataGrid1->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmFirmy::sortOn);
}

frmFirmy::~frmFirmy() = default;

bool frmFirmy::Load()
{
    cmdVyber->setVisible(VyberSet);
    m_centre = std::make_unique<DbConnection>(ConnStrCentre());
    if (!OpenOrFatal(*m_centre))
        return false;
    DbConnection sys(ConnStrSys());
    if (sys.isOpen()) {
        QSqlQuery q = sys.query();
        if (sys.exec(q, QStringLiteral("SELECT Nazev FROM sys_DPH ORDER BY id")))
            while (q.next())
                Combo1->addItem(FieldText(q, 0));
    }
    m_model = std::make_unique<QSqlQueryModel>();
    DataGrid1->setModel(m_model.get());
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &frmFirmy::ShowRecord);
    reload(0);
    return true;
}

void frmFirmy::reload(int nom)
{
    // Only the sorts of the two headers reach here.
    m_model->setQuery(QStringLiteral("SELECT nom, firma, pobocka, mesto, tel FROM adrfirm ORDER BY ") + m_sort,
                      m_centre->db());
    while (m_model->canFetchMore())
        m_model->fetchMore();
    const char *const headers[] = {"nom", "Firma", "Pobočka", "Město", "Telefon"};
    for (int c = 0; c < 5; ++c)
        m_model->setHeaderData(c, Qt::Horizontal, QString::fromUtf8(headers[c]));
    DataGrid1->setColumnHidden(0, true);
    DataGrid1->setColumnWidth(1, 280);
    DataGrid1->setColumnWidth(2, 200);
    DataGrid1->setColumnWidth(3, 140);
    int row = 0;
    for (int r = 0; nom && r < m_model->rowCount(); ++r)
        if (m_model->index(r, 0).data().toInt() == nom)
            row = r;
    if (m_model->rowCount() > 0)
        DataGrid1->setCurrentIndex(m_model->index(row, 1));
    ShowRecord();
}

int frmFirmy::currentNom() const
{
    const QModelIndex index = DataGrid1->currentIndex();
    if (!m_model || !index.isValid())
        return 0;
    return m_model->index(index.row(), 0).data().toInt();
}

void frmFirmy::ShowRecord()
{
    const int nom = currentNom();
    m_shown.clear();
    QSqlRecord record;
    if (nom) {
        QSqlQuery q = m_centre->query();
        if (m_centre->exec(q, QStringLiteral("SELECT * FROM adrfirm WHERE nom=?"), {nom}) && q.next())
            record = q.record();
    }
    for (int i = 0; i < txtFields.size(); ++i) {
        const QVariant v = record.value(FirmaColumns().at(i));
        QString text = v.isNull() ? QString() : v.toString();
        if (i == FirmaHttpField && text.trimmed().isEmpty() && nom)
            text = QStringLiteral("WWW.");
        txtFields[i]->setText(text);
        m_shown << text;
    }
    const int row = DataGrid1->currentIndex().row();
    lblZaznam->setText(QStringLiteral("Záznam číslo : ") + (nom ? QString::number(row + 1) : QString()));
}

void frmFirmy::SaveField(int field)
{
    const int nom = currentNom();
    if (!nom || field >= m_shown.size() || txtFields[field]->text() == m_shown.at(field))
        return;
    QString error;
    if (!SaveFirmaField(*m_centre, nom, field, txtFields[field]->text(), &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    m_shown[field] = txtFields[field]->text();
    if (field <= 1) {   // the grid shows name and branch
        reload(nom);
    }
}

bool frmFirmy::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && txtFields.size() > FirmaPscField && watched == txtFields[FirmaPscField])
        txtFields[FirmaPscField]->setText(FormatPsc(txtFields[FirmaPscField]->text()));
    return QDialog::eventFilter(watched, event);
}

void frmFirmy::sortOn(int column)
{
    static const char *const sortable[] = {nullptr, "firma", "pobocka"};
    if (column < 1 || column > 2 || !m_model)
        return;
    const QString name = QLatin1String(sortable[column]);
    m_sort = name + (m_sort.startsWith(name) && !m_sort.contains(QLatin1String("DESC")) ? QStringLiteral(" DESC")
                                                                                       : QStringLiteral(" ASC"));
    reload(currentNom());
}

void frmFirmy::cmdAdd_Click()
{
    if (!m_model || !Confirmed(MsgBox(QStringLiteral("Chcete opravdu přídat položku ?"), MsgQuestionOkCancel,
                                      QStringLiteral("Chemikále"))))
        return;
    QString error;
    const int nom = AddFirma(*m_centre, &error);
    if (!nom) {
        MsgBox(error, MsgCritical);
        return;
    }
    reload(nom);
    txtFields[0]->setFocus();
}

void frmFirmy::cmdDelete_Click()
{
    const int nom = currentNom();
    if (!nom)
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete smazat firmu: ") + txtFields[0]->text()
                              + QStringLiteral(" ?"),
                          MsgQuestionOkCancel, QStringLiteral("Delete row"))))
        return;
    QString error;
    if (!DeleteFirma(*m_centre, nom, &error))
        MsgBox(error, MsgCritical);
    m_sort = QStringLiteral("firma ASC");
    reload(0);
}

void frmFirmy::cmdFind_Click()
{
    if (!m_model)
        return;
    const std::optional<QString> text = InputBox(QStringLiteral("Zadejte název "), QStringLiteral("Find :"));
    if (!text || text->isEmpty())
        return;
    const int nom = FindFirma(*m_centre, *text, m_sort);
    if (!nom) {
        MsgBox(QStringLiteral("Položka nenajdena!"), MsgInformation, QStringLiteral("Find"));
        return;
    }
    reload(nom);
}

void frmFirmy::FirmaPicked()
{
    QSqlQuery q = m_centre->query();
    if (!m_centre->exec(q, QStringLiteral("SELECT * FROM adrfirm WHERE nom=?"), {currentNom()}) || !q.next())
        return;
    const QSqlRecord record = q.record();
    ObjednFirma = ObjednFirmaRecord(record);
    VyberFirmaInsert = FieldText(q, QStringLiteral("Firma"));
    VyberPoznamInsert = FieldText(q, QStringLiteral("Poznam"));
    VyberZKataloguInsert = FieldText(q, QStringLiteral("Pobocka"));
    CancelForm = false;
    accept();
}

void frmFirmy::cmdVyber_Click()
{
    if (!currentNom())
        return;
    for (int i = 0; i < txtFields.size(); ++i)
        SaveField(i);
    FirmaPicked();
}

void frmFirmy::cmdClose_Click()
{
    if (VyberSet)
        CancelForm = true;
    reject();
}

void frmFirmy::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F7) {
        cmdFind->click();
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        cmdClose->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void ShowFirmy(QWidget *parent)
{
    frmFirmy screen(parent);
    if (screen.Load())
        screen.exec();
}
