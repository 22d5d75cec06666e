// order html, orders list: the order form of one order, and the archive's list with the
// state of each row, filtered as the archive filters it.

#include "app/cli/cli.h"

#include "core/config.h"
#include "core/db.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objhtml.h"
#include "orders/objlist.h"

#include <QRegularExpression>

namespace {
int orderHtml(const CliArgs &args)
{
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection sys(ConnStrSys());
    DbConnection centre(ConnStrFor(Session().MysqlDb));
    if (!sys.isOpen() || !centre.isOpen())
        return CliFail(QStringLiteral("order html: ") + (sys.isOpen() ? centre.errorText() : sys.errorText()));
    const QString folder = args.value(QStringLiteral("--folder"), GetZadankySave());
    CliProgress(QStringLiteral("order html: %1").arg(args.at(0)));
    const ObjFormContext ctx = LoadObjFormContext(sys, Session().TempDir);
    QString error;
    const QString path = WriteObjFormFile(centre, ctx, folder, args.at(0), &error);
    CliProgressDone();
    if (path.isEmpty())
        return CliFail(QStringLiteral("order html: ") + error);
    CliSummary(path);
    return CliOk;
}

int ordersList(const CliArgs &args)
{
    const QString status = args.value(QStringLiteral("--status"));
    const QString year = args.value(QStringLiteral("--year"));
    const QString grant = args.value(QStringLiteral("--grant"));
    // The archive has one box for a status or a grant: one of them at a time.
    if (!status.isEmpty() && !grant.isEmpty())
        return CliFail(QStringLiteral("orders list: --status a --grant nelze zadat zároveň (v archivu je to jeden seznam)"));
    int statusIndex = 0;
    if (!status.isEmpty()) {
        statusIndex = int(ObjStatusEntries().indexOf(status));
        if (statusIndex < 1)
            return CliFail(QStringLiteral("orders list: neznámý stav \"%1\"; možné jsou: %2")
                               .arg(status, ObjStatusEntries().mid(1).join(QStringLiteral(", "))));
    } else if (!grant.isEmpty()) {
        statusIndex = 5;
    }
    static const QRegularExpression yearDigits(QStringLiteral("^[0-9]{4}$"));
    if (!year.isEmpty() && !yearDigits.match(year).hasMatch())
        return CliFail(QStringLiteral("orders list: rok \"%1\" není rok (čtyři číslice)").arg(year));
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection centre(ConnStrFor(Session().MysqlDb));
    if (!centre.isOpen())
        return CliFail(QStringLiteral("orders list: ") + centre.errorText());
    // The list reads the colour and the short images for every filter.
    if (!ObjListUpToDate(centre))
        return CliFail(QStringLiteral("orders list: ") + ObjListOldDatabaseText(Session().MysqlDb));
    const ObjFilter filter = FilterObj(statusIndex, statusIndex == 5 ? grant : status, year, Session().UserTyp == 3);
    QList<ObjListRow> rows;
    if (!ObjListRows(centre, filter, statusIndex, &rows))
        return CliFail(QStringLiteral("orders list: ") + centre.errorText());
    for (const ObjListRow &r : rows)
        CliSummary(QStringList{QString::number(r.nom), r.cisObj, ObjDateText(r.datObj), r.grant, r.firma,
                               GetField(r.castka, 0), GetField(r.castka, 1), r.coml ? QStringLiteral("L") : QString(),
                               ObjStateName(r.state)}
                       .join(QLatin1Char('\t')));
    CliProgress(QStringLiteral("orders list: %1 řádků; filtr: %2").arg(rows.size()).arg(filter.text.isEmpty() ? QStringLiteral("žádný") : filter.text));
    CliProgressDone();
    return CliOk;
}

const CliRegistration html({
    QStringLiteral("order html"),
    QStringLiteral("CIS_OBJ [--folder DIR]"),
    QStringLiteral("writes the order's HTML form into the order folder (ZADANKY_SAVE) and prints its path"),
    {QStringLiteral("--folder")},
    {},
    1,
    1,
    orderHtml,
});

const CliRegistration list({
    QStringLiteral("orders list"),
    QStringLiteral("[--status S] [--year Y] [--grant G]"),
    QStringLiteral("prints the archive's orders with their state (tab-separated: id, number, date, grant, firm, "
                   "price, booked, L, state), filtered as the archive filters them"),
    {QStringLiteral("--status"), QStringLiteral("--year"), QStringLiteral("--grant")},
    {},
    0,
    0,
    ordersList,
});
} // namespace
