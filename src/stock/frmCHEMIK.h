#pragma once
// "Sklad": one warehouse table at a time, for a chosen year, with every movement: new
// items, edits, receipts, issues (with the journal row), deletes, copies to another
// warehouse, searches here and in all warehouses, and the pick of an item for an order.
//
// Pick interface for order entry: set OpenFile ("Typ~File" of the warehouse) and
// VyberObjedn = true, call Load() and exec(). When it returns QDialog::Accepted,
// mLineInput holds the item (see PickLine: piece 0 the name with its packaging,
// 2 the unit, 3 the price) and OpenFile the warehouse it came from.

#include <QDialog>
#include <QString>
#include <QVariantList>
#include <QVector>

#include <memory>

class DbConnection;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class StockGridModel;
struct ObjednFilter;

class frmCHEMIK : public QDialog {
    Q_OBJECT
public:
    explicit frmCHEMIK(QWidget *parent = nullptr);
    ~frmCHEMIK() override;

    QString OpenFile;
    short TypeLoad = 0;
    bool ChangeCena = false;
    bool ChangeNazev = false;
    bool ChangeBaleni = false;
    QString mLineInput;
    bool VyberObjedn = false;
    // Set before Load: only the goods whose name starts with this text ("*" any text), of every year.
    QString NazevFilter;
    // Set before Load: the centre whose warehouses are shown, the user's own unless another is named.
    // The screens opened from here work on the same centre.
    QString CentreDb;
    short ParamAkce = 0;   // 0 none, 1 edit, 2 receipt, 3 issue

    bool Load();

    // The commands, as the buttons run them.
    void cmdAdd_Click();
    void Command2_Click();
    void cmdSave_Click();
    void cmdDelete_Click();
    void cmdFind_Click();
    void cmdFindAll_Click();
    void cmdVyber_Click();
    void cmdCopy_Click();
    void cmdPrijem_Click();
    void cmdVydej_Click();
    void cmdSaveVydej_Click();
    void cmdKalendar_Click();
    void cmdKalendar2_Click();
    void cmdSklady_Click();
    void cmdArchVyd_Click();
    // The summaries of ordered goods; each returns the file written (empty when none).
    QString cmdOrder_Click();
    QString cmdArchObjedn_Click();
    QString cmdPolozkaObjedn_Click();

    // The grid's current item (0: none) and the table shown.
    quint32 currentNom() const;
    QString tableName() const { return m_file; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool bindSklad(const QString &openFile);
    void refresh(quint32 nom);
    void FillYears();
    int year() const;       // the year chosen in Combo5
    QVariantList years() const;   // the grid's year filter: Combo5 to Combo2
    void sortOn(int column);
    void confirmReceipt();
    void showIssueBalance();
    QString value(const char *column) const;
    QString skladName() const;
    void fail(const QString &error);
    QString writeObjedn(const ObjednFilter &filter);

    QLabel *Label1;
    QComboBox *Combo5, *Combo2;
    QTableView *DataGrid1;
    QLineEdit *Text4, *Text8, *Text5, *Text6, *Text2, *Text7, *Text9, *Text3;
    QComboBox *Combo1;
    QFrame *FramePrijem;
    QLabel *lblPrijem;
    QLineEdit *TypBal1, *TypBal2;
    QFrame *Frame5;
    QLineEdit *txtNazevVydej, *txtKatalVydej, *txtMira, *txtDatVyd, *Text10, *Text11, *txtMnoz, *txtKomuVydej;
    QLabel *lblStavVydej;
    QLabel *lblTip;
    QPushButton *cmdAdd, *Command2, *cmdDelete, *cmdFind, *cmdFindAll, *cmdVyber, *cmdCopy, *cmdOrder,
        *cmdArchVyd, *cmdPrijem, *cmdVydej, *cmdSave, *cmdTransfer, *cmdArchObjedn, *cmdPolozkaObjedn, *cmdSklady,
        *cmdClose, *cmdKalendar, *cmdKalendar2, *cmdSaveVydej;

    QString m_file;
    QString m_sort = QStringLiteral("Nazev ASC");
    QString m_nameFilter;          // after a search in all warehouses
    quint32 m_editNom = 0;
    double m_issueBalance = 0;
    std::unique_ptr<DbConnection> m_centre;
    std::unique_ptr<StockGridModel> m_model;
};
