#pragma once
// "Rozpočet": the register of grants. The list of GrantyPlan, the details of the selected
// grant, and the commands that add, renumber, save and delete a grant.

#include "core/db.h"
#include "grants/grantplan.h"

#include <QDialog>
#include <QString>

#include <functional>
#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class GrantPlanModel;

class frmGrantPlan : public QDialog {
    Q_OBJECT
public:
    explicit frmGrantPlan(QWidget *parent = nullptr);

    // The grant to show; "999999" or empty text: the whole register.
    QString GrantActiv = QLatin1String(WholeRegister);

    // The date picker behind cmdKalendar: the chosen date, or nothing when cancelled.
    std::function<std::optional<QString>(QWidget *, const QString &)> DatePicker;

    // Reads the register as GrantActiv, the user's grants and the hide boxes ask,
    // and selects the first row.
    void Load();

private:
    // Fills the grid again and selects the row of `grant` (the first row if it is not shown).
    void fill(const QString &grant);
    void selectRow(int row);
    void showDetails();
    GrantPlanRow details() const;
    QString selectedGrant() const;

    // A grant number asked for with an input box, checked; nothing when it cannot be used.
    std::optional<QString> askNewNumber(const QString &prompt, const QString &title, const QString &offered) const;

    void headingClick(int column);
    void hideBoxChanged();
    void cmdNewRow_Click();
    void cmdEdit_Click();
    void cmdSave_Click();
    void cmdDelete_Click();
    void cmdKalendar_Click();
    bool eventFilter(QObject *watched, QEvent *event) override;

    GrantPlanView m_view;
    QSet<QString> m_grants;        // every grant number read, for add and renumber
    bool m_nextDescending = false; // heading clicks alternate ASC and DESC
    QLineEdit *m_dateTarget;       // the date box cmdKalendar fills: the last one entered
    FieldCaptions m_captions;      // the detail boxes' labels, for a value the server refuses

    GrantPlanModel *m_model;
    QTableView *MSFlexGrid2;
    QLineEdit *Text4, *Text5, *Text8, *Text6, *Text3, *Text1, *Text2, *Text7, *Text9;
    QCheckBox *Check1, *Check2, *Check3;
    QLabel *PocetDocum;
    QPushButton *Command2, *cmdNewRow, *cmdEdit, *cmdDelete, *cmdSave, *cmdKalendar, *Command1;
};

// Opens the register, modal; with a grant number, the read-only view of that grant.
void ShowGrantPlan(QWidget *parent, const QString &grantActiv = QLatin1String(WholeRegister));
