#include "grants/filter.h"

#include "core/text.h"

QString TidyFilter(const QString &filter)
{
    QString text = filter;
    text.remove(QLatin1Char('\r')).remove(QLatin1Char('\n'));
    text.replace(QLatin1String(",,"), QLatin1String(","));
    text.replace(QLatin1String(",,,"), QLatin1String(","));
    return text.trimmed();
}

QStringList FilterItems(const QString &filter)
{
    QString text = filter;
    text.remove(QLatin1Char('-')).remove(QLatin1Char('*'));
    QStringList items;
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QString item = part.trimmed();
        if (!item.isEmpty())
            items << item;
    }
    return items;
}

Criterion BuildCriterion(CriterionForm form, const QString &filter, const QString &grant)
{
    Criterion c;
    QStringList clauses;
    for (const QString &item : FilterItems(filter)) {
        switch (form) {
        case CriterionForm::Movements:
            clauses << QStringLiteral("(ucet LIKE ? AND `GRANT`=?)");
            c.values << item + QLatin1Char('%') << grant.trimmed();
            break;
        case CriterionForm::Accounts:
            clauses << QStringLiteral("(`Grant` like ? and Ucet like ?)");
            c.values << grant + QLatin1Char('%') << item + QLatin1Char('%');
            break;
        case CriterionForm::Budget:
            clauses << QStringLiteral("(`Grant` like ? and Ucet like ?)");
            c.values << grant << item + QLatin1Char('%');
            break;
        }
    }
    c.where = clauses.join(form == CriterionForm::Movements ? QStringLiteral(" OR ") : QStringLiteral(" Or "));
    return c;
}

int MovementSign(const QString &filter, const QString &account, const QString &side)
{
    const bool dal = side.trimmed() == QLatin1String("DAL");
    if (ReversedAccounts(filter).contains(account.trimmed()))
        return dal ? 1 : -1;
    return dal ? -1 : 1;
}

QStringList ReversedAccounts(const QString &filter)
{
    QStringList accounts;
    if (!filter.contains(QLatin1Char('-')))
        return accounts;
    for (QString item : filter.split(QLatin1Char(',')))
        accounts << item.remove(QLatin1Char('-')).remove(QLatin1Char('*')).trimmed();
    return accounts;
}

QString AppendAccount(const QString &filter, const QString &account)
{
    const QString current = filter.trimmed();
    return current.isEmpty() ? account.trimmed() : current + QStringLiteral(", ") + account.trimmed();
}

namespace {
// The numbers of a grant list as the shared helpers cut it: one piece more than commas.
QStringList GrantListItems(const QString &userFilter)
{
    QStringList items;
    const short n = CountSep(userFilter, QStringLiteral(","));
    for (short i = 0; i <= n; ++i)
        items << GetField(userFilter, i, 44).trimmed();
    return items;
}

bool AllGrants(const QString &userFilter)
{
    const QString f = userFilter.trimmed();
    return f.isEmpty() || f == QLatin1String("0");
}
} // namespace

Criterion GrantLikeCriterion(const QString &column, const QString &userFilter)
{
    Criterion c;
    if (AllGrants(userFilter))
        return c;
    QStringList terms;
    for (const QString &number : GrantListItems(userFilter)) {
        terms << QStringLiteral("%1 like ?").arg(column);
        c.values << number + QLatin1Char('%');
    }
    c.where = terms.join(QStringLiteral(" or "));
    return c;
}

Criterion PermittedGrantsCriterion(const QString &userFilter)
{
    Criterion c;
    if (AllGrants(userFilter)) {
        c.where = QStringLiteral("(archiv='' or archiv is null or archiv='0')");
        return c;
    }
    QStringList terms;
    for (const QString &number : GrantListItems(userFilter)) {
        terms << QStringLiteral("(_GRANT = ? AND COALESCE(archiv,'')<>'1')");
        c.values << number;
    }
    c.where = terms.join(QStringLiteral(" or "));
    return c;
}

bool GrantPermitted(const QString &userFilter, const QString &grant)
{
    return AllGrants(userFilter) || GrantListItems(userFilter).contains(grant.trimmed());
}
