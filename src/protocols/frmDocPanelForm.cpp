#include "protocols/frmDocPanelForm.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "protocols/frmDocDesignForm.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVBoxLayout>

namespace {
FormFileChooser &Chooser()
{
    static FormFileChooser chooser;
    return chooser;
}

QString chooseFormFile(QWidget *parent, bool save)
{
    if (Chooser())
        return Chooser()(parent, save);
    const QString filter = QStringLiteral("Form file (*.form)");
    const QString name = save ? QFileDialog::getSaveFileName(parent, QString(), QStringLiteral("*.form"), filter)
                              : QFileDialog::getOpenFileName(parent, QString(), QStringLiteral("*.form"), filter);
    return name.isEmpty() ? QStringLiteral("*.form") : name;
}

const QString Informace = QStringLiteral("Informace");
} // namespace

void SetFormFileChooser(FormFileChooser chooser) { Chooser() = std::move(chooser); }

frmDocPanelForm::frmDocPanelForm(frmDocDesignForm *form) : QWidget(form, Qt::Tool), m_form(form)
{
    setObjectName(QStringLiteral("frmDocPanelForm"));
    setWindowTitle(QStringLiteral("Vlastnosti pole"));

    auto combo = [this](const char *name) {
        auto *c = new QComboBox(this);
        c->setObjectName(QLatin1String(name));
        return c;
    };
    auto line = [this](const char *name) {
        auto *l = new QLineEdit(this);
        l->setObjectName(QLatin1String(name));
        connect(l, &QLineEdit::textEdited, this, [this, l] { liveEdit(l); });
        return l;
    };
    auto check = [this](const char *name, const char *caption) {
        auto *c = new QCheckBox(QString::fromUtf8(caption), this);
        c->setObjectName(QLatin1String(name));
        connect(c, &QCheckBox::toggled, this, [this] {
            if (!m_filling)
                cmdSave_Click();
        });
        return c;
    };
    auto button = [this](const char *name, const char *caption) {
        auto *b = new QPushButton(QString::fromUtf8(caption), this);
        b->setObjectName(QLatin1String(name));
        return b;
    };
    cmbPole = combo("cmbPole");
    cmbTyp = combo("cmbTyp");
    cmbMDB = combo("cmbMDB");
    cmbList = combo("cmbList");
    txtTop = line("txtTop");
    txtLeft = line("txtLeft");
    txtWidth = line("txtWidth");
    txtHeight = line("txtHeight");
    txtFont = line("txtFont");
    txtPopis = line("txtPopis");
    txtLenght = line("txtLenght");
    chkBold = check("chkBold", "Tučně");
    chkAccess = check("chkAccess", "Editovatelné");
    cmdSave = button("cmdSave", "Zapsat");
    cmdAddPole = button("cmdAddPole", "Přidat pole");
    cmdDelPole = button("cmdDelPole", "Smazat pole");
    cmdExport = button("cmdExport", "Export");
    cmdImport = button("cmdImport", "Import");

    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("Pole"), cmbPole);
    fields->addRow(QStringLiteral("Popis"), txtPopis);
    fields->addRow(QStringLiteral("Nahoře"), txtTop);
    fields->addRow(QStringLiteral("Vlevo"), txtLeft);
    fields->addRow(QStringLiteral("Šířka"), txtWidth);
    fields->addRow(QStringLiteral("Výška"), txtHeight);
    fields->addRow(QStringLiteral("Písmo"), txtFont);
    fields->addRow(QString(), chkBold);
    fields->addRow(QString(), chkAccess);
    fields->addRow(QStringLiteral("Pacient"), cmbMDB);
    fields->addRow(QStringLiteral("Seznam"), cmbList);
    fields->addRow(QStringLiteral("Znaků"), txtLenght);
    auto *add = new QHBoxLayout;
    add->addWidget(cmbTyp, 1);
    add->addWidget(cmdAddPole);
    auto *commands = new QHBoxLayout;
    for (QPushButton *b : {cmdSave, cmdDelPole, cmdExport, cmdImport})
        commands->addWidget(b);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(add);
    layout->addLayout(commands);

    DbConnection sys(ConnStrSys()), centre(ConnStrCentre());
    QSqlQuery q = sys.query();
    if (sys.exec(q, QStringLiteral("SELECT type, name FROM typefields ORDER BY type")))
        while (q.next())
            cmbTyp->addItem(FieldText(q, 0) + QStringLiteral(" - ") + FieldText(q, 1), q.value(0).toInt());
    cmbList->addItem(QStringLiteral("0"), 0);
    if (sys.exec(q, QStringLiteral("SELECT DISTINCT id FROM lists ORDER BY id")))
        while (q.next())
            cmbList->addItem(FieldText(q, 0), q.value(0).toInt());
    cmbMDB->addItem(QString());
    const QSqlRecord columns = centre.db().record(QStringLiteral("pacients"));
    for (int i = 0; i < columns.count(); ++i) {
        const QString name = columns.fieldName(i);
        if (name.compare(QLatin1String("DATAPACIENT"), Qt::CaseInsensitive) != 0 &&
            name.compare(QLatin1String("KEY"), Qt::CaseInsensitive) != 0 &&
            name.compare(QLatin1String("ID"), Qt::CaseInsensitive) != 0)
            cmbMDB->addItem(name);
    }
    cmbMDB->addItems({QStringLiteral("datumtvor"), QStringLiteral("cisloprot")});

    connect(cmbPole, &QComboBox::activated, this, [this](int index) {
        // The item's tag names the field: its key is the second piece.
        m_form->setActiveField(cmbPole->itemData(index).toString().section(QLatin1Char('~'), 1, 1).toInt());
    });
    connect(cmbMDB, &QComboBox::activated, this, [this] { cmdSave_Click(); });
    connect(cmbList, &QComboBox::activated, this, [this] { cmdSave_Click(); });
    connect(cmdSave, &QPushButton::clicked, this, &frmDocPanelForm::cmdSave_Click);
    connect(cmdAddPole, &QPushButton::clicked, this, &frmDocPanelForm::cmdAddPole_Click);
    connect(cmdDelPole, &QPushButton::clicked, this, &frmDocPanelForm::cmdDelPole_Click);
    connect(cmdExport, &QPushButton::clicked, this, &frmDocPanelForm::cmdExport_Click);
    connect(cmdImport, &QPushButton::clicked, this, &frmDocPanelForm::cmdImport_Click);

    move(int(GetStudioFrmLeft()), int(GetStudioFrmTop()));
    showField();
}

