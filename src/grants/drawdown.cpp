#include "grants/drawdown.h"

#include "core/db.h"
#include "core/number.h"
#include "core/text.h"
#include "grants/amount.h"
#include "grants/filter.h"
#include "grants/skupuctu.h"

#include <QSqlQuery>

#include <algorithm>
#include <numeric>
#include <vector>

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

// Updates many rows of a table by id: the values go into a temporary table of the same
// columns in one round trip (the array binding), then one joined UPDATE takes them, which
// the server does in half the time of an UPDATE per row. rows[i] is {id, value of each
// column}. Table and column names are constants of this file.
bool UpdateRowsById(DbConnection &conn, const QString &table, const QStringList &columns,
                    const QVector<QStringList> &rows)
{
    if (rows.isEmpty())
        return true;
    QStringList sets;
    for (const QString &c : columns)
        sets << QStringLiteral("t.`%1` = u.`%1`").arg(c);
    const QString list = QLatin1Char('`') + columns.join(QStringLiteral("`, `")) + QLatin1Char('`');
    std::vector<QByteArray> texts;
    texts.reserve(size_t(rows.size()) * size_t(columns.size() + 1));
    for (const QStringList &r : rows)
        for (const QString &value : r)
            texts.push_back(value.toUtf8());
    std::vector<std::string_view> values;
    values.reserve(texts.size());
    for (const QByteArray &t : texts)
        values.emplace_back(t.constData(), size_t(t.size()));
    return conn.exec(QStringLiteral("DROP TEMPORARY TABLE IF EXISTS fx_update")) &&
           conn.exec(QStringLiteral("CREATE TEMPORARY TABLE fx_update (PRIMARY KEY (id)) SELECT id, ") + list +
                     QStringLiteral(" FROM `") + table + QStringLiteral("` LIMIT 0")) &&
           conn.execArray(QStringLiteral("INSERT INTO fx_update (id, ") + list + QStringLiteral(") VALUES (?") +
                              QStringLiteral(", ?").repeated(columns.size()) + QLatin1Char(')'),
                          int(columns.size() + 1), values) &&
           conn.exec(QStringLiteral("UPDATE `") + table + QStringLiteral("` t JOIN fx_update u ON t.id = u.id SET ") +
                     sets.join(QStringLiteral(", "))) &&
           conn.exec(QStringLiteral("DROP TEMPORARY TABLE fx_update"));
}
} // namespace

// --- movements ---------------------------------------------------------------------------

QString MovementSource::key(const QString &grant) { return GrantKey(grant); }

bool MovementSource::dateRanks(QHash<QByteArray, int> *ranks, int *nullRank)
{
    // The distinct dates come from the index on Datum at once, in the server's order.
    *nullRank = -1;
    int rank = 0;
    return m_conn.eachRow(QStringLiteral("SELECT Datum FROM ImportUctyCastky GROUP BY Datum ORDER BY Datum"), {},
                          [&](const DbConnection::RawRow &r) {
                              if (r[0])
                                  ranks->insert(QByteArray(r[0]->data(), qsizetype(r[0]->size())), rank);
                              else
                                  *nullRank = rank;
                              ++rank;
                          });
}

