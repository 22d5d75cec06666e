#pragma once
// Orders travel between sites as exchange files: one text file per firm in the
// outgoing folder "SMTP_Email" under the scratch folder, one record a line,
// fields separated by "~", a line break inside a field written as "^". Whatever
// mail program serves the folder sends it; nothing here speaks to a mail server.
//
// The export writes the record line of the archive (ObjRecordLine); the import
// reads the older layout (ExchangeColumns). The two orders differ and stay so:
// only files of the older layout are read back into their own columns.

#include <QString>
#include <QStringList>

class DbConnection;
class QSqlRecord;

// The columns of archobj by their index in a record of the older layout.
const QStringList &ExchangeColumns();

// The outgoing and incoming folders under the scratch folder, made when missing.
QString SmtpFolder();
QString Pop3Folder();
bool MakeExchangeFolders(QString *error);

// The file of a firm's orders: the name upper-cased, letters with accents made
// plain, blanks and slashes turned into "_", in the outgoing folder.
QString ExchangeFileName(const QString &firma);

// Writes the order (a row of archobj) as one record line into the file,
// replacing what the file held. A text order travels with its body in place of
// the name in `Text`, its double quotes removed. False with a Czech message.
bool ExportObjFirm(const QString &path, const QSqlRecord &row, QString *error);

// The export of the panel for one firm: the rows of archobj whose Firma starts
// with the first "_"-piece of the folded name, each written by ExportObjFirm
// into the firm's file (so the file ends with the last of them). Returns the
// number of orders written, -1 with a Czech message on failure.
int ExportFirm(DbConnection &centre, const QString &firma, QString *path, QString *error);

// What the import says when it has read the file.
inline constexpr const char *ImportCompleteText = "Export file complete";

// Reads an exchange file into archobj, all records or none: the file's lines
// are counted (none: nothing to do), its first 20,000 characters taken, ","
// kept from splitting by "#" on the way through "tmp.txt" in the scratch folder,
// "^" turned back into line breaks, and each record up to the first empty one
// added by the older layout; `Text`, when not empty, becomes "F", the order's
// number, "." and the old name. Returns the number of orders stored, -1 with a
// Czech message when the file or the server refused (nothing is then stored).
int ImportObjFile(DbConnection &centre, const QString &path, QString *error);
