#include "protocols/frmDocDesignForm.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "protocols/frmDocPanelForm.h"
#include "protocols/protokolpdf.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSqlQuery>
#include <QVBoxLayout>

namespace {
const char *const ArrayNames[] = {"", "lblFormLabel1", "txtFormText1", "txtFormTextBox1", "cmbFormCombo1"};
const QString Informace = QStringLiteral("Informace");

int px(double units) { return int(units / FormUnitsPerPixel + 0.5); }

// A multi-line box holds lines ended by LF; a saved value ends them by CR LF.
QString toStored(QString text) { return text.replace(QLatin1Char('\n'), QStringLiteral("\r\n")); }
QString fromStored(QString text) { return text.remove(QLatin1Char('\r')); }
} // namespace

frmDocDesignForm::frmDocDesignForm(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDocDesignForm"));
    resize(900, 700);

    picForm = new QWidget;
    picForm->setObjectName(QStringLiteral("picForm"));
    picForm->setAutoFillBackground(true);
    QPalette pal = picForm->palette();
    pal.setColor(QPalette::Window, Qt::white);
    picForm->setPalette(pal);
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(picForm);

    cmdSaveForm = new QPushButton(QStringLiteral("Uložit"), this);
    cmdSaveForm->setObjectName(QStringLiteral("cmdSaveForm"));
    cmdCloseForm = new QPushButton(QStringLiteral("Zavřít"), this);
    cmdCloseForm->setObjectName(QStringLiteral("cmdCloseForm"));
    cmdPDFForm = new QPushButton(QStringLiteral("PDF"), this);
    cmdPDFForm->setObjectName(QStringLiteral("cmdPDFForm"));
    StatusBar1 = new QLabel(this);
    StatusBar1->setObjectName(QStringLiteral("StatusBar1"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdSaveForm);
    buttons->addWidget(cmdCloseForm);
    buttons->addWidget(cmdPDFForm);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(scroll, 1);
    layout->addWidget(StatusBar1);

    connect(cmdSaveForm, &QPushButton::clicked, this, &frmDocDesignForm::cmdSaveForm_Click);
    connect(cmdCloseForm, &QPushButton::clicked, this, &frmDocDesignForm::cmdCloseForm_Click);
    connect(cmdPDFForm, &QPushButton::clicked, this, &frmDocDesignForm::cmdPDFForm_Click);
    for (QPushButton *b : {cmdSaveForm, cmdCloseForm, cmdPDFForm})
        b->installEventFilter(this);
}

frmDocDesignForm::~frmDocDesignForm() { delete m_panel; }

bool frmDocDesignForm::load()
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return false;
    const std::optional<FormHeader> header = ReadFormHeader(sys, IDForm);
    if (!header) {
        MsgBox(QStringLiteral("Formulář %1 nebyl nalezen.").arg(IDForm), MsgWarning);
        return false;
    }
    SessionFormParams() = header->formParam.split(QLatin1Char('~'));
    if (TitleForm.isEmpty())
        TitleForm = header->name;

    std::optional<ProtocolRow> row;
    DbConnection centre(ConnStrCentre());
    if (!designing() && !OpenOrFatal(centre))
        return false;
    if (!designing() && IDProt != 0) {
        QString error;
        row = ReadProtocol(centre, IDProt, &error);
        if (!row) {
            MsgBox(error, MsgWarning);
            return false;
        }
        NazDoc = row->cislo_prot;
    }
    const FillSource fill{&centre, IDPac, IDProt, NazDoc,
                          QDateTime::currentDateTime().toString(QStringLiteral("dd.MM.yyyy HH:mm"))};
    QString error;
    if (!LoadFormDefinition(sys, SessionDocument(), IDForm, QString(), designing() ? nullptr : &fill, &error)) {
        MsgBox(error, MsgCritical);
        return false;
    }
    QSqlQuery q = sys.query();
    if (sys.exec(q, QStringLiteral("SELECT id, text FROM lists ORDER BY id")))
        while (q.next())
            m_lists[q.value(0).toInt()] << FieldText(q, 1);

    const QStringList &params = SessionFormParams();
    picForm->resize(std::max(200, px(ParseLocaleNumber(params.value(2)))),
                    std::max(200, px(ParseLocaleNumber(params.value(3)))));
    for (const auto &entry : SessionDocument())
        createControl(*entry.field);
    if (row)
        showProtocolValues(*row);

    if (designing()) {
        setWindowTitle(FormTitle(params));
        m_panel = new frmDocPanelForm(this);
        m_panel->show();
        if (SessionDocument().Count() > 0)
            setActiveField(SessionDocument().Item(1)->Key);
    } else {
        setWindowTitle(TitleForm + QStringLiteral(" - ") + NazDoc);
    }
    LoadForm = true;
    return true;
}

