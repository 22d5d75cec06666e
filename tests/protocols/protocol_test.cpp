#include "core/config.h"
#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "protocols/formmodel.h"
#include "protocols/protocol.h"
#include "protocols/protokolpdf.h"
#include "support/testenv.h"
#include "../pdf/testpdf.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QDateTime Now(QDate(2026, 11, 22), QTime(9, 5));

const QString Sys = QString::fromLatin1(SysDbName);
QString Centre() { return Session().MysqlDb; }
QString One(const QString &sql) { return Column(Centre(), sql).value(0); }

// The controls of a form in its order, each showing the given value (or its caption).
std::vector<ControlValue> Controls(const clsDocument &doc, const QStringList &values = {})
{
    std::vector<ControlValue> controls;
    int i = 0;
    for (const auto &entry : doc) {
        controls.emplace_back(ControlTag(*entry.field), i < values.size() ? values[i] : entry.field->Caption);
        ++i;
    }
    return controls;
}

QStringList Surnames(const std::vector<Pacient> &rows)
{
    QStringList names;
    for (const Pacient &p : rows)
        names << p.prijmeni;
    return names;
}

std::string Pdf(const QString &path) { return pdftest::ReadFile(path.toStdString()); }
std::string PdfText(const QString &path)
{
    return pdftest::RunTool("pdftotext -layout '" + path.toStdString() + "' -").output;
}
} // namespace

TEST(Pacients, SearchByEachColumnNewAndSave)
{
    FreshDatabases(true);
    LoginAs(1);
    DbConnection centre(ConnStrCentre());
    QString error;
    const auto all = SearchPacients(centre, QStringLiteral("id"), QString(), &error);
    ASSERT_TRUE(all);
    ASSERT_EQ(all->size(), 20u);
    EXPECT_EQ(all->front().registraci, "04.10.2026");   // the newest registration first
    const struct {
        const char *column, *text;
        const char *surnames;   // joined by ","; null: the search fails
    } cases[] = {
        {"prijmeni,jmeno", "Ho", "Horáková"},
        {"prijmeni,jmeno", "Dvořák P", "Dvořák"},
        {"prijmeni,jmeno", "Nov", "Novák"},
        {"id", "1", "Novák,Marková,Pokorný,Pospíšilová,Hájek,Králová,Jelínek,Růžičková,Beneš,Fialová,Sedláček"},
        {"prijmcislo", "B-2026-02", "Doležalová"},
        {"rc", "zzz", ""},
        {"prijmeni,jmeno", "O'Brien", ""},
        {"pegistraci", "10.", nullptr},   // the column's name is kept misspelt
        {"poznamka", "k", nullptr},       // not a search column
    };
    for (const auto &c : cases) {
        const auto rows = SearchPacients(centre, QLatin1String(c.column), QString::fromUtf8(c.text), &error);
        if (!c.surnames) {
            EXPECT_FALSE(rows) << c.column;
            continue;
        }
        ASSERT_TRUE(rows) << c.column << error.toStdString();
        EXPECT_EQ(Surnames(*rows).join(QLatin1Char(',')), QString::fromUtf8(c.surnames)) << c.column << " " << c.text;
    }

    const int key = NewPacient(centre, QDate(2026, 11, 22), &error);
    ASSERT_GT(key, 20);
    EXPECT_EQ(One(QStringLiteral("SELECT CONCAT(id,'|',registraci,'|',datapacient) FROM pacients WHERE `key`=%1").arg(key)),
              "21|2026-11-22|~~~~~~~~~~");
    Pacient p{key, 21, QStringLiteral("O'Neill"), QStringLiteral("Řehoř"), QStringLiteral("800101/1234"), QStringLiteral("B-1"),
              QStringLiteral("1.2.2026"), QString(), QStringLiteral("~a~b~c~d~e~~~")};
    EXPECT_FALSE(SavePacient(centre, p, &error));
    EXPECT_EQ(error, "Špatný formát datumu.");
    p.registraci = QStringLiteral("01.02.2026");
    ASSERT_TRUE(SavePacient(centre, p, &error)) << error.toStdString();
    EXPECT_EQ(Surnames(*SearchPacients(centre, QStringLiteral("prijmeni,jmeno"), QStringLiteral("O'N"), &error)).join(','),
              "O'Neill");
}

