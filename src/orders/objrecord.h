#pragma once
// The order record: one row of archobj is the whole order. Its packed texts, the numbering,
// the two derivations of the state (the list filter of the archive and the row colour, which
// disagree at the edges on purpose and are both kept), and the handover to the pharmacy.

#include <QColor>
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariantList>

class DbConnection;
class QSqlRecord;

// The columns of the record line, in order; index i of the line is column i.
const QStringList &ObjRecordColumns();
// Indices of the record line the generators read.
namespace ObjIx {
constexpr short CisObj = 0, DatObj = 1, Grant = 2, Firma = 3, Pobocka = 4, Adres = 5, PSC = 6,
                Mesto = 7, Tel = 8, Fax = 9, Autor = 10, DatVyriz = 11, CisGlobal = 12, Castka = 13,
                Typ = 14, Text = 15, Text1 = 16, Prikazce = 17, SpravceRozp = 18, LineRec1 = 19,
                Poc1 = 20, LineRec9 = 35, Telefon = 36, Linka = 37, Poc10 = 38, Paticka = 39,
                FilePaticka = 40;
// Goods line i (1..8) and its quantity.
constexpr short LineRec(int i) { return short(LineRec1 + 2 * (i - 1)); }
constexpr short Poc(int i) { return short(Poc1 + 2 * (i - 1)); }
} // namespace ObjIx

// The row flattened to one "~"-separated text, each field followed by "~", NULL as empty.
// Poc9 of an English letter holds its own "~", which shifts the later pieces up by one.
QString ObjRecordLine(const QSqlRecord &row);

// The number in an amount piece: "," read as ".", blanks inside skipped; empty is 0.
double AmountOf(const QString &piece);
// Dat_obj ("yyyy-mm-dd hh:mm:ss") as a date on screens and forms, "dd.mm.yyyy".
QString ObjDateText(const QString &datObj);
// The user's font size for a form or report: "0" or empty is 1.
QString FormFontSize(const QString &param);

// Numbering. The counter is the first "/"-piece of the last cis_obj in text order, plus one,
// held in 16 bits; an empty table gives 1. The text sort makes it stick at 10000.
short NextObjCounterFrom(const QStringList &cisObjNumbers);
// Reads the table; false with the server's error when it cannot.
bool NextObjCounter(DbConnection &conn, short *counter);
// "0014/22112026": the counter padded to four places, "/", the date as ddmmyyyy.
QString MakeObjCislo(short counter, const QDate &date = QDate::currentDate());
// Reserves the number: the row that holds it alone until the first save.
bool ReserveObj(DbConnection &conn, const QString &cisObj);

// The kinds, by the Typ digit.
enum ObjKind : short { KindSklad = 1, KindText = 2, KindFormCZ = 3, KindFormAN = 4, KindSluzby = 5 };

// --- derivation A: the list filter of the archive's status box ----------------------

// Status box entries 0..4; from 5 on the box lists grants.
const QStringList &ObjStatusEntries();
// The filter text of a status entry (1..4), as it stands; empty for "- Vše -".
QString ObjStatusFilterText(int statusIndex);

// The archive's filter, built as its text reads: the year unquoted and not bracketed, the
// status alternatives appended as they stand (so the year binds to the first alternative
// only), the pharmacy's "coml=1 AND " in front. `sql` is the same condition with bound values
// and exact comparisons (a single blank is not the empty text); empty when nothing filters.
struct ObjFilter {
    QString text;
    QString sql;
    QVariantList values;
};
// statusIndex: Combo2's list index; statusText its text (a grant from 5 on); year: empty when
// no year is chosen; field: the column the grant entry is looked up in.
ObjFilter FilterObj(int statusIndex, const QString &statusText, const QString &year, bool pharmacy,
                    const QString &field = QStringLiteral("Grant"));

// --- derivation B: the row colour -------------------------------------------------------

// What the colour reads from a row.
struct ObjStateFields {
    bool castkaNull = true;
    QString castka, datVyriz, objWF, cisGlobal;
};
namespace ObjColours {
inline const QColor White{0xFF, 0xFF, 0xFF};
inline const QColor Red{0xFF, 0x80, 0x80};      // vyfakturována
inline const QColor Green{0x80, 0xFF, 0x80};    // dodáno
inline const QColor Yellow{0xFF, 0xFF, 0x00};   // stáv výřizování
inline const QColor Grey{0xC0, 0xC0, 0xC0};     // zaúčtována
inline const QColor Aqua{0x00, 0xFF, 0xFF};     // vybrána, kursor
} // namespace ObjColours
// The state colour of the row, steps 1 to 4 in their order.
QColor ObjColour(const ObjStateFields &row);
// The colour of one grid cell: without an official number only the first column shows the
// state, the others stay white; chosen rows are aqua in every column. (A cleared price with a
// booked amount would show white with a button-coloured first cell, but a booked amount makes
// the row grey in the same step, so that look never reaches the grid.)
QColor ObjCellColour(const ObjStateFields &row, int column, bool chosen);
// Does the colour fit the status entry (1 yellow, 2 green, 3 red, 4 grey; others all)?
bool ObjColourFitsStatus(const QColor &colour, int statusIndex);

// --- the archive's pages --------------------------------------------------------------

constexpr int ObjPageRows = 28;
// Number of pages of a list (rows / 28 rounded up; 0 for none).
int ObjPageCount(int rows);
// First row of a page (1-based; 0 or past the end means the last page): pages are counted
// back from the end, so the last page holds the last 28 rows and the first the first 28.
int ObjPageStart(int rows, int page);

// --- the pharmacy ------------------------------------------------------------------------

// Role 3 is the pharmacy, and role 5 only reads: neither may toggle the handover.
bool CanToggleHandover(int role);
// The question before the toggle, by the current value of coml.
QString HandoverQuestion(const QString &cisObj, bool handedOver);
// Sets coml of the row; false with the error when the server refused.
bool SetHandover(DbConnection &conn, int nom, bool handedOver);

// The cost centre of a centre database (sys_db_kvl.code_stredisko), the first ","-piece.
QString ObjCentreCode(DbConnection &sys, const QString &mysqlDb);

// The user's grants for the lists: every grant of GrantyPlan by _grant, limited by the user's
// filter (comma list; "0" or empty means all).
QStringList UserGrantList(const QString &filtrGrant);
