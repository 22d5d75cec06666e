// document add|get|list: the files of a grant, as the documents screen keeps them.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/session.h"
#include "documents/documents.h"

#include <QDir>
#include <QFileInfo>

#include <memory>

namespace {
int add(const CliArgs &args)
{
    const QString grant = args.at(0).trimmed();
    const QString path = QFileInfo(args.at(1)).absoluteFilePath();
    const QString name = args.value(QStringLiteral("--name"), QFileInfo(path).fileName());
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    QSqlQuery known = conn->query();
    if (!conn->exec(known, QStringLiteral("SELECT _GRANT FROM GrantyPlan WHERE _GRANT=?"), {grant}))
        return CliFail(conn->errorText());
    if (!known.next())
        return CliFail(QStringLiteral("GRANT %1 v rozpočtu není.").arg(grant));

    CliProgress(QStringLiteral("document add: ukládám %1").arg(path));
    const QString stamp = DocumentTimestamp();
    qint64 id = 0;
    if (!NewDocumentRow(*conn, grant, stamp, &id))
        return CliFail(conn->errorText());
    const DocumentResult result = StoreDocumentFile(*conn, id, grant, path, name, stamp, Session().TempDir);
    CliProgressDone();
    if (!result.ok) {
        DeleteDocument(*conn, id);   // the row was made for this file only
        return CliFail(result.message);
    }
    CliSummary(QStringLiteral("document add: id %1, GRANT %2, \"%3\", %4 bajtů: %5")
                   .arg(id).arg(grant, name).arg(QFileInfo(path).size()).arg(result.message));
    return CliOk;
}

int get(const CliArgs &args)
{
    bool number = false;
    const qint64 id = args.at(0).toLongLong(&number);
    if (!number)
        return CliFail(QStringLiteral("Číslo dokumentu \"%1\" není číslo.").arg(args.at(0)));
    const QString out = QDir(args.value(QStringLiteral("--out"), QDir::currentPath())).absolutePath();
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    QString error;
    const std::optional<QString> file = FetchDocument(*conn, id, Session().TempDir, out, &error);
    if (!file)
        return CliFail(error);
    CliSummary(QStringLiteral("document get: %1, %2 bajtů").arg(*file).arg(QFileInfo(*file).size()));
    return CliOk;
}

int list(const CliArgs &args)
{
    std::unique_ptr<DbConnection> conn;
    if (!CliOpenGranty(args, &conn))
        return CliFailed;
    QVector<DocumentRow> rows;
    if (!ListDocuments(*conn, args.at(0).trimmed(), &rows))
        return CliFail(conn->errorText());
    // One line per document, tab-separated: id, saved, type, size, name, file.
    for (const DocumentRow &r : rows)
        CliSummary(QStringList{QString::number(r.id), r.saved, DocumentType(r.file), QString::number(r.size), r.name,
                               r.file}.join(QLatin1Char('\t')));
    CliProgress(QStringLiteral("document list: %1 dokumentů").arg(rows.size()));
    CliProgressDone();
    return CliOk;
}

const CliRegistration addVerb({
    QStringLiteral("document add"),
    QStringLiteral("GRANT FILE [--name N]"),
    QStringLiteral("uloží FILE zazipovaný jako nový dokument GRANTu; --name dá dokumentu název "
                   "(jinak název souboru)"),
    {QStringLiteral("--name")},
    {},
    2,
    2,
    add,
});
const CliRegistration getVerb({
    QStringLiteral("document get"),
    QStringLiteral("ID [--out DIR]"),
    QStringLiteral("rozbalí soubor dokumentu ID do složky DIR (jinak do aktuální složky)"),
    {QStringLiteral("--out")},
    {},
    1,
    1,
    get,
});
const CliRegistration listVerb({
    QStringLiteral("document list"),
    QStringLiteral("GRANT"),
    QStringLiteral("vypíše dokumenty GRANTu: id, uloženo, typ, velikost, název, soubor (oddělené tabulátorem)"),
    {},
    {},
    1,
    1,
    list,
});
} // namespace
