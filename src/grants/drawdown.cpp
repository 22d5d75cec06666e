#include "grants/drawdown.h"

#include "core/db.h"
#include "core/number.h"
#include "core/text.h"
#include "grants/amount.h"
#include "grants/filter.h"
#include "grants/skupuctu.h"

#include <QSqlQuery>

#include <algorithm>

namespace {
// A grant as the record-set filter "GRANT = '...'" compares it: trailing blanks do not count.
QString GrantKey(const QString &grant)
{
    qsizetype n = grant.size();
    while (n > 0 && grant.at(n - 1) == QLatin1Char(' '))
        --n;
    return grant.left(n);
}

const QString Zero = QStringLiteral("0,00");

// Updates many rows of a table by id in a few statements: the values go into a temporary
// table first, then one joined UPDATE takes them. rows[i] is {id, value of each column}.
// Table and column names are constants of this file.
bool UpdateRowsById(DbConnection &conn, const QString &table, const QStringList &columns,
                    const QVector<QVariantList> &rows)
{
    if (rows.isEmpty())
        return true;
    QStringList defs{QStringLiteral("id INT NOT NULL PRIMARY KEY")}, sets, placeholders{QStringLiteral("?")};
    for (int c = 0; c < columns.size(); ++c) {
        defs << QStringLiteral("c%1 VARCHAR(255) NULL").arg(c);
        sets << QStringLiteral("t.`%1` = u.c%2").arg(columns.at(c)).arg(c);
        placeholders << QStringLiteral("?");
    }
    if (!conn.exec(QStringLiteral("DROP TEMPORARY TABLE IF EXISTS fx_update")) ||
        !conn.exec(QStringLiteral("CREATE TEMPORARY TABLE fx_update (") + defs.join(QStringLiteral(", ")) +
                   QStringLiteral(")")))
        return false;
    const QString one = QLatin1Char('(') + placeholders.join(QLatin1Char(',')) + QLatin1Char(')');
    constexpr qsizetype chunk = 1000;
    for (qsizetype from = 0; from < rows.size(); from += chunk) {
        const qsizetype n = std::min(chunk, rows.size() - from);
        QVariantList values;
        values.reserve(n * (columns.size() + 1));
        for (qsizetype i = from; i < from + n; ++i)
            values += rows.at(i);
        if (!conn.exec(QStringLiteral("INSERT INTO fx_update VALUES ") + QStringList(n, one).join(QLatin1Char(',')),
                       values))
            return false;
    }
    return conn.exec(QStringLiteral("UPDATE `") + table + QStringLiteral("` t JOIN fx_update u ON t.id = u.id SET ") +
                     sets.join(QStringLiteral(", "))) &&
           conn.exec(QStringLiteral("DROP TEMPORARY TABLE fx_update"));
}
} // namespace

// --- movements ---------------------------------------------------------------------------

Movement MakeMovement(const QString &ucet, const QString &castka, const QString &side)
{
    Movement m;
    m.ucet = ucet;
    m.number = IsNumberView(castka);
    if (m.number)
        m.amount = AmountValue(QStringView(castka).trimmed());
    m.dal = side == QLatin1String("DAL");
    return m;
}

QString MovementSource::key(const QString &grant) { return GrantKey(grant); }

