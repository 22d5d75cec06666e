#include "documents/documents.h"

#include "core/db.h"
#include "documents/zip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

const char *const TextFileStored = "Soubor byl úspěšně naimportován do MySQL DB.";
const char *const TextFileNotStored = "Soubor do DB naimportován nebyl...";
const char *const TextTextsStored = "Data byli úspěšně uložena do MySQL DB.";

namespace {
// What a statement adds to the archive's bytes on the wire, with room to spare.
constexpr qint64 StatementOverhead = 1024;

DocumentResult failed(const QString &message) { return {false, message}; }
} // namespace

QString DocumentType(const QString &file)
{
    const QString name = DocumentFileName(file);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : name.mid(dot + 1).toUpper();
}

QString DocumentTimestamp(const QDateTime &now)
{
    const QDate d = now.date();
    return QStringLiteral("%1-%2-%3 %4").arg(d.year()).arg(d.month()).arg(d.day())
        .arg(now.time().toString(QStringLiteral("H:mm:ss")));
}

QString DocumentFileName(const QString &file)
{
    QString name = file.mid(std::max(file.lastIndexOf(QLatin1Char('/')), file.lastIndexOf(QLatin1Char('\\'))) + 1);
    return name.remove(QLatin1Char(':'));
}

bool ListDocuments(DbConnection &granty, const QString &grant, QVector<DocumentRow> *rows)
{
    QSqlQuery q = granty.query();
    q.setForwardOnly(true);
    if (!granty.exec(q, QStringLiteral("SELECT `file`,`_grant`,`param1`,`param2`,`id_grant`, `size` FROM documents "
                                       "WHERE _grant=? ORDER BY param2 ASC"), {grant}))
        return false;
    rows->clear();
    while (q.next())
        rows->append({q.value(4).toLongLong(), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3), FieldText(q, 0),
                      q.value(5).toLongLong()});
    return true;
}

bool NewDocumentRow(DbConnection &granty, const QString &grant, const QString &timestamp, qint64 *id)
{
    QSqlQuery q = granty.query();
    if (!granty.exec(q, QStringLiteral("INSERT INTO documents (_grant, param2) VALUES (?,?);"), {grant, timestamp}))
        return false;
    *id = q.lastInsertId().toLongLong();
    return true;
}

qint64 ServerPacketLimit(DbConnection &connection)
{
    QSqlQuery q = connection.query();
    if (!connection.exec(q, QStringLiteral("SELECT @@max_allowed_packet")) || !q.next())
        return 0;
    return q.value(0).toLongLong();
}

QString PacketLimitMessage(qint64 archiveSize, qint64 limit)
{
    if (limit <= 0 || archiveSize + StatementOverhead <= limit)
        return QString();
    return QStringLiteral("Soubor je i po zabalení příliš velký (%1 bajtů): server přijme nejvýše %2 bajtů "
                          "(%3 MB, max_allowed_packet). Nic nebylo uloženo.")
        .arg(archiveSize).arg(limit).arg(limit / (1024 * 1024));
}

DocumentResult StoreDocumentFile(DbConnection &granty, qint64 id, const QString &grant, const QString &path,
                                 const QString &name, const QString &timestamp, const QString &tempDir)
{
    const QFileInfo source(path);
    if (!source.isFile())
        return failed(QStringLiteral("Soubor %1 nebyl nalezen, nic nebylo uloženo.").arg(path));
    if (source.size() == 0)
        return failed(QStringLiteral("Soubor %1 je prázdný (0 bajtů), nic nebylo uloženo.").arg(path));

    const QString archivePath = QDir(tempDir).filePath(source.fileName() + QStringLiteral(".zip"));
    QString error;
    if (!ZipFile(path, archivePath, &error))
        return failed(error + QStringLiteral(" Nic nebylo uloženo."));
    QFile archive(archivePath);
    if (!archive.open(QIODevice::ReadOnly))
        return failed(QStringLiteral("Archiv %1 nelze přečíst, nic nebylo uloženo.").arg(archivePath));
    const QString tooLarge = PacketLimitMessage(archive.size(), ServerPacketLimit(granty));
    if (!tooLarge.isEmpty())
        return failed(tooLarge);
    const QByteArray bytes = archive.readAll();
    archive.close();

    // Texts and archive together or not at all.
    Transaction transaction(granty);
    QSqlQuery row = granty.query();
    if (!granty.exec(row, QStringLiteral("SELECT id_grant FROM documents WHERE id_grant = ?"), {id}))
        return failed(granty.errorText());
    if (!row.next())
        return failed(QString::fromUtf8(TextFileNotStored));
    QString stored = path;
    stored.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!granty.exec(QStringLiteral("UPDATE documents SET `size` = ?, `_grant` = ?, `file` = ?, `param1` = ?, "
                                    "`param2` = ? WHERE `id_grant` = ?"),
                     {source.size(), grant, stored, name, timestamp, id})
        || !granty.exec(QStringLiteral("UPDATE documents SET `oleWord` = ? WHERE `id_grant` = ?"), {bytes, id})
        || !transaction.commit())
        return failed(granty.errorText() + QStringLiteral(" Nic nebylo uloženo."));
    return {true, QString::fromUtf8(TextFileStored)};
}

DocumentResult StoreDocumentTexts(DbConnection &granty, qint64 id, const QString &name, const QString &timestamp)
{
    if (!granty.exec(QStringLiteral("UPDATE documents SET `param1` = ?, `param2` = ? WHERE `id_grant` = ?"),
                     {name, timestamp, id}))
        return failed(granty.errorText());
    return {true, QString::fromUtf8(TextTextsStored)};
}

bool ClearDocumentFile(DbConnection &granty, qint64 id)
{
    return granty.exec(QStringLiteral("UPDATE documents SET `size` = '0', `file` = '',`oleWord` = Null "
                                      "WHERE `id_grant` = ?"), {id});
}

bool DeleteDocument(DbConnection &granty, qint64 id)
{
    return granty.exec(QStringLiteral("DELETE  From documents WHERE id_grant=?"), {id});
}

std::optional<QString> FetchDocument(DbConnection &granty, qint64 id, const QString &tempDir, const QString &folder,
                                     QString *error)
{
    QSqlQuery q = granty.query();
    q.setForwardOnly(true);
    if (!granty.exec(q, QStringLiteral("SELECT `file`,`oleWord` FROM documents WHERE id_grant = ?"), {id})) {
        *error = granty.errorText();
        return std::nullopt;
    }
    if (!q.next()) {
        *error = QStringLiteral("Dokument %1 v databázi není.").arg(id);
        return std::nullopt;
    }
    const QString name = DocumentFileName(FieldText(q, 0));
    if (name.isEmpty() || q.value(1).isNull()) {
        *error = QStringLiteral("K dokumentu není uložen žádný soubor.");
        return std::nullopt;
    }
    QDir().mkpath(tempDir);
    QDir().mkpath(folder);
    const QString archivePath = QDir(tempDir).filePath(name + QStringLiteral(".zip"));
    {
        QFile archive(archivePath);
        const QByteArray bytes = q.value(1).toByteArray();
        q.finish();
        if (!archive.open(QIODevice::WriteOnly) || archive.write(bytes) != bytes.size()) {
            *error = QStringLiteral("Archiv %1 nelze zapsat: %2").arg(archivePath, archive.errorString());
            return std::nullopt;
        }
    }
    const std::optional<QStringList> files = UnzipFile(archivePath, folder, error);
    if (!files)
        return std::nullopt;
    const QString expected = QDir(folder).filePath(name);
    return files->contains(expected) ? expected : files->first();
}