TEST(Protocols, SavedListsAreParallelLoadBackByPositionAndLockForGood)
{
    FreshDatabases(true);
    LoginAs(1);
    DbConnection sys(ConnStrSys()), centre(ConnStrCentre());
    clsDocument doc;
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 2, QString(), nullptr, nullptr));
    QStringList values;
    for (int i = 1; i <= doc.Count(); ++i)
        values << QStringLiteral("v%1").arg(i);
    values[13] = QStringLiteral("řádek 1\r\nřádek \"2\" s 'uvozovkami'") + QString(10000, QLatin1Char('x'));
    // A control that is no field is passed over.
    std::vector<ControlValue> controls = Controls(doc, values);
    controls.insert(controls.begin() + 2, {QStringLiteral("cmdSaveForm"), QStringLiteral("Uložit")});
    QString error;
    const int key = AkceFieldDocument(centre, doc, controls, {0, 2, 5, QStringLiteral("77/2026")}, Now, &error);
    ASSERT_GT(key, 16) << error.toStdString();
    const auto row = ReadProtocol(centre, key, &error);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->cislo_prot, "77/2026");
    EXPECT_EQ(row->date_create, "22.11.2026 09:05");
    EXPECT_EQ(row->idPac, 5);
    EXPECT_EQ(row->key_fields, "1~2~3~4~5~6~7~8~9~10~11~12~13~14~");
    EXPECT_EQ(row->type_fields, "1~1~2~1~2~1~2~2~1~2~1~4~1~3~");
    EXPECT_EQ(row->font_fields, "14~10~10~10~10~10~10~10~10~10~10~10~10~10~");
    EXPECT_EQ(row->bold_fields, "1~0~1~0~0~0~1~0~0~0~0~0~1~0~");
    EXPECT_EQ(row->kursiv_fields, "0~0~0~0~0~0~0~0~0~0~0~0~0~0~");
    EXPECT_TRUE(row->pozice_fields.startsWith("900~4400~400~6000\r\n1600~1100~240~2000\r\n"));
    EXPECT_EQ(row->pozice_fields.count(QStringLiteral("\r\n")), 14);
    EXPECT_EQ(ProtocolValues(*row).mid(0, 14), values);
    EXPECT_EQ(doc.Item(14)->Data, values[13]);

    // Edited again: the row is changed, not added. A "~" typed in shifts the later values.
    values[1] = QStringLiteral("a~b");
    EXPECT_EQ(AkceFieldDocument(centre, doc, Controls(doc, values), {key, 2, 5, QString()}, Now, &error), key);
    const QStringList after = ProtocolValues(*ReadProtocol(centre, key, &error));
    EXPECT_EQ(after.value(1), "a");
    EXPECT_EQ(after.value(2), "b");
    EXPECT_EQ(after.value(3), "v3");

    // The form loses a field after the protocol was saved: values attach by position.
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 2, QString(), nullptr, nullptr));
    doc.RemovItem(QStringLiteral("2"));
    ASSERT_TRUE(SaveForm(sys, doc, 2, &error));
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 2, QString(), nullptr, nullptr));
    EXPECT_EQ(doc.Item(2)->Key, 3);
    EXPECT_EQ(ProtocolValues(*ReadProtocol(centre, key, &error)).value(1), "a");   // now shown on key 3's control

    // A locked protocol refuses a save (the screen offers none) and a deletion; corrections
    // stack newest first (the screen's flow saves them).
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 1, QString(), nullptr, nullptr));
    ASSERT_EQ(One("SELECT `lock` FROM archiv WHERE `key`=3"), "0");
    const QString before = One("SELECT data_fields FROM archiv WHERE `key`=3");
    ASSERT_TRUE(LockProtocol(centre, 3, &error));
    EXPECT_EQ(AkceFieldDocument(centre, doc, Controls(doc), {3, 1, 3, QString()}, Now, &error), 0);
    EXPECT_EQ(error, "Protokol je uzamčen, změny nelze uložit.");
    EXPECT_EQ(One("SELECT data_fields FROM archiv WHERE `key`=3"), before);
    EXPECT_FALSE(DeleteProtocol(centre, 3, &error));
    EXPECT_EQ(One("SELECT COUNT(*) FROM archiv WHERE `key`=3"), "1");
    EXPECT_EQ(AkceFieldDocument(centre, doc, Controls(doc), {999, 1, 3, QString()}, Now, &error), 0);

    const QString first = KorekceEntry(QString(), QStringLiteral("první"), Now, QStringLiteral("Jana Nováková"));
    EXPECT_EQ(first, "Dne: 22.11.2026, 9:05 Jana Nováková\r\n- první\r\n");
    const QString second =
        KorekceEntry(first, QStringLiteral("druhá ~ s vlnovkou"), Now.addSecs(3600), QStringLiteral("Jana Nováková"));
    EXPECT_EQ(second, "Dne: 22.11.2026, 10:05 Jana Nováková\r\n- druhá ~ s vlnovkou\r\n" + first);

    // An open protocol can be deleted.
    ASSERT_TRUE(DeleteProtocol(centre, 5, &error)) << error.toStdString();
    EXPECT_FALSE(ReadProtocol(centre, 5, &error));
    EXPECT_EQ(error, "Protokol 5 nebyl nalezen.");
}