bool MovementSource::read(const QString &grant, bool all)
{
    // Every row is read in the order of ids and put in the order of dates here, by the place of
    // its date among the distinct dates: sorting a million rows takes the server longer than
    // sending them. A date that is not one of the listed texts byte for byte (another case or
    // trailing blanks, equal to the server) leaves the sorting to the server after all.
    QHash<QByteArray, int> ranks;
    int nullRank = -1;
    bool ranked = all;
    if (ranked && !dateRanks(&ranks, &nullRank))
        return false;
    struct Read {
        Movement m;
        int rank = 0, grant = 0;
    };
    std::vector<Read> read;
    QHash<QByteArray, int> accountOf, grantOf;
    // One grant's rows all count for it; of all rows, each for the grant it names.
    QStringList grants = all ? QStringList() : QStringList{key(grant)};
    QHash<QString, int> grantNumbers;
    const QString head = QStringLiteral("SELECT Datum, Ucet, `Grant`, Castka, `MD/DAL` FROM ImportUctyCastky ");
    for (;;) {
        bool unranked = false;
        const auto row = [&](const DbConnection::RawRow &r) {
            Read one;
            // Nulls read as empty text, as the record set gives them to the sum; an amount that
            // is no number counts in no sum.
            if (unranked || !MovementAmount(r[3].value_or(std::string_view()), &one.m.amount))
                return;
            if (ranked) {
                one.rank = r[0] ? ranks.value(QByteArray::fromRawData(r[0]->data(), qsizetype(r[0]->size())), -1) : nullRank;
                unranked = one.rank < 0;
            }
            const std::string_view ucet = r[1].value_or(std::string_view()), g = r[2].value_or(std::string_view());
            const QByteArray ucetBytes = QByteArray::fromRawData(ucet.data(), qsizetype(ucet.size()));
            auto account = accountOf.constFind(ucetBytes);
            if (account == accountOf.constEnd()) {
                const QString text = QString::fromUtf8(ucet.data(), qsizetype(ucet.size()));
                auto number = m_accountNumbers.constFind(text);
                if (number == m_accountNumbers.constEnd()) {
                    number = m_accountNumbers.insert(text, int(m_accounts.size()));
                    m_accounts.append(text);
                }
                account = accountOf.insert(QByteArray(ucet.data(), qsizetype(ucet.size())), number.value());
            }
            one.m.account = account.value();
            one.m.dal = r[4] && *r[4] == "DAL";
            if (!all) {
                read.push_back(one);
                return;
            }
            const QByteArray grantBytes = QByteArray::fromRawData(g.data(), qsizetype(g.size()));
            auto number = grantOf.constFind(grantBytes);
            if (number == grantOf.constEnd()) {
                const QString k = key(QString::fromUtf8(g.data(), qsizetype(g.size())));
                if (!grantNumbers.contains(k)) {
                    grantNumbers.insert(k, int(grants.size()));
                    grants.append(k);
                }
                number = grantOf.insert(QByteArray(g.data(), qsizetype(g.size())), grantNumbers.value(k));
            }
            one.grant = number.value();
            read.push_back(one);
        };
        if (!(all ? m_conn.eachRow(head + (ranked ? QStringLiteral("ORDER BY id") : QStringLiteral("ORDER BY Datum, id")), {}, row)
                  : m_conn.eachRow(head + QStringLiteral("WHERE `Grant` = ? ORDER BY Datum, id"), {grant}, row)))
            return false;
        if (!unranked)
            break;
        ranked = false;
        read.clear();
    }
    // In the order of dates, rows of one date in the order of ids.
    std::vector<int> order(read.size());
    if (ranked) {
        std::vector<int> start(size_t(ranks.size()) + 2, 0);
        for (const Read &r : read)
            ++start[size_t(r.rank) + 1];
        for (size_t i = 1; i < start.size(); ++i)
            start[i] += start[i - 1];
        for (size_t i = 0; i < read.size(); ++i)
            order[size_t(start[size_t(read[i].rank)]++)] = int(i);
    } else {
        std::iota(order.begin(), order.end(), 0);
    }
    if (all) {
        m_rows.clear();
        m_byGrant.clear();
        m_allIndex.clear();
    }
    std::vector<QVector<int>> rowsOf(size_t(grants.size()));
    m_rows.reserve(m_rows.size() + qsizetype(read.size()));
    for (const int i : order) {
        rowsOf[size_t(read[size_t(i)].grant)].append(int(m_rows.size()));
        if (all)
            m_allIndex.append(int(m_rows.size()));
        m_rows.append(read[size_t(i)].m);
    }
    for (qsizetype g = 0; g < grants.size(); ++g) {
        GrantRows &rows = m_byGrant[grants.at(g)];
        rows.rows = std::move(rowsOf[size_t(g)]);
        listAccounts(rows);
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

bool ImportPohybCalc::SoucetSkupiny()
{
    total = 0;
    if (SkupUctu == DefaultFilter)
        return true;
    // A criterion that begins with " OR " (an empty first item) selects what its clauses do:
    // the items alone decide. Without items the criterion is empty and every row counts.
    auto filter = m_filters.constFind(SkupUctu);
    if (filter == m_filters.constEnd())
        filter = m_filters.insert(SkupUctu, {FilterItems(SkupUctu), ReversedAccounts(SkupUctu)});
    const QStringList &items = filter->items, &reversed = filter->reversed;
    const QVector<int> *rows = nullptr;
    const QVector<int> *accounts = nullptr;
    QVector<int> every;
    if (items.isEmpty()) {
        rows = m_movements.allRows();
        every.resize(m_movements.accountCount());
        std::iota(every.begin(), every.end(), 0);
        accounts = &every;
    } else if (const MovementSource::GrantRows *grant = m_movements.grantRows(GrantActiv.trimmed())) {
        rows = &grant->rows;
        accounts = &grant->accounts;
    }
    if (!rows)
        return false;
    // Whether and with which sign each account counts, then the rows in their order: MD raises
    // the sum, DAL lowers it, an account the filter reverses the other way round.
    m_weight.resize(m_movements.accountCount());
    for (const int a : *accounts) {
        const QString &account = m_movements.account(a);
        const bool counted = items.isEmpty() || std::any_of(items.cbegin(), items.cend(), [&](const QString &item) {
                                 return account.startsWith(item, Qt::CaseInsensitive);
                             });
        m_weight[a] = !counted ? 0 : reversed.contains(account.trimmed()) ? -1 : 1;
    }
    const QVector<Movement> &movements = m_movements.rows();
    for (const int i : *rows) {
        const Movement &m = movements.at(i);
        if (const int w = m_weight.at(m.account))
            total += (m.dal ? -w : w) * m.amount;
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
    QVector<QStringList> values;
    values.reserve(rows.size());
    for (const GroupRow &r : rows)
        values.append({QString::number(r.id), r.plan, r.cerpani, r.zustatek, r.procent});
    return UpdateRowsById(conn, QStringLiteral("SkupUctuGrant"),
                          {QStringLiteral("Castka_plan"), QStringLiteral("Castka_cerpani"), QStringLiteral("Zustatek"),
                           QStringLiteral("Procent")},
                          values);
}

bool WriteCastka3(DbConnection &conn, const QVector<QPair<int, QString>> &values)
{
    QVector<QStringList> rows;
    rows.reserve(values.size());
    for (const auto &[id, castka3] : values)
        rows.append({QString::number(id), castka3});
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
    QVector<QStringList> values;
    for (const LevelRow &r : rows) {
        if (level == 3)
            values.append({QString::number(r.id), r.castkaImport, r.castkaZustatek, r.procent});
        else
            values.append({QString::number(r.id), r.castka});
    }
    const QStringList columns = level == 3 ? QStringList{QStringLiteral("Castka_import"), QStringLiteral("Castka_zustatek"),
                                                         QStringLiteral("Procent")}
                                           : QStringList{QStringLiteral("Castka")};
    Transaction t(conn);
    return UpdateRowsById(conn, LevelTable(level), columns, values) && t.commit();
}
