#include "import/buildtree.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/text.h"
#include "grants/amount.h"
#include "import/bulkinsert.h"

#include <QHash>
#include <QSet>
#include <QSqlQuery>

#include <algorithm>
#include <cmath>
#include <vector>

const char *const TextTreeDone =
    "Aktualizace všech skupin účtů proveďte prosím v okně - Čerpání nákladů GRANTu!";

namespace {
// An amount as whole hellers, so that a million movements add up without loss.
qint64 Hellers(const QString &castka) { return std::llround(AmountValue(castka) * 100); }

bool Numeric(const QString &castka)
{
    QString copy = castka;
    return IsNumberText(copy);
}

struct Movement {
    QString ucet;
    qint64 hellers;
};

class Builder {
public:
    Builder(DbConnection &conn, const TreeProgressFn &progress) : m_conn(conn), m_progress(progress) {}
    TreeResult run(bool sum);

private:
    bool say(TreeProgress p)
    {
        if (!m_progress || m_progress(p))
            return true;
        m_result.cancelled = true;
        m_result.failure = QStringLiteral("Akce byla přerušena, data zůstala beze změny.");
        return false;
    }
    bool failed() { return failed(m_conn.errorText()); }
    bool failed(const QString &error)
    {
        m_result.failure = QStringLiteral("Tvorba stromu účtů se nezdařila, data zůstala beze změny.\n") + error;
        MsgBox(m_result.failure, MsgCritical);
        return false;
    }
    bool readMovements();
    bool addMissing();
    bool sumAccounts();
    bool build();
    bool firstCastka3();

    DbConnection &m_conn;
    const TreeProgressFn &m_progress;
    TreeResult m_result;
    // The movements with a numeric amount, per upper-cased grant and account: their total
    // and the id of the first.
    struct Group {
        QString grant, ucet;
        qint64 hellers = 0;
        int firstId = 0;
    };
    QHash<QString, Group> m_groups;
};

int Count(DbConnection &conn, const char *table)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table)) || !q.next())
        return -1;
    return q.value(0).toInt();
}

bool Builder::readMovements()
{
    if (!say({QStringLiteral("Doplnění účtů z pohybů"), 0, 0}))
        return false;
    auto add = [this](const QString &grant, const QString &ucet, qint64 hellers, int id) {
        Group &g = m_groups[grant + QLatin1Char('~') + ucet];
        if (g.firstId == 0 || id < g.firstId)
            g.firstId = id;
        g.grant = grant;
        g.ucet = ucet;
        g.hellers += hellers;
    };
    // One pass over the movements (no names: those of the few missing accounts are read after).
    QSqlQuery m = m_conn.query();
    m.setForwardOnly(true);
    if (!m_conn.exec(m, QStringLiteral("SELECT id, `Grant`, Ucet, Castka, `MD/DAL` FROM ImportUctyCastky")))
        return failed();
    while (m.next()) {
        const QString castka = m.value(3).toString();
        if (!Numeric(castka))
            continue;
        const qint64 h = Hellers(castka);
        const bool dal = m.value(4).toString().trimmed().compare(QLatin1String("DAL"), Qt::CaseInsensitive) == 0;
        add(m.value(1).toString().toUpper(), m.value(2).toString().toUpper(), dal ? -h : h, m.value(0).toInt());
    }
    return true;
}

