#pragma once
// The Studio's floating panel: the values of the active field, edited live on its
// control, and the commands of the form (fields added and removed, form files).
// Its place on the screen is kept in the settings store between sessions.

#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class frmDocDesignForm;

// Chooses a form file (save: for writing). Returns "*.form" or "" when cancelled, as
// the dialog does; tests put their own chooser in place.
using FormFileChooser = std::function<QString(QWidget *parent, bool save)>;
void SetFormFileChooser(FormFileChooser chooser);   // empty: the file dialog

class frmDocPanelForm : public QWidget {
    Q_OBJECT
public:
    explicit frmDocPanelForm(frmDocDesignForm *form);

    // Fills the panel from the active field of the form.
    void showField();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void fillFieldList();
    // Writes the panel's values to the active field and rebuilds its control.
    void cmdSave_Click();
    void liveEdit(QLineEdit *box);
    void cmdAddPole_Click();
    void cmdDelPole_Click();
    void cmdExport_Click();
    void cmdImport_Click();

    frmDocDesignForm *m_form;
    bool m_filling = false;   // the panel is being filled: its edits are not the user's
    QComboBox *cmbPole, *cmbTyp, *cmbMDB, *cmbList;
    QLineEdit *txtTop, *txtLeft, *txtWidth, *txtHeight, *txtFont, *txtPopis, *txtLenght;
    QCheckBox *chkBold, *chkAccess;
    QPushButton *cmdSave, *cmdAddPole, *cmdDelPole, *cmdExport, *cmdImport;
};
