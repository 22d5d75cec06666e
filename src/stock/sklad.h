#pragma once
// Warehouses and their movements, apart from the screens. Each warehouse is a table of the
// centre database made from the template PLASTY; table `typ` lists them. Table names come
// only from the program and are checked before they reach a statement.

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class DbConnection;
class QSqlRecord;

// A warehouse as screens pass it: "Typ~File".
struct SkladRef {
    QString typ;    // the name the user gave
    QString file;   // the table
    bool isEmpty() const { return file.isEmpty(); }
    QString openFile() const { return typ + QLatin1Char('~') + file; }
};
SkladRef ParseOpenFile(const QString &openFile);

// The table name of a warehouse made at that moment: "Skl" + "d.M.yyyy" and "H:mm:ss"
// without their separators, so 15.3.2013 10:15:00 gives Skl1532013101500.
QString NewSkladTableName(const QDateTime &now);
// The statements that make the table, in their order (the copy loses the key, so the key
// column is dropped and made again), and last the indexes of the columns the searches
// start from (name, catalogue number, catalogue label), which the copy loses as well; the
// name's index holds the other two, so a search reads it without the rows.
QStringList CreateSkladStatements(const QString &file);
// Those indexes, as the table's keys ("KEY (`Katal`)").
const QStringList &SkladKeys();
// The indexes of every warehouse of the centre made to be SkladKeys(): a warehouse made by an
// earlier version lacks them. A table name of the list that is no plain identifier is passed
// over with a line in changes, a table that is gone is left alone.
bool UpgradeSklady(DbConnection &centre, QStringList *changes, QString *error);

// Every operation below returns false and writes a Czech message to *error on failure.

// The typ row first, then the table; a failed CREATE leaves the typ row (it is removed as
// an orphan at the next choice).
bool CreateSklad(DbConnection &centre, const QString &name, const QString &file, QString *error);
bool RenameSklad(DbConnection &centre, const QString &file, const QString &newName, QString *error);
// Drops the table and removes its typ row; the journal keeps its rows.
bool DropSklad(DbConnection &centre, const QString &file, QString *error);
// Does the table exist in the database (any letter case)?
bool SkladTableExists(DbConnection &centre, const QString &database, const QString &file);
bool RemoveOrphanSklad(DbConnection &centre, const QString &file, QString *error);
// The warehouses, sorted by name.
QVector<SkladRef> ListSklady(DbConnection &centre);

// --- items -----------------------------------------------------------------------------

// The year filter of the grid: DAT_OBJ within the year (bound values "year-01-01", "year-12-31"),
// or within the years from the first to the last given.
QString YearCondition();
QVariantList YearValues(int year, int lastYear = 0);

// A quantity as typed: digits and one decimal mark ("," or ".") only; anything else, or
// two marks, counts as 0.
double ParseQuantity(const QString &text);
// The pieces a movement moves: packages × pieces, pieces of 0 (or bad) counting as 1.
double MovementPieces(const QString &packages, const QString &pieces);

// A new item with its defaults and the name; returns its nom (0 on failure).
quint32 AddItem(DbConnection &centre, const QString &file, const QString &name, const QDate &today,
                QString *error);

// The fields of the edit panel.
struct ItemEdit {
    QString firma, datObj, nazev, katal, poznam, mira, zkatalog, cena;
};
// One UPDATE; an apostrophe in the name is stored as a backtick. datObj is "d.M.yyyy".
bool SaveItem(DbConnection &centre, const QString &file, quint32 nom, const ItemEdit &edit, QString *error);

// Adds packages × pieces to the balance.
bool ReceiveItem(DbConnection &centre, const QString &file, quint32 nom, const QString &packages,
                 const QString &pieces, QString *error);

struct IssueInput {
    QString nazev, katal, komu, mira;
    QString date;                      // "dd.mm.yyyy"
    QString packages, pieces;
    QString sklad;                     // name of the warehouse, empty when unknown
};
// The quantity text of the journal: packages " x " pieces.
QString IssueText(const QString &packages, const QString &pieces);
// The journal row, then the balance lowered by packages × pieces (a NULL balance counts as 0,
// and may go below zero). Both in one transaction.
bool IssueItem(DbConnection &centre, const QString &file, quint32 nom, const IssueInput &issue, QString *error);

// Removes every row of that name; returns how many (-1 on failure).
int DeleteItemsByName(DbConnection &centre, const QString &file, const QString &name, QString *error);

// The columns copied from one warehouse to another, in the order of the buffer.
const QStringList &BufferColumns();
// Each row as its columns joined by "~", " " for an empty text.
QStringList ReadRowsToBuffer(DbConnection &centre, const QString &file, const QVector<quint32> &noms);
// Adds the buffered rows to the target warehouse, all or none.
bool CopyRows(DbConnection &centre, const QString &targetFile, const QStringList &buffer, QString *error);

// The first row, in the grid's order, whose name, catalogue label, catalogue number, note or
// price (in this order of tries) starts with the text; "*" stands for any text. 0: none.
quint32 FindInSklad(DbConnection &centre, const QString &file, const QString &text, const QString &where,
                    const QVariantList &whereValues, const QString &orderBy);

// "položku" for one, "položky" for two to four, " položek " for more.
QString ItemWord(int count);
// The numbered names under a question, one a line: "1. name", "2. name".
QString NumberedNames(const QStringList &names);

// The line handed to an order: name with the packaging ", (p x s)" when there is one,
// catalogue number, unit, price, firm, catalogue label, nom; "~" between them. Order entry
// takes pieces 0, 2 and 3 into its grid's columns of the same numbers.
QString PickLine(const QSqlRecord &item);

// Is the expiry date past?
bool IsExpired(const QVariant &expir, const QDate &today);

// The expiry date of an item, "d.M.yyyy"; an empty text clears it.
bool SetExpiry(DbConnection &centre, const QString &file, quint32 nom, const QString &date, QString *error);
