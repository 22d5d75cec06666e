#include "admin/frmSysPageSetup.h"

#include "admin/page_setup.h"
#include "core/msg.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmSysPageSetup::frmSysPageSetup(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSysPageSetup"));
    setWindowTitle(QStringLiteral("Vzhled stránky "));

    txtHeader = new QLineEdit(this);
    txtHeader->setObjectName(QStringLiteral("txtHeader"));
    txtFooter = new QLineEdit(this);
    txtFooter->setObjectName(QStringLiteral("txtFooter"));
    txtLeft = marginField("txtLeft");
    txtRight = marginField("txtRight");
    txtTop = marginField("txtTop");
    txtBottom = marginField("txtBottom");

    cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    Command1 = new QPushButton(QStringLiteral("Storno"), this);
    Command1->setObjectName(QStringLiteral("Command1"));

    auto *texts = new QFormLayout;
    texts->addRow(QStringLiteral("Záhlaví"), txtHeader);
    texts->addRow(QStringLiteral("Zápatí"), txtFooter);

    auto *Frame1 = new QGroupBox(QStringLiteral("Okraje (mm)"), this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    auto *margins = new QFormLayout(Frame1);
    margins->addRow(QStringLiteral("Vlevo (10-15) :"), txtLeft);
    margins->addRow(QStringLiteral("Vpravo (5-8) :"), txtRight);
    margins->addRow(QStringLiteral("Nahoře (5-8)  :"), txtTop);
    margins->addRow(QStringLiteral("Dole (5-8) :"), txtBottom);

    auto *note = new QLabel(
        QStringLiteral("V závorkách jsou hodnoty doporučeně pro tisk sestav pomocí IE z programu Fondarix"), this);
    note->setWordWrap(true);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(Command1);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(texts);
    layout->addWidget(Frame1);
    layout->addWidget(note);
    layout->addLayout(buttons);
    resize(420, 330);

    const SetPageSetup setup;
    QString value;
    txtHeader->setText(setup.SetPagesSetup(SetPageSetup::Header, value));
    txtFooter->setText(setup.SetPagesSetup(SetPageSetup::Footer, value));
    txtLeft->setText(MillimetresText(MarginInches(setup.SetPagesSetup(SetPageSetup::MarginLeft, value))));
    txtRight->setText(MillimetresText(MarginInches(setup.SetPagesSetup(SetPageSetup::MarginRight, value))));
    txtTop->setText(MillimetresText(MarginInches(setup.SetPagesSetup(SetPageSetup::MarginTop, value))));
    txtBottom->setText(MillimetresText(MarginInches(setup.SetPagesSetup(SetPageSetup::MarginBottom, value))));

    connect(cmdOk, &QPushButton::clicked, this, &frmSysPageSetup::save);
    connect(Command1, &QPushButton::clicked, this, &QDialog::reject);
}

QLineEdit *frmSysPageSetup::marginField(const char *name)
{
    auto *field = new QLineEdit(this);
    field->setObjectName(QLatin1String(name));
    connect(field, &QLineEdit::textEdited, field, [field](const QString &text) {
        const QString typed = MarginTyped(text);
        if (typed != text) {
            const int cursor = field->cursorPosition() - int(text.size() - typed.size());
            field->setText(typed);
            field->setCursorPosition(qMax(0, cursor));
        }
    });
    connect(field, &QLineEdit::editingFinished, field, [field] { field->setText(MarginFinished(field->text())); });
    return field;
}

void frmSysPageSetup::save()
{
    struct Margin {
        QLineEdit *field;
        const char *name;
        QString inches;
    };
    Margin margins[] = {{txtLeft, "Vlevo", {}}, {txtRight, "Vpravo", {}}, {txtTop, "Nahoře", {}}, {txtBottom, "Dole", {}}};
    for (Margin &m : margins) {
        if (!InchesText(MarginFinished(m.field->text()), &m.inches)) {
            MsgBox(QStringLiteral("Okraj %1 musí být číslo od 0 do %2 mm.")
                       .arg(QString::fromUtf8(m.name))
                       .arg(MaxMarginMm),
                   MsgWarning);
            m.field->setFocus();
            m.field->selectAll();
            return;
        }
    }
    SetPageSetup().SavePagesSetup(txtHeader->text(), txtFooter->text(), margins[2].inches, margins[3].inches,
                                  margins[0].inches, margins[1].inches);
    accept();
}
