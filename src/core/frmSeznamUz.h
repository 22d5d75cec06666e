#pragma once
// The ordering persons (column Vyrizuje of sys_nastaveniobj).

#include "core/frmSeznam.h"

class frmSeznamUz : public frmSeznam {
    Q_OBJECT
public:
    explicit frmSeznamUz(QWidget *parent = nullptr);
};
