#pragma once
// "Nastavení programu": the one settings screen. The workstation's keys and print values,
// the institution, the ordering persons and the lists of names, the centres, the footers
// and logo of the order forms; the users and the page setup open from here.

#include "admin/settings.h"

#include <QDialog>
#include <QStringList>
#include <QVector>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QTimer;

class frmSYS : public QDialog {
    Q_OBJECT
public:
    explicit frmSYS(QWidget *parent = nullptr);

    // The file choice: the chosen path, empty when cancelled. A dialog unless replaced.
    std::function<QString(QWidget *, const QStringList &filters, const QString &defaultName)> ChooseFile;
    // Opens a screen called from here (users, lists, page setup), modal. Replaced by tests.
    std::function<void(QDialog *)> OpenScreen;

    // Reads everything into the fields; false when the system database cannot be opened
    // (the fatal message has been shown then).
    bool Load();

    // Number of text fields in txtFields0.. (see the constructor for their meaning).
    static constexpr int FieldCount = 9;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillCentres(int selectId);
    void showCentre();
    CentreRow centreFromFields() const;
    void fillNames(QComboBox *combo, const QString &table, const QString &current);
    void fillPersons(const QString &current);
    void personChosen(const QString &text);
    void showFooters();
    void showPicture(int slot, const QString &fileName, QLabel *image);
    // The first field whose text is not digits only, or nothing.
    QLineEdit *badDigitBox() const;
    // Checks a changed server address (asking when the server does not answer); false: save nothing.
    bool serverAddressAccepted();

    void cmdUsers_Click();
    void cmdList_Click(const QString &table, const QString &title, const QString &key, QComboBox *reload);
    void cmdSeznam_Click();
    void cmdPageSetup_Click();
    void cmdFile_Click(int slot);
    void Command1_Click();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdSaveStred_Click();
    void cmdOk_Click();

    InstitutionFields m_institution;
    QVector<OrderingPerson> m_persons;
    QVector<CentreRow> m_centres;
    QString m_serverIp, m_serverPort;   // as read, so that an unchanged address is not rewritten

    QLineEdit *txtFields[FieldCount];
    QLineEdit *txtPocitac, *txtIniPath, *txtServerIP, *txtServerPort;   // the workstation and its server
    QLineEdit *txtPrint[4];   // size, rows, top, margin of the user's print values
    QCheckBox *Check1;
    QComboBox *Combo2;
    QLineEdit *txtFiltr;
    QComboBox *cmbVyrizuje, *cmbPrikObj, *cmbSpravObj;
    QLineEdit *txtFirma, *txtAdresa, *txtPSC, *txtMesto, *txtICO, *txtDIC, *txtUcet, *txtBanka, *txtUcet2, *txtNewdate;
    QTableWidget *MSFlexGrid2;
    QLineEdit *txtKodStred, *txtStredisko, *txtDBStred, *txtIPstred, *txtIPDB;
    QCheckBox *chkLekarna;
    QPushButton *cmdUsers, *cmdGrant, *cmdPrik, *cmdSprav, *cmdSeznam, *cmdPageSetup, *Command1, *cmdAdd, *cmdDelete,
        *cmdSaveStred, *cmdOk, *cmdClose;
    QPushButton *cmdFile[FooterSlotCount + 1];   // 1..6, as the footer types
    QLabel *lblFile[FooterSlotCount + 1];
    QLabel *Image1, *Image2;   // the picture footer and the logo
    QTimer *Timer1;            // shows the picture footer once the screen is up
};

// Opens the settings, modal.
void ShowSYS(QWidget *parent);
