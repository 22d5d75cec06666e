#pragma once
// The drawdown of the grants: what each account group of a grant has spent, what remains of
// its budget and of the grant's budget, and in which share. The movements of
// ImportUctyCastky are read once and kept in memory; every group sum walks only the rows of
// its grant, in the order of the record set (Datum, then as stored), so that the texts come
// out as one pass per group over the whole table would give them.

#include "grants/skupuctugrant.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class DbConnection;

// One movement row as the sum needs it. Rows whose Castka IsNumberText does not accept are
// not kept: every sum skips them.
struct Movement {
    double amount = 0;     // the trimmed Castka with "," read as "."
    int account = -1;      // the account's number among the source's distinct accounts
    bool dal = false;      // MD/DAL is "DAL"
};

// The movements, read on demand: one grant's rows, or all of them when a group without a
// filter asks for every row of every grant.
class MovementSource {
public:
    // The rows of a grant in order, and the distinct accounts among them: a group decides
    // once per account whether and with which sign it counts, not once per row.
    struct GrantRows {
        QVector<int> rows;       // indices into rows()
        QVector<int> accounts;   // distinct Movement::account values of these rows
    };

    explicit MovementSource(DbConnection &conn) : m_conn(conn) {}
    // Reads every row at once (the recalculation of all grants starts with it).
    bool loadAll();
    // The rows of a grant; nullptr when reading failed.
    const GrantRows *grantRows(const QString &grant);
    // Every row of the table in order; nullptr when reading failed.
    const QVector<int> *allRows();
    const QVector<Movement> &rows() const { return m_rows; }
    const QString &account(int number) const { return m_accounts.at(number); }
    qsizetype accountCount() const { return m_accounts.size(); }

private:
    bool read(const QString &grant, bool all);
    bool dateRanks(QHash<QByteArray, int> *ranks, int *nullRank);
    void listAccounts(GrantRows &grant);
    static QString key(const QString &grant);

    DbConnection &m_conn;
    QVector<Movement> m_rows;
    QStringList m_accounts;
    QHash<QString, int> m_accountNumbers;
    QHash<QString, GrantRows> m_byGrant;
    QVector<int> m_allIndex;
    bool m_allLoaded = false;
};

// The hidden calculator of the movement screen: the sum of one group's movements in a grant.
// The caller sets SkupUctu (the group's code filter) and GrantActiv, calls SoucetSkupiny and
// reads Cerpani, the formatted sum. Properties keep their values between calls.
class ImportPohybCalc {
public:
    // The screen's default filter: with it the sum ends at once and Cerpani stays as it was.
    static const QString DefaultFilter;

    explicit ImportPohybCalc(MovementSource &movements) : m_movements(movements) {}

    bool JenomLoadMDB = true;
    QString SkupUctu = DefaultFilter;
    QString GrantActiv;
    QString CastkaSelect = QStringLiteral("0,00");
    QString Cerpani = QStringLiteral("0,00");
    double total = 0;

    // False only when the movements could not be read.
    bool SoucetSkupiny();

private:
    MovementSource &m_movements;
    struct Filter {
        QStringList items, reversed;
    };
    QHash<QString, Filter> m_filters;   // by SkupUctu: all grants have the same few groups
    QVector<signed char> m_weight;   // per account: 0 not in the group, 1 counted, -1 reversed
};

// --- one grant -----------------------------------------------------------------------

// Castka_cerpani of each group row of a grant from the movements, then Zustatek and Procent.
// The rows come sorted by Ucet. Gives the totals of Castka_plan, Castka_cerpani, Zustatek.
// False only when the movements could not be read.
bool AktualizujGrant(ImportPohybCalc &calc, QVector<GroupRow> &rows, GroupTotals *totals);

// Castka3 of a grant: its budget minus what its account classes (GrantTabl_main) drew.
QString ZustatekGrantu(const QString &castka1, double classDrawdown);

// What remains of the money provided: Poskytnute minus the groups' drawdown ("Label35").
QString ZustatekFakt(const QString &poskytnute, double cerpani);

// Figures of the selected grant (MSFlexGrid1): Čerpání = Castka1 - Castka3 and the share spent,
// computed from the whole remaining amount with its decimals.
struct GrantFigures {
    QString grant, cerpani, zustatek, procent;   // procent followed by three blanks
    bool cerpaniNegative = false, zustatekNegative = false, procentNegative = false;
};
GrantFigures FiguresOfGrant(const QString &grant, const QString &castka1, const QString &castka3);

// Castka1 - Poskytnute as the drawdown screen shows it: "+ 1 000,00", "- 250,00", "0,00".
QString DifferenceText(const QString &castka1, const QString &poskytnute);

