// Opening the cost-centre budgets (frmStredisko) and the grant register with 2,000 grants
// and 40,000 group rows. Goal: well under a second for each.

#include "core/db.h"
#include "core/session.h"
#include "grants/amount.h"
#include "grants/frmStredisko.h"
#include "grants/grantplan.h"
#include "grants/skupuctugrant.h"
#include "../common/benchenv.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QVariantList>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {
constexpr int Grants = 2000;
constexpr int GroupsPerGrant = 20;

bool Generate(DbConnection &conn)
{
    QVector<QVariantList> grants, groups;
    for (int g = 0; g < Grants; ++g) {
        const QString number = QString::number(10000 + g);
        const double budget = 500000.0 + 1000.0 * (g % 700);
        grants.append({number, FormatAmount(budget), FormatAmount(budget / 2), QStringLiteral("doc. MUDr. Řešitel %1").arg(g),
                       FormatAmount(budget / 3), QStringLiteral("01.01.2024"), g % 4 ? QStringLiteral(" ") : QStringLiteral("31.12.2025"),
                       QStringLiteral("GA24-%1S").arg(g), g % 2 ? QStringLiteral("510 Klinická farmakologie") : QStringLiteral("520 Molekulární genetika"),
                       QStringLiteral("GAČR"), g % 9 ? QStringLiteral("0") : QStringLiteral("1")});
        for (int k = 0; k < GroupsPerGrant; ++k) {
            GroupRow r;
            r.plan = FormatAmount(budget / GroupsPerGrant);
            r.cerpani = FormatAmount(budget / GroupsPerGrant * (k % 7) / 6.0 + k * 0.37);
            SpoctiRadek(r);
            groups.append({number, QStringLiteral("5%1*,6%1*").arg(k, 2, 10, QLatin1Char('0')), QStringLiteral("Skupina %1").arg(k),
                           r.plan, r.cerpani, r.zustatek, r.procent, QStringLiteral(" "), QStringLiteral(" ")});
        }
    }
    return InsertRows(conn, QStringLiteral("INSERT INTO GrantyPlan (_grant, Castka1, Poskytnute, Castka2, Castka3, zahajeni, "
                                           "ukonceni, cislo, stredisko, agentura, archiv) VALUES "), 11, grants) &&
           InsertRows(conn, QStringLiteral("INSERT INTO SkupUctuGrant (`Grant`, Ucet, Nazev, Castka_plan, Castka_cerpani, "
                                           "Zustatek, Procent, Rezerv1, Rezerv2) VALUES "), 9, groups);
}

void Report(const char *what, double ms)
{
    std::printf("%-58s %8.1f ms  (goal: well under 1000 ms, %.0f%% of it)\n", what, ms, ms / 10.0);
}
} // namespace

int main(int argc, char **argv)
{
    BenchEnvironment environment(argc, argv);
    int rc = 0;
    {
        DbConnection conn(ConnStrGranty());
        QElapsedTimer t;
        t.start();
        if (!Generate(conn)) {
            std::fprintf(stderr, "data: %s\n", qPrintable(conn.errorText()));
            rc = 1;
        } else {
            std::printf("generated %d grants and %d group rows in %.1f s\n", Grants, Grants * GroupsPerGrant, t.elapsed() / 1000.0);
            int rows = 0;
            Report("frmStredisko logic: budgets, group rows, totals, sums", BestOfFive([&] {
                       QVector<GrantBudget> budgets;
                       QVector<GroupRow> groups;
                       LoadGrantBudgets(conn, QStringLiteral("0"), &budgets);
                       LoadStredisko(conn, QStringLiteral("0"), &groups);
                       SumGroupRows(groups);
                       PlanSumsByGrant(groups);
                       rows = groups.size();
                   }));
            Report("  of it: LoadStredisko alone", BestOfFive([&] {
                       QVector<GroupRow> groups;
                       LoadStredisko(conn, QStringLiteral("0"), &groups);
                   }));
            Report("frmStredisko logic, user with grants \"100,1010,19\"", BestOfFive([&] {
                       QVector<GrantBudget> budgets;
                       QVector<GroupRow> groups;
                       LoadGrantBudgets(conn, QStringLiteral("100,1010,19"), &budgets);
                       LoadStredisko(conn, QStringLiteral("100,1010,19"), &groups);
                       SumGroupRows(groups);
                   }));
            Report("frmStredisko screen: construct and load", BestOfFive([] {
                       frmStredisko screen;
                       screen.load();
                   }));
            Report("grant register: FillGrantPlan, all grants", BestOfFive([&] {
                       GrantPlanList list;
                       FillGrantPlan(conn, GrantPlanView{}, &list);
                   }));
            std::printf("(%d group rows in view)\n", rows);
        }
    }
    return rc;
}
