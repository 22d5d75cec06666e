#pragma once
// The shared reader of the accounting exports. One frame for the three kinds of file:
// mode 1 the list of all accounts (into memImport), mode 2 the MD/DAL movements (into
// ImportUctyCastky), mode 3 the granted budget (into RozpocetFakt). The file goes through
// the chunk files, every data record becomes rows of the target, and the whole run is one
// transaction: a failure or a cancel leaves the target as it was.

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>

class DbConnection;

enum ImportMode : short { ImportUcty = 1, ImportPohyby = 2, ImportRozpocet = 3 };

// What a run has reached; the screen shows it in its progress bar and count box,
// the batch program in its progress line.
struct ImportProgress {
    int percent = 0;        // 0..100
    int rows = 0;           // rows of the target table (those before the run included)
    int record = 0;         // records read so far
    QString chunkTime;      // last change of the chunk being read
};
// Called every few records; returning false cancels the run (everything rolled back).
using ImportProgressFn = std::function<bool(const ImportProgress &)>;

struct ImportRequest {
    QString fileName;       // empty: nothing to do
    short mode = ImportUcty;
    QString dateFrom, dateTo;   // mode 2: empty, or the range a record's date must lie in
    QString extraFilter;    // further account prefixes beside the groups' filters
    QString side;           // mode 2: "MD", "Dal" or empty
    // Mode 2: the side's rows of the period are deleted in the same transaction first.
    bool replacePeriod = false;
    // The target is emptied in the same transaction first: mode 1 memImport and the tree
    // tables, mode 3 RozpocetFakt.
    bool emptyTarget = false;
    ImportProgressFn progress;
};

struct ImportResult {
    bool ok = false;        // the whole input was read and stored
    bool cancelled = false;
    int lines = 0;          // lines of the file
    int dataRecords = 0;    // records taken as data
    int stored = 0;         // rows added to the target
    int skipped = 0;        // data records that gave no row (filter, seen, date)
    int deleted = 0;        // rows of the period deleted first
    QStringList errors;     // the error list: rows stored with an error mark
    QString failure;        // why the run stopped, in Czech (empty on success)
};

// Reads the file into the target on the connection. Refusals and failures are shown
// through the message module as well as kept in failure.
ImportResult ImportSouboru(DbConnection &conn, const ImportRequest &request);

// --- pieces of the reader, each with its one rule ---------------------------------

// The account prefixes of the groups' filters and an extra filter: each comma-separated
// non-blank item with every "*" and "-" removed.
QStringList PrefixList(const QStringList &filters, const QString &extraFilter);
bool LoadPrefixList(DbConnection &conn, const QString &extraFilter, QStringList *prefixes);

// Does the account fit a prefix? A prefix fits a longer account and a short account fits
// a longer prefix, which keeps the upper levels of the tree. An empty account or an empty
// list gives false (the caller says "no group is defined").
bool UcetVeFiltru(const QString &account, const QStringList &prefixes);

// The amount of a record as stored: "  " + the formatted amount, "  0,00" for none,
// "   Find error !   " when the text is no plain number.
QString FormatCastky(const QString &text);

// A grant number from a cost centre field: leading zeros dropped, empty as "0".
QString DropLeadingZeros(const QString &grant);

// A record is data when its first field ends in a digit.
bool IsDataRecord(const QString &record);

// A date of an export or a date box: "d.m.yyyy" (more after the tenth character is cut)
// or "yyyy-mm-dd". Invalid when it is neither or no real day.
QDate ParseImportDate(const QString &text);

// The error line of a movement row, and of the revision.
QString ErrorLineImport(int number, const QString &ucet, const QString &doklad, const QString &datum,
                        const QString &nazev, const QString &castka, const QString &side);

// Mode 2: deletes the side's rows whose date lies in the range (the other side stays).
// Gives the number deleted, -1 on a database failure.
int DeletePeriod(DbConnection &conn, const QString &side, const QDate &from, const QDate &to);

// --- repeat detection of the movement and budget files ------------------------------

// The settings keys that remember the last file: ParamFile_3/4 for movements,
// ParamFile_1/2 for the budget.
struct RepeatKeys {
    const char *length;
    const char *time;
};
inline constexpr RepeatKeys RepeatMovements{"ParamFile_3", "ParamFile_4"};
inline constexpr RepeatKeys RepeatBudget{"ParamFile_1", "ParamFile_2"};
// Was a file of this length, or of this time of last change, the last one imported?
bool IsRepeatedFile(const QString &fileName, RepeatKeys keys);
void RememberFile(const QString &fileName, RepeatKeys keys);

// --- the budget ------------------------------------------------------------------------

// Each grant's Poskytnute: the CZK amounts of RozpocetFakt that the filter selects.
bool SumPoskytnute(DbConnection &conn, const QString &filter);
