#include "documents/frmDocuments.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QUrl>
#include <QVBoxLayout>

const QStringList &DocumentFileFilters()
{
    static const QStringList filters{QStringLiteral("Documents Files (*.pdf;*.doc;*.xls;*docx;*.xlsx)"),
                                     QStringLiteral("Graphic Files (*.jpg;)")};
    return filters;
}

namespace {
// The file dialog reads patterns apart by blanks; the captions keep their ";".
QString dialogFilter(const QStringList &filters)
{
    QStringList forDialog;
    for (QString f : filters)
        forDialog << f.replace(QLatin1Char(';'), QLatin1Char(' ')).replace(QLatin1String(" )"), QLatin1String(")"));
    return forDialog.join(QLatin1String(";;"));
}

// A command's database work on a connection of its own; a refusal is said and gives false.
bool onGranty(const std::function<bool(DbConnection &)> &work)
{
    DbConnection conn(ConnStrGranty());
    if (!OpenOrFatal(conn))
        return false;
    if (work(conn))
        return true;
    MsgBox(conn.errorText(), MsgCritical);
    return false;
}

QPushButton *command(QWidget *screen, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, screen);
    b->setObjectName(QLatin1String(name));
    return b;
}
} // namespace

frmDocuments::frmDocuments(const QString &grant, QWidget *parent) : QDialog(parent), m_grant(grant)
{
    setWindowTitle(QStringLiteral("Dokumenty GRANTu %1").arg(grant));
    resize(900, 520);

    ChooseFile = [](QWidget *owner, const QStringList &filters) {
        return QFileDialog::getOpenFileName(owner, QString(), QString(), dialogFilter(filters));
    };
    OpenFile = [](const QString &path) {
        if (!qEnvironmentVariableIsSet("FONDARIX_NO_BROWSER"))
            QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };

    MSFlexGrid1 = new QTableWidget(0, 5, this);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    MSFlexGrid1->setHorizontalHeaderLabels({QStringLiteral("  GRANT"), QStringLiteral("          Název dokumentu"),
                                            QStringLiteral("  Uloženo"), QStringLiteral("                Soubor"),
                                            QStringLiteral(" Typ")});
    MSFlexGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    MSFlexGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    MSFlexGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid1->verticalHeader()->hide();
    MSFlexGrid1->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    MSFlexGrid1->setColumnWidth(1, 260);
    MSFlexGrid1->setColumnWidth(2, 140);
    connect(MSFlexGrid1, &QTableWidget::currentCellChanged, this, &frmDocuments::showRow);

    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text8 = new QLineEdit(this);
    Text8->setObjectName(QStringLiteral("Text8"));
    lblFile = new QLabel(this);
    lblFile->setObjectName(QStringLiteral("lblFile"));

    cmdNew = command(this, "cmdNew", QStringLiteral("Nový záznam"));
    cmdFile = command(this, "cmdFile", QStringLiteral("Vybrat soubor..."));
    cmdSave = command(this, "cmdSave", QStringLiteral("Uložit"));
    cmdView = command(this, "cmdView", QStringLiteral("Zobrazit"));
    cmdDelFile = command(this, "cmdDelFile", QStringLiteral("Smazat soubor"));
    cmdDelete = command(this, "cmdDelete", QStringLiteral("Smazat záznam"));
    cmdClose = command(this, "cmdClose", QStringLiteral("Zavřít"));
    connect(cmdNew, &QPushButton::clicked, this, &frmDocuments::cmdNew_Click);
    connect(cmdFile, &QPushButton::clicked, this, &frmDocuments::cmdFile_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmDocuments::cmdSave_Click);
    connect(cmdView, &QPushButton::clicked, this, &frmDocuments::cmdView_Click);
    connect(cmdDelFile, &QPushButton::clicked, this, &frmDocuments::cmdDelFile_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmDocuments::cmdDelete_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::close);

    auto *fields = new QGridLayout;
    // The labels of the two boxes are the captions of the columns they are saved to.
    const QString nameLabel = QStringLiteral("Název dokumentu:");
    const QString fileLabel = QStringLiteral("Soubor k uložení:");
    m_captions = {{QStringLiteral("param1"), CaptionOf(nameLabel)}, {QStringLiteral("file"), CaptionOf(fileLabel)}};
    fields->addWidget(new QLabel(nameLabel), 0, 0);
    fields->addWidget(Text1, 0, 1, 1, 2);
    fields->addWidget(new QLabel(fileLabel), 1, 0);
    fields->addWidget(Text8, 1, 1);
    fields->addWidget(cmdFile, 1, 2);
    fields->addWidget(new QLabel(QStringLiteral("Uložený soubor:")), 2, 0);
    fields->addWidget(lblFile, 2, 1, 1, 2);
    fields->setColumnStretch(1, 1);

    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdNew, cmdSave, cmdView, cmdDelFile, cmdDelete})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MSFlexGrid1, 1);
    layout->addLayout(fields);
    layout->addLayout(buttons);
}