// --- reading and writing --------------------------------------------------------------

struct GrantHead {
    int id = 0;
    QString grant, castka1, poskytnute, castka2, castka3, stredisko;
};
// The grants of GrantyPlan a user sees in the drawdown list ("0": all that are not archived),
// sorted by stredisko and number. The recalculation of all grants takes, for a user without
// limit, the archived grants too (withArchived).
bool LoadGrantHeads(DbConnection &conn, const QString &userFilter, QVector<GrantHead> *grants,
                    bool withArchived = false);

// What the drawdown screen repairs on opening: archiv empty or null becomes "0", a null
// Poskytnute "0,00".
bool RepairGrantyPlan(DbConnection &conn);
// Castka1 (budget) or Poskytnute of a grant, edited in the grants grid: stored formatted.
enum class GrantAmount { Castka1, Poskytnute };
bool SaveGrantAmount(DbConnection &conn, const QString &grant, GrantAmount which, const QString &value);

// The group rows of a grant (Grant like grant) sorted by Ucet; with an empty grant, all rows.
bool LoadGrantGroups(DbConnection &conn, const QString &grant, QVector<GroupRow> *rows);

// The group rows of a grant as tab Key2 shows them: Grant = grant, sorted by grant and name.
bool LoadGroupsByName(DbConnection &conn, const QString &grant, QVector<GroupRow> *rows);

// Sum of Castka_import per grant over GrantTabl_main (empty as 0).
bool LoadClassDrawdown(DbConnection &conn, QHash<QString, double> *sums);

// First and last Datum of the movements (lblDatOd, lblDatDo); empty when there are none.
bool LoadPeriod(DbConnection &conn, QString *from, QString *to);

// CalkulRowUctu: the grant gets a row for every catalogue group it lacks ("0,00" amounts),
// and the rows it has take the catalogue's filter and name and a fresh Zustatek and Procent.
// Gives false on a database failure; *catalogueEmpty tells that there is nothing to copy.
bool CalkulRowUctu(DbConnection &conn, const QString &grant, bool *catalogueEmpty);
// RefreshSkupUcty for a grant: removes its rows whose filter and name no catalogue group has.
bool RefreshSkupUcty(DbConnection &conn, const QString &grant, int *removed);

// Writes Castka_plan, Castka_cerpani, Zustatek and Procent of many group rows at once.
bool WriteGroupRows(DbConnection &conn, const QVector<GroupRow> &rows);
// Writes Castka3 of many grants at once: pairs of GrantyPlan id and value.
bool WriteCastka3(DbConnection &conn, const QVector<QPair<int, QString>> &values);

// --- the recalculation ----------------------------------------------------------------

struct RecalcResult {
    bool ok = false;
    bool cancelled = false;
    int grants = 0;       // grants recalculated
    int groups = 0;       // group rows written
    QString error;        // Czech, when !ok and not cancelled
};
// Asked after each grant: done, of total, the grant just done. False cancels, and nothing
// of the run stays written.
using RecalcProgress = std::function<bool(int done, int total, const QString &grant)>;

// "Přepočet všech GRANTu" over the given grants, or "Aktualizace skupiny" of one when
// refreshGroups is set (its rows are first brought in line with the catalogue and orphans
// removed). Every grant: AktualizujGrant, then ZustatekGrantu. All is written in one
// transaction at the end.
RecalcResult RecalcGrants(DbConnection &conn, const QVector<GrantHead> &grants, bool refreshGroups,
                          const RecalcProgress &progress = {});

// --- the chart of accounts (tab Key1) -------------------------------------------------

// A row of GrantTabl_main (level 3) or Grant_devize_1..3 (levels 0..2).
struct LevelRow {
    int id = 0;
    QString grant, ucet, nazev, castka, castkaImport, castkaZustatek, procent;
};
QString LevelTable(int level);   // "Grant_devize_1", ..., "GrantTabl_main"
// The rows of a level for a grant, limited to accounts beginning with prefix, sorted by Ucet.
bool LoadLevelRows(DbConnection &conn, int level, const QString &grant, const QString &prefix,
                   QVector<LevelRow> *rows);
// MemUcetFiltr: the first class row of each grant takes the grant's budget as its Castka.
bool MemUcetFiltr(DbConnection &conn);
// CalculGrant of the rows of a level: each row's accounts summed over the movements.
// Level 3 (classes): Castka_import the drawdown, Castka_zustatek Castka minus it, Procent the
// share remaining; other levels: Castka the drawdown.
bool CalculGrant(ImportPohybCalc &calc, int level, QVector<LevelRow> &rows);
bool WriteLevelRows(DbConnection &conn, int level, const QVector<LevelRow> &rows);