QWidget *frmDocDesignForm::createControl(clsField &field)
{
    QWidget *control = nullptr;
    switch (field.Typ) {
    case TypLabel:
        control = new QLabel(picForm);
        break;
    case TypText:
        control = new QLineEdit(picForm);
        break;
    case TypTextBox:
        control = new QPlainTextEdit(picForm);
        break;
    case TypCombo: {
        auto *combo = new QComboBox(picForm);
        combo->setEditable(true);
        control = combo;
        break;
    }
    default:
        return nullptr;   // a type without a control of its own stays in the form, unseen
    }
    control->setObjectName(QLatin1String(ArrayNames[field.Typ]));
    control->setProperty("Index", field.Key);
    control->installEventFilter(this);
    if (auto *box = qobject_cast<QPlainTextEdit *>(control))
        box->viewport()->installEventFilter(this);
    m_controls.insert(field.Key, control);
    refreshControl(field);
    control->show();
    return control;
}

void frmDocDesignForm::placeControl(QWidget *control, const clsField &field)
{
    control->setGeometry(px(field.Left), px(field.Top), std::max(4, px(field.Width)), std::max(4, px(field.Height)));
}

void frmDocDesignForm::refreshControl(const clsField &field)
{
    QWidget *control = controlOf(field.Key);
    if (!control)
        return;
    placeControl(control, field);
    QFont font = control->font();
    if (field.Font > 0)
        font.setPointSizeF(field.Font);
    font.setBold(field.Bold);
    font.setItalic(field.Kursiv);
    control->setFont(font);
    control->setProperty("Tag", ControlTag(field));
    control->setToolTip(QStringList{QString::number(field.Typ), QString::number(field.Key), LocaleNumber(field.Top),
                                    LocaleNumber(field.Left), LocaleNumber(field.Width), LocaleNumber(field.Height),
                                    LocaleNumber(field.Font), field.MDB, field.Caption}
                            .join(QLatin1Char(' ')));
    const bool editable = !designing() && field.Access;
    if (auto *label = qobject_cast<QLabel *>(control)) {
        label->setText(field.Caption);
    } else if (auto *line = qobject_cast<QLineEdit *>(control)) {
        line->setText(field.Caption);
        line->setReadOnly(!editable);
        if (field.LenghtChars > 0)
            line->setMaxLength(field.LenghtChars);
    } else if (auto *box = qobject_cast<QPlainTextEdit *>(control)) {
        box->setPlainText(fromStored(field.Caption));
        box->setReadOnly(!editable);
    } else if (auto *combo = qobject_cast<QComboBox *>(control)) {
        combo->clear();
        combo->addItems(m_lists.value(field.EditList));
        combo->setEditText(field.Caption);
        combo->setEnabled(designing() || field.Access);
    }
}

void frmDocDesignForm::showProtocolValues(const ProtocolRow &row)
{
    // Values attach by position: the nth value to the nth control of the form.
    const QStringList values = ProtocolValues(row);
    int i = 0;
    for (const auto &entry : SessionDocument()) {
        QWidget *control = controlOf(entry.field->Key);
        if (!control)
            continue;
        const QString value = values.value(i++);
        entry.field->Data = value;
        if (auto *label = qobject_cast<QLabel *>(control))
            label->setText(value);
        else if (auto *line = qobject_cast<QLineEdit *>(control))
            line->setText(value);
        else if (auto *box = qobject_cast<QPlainTextEdit *>(control))
            box->setPlainText(fromStored(value));
        else if (auto *combo = qobject_cast<QComboBox *>(control))
            combo->setEditText(value);
    }
}

std::vector<ControlValue> frmDocDesignForm::controlValues() const
{
    std::vector<ControlValue> values;
    for (const auto &entry : SessionDocument()) {
        QWidget *control = controlOf(entry.field->Key);
        if (!control)
            continue;
        QString value;
        if (auto *label = qobject_cast<QLabel *>(control))
            value = label->text();
        else if (auto *line = qobject_cast<QLineEdit *>(control))
            value = line->text();
        else if (auto *box = qobject_cast<QPlainTextEdit *>(control))
            value = toStored(box->toPlainText());
        else if (auto *combo = qobject_cast<QComboBox *>(control))
            value = combo->currentText();
        values.emplace_back(control->property("Tag").toString(), value);
    }
    return values;
}

clsField *frmDocDesignForm::activeField() const { return SessionDocument().Item(QString::number(KeyActiv)); }

void frmDocDesignForm::setActiveField(int key)
{
    KeyActiv = key;
    if (m_panel)
        m_panel->showField();
}

clsField *frmDocDesignForm::addField(int typ)
{
    clsField *field = AddNewField(SessionDocument(), typ);
    createControl(*field);
    setActiveField(field->Key);
    return field;
}

void frmDocDesignForm::DelActivControl()
{
    const int key = KeyActiv;
    delete m_controls.take(key);
    SessionDocument().RemovItem(QString::number(key));
    setActiveField(SessionDocument().Count() > 0 ? SessionDocument().Item(1)->Key : 0);
}