void frmDocuments::Load() { fill(0); }

const DocumentRow *frmDocuments::current() const
{
    const int row = MSFlexGrid1->currentRow();
    return row >= 0 && row < m_rows.size() ? &m_rows[row] : nullptr;
}

void frmDocuments::fill(qint64 selectId)
{
    QVector<DocumentRow> rows;
    if (!onGranty([&](DbConnection &conn) { return ListDocuments(conn, m_grant, &rows); }))
        return;
    m_rows = rows;
    const QSignalBlocker block(MSFlexGrid1);
    MSFlexGrid1->setRowCount(int(rows.size()));
    int select = rows.isEmpty() ? -1 : 0;
    for (int i = 0; i < rows.size(); ++i) {
        const DocumentRow &r = rows[i];
        const QStringList cells{r.grant, r.name, r.saved, r.file, DocumentType(r.file)};
        for (int c = 0; c < cells.size(); ++c)
            MSFlexGrid1->setItem(i, c, new QTableWidgetItem(cells[c]));
        if (r.id == selectId)
            select = i;
    }
    MSFlexGrid1->setCurrentCell(select, 0);
    showRow();
}

void frmDocuments::showRow()
{
    const DocumentRow *r = current();
    Text1->setText(r ? r->name : QString());
    Text8->clear();
    lblFile->setText(r && !r->file.isEmpty() ? QStringLiteral("%1 (%2 bajtů)").arg(r->file).arg(r->size) : QString());
    for (QPushButton *b : {cmdFile, cmdSave, cmdDelete})
        b->setEnabled(r);
    cmdView->setEnabled(r && !r->file.isEmpty());
    cmdDelFile->setEnabled(r && !r->file.isEmpty());
}

void frmDocuments::cmdNew_Click()
{
    qint64 id = 0;
    if (onGranty([&](DbConnection &conn) { return NewDocumentRow(conn, m_grant, DocumentTimestamp(), &id); }))
        fill(id);
}

void frmDocuments::cmdFile_Click()
{
    const QString path = ChooseFile(this, DocumentFileFilters());
    if (!path.isEmpty())
        Text8->setText(path);
}

void frmDocuments::cmdSave_Click()
{
    const DocumentRow *r = current();
    if (!r)
        return;
    const qint64 id = r->id;
    const QString path = Text8->text().trimmed();
    DbConnection conn(ConnStrGranty());
    if (!OpenOrFatal(conn))
        return;
    conn.setCaptions(m_captions);
    const DocumentResult result = path.isEmpty()
        ? StoreDocumentTexts(conn, id, Text1->text(), DocumentTimestamp())
        : StoreDocumentFile(conn, id, m_grant, path, Text1->text(), DocumentTimestamp(), Session().TempDir);
    MsgBox(result.message, result.ok ? MsgInformation : MsgCritical);
    if (result.ok)
        fill(id);
}

void frmDocuments::cmdView_Click()
{
    const DocumentRow *r = current();
    if (!r)
        return;
    QString error;
    std::optional<QString> path;
    if (!onGranty([&](DbConnection &conn) {
            path = FetchDocument(conn, r->id, Session().TempDir, Session().TempDir, &error);
            return true;
        }))
        return;
    if (!path) {
        MsgBox(error, MsgCritical);
        return;
    }
    OpenFile(*path);
}

void frmDocuments::cmdDelFile_Click()
{
    const DocumentRow *r = current();
    if (!r)
        return;
    const qint64 id = r->id;
    if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete smazat soubor: %1?").arg(DocumentFileName(r->file)),
                          MsgQuestionOkCancel, QStringLiteral("Informace"))))
        return;
    if (onGranty([&](DbConnection &conn) { return ClearDocumentFile(conn, id); }))
        fill(id);
}

void frmDocuments::cmdDelete_Click()
{
    const DocumentRow *r = current();
    if (!r)
        return;
    const qint64 id = r->id;
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu smazat záznam a soubor?"), MsgQuestionOkCancel,
                          QStringLiteral("Delete row"))))
        return;
    if (onGranty([&](DbConnection &conn) { return DeleteDocument(conn, id); }))
        fill(0);
}

void ShowDocuments(QWidget *parent, const QString &grant)
{
    frmDocuments screen(grant, parent);
    screen.Load();
    screen.exec();
}
