#pragma once
// "Sklady": the list of warehouses. Creates, renames and removes them, and opens the
// chosen one in the stock screen, or, while a pick is pending, hands it back in mOpenFile
// ("Typ~File") with exec() returning QDialog::Accepted.

#include <QDialog>
#include <QString>

#include <memory>

class DbConnection;
class QPushButton;
class QSqlQueryModel;
class QTableView;
class SkladListModel;

class frmTyp : public QDialog {
    Q_OBJECT
public:
    explicit frmTyp(QWidget *parent = nullptr);
    ~frmTyp() override;

    short VyberSklad = 0;     // -1 when opened from the main window
    QString mOpenFile;
    // A choice goes back to the caller instead of opening the warehouse (a copy, a change
    // of warehouse, order entry).
    bool VyberPending = false;
    // Set before Load: the centre whose warehouses are listed, the user's own unless another is named.
    QString CentreDb;

    bool Load();

    void cmdOk_Click();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdEdit_Click();

    // The chosen warehouse, or an empty one.
    QString currentTyp() const;
    QString currentFile() const;

private:
    void refresh(const QString &file);

    QTableView *DataGrid1;
    QPushButton *cmdOk, *cmdAdd, *cmdDelete, *cmdEdit, *CmdExit;
    std::unique_ptr<DbConnection> m_centre;
    std::unique_ptr<SkladListModel> m_model;
};

// From the main window: the list, modal, with the busy cursor while it loads.
void ShowSklady(QWidget *parent);
