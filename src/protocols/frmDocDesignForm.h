#pragma once
// The form with its live controls: the Studio's design surface (LoadModeFrm 1, with the
// floating panel beside it) or the form a protocol is filled in on. Positions and sizes
// are in form units, fifteen to a screen pixel.

#include "protocols/formmodel.h"
#include "protocols/frmDocPanelForm.h"
#include "protocols/protocol.h"

#include <QDialog>
#include <QMap>
#include <QPoint>
#include <QPointer>

#include <vector>

class QLabel;
class QPushButton;
class QWidget;

inline constexpr int FormUnitsPerPixel = 15;

class frmDocDesignForm : public QDialog {
    Q_OBJECT
public:
    explicit frmDocDesignForm(QWidget *parent = nullptr);
    ~frmDocDesignForm() override;

    // Set by the opener before load().
    short LoadModeFrm = 1;   // 1 design, otherwise filling in a protocol
    short ActivTabIndex = 0;
    int IDPac = 0;
    int IDForm = 0;
    int IDProt = 0;
    int KeyActiv = 0;
    QString NazDoc;
    QString TitleForm;
    bool LoadForm = false;   // true once the form stands on the screen
    bool NoView = false;     // the Studio's PDF is written but not opened

    // Reads the form (and in filling the protocol's values) and builds the controls.
    bool load();

    bool designing() const { return LoadModeFrm == 1; }
    clsField *activeField() const;
    void setActiveField(int key);
    // Rebuilds the control of a field from the field: place, size, text, tag, tool tip.
    void refreshControl(const clsField &field);
    QWidget *controlOf(int key) const { return m_controls.value(key); }
    clsField *addField(int typ);
    // Removes the active field and its control.
    void DelActivControl();
    // The value every field's control shows, in the one order of the form's fields.
    std::vector<ControlValue> controlValues() const;
    frmDocPanelForm *panel() const { return m_panel; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *createControl(clsField &field);
    void placeControl(QWidget *control, const clsField &field);
    void fieldMoved(QWidget *control);
    void showProtocolValues(const ProtocolRow &row);
    void cmdSaveForm_Click();
    void cmdCloseForm_Click();
    void cmdPDFForm_Click();

    QWidget *picForm;
    QLabel *StatusBar1;
    QPushButton *cmdSaveForm, *cmdCloseForm, *cmdPDFForm;
    QMap<int, QWidget *> m_controls;   // by field key
    QMap<int, QStringList> m_lists;    // pick lists by id
    QPointer<frmDocPanelForm> m_panel;
    QPoint m_pressAt;                  // where in the label the mouse went down
    QWidget *m_dragged = nullptr;
};

// The Studio on a form the user picks from the forms there are.
void ShowStudio(QWidget *parent);
