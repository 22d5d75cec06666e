// order pdf, orders export, orders import: the PDF form of an archived order and the
// exchange files of a firm's orders, as the order archive makes and reads them.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "orders/exchange.h"
#include "orders/objpdfform.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlRecord>

namespace {
int orderPdf(const CliArgs &args)
{
    const QString cisObj = args.at(0).trimmed();
    std::unique_ptr<DbConnection> centre;
    if (!CliOpenCentre(args, &centre))
        return CliFailed;
    {
        // The letterhead and the pictures, as the archive has them when it opens.
        DbConnection sys(ConnStrSys());
        QString error;
        if (!ReadInstitution(sys) || !ObjPdfPicturesToTemp(sys, Session().UserLogin, &error))
            return CliFail(error.isEmpty() ? sys.errorText() : error);
    }
    QSqlQuery row = centre->query();
    if (!centre->exec(row, QStringLiteral("SELECT * FROM archobj WHERE cis_obj = ? ORDER BY nom LIMIT 1"), {cisObj}))
        return CliFail(DbErrorMessage(row.lastError()));
    if (!row.next())
        return CliFail(QStringLiteral("Objednávka číslo %1 neexistuje.").arg(cisObj));
    const QString out = args.has(QStringLiteral("--out")) ? QFileInfo(args.value(QStringLiteral("--out"))).absoluteFilePath()
                                                          : ObjPdfPath(cisObj);
    CliProgress(QStringLiteral("order pdf: píšu %1").arg(out));
    const bool written = ObjPdfOfRow(row.record(), out, true);
    CliProgressDone();
    if (!written)
        return CliFail(QStringLiteral("Soubor %1 nelze zapsat.").arg(QDir::toNativeSeparators(out)));
    CliSummary(QStringLiteral("order pdf: %1, druh %2: %3, %4 bajtů")
                   .arg(cisObj, row.value(QStringLiteral("Typ")).toString(), QDir::toNativeSeparators(out))
                   .arg(QFileInfo(out).size()));
    return CliOk;
}

int ordersExport(const CliArgs &args)
{
    const QString firma = args.at(0);
    std::unique_ptr<DbConnection> centre;
    if (!CliOpenCentre(args, &centre))
        return CliFailed;
    QString path, error;
    CliProgress(QStringLiteral("orders export: objednávky firmy %1").arg(firma));
    const int written = ExportFirm(*centre, firma, &path, &error);
    CliProgressDone();
    if (written < 0)
        return CliFail(error);
    if (written == 0)
        return CliFail(QStringLiteral("Firma \"%1\" nemá v archivu žádnou objednávku.").arg(firma));
    CliSummary(QStringLiteral("orders export: %1 objednávek firmy \"%2\" zapsáno do %3 (soubor drží poslední z nich)")
                   .arg(written).arg(firma, QDir::toNativeSeparators(path)));
    return CliOk;
}

int ordersImport(const CliArgs &args)
{
    const QString path = QFileInfo(args.at(0)).absoluteFilePath();
    std::unique_ptr<DbConnection> centre;
    if (!CliOpenCentre(args, &centre))
        return CliFailed;
    QString error;
    CliProgress(QStringLiteral("orders import: čtu %1").arg(path));
    const int stored = ImportObjFile(*centre, path, &error);
    CliProgressDone();
    if (stored < 0)
        return CliFail(error);
    CliSummary(QStringLiteral("orders import: %1 objednávek uloženo do archobj databáze %2").arg(stored).arg(Session().MysqlDb));
    if (stored > 0)
        CliSummary(QLatin1String(ImportCompleteText));
    return CliOk;
}

const CliRegistration pdfRegistration({
    QStringLiteral("order pdf"),
    QStringLiteral("CIS_OBJ [--out SOUBOR]"),
    QStringLiteral("zapíše jednostránkový formulář PDF objednávky z archivu podle jejího druhu, jako „Náhled v PDF“; "
                   "bez --out do pracovní složky, číslo s „-“ místo „/“"),
    {QStringLiteral("--out")},
    {},
    1,
    1,
    orderPdf,
});

const CliRegistration exportRegistration({
    QStringLiteral("orders export"),
    QStringLiteral("FIRMA"),
    QStringLiteral("zapíše objednávky firmy z archivu do jejího souboru SMTP_Email/<FIRMA>.txt v pracovní složce; "
                   "každá objednávka soubor přepíše, zůstane v něm poslední"),
    {},
    {},
    1,
    1,
    ordersExport,
});

const CliRegistration importRegistration({
    QStringLiteral("orders import"),
    QStringLiteral("SOUBOR"),
    QStringLiteral("uloží objednávky ze souboru výměny (starší pořadí polí, prvních 20 000 znaků) do archobj, "
                   "všechny, nebo žádnou"),
    {},
    {},
    1,
    1,
    ordersImport,
});
} // namespace
