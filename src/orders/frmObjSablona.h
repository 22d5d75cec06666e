#pragma once
// The letterhead letters in Czech and English: the institution's head, the addressee in
// five lines, the subject and the body. Saved on request, then locked until "Unlock".

#include <QDialog>

#include <array>

class QLineEdit;
class QPushButton;
class ObjTextEditor;

class frmObjSablona : public QDialog {
    Q_OBJECT
public:
    explicit frmObjSablona(QWidget *parent = nullptr);

    short TypeObjedn = 0;   // 0 CZ, 1 AN

    // Reserves the number and fills the institution's boxes; false when the centre's
    // database cannot be reached (a message has been shown).
    bool Open();
    QString Number() const;

private:
    void cmdSave_Click();
    void setLocked(bool locked);

    QLineEdit *txtObjCislo, *datDatum, *txtOsoba;
    std::array<QLineEdit *, 8> txtInst{};   // Firma, Adresa, PSČ, Město, IČO, DIČ, Číslo účtu, Název banky
    std::array<QLineEdit *, 5> Text1{};
    ObjTextEditor *editor;
    QPushButton *cmdSave, *cmdView, *cmdEdit, *cmdClose;
};

void ShowObjSablona(QWidget *parent, short typeObjedn);
