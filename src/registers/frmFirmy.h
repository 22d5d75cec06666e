#pragma once
// "Seznam firem": the firm card file, a register from the main window and a picker for
// order entry and the stock screen.
//
// Pick interface: set VyberSet = true, call Load() and exec(). After it closes, CancelForm
// tells whether the user left without a pick; otherwise
//   ObjednFirma           Firma#Pobocka#address#PSC#Mesto#Tel#Fax (see ObjednFirmaRecord)
//   VyberFirmaInsert      Firma
//   VyberPoznamInsert     Poznam
//   VyberZKataloguInsert  Pobocka, the line orders print as "Z katalogu:"
// and exec() returns QDialog::Accepted.

#include <QDialog>
#include <QString>
#include <QVector>

#include <memory>

class DbConnection;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSqlQueryModel;
class QTableView;

class frmFirmy : public QDialog {
    Q_OBJECT
public:
    explicit frmFirmy(QWidget *parent = nullptr);
    ~frmFirmy() override;

    bool CancelForm = false;
    QString ObjednFirma;
    QString VyberPoznamInsert;
    QString VyberZKataloguInsert;
    QString VyberFirmaInsert;
    bool VyberSet = false;

    // Opens the table; false (after a message) when it cannot be opened.
    bool Load();

    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdFind_Click();
    void cmdVyber_Click();
    void cmdClose_Click();
    // The picked firm into the pick properties; the screen hides.
    void FirmaPicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void reload(int nom);
    void ShowRecord();
    void SaveField(int field);
    int currentNom() const;
    void sortOn(int column);

    QTableView *DataGrid1;
    QVector<QLineEdit *> txtFields;
    QComboBox *Combo1;
    QLabel *lblZaznam;
    QPushButton *cmdAdd;
    QPushButton *cmdDelete;
    QPushButton *cmdFind;
    QPushButton *cmdVyber;
    QPushButton *cmdClose;

    QString m_sort = QStringLiteral("firma ASC");
    QStringList m_shown;            // the field texts as ShowRecord put them
    std::unique_ptr<DbConnection> m_centre;
    std::unique_ptr<QSqlQueryModel> m_model;
};

// The register from the main window.
void ShowFirmy(QWidget *parent);
