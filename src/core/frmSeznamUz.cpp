#include "core/frmSeznamUz.h"

frmSeznamUz::frmSeznamUz(QWidget *parent)
    : frmSeznam(parent)
{
    setObjectName(QStringLiteral("frmSeznamUz"));
    setWindowTitle(QStringLiteral("Seznam objednávajícich osob"));
    setDeleteQuestion(QStringLiteral("Chcete opravdu zrušit položku?"), QStringLiteral("Zrušit záznam?"));
    bindTable(QStringLiteral("sys_nastaveniobj"),
              {{QStringLiteral("Vyrizuje"), QStringLiteral("Zadejte nove jméno:"), QStringLiteral("Zeditujte jméno:")}});
}
