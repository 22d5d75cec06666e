#pragma once
// "Objednávka": entry of an order of goods (SKLAD), in formatted text (TEXT) or of services
// (SLUŽBY). The number is reserved when the screen opens; nearly every change saves the row,
// so that the database always follows the screen.

#include "orders/objsave.h"

#include <QDialog>

#include <array>
#include <functional>
#include <optional>
#include <utility>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;
class ObjTextEditor;

// The stock screen as the picker of an order's goods line, on the warehouse ("Typ~File") of
// the centre (the user's own when empty), with only the goods whose name starts with
// nameFilter when one is given. The warehouse the item came from and the item's "~"-line;
// nothing when cancelled.
std::optional<std::pair<QString, QString>> PickStockLine(QWidget *parent, const QString &warehouse,
                                                         const QString &nameFilter = QString(),
                                                         const QString &centreDb = QString());

class frmTvorObj : public QDialog {
    Q_OBJECT
public:
    explicit frmTvorObj(QWidget *parent = nullptr);

    short TypObjedn = 1;    // 1 SKLAD, 2 TEXT, 5 SLUŽBY
    QString ExportLoad;

    // Fills the lists, reserves the number and shows what the kind needs; false when the
    // centre's database cannot be reached (a message has been shown).
    bool Open();
    // Saves the row as the screen shows it; false when nothing was saved (a message says why).
    bool SaveObj();
    QString Number() const;

    // The pickers the screen opens (tests replace them): the calendar of cmdKalendar; the firm
    // card file (seven "#"-separated pieces); the list of warehouses ("Typ~File"); the stock
    // screen of a warehouse (the warehouse the item came from and its "~"-separated line).
    std::function<std::optional<QString>(QWidget *, const QString &)> DatePicker;
    std::function<std::optional<QString>(QWidget *)> FirmPicker;
    std::function<std::optional<QString>(QWidget *)> WarehousePicker;
    std::function<std::optional<std::pair<QString, QString>>(QWidget *, const QString &warehouse)> StockPicker;

private:
    ObjEntry entry() const;
    void recalk();
    void addRow();
    void deleteRow();
    void pickWarehouse();
    void pickStock();
    void pickFirm();
    void dateLeft();
    void cmdSave_Click();
    void cmdView_Click();
    bool eventFilter(QObject *watched, QEvent *event) override;

    bool m_loading = false;
    QString m_warehouse;

    QLineEdit *txtObjCislo, *datDatum, *txtStredisko, *txtGrant, *Text3, *txtPozn, *txtCena, *Text1;
    std::array<QLineEdit *, 7> txtField{};
    QComboBox *Combo1, *Combo4;
    QTableWidget *MSHFlexGrid1;
    QLabel *Label13;
    QFrame *FrameGoods, *Frame5;
    QPlainTextEdit *Text2;
    ObjTextEditor *editor;
    QPushButton *cmdSave, *cmdView, *cmdClose, *cmdFirmy, *cmdKalendar, *cmdRecalk, *cmdAddRow, *cmdDel, *cmdSklady,
        *cmdSelect, *cmdPageSetup, *cmdSetup;
};

// The main window's commands: SKLAD, TEXT and SLUŽBY.
void ShowTvorObj(QWidget *parent, short typObjedn);
