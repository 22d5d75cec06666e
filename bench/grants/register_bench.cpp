// The grant register with 2,000 grants: reading the rows, and opening the screen with
// its grid filled and the first grant's details shown. Goal: well under a second.

#include "../common/benchenv.h"
#include "core/db.h"
#include "grants/frmGrantPlan.h"
#include "grants/grantplan.h"

#include <QAbstractItemView>

#include <cstdio>

namespace {
// 2,000 grants from the server's number sequence: a quarter ended, every ninth archived.
const char *const Fill =
    "INSERT INTO GrantyPlan (_grant, Castka1, Poskytnute, Castka2, Castka3, zahajeni, ukonceni, cislo, "
    "stredisko, agentura, archiv) "
    "SELECT 10000 + seq, CONCAT(500 + seq % 700, ' 000,00'), CONCAT(250 + seq % 350, ' 000,00'), "
    "CONCAT('doc. MUDr. Řešitel ', seq), '0,00', '01.01.2024', IF(seq % 4 = 0, '31.12.2025', ' '), "
    "CONCAT('GA24-', seq, 'S'), IF(seq % 2 = 0, '510 Klinická farmakologie', '520 Molekulární genetika'), "
    "'GAČR', IF(seq % 9 = 0, '1', '0') FROM seq_1_to_2000";

void Report(const char *what, int rows, double ms)
{
    std::printf("%-52s %5d rows %8.1f ms  (%.0f%% of a second)\n", what, rows, ms, ms / 10.0);
    std::fflush(stdout);
}
} // namespace

int main(int argc, char **argv)
{
    BenchEnvironment environment(argc, argv);
    DbConnection conn(ConnStrGranty());
    if (!conn.exec(QString::fromUtf8(Fill))) {
        std::fprintf(stderr, "data: %s\n", qPrintable(conn.errorText()));
        return 1;
    }
    const auto timeFill = [&](const char *what, const GrantPlanView &view) {
        GrantPlanList list;
        const double ms = BestOfFive([&] { FillGrantPlan(conn, view, &list); });
        Report(what, int(list.rows.size()), ms);
    };
    GrantPlanView view;
    timeFill("FillGrantPlan, every grant", view);
    view.hideArchived = view.hideEnded = true;
    timeFill("FillGrantPlan, archived and ended hidden", view);
    view = GrantPlanView();
    view.userFilter = QStringLiteral("100,1015,119");
    timeFill("FillGrantPlan, user with grants \"100,1015,119\"", view);
    view = GrantPlanView();
    view.sortKey = QStringLiteral("castka2");
    view.descending = true;
    timeFill("FillGrantPlan, sorted by investigator, descending", view);

    int shown = 0;
    const double open = BestOfFive([&] {
        frmGrantPlan screen;
        screen.Load();
        shown = screen.findChild<QAbstractItemView *>(QStringLiteral("MSFlexGrid2"))->model()->rowCount();
    });
    Report("frmGrantPlan: construct, Load, first grant's details", shown, open);
    return 0;
}