void frmDocDesignForm::fieldMoved(QWidget *control)
{
    if (clsField *field = SessionDocument().Item(QString::number(control->property("Index").toInt()))) {
        field->Top = control->y() * FormUnitsPerPixel;
        field->Left = control->x() * FormUnitsPerPixel;
        refreshControl(*field);
        setActiveField(field->Key);
    }
}

bool frmDocDesignForm::eventFilter(QObject *watched, QEvent *event)
{
    if (!designing()) {
        // The buttons are named in the status line while the protocol is filled in.
        if (event->type() == QEvent::Enter && (watched == cmdSaveForm || watched == cmdCloseForm))
            StatusBar1->setText(watched == cmdSaveForm ? QStringLiteral("Cmd: Uložit") : QStringLiteral("Cmd: Zavřít"));
        return QDialog::eventFilter(watched, event);
    }
    QWidget *control = qobject_cast<QWidget *>(watched);
    if (control && !m_controls.values().contains(control))
        control = control->parentWidget();   // the viewport of a multi-line box
    if (!control || !m_controls.values().contains(control))
        return QDialog::eventFilter(watched, event);

    auto *label = qobject_cast<QLabel *>(control);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        setActiveField(control->property("Index").toInt());
        if (label) {
            m_pressAt = static_cast<QMouseEvent *>(event)->position().toPoint();
            m_dragged = label;
            return true;
        }
        break;
    }
    case QEvent::MouseMove:
        if (label && m_dragged == label) {
            const QPoint now = static_cast<QMouseEvent *>(event)->position().toPoint();
            label->move(label->pos() + now - m_pressAt);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        if (label && m_dragged == label) {
            m_dragged = nullptr;
            fieldMoved(label);
            return true;
        }
        break;
    case QEvent::KeyPress: {
        if (label)
            break;
        const int key = static_cast<QKeyEvent *>(event)->key();
        QPoint step;
        if (key == Qt::Key_Left)
            step = {-1, 0};
        else if (key == Qt::Key_Right)
            step = {1, 0};
        else if (key == Qt::Key_Up)
            step = {0, -1};
        else if (key == Qt::Key_Down)
            step = {0, 1};
        else
            break;
        control->move(control->pos() + step);
        fieldMoved(control);
        return true;
    }
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

void frmDocDesignForm::cmdSaveForm_Click()
{
    QString title = Informace;
    if (!Confirmed(MsgBoxPos(QStringLiteral("Přejete si uložit dokument?"), MsgQuestionOkCancel, title)))
        return;
    QString error;
    if (designing()) {
        DbConnection sys(ConnStrSys());
        if (!OpenOrFatal(sys))
            return;
        if (!SaveForm(sys, SessionDocument(), IDForm, &error))
            MsgBox(error, MsgCritical);
        return;
    }
    DbConnection centre(ConnStrCentre());
    if (!OpenOrFatal(centre))
        return;
    const int key = AkceFieldDocument(centre, SessionDocument(), controlValues(),
                                      {IDProt, IDForm, IDPac, NazDoc}, QDateTime::currentDateTime(), &error);
    if (key == 0)
        MsgBox(error, MsgWarning);
    else
        IDProt = key;
}

void frmDocDesignForm::cmdCloseForm_Click()
{
    QString title = Informace;
    if (!Confirmed(MsgBoxPos(QStringLiteral("Přejete si ukončit tvorbu dokumentu?"), MsgQuestionOkCancel, title)))
        return;
    close();
}

void frmDocDesignForm::closeEvent(QCloseEvent *event)
{
    if (m_panel)
        m_panel->close();
    QDialog::closeEvent(event);
}

void frmDocDesignForm::cmdPDFForm_Click()
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return;
    QString file;
    if (!FormPdf(sys, SessionDocument(), controlValues(), SessionFormParams(), NoView, &file))
        MsgBox(QStringLiteral("Soubor %1 nelze vytvořit.").arg(file), MsgWarning);
}

void ShowStudio(QWidget *parent)
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return;
    QSqlQuery q = sys.query();
    QStringList lines;
    QString first;
    if (sys.exec(q, QStringLiteral("SELECT id, name FROM documents ORDER BY id")))
        while (q.next()) {
            lines << FieldText(q, 0) + QStringLiteral(" - ") + FieldText(q, 1);
            if (first.isEmpty())
                first = FieldText(q, 0);
        }
    const std::optional<QString> chosen =
        InputBox(QStringLiteral("Číslo formuláře:\r\n") + lines.join(QStringLiteral("\r\n")),
                 QStringLiteral("Studio formuláře"), first);
    if (!chosen || chosen->trimmed().isEmpty())
        return;
    frmDocDesignForm form(parent);
    form.LoadModeFrm = 1;
    form.IDForm = chosen->trimmed().toInt();
    if (form.load())
        form.exec();
}