bool MovementSource::read(const QString &grant, bool all)
{
    QSqlQuery q = m_conn.query();
    q.setForwardOnly(true);
    const QString head = QStringLiteral("SELECT Ucet, `Grant`, Castka, `MD/DAL` FROM ImportUctyCastky ");
    const QString order = QStringLiteral(" ORDER BY Datum, id");
    if (all ? !m_conn.exec(q, head + order) : !m_conn.exec(q, head + QStringLiteral("WHERE `Grant` = ?") + order, {grant}))
        return false;
    if (all) {
        m_rows.clear();
        m_byGrant.clear();
        m_allIndex.clear();
    }
    GrantRows *one = all ? nullptr : &m_byGrant[key(grant)];
    QString lastGrant;
    GrantRows *current = one;
    while (q.next()) {
        const int at = int(m_rows.size());
        // Nulls read as empty text, as the record set gives them to the sum.
        Movement m = MakeMovement(q.value(0).toString(), q.value(2).toString(), q.value(3).toString());
        auto number = m_accountNumbers.constFind(m.ucet);
        if (number == m_accountNumbers.constEnd()) {
            number = m_accountNumbers.insert(m.ucet, int(m_accounts.size()));
            m_accounts.append(m.ucet);
        }
        m.account = number.value();
        m_rows.append(std::move(m));
        if (all) {
            const QString g = q.value(1).toString();
            if (!current || g != lastGrant) {
                current = &m_byGrant[key(g)];
                lastGrant = g;
            }
            m_allIndex.append(at);
        }
        current->rows.append(at);
    }
    if (all) {
        for (GrantRows &g : m_byGrant)
            listAccounts(g);
    } else {
        listAccounts(*one);
    }
    m_allLoaded = m_allLoaded || all;
    return true;
}

void MovementSource::listAccounts(GrantRows &grant)
{
    QVector<bool> seen(m_accounts.size(), false);
    grant.accounts.clear();
    for (const int i : std::as_const(grant.rows)) {
        const int a = m_rows.at(i).account;
        if (!seen.at(a)) {
            seen[a] = true;
            grant.accounts.append(a);
        }
    }
}

bool MovementSource::loadAll() { return m_allLoaded || read(QString(), true); }

const MovementSource::GrantRows *MovementSource::grantRows(const QString &grant)
{
    static const GrantRows none;
    const QString k = key(grant);
    auto found = m_byGrant.constFind(k);
    if (found != m_byGrant.constEnd())
        return &found.value();
    if (m_allLoaded)
        return &none;
    return read(grant, false) ? &m_byGrant[k] : nullptr;
}

const QVector<int> *MovementSource::allRows() { return loadAll() ? &m_allIndex : nullptr; }

// --- the sum of a group -----------------------------------------------------------------

const QString ImportPohybCalc::DefaultFilter = QStringLiteral("Ucet like '%'");

QString MovementCriterionText(const QString &filter, const QString &grant)
{
    QString copy = filter;
    copy.remove(QLatin1Char('-'));
    const auto clause = [&](QString item) {
        return QStringLiteral("(ucet LIKE '") + item.remove(QLatin1Char('*')).trimmed() + QStringLiteral("%' AND GRANT='") +
               grant.trimmed() + QStringLiteral("')");
    };
    const auto blank = [](QString item) { return item.remove(QLatin1Char('*')).trimmed().isEmpty(); };
    if (!copy.contains(QLatin1Char(',')))
        return blank(copy) ? QString() : clause(copy);
    QString criterion;
    const QStringList items = copy.split(QLatin1Char(','));
    for (int i = 0; i < items.size(); ++i) {
        if (blank(items.at(i)))
            continue;
        if (i > 0)
            criterion += QStringLiteral(" OR ");
        criterion += clause(items.at(i));
    }
    return criterion;
}

bool ImportPohybCalc::SoucetSkupiny()
{
    total = 0;
    if (SkupUctu == DefaultFilter)
        return true;
    // A criterion that begins with " OR " (an empty first item) selects what its clauses do:
    // the items alone decide. Without items the criterion is empty and every row counts.
    const QStringList items = FilterItems(SkupUctu);
    const QStringList reversed = ReversedAccounts(SkupUctu);
    const QVector<Movement> &rows = m_movements.rows();
    const auto add = [&](const Movement &m, int weight) {
        // MD raises the sum, DAL lowers it; a reversed account the other way round.
        if (m.number)
            total += (m.dal ? -weight : weight) * m.amount;
    };
    const auto weightOf = [&](const QString &account) {
        return !reversed.isEmpty() && reversed.contains(account.trimmed()) ? -1 : 1;
    };
    if (items.isEmpty()) {
        const QVector<int> *all = m_movements.allRows();
        if (!all)
            return false;
        for (const int i : *all)
            add(rows.at(i), weightOf(rows.at(i).ucet));
    } else {
        const MovementSource::GrantRows *grant = m_movements.grantRows(GrantActiv.trimmed());
        if (!grant)
            return false;
        // Whether and how each account of the grant counts, then the rows in their order.
        m_weight.resize(m_movements.accountCount());
        for (const int a : grant->accounts) {
            const QString &account = m_movements.account(a);
            const bool counted = std::any_of(items.cbegin(), items.cend(), [&](const QString &item) {
                return account.startsWith(item, Qt::CaseInsensitive);
            });
            m_weight[a] = counted ? static_cast<signed char>(weightOf(account)) : 0;
        }
        for (const int i : grant->rows) {
            const Movement &m = rows.at(i);
            if (const int w = m_weight.at(m.account))
                add(m, w);
        }
    }
    Cerpani = FormatAmount(total);
    return true;
}

