#include "core/frmSeznam.h"

#include "core/db.h"
#include "core/msg.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QSqlRecord>
#include <QSqlTableModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const QString &AddTitle()
{
    static const QString title = QStringLiteral("Přidat položku");
    return title;
}
} // namespace

ListCommands AddListCommands(QWidget *screen, QBoxLayout *layout, const QString &add, const std::function<void()> &onAdd,
                             const QString &remove, const std::function<void()> &onRemove, const QString &close,
                             const std::function<void()> &onClose)
{
    const auto named = [screen](const char *name, const QString &caption, const std::function<void()> &action) {
        auto *b = new QPushButton(caption, screen);
        b->setObjectName(QLatin1String(name));
        QObject::connect(b, &QPushButton::clicked, screen, action);
        return b;
    };
    const ListCommands commands{named("cmdAdd", add, onAdd), named("cmdDelete", remove, onRemove),
                                named("cmdClose", close, onClose)};
    auto *row = new QHBoxLayout;
    row->addWidget(commands.cmdAdd);
    row->addWidget(commands.cmdDelete);
    row->addStretch();
    row->addWidget(commands.cmdClose);
    layout->addLayout(row);
    return commands;
}

frmSeznam::frmSeznam(QWidget *parent)
    : QDialog(parent)
{
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->horizontalHeader()->setStretchLastSection(true);
    DataGrid1->verticalHeader()->hide();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(DataGrid1, 1);
    m_commands = AddListCommands(this, layout, QStringLiteral("F7-&Přidat"), [this] { Add(); }, QStringLiteral("F8-&Smazat"),
                                 [this] { Delete(); }, QStringLiteral("&Zavřít"), [this] { close(); });
    resize(460, 380);
    connect(DataGrid1, &QTableView::doubleClicked, this, &frmSeznam::Edit);
}

frmSeznam::~frmSeznam() = default;

bool frmSeznam::bindTable(const QString &table, const QList<Column> &columns, const QString &sortColumn)
{
    m_columns = columns;
    m_connection = std::make_unique<DbConnection>(ConnStrSys());
    if (!m_connection->isOpen()) {
        MsgBox(QStringLiteral("Nelze se připojit k databázi: %1").arg(m_connection->errorText()), MsgCritical);
        return false;
    }
    m_model = std::make_unique<QSqlTableModel>(nullptr, m_connection->db());
    m_model->setEditStrategy(QSqlTableModel::OnManualSubmit);
    m_model->setTable(table);
    const int sort = m_model->fieldIndex(sortColumn);
    if (sort >= 0)
        m_model->setSort(sort, Qt::AscendingOrder);
    if (!m_model->select()) {
        MsgBox(DbErrorMessage(m_model->lastError()), MsgCritical);
        return false;
    }
    DataGrid1->setModel(m_model.get());
    const QSqlRecord record = m_model->record();
    for (int field = 0; field < record.count(); ++field)
        DataGrid1->setColumnHidden(field, !listed(record.fieldName(field)));
    return true;
}

const frmSeznam::Column *frmSeznam::listed(const QString &fieldName) const
{
    for (const Column &c : m_columns)
        if (fieldName.compare(c.name, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

void frmSeznam::setDeleteQuestion(const QString &question, const QString &title)
{
    m_deleteQuestion = question;
    m_deleteTitle = title;
}

std::optional<QString> frmSeznam::ask(const QString &prompt, const QString &title, const QString &value)
{
    // A cancelled box and an empty answer both leave the list as it is.
    std::optional<QString> answer = InputBox(prompt, title, value);
    if (answer && answer->trimmed().isEmpty())
        return std::nullopt;
    return answer;
}

FieldCaptions frmSeznam::captions() const
{
    FieldCaptions captions;
    for (const Column &c : m_columns)
        captions.insert(c.name, m_model->headerData(m_model->fieldIndex(c.name), Qt::Horizontal).toString());
    return captions;
}

bool frmSeznam::submit()
{
    if (m_model->submitAll())
        return true;
    MsgBox(DbErrorMessage(m_model->lastError(), captions()), MsgCritical);
    m_model->revertAll();
    return false;
}

void frmSeznam::Add()
{
    if (!m_model)
        return;
    QSqlRecord record = m_model->record();
    // The key and the columns not listed are left to the server.
    for (int field = 0; field < record.count(); ++field)
        record.setGenerated(field, listed(record.fieldName(field)) != nullptr);
    for (const Column &c : m_columns) {
        const std::optional<QString> value = ask(c.addPrompt, AddTitle());
        if (!value)
            return;
        record.setValue(c.name, *value);
    }
    if (!m_model->insertRecord(-1, record)) {
        MsgBox(DbErrorMessage(m_model->lastError(), captions()), MsgCritical);
        return;
    }
    submit();
}

void frmSeznam::Delete()
{
    if (!m_model)
        return;
    // Like a data control, the list always stands on a row: the chosen one, else the first.
    const int row = DataGrid1->currentIndex().isValid() ? DataGrid1->currentIndex().row() : 0;
    if (row >= m_model->rowCount())
        return;
    if (!Confirmed(MsgBox(m_deleteQuestion, MsgQuestionOkCancel, m_deleteTitle)))
        return;
    m_model->removeRow(row);
    submit();
}

void frmSeznam::Edit(const QModelIndex &index)
{
    if (!m_model || !index.isValid())
        return;
    const Column *column = listed(m_model->record().fieldName(index.column()));
    if (!column)
        return;
    const std::optional<QString> value =
        ask(column->editPrompt, QStringLiteral("Editovat položku"), m_model->data(index).toString());
    if (value && m_model->setData(index, *value))
        submit();
}

void frmSeznam::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_F7: m_commands.cmdAdd->click(); return;
    case Qt::Key_F8: m_commands.cmdDelete->click(); return;
    case Qt::Key_Escape: m_commands.cmdClose->click(); return;
    default: QDialog::keyPressEvent(event);
    }
}