bool Builder::addMissing()
{
    QSqlQuery q = m_conn.query();
    q.setForwardOnly(true);
    if (!m_conn.exec(q, QStringLiteral("SELECT `GRANT`, UCET FROM memImport")))
        return failed();
    QSet<QString> known;
    while (q.next())
        known.insert(q.value(0).toString().toUpper() + QLatin1Char('~') + q.value(1).toString().toUpper());
    // An account of the movements that the list lacks, with the name of its first booking.
    std::vector<int> first;
    for (const Group &g : std::as_const(m_groups))
        if (!g.grant.isEmpty() && g.grant != QLatin1String("0") && !g.ucet.isEmpty()
            && !known.contains(g.grant + QLatin1Char('~') + g.ucet))
            first.push_back(g.firstId);
    std::sort(first.begin(), first.end());
    BulkInsert rows(m_conn, QStringLiteral("INSERT INTO memImport (UCET, NAZEV, `GRANT`, CASTKA)"), 4);
    for (size_t at = 0; at < first.size(); at += 500) {
        QVariantList ids;
        for (size_t i = at; i < std::min(first.size(), at + 500); ++i)
            ids << first[i];
        QSqlQuery m = m_conn.query();
        m.setForwardOnly(true);
        if (!m_conn.exec(m, QStringLiteral("SELECT Ucet, NazevUctu, `Grant` FROM ImportUctyCastky WHERE id IN (")
                                + QStringList(int(ids.size()), QStringLiteral("?")).join(QLatin1Char(','))
                                + QStringLiteral(") ORDER BY id"),
                         ids))
            return failed();
        while (m.next()) {
            if (!rows.add({m.value(0).toString(), QStringLiteral("* ") + m.value(1).toString(), m.value(2).toString(),
                           QStringLiteral("0,00")}))
                return failed(rows.error());
            ++m_result.added;
        }
    }
    return rows.flush() || failed(rows.error());
}

bool Builder::sumAccounts()
{
    // The accounts of each grant, sorted: an account's total is then the sum over the run
    // of accounts that begin with it.
    QHash<QString, std::vector<Movement>> byGrant;
    for (const Group &g : std::as_const(m_groups))
        byGrant[g.grant].push_back({g.ucet, g.hellers});
    QHash<QString, std::vector<qint64>> running;   // running sums beside the sorted accounts
    for (auto it = byGrant.begin(); it != byGrant.end(); ++it) {
        std::vector<Movement> &v = it.value();
        std::sort(v.begin(), v.end(), [](const Movement &a, const Movement &b) { return a.ucet < b.ucet; });
        std::vector<qint64> &r = running[it.key()];
        r.resize(v.size() + 1);
        for (size_t i = 0; i < v.size(); ++i)
            r[i + 1] = r[i] + v[i].hellers;
    }

    QSqlQuery a = m_conn.query();
    a.setForwardOnly(true);
    if (!m_conn.exec(a, QStringLiteral("SELECT id, `GRANT`, UCET FROM memImport ORDER BY id")))
        return failed();
    struct Account {
        int id;
        QString grant, ucet;
    };
    std::vector<Account> accounts;
    while (a.next())
        accounts.push_back({a.value(0).toInt(), a.value(1).toString(), a.value(2).toString()});

    BulkInsert updates(m_conn, QStringLiteral("INSERT INTO memImport (id, CASTKA)"), 2,
                       QStringLiteral(" ON DUPLICATE KEY UPDATE CASTKA = VALUES(CASTKA)"));
    for (size_t i = 0; i < accounts.size(); ++i) {
        const Account &acc = accounts[i];
        qint64 total = 0;
        const auto found = byGrant.constFind(acc.grant.toUpper());
        if (found != byGrant.constEnd()) {
            const std::vector<Movement> &v = found.value();
            const std::vector<qint64> &r = running[acc.grant.toUpper()];
            // Each comma-separated part of the account counts the movements it begins.
            for (const QString &part : acc.ucet.split(QLatin1Char(','))) {
                const QString prefix = part.toUpper();
                auto below = [](const Movement &x, const QString &p) { return x.ucet < p; };
                const auto lo = std::lower_bound(v.begin(), v.end(), prefix, below);
                const auto hi = std::lower_bound(lo, v.end(), prefix + QChar(0xFFFF), below);
                total += r[size_t(hi - v.begin())] - r[size_t(lo - v.begin())];
            }
        }
        if (!updates.add({QString::number(acc.id), FormatAmount(double(total) / 100)}))
            return failed(updates.error());
        ++m_result.summed;
        if (i % 500 == 0 && !say({acc.grant + QStringLiteral(" - ") + acc.ucet, int(i * 100 / accounts.size()), 100}))
            return false;
    }
    return updates.flush() || failed(updates.error());
}

