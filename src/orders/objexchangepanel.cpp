#include "orders/objexchangepanel.h"

#include "core/db.h"
#include "core/institution.h"
#include "core/msg.h"
#include "core/session.h"
#include "orders/exchange.h"
#include "orders/frmArchObj.h"
#include "orders/objpdfform.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileDialog>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlRecord>
#include <QTableWidget>

namespace {

constexpr int ListRows = 5;   // the list of firms to send holds five

QPushButton *Button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

// The row of archobj by its key, on the archive's centre database.
bool ReadRow(frmArchObj *screen, int nom, QSqlRecord *row)
{
    DbConnection centre(ConnStrFor(screen->CentreDb()));
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archobj WHERE nom=?"), {nom}) || !q.next())
        return false;
    *row = q.record();
    return true;
}

} // namespace

void ObjPdfPreview(frmArchObj *screen, int nom)
{
    QSqlRecord row;
    if (!ReadRow(screen, nom, &row))
        return;   // the order is gone: nothing to show
    DbConnection sys(ConnStrSys());
    QString error;
    ReadInstitution(sys);
    if (!ObjPdfPicturesToTemp(sys, Session().UserLogin, &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    ObjPdfOfRow(row, ObjPdfPath(row.value(QStringLiteral("cis_obj")).toString()), ObjExchangeDesktop::NoView());
}

namespace {

// The export of the rows of the list, each a firm, stopping at the first row without a
// number; Text3 says what was written.
void ExportList(frmArchObj *screen, QTableWidget *list, QLineEdit *status)
{
    DbConnection centre(ConnStrFor(screen->CentreDb()));
    QStringList done;
    for (int r = 0; r < ListRows; ++r) {
        const QTableWidgetItem *first = list->item(r, 0);
        if (!first || first->text().isEmpty())
            break;
        const QString firma = list->item(r, 1) ? list->item(r, 1)->text() : QString();
        QString path, error;
        const int written = ExportFirm(centre, firma, &path, &error);
        if (written < 0) {
            MsgBox(error, MsgCritical);
            return;
        }
        if (written > 0)
            done << QDir::toNativeSeparators(path);
    }
    status->setText(done.join(QStringLiteral(", ")));
}

void ImportFile(frmArchObj *screen)
{
    const QString path = ObjExchangeDesktop::ChooseFile()(screen, Pop3Folder());
    if (path.isEmpty())
        return;
    DbConnection centre(ConnStrFor(screen->CentreDb()));
    QString error;
    const int stored = ImportObjFile(centre, path, &error);
    if (stored < 0) {
        MsgBox(error, MsgCritical);
        return;
    }
    if (stored == 0)
        return;   // an empty file: nothing to read
    screen->FilterObj();
    MsgBox(QLatin1String(ImportCompleteText), MsgInformation);
}

} // namespace

std::function<QString(QWidget *, const QString &)> &ObjExchangeDesktop::ChooseFile()
{
    static std::function<QString(QWidget *, const QString &)> choose = [](QWidget *parent, const QString &folder) {
        return QFileDialog::getOpenFileName(parent, QString(), folder, QStringLiteral("*.txt"));
    };
    return choose;
}

bool &ObjExchangeDesktop::NoView()
{
    static bool noView = false;
    return noView;
}

void AddObjExchangeCommands(frmArchObj *screen, QBoxLayout *commands)
{
    QFrame *panel = screen->Frame6;
    panel->setFrameShape(QFrame::StyledPanel);
    auto *list = new QTableWidget(ListRows, 2, panel);
    list->setObjectName(QStringLiteral("MSFlexGrid1"));
    list->setHorizontalHeaderLabels({QStringLiteral("Číslo"), QStringLiteral("Firma")});
    list->horizontalHeader()->setStretchLastSection(true);
    list->verticalHeader()->hide();
    list->setColumnWidth(0, 110);
    // The header and the five rows, without scrolling.
    list->setFixedHeight((ListRows + 1) * list->verticalHeader()->defaultSectionSize() + 2 * list->frameWidth() + 4);
    auto *status = new QLineEdit(panel);
    status->setObjectName(QStringLiteral("Text3"));
    status->setReadOnly(true);
    QPushButton *cmdExportObj = Button(panel, "cmdExportObj", QStringLiteral("Zapsat do SMTP_Email"));
    // Sending is left to the mail program that serves the folder: this button does nothing.
    QPushButton *cmdPostServer = Button(panel, "cmdPostServer", QStringLiteral("Odeslat seznam na PostSERVER "));
    QPushButton *cmdClear = Button(panel, "cmdClear", QStringLiteral("Smazat E-mail"));
    QPushButton *cmdExitExp = Button(panel, "cmdExitExp", QStringLiteral("&Close"));
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdExportObj, cmdPostServer, cmdClear, cmdExitExp})
        buttons->addWidget(b);
    auto *layout = new QVBoxLayout(panel);
    layout->addWidget(new QLabel(QStringLiteral("Seznam k odeslání:"), panel));
    layout->addWidget(list);
    layout->addWidget(status);
    layout->addLayout(buttons);
    panel->hide();

    QObject::connect(cmdExportObj, &QPushButton::clicked, screen, [screen, list, status] { ExportList(screen, list, status); });
    QObject::connect(cmdClear, &QPushButton::clicked, list, [list] {
        for (int r = 0; r < ListRows; ++r)
            for (int c = 0; c < 2; ++c)
                delete list->takeItem(r, c);
    });
    QObject::connect(cmdExitExp, &QPushButton::clicked, panel, &QWidget::hide);

    // "E-mail" shows the panel with the chosen order's firm in the first free row.
    QPushButton *cmdEmail = Button(screen, "cmdEmail", QStringLiteral("E-mail"));
    QPushButton *cmdImportObj = Button(screen, "cmdImportObj", QStringLiteral("Import objednávek"));
    commands->addWidget(cmdEmail);
    commands->addWidget(cmdImportObj);
    QObject::connect(cmdEmail, &QPushButton::clicked, screen, [screen, panel, list] {
        panel->show();
        QSqlRecord row;
        if (!screen->CurrentNom() || !ReadRow(screen, screen->CurrentNom(), &row))
            return;
        for (int r = 0; r < ListRows; ++r) {
            if (list->item(r, 0) && !list->item(r, 0)->text().isEmpty())
                continue;
            list->setItem(r, 0, new QTableWidgetItem(row.value(QStringLiteral("cis_obj")).toString()));
            list->setItem(r, 1, new QTableWidgetItem(row.value(QStringLiteral("Firma")).toString()));
            return;
        }
    });
    QObject::connect(cmdImportObj, &QPushButton::clicked, screen, [screen] { ImportFile(screen); });
}
