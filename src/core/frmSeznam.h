#pragma once
// A small list screen on one table of the system database: a grid bound to the table,
// add (F7) and delete (F8) through questions, edit of a cell by double-click, Esc closes.
// frmSeznamUs and frmSeznamUz are two such lists.

#include "core/db.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QBoxLayout;
class QModelIndex;
class QPushButton;
class QSqlTableModel;
class QTableView;

// The commands under the grid of a small list, added to its layout: add and delete at the
// left, close at the right, named cmdAdd, cmdDelete and cmdClose, each running its action
// when clicked (frmSeznam, frmKontakty).
struct ListCommands {
    QPushButton *cmdAdd = nullptr, *cmdDelete = nullptr, *cmdClose = nullptr;
};
ListCommands AddListCommands(QWidget *screen, QBoxLayout *layout, const QString &add, const std::function<void()> &onAdd,
                             const QString &remove, const std::function<void()> &onRemove, const QString &close,
                             const std::function<void()> &onClose);

class frmSeznam : public QDialog {
    Q_OBJECT
public:
    ~frmSeznam() override;

    // A shown column: its name in the table, and the input-box prompts for a new row
    // and for an edit of the cell.
    struct Column {
        QString name;
        QString addPrompt;
        QString editPrompt;
    };

    void Add();
    void Delete();
    void Edit(const QModelIndex &index);

protected:
    explicit frmSeznam(QWidget *parent = nullptr);

    // Binds the table; columns other than those given are hidden. Returns false with
    // a message when the table cannot be opened.
    bool bindTable(const QString &table, const QList<Column> &columns, const QString &sortColumn = QString());
    void setDeleteQuestion(const QString &question, const QString &title);
    QSqlTableModel *model() const { return m_model.get(); }

    void keyPressEvent(QKeyEvent *event) override;

private:
    const Column *listed(const QString &fieldName) const;
    bool submit();
    // The grid's headings of the listed columns, so that a refused value is named as shown.
    FieldCaptions captions() const;
    std::optional<QString> ask(const QString &prompt, const QString &title, const QString &value = QString());

    QTableView *DataGrid1;
    ListCommands m_commands;

    QList<Column> m_columns;
    QString m_deleteQuestion;
    QString m_deleteTitle;
    std::unique_ptr<DbConnection> m_connection;
    std::unique_ptr<QSqlTableModel> m_model;   // after the connection: goes first
};
