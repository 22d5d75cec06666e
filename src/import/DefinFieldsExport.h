#pragma once
// The two screens that edit the column positions of the exports: DefinFieldsExport for
// the movement export (ten rows), frmDefinFieldsExp for the account list (five rows).
// Both are "Pozice pole v souboře při importu"; they differ only in their rows.

#include <QDialog>
#include <QString>
#include <QVector>

class QLineEdit;
class QPushButton;

class PoziceScreen : public QDialog {
    Q_OBJECT
public:
    // The sample file for cmdFile; when empty, cmdFile asks with the file dialog.
    QString SampleFile;

protected:
    PoziceScreen(int kind, QWidget *parent);
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadRows();
    void cmdFileClick();
    void cmdCloseClick();
    QString chooseSample();
    QVector<QString> numbers() const;
    QVector<QString> headings() const;
    // Shows the message and keeps the focus in the box when its number is malformed.
    bool checkCod(QLineEdit *box);
    bool allCodsValid();

    int m_kind;
    QVector<QLineEdit *> m_cod;
    QVector<QLineEdit *> m_name;
    QPushButton *cmdFile;
    QPushButton *cmdClose;
    bool m_checking = false;
};

class DefinFieldsExport : public PoziceScreen {
    Q_OBJECT
public:
    explicit DefinFieldsExport(QWidget *parent = nullptr);
};

class frmDefinFieldsExp : public PoziceScreen {
    Q_OBJECT
public:
    explicit frmDefinFieldsExp(QWidget *parent = nullptr);
};

// Open the screens modally (command cmdDefinice of the import screens, the main menu).
void ShowDefinFieldsExport(QWidget *parent);
void ShowDefinFieldsExp(QWidget *parent);
