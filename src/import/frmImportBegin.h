#pragma once
// "Importována data": reads the list of all accounts into memImport and opens the tree
// builder; opened with VyberUcet it is the account picker of the group catalogue.

#include <QDialog>
#include <QString>
#include <QStringList>

class ImportRowsModel;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;

class frmImportBegin : public QDialog {
    Q_OBJECT
public:
    explicit frmImportBegin(QWidget *parent = nullptr);

    bool VyberUcet = false;        // the picker: cmdVyber hands the selected accounts back
    bool VyberUcetInsert = false;
    void Load();
    // The accounts chosen with cmdVyber.
    QStringList selectedAccounts() const { return m_selected; }

    void cmdOpenFile_Click();
    void cmdImportAct_Click();

private:
    void cmdFind_Click();
    void cmdVyber_Click();
    void showCount();

    QString m_file;
    bool m_running = false;
    bool m_cancel = false;
    QStringList m_selected;
    ImportRowsModel *m_model;
    QTableView *DataGrid1;
    QLabel *Label2, *Label3, *lblDatOd, *lblDatDo;
    QLineEdit *Text1;
    QProgressBar *ProgressBar1;
    QPushButton *cmdOpenFile, *cmdImportAct, *cmdFind, *cmdVyber, *cmdClose;
};

void ShowImportBegin(QWidget *parent);
// The picker of frmStavyUctu.cmdInsert: the accounts chosen, none when cancelled.
QStringList PickAccounts(QWidget *parent);
