#include "import/frmRevize.h"

#include "core/config.h"
#include "core/frmKalendar.h"
#include "core/msg.h"
#include "grants/screenparts.h"
#include "import/frmProgressBuildTree.h"
#include "import/importscreens.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmRevize::frmRevize(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRevize"));
    setWindowTitle(QStringLiteral("Revize importného souboru"));
    datDatumOd = new QLineEdit(GetDatumOd(), this);
    datDatumOd->setObjectName(QStringLiteral("datDatumOd"));
    datDatumDo = new QLineEdit(GetDatumDo(), this);
    datDatumDo->setObjectName(QStringLiteral("datDatumDo"));
    cmdKalendarOd = CommandButton(this, "cmdKalendar", QStringLiteral("..."));
    cmdKalendarDo = CommandButton(this, "cmdKalendar", QStringLiteral("..."));
    cmdControl = CommandButton(this, "cmdControl", QStringLiteral("Načíst soubor"));
    cmdCancel = CommandButton(this, "cmdCancel", QStringLiteral("&Cancel"));

    auto *layout = new QGridLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Kontrolovat položky v termínu :"), this), 0, 0, 1, 3);
    layout->addWidget(new QLabel(QStringLiteral("Datum od"), this), 1, 0);
    layout->addWidget(datDatumOd, 1, 1);
    layout->addWidget(cmdKalendarOd, 1, 2);
    layout->addWidget(new QLabel(QStringLiteral("do"), this), 2, 0);
    layout->addWidget(datDatumDo, 2, 1);
    layout->addWidget(cmdKalendarDo, 2, 2);
    layout->addWidget(cmdControl, 3, 1);
    layout->addWidget(cmdCancel, 3, 2);

    connect(datDatumOd, &QLineEdit::editingFinished, this, [this] { checkDate(datDatumOd, true); });
    connect(datDatumDo, &QLineEdit::editingFinished, this, [this] { checkDate(datDatumDo, false); });
    for (auto [button, box, from] : {std::tuple{cmdKalendarOd, datDatumOd, true}, std::tuple{cmdKalendarDo, datDatumDo, false}})
        connect(button, &QPushButton::clicked, this, [this, box = box, from = from] {
            if (const std::optional<QString> date = PickDate(this, box->text())) {
                box->setText(*date);
                checkDate(box, from);
            }
        });
    connect(cmdControl, &QPushButton::clicked, this, &frmRevize::cmdControl_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

bool frmRevize::checkDate(QLineEdit *box, bool from)
{
    const bool ok = from ? SaveDatumOd(box->text().trimmed(), DateTarget::File)
                         : SaveDatumDo(box->text().trimmed(), DateTarget::File);
    if (!ok)
        box->setFocus();
    return ok;
}

void frmRevize::cmdControl_Click()
{
    if (!IsDateText(datDatumOd->text().trimmed()) || !IsDateText(datDatumDo->text().trimmed())) {
        MsgBox(QStringLiteral("Špatný formát datumu."), MsgWarning);
        return;
    }
    const QString file = ChooseImportFile(this, QLatin1String(FilterTxt));
    if (file.isEmpty())
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Přejéte sí provest kontrolu vstupneho souboru na přítomnost chybneho nebo "
                                         "neexistujícího účtů ?"),
                          MsgQuestionOkCancel, QStringLiteral("Info"))))
        return;
    frmProgressBuildTree check(this);
    check.setWindowTitle(QStringLiteral("Error counts control"));
    check.LineData = file + QLatin1Char('~') + datDatumOd->text().trimmed() + QLatin1Char('~') + datDatumDo->text().trimmed();
    check.UnLoadBuldTree = true;
    check.load();
    check.exec();
}

void ShowRevize(QWidget *parent)
{
    frmRevize screen(parent);
    screen.exec();
}
