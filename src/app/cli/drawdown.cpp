// recalc, report groups, report grants: the drawdown screen's jobs over all grants or one.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/session.h"
#include "grants/drawdown.h"
#include "grants/filter.h"
#include "grants/grantreports.h"

#include <QDir>
#include <QElapsedTimer>

namespace {
const QString GrantOption = QStringLiteral("--grant");
const QString SizeOption = QStringLiteral("--size");

// The grant named by --grant among those the user sees, or a refusal.
bool FindGrant(DbConnection &conn, const QString &number, bool withArchived, GrantHead *grant, int *exitCode)
{
    if (!GrantPermitted(Session().UserFiltrGrant, number)) {
        *exitCode = CliFail(QStringLiteral("GRANT %1 nepatří mezi granty uživatele.").arg(number));
        return false;
    }
    QVector<GrantHead> all;
    if (!LoadGrantHeads(conn, Session().UserFiltrGrant, &all, withArchived)) {
        *exitCode = CliFail(conn.errorText());
        return false;
    }
    for (const GrantHead &g : std::as_const(all)) {
        if (g.grant == number) {
            *grant = g;
            return true;
        }
    }
    *exitCode = CliFail(QStringLiteral("GRANT %1 není najden...").arg(number));
    return false;
}

int Recalc(const CliArgs &args)
{
    std::unique_ptr<DbConnection> db;
    if (!CliOpenGranty(args, &db))
        return CliFailed;
    DbConnection &conn = *db;
    QVector<GrantHead> grants;
    const bool one = args.has(GrantOption);
    if (one) {
        GrantHead grant;
        int code = CliOk;
        if (!FindGrant(conn, args.value(GrantOption).trimmed(), true, &grant, &code))
            return code;
        grants = {grant};
    } else if (!LoadGrantHeads(conn, Session().UserFiltrGrant, &grants, true)) {
        return CliFail(conn.errorText());
    }
    QElapsedTimer timer;
    timer.start();
    const RecalcResult r = RecalcGrants(conn, grants, one, [](int done, int total, const QString &grant) {
        CliProgress(QStringLiteral("Přepočet GRANTu %1 (%2 z %3)").arg(grant).arg(done).arg(total));
        return true;
    });
    if (!r.ok)
        return CliFail(QStringLiteral("Přepočet se nepodařil, nic nebylo zapsáno: ") + r.error);
    CliSummary(QStringLiteral("Akce byla úspěšně ukončena... GRANTů: %1, skupin účtů: %2, čas: %3 s")
                   .arg(r.grants)
                   .arg(r.groups)
                   .arg(timer.elapsed() / 1000.0, 0, 'f', 2));
    return CliOk;
}

int Report(const std::function<void(BuildObjLJ &)> &body)
{
    QString path, error;
    if (!WriteReport(body, &path, &error))
        return CliFail(error);
    CliSummary(QDir::toNativeSeparators(path));
    return CliOk;
}

int ReportGroups(const CliArgs &args)
{
    std::unique_ptr<DbConnection> db;
    if (!CliOpenGranty(args, &db))
        return CliFailed;
    DbConnection &conn = *db;
    GrantHead grant;
    int code = CliOk;
    if (!FindGrant(conn, args.value(GrantOption).trimmed(), false, &grant, &code))
        return code;
    QVector<GroupRow> groups;
    if (!LoadGroupsByName(conn, grant.grant, &groups))
        return CliFail(conn.errorText());
    return Report([&](BuildObjLJ &html) { CreateSestavuUctu(html, grant, groups, args.value(SizeOption, QStringLiteral("2"))); });
}

int ReportGrants(const CliArgs &args)
{
    std::unique_ptr<DbConnection> db;
    if (!CliOpenGranty(args, &db))
        return CliFailed;
    DbConnection &conn = *db;
    QVector<GrantHead> grants;
    QString from, to;
    if (!LoadGrantHeads(conn, Session().UserFiltrGrant, &grants) || !LoadPeriod(conn, &from, &to))
        return CliFail(conn.errorText());
    if (grants.isEmpty())
        return CliFail(QStringLiteral("Není vytvořen seznam GRANTU s rozpočtovýma částkama!"));
    return Report([&](BuildObjLJ &html) { GrantListReport(html, grants, from, to, args.value(SizeOption, QStringLiteral("2"))); });
}

const CliRegistration recalc({
    QStringLiteral("recalc"),
    QStringLiteral("[--grant N]"),
    QStringLiteral("Přepočet všech GRANTu (GRANTy uživatele), s --grant Aktualizace skupiny jednoho GRANTu; "
                   "vše se zapíše v jedné transakci"),
    {GrantOption},
    {},
    0,
    0,
    Recalc,
});

const CliRegistration reportGroups({
    QStringLiteral("report groups"),
    QStringLiteral("--grant N [--size S]"),
    QStringLiteral("Tisk všech skupin účtů jednoho GRANTu do List.htm; vypíše cestu k souboru"),
    {GrantOption, SizeOption},
    {},
    0,
    0,
    [](const CliArgs &args) {
        if (args.has(GrantOption))
            return ReportGroups(args);
        CliFail(QStringLiteral("report groups: chybí volba --grant N"));
        return CliUsage;
    },
});

const CliRegistration reportGrants({
    QStringLiteral("report grants"),
    QStringLiteral("[--size S]"),
    QStringLiteral("Tisk seznamu GRANTu (GRANTy uživatele) do List.htm; vypíše cestu k souboru"),
    {SizeOption},
    {},
    0,
    0,
    ReportGrants,
});
} // namespace
