#pragma once
// "Výdej": the journal of issues of one warehouse (OpenFile "Typ~File"; empty for all),
// by name and catalogue number, read a page at a time as the grid scrolls, with the
// printed summary of the whole journal.

#include <QDialog>
#include <QString>

#include <memory>

class DbConnection;
class QLabel;
class QPushButton;
class JournalModel;
class QTableView;

class frmVydeji : public QDialog {
    Q_OBJECT
public:
    explicit frmVydeji(QWidget *parent = nullptr);
    ~frmVydeji() override;

    QString OpenFile;
    // Set before Load: the centre whose journal is shown, the user's own unless another is named.
    QString CentreDb;

    bool Load();
    // "Tisk výdeju": the summary into the scratch folder, then the viewer. Returns the file.
    QString cmdArchVyd_Click();

private:
    void showPosition();

    QLabel *Label3;
    QLabel *lblZaznam;
    QTableView *DataGrid1;
    QPushButton *cmdArchVyd, *cmdClose;
    std::unique_ptr<DbConnection> m_centre;
    std::unique_ptr<JournalModel> m_model;   // reads through m_centre: goes first
};

// From the main window: the journal of every warehouse.
void ShowVydeji(QWidget *parent);