TEST(ProtokolPdf, OnePageAndTwoPagesWithTheLetterheadAndTheLogoOfTheDatabase)
{
    FreshDatabases(true);
    LoginAs(1);
    const QString out = SamplesDir(QStringLiteral("protocols"));
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("PROTOKOLY_SAVE"), out);
    WriteProfileString(QStringLiteral("HLAVICKA"), QStringLiteral("FAX"), QStringLiteral("266 001 099"));
    WriteProfileString(QStringLiteral("HLAVICKA"), QStringLiteral("WWW"), QStringLiteral("www.lhotka.example"));
    DbConnection sys(ConnStrSys()), centre(ConnStrCentre());
    ASSERT_TRUE(ReadInstitution(sys));
    // A broken copy left in the scratch folder is replaced by the logo of the database.
    const QString logo = Session().TempDir + QStringLiteral("/logo_kvl_tmp.bmp");
    pdftest::WriteFile(logo.toStdString(), "BM broken");
    // Protocol 4, "4/2026", locked with two corrections; protocol 10 has none.
    QString file, error;
    ASSERT_TRUE(ProtokolPdf(centre, sys, QStringLiteral("4"), true, QString(), &file, &error)) << error.toStdString();
    EXPECT_EQ(file, QDir(out).filePath(QStringLiteral("4-2026.pdf")));
    std::string pdf = Pdf(file);
    EXPECT_NE(pdf.find("/Count 2\r"), std::string::npos);
    EXPECT_NE(pdf.find("/Kids[\r14 0 R\r18 0 R\r\r]"), std::string::npos);
    EXPECT_NE(pdf.find("/Name /Img1"), std::string::npos);
    pdftest::ExpectQpdfAccepts(file.toStdString());
    const std::string text = PdfText(file);
    for (const char *expected : {"CYTOLOGICKÉ VYŠETŘENÍ", "4/2026", "Dvořák", "Str. 2/1", "Korekce:", "Str. 2/2",
                                 "Závěr potvrzen druhým čtením.", "IČO", "123 456", "266 001 099", "www.lhotka.example"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;
    EXPECT_LT(text.find("Dne: 12.11.2026"), text.find("Dne: 10.11.2026"));

    // Without a logo in the database the page has none, and no old copy is drawn.
    Exec(Sys, "DELETE FROM sys_logo_kvl");
    ASSERT_TRUE(ProtokolPdf(centre, sys, QStringLiteral("10"), true, QString(), &file, &error));
    EXPECT_FALSE(QFile::exists(logo));
    pdf = Pdf(file);
    EXPECT_EQ(pdf.find("/Name /Img1"), std::string::npos);
    EXPECT_NE(pdf.find("/Kids[\r14 0 R\r]\r/Count 1\r"), std::string::npos);
    EXPECT_EQ(pdf.find("Str. 2"), std::string::npos);
    pdftest::ExpectQpdfAccepts(file.toStdString());
    // The title stands at Top 900 of a form 10500 wide: Y 27 - 1.8 cm, X 4100 / 500 + 0.5 cm.
    EXPECT_NE(pdf.find("BT\r\n/Fnt1b 14 Tf\r\n246.61 714.33 Td\r\n(BIOPTICK"), std::string::npos);

    EXPECT_TRUE(ProtokolPdf(centre, sys, QString(), true, QString(), &file, &error));   // an empty key does nothing
    EXPECT_FALSE(ProtokolPdf(centre, sys, QStringLiteral("999"), true, QString(), &file, &error));
    EXPECT_EQ(error, "Protokol 999 nebyl nalezen.");

    // A protocol that cannot be read is a failure with the server's reason, not a missing one.
    Exec(QStringLiteral("fondarix_ofk"), "DROP VIEW archiv_prot");
    const CliRun broken = Cli({"protocol", "pdf", "4"});
    EXPECT_EQ(broken.code, 1);
    EXPECT_TRUE(broken.err.contains("protocol pdf: Protokol 4 nelze načíst. ") && broken.err.contains("archiv_prot"))
        << broken.err.toStdString();
}

// The list of a patient printed by the batch verb: every protocol to its own file.
TEST(ProtokolListPdf, BatchVerbPrintsThePatientsProtocols)
{
    FreshDatabases(true);
    const QTemporaryDir dir;
    const QString d = dir.path();
    for (const char *folder : {"all", "biopsie", "none"})
        QDir(d).mkpath(QLatin1String(folder));
    const struct {
        QStringList args;
        int code;
        const char *files;   // written, joined by ","
        const char *said;    // in the summary (success) or the error
    } cases[] = {
        {{"3", "--dir", d + "/all"}, 0, "3-2026.pdf,4-2026.pdf,17-2026.pdf", "pacient 3 Dvořák Petr, protokolů: 3"},
        {{"3", "--form", "1", "--dir", d + "/biopsie"}, 0, "3-2026.pdf,17-2026.pdf", "protokolů: 2"},
        {{"13", "--dir", d + "/none"}, 0, "", "Hájek Lukáš, protokolů: 0"},
        {{"99"}, 1, "", "pacient s registračním číslem 99 neexistuje."},
        {{"tři"}, 1, "", "registrační číslo \"tři\" není číslo."},
        {{"3", "--form", "x"}, 1, "", "číslo formuláře \"x\" není číslo."},
        {{"3", "--dir", d + "/missing"}, 1, "", "/missing/3-2026.pdf nelze vytvořit."},
        {{}, 2, "", "použití"},
    };
    for (const auto &c : cases) {
        const CliRun run = Cli(QStringList{"protocol", "list-pdf"} + c.args);
        SCOPED_TRACE(c.args.join(' ').toStdString() + "\n" + run.out.toStdString() + run.err.toStdString());
        EXPECT_EQ(run.code, c.code);
        EXPECT_TRUE((c.code == 0 ? run.out : run.err).contains(QString::fromUtf8(c.said)));
        const QString folder = c.args.value(c.args.indexOf("--dir") + 1);
        if (c.code == 0)
            EXPECT_EQ(run.out.count(".pdf"), QString::fromUtf8(c.files).count(".pdf"));
        for (const QString &name : QString::fromUtf8(c.files).split(',', Qt::SkipEmptyParts))
            EXPECT_TRUE(run.out.contains(QDir(folder).filePath(name))) << name.toStdString();
    }
    // The later biopsy, a page of its own, with the demo's logo.
    const QString later = d + "/biopsie/17-2026.pdf";
    pdftest::ExpectQpdfAccepts(later.toStdString());
    EXPECT_NE(Pdf(later).find("/Name /Img1"), std::string::npos);
    const std::string text = PdfText(later);
    for (const char *expected : {"BIOPTICKÉ VYŠETŘENÍ", "17/2026", "20.11.2026 08:30", "Dvořák"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;

    // A list that cannot be read is a failure, not a patient without protocols.
    Exec(QStringLiteral("fondarix_ofk"), "DROP VIEW archiv_prot");
    const CliRun broken = Cli({"protocol", "list-pdf", "3", "--dir", d + "/none"});
    EXPECT_EQ(broken.code, 1);
    EXPECT_TRUE(broken.err.contains("protocol list-pdf: Protokoly pacienta nelze načíst. ")) << broken.err.toStdString();
}

TEST(ProtokolPdf, FileNamesFieldsAndTheCorrectionPageFromAPage)
{
    const QTemporaryDir dir;
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("PROTOKOLY_SAVE"), dir.path());
    for (const auto &[cislo, name] : std::vector<std::pair<QString, QString>>{
             {"12/2014", "12-2014.pdf"}, {"3\\2015", "3-2015.pdf"}, {"A 1", "A 1.pdf"}})
        EXPECT_EQ(ProtocolPdfPath(cislo), QDir(dir.path()).filePath(name));

    // Bold and italic keys; a field of key 0 and an empty value draw nothing.
    ProtocolPage page;
    page.formWidth = 2100;   // 100 units a centimetre
    page.keys = QStringLiteral("1~2~0~3~4~");
    page.types = QStringLiteral("2~2~2~2~3~");
    page.data = QStringLiteral("normal~bold~hidden~~") + QStringLiteral("slovo ").repeated(40);
    page.fonts = QStringLiteral("10~12~10~10~8,25~");
    page.bolds = QStringLiteral("0~1~0~0~0~");
    page.kursivs = QStringLiteral("0~0~0~0~1~");
    page.pozice = QStringLiteral("0~0~1~1\r\n100~250~1~1\r\n200~0~1~1\r\n300~0~1~1\r\n1000~150~1~1\r\n");
    page.korekce = QStringLiteral("Dne: 1.1.2026, 8:00 X\r\n- oprava\r\n");
    const QString file = QDir(dir.path()).filePath(QStringLiteral("page.pdf"));
    ASSERT_TRUE(WriteProtocolPdf(page, file));
    const std::string pdf = Pdf(file);
    EXPECT_NE(pdf.find("/Fnt1a 10 Tf\r\n14.17 765.35 Td\r\n(normal) Tj"), std::string::npos);
    EXPECT_NE(pdf.find("/Fnt1b 12 Tf\r\n85.04 737.01 Td\r\n(bold) Tj"), std::string::npos);
    EXPECT_EQ(pdf.find("(hidden)"), std::string::npos);
    // Italic is named though never loaded; 240 characters wrap into two lines at 138.
    EXPECT_NE(pdf.find("/Fnt1i 8 Tf\r\n56.69 481.89 Td"), std::string::npos);
    EXPECT_NE(pdf.find("/Fnt1i 8 Tf\r\n56.69 472.68 Td\r\n(   -) Tj"), std::string::npos);
    EXPECT_EQ(pdf.find("/Fnt1i 8 0 R"), std::string::npos);
    EXPECT_NE(pdf.find("(Korekce:) Tj"), std::string::npos);
    EXPECT_FALSE(WriteProtocolPdf(page, QStringLiteral("/nonexistent-dir/x.pdf")));
}
