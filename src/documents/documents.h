#pragma once
// The files of a grant, table documents of the grant database. A file is stored as a zip
// archive (made in the scratch folder) in the BLOB oleWord; viewing unpacks it there again.
// The screen frmDocuments and the batch verbs "document ..." both go through here.

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

class DbConnection;

struct DocumentRow {
    qint64 id = 0;       // id_grant: in spite of its name the document's key
    QString grant;       // _grant
    QString name;        // param1
    QString saved;       // param2
    QString file;        // the original path, "/" for "\"; empty when no file is stored
    qint64 size = 0;
};

// "PDF", "DOC", ... from the extension of the stored path; empty without one.
QString DocumentType(const QString &file);
// The time of saving as stored in param2: year-month-day time, without leading zeros.
QString DocumentTimestamp(const QDateTime &now = QDateTime::currentDateTime());
// The name a stored file unpacks under: after the last "/" or "\", ":" removed.
QString DocumentFileName(const QString &file);

// The grant's documents in the order of their saving.
bool ListDocuments(DbConnection &granty, const QString &grant, QVector<DocumentRow> *rows);
// A new row for the grant, stamped with the time; its key in `id`.
bool NewDocumentRow(DbConnection &granty, const QString &grant, const QString &timestamp, qint64 *id);

// The largest statement the server accepts (max_allowed_packet), in bytes; 0 when unknown.
qint64 ServerPacketLimit(DbConnection &connection);
// The refusal for an archive that does not fit into one statement; empty when it fits.
QString PacketLimitMessage(qint64 archiveSize, qint64 limit);

// Outcome of a store: the message to show, and whether it was a success.
struct DocumentResult {
    bool ok = false;
    QString message;
};

// Stores the file `path` into the row `id` with the name and time: packs it in `tempDir`,
// checks the server's limit, then writes texts and archive in one transaction.
DocumentResult StoreDocumentFile(DbConnection &granty, qint64 id, const QString &grant, const QString &path,
                                 const QString &name, const QString &timestamp, const QString &tempDir);
// Without a file: only the name and the time.
DocumentResult StoreDocumentTexts(DbConnection &granty, qint64 id, const QString &name, const QString &timestamp);
// Drops the stored file; the row stays.
bool ClearDocumentFile(DbConnection &granty, qint64 id);
bool DeleteDocument(DbConnection &granty, qint64 id);

// Writes the row's archive to `tempDir`, name + ".zip", and unpacks it into `folder`.
// The unpacked file's path, or nothing with a Czech message in `error`.
std::optional<QString> FetchDocument(DbConnection &granty, qint64 id, const QString &tempDir, const QString &folder,
                                     QString *error);

// Texts the screen and the batch verbs show.
extern const char *const TextFileStored;     // "Soubor byl úspěšně naimportován do MySQL DB."
extern const char *const TextFileNotStored;  // "Soubor do DB naimportován nebyl..."
extern const char *const TextTextsStored;    // "Data byli úspěšně uložena do MySQL DB."
