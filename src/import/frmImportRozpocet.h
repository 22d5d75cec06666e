#pragma once
// "Import poskytnutých rozpočtových částek": reads the budget export into RozpocetFakt and
// sums each grant's CZK amounts of the accounts in the filter into GrantyPlan.Poskytnute.

#include <QDialog>
#include <QString>

class QLineEdit;
class QProgressBar;
class QPushButton;
class QLabel;

class frmImportRozpocet : public QDialog {
    Q_OBJECT
public:
    explicit frmImportRozpocet(QWidget *parent = nullptr);
    void cmdOpenFile_Click();
    void cmdImportAct_Click();

private:
    QString m_file;
    QLineEdit *txtUcty;
    QLabel *lblOpenFile;
    QProgressBar *ProgressBar1;
    QPushButton *cmdOpenFile, *cmdDefinice, *cmdImportAct, *Command1;
};

void ShowImportRozpocet(QWidget *parent);