void frmDocPanelForm::fillFieldList()
{
    cmbPole->clear();
    for (const auto &entry : SessionDocument()) {
        const clsField &f = *entry.field;
        cmbPole->addItem(QString::number(f.Key) + QStringLiteral(" - ") + f.Caption, ControlTag(f));
        if (f.Key == m_form->KeyActiv)
            cmbPole->setCurrentIndex(cmbPole->count() - 1);
    }
}

void frmDocPanelForm::showField()
{
    m_filling = true;
    fillFieldList();
    const clsField *f = m_form->activeField();
    const clsField none;
    const clsField &field = f ? *f : none;
    txtTop->setText(LocaleNumber(field.Top));
    txtLeft->setText(LocaleNumber(field.Left));
    txtWidth->setText(LocaleNumber(field.Width));
    txtHeight->setText(LocaleNumber(field.Height));
    txtFont->setText(LocaleNumber(field.Font));
    txtPopis->setText(field.Caption);
    txtLenght->setText(QString::number(field.LenghtChars));
    chkBold->setChecked(field.Bold);
    chkAccess->setChecked(field.Access);
    cmbMDB->setCurrentIndex(std::max(0, cmbMDB->findText(field.MDB, Qt::MatchFixedString)));
    cmbList->setCurrentIndex(std::max(0, cmbList->findData(int(field.EditList))));
    for (QWidget *w : std::initializer_list<QWidget *>{txtTop, txtLeft, txtWidth, txtHeight, txtFont, txtPopis, txtLenght,
                                                        chkBold, chkAccess, cmbMDB, cmbList, cmdSave, cmdDelPole})
        w->setEnabled(f != nullptr);
    m_filling = false;
}

