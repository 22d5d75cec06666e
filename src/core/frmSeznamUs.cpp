#include "core/frmSeznamUs.h"

#include <QSqlTableModel>

frmSeznamUs::frmSeznamUs(QWidget *parent)
    : frmSeznam(parent)
{
    setObjectName(QStringLiteral("frmSeznamUs"));
    setWindowTitle(QStringLiteral("Seznam řešitelé GRANTU"));
    setDeleteQuestion(QStringLiteral("Chcete opravdu zrušit položku ?"), QStringLiteral("Zrušit záznam ?"));
}

void frmSeznamUs::showEvent(QShowEvent *event)
{
    if (!m_loaded)
        Load();
    frmSeznam::showEvent(event);
}

void frmSeznamUs::Load()
{
    m_loaded = true;
    if (!Titulek.isEmpty())
        setWindowTitle(Titulek);
    const QString name = Tabulka.trimmed().toUpper();
    const Column jmeno{QStringLiteral("Jmeno"), QStringLiteral("Zadejte nove jméno řešitelé GRANTU:"),
                       QStringLiteral("Zeditujte jméno:")};
    if (name == QLatin1String("SYS_PRAVA")) {
        const Column grant{QStringLiteral("Grant"), QStringLiteral("Zadejte číslo noveno GRANTU:"),
                           QStringLiteral("Zeditujte GRANT:")};
        bindTable(QStringLiteral("SYS_PRAVA"), {grant, jmeno}, Klic);
    } else if (name == QLatin1String("SYS_PRIKAZCE") || name == QLatin1String("SYS_SPRAVCEROZP")) {
        bindTable(name.toLower(), {jmeno}, Klic);
    }
    // Kept as it always was: the name never matches, so the columns keep the table's names.
    if (name == QLatin1String("SYS_PARVA") && model()) {
        model()->setHeaderData(model()->fieldIndex(QStringLiteral("Grant")), Qt::Horizontal, QStringLiteral("Grant"));
        model()->setHeaderData(model()->fieldIndex(QStringLiteral("Jmeno")), Qt::Horizontal, QStringLiteral("Jmeno"));
    }
}
