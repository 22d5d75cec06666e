// protocol pdf, protocol list-pdf, form export, form import: a saved protocol or the list of
// a patient printed, and protocol forms written to and read from form files, as the patient
// screen and the Studio do them.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/institution.h"
#include "protocols/formmodel.h"
#include "protocols/protocol.h"
#include "protocols/protokolpdf.h"

#include <QDir>

namespace {
int protocolPdf(const CliArgs &args)
{
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection centre(ConnStrCentre()), sys(ConnStrSys());
    if (!centre.isOpen() || !sys.isOpen())
        return CliFail(QStringLiteral("protocol pdf: ") + (centre.isOpen() ? sys : centre).errorText());
    ReadInstitution(sys);   // the letterhead
    CliProgress(QStringLiteral("protocol pdf: protokol %1").arg(args.at(0)));
    QString file, error;
    const bool ok = ProtokolPdf(centre, sys, args.at(0), true, args.value(QStringLiteral("--out")), &file, &error);
    CliProgressDone();
    if (!ok)
        return CliFail(QStringLiteral("protocol pdf: ") + error);
    CliSummary(QStringLiteral("protocol pdf: protokol %1 zapsán do %2").arg(args.at(0), file));
    return CliOk;
}

// The patient is named by the registration number the register shows; the list is that of
// one kind's tab (--form) or of all of them.
int protocolListPdf(const CliArgs &args)
{
    bool numeric = false;
    const int reg = args.at(0).toInt(&numeric);
    const QString form = args.value(QStringLiteral("--form"), QStringLiteral("0"));
    bool formNumeric = false;
    const int formId = form.toInt(&formNumeric);
    if (!numeric)
        return CliFail(QStringLiteral("protocol list-pdf: registrační číslo \"%1\" není číslo.").arg(args.at(0)));
    if (!formNumeric)
        return CliFail(QStringLiteral("protocol list-pdf: číslo formuláře \"%1\" není číslo.").arg(form));
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection centre(ConnStrCentre()), sys(ConnStrSys());
    if (!centre.isOpen() || !sys.isOpen())
        return CliFail(QStringLiteral("protocol list-pdf: ") + (centre.isOpen() ? sys : centre).errorText());
    QString error;
    const auto pacients = PacientsByRegistration(centre, reg, &error);
    if (!pacients)
        return CliFail(QStringLiteral("protocol list-pdf: ") + error);
    if (pacients->size() != 1)
        return CliFail(pacients->empty()
                           ? QStringLiteral("protocol list-pdf: pacient s registračním číslem %1 neexistuje.").arg(reg)
                           : QStringLiteral("protocol list-pdf: registrační číslo %1 má více pacientů (%2), nic nebylo "
                                            "vytištěno.")
                                 .arg(reg)
                                 .arg(pacients->size()));
    const Pacient &p = pacients->front();
    ReadInstitution(sys);   // the letterhead
    CliProgress(QStringLiteral("protocol list-pdf: protokoly pacienta %1 %2").arg(p.prijmeni, p.jmeno));
    QStringList files;
    const bool ok = ProtokolListPdf(centre, sys, p.key, formId, args.value(QStringLiteral("--dir")), &files, &error);
    CliProgressDone();
    for (const QString &file : files)
        CliSummary(QDir::toNativeSeparators(file));
    if (!ok)
        return CliFail(QStringLiteral("protocol list-pdf: ") + error);
    CliSummary(QStringLiteral("protocol list-pdf: pacient %1 %2 %3, protokolů: %4")
                   .arg(reg)
                   .arg(p.prijmeni, p.jmeno)
                   .arg(files.size()));
    return CliOk;
}

int formExport(const CliArgs &args)
{
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection sys(ConnStrSys());
    bool numeric = false;
    const int id = args.at(0).toInt(&numeric);
    if (!numeric)
        return CliFail(QStringLiteral("form export: číslo formuláře \"%1\" není číslo.").arg(args.at(0)));
    const std::optional<FormHeader> header = ReadFormHeader(sys, id);
    if (!header)
        return CliFail(QStringLiteral("form export: formulář %1 neexistuje.").arg(id));
    clsDocument doc;
    QString error;
    if (!LoadFormDefinition(sys, doc, id, QString(), nullptr, &error))
        return CliFail(QStringLiteral("form export: ") + error);
    if (!ExportForm(doc, header->formParam.split(QLatin1Char('~')), header->name, id, args.at(1)))
        return CliFail(QStringLiteral("form export: soubor %1 nelze zapsat.").arg(args.at(1)));
    CliSummary(QStringLiteral("form export: formulář %1 \"%2\", %3 polí, zapsán do %4")
                   .arg(id)
                   .arg(header->name)
                   .arg(doc.Count())
                   .arg(args.at(1)));
    return CliOk;
}

int formImport(const CliArgs &args)
{
    if (!CliOpenSession(args))
        return CliFailed;
    DbConnection sys(ConnStrSys());
    QString error;
    const int id = ImportForm(sys, args.at(0), &error);
    if (id < 0)
        return CliFail(QStringLiteral("form import: ") + error);
    if (id == 0)
        return CliFail(QStringLiteral("form import: soubor %1 neobsahuje formulář (DOKUMENT je prázdný), nic nebylo importováno.").arg(args.at(0)));
    clsDocument doc;
    LoadFormDefinition(sys, doc, id, QString(), nullptr, nullptr);
    CliSummary(QStringLiteral("form import: nový formulář %1, %2 polí, ze souboru %3").arg(id).arg(doc.Count()).arg(args.at(0)));
    return CliOk;
}

const CliRegistration pdfRegistration({
    QStringLiteral("protocol pdf"),
    QStringLiteral("KEY [--out FILE]"),
    QStringLiteral("vytiskne uložený protokol s tímto klíčem do PDF, do složky PROTOKOLY_SAVE pod jeho číslem, "
                   "nebo do FILE"),
    {QStringLiteral("--out")},
    {},
    1,
    1,
    protocolPdf,
});

const CliRegistration listPdfRegistration({
    QStringLiteral("protocol list-pdf"),
    QStringLiteral("REG [--form ID] [--dir DIR]"),
    QStringLiteral("vytiskne do PDF všechny protokoly pacienta s registračním číslem REG (jen formuláře ID), "
                   "každý do svého souboru ve složce PROTOKOLY_SAVE nebo DIR"),
    {QStringLiteral("--form"), QStringLiteral("--dir")},
    {},
    1,
    1,
    protocolListPdf,
});

const CliRegistration exportRegistration({
    QStringLiteral("form export"),
    QStringLiteral("ID FILE"),
    QStringLiteral("zapíše formulář protokolu ID do souboru formuláře (sloupce pacienta se nezapisují)"),
    {},
    {},
    2,
    2,
    formExport,
});

const CliRegistration importRegistration({
    QStringLiteral("form import"),
    QStringLiteral("FILE"),
    QStringLiteral("přidá formulář ze souboru formuláře jako nový formulář protokolu"),
    {},
    {},
    1,
    1,
    formImport,
});
} // namespace