bool Builder::build()
{
    for (const char *table : {"GrantTabl_main", "Grant_devize_1", "Grant_devize_2", "Grant_devize_3", "GrantySeznam"})
        if (!m_conn.exec(QStringLiteral("DELETE FROM ") + QLatin1String(table)))
            return failed();
    // The level is the length of the trimmed account before its first comma; an amount
    // that is empty or "0" is kept as "0,00".
    const QString level = QStringLiteral("CHAR_LENGTH(TRIM(SUBSTRING_INDEX(IFNULL(UCET, ''), ',', 1)))");
    const QString amount = QStringLiteral("CASE WHEN CASTKA IS NULL OR CASTKA = '' OR CASTKA = '0' THEN '0,00' ELSE CASTKA END");
    const QString statements[4] = {
        QStringLiteral("INSERT INTO GrantTabl_main (`Grant`, Ucet, Nazev, Castka, Castka_import, Castka_zustatek, Procent) "
                       "SELECT `GRANT`, UCET, NAZEV, %1, %1, '0,00', '0,00' FROM memImport WHERE %2 = 1 ORDER BY id"),
        QStringLiteral("INSERT INTO Grant_devize_1 (`Grant`, Ucet, Nazev, Castka) "
                       "SELECT `GRANT`, TRIM(UCET), NAZEV, %1 FROM memImport WHERE %2 = 2 ORDER BY id"),
        QStringLiteral("INSERT INTO Grant_devize_2 (`Grant`, Ucet, Nazev, Castka) "
                       "SELECT `GRANT`, TRIM(UCET), NAZEV, %1 FROM memImport WHERE %2 = 3 ORDER BY id"),
        QStringLiteral("INSERT INTO Grant_devize_3 (`Grant`, Ucet, Nazev, Castka) "
                       "SELECT `GRANT`, TRIM(UCET), NAZEV, %1 FROM memImport WHERE %2 NOT IN (1, 2, 3) ORDER BY id"),
    };
    for (int i = 0; i < 4; ++i) {
        if (!say({QStringLiteral("Tvorba stromu účtů"), 25 * i, 100}))
            return false;
        QSqlQuery q = m_conn.query();
        if (!m_conn.exec(q, statements[i].arg(amount, level)))
            return failed();
        m_result.levels[i] = q.numRowsAffected();
    }
    return true;
}

bool Builder::firstCastka3()
{
    // Provisional until the recalculation: the grant's first class row, else the plan.
    return m_conn.exec(QStringLiteral(
               "UPDATE GrantyPlan g SET Castka3 = IFNULL((SELECT t.Castka_import FROM GrantTabl_main t "
               "WHERE t.`Grant` = g._grant ORDER BY t.id LIMIT 1), g.Castka1)"))
           || failed();
}

TreeResult Builder::run(bool sum)
{
    const int accounts = Count(m_conn, "memImport"), movements = Count(m_conn, "ImportUctyCastky");
    if (accounts < 0 || movements < 0) {
        failed();
        return m_result;
    }
    m_result.nothing = accounts == 0 || movements == 0;
    if (accounts == 0) {
        m_result.failure = QStringLiteral("Mate prázdný seznam účtu GRANTu, importujte soubor funkce :\n      - Export seznamu všech účtu. ");
        MsgBox(m_result.failure, MsgInformation, QStringLiteral("Informace"));
        return m_result;
    }
    if (movements == 0) {
        m_result.failure = QStringLiteral("Mate prázdný export souboru MD/DAL, importujte soubor funkce :\n      - Export souboru MD/DAL. ");
        MsgBox(m_result.failure, MsgInformation, QStringLiteral("Informace"));
        return m_result;
    }
    Transaction tx(m_conn);
    if (!tx.active() || (sum && (!readMovements() || !addMissing() || !sumAccounts())) || !build() || !firstCastka3())
        return m_result;
    if (!tx.commit()) {
        failed();
        return m_result;
    }
    say({QStringLiteral("Hotovo"), 100, 100});
    m_result.ok = true;
    return m_result;
}
} // namespace

TreeResult BuildTree(DbConnection &conn, bool sum, const TreeProgressFn &progress)
{
    return Builder(conn, progress).run(sum);
}
