#include "grants/skupuctu.h"

#include "core/db.h"
#include "grants/amount.h"
#include "grants/filter.h"

#include <QSqlQuery>

bool LoadSkupUctu(DbConnection &conn, QVector<GroupDef> *groups)
{
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q, QStringLiteral("SELECT id, Ucet, Nazev, Castka, Zustatek FROM SkupUctu ORDER BY Ucet")))
        return false;
    groups->clear();
    while (q.next())
        groups->append({q.value(0).toInt(), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3), FieldText(q, 4)});
    return true;
}

bool AddSkupUctu(DbConnection &conn, int *id)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("INSERT INTO SkupUctu (Ucet, Nazev, Castka, Zustatek) VALUES ('', '', '0,00', '0,00')")))
        return false;
    *id = q.lastInsertId().toInt();
    return true;
}

bool SaveSkupUctu(DbConnection &conn, const GroupDef &group)
{
    return conn.exec(QStringLiteral("UPDATE SkupUctu SET `Ucet` = ?, `Nazev` = ?, `Castka` = ?, `Zustatek` = ? WHERE id = ?"),
                     {group.ucet, group.nazev, group.castka, group.zustatek, group.id});
}

bool DeleteSkupUctu(DbConnection &conn, int id)
{
    return conn.exec(QStringLiteral("DELETE FROM SkupUctu WHERE id = ?"), {id});
}

void AmountEdited(GroupDef &group)
{
    group.castka = AmountText(group.castka);
    group.zustatek = group.castka;
}

GroupDef TidyGroup(const GroupDef &group)
{
    GroupDef tidy = group;
    tidy.ucet = TidyFilter(group.ucet.trimmed());
    tidy.nazev = group.nazev.trimmed();
    tidy.castka = FormatAmount(AmountValue(AmountText(group.castka)));
    tidy.zustatek = tidy.castka;
    return tidy;
}

bool TidySkupUctu(DbConnection &conn)
{
    QVector<GroupDef> groups;
    if (!LoadSkupUctu(conn, &groups))
        return false;
    Transaction t(conn);
    for (const GroupDef &g : groups) {
        const GroupDef tidy = TidyGroup(g);
        if ((tidy.ucet != g.ucet || tidy.nazev != g.nazev || tidy.castka != g.castka || tidy.zustatek != g.zustatek) &&
            !SaveSkupUctu(conn, tidy))
            return false;
    }
    return t.commit();
}
