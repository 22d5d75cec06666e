// The stock screens on a large centre: 20 warehouses of 50,000 items each (made through the
// program's own creation path) and a journal of 200,000 issues. Goal: opening the stock
// screen, the search in all warehouses and the issue archive each under a second. Beside
// each figure stands the plain reading of the same rows, measured in the same run.

#include "../common/benchenv.h"
#include "registers/findall.h"
#include "registers/frmFindAll.h"
#include "stock/frmCHEMIK.h"
#include "stock/frmVydeji.h"
#include "stock/journal.h"
#include "stock/sklad.h"

#include <QSqlQuery>
#include <QStringList>

#include <cstdio>

namespace {
constexpr int Sklady = 20;
constexpr int Items = 50000;
constexpr int Issues = 200000;

const char *const Words[] = {"Ethanol", "Methanol", "Abraziv", "Acetonitril", "Agar", "Zkumavky", "Špičky", "Pipety",
                             "Rukavice", "Kyvety", "Filtry", "Destičky", "Lahve", "Pufr", "Papír", "Toner"};

bool Generate(DbConnection &centre, QVector<SkladRef> *sklady)
{
    QString error;
    const QDate today = QDate::currentDate();
    for (int s = 0; s < Sklady; ++s) {
        const SkladRef ref{QStringLiteral("Sklad %1").arg(s + 1), QStringLiteral("SklBench%1").arg(s + 1)};
        if (!CreateSklad(centre, ref.typ, ref.file, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return false;
        }
        sklady->push_back(ref);
    }
    QVector<QVariantList> items;
    for (int i = 0; i < Items; ++i) {
        const QString name = QStringLiteral("%1 %2").arg(QString::fromUtf8(Words[i % 16])).arg(i, 5, 10, QLatin1Char('0'));
        items.append({name, QStringLiteral("K-%1").arg(i), QStringLiteral("ks"), QStringLiteral("%1,00").arg(i % 900 + 10),
                      QStringLiteral("Dodavatel %1").arg(i % 40), QStringLiteral("poznámka %1").arg(i % 13),
                      today.addDays(-(i % 300)), i % 7 ? QVariant(today.addDays(i % 400 - 100)) : QVariant(), double(i % 250),
                      QStringLiteral("Z-%1").arg(i % 5000)});
    }
    const QString first = sklady->first().file;
    if (!InsertRows(centre, QStringLiteral("INSERT INTO ") + first
                        + QStringLiteral(" (Nazev, Katal, Mira, CENA, Firma, Poznam, DAT_OBJ, EXPIR, KUS_PR, ZKATALOG) VALUES "),
                    10, items))
        return false;
    for (int s = 1; s < Sklady; ++s)
        if (!centre.exec(QStringLiteral("INSERT INTO ") + sklady->at(s).file + QStringLiteral(" SELECT * FROM ") + first))
            return false;
    QVector<QVariantList> journal;
    for (int i = 0; i < Issues; ++i)
        journal.append({QStringLiteral("%1 %2").arg(QString::fromUtf8(Words[i % 16])).arg(i % Items, 5, 10, QLatin1Char('0')),
                        QStringLiteral("K-%1").arg(i % Items), QStringLiteral("Laboratoř %1").arg(i % 30), QStringLiteral("ks"),
                        today.addDays(-(i % 365)), QStringLiteral("1 x %1").arg(i % 10 + 1),
                        sklady->at(i % Sklady).typ});
    return InsertRows(centre, QStringLiteral("INSERT INTO CHEM_VYD (NAM_CHIM, KATAL, KOMU, MIRA, DAT_VYD, KUS_VY, sklad) VALUES "),
                      7, journal);
}

// The floor: every row of a statement read once, nothing shown.
double PlainRead(DbConnection &centre, const QString &sql, const QVariantList &values = {})
{
    return BestOfFive([&] {
        QSqlQuery q = centre.query();
        q.setForwardOnly(true);
        centre.exec(q, sql, values);
        while (q.next()) {
        }
    });
}

void Report(const char *what, double ms, double reference)
{
    std::printf("%-52s %8.1f ms  (goal < 1000 ms; plain read of its rows %.1f ms)\n", what, ms, reference);
}
} // namespace

int main(int argc, char **argv)
{
    BenchEnvironment environment(argc, argv);
    testenv::FreshDatabases(true);   // the demo centre, without its warehouses and journal
    testenv::LoginAs(3);
    DbConnection centre(ConnStrCentre());
    centre.exec(QStringLiteral("DELETE FROM typ"));
    centre.exec(QStringLiteral("DELETE FROM CHEM_VYD"));
    QVector<SkladRef> sklady;
    QElapsedTimer t;
    t.start();
    if (!Generate(centre, &sklady)) {
        std::fprintf(stderr, "data: %s\n", qPrintable(centre.errorText()));
        return 1;
    }
    std::printf("generated %d warehouses of %d items and %d issues in %.1f s\n", Sklady, Items, Issues, t.elapsed() / 1000.0);

    const SkladRef &one = sklady.first();
    // Each screen is loaded and drawn once (grab), so the rows its first screenful shows are read.
    Report("frmCHEMIK: open a warehouse of 50,000 items", BestOfFive([&] {
               frmCHEMIK screen;
               screen.OpenFile = one.openFile();
               screen.Load();
               screen.grab();
           }),
           PlainRead(centre, QStringLiteral("SELECT * FROM ") + one.file + QStringLiteral(" WHERE ") + YearCondition()
                         + QStringLiteral(" ORDER BY Nazev ASC"),
                     YearValues(QDate::currentDate().year())));
    // The goal's case, a name late in the order, a catalogue label, and a text that starts with
    // a wildcard (no index can serve it).
    for (const char *text : {"Ab", "To", "Z-4999", "*anol"}) {
        const QString input = QString::fromLatin1(text);
        Report(qPrintable(QStringLiteral("frmFindAll: \"%1\" in all 20 warehouses").arg(input)), BestOfFive([&] {
                   frmFindAll find;
                   find.mLineInput = input;
                   find.Load();
                   find.grab();
               }),
               PlainRead(centre, QStringLiteral("SELECT nom, nazev, katal FROM ") + one.file
                                     + QStringLiteral(" WHERE nazev LIKE ? OR katal LIKE ? OR zkatalog LIKE ?"),
                         {FindAllPattern(input), FindAllPattern(input), FindAllPattern(input)})
                   * Sklady);
        std::printf("  (%d hits shown, at most 1,000 from one warehouse)\n", int(FindInAllSklady(centre, input).size()));
    }
    const QString journal = QStringLiteral("SELECT NAM_CHIM, KATAL, KUS_VY, MIRA, KOMU, DAT_VYD, sklad FROM CHEM_VYD ");
    Report("frmVydeji: the whole journal of 200,000 issues", BestOfFive([] {
               frmVydeji screen;
               screen.Load();
               screen.grab();
           }),
           PlainRead(centre, journal + QStringLiteral("ORDER BY nam_chim,katal")));
    QVector<JournalRow> page;
    Report("  its last page, as the grid scrolled to the end reads it", BestOfFive([&] {
               ReadJournal(centre, QString(), Issues - 200, 200, &page, nullptr);
           }),
           PlainRead(centre, journal + QStringLiteral("ORDER BY nam_chim,katal")));
    Report("frmVydeji: one warehouse's 10,000 issues", BestOfFive([&] {
               frmVydeji screen;
               screen.OpenFile = one.openFile();
               screen.Load();
               screen.grab();
           }),
           PlainRead(centre, journal + QStringLiteral("WHERE sklad=? ORDER BY nam_chim,katal"), {one.typ}));
    return 0;
}
