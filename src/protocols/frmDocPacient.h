#pragma once
// The patient register with each patient's protocols, one tab a kind of protocol:
// patients found, added and removed; protocols added, filled in, locked, corrected,
// deleted and printed.

#include "protocols/protocol.h"

#include <QDialog>

#include <vector>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabBar;
class QTableWidget;

class frmDocPacient : public QDialog {
    Q_OBJECT
public:
    explicit frmDocPacient(QWidget *parent = nullptr);

    bool NoView = false;   // PDFs are written but not opened

    // Reads the kinds and the patients.
    void load();

private:
    void showPacients(const QString &column, const QString &text);
    void pacientChosen();
    void showProtocols();
    void protocolChosen();
    const Pacient *currentPacient() const;
    const ProtocolRow *currentProtocol() const;
    int currentFormId() const;
    void openForm(int idProt, const QString &nazDoc);
    void cmdHledat_Click();
    void cmdNewPac_Click();
    void cmdDelPac_Click();
    void cmdSavePac_Click();
    void cmdAddDoc_Click();
    void cmdEditDoc_Click();
    void cmdDelDoc_Click();
    void cmdPDFForm_Click();
    void cmdPDFList_Click();
    void cmdPristup_Click();
    void cmdAddKorekce_Click();
    void cmdDesign_Click();

    std::vector<Pacient> m_pacients;
    std::vector<ProtocolRow> m_protocols;
    std::vector<std::pair<int, QString>> m_kinds;   // documents_prot: id, name

    QComboBox *cmbHledat;
    QLineEdit *txtHledat;
    QTableWidget *MSFlexGrid1, *MSFlexGrid2;
    QLineEdit *txtPrijmeni, *txtJmeno, *txtRC, *txtPrijmCislo, *txtRegistraci, *txtPoznamka;
    QLineEdit *txtData[DataPacientItems];
    QTabBar *TabStrip1;
    QPlainTextEdit *txtKorekce;
    QLineEdit *txtNovaKorekce;
    QPushButton *cmdHledat, *cmdNewPac, *cmdDelPac, *cmdSavePac, *cmdAddDoc, *cmdEditDoc, *cmdDelDoc, *cmdPDFForm,
        *cmdPDFList, *cmdPristup, *cmdAddKorekce, *cmdDesign;
};

void ShowDocPacient(QWidget *parent);