// --- one grant -----------------------------------------------------------------------------

bool AktualizujGrant(ImportPohybCalc &calc, QVector<GroupRow> &rows, GroupTotals *totals)
{
    for (GroupRow &r : rows) {
        calc.SkupUctu = r.ucet;
        if (!r.grant.trimmed().isEmpty())
            calc.GrantActiv = r.grant;
        if (!calc.SoucetSkupiny())
            return false;
        r.cerpani = calc.Cerpani;
        SpoctiRadek(r);
    }
    *totals = SumGroupRows(rows);
    return true;
}

QString ZustatekGrantu(const QString &castka1, double classDrawdown)
{
    return FormatAmount(AmountValue(AmountText(castka1)) - classDrawdown);
}

QString ZustatekFakt(const QString &poskytnute, double cerpani)
{
    return FormatAmount(AmountValue(AmountText(poskytnute)) - cerpani);
}

GrantFigures FiguresOfGrant(const QString &grant, const QString &castka1, const QString &castka3)
{
    GrantFigures f;
    f.grant = grant;
    const double budget = AmountValue(AmountText(castka1));
    const double rest = AmountValue(AmountText(castka3));
    f.cerpani = FormatAmount(budget - rest);
    f.zustatek = AmountText(castka3);
    double share = 0;
    if (FormatAmount(budget) != Zero)
        share = RoundHalfEven(100.0 - rest * 100.0 / budget, 1);
    f.procent = FormatAmount(share) + QStringLiteral("   ");
    f.cerpaniNegative = budget - rest < 0;
    f.zustatekNegative = rest < 0;
    f.procentNegative = share < 0;
    return f;
}

QString DifferenceText(const QString &castka1, const QString &poskytnute)
{
    const double d = RoundHalfEven(AmountValue(AmountText(castka1)) - AmountValue(AmountText(poskytnute)), 2);
    if (d == 0)
        return Zero;
    return d < 0 ? QStringLiteral("- ") + FormatAmount(-d) : QStringLiteral("+ ") + FormatAmount(d);
}

// --- reading and writing ---------------------------------------------------------------------

bool LoadGrantHeads(DbConnection &conn, const QString &userFilter, QVector<GrantHead> *grants, bool withArchived)
{
    Criterion c = PermittedGrantsCriterion(userFilter);
    if (withArchived && GrantLikeCriterion(QStringLiteral("_grant"), userFilter).isEmpty())
        c = Criterion();
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q,
                   QStringLiteral("SELECT id, _grant, Castka1, Poskytnute, Castka2, Castka3, stredisko FROM GrantyPlan ") +
                       (c.isEmpty() ? QString() : QStringLiteral("WHERE ") + c.where) +
                       QStringLiteral(" ORDER BY stredisko ASC, _grant ASC"),
                   c.values))
        return false;
    grants->clear();
    while (q.next())
        grants->append({q.value(0).toInt(), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3), FieldText(q, 4),
                        FieldText(q, 5), FieldText(q, 6)});
    return true;
}

