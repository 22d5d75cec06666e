#pragma once
// "Seznam zádanek": the working list of a centre's orders, a page of 28 at a time in a
// coloured grid, filtered by state, grant and year; the detail of the chosen order, where
// the later facts (official number, dates, prices) are typed and saved by role; copy,
// delete, the handover to the pharmacy and the drawdown report.

#include "core/db.h"
#include "orders/objlist.h"

#include <QDialog>
#include <QList>
#include <QSet>

#include <array>
#include <functional>
#include <optional>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
class ObjTextEditor;

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

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildUi();
    void fillLists();
    void paintRow(int gridRow);
    void enterRow(int gridRow);
    void clearDetail();
    void applyRole();
    bool SaveByRole();
    void amountLeft();
    void toggleChosen();
    void toggleHandover(int gridRow);
    void cmdCopy_Click();
    void cmdDelete_Click();
    void cmdView_Click();
    void cmdCerpani_Click();
    void cmdLekarna_Click();
    void cmdSaveHTML_Click();
    void pickDate(QLineEdit *box);

    QString m_db;               // the centre's database
    int m_role = 1;             // the role the list is seen with (cmdLekarna switches to 3)
    int m_page = 0, m_pages = 0, m_total = 0;
    int m_nom = 0;              // the order in the detail
    short m_typ = 0;
    bool m_filling = false;     // stops re-entry while the grid is refilled
    QList<ObjListRow> m_rows;
    QSet<int> m_chosen;
    QString m_nextNumber;
    ObjFilter m_filter;         // the filter of the list shown
    FieldCaptions m_captions;   // the detail boxes' labels, for a value the server refuses

    QTableWidget *MSFlexGrid2;
    QComboBox *Combo2, *Combo5, *cmbStrediska, *Combo1;
    QLabel *lblSelStredisko, *Label20, *Label21, *lblDruh;
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