void frmDocPanelForm::liveEdit(QLineEdit *box)
{
    // Numbers are held with a decimal comma; a full stop typed is taken as one.
    if (box != txtPopis && box->text().contains(QLatin1Char('.'))) {
        const int cursor = box->cursorPosition();
        box->setText(box->text().replace(QLatin1Char('.'), QLatin1Char(',')));
        box->setCursorPosition(cursor);
    }
    cmdSave_Click();
}

void frmDocPanelForm::cmdSave_Click()
{
    clsField *f = m_form->activeField();
    if (!f || m_filling)
        return;
    f->Top = ParseLocaleNumber(txtTop->text());
    f->Left = ParseLocaleNumber(txtLeft->text());
    f->Width = ParseLocaleNumber(txtWidth->text());
    f->Height = ParseLocaleNumber(txtHeight->text());
    f->Font = ParseLocaleNumber(txtFont->text());
    f->Caption = txtPopis->text();
    f->LenghtChars = txtLenght->text().trimmed().toInt();
    f->Bold = chkBold->isChecked();
    f->Access = chkAccess->isChecked();
    f->MDB = cmbMDB->currentText();
    f->EditList = short(cmbList->currentData().toInt());
    m_form->refreshControl(*f);
    m_filling = true;
    fillFieldList();
    m_filling = false;
}

void frmDocPanelForm::cmdAddPole_Click()
{
    if (cmbTyp->currentIndex() < 0)
        return;
    QString title = Informace;
    const QString name = cmbTyp->currentText().section(QStringLiteral(" - "), 1);
    if (!Confirmed(MsgBoxPos(QStringLiteral("Opravdu si přejete přídat pole typu: ") + name, MsgQuestionOkCancel, title)))
        return;
    m_form->addField(cmbTyp->currentData().toInt());
}

void frmDocPanelForm::cmdDelPole_Click()
{
    const clsField *f = m_form->activeField();
    if (!f)
        return;
    QString title = Informace;
    if (!Confirmed(MsgBoxPos(QStringLiteral("Opravdu si přejete smazat pole: ") + f->Caption, MsgQuestionOkCancel, title)))
        return;
    m_form->DelActivControl();
}

void frmDocPanelForm::cmdExport_Click()
{
    const QString file = chooseFormFile(this, true);
    if (file.isEmpty() || file.contains(QLatin1Char('*')))
        return;
    if (!ExportForm(SessionDocument(), SessionFormParams(), m_form->TitleForm, m_form->IDForm, file)) {
        MsgBox(QStringLiteral("Soubor %1 nelze zapsat.").arg(file), MsgWarning);
        return;
    }
    MsgBox(QStringLiteral("Formulář je úspěšně exportován do souboru: ") + file, MsgInformation);
}

void frmDocPanelForm::cmdImport_Click()
{
    const QString file = chooseFormFile(this, false);
    if (file.isEmpty() || file.contains(QLatin1Char('*')))
        return;
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return;
    QString error;
    const int id = ImportForm(sys, file, &error);
    if (id < 0)
        MsgBox(error, MsgWarning);
    else if (id > 0)
        MsgBox(QStringLiteral("Formulář je úspěšně importován do MDB ze souboru: ") + file, MsgInformation);
}

void frmDocPanelForm::closeEvent(QCloseEvent *event)
{
    SetStudioFrmTop(float(y()));
    SetStudioFrmLeft(float(x()));
    QWidget::closeEvent(event);
}
