#pragma once
// The solvers of grants (SYS_PRAVA) or a one-column list of names (sys_prikazce,
// sys_spravcerozp), chosen by the caller before the screen is shown.

#include "core/frmSeznam.h"

class frmSeznamUs : public frmSeznam {
    Q_OBJECT
public:
    explicit frmSeznamUs(QWidget *parent = nullptr);

    QString Tabulka;   // "SYS_PRAVA", "SYS_PRIKAZCE" or "SYS_SPRAVCEROZP", any case
    QString Titulek;   // window title; the list of solvers when empty
    QString Klic;      // the column the rows are ordered by

    // Binds the named table; called on the first show.
    void Load();

protected:
    void showEvent(QShowEvent *event) override;

private:
    bool m_loaded = false;
};
