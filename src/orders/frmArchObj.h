#pragma once
// "Seznam zádanek": the working list of a centre's orders, a page of 28 at a time in a
// coloured grid, filtered by state, grant and year; the detail of the chosen order, where
// the later facts (official number, dates, prices) are typed and saved by role; copy,
// delete, the handover to the pharmacy and the drawdown report.

#include "core/db.h"
#include "orders/objlist.h"

#include <QDialog>
#include <QHash>
#include <QList>
#include <QSet>

#include <array>
#include <functional>
#include <optional>
#include <utility>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class ObjListModel;
class ObjTextEditor;
enum class ObjWrite;

class frmArchObj : public QDialog {
    Q_OBJECT
public:
    explicit frmArchObj(QWidget *parent = nullptr);

    // Reads the lists and shows the last page.
    void Load();

    // The filter and the page shown.
    void FilterObj(const QString &field = QStringLiteral("Grant"));
    void FillPage(int page);
    void ShowObj(int nom);

    // The export panel of the exchange files lives beside the detail, in this frame.
    QFrame *Frame6 = nullptr;

    int CurrentNom() const { return m_nom; }
    QString CentreDb() const { return m_db; }
    int Role() const { return m_role; }

    // The date picker of the calendar buttons: the chosen date, nothing when cancelled.
    std::function<std::optional<QString>(QWidget *, const QString &)> DatePicker;
    // The stock pick of cmdSklad for a goods line's name, in the centre of the list: the
    // warehouses holding such goods, then the stock screen. The warehouse ("Typ~File") and the
    // item's "~"-line; nothing when cancelled.
    std::function<std::optional<std::pair<QString, QString>>(QWidget *, const QString &centreDb, const QString &name)>
        SkladPicker;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildUi();
    void fillLists();
    void paintRow(int gridRow);
    // The grid row's order, read with its neighbours when first painted.
    const ObjListRow &rowAt(int gridRow);
    int currentRow() const;
    void selectRow(int gridRow);
    void enterRow(int gridRow);
    void clearDetail();
    void applyRole();
    bool SaveByRole();
    // After a save of the row: the message of a failure, the list again when the row is gone,
    // else the grid's row read again. True when saved.
    bool afterWrite(DbConnection &conn, ObjWrite result);
    void amountLeft();
    void toggleChosen();
    void toggleHandover(int gridRow);
    void cmdCopy_Click();
    void cmdDelete_Click();
    void cmdView_Click();
    void cmdCerpani_Click();
    void cmdLekarna_Click();
    void cmdSaveHTML_Click();
    void cmdSklad_Click(int line);
    void Combo1_Click(int index);
    void putIntoTray();
    void pickDate(QLineEdit *box);

    QString m_db;               // the centre's database
    QString m_checkedDb;        // the database whose status columns were looked for, and
    bool m_upToDate = true;     // whether it has them (one of an earlier version may not)
    int m_role = 1;             // the role the list is seen with (cmdLekarna switches to 3)
    int m_page = 0, m_pages = 0, m_total = 0;
    int m_nom = 0;              // the order in the detail
    short m_typ = 0;
    bool m_filling = false;     // stops re-entry while the grid is refilled
    QList<int> m_keys;          // the grid's rows: the page's, or a status list's all
    QHash<int, ObjListRow> m_cache;   // the rows read so far, by key
    ObjSums m_sums;             // Label20 and Label21
    QSet<int> m_chosen;
    QString m_nextNumber;
    ObjFilter m_filter;         // the filter of the list shown
    FieldCaptions m_captions;   // the detail boxes' labels, for a value the server refuses

    QTableView *MSFlexGrid2;
    ObjListModel *m_model;
    QComboBox *Combo2, *Combo5, *cmbStrediska, *Combo1;
    QLabel *lblSelStredisko, *Label20, *Label21, *lblDruh, *lblVyrizuje;
    std::array<QLabel *, 8> txtLabel1{};
    std::array<QPushButton *, 8> cmdSklad{};
    QLineEdit *txtPage, *txtPages;
    QLineEdit *Text6, *Text2, *Text8, *Text7, *Text9, *txtDatObj, *txtGrant, *txtCena, *txtCastka, *txtZauct,
        *txtPrijemce, *txtHrazeno, *Text4, *txtPozn, *Text5;
    std::array<QLineEdit *, 43> txtFields{};
    std::array<QLineEdit *, 9> txtData{};
    std::array<QLineEdit *, 5> Text1{};
    QFrame *FrameZbozi, *FrameText, *FrameForm;
    ObjTextEditor *editor;
    QPushButton *cmdView, *cmdPDFForm, *cmdCopy, *cmdDelete, *cmdTransfer, *cmdArchiv, *cmdRefresh, *cmdRozpocet,
        *cmdCerpani, *cmdLekarna, *cmdTop, *cmdBot, *cmdUp, *cmdDown, *cmdFind, *cmdClose, *Command3, *cmdEdit,
        *cmdSaveHTML, *Command2, *cmdPristup;
};

void ShowArchObj(QWidget *parent);
