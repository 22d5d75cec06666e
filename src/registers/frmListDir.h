#pragma once
// "Vybrat adresář...": a folder picker. "Vybrat" puts the folder into DirList; for an
// import (ImportLoad) it is kept in DataPathImp, otherwise the folder settings are saved.

#include <QDialog>
#include <QString>

class QComboBox;
class QFileSystemModel;
class QLineEdit;
class QPushButton;
class QTreeView;

class frmListDir : public QDialog {
    Q_OBJECT
public:
    explicit frmListDir(QWidget *parent = nullptr);

    QString FileList;       // the database file that goes with the folder, when there is one
    QString DataPathImp;
    QString DirList;
    bool ImportLoad = false;

    // Starts in the folder given (else the current DirList, else home).
    void Load(const QString &start = QString());
    void cmdOk_Click();

private:
    void showFolder(const QString &path);

    QComboBox *Drive1;
    QTreeView *Dir1;
    QLineEdit *TextDirList;
    QPushButton *cmdOk, *cmdCancel;
    QFileSystemModel *m_model;
};

// The three folder settings of section "NASTAVENI": "Dir k EXE" kept as the session has it,
// "Dir Lokal" the chosen folder, "Databaze" the database file.
void SaveDirSettings(const QString &dirLokal, const QString &databaze);
