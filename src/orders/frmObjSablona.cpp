#include "orders/frmObjSablona.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "orders/objeditor.h"
#include "orders/objfooter.h"
#include "orders/objhtml.h"
#include "orders/objrecord.h"
#include "orders/objsave.h"

#include <QDate>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
const char *const InstCaptions[] = {"Firma:", "Adresa:", "PSČ:", "Město:", "IČO:", "DIČ:", "Číslo účtu:", "Název banky:"};
const char *const InstColumns[] = {"firma", "adresa", "PSC", "mesto", "ico", "dic", "cislo uctu", "nazev banky"};

// Enter moves to the next address line, the Up key to the one before.
class AddressKeys : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            auto *w = static_cast<QWidget *>(watched);
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Up) {
                if (QWidget *next = key == Qt::Key_Up ? w->previousInFocusChain() : w->nextInFocusChain())
                    next->setFocus();
                return true;
            }
        }
        return false;
    }
};
} // namespace

frmObjSablona::frmObjSablona(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmObjSablona"));
    setWindowTitle(QStringLiteral("Formulář"));
    auto *grid = new QGridLayout;
    auto add = [&](int row, int col, const QString &caption, QLineEdit *e) {
        grid->addWidget(new QLabel(caption, this), row, col);
        grid->addWidget(e, row, col + 1);
    };
    txtObjCislo = new QLineEdit(this);
    txtObjCislo->setObjectName(QStringLiteral("txtObjCislo"));
    txtObjCislo->setReadOnly(true);
    datDatum = new QLineEdit(this);
    datDatum->setObjectName(QStringLiteral("datDatum"));
    add(0, 0, QStringLiteral("Objednávka číslo:"), txtObjCislo);
    add(0, 2, QStringLiteral("Dne:"), datDatum);
    for (int i = 0; i < 8; ++i) {
        txtInst[i] = new QLineEdit(this);
        txtInst[i]->setObjectName(QStringLiteral("txtInst%1").arg(i));
        add(1 + i / 2, (i % 2) * 2, QString::fromUtf8(InstCaptions[i]), txtInst[i]);
    }
    auto *keys = new AddressKeys(this);
    for (int i = 0; i < 5; ++i) {
        Text1[i] = new QLineEdit(this);
        Text1[i]->setObjectName(QStringLiteral("Text1_%1").arg(i));
        Text1[i]->installEventFilter(keys);
        add(5 + i, 0, i == 0 ? QStringLiteral("Adresát:") : QString(), Text1[i]);
    }
    txtOsoba = new QLineEdit(this);
    txtOsoba->setObjectName(QStringLiteral("txtOsoba"));
    add(10, 0, QStringLiteral("Věc"), txtOsoba);
    editor = new ObjTextEditor(this);
    cmdSave = new QPushButton(QStringLiteral("&Uložit"), this);
    cmdSave->setObjectName(QStringLiteral("cmdSave"));
    cmdView = new QPushButton(QStringLiteral("Zobrazit"), this);
    cmdView->setObjectName(QStringLiteral("cmdView"));
    cmdEdit = new QPushButton(QStringLiteral("Unlock"), this);
    cmdEdit->setObjectName(QStringLiteral("cmdEdit"));
    cmdClose = new QPushButton(QStringLiteral("Zavřít"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    auto *commands = new QHBoxLayout;
    for (QPushButton *b : {cmdSave, cmdView, cmdEdit})
        commands->addWidget(b);
    commands->addStretch();
    commands->addWidget(cmdClose);
    auto *main = new QVBoxLayout(this);
    main->addLayout(grid);
    main->addWidget(editor, 1);
    main->addLayout(commands);
    resize(860, 760);

    connect(cmdSave, &QPushButton::clicked, this, &frmObjSablona::cmdSave_Click);
    connect(cmdView, &QPushButton::clicked, this, [this] { ViewObjForm(Session().MysqlDb, txtObjCislo->text()); });
    connect(cmdEdit, &QPushButton::clicked, this, [this] { editor->setLocked(false); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

bool frmObjSablona::Open()
{
    setWindowTitle(TypeObjedn == 1 ? QStringLiteral("Hlavičkový formulář AN") : QStringLiteral("Hlavičkový formulář CZ"));
    cmdView->setEnabled(false);
    DbConnection sys(ConnStrSys());
    if (sys.isOpen()) {
        // The English letter has the institution's row 2 when there is one.
        QSqlQuery q = sys.query();
        if (sys.exec(q, QStringLiteral("SELECT * FROM sys_nastaveni WHERE id IN (1, 2) ORDER BY id = ? DESC, id"),
                     {TypeObjedn == 1 ? 2 : 1})
            && q.next())
            for (int i = 0; i < 8; ++i)
                txtInst[i]->setText(q.value(QLatin1String(InstColumns[i])).toString());
    }
    DbConnection centre(ConnStrFor(Session().MysqlDb));
    short counter = 1;
    if (!centre.isOpen() || !NextObjCounter(centre, &counter)) {
        MsgBox(centre.isOpen() ? centre.errorText() : centre.errorText(), MsgCritical);
        return false;
    }
    txtObjCislo->setText(MakeObjCislo(counter));
    datDatum->setText(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
    if (!ReserveObj(centre, txtObjCislo->text())) {
        MsgBox(centre.errorText(), MsgCritical);
        return false;
    }
    return true;
}

QString frmObjSablona::Number() const { return txtObjCislo->text(); }

void frmObjSablona::setLocked(bool locked)
{
    for (QLineEdit *e : Text1)
        e->setReadOnly(locked);
    for (QLineEdit *e : txtInst)
        e->setReadOnly(locked);
    txtOsoba->setReadOnly(locked);
    datDatum->setReadOnly(locked);
    editor->setLocked(locked);
}

void frmObjSablona::cmdSave_Click()
{
    const bool incomplete = Text1[0]->text().trimmed().isEmpty() || editor->edit()->toPlainText().trimmed().isEmpty();
    QString title = QStringLiteral("Informace");
    if (!Confirmed(MsgBoxPos(incomplete ? QStringLiteral("Objednávka není kompletní. Chcete uložit objednávku?")
                                        : QStringLiteral("Opravdu si přejete uložit doklad?"),
                             MsgQuestionOkCancel, title)))
        return;
    ObjLetter l;
    const SessionRecord &s = Session();
    l.cisObj = txtObjCislo->text();
    l.english = TypeObjedn == 1;
    l.datum = datDatum->text();
    for (int i = 0; i < 4; ++i)
        l.firm[i] = txtInst[i]->text();
    for (int i = 0; i < 5; ++i)
        l.address[i] = Text1[i]->text();
    l.vyrizuje = s.UserJmeno + QLatin1Char(' ') + s.UserPrijmeni;
    l.linka = GetLinka();
    l.telefon = l.english ? GetTelefonEng() : GetTelefon();
    l.email = GetEmail();
    // The subject goes ahead of the body, which is what the letter prints after "Věc".
    const QString subject = txtOsoba->text().trimmed();
    l.body = (subject.isEmpty() ? QString() : QStringLiteral("<p>") + subject.toHtmlEscaped() + QStringLiteral("</p>"))
             + editor->html();
    DbConnection sys(ConnStrSys());
    DbConnection centre(ConnStrFor(s.MysqlDb));
    if (!sys.isOpen() || !centre.isOpen()) {
        MsgBox(sys.isOpen() ? centre.errorText() : sys.errorText(), MsgCritical);
        return;
    }
    if (SaveObjSablona(centre, l, CurrentFooterChoice(sys, s.UserLogin)) != ObjWrite::Saved) {
        MsgBox(centre.errorText(), MsgCritical);
        return;
    }
    MsgBox(QStringLiteral("Objednávka byla uložená"));
    setLocked(true);
    cmdView->setEnabled(true);
}

void ShowObjSablona(QWidget *parent, short typeObjedn)
{
    auto *screen = new frmObjSablona(parent);
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->TypeObjedn = typeObjedn;
    if (!screen->Open()) {
        delete screen;
        return;
    }
    screen->show();
}
