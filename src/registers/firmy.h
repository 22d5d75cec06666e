#pragma once
// The firm card file apart from its screen: the columns, the postcode mask, the search
// and the record handed to order entry.

#include <QString>
#include <QStringList>

class DbConnection;
class QSqlRecord;

// The 18 columns of adrfirm after the key, in the order of the screen's fields
// (index 4 is PSC, 15 DPH).
const QStringList &FirmaColumns();
constexpr int FirmaPscField = 4;
constexpr int FirmaDphField = 15;
constexpr int FirmaHttpField = 8;

// "14000" through the mask "### ##": "140 00". A text that is not five digits stays.
QString FormatPsc(const QString &text);

// The firm for an order, "#" between the pieces: Firma, Pobocka, address (Adres_1, and
// Adres_2 after ", " when there is one), PSC, Mesto, Tel, Fax. Order entry reads the
// seven pieces with GetField into its supplier fields.
QString ObjednFirmaRecord(const QSqlRecord &firma);

// The first firm in the given order whose name, else whose branch, holds the text. 0: none.
int FindFirma(DbConnection &centre, const QString &text, const QString &orderBy);

// A new firm with a blank name; returns its nom (0 on failure, message in *error).
int AddFirma(DbConnection &centre, QString *error);
bool DeleteFirma(DbConnection &centre, int nom, QString *error);
// Writes one column (by its index in FirmaColumns) of a firm.
bool SaveFirmaField(DbConnection &centre, int nom, int field, const QString &value, QString *error);