bool RepairGrantyPlan(DbConnection &conn)
{
    return conn.exec(QStringLiteral("UPDATE GrantyPlan SET archiv='0' WHERE archiv IS NULL OR TRIM(archiv)=''")) &&
           conn.exec(QStringLiteral("UPDATE GrantyPlan SET Poskytnute='0,00' WHERE Poskytnute IS NULL"));
}

bool SaveGrantAmount(DbConnection &conn, const QString &grant, GrantAmount which, const QString &value)
{
    return conn.exec(which == GrantAmount::Castka1
                         ? QStringLiteral("UPDATE GrantyPlan SET `castka1` = ? WHERE `_grant` = ?")
                         : QStringLiteral("UPDATE GrantyPlan SET `poskytnute` = ? WHERE `_grant` = ?"),
                     {value, grant});
}

bool LoadGrantGroups(DbConnection &conn, const QString &grant, QVector<GroupRow> *rows)
{
    if (grant.isEmpty())
        return QueryGroupRows(conn, QString(), {}, QStringLiteral("`Grant`, Ucet, id"), rows);
    return QueryGroupRows(conn, QStringLiteral("`Grant` LIKE ?"), {grant}, QStringLiteral("Ucet, id"), rows);
}

bool LoadGroupsByName(DbConnection &conn, const QString &grant, QVector<GroupRow> *rows)
{
    return QueryGroupRows(conn, QStringLiteral("`Grant` = ?"), {grant}, QStringLiteral("`grant`, nazev, id"), rows);
}

bool LoadClassDrawdown(DbConnection &conn, QHash<QString, double> *sums)
{
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q, QStringLiteral("SELECT `Grant`, Castka_import FROM GrantTabl_main ORDER BY `Grant`, Ucet, id")))
        return false;
    sums->clear();
    while (q.next())
        (*sums)[GrantKey(q.value(0).toString())] += AmountValue(q.value(1).toString());
    return true;
}

bool LoadPeriod(DbConnection &conn, QString *from, QString *to)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT MIN(Datum), MAX(Datum) FROM ImportUctyCastky")))
        return false;
    from->clear();
    to->clear();
    if (q.next()) {
        *from = FieldText(q, 0);
        *to = FieldText(q, 1);
    }
    return true;
}

namespace {
// The two steps of a group refresh, inside the caller's transaction.
bool syncGroups(DbConnection &conn, const QString &grant, bool *catalogueEmpty)
{
    QVector<GroupDef> catalogue;
    if (!LoadSkupUctu(conn, &catalogue))
        return false;
    *catalogueEmpty = catalogue.isEmpty();
    for (const GroupDef &def : std::as_const(catalogue)) {
        QSqlQuery q = conn.query();
        if (!conn.exec(q,
                       QStringLiteral("SELECT id, Castka_plan, Castka_cerpani FROM SkupUctuGrant "
                                      "WHERE NAZEV LIKE ? AND `Grant` = ? AND Ucet = ? LIMIT 1"),
                       {def.nazev, grant, def.ucet}))
            return false;
        if (!q.next()) {
            if (!conn.exec(QStringLiteral("INSERT INTO SkupUctuGrant (`Grant`, Ucet, Nazev, Castka_plan, Castka_cerpani, "
                                          "Zustatek, Procent, Rezerv1, Rezerv2) VALUES (?,?,?,?,?,?,?,' ',' ')"),
                           {grant, def.ucet, def.nazev, Zero, Zero, Zero, Zero}))
                return false;
            continue;
        }
        GroupRow r;
        r.plan = FieldText(q, 1);
        r.cerpani = FieldText(q, 2);
        SpoctiRadek(r);
        if (!conn.exec(QStringLiteral("UPDATE skupuctugrant SET ucet = ?, nazev = ?, zustatek = ?, procent = ? WHERE id=?"),
                       {def.ucet, def.nazev, r.zustatek, r.procent, q.value(0).toInt()}))
            return false;
    }
    return true;
}

bool removeOrphans(DbConnection &conn, const QString &grant, int *removed)
{
    *removed = 0;
    QVector<GroupRow> rows;
    if (!LoadGrantGroups(conn, grant, &rows))
        return false;
    for (const GroupRow &r : std::as_const(rows)) {
        QSqlQuery q = conn.query();
        if (!conn.exec(q, QStringLiteral("SELECT id FROM SkupUctu WHERE UCET LIKE ? AND Nazev LIKE ? LIMIT 1"),
                       {r.ucet, r.nazev}))
            return false;
        if (q.next())
            continue;
        if (!DeleteGroupRow(conn, r.id))
            return false;
        ++*removed;
    }
    return true;
}
} // namespace

