#pragma once
// "Dokumenty": the files of one grant. A row is a document with its name; a file is stored
// into it (cmdSave), viewed (cmdView) or dropped again (cmdDelFile, the row stays).

#include "core/db.h"
#include "documents/documents.h"

#include <QDialog>
#include <QStringList>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

// The two filters of the file choice, as the dialog lists them.
const QStringList &DocumentFileFilters();

class frmDocuments : public QDialog {
    Q_OBJECT
public:
    explicit frmDocuments(const QString &grant, QWidget *parent = nullptr);

    // The file choice: the chosen path, empty when cancelled. A dialog unless replaced.
    std::function<QString(QWidget *, const QStringList &filters)> ChooseFile;
    // Opens an unpacked file with the system's application (not under tests).
    std::function<void(const QString &path)> OpenFile;

    void Load();
    // The row shown in the fields, or nothing.
    const DocumentRow *current() const;

private:
    void fill(qint64 selectId);
    void showRow();
    void cmdNew_Click();
    void cmdFile_Click();
    void cmdSave_Click();
    void cmdView_Click();
    void cmdDelFile_Click();
    void cmdDelete_Click();

    QString m_grant;
    FieldCaptions m_captions;   // the boxes' labels, for a value the server refuses
    QVector<DocumentRow> m_rows;

    QTableWidget *MSFlexGrid1;
    QLineEdit *Text1;   // the document's name
    QLineEdit *Text8;   // the file to store
    QLabel *lblFile;    // the file stored now
    QPushButton *cmdNew, *cmdFile, *cmdSave, *cmdView, *cmdDelFile, *cmdDelete, *cmdClose;
};

// Opens the documents of the grant, modal.
void ShowDocuments(QWidget *parent, const QString &grant);
