#pragma once
// Editing of the program's users. The administrator sees and edits every row; anybody
// else sees the own row and may change only the title and the password.

#include "core/users.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableWidget;

class frmLoginUser : public QDialog {
    Q_OBJECT
public:
    explicit frmLoginUser(QWidget *parent = nullptr);

    // Mode of the one routine behind the three commands.
    enum class UsersMode { Add, Save, Delete };
    void Users(UsersMode mode);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void FillUsers(int filterTyp);
    void showRow(int row);
    void setRowCells(int row);
    int rowOfKey(int key) const;
    void clearFields();
    void pickGrant(int index);
    UserRow rowFromFields() const;

    QTableWidget *MSFlexGrid1;
    QLineEdit *txtPrijmeni;
    QLineEdit *txtJmeno;
    QLineEdit *txtTitul;
    QLineEdit *txtUser;
    QLineEdit *txtHeslo;
    QLineEdit *txtFiltr;
    QLineEdit *txtIDPac;
    QComboBox *cmbTyp0;    // the role of the row
    QComboBox *cmbTyp1;    // the role filter of the grid
    QComboBox *Combo2;     // grants to add to the filter
    QPushButton *cmdAdd;
    QPushButton *cmdSave;
    QPushButton *cmdDelete;
    QPushButton *cmdClose;

    QVector<UserRow> m_rows;   // the grid's rows, _key included
    FieldCaptions m_captions;  // the boxes' labels, for a value the server refuses
};