bool CalkulRowUctu(DbConnection &conn, const QString &grant, bool *catalogueEmpty)
{
    Transaction t(conn);
    return syncGroups(conn, grant, catalogueEmpty) && t.commit();
}

bool RefreshSkupUcty(DbConnection &conn, const QString &grant, int *removed)
{
    Transaction t(conn);
    return removeOrphans(conn, grant, removed) && t.commit();
}

bool WriteGroupRows(DbConnection &conn, const QVector<GroupRow> &rows)
{
    QVector<QVariantList> values;
    values.reserve(rows.size());
    for (const GroupRow &r : rows)
        values.append({r.id, r.plan, r.cerpani, r.zustatek, r.procent});
    return UpdateRowsById(conn, QStringLiteral("SkupUctuGrant"),
                          {QStringLiteral("Castka_plan"), QStringLiteral("Castka_cerpani"), QStringLiteral("Zustatek"),
                           QStringLiteral("Procent")},
                          values);
}

bool WriteCastka3(DbConnection &conn, const QVector<QPair<int, QString>> &values)
{
    QVector<QVariantList> rows;
    rows.reserve(values.size());
    for (const auto &[id, castka3] : values)
        rows.append({id, castka3});
    return UpdateRowsById(conn, QStringLiteral("GrantyPlan"), {QStringLiteral("Castka3")}, rows);
}

// --- the recalculation -------------------------------------------------------------------------

RecalcResult RecalcGrants(DbConnection &conn, const QVector<GrantHead> &grants, bool refreshGroups,
                          const RecalcProgress &progress)
{
    RecalcResult result;
    const auto failed = [&] {
        result.error = conn.errorText();
        return result;
    };
    Transaction t(conn);
    if (!t.active())
        return failed();
    if (refreshGroups) {
        for (const GrantHead &g : grants) {
            bool catalogueEmpty = false;
            int removed = 0;
            if (!syncGroups(conn, g.grant, &catalogueEmpty) || !removeOrphans(conn, g.grant, &removed))
                return failed();
        }
    }
    MovementSource movements(conn);
    QHash<QString, double> classSums;
    QHash<QString, QVector<GroupRow>> groupsOf;
    QVector<GroupRow> groups;
    // One grant reads its own rows; many grants read every table once.
    const bool one = grants.size() == 1;
    if ((!one && !movements.loadAll()) || !LoadClassDrawdown(conn, &classSums) ||
        !LoadGrantGroups(conn, one ? grants.first().grant : QString(), &groups))
        return failed();
    for (GroupRow &r : groups)
        groupsOf[one ? GrantKey(grants.first().grant) : GrantKey(r.grant)].append(std::move(r));

    ImportPohybCalc calc(movements);
    QVector<GroupRow> written;
    QVector<QPair<int, QString>> castka3;
    for (const GrantHead &g : grants) {
        if (g.grant.isEmpty())
            continue;
        QVector<GroupRow> &rows = groupsOf[GrantKey(g.grant)];
        GroupTotals totals;
        if (!AktualizujGrant(calc, rows, &totals))
            return failed();
        written += rows;
        castka3.append({g.id, ZustatekGrantu(g.castka1, classSums.value(GrantKey(g.grant)))});
        ++result.grants;
        if (progress && !progress(result.grants, int(grants.size()), g.grant)) {
            result.cancelled = true;
            return result;
        }
    }
    if (!WriteGroupRows(conn, written) || !WriteCastka3(conn, castka3) || !t.commit())
        return failed();
    result.groups = int(written.size());
    result.ok = true;
    return result;
}

