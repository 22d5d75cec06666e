// stock issues|ordered|find: the summaries of the stock screen and the search in all
// warehouses, through the logic the screens call.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/session.h"
#include "registers/findall.h"
#include "stock/sklad.h"
#include "stock/summaries.h"

#include <QFileInfo>

namespace {
QString outPath(const CliArgs &args, const QString &defaultPath)
{
    return args.has(QStringLiteral("--out")) ? QFileInfo(args.value(QStringLiteral("--out"))).absoluteFilePath()
                                             : defaultPath;
}

int issues(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenCentre(args, &conn))
        return CliFailed;
    const QString sklad = args.value(QStringLiteral("--sklad"));
    const QString path = outPath(args, VydejSummaryPath(Session().TempDir, sklad));
    CliProgress(QStringLiteral("stock issues: píšu %1").arg(path));
    QString error;
    const int rows = WriteVydejSummary(*conn, sklad, path, &error);
    CliProgressDone();
    if (rows < 0)
        return CliFail(error);
    CliSummary(QStringLiteral("stock issues: %1 řádků výdeje%2 do %3")
                   .arg(rows)
                   .arg(sklad.isEmpty() ? QString() : QStringLiteral(" skladu ") + sklad, path));
    return CliOk;
}

int ordered(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenCentre(args, &conn))
        return CliFailed;
    const QString sklad = args.value(QStringLiteral("--sklad"));
    ObjednFilter filter;
    for (const SkladRef &ref : ListSklady(*conn))
        if (ref.typ == sklad)
            filter.skladFile = ref.file;
    if (filter.skladFile.isEmpty())
        return CliFail(QStringLiteral("Sklad %1 není v seznamu skladů.").arg(sklad));
    if (!SkladTableExists(*conn, Session().MysqlDb, filter.skladFile))
        return CliFail(QStringLiteral("Sklad %1 nemá svou tabulku %2.").arg(sklad, filter.skladFile));
    filter.item = args.value(QStringLiteral("--item"));
    filter.firma = args.value(QStringLiteral("--firma"));
    if (args.has(QStringLiteral("--year"))) {
        bool ok = false;
        filter.year = args.value(QStringLiteral("--year")).toInt(&ok);
        if (!ok || filter.year < 1900 || filter.year > 2999)
            return CliFail(QStringLiteral("Rok %1 není platný.").arg(args.value(QStringLiteral("--year"))));
    }
    if (args.has(QStringLiteral("--from"))) {
        filter.from = QDate::fromString(args.value(QStringLiteral("--from")), QStringLiteral("d.M.yyyy"));
        if (!filter.from.isValid())
            return CliFail(QStringLiteral("Datum %1 není platné (d.m.rrrr).").arg(args.value(QStringLiteral("--from"))));
    }
    const QString path = outPath(args, ObjednSummaryPath(Session().TempDir, sklad));
    CliProgress(QStringLiteral("stock ordered: píšu %1").arg(path));
    QString error;
    const int rows = WriteObjednSummary(*conn, sklad, filter, path, &error);
    CliProgressDone();
    if (rows < 0)
        return CliFail(error);
    CliSummary(QStringLiteral("stock ordered: %1 objednaných řádků skladu %2 do %3").arg(rows).arg(sklad, path));
    return CliOk;
}

int find(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenCentre(args, &conn))
        return CliFailed;
    const QString text = args.at(0);
    if (text.isEmpty())
        return CliFail(QStringLiteral("Zadejte název zboží."));
    const QVector<FindAllHit> hits = FindInAllSklady(*conn, text);
    for (const FindAllHit &hit : hits)
        CliSummary(hit.nazev + QLatin1Char('\t') + hit.katal + QLatin1Char('\t') + hit.skladName);
    CliSummary(QStringLiteral("stock find: %1 položek").arg(hits.size()));
    return CliOk;
}

const CliRegistration issuesVerb({
    QStringLiteral("stock issues"),
    QStringLiteral("[--sklad NAZEV] [--out SOUBOR]"),
    QStringLiteral("souhrn výdaného zboží skladu NAZEV (bez něj všech skladů) jako HTML ve Windows-1250"),
    {QStringLiteral("--sklad"), QStringLiteral("--out")},
    {},
    0,
    0,
    issues,
});
const CliRegistration orderedVerb({
    QStringLiteral("stock ordered"),
    QStringLiteral("--sklad NAZEV [--item POLOZKA] [--year ROK] [--firma F] [--from D.M.RRRR] [--out SOUBOR]"),
    QStringLiteral("souhrn objednaného zboží skladu NAZEV jako HTML ve Windows-1250"),
    {QStringLiteral("--sklad"), QStringLiteral("--item"), QStringLiteral("--year"), QStringLiteral("--firma"),
     QStringLiteral("--from"), QStringLiteral("--out")},
    {},
    0,
    0,
    ordered,
});
const CliRegistration findVerb({
    QStringLiteral("stock find"),
    QStringLiteral("TEXT"),
    QStringLiteral("hledá zboží ve všech skladech (název, katalogové číslo, z katalogu; * zastupuje cokoli)"),
    {},
    {},
    1,
    1,
    find,
});
} // namespace
