// Exchange files: a firm's orders exported from the demo archive and read back
// in the older layout, files read in part or refused whole, and the batch verbs.

#include "orders/exchange.h"

#include "core/codepage.h"
#include "core/db.h"
#include "core/session.h"
#include "core/text.h"
#include "fondarix_paths.h"
#include "orders/objrecord.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlRecord>


namespace {
using seed::Centre;

class Exchange : public ::testing::Test {
protected:
    void SetUp() override
    {
        testenv::FreshDatabases();
        testenv::LoginAs(4);
    }
    static int Rows() { return testenv::Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt(); }
    // The columns of the rows added after the demo's, as the import stored them.
    static QStringList Added(const QString &column, int before)
    {
        return testenv::Column(Centre, QStringLiteral("SELECT IFNULL(`%1`, '<null>') FROM archobj ORDER BY nom LIMIT 100000 OFFSET %2")
                                           .arg(column)
                                           .arg(before));
    }
    static QString WriteExchange(const QByteArray &bytes)
    {
        const QString path = QDir(Session().TempDir).filePath(QStringLiteral("in.txt"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        return path;
    }
};

} // namespace

// The export writes the record line of the archive; the import reads the older
// layout, so each piece lands in the column of its index there.
TEST_F(Exchange, FirmExportedAndReadBackInTheOlderLayout)
{
    DbConnection centre(ConnStrCentre());
    ASSERT_TRUE(centre.isOpen());
    const QStringList penta = testenv::Column(
        Centre, QStringLiteral("SELECT cis_obj FROM archobj WHERE Firma LIKE 'PENTA%' ORDER BY cis_obj"));
    ASSERT_GE(penta.size(), 2);

    QString path, error;
    EXPECT_EQ(ExportFirm(centre, QStringLiteral(" penta s.r.o. "), &path, &error), penta.size()) << error.toStdString();
    EXPECT_EQ(path, Session().TempDir + QStringLiteral("/SMTP_Email/PENTA_S.R.O..txt"));
    EXPECT_TRUE(QDir(Session().TempDir + QStringLiteral("/POP3_Email")).exists());
    // Each order rewrote the file: it holds the last one.
    const QString text = ReadFileCp1250(path);
    ASSERT_TRUE(text.endsWith(QStringLiteral("~\r\n")));
    EXPECT_EQ(text.count(QStringLiteral("\r\n")), 1);
    EXPECT_TRUE(text.startsWith(penta.last() + QLatin1Char('~')));

    const int before = Rows();
    EXPECT_EQ(ImportObjFile(centre, path, &error), 1) << error.toStdString();
    const QString line = text.chopped(2);
    // Column of the older layout <- piece of the record line with the same index.
    const struct {
        const char *column;
        int piece;
    } moved[] = {{"Cis_obj", 0}, {"Autor", 1}, {"Dat_obj", 2}, {"Grant", 3}, {"Firma", 4},
                 {"Adres", 6},   {"LineRec1", 9}, {"Poc1", 17}, {"Tel", 25}, {"Typ", 29},
                 {"LineRec9", 30}, {"SpravceRozp", 35}};
    for (const auto &m : moved) {
        QString expected = GetField(line, short(m.piece), '~');
        expected.replace(QLatin1Char('#'), QLatin1Char(','));
        EXPECT_EQ(Added(QLatin1String(m.column), before), QStringList{expected}) << m.column;
    }
    EXPECT_EQ(Added(QStringLiteral("objWF"), before), QStringList{QStringLiteral("<null>")});
}

// A text order travels with its body in place of the file name: quotes
// removed, line breaks as "^"; read back, "^" is a line break again.
TEST_F(Exchange, TextOrderBodyTravelsInOneLine)
{
    testenv::Exec(Centre, QStringLiteral("UPDATE archobj SET file_html_text='<p class=\"x\">Řádek 1,</p>\r\n<p>#2</p>' "
                                         "WHERE Firma LIKE 'BioTech%'"));
    DbConnection centre(ConnStrCentre());
    QString path, error;
    ASSERT_GT(ExportFirm(centre, QStringLiteral("BioTech a.s."), &path, &error), 0) << error.toStdString();
    const QString line = ReadFileCp1250(path).chopped(2);
    EXPECT_EQ(GetField(line, 15, '~'), QStringLiteral("<p class=x>Řádek 1,</p>^<p>#2</p>"));
    EXPECT_EQ(GetField(line, 14, '~'), QStringLiteral("2"));

    const int before = Rows();
    ASSERT_EQ(ImportObjFile(centre, path, &error), 1) << error.toStdString();
    // Index 15 of the older layout is LineRec7; "#" comes back as ",".
    EXPECT_EQ(Added(QStringLiteral("LineRec7"), before), QStringList{QStringLiteral("<p class=x>Řádek 1,</p>\r\n<p>,2</p>")});
}

// What a file holds and what is stored of it. A record the server refuses stores nothing,
// not even the records before it, and says so in Czech.
TEST_F(Exchange, ImportCases)
{
    DbConnection centre(ConnStrCentre());
    QByteArray binary;   // two line ends: two records, the rest of the bytes never read
    for (int i = 0; i < 256; ++i)
        binary += char(i);
    // 97 characters and CR LF a record: 20,000 characters hold 202 records and
    // the first two characters of the 203rd.
    QByteArray many;
    for (int i = 1; i <= 300; ++i) {
        QByteArray record = QStringLiteral("%1/01012026~510~2026-01-01 08:00:00~1207~Firma %1~").arg(i, 4, 10, QLatin1Char('0')).toLatin1();
        record += QByteArray(97 - record.size(), 'x');
        many += record + "\r\n";
    }
    const struct {
        const char *name;
        QByteArray bytes;
        int stored;
        const char *column;
        const char *last;   // the column of the last row stored
        const char *refused = nullptr;
    } cases[] = {
        {"fewer fields", "0500/01012026~510", 1, "Autor", "510"},
        {"separators", "0501/01012026~a,b~c#d~x^y,z\r\n", 1, "Grant", "x\r\ny,z"},
        {"hash", "0501/01012026~a~c#d\r\n", 1, "Dat_obj", "c,d"},
        {"text name", QByteArray("0502/01012026") + QByteArray(27, '~') + "stary.txt~T1~2", 1, "Text",
         "F0502/01012026.stary.txt"},
        {"empty text name", QByteArray("0503/01012026") + QByteArray(27, '~') + "~T1~2", 1, "Text", ""},
        {"stops at an empty record", "0504/01012026~1\r\n\r\n0505/01012026~2\r\n", 1, "Cis_obj", "0504/01012026"},
        // The count goes by line feeds; the reader also ends a record at a lone CR.
        {"lone CR", "0506/01012026~1\r0507/01012026~2", 1, "Cis_obj", "0506/01012026"},
        {"lone CR counted", "0506/01012026~1\r0507/01012026~2\n", 1, "Cis_obj", "0506/01012026"},
        {"binary", binary, 2, "Cis_obj", "\x0b\x0c"},
        {"longer than 20,000 characters", many, 203, "Cis_obj", "02"},
        {"empty", "", 0, nullptr, nullptr},
        {"only a line end", "\r\n", 0, nullptr, nullptr},
        {"too long a number", "0600/01012026~1\r\n0601/01012026~2\r\n" + QByteArray(60, '9') + "~3\r\n", -1, nullptr,
         nullptr, "Objednávku 3 ze souboru nelze uložit"},
        {"a character the code page lacks", "0602/01012026~\x81\r\n", -1, nullptr, nullptr,
         "Objednávku 1 ze souboru nelze uložit"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const int before = Rows();
        QString error;
        EXPECT_EQ(ImportObjFile(centre, WriteExchange(c.bytes), &error), c.stored) << error.toStdString();
        EXPECT_EQ(Rows(), before + std::max(c.stored, 0));
        if (c.column)
            EXPECT_EQ(Added(QLatin1String(c.column), before).value(c.stored - 1), QString::fromUtf8(c.last));
        if (c.refused) {
            EXPECT_TRUE(error.contains(QString::fromUtf8(c.refused))) << error.toStdString();
            EXPECT_TRUE(error.endsWith(QStringLiteral("Ze souboru nebylo uloženo nic."))) << error.toStdString();
        }
    }
}

// The three verbs on the demo institute, as a user runs them, and their refusals.
TEST_F(Exchange, BatchVerbs)
{
    const QString out = QDir(testenv::SamplesDir(QStringLiteral("pdf"))).filePath(QStringLiteral("cli-0043.pdf"));
    const testenv::CliRun pdf = testenv::Cli({"order", "pdf", "0043/25052024", "--out", out, "--login", "cerny"});
    ASSERT_EQ(pdf.code, 0) << pdf.err.toStdString();
    EXPECT_EQ(pdf.out.trimmed(), QStringLiteral("order pdf: 0043/25052024, druh 3: %1, %2 bajtů").arg(out).arg(QFileInfo(out).size()));

    const testenv::CliRun exported = testenv::Cli({"orders", "export", "Verkon s.r.o."});
    ASSERT_EQ(exported.code, 0) << exported.err.toStdString();
    const QString file = Session().TempDir + QStringLiteral("/SMTP_Email/VERKON_S.R.O..txt");
    const QString count = testenv::Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj WHERE Firma LIKE 'VERKON%'")).value(0);
    EXPECT_EQ(exported.out.trimmed(),
              QStringLiteral("orders export: %1 objednávek firmy \"Verkon s.r.o.\" zapsáno do %2 (soubor drží poslední z nich)")
                  .arg(count, file));

    const int before = Rows();
    const testenv::CliRun imported = testenv::Cli({"orders", "import", file});
    ASSERT_EQ(imported.code, 0) << imported.err.toStdString();
    EXPECT_EQ(imported.out, QStringLiteral("orders import: 1 objednávek uloženo do archobj databáze fondarix_ofk\nExport file complete\n"));
    EXPECT_EQ(Added(QStringLiteral("Grant"), before), QStringList{QStringLiteral("Verkon s.r.o.")});

    const struct {
        QStringList args;
        int code;
        const char *message;
    } refusals[] = {
        {{"order", "pdf", "9999/01012000"}, 1, "Objednávka číslo 9999/01012000 neexistuje."},
        {{"order", "pdf", "0002/11012024", "--out", "/nonexistent/x.pdf"}, 1, "Soubor /nonexistent/x.pdf nelze zapsat."},
        {{"orders", "export", "Neznámá firma"}, 1, "Firma \"Neznámá firma\" nemá v archivu žádnou objednávku."},
        {{"orders", "import", "/nonexistent/x.txt"}, 1, "Soubor /nonexistent/x.txt nelze otevřít."},
        {{"order", "pdf"}, 2, ""},
        {{"orders", "import", "a", "b"}, 2, ""},
    };
    for (const auto &r : refusals) {
        const testenv::CliRun run = testenv::Cli(r.args);
        EXPECT_EQ(run.code, r.code) << r.args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(r.message))) << run.err.toStdString();
    }
    EXPECT_EQ(Rows(), before + 1);
}
