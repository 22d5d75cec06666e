// The accounting import as batch jobs: import-accounts, import-movements, build-tree,
// revise, import-budget. Each calls the reader and the tree builder the import screens
// call, answers their questions from its flags and prints what the screens show.

#include "app/cli/cli.h"

#include "core/config.h"
#include "core/db.h"
#include "grants/amount.h"
#include "import/buildtree.h"
#include "import/importsouboru.h"
#include "import/pozice.h"
#include "import/revize.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace {
// A progress line at most five times a second.
class Throttle {
public:
    bool due()
    {
        if (m_timer.isValid() && m_timer.elapsed() < 200)
            return false;
        m_timer.start();
        return true;
    }

private:
    QElapsedTimer m_timer;
};

ImportProgressFn ProgressLine(const QString &verb)
{
    auto throttle = std::make_shared<Throttle>();
    return [verb, throttle](const ImportProgress &p) {
        if (throttle->due() || p.percent >= 100)
            CliProgress(QStringLiteral("%1: %2 %, %3 řádků v tabulce").arg(verb).arg(p.percent).arg(p.rows));
        return true;
    };
}

void PrintImport(const QString &verb, const ImportResult &r)
{
    CliSummary(QStringLiteral("%1: přečteno řádků %2, datových záznamů %3, uloženo %4, vynecháno %5, "
                              "chybových řádků %6%7")
                   .arg(verb)
                   .arg(r.lines)
                   .arg(r.dataRecords)
                   .arg(r.stored)
                   .arg(r.skipped)
                   .arg(r.errors.size())
                   .arg(r.deleted > 0 ? QStringLiteral(", smazáno z období %1").arg(r.deleted) : QString()));
    for (const QString &line : r.errors)
        CliSummary(line);
}

int RunTree(DbConnection &conn, bool sum)
{
    auto throttle = std::make_shared<Throttle>();
    const TreeResult r = BuildTree(conn, sum, [throttle](const TreeProgress &p) {
        if (throttle->due())
            CliProgress(QStringLiteral("build-tree: %1 (%2 %)").arg(p.step).arg(p.accounts));
        return true;
    });
    if (r.nothing && !sum) {
        // The account list came first; the tree follows with the movements.
        CliSummary(QStringLiteral("build-tree: strom nevytvořen, chybí pohyby MD/DAL"));
        return CliOk;
    }
    if (!r.ok)
        return CliFail(QStringLiteral("build-tree: ") + r.failure);
    CliSummary(QStringLiteral("build-tree: doplněno účtů %1, sečteno účtů %2, GrantTabl_main %3, Grant_devize_1 %4, "
                              "Grant_devize_2 %5, Grant_devize_3 %6")
                   .arg(r.added)
                   .arg(r.summed)
                   .arg(r.levels[0])
                   .arg(r.levels[1])
                   .arg(r.levels[2])
                   .arg(r.levels[3]));
    return CliOk;
}

int ImportAccounts(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    ImportRequest rq;
    rq.fileName = args.at(0);
    rq.mode = ImportUcty;
    rq.extraFilter = args.value(QStringLiteral("--filter"));
    rq.emptyTarget = true;
    rq.progress = ProgressLine(QStringLiteral("import-accounts"));
    const ImportResult r = ImportSouboru(*conn, rq);
    if (!r.ok)
        return CliFail(QStringLiteral("import-accounts: ") + r.failure);
    PrintImport(QStringLiteral("import-accounts"), r);
    return RunTree(*conn, false);
}

int ImportMovements(const CliArgs &args)
{
    const QString side = args.value(QStringLiteral("--side"));
    if (side != QLatin1String("MD") && side != QLatin1String("Dal"))
        return CliFail(QStringLiteral("import-movements: --side je MD nebo Dal"));
    const QString from = args.value(QStringLiteral("--from")), to = args.value(QStringLiteral("--to"));
    if (!IsDateText(from) || !IsDateText(to))
        return CliFail(QStringLiteral("import-movements: Špatný formát datumu."));
    const QString file = args.at(0);
    if (!QFileInfo(file).isFile())
        return CliFail(QStringLiteral("Importní soubor ") + QFileInfo(file).fileName()
                       + QStringLiteral(" neexistuje, akce provedena nebude!"));
    if (IsRepeatedFile(file, RepeatMovements) && !args.flag(QStringLiteral("--force-repeat")))
        return CliFail(QStringLiteral("Soubor  ") + QFileInfo(file).fileName()
                       + QStringLiteral("  je už jedno importován. (--force-repeat jej importuje znovu)"));
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    RememberFile(file, RepeatMovements);
    if (!NactiPozice(file, PoziceMD_DAL))
        return CliFail(QStringLiteral("import-movements: sloupce souboru neodpovídají definici DEFINE POZICE TAB"));
    ImportRequest rq;
    rq.fileName = file;
    rq.mode = ImportPohyby;
    rq.dateFrom = from;
    rq.dateTo = to;
    rq.side = side;
    rq.replacePeriod = args.flag(QStringLiteral("--replace-period"));
    rq.progress = ProgressLine(QStringLiteral("import-movements"));
    const ImportResult r = ImportSouboru(*conn, rq);
    if (!r.ok)
        return CliFail(QStringLiteral("import-movements: ") + r.failure);
    PrintImport(QStringLiteral("import-movements"), r);
    return RunTree(*conn, true);
}