// --- the chart of accounts --------------------------------------------------------------------------

QString LevelTable(int level)
{
    static const char *const tables[] = {"Grant_devize_1", "Grant_devize_2", "Grant_devize_3", "GrantTabl_main"};
    return QLatin1String(tables[std::clamp(level, 0, 3)]);
}

bool LoadLevelRows(DbConnection &conn, int level, const QString &grant, const QString &prefix, QVector<LevelRow> *rows)
{
    const bool classes = level == 3;
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q,
                   QStringLiteral("SELECT id, `Grant`, Ucet, Nazev, Castka") +
                       (classes ? QStringLiteral(", Castka_import, Castka_zustatek, Procent") : QString()) +
                       QStringLiteral(" FROM ") + LevelTable(level) +
                       QStringLiteral(" WHERE `Grant` like ? and Ucet like ? ORDER BY Ucet, id"),
                   {grant + QLatin1Char('%'), prefix.trimmed() + QLatin1Char('%')}))
        return false;
    rows->clear();
    while (q.next()) {
        LevelRow r{q.value(0).toInt(), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3), FieldText(q, 4), {}, {}, {}};
        if (classes) {
            r.castkaImport = FieldText(q, 5);
            r.castkaZustatek = FieldText(q, 6);
            r.procent = FieldText(q, 7);
        }
        rows->append(r);
    }
    return true;
}

bool MemUcetFiltr(DbConnection &conn)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT _Grant, Castka1 FROM GrantyPlan ORDER BY stredisko ASC, _grant ASC")))
        return false;
    QVector<QPair<QString, QString>> budgets;
    while (q.next())
        budgets.append({FieldText(q, 0), q.value(1).toString()});
    Transaction t(conn);
    for (const auto &[grant, castka1] : std::as_const(budgets)) {
        QSqlQuery first = conn.query();
        if (!conn.exec(first, QStringLiteral("SELECT id, Castka FROM GrantTabl_main WHERE `Grant` = ? ORDER BY Ucet, id LIMIT 1"),
                       {grant}))
            return false;
        if (first.next() && first.value(1).toString() != castka1 &&
            !conn.exec(QStringLiteral("UPDATE GrantTabl_main SET Castka = ? WHERE id = ?"), {castka1, first.value(0)}))
            return false;
    }
    return t.commit();
}

bool CalculGrant(ImportPohybCalc &calc, int level, QVector<LevelRow> &rows)
{
    for (LevelRow &r : rows) {
        calc.JenomLoadMDB = true;
        calc.SkupUctu = r.ucet;
        calc.CastkaSelect = level == 3 ? FormatAmount(AmountValue(AmountText(r.castka))) : Zero;
        calc.GrantActiv = r.grant;
        if (!calc.SoucetSkupiny())
            return false;
        if (level != 3) {
            r.castka = calc.Cerpani;
            continue;
        }
        GroupRow share;
        share.plan = calc.CastkaSelect;
        share.cerpani = calc.Cerpani;
        SpoctiRadek(share);
        r.castkaImport = calc.Cerpani;
        r.castkaZustatek = share.zustatek;
        r.procent = share.procent;
    }
    return true;
}

bool WriteLevelRows(DbConnection &conn, int level, const QVector<LevelRow> &rows)
{
    QVector<QVariantList> values;
    for (const LevelRow &r : rows) {
        if (level == 3)
            values.append({r.id, r.castkaImport, r.castkaZustatek, r.procent});
        else
            values.append({r.id, r.castka});
    }
    const QStringList columns = level == 3 ? QStringList{QStringLiteral("Castka_import"), QStringLiteral("Castka_zustatek"),
                                                         QStringLiteral("Procent")}
                                           : QStringList{QStringLiteral("Castka")};
    Transaction t(conn);
    return UpdateRowsById(conn, LevelTable(level), columns, values) && t.commit();
}
