#pragma once
// "Kontakty": the current user's mail addresses with their access data. Passwords are
// shown in the open here and stored scrambled when the screen is closed with "&Ok".

#include <QDialog>
#include <QVector>

#include "core/frmSeznam.h"
#include "registers/kontakty.h"

class QTableWidget;

class frmKontakty : public QDialog {
    Q_OBJECT
public:
    explicit frmKontakty(QWidget *parent = nullptr);

    bool Load();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdClose_Click();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fill();
    QVector<Kontakt> fromGrid() const;

    QTableWidget *DataGrid1;
    ListCommands m_commands;
    QVector<Kontakt> m_rows;
};