int BuildTreeVerb(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    return RunTree(*conn, args.flag(QStringLiteral("--sum")));
}

int Revise(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    const QString file = args.at(0);
    if (!NactiPozice(file, PoziceMD_DAL))
        return CliFail(QStringLiteral("revise: sloupce souboru neodpovídají definici DEFINE POZICE TAB"));
    const RevizeResult r = KontrolaSouboru(*conn, file, args.value(QStringLiteral("--from")), args.value(QStringLiteral("--to")));
    if (!r.ok)
        return CliFail(QStringLiteral("revise: ") + r.failure);
    CliSummary(QString::fromUtf8(TitleRevize));
    for (const QString &line : r.lines)
        CliSummary(line);
    CliSummary(QStringLiteral("revise: účtů k prověření %1, Celkem, Kč MD: %2 DAL: %3")
                   .arg(r.lines.size())
                   .arg(FormatAmount(r.totalMD), FormatAmount(r.totalDal)));
    return CliOk;
}

int ImportBudget(const CliArgs &args)
{
    const QString file = args.at(0);
    if (!QFileInfo(file).isFile())
        return CliFail(QStringLiteral("Importní soubor ") + QFileInfo(file).fileName()
                       + QStringLiteral(" neexistuje, akce provedena nebude!"));
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    const QString filter = args.has(QStringLiteral("--filter")) ? args.value(QStringLiteral("--filter")) : GetFiltrUctyRozp();
    RememberFile(file, RepeatBudget);
    ImportRequest rq;
    rq.fileName = file;
    rq.mode = ImportRozpocet;
    rq.extraFilter = filter;
    rq.emptyTarget = true;
    rq.progress = ProgressLine(QStringLiteral("import-budget"));
    const ImportResult r = ImportSouboru(*conn, rq);
    if (!r.ok || !SumPoskytnute(*conn, filter))
        return CliFail(QStringLiteral("Není Import file complete. ") + r.failure + conn->errorText());
    PrintImport(QStringLiteral("import-budget"), r);
    CliSummary(QStringLiteral("import-budget: Poskytnute sečteno podle filtru \"%1\"").arg(filter));
    return CliOk;
}

const CliRegistration accounts({
    QStringLiteral("import-accounts"),
    QStringLiteral("FILE [--filter F]"),
    QStringLiteral("načte seznam všech účtů do memImport (účty, které počítá některá skupina, nebo filtr F), pak vytvoří strom účtů"),
    {QStringLiteral("--filter")},
    {},
    1,
    1,
    ImportAccounts,
});
const CliRegistration movements({
    QStringLiteral("import-movements"),
    QStringLiteral("FILE --side MD|Dal --from DD.MM.YYYY --to DD.MM.YYYY [--replace-period] [--force-repeat]"),
    QStringLiteral("načte jednu stranu exportu MD/DAL za období do ImportUctyCastky, pak vytvoří strom se součty; "
                   "--replace-period nejprve smaže řádky strany v období, --force-repeat importuje i naposledy importovaný soubor"),
    {QStringLiteral("--side"), QStringLiteral("--from"), QStringLiteral("--to")},
    {QStringLiteral("--replace-period"), QStringLiteral("--force-repeat")},
    1,
    1,
    ImportMovements,
});
const CliRegistration tree({
    QStringLiteral("build-tree"),
    QStringLiteral("[--sum]"),
    QStringLiteral("vytvoří strom účtů všech grantů z memImport; --sum nejprve doplní účty z pohybů a sečte je"),
    {},
    {QStringLiteral("--sum")},
    0,
    0,
    BuildTreeVerb,
});
const CliRegistration revise({
    QStringLiteral("revise"),
    QStringLiteral("FILE [--from DD.MM.YYYY --to DD.MM.YYYY]"),
    QStringLiteral("vypíše účty exportu MD/DAL, které seznam účtů nemá, se součty obou stran"),
    {QStringLiteral("--from"), QStringLiteral("--to")},
    {},
    1,
    1,
    Revise,
});
const CliRegistration budget({
    QStringLiteral("import-budget"),
    QStringLiteral("FILE [--filter F]"),
    QStringLiteral("načte export rozpočtu do RozpocetFakt a sečte částky v CZK podle filtru do Poskytnute každého grantu"),
    {QStringLiteral("--filter")},
    {},
    1,
    1,
    ImportBudget,
});
} // namespace
