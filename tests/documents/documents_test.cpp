#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "documents/documents.h"
#include "documents/frmDocuments.h"
#include "documents/zip.h"
#include "fondarix_paths.h"
#include "grants/frmGrantPlan.h"
#include "support/testenv.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

QByteArray ReadAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void WriteAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(f.write(bytes), bytes.size());
}

QByteArray RandomBytes(qsizetype n)
{
    QByteArray bytes(n, Qt::Uninitialized);
    QRandomGenerator gen(n);
    gen.fillRange(reinterpret_cast<quint32 *>(bytes.data()), n / 4);
    return bytes;
}

// What `unzip` says of an archive: exit code and output.
std::pair<int, QString> Unzip(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral("unzip"), args);
    p.waitForFinished(60000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError())};
}

// Changes every occurrence of `from` in an archive (local and central header alike).
QByteArray Patched(QByteArray zip, const QByteArray &from, const QByteArray &to)
{
    EXPECT_EQ(from.size(), to.size());
    EXPECT_EQ(zip.count(from), 2) << from.toStdString();
    return zip.replace(from, to);
}

// Sets the uncompressed size an archive of one entry claims, in both headers.
QByteArray ClaimingSize(QByteArray zip, quint32 size)
{
    const qsizetype central = zip.lastIndexOf(QByteArray("PK\x01\x02", 4));
    for (qsizetype at : {qsizetype(22), central + 24})
        for (int i = 0; i < 4; ++i)
            zip[at + i] = char((size >> (8 * i)) & 0xff);
    return zip;
}

// An archive made by ZipFile of a file of that name and content.
QByteArray MadeArchive(const QString &dir, const QString &name, const QByteArray &content)
{
    const QString source = dir + QLatin1Char('/') + name;
    WriteAll(source, content);
    QString error;
    EXPECT_TRUE(ZipFile(source, dir + QStringLiteral("/made"), &error)) << error.toStdString();
    QFile::remove(source);
    return ReadAll(dir + QStringLiteral("/made.zip"));
}

QStringList FilesUnder(const QString &dir)
{
    QStringList files;
    for (const QFileInfo &fi : QDir(dir).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot))
        files << fi.fileName();
    return files;
}

QString Row(qint64 id, const QString &columns)
{
    return Column(Granty, QStringLiteral("SELECT CONCAT_WS('|', %1) FROM documents WHERE id_grant=%2")
                              .arg(columns).arg(id)).value(0);
}

qint64 NewRow(DbConnection &conn, const QString &grant = QStringLiteral("1202"))
{
    qint64 id = 0;
    EXPECT_TRUE(NewDocumentRow(conn, grant, QStringLiteral("2026-5-6 7:08:09"), &id)) << conn.errorText().toStdString();
    return id;
}
} // namespace

TEST(Zip, ArchiveHoldsTheFileDeflatedAtItsRootAndUnpacksWhole)
{
    QTemporaryDir dir;
    const QByteArray content = RandomBytes(200000) + QByteArray(300000, 'a');
    const QString source = dir.filePath(QStringLiteral("Zpráva O'Neill.pdf"));
    WriteAll(source, content);

    // The name gets ".zip" unless it ends in it already, in any letter case.
    using Names = std::initializer_list<std::pair<const char *, const char *>>;
    for (const auto &[given, made] : Names{{"arch", "arch.zip"}, {"arch.ZIP", "arch.ZIP"}, {"arch.Zip", "arch.Zip"}}) {
        QString error;
        ASSERT_TRUE(ZipFile(source, dir.filePath(QLatin1String(given)), &error)) << error.toStdString();
        EXPECT_TRUE(QFileInfo::exists(dir.filePath(QLatin1String(made)))) << made;
    }
    const QString zip = dir.filePath(QStringLiteral("arch.zip"));
    const auto [testCode, testOut] = Unzip({QStringLiteral("-t"), zip});
    EXPECT_EQ(testCode, 0) << testOut.toStdString();
    const auto [listCode, listOut] = Unzip({QStringLiteral("-Z"), QStringLiteral("-1"), zip});
    EXPECT_EQ(listOut.trimmed(), QStringLiteral("Zpráva O'Neill.pdf"));
    EXPECT_TRUE(Unzip({QStringLiteral("-v"), zip}).second.contains(QStringLiteral("Defl:"))) << "deflate method";

    // A second pack of the same name replaces the archive rather than adding to it.
    WriteAll(source, "druhá verze");
    QString error;
    ASSERT_TRUE(ZipFile(source, zip, &error));
    const QString out = dir.filePath(QStringLiteral("out"));
    const auto files = UnzipFile(zip, out, &error);
    ASSERT_TRUE(files) << error.toStdString();
    EXPECT_EQ(*files, QStringList{out + QStringLiteral("/Zpráva O'Neill.pdf")});
    EXPECT_EQ(ReadAll(files->first()), QByteArray("druhá verze"));

    WriteAll(source, content);
    ASSERT_TRUE(ZipFile(source, zip, &error));
    ASSERT_TRUE(UnzipFile(zip, out, &error));
    EXPECT_EQ(ReadAll(files->first()), content);

    EXPECT_FALSE(ZipFile(dir.filePath(QStringLiteral("chybí.pdf")), zip, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("nebyl nalezen"))) << error.toStdString();
}

TEST(Zip, BadArchivesAreRefusedBeforeAnythingIsWritten)
{
    QTemporaryDir dir;
    const QByteArray small = MadeArchive(dir.path(), QStringLiteral("xxxevil.txt"), "obsah");
    const QByteArray longer = MadeArchive(dir.path(), QStringLiteral("xtmpxevil.txt"), "obsah");
    const QByteArray zeros = MadeArchive(dir.path(), QStringLiteral("nuly.bin"), QByteArray(4 << 20, '\0'));
    const struct {
        const char *what;
        QByteArray archive;
        const char *message;
    } cases[] = {
        {"0 bytes", QByteArray(), "je prázdný (0 bajtů)"},
        {"not a zip", QByteArray("%PDF-1.3 to není archiv"), "není platný archiv zip"},
        {"empty archive", QByteArray("PK\x05\x06", 4) + QByteArray(18, '\0'), "neobsahuje žádný soubor"},
        {"../ in the name", Patched(small, "xxxevil.txt", "../evil.txt"), "mimo cílovou složku"},
        {"..\\ in the name", Patched(small, "xxxevil.txt", "..\\evil.txt"), "mimo cílovou složku"},
        {"absolute name", Patched(longer, "xtmpxevil.txt", "/tmp/evil.txt"), "mimo cílovou složku"},
        {"drive letter", Patched(longer, "xtmpxevil.txt", "C:/tmpevil.tx"), "mimo cílovou složku"},
        {"claims 1.5 GB", ClaimingSize(zeros, 0x60000000u), "více než 1073741824 bajtů"},
        {"expands beyond its claim", ClaimingSize(zeros, 1000), "více bajtů, než uvádí"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const QString target = dir.filePath(QStringLiteral("target/inner"));
        QDir(dir.filePath(QStringLiteral("target"))).removeRecursively();
        QDir().mkpath(target);
        const QString zip = dir.filePath(QStringLiteral("bad.zip"));
        WriteAll(zip, c.archive);
        QString error;
        EXPECT_FALSE(UnzipFile(zip, target, &error));
        EXPECT_TRUE(error.contains(QString::fromUtf8(c.message))) << error.toStdString();
        EXPECT_EQ(FilesUnder(target), QStringList());
        EXPECT_EQ(FilesUnder(dir.filePath(QStringLiteral("target"))), QStringList{QStringLiteral("inner")});
        EXPECT_FALSE(QFileInfo::exists(QStringLiteral("/tmp/evil.txt")));
    }
}

TEST(Documents, TypesNamesStampsAndThePacketLimit)
{
    using Cases = std::initializer_list<std::tuple<const char *, const char *, const char *>>;
    for (const auto &[file, type, name] : Cases{{"C:/Granty/Smlouva.pdf", "PDF", "Smlouva.pdf"},
                                                {"/home/a/zprava.docx", "DOCX", "zprava.docx"},
                                                {"C:\\Granty\\tab.Xls", "XLS", "tab.Xls"},
                                                {"D:soubor.doc", "DOC", "Dsoubor.doc"},
                                                {"/home/a.b/bez_pripony", "", "bez_pripony"},
                                                {"", "", ""}}) {
        EXPECT_EQ(DocumentType(QString::fromUtf8(file)), QString::fromUtf8(type)) << file;
        EXPECT_EQ(DocumentFileName(QString::fromUtf8(file)), QString::fromUtf8(name)) << file;
    }
    EXPECT_EQ(DocumentTimestamp(QDateTime(QDate(2026, 3, 5), QTime(9, 5, 3))), QStringLiteral("2026-3-5 9:05:03"));
    EXPECT_EQ(DocumentTimestamp(QDateTime(QDate(2026, 11, 22), QTime(21, 0, 0))), QStringLiteral("2026-11-22 21:00:00"));

    const qint64 mb = 1024 * 1024;
    EXPECT_EQ(PacketLimitMessage(50 * mb, 128 * mb), QString());
    EXPECT_EQ(PacketLimitMessage(50 * mb, 0), QString()) << "an unknown limit refuses nothing";
    EXPECT_EQ(PacketLimitMessage(17 * mb, 16 * mb),
              QStringLiteral("Soubor je i po zabalení příliš velký (17825792 bajtů): server přijme nejvýše 16777216 bajtů "
                             "(16 MB, max_allowed_packet). Nic nebylo uloženo."));
    EXPECT_NE(PacketLimitMessage(16 * mb, 16 * mb), QString()) << "the statement itself needs room too";
}

TEST(Documents, StoreListFetchClearAndDelete)
{
    FreshDatabases();
    LoginAs(2);
    DbConnection conn(ConnStrGranty());
    ASSERT_TRUE(conn.isOpen());
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("O'Brien – smlouva.pdf"));
    const QByteArray content = RandomBytes(100000);
    WriteAll(path, content);

    const qint64 id = NewRow(conn);
    const DocumentResult stored = StoreDocumentFile(conn, id, QStringLiteral("1202"), path, QStringLiteral("Smlouva 'A'"),
                                                    QStringLiteral("2026-5-6 7:10:00"), Session().TempDir);
    EXPECT_TRUE(stored.ok);
    EXPECT_EQ(stored.message, QStringLiteral("Soubor byl úspěšně naimportován do MySQL DB."));
    EXPECT_EQ(Row(id, QStringLiteral("_grant, `file`, `size`, param1, param2")),
              QStringLiteral("1202|%1|100000|Smlouva 'A'|2026-5-6 7:10:00").arg(path));

    // The BLOB is a normal zip archive with the file at its root.
    const QString blob = dir.filePath(QStringLiteral("blob.zip"));
    WriteAll(blob, QByteArray::fromHex(Row(id, QStringLiteral("HEX(oleWord)")).toLatin1()));
    const auto [code, out] = Unzip({QStringLiteral("-t"), blob});
    EXPECT_EQ(code, 0) << out.toStdString();
    EXPECT_EQ(Unzip({QStringLiteral("-Z1"), blob}).second.trimmed(), QStringLiteral("O'Brien – smlouva.pdf"));

    QVector<DocumentRow> rows;
    ASSERT_TRUE(ListDocuments(conn, QStringLiteral("1202"), &rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].id, id);
    EXPECT_EQ(rows[0].size, 100000);
    EXPECT_EQ(DocumentType(rows[0].file), QStringLiteral("PDF"));

    QString error;
    const QString unpacked = dir.filePath(QStringLiteral("ven"));
    const auto fetched = FetchDocument(conn, id, Session().TempDir, unpacked, &error);
    ASSERT_TRUE(fetched) << error.toStdString();
    EXPECT_EQ(*fetched, unpacked + QStringLiteral("/O'Brien – smlouva.pdf"));
    EXPECT_EQ(ReadAll(*fetched), content);

    // Texts only: the name and the time, the file stays.
    const DocumentResult texts = StoreDocumentTexts(conn, id, QStringLiteral("Nový \"název\""), QStringLiteral("2026-5-7 8:00:00"));
    EXPECT_EQ(texts.message, QStringLiteral("Data byli úspěšně uložena do MySQL DB."));
    EXPECT_EQ(Row(id, QStringLiteral("param1, param2, `size`")), QStringLiteral("Nový \"název\"|2026-5-7 8:00:00|100000"));

    // Dropping the file keeps the row.
    ASSERT_TRUE(ClearDocumentFile(conn, id));
    EXPECT_EQ(Row(id, QStringLiteral("`file`, `size`, IF(oleWord IS NULL, 'NULL', 'BLOB'), param1")), QStringLiteral("|0|NULL|Nový \"název\""));
    EXPECT_FALSE(FetchDocument(conn, id, Session().TempDir, unpacked, &error));
    EXPECT_EQ(error, QStringLiteral("K dokumentu není uložen žádný soubor."));

    ASSERT_TRUE(DeleteDocument(conn, id));
    EXPECT_EQ(Column(Granty, QStringLiteral("SELECT COUNT(*) FROM documents WHERE id_grant=%1").arg(id)), QStringList{"0"});
    const DocumentResult gone = StoreDocumentFile(conn, id, QStringLiteral("1202"), path, QString(), QString(), Session().TempDir);
    EXPECT_EQ(gone.message, QStringLiteral("Soubor do DB naimportován nebyl..."));
}

TEST(Documents, BadFilesAndBlobsStoreNothing)
{
    FreshDatabases();
    LoginAs(2);
    DbConnection conn(ConnStrGranty());
    QTemporaryDir dir;
    const QString good = dir.filePath(QStringLiteral("dobry.pdf"));
    WriteAll(good, "%PDF obsah");
    const QString empty = dir.filePath(QStringLiteral("prazdny.pdf"));
    WriteAll(empty, QByteArray());
    QString deep = dir.path();
    while (deep.size() < 300)
        deep += QStringLiteral("/slozka-s-dlouhym-nazvem");
    QDir().mkpath(deep);
    const QString longPath = deep + QStringLiteral("/soubor.pdf");
    WriteAll(longPath, "%PDF obsah");
    const QString foreign = dir.filePath(QStringLiteral("文書.pdf"));
    WriteAll(foreign, "%PDF obsah");

    const struct {
        const char *what;
        QString path;
        QString name;
        const char *message;
    } files[] = {
        {"vanished", dir.filePath(QStringLiteral("zmizel.pdf")), QStringLiteral("x"), "nebyl nalezen, nic nebylo uloženo"},
        {"empty", empty, QStringLiteral("x"), "je prázdný (0 bajtů)"},
        {"path over 255", longPath, QStringLiteral("x"), "Text v poli „file“ je příliš dlouhý; nebyl uložen ani zkrácen."},
        {"name of 300", good, QString(300, QLatin1Char('n')), "Text v poli „param1“ je příliš dlouhý; nebyl uložen ani zkrácen."},
        {"outside Windows-1250", foreign, QStringLiteral("x"), "Pole „file“ obsahuje znak"},
    };
    for (const auto &f : files) {
        SCOPED_TRACE(f.what);
        const qint64 id = NewRow(conn);
        const DocumentResult r = StoreDocumentFile(conn, id, QStringLiteral("1202"), f.path, f.name,
                                                   QStringLiteral("2026-5-6 7:10:00"), Session().TempDir);
        EXPECT_FALSE(r.ok);
        EXPECT_TRUE(r.message.contains(QString::fromUtf8(f.message))) << r.message.toStdString();
        EXPECT_EQ(Row(id, QStringLiteral("IFNULL(`file`, ''), `size`, IF(oleWord IS NULL, 'NULL', 'BLOB'), IFNULL(param1, '')")),
                  QStringLiteral("|0|NULL|"));
    }

    // BLOBs that are no good archive: a message, nothing written outside the scratch folder.
    const QByteArray made = MadeArchive(dir.path(), QStringLiteral("xxxevil.txt"), "obsah");
    const struct {
        const char *what;
        QByteArray blob;
        const char *message;
    } blobs[] = {
        {"0 bytes", QByteArray(""), "je prázdný (0 bajtů)"},
        {"not a zip", QByteArray("obyčejný text"), "není platný archiv zip"},
        {"../ entry", Patched(made, "xxxevil.txt", "../evil.txt"), "mimo cílovou složku"},
        {"bomb", ClaimingSize(made, 0xF0000000u), "více než 1073741824 bajtů"},
    };
    const QString scratch = dir.filePath(QStringLiteral("scratch/temp"));
    for (const auto &b : blobs) {
        SCOPED_TRACE(b.what);
        const qint64 id = NewRow(conn);
        ASSERT_TRUE(conn.exec(QStringLiteral("UPDATE documents SET `file`='C:/x/evil.txt', oleWord=? WHERE id_grant=?"),
                              {b.blob, id}));
        QString error;
        EXPECT_FALSE(FetchDocument(conn, id, scratch, scratch, &error));
        EXPECT_TRUE(error.contains(QString::fromUtf8(b.message))) << error.toStdString();
        EXPECT_EQ(FilesUnder(dir.filePath(QStringLiteral("scratch"))), QStringList{QStringLiteral("temp")});
        EXPECT_EQ(FilesUnder(scratch), QStringList{QStringLiteral("evil.txt.zip")});
    }
}

TEST(Documents, TheServersPacketLimitDecides)
{
    FreshDatabases();
    LoginAs(2);
    QTemporaryDir dir;
    {
        // A server that takes 1 MB: a 2 MB file is refused with the limit named, nothing written.
        Exec(Granty, QStringLiteral("SET GLOBAL max_allowed_packet = 1048576"));
        const auto restore = qScopeGuard([] { Exec(Granty, QStringLiteral("SET GLOBAL max_allowed_packet = 134217728")); });
        DbConnection small(ConnStrGranty());
        const QString path = dir.filePath(QStringLiteral("dva.pdf"));
        WriteAll(path, RandomBytes(2 * 1024 * 1024));
        const qint64 id = NewRow(small);
        const DocumentResult r = StoreDocumentFile(small, id, QStringLiteral("1202"), path, QStringLiteral("x"),
                                                   QStringLiteral("2026-5-6 7:10:00"), Session().TempDir);
        EXPECT_FALSE(r.ok);
        EXPECT_TRUE(r.message.contains(QStringLiteral("server přijme nejvýše 1048576 bajtů"))) << r.message.toStdString();
        EXPECT_EQ(Row(id, QStringLiteral("`size`, IF(oleWord IS NULL, 'NULL', 'BLOB'), IFNULL(param1, '')")),
                  QStringLiteral("0|NULL|"));
    }
    // The private server lets 50 MB through, both ways.
    DbConnection conn(ConnStrGranty());
    EXPECT_GE(ServerPacketLimit(conn), 64 * 1024 * 1024);
    const QString path = dir.filePath(QStringLiteral("velky.pdf"));
    const QByteArray content = RandomBytes(50 * 1024 * 1024);
    WriteAll(path, content);
    const qint64 id = NewRow(conn);
    const DocumentResult r = StoreDocumentFile(conn, id, QStringLiteral("1202"), path, QStringLiteral("velký"),
                                               QStringLiteral("2026-5-6 7:10:00"), Session().TempDir);
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    QString error;
    const auto fetched = FetchDocument(conn, id, Session().TempDir, dir.filePath(QStringLiteral("ven")), &error);
    ASSERT_TRUE(fetched) << error.toStdString();
    EXPECT_TRUE(ReadAll(*fetched) == content);
}

namespace {
QTableWidget *Grid(QWidget *screen) { return Child<QTableWidget>(screen, "MSFlexGrid1"); }

QStringList GridRow(QWidget *screen, int row)
{
    QStringList cells;
    for (int c = 0; c < Grid(screen)->columnCount(); ++c)
        cells << Grid(screen)->item(row, c)->text();
    return cells;
}

void Click(QWidget *screen, const char *name) { QTest::mouseClick(Child<QPushButton>(screen, name), Qt::LeftButton); }
} // namespace

TEST(frmDocuments, NewRowStoreViewDropFileAndDeleteRow)
{
    FreshDatabases();
    LoginAs(2);
    ScriptedMessages messages;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Zpráva O'Neill.docx"));
    const QByteArray content = RandomBytes(30000);
    WriteAll(path, content);

    frmDocuments screen(QStringLiteral("1201"));
    QStringList filtersSeen;
    screen.ChooseFile = [&](QWidget *, const QStringList &filters) {
        filtersSeen = filters;
        return path;
    };
    QString opened;
    screen.OpenFile = [&](const QString &file) { opened = file; };
    screen.Load();
    screen.show();

    QStringList headers;
    for (int c = 0; c < 5; ++c)
        headers << Grid(&screen)->horizontalHeaderItem(c)->text();
    EXPECT_EQ(headers, (QStringList{"  GRANT", "          Název dokumentu", "  Uloženo", "                Soubor", " Typ"}));
    ASSERT_EQ(Grid(&screen)->rowCount(), 2);
    EXPECT_EQ(GridRow(&screen, 0), (QStringList{"1201", "Smlouva o poskytnutí podpory", "2026-1-15 9:30:00",
                                                "/home/novakova/Dokumenty/smlouva-1201.pdf", "PDF"}));

    // The demo's contract opens from the scratch folder.
    Click(&screen, "cmdView");
    EXPECT_EQ(opened, Session().TempDir + QStringLiteral("/smlouva-1201.pdf"));
    EXPECT_TRUE(ReadAll(opened).startsWith("%PDF-1.3"));

    // A new row, a file chosen, a name typed, saved.
    Click(&screen, "cmdNew");
    ASSERT_EQ(Grid(&screen)->rowCount(), 3);
    const int row = Grid(&screen)->currentRow();
    const qint64 id = screen.current()->id;
    Click(&screen, "cmdFile");
    EXPECT_EQ(filtersSeen, (QStringList{"Documents Files (*.pdf;*.doc;*.xls;*docx;*.xlsx)", "Graphic Files (*.jpg;)"}));
    EXPECT_EQ(Child<QLineEdit>(&screen, "Text8")->text(), path);
    Child<QLineEdit>(&screen, "Text1")->setText(QStringLiteral("Zpráva 'průběžná'"));
    Click(&screen, "cmdSave");
    EXPECT_EQ(messages.lastText(), QStringLiteral("Soubor byl úspěšně naimportován do MySQL DB."));
    EXPECT_EQ(Grid(&screen)->currentRow(), row);
    EXPECT_EQ(GridRow(&screen, row).mid(3), (QStringList{path, "DOCX"}));
    SaveScreen(&screen, QStringLiteral("frmDocuments"));

    opened.clear();
    Click(&screen, "cmdView");
    EXPECT_EQ(ReadAll(opened), content);

    // Dropping the file: Cancel keeps it, OK clears file, size and archive, the row stays.
    messages.answers = {AnswerCancel};
    Click(&screen, "cmdDelFile");
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Opravdu si přejete smazat soubor: Zpráva O'Neill.docx?"));
    EXPECT_EQ(messages.shown.back().title, QStringLiteral("Informace"));
    EXPECT_EQ(Row(id, QStringLiteral("`size`")), QStringLiteral("30000"));
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelFile");
    EXPECT_EQ(Row(id, QStringLiteral("`file`, `size`, IF(oleWord IS NULL, 'NULL', 'BLOB'), param1")),
              QStringLiteral("|0|NULL|Zpráva 'průběžná'"));
    EXPECT_EQ(GridRow(&screen, Grid(&screen)->currentRow()).mid(3), (QStringList{"", ""}));

    // Without a file only the texts are saved.
    Child<QLineEdit>(&screen, "Text1")->setText(QStringLiteral("Jen název"));
    Click(&screen, "cmdSave");
    EXPECT_EQ(messages.lastText(), QStringLiteral("Data byli úspěšně uložena do MySQL DB."));
    EXPECT_EQ(Row(id, QStringLiteral("param1")), QStringLiteral("Jen název"));

    // A file that vanished after its choice: a message, nothing stored.
    Child<QLineEdit>(&screen, "Text8")->setText(dir.filePath(QStringLiteral("zmizel.pdf")));
    Click(&screen, "cmdSave");
    EXPECT_EQ(messages.shown.back().style, int(MsgCritical));
    EXPECT_EQ(Row(id, QStringLiteral("`size`, IF(oleWord IS NULL, 'NULL', 'BLOB')")), QStringLiteral("0|NULL"));

    // Deleting the row asks first.
    messages.answers = {AnswerCancel};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Chcete opravdu smazat záznam a soubor?"));
    EXPECT_EQ(messages.shown.back().title, QStringLiteral("Delete row"));
    EXPECT_EQ(Grid(&screen)->rowCount(), 3);
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(Grid(&screen)->rowCount(), 2);
    EXPECT_EQ(Column(Granty, QStringLiteral("SELECT COUNT(*) FROM documents WHERE id_grant=%1").arg(id)), QStringList{"0"});
}

TEST(frmDocuments, OpensFromTheGrantRegisterForTheSelectedGrant)
{
    FreshDatabases();
    LoginAs(2);
    ScriptedMessages messages;
    frmGrantPlan plan;
    plan.Load();
    plan.show();
    auto *grid = Child<QTableView>(&plan, "MSFlexGrid2");
    int row = 0;
    while (grid->model()->index(row, 0).data().toString() != QLatin1String("1201"))
        ASSERT_LT(++row, grid->model()->rowCount());
    grid->setCurrentIndex(grid->model()->index(row, 0));

    QString title;
    int rows = -1;
    QTimer::singleShot(0, [&] {
        auto *docs = qobject_cast<frmDocuments *>(QApplication::activeModalWidget());
        ASSERT_NE(docs, nullptr);
        title = docs->windowTitle();
        rows = Grid(docs)->rowCount();
        docs->close();
    });
    Click(&plan, "Command2");
    EXPECT_EQ(title, QStringLiteral("Dokumenty GRANTu 1201"));
    EXPECT_EQ(rows, 2);
}

TEST(DocumentVerbs, AddListGetAndTheirRefusals)
{
    FreshDatabases();
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Posudek O'Hara.xlsx"));
    const QByteArray content = RandomBytes(12345);
    WriteAll(path, content);

    const CliRun add = Cli({"document", "add", "1203", path, "--name", "Posudek 'oponenta'"});
    ASSERT_EQ(add.code, 0) << add.err.toStdString();
    const QString id = Column(Granty, QStringLiteral("SELECT MAX(id_grant) FROM documents")).value(0);
    EXPECT_EQ(add.out.trimmed(), QStringLiteral("document add: id %1, GRANT 1203, \"Posudek 'oponenta'\", 12345 bajtů: "
                                                "Soubor byl úspěšně naimportován do MySQL DB.").arg(id));

    const CliRun list = Cli({"document", "list", "1203"});
    EXPECT_EQ(list.code, 0);
    const QStringList fields = list.out.trimmed().split(QLatin1Char('\t'));
    ASSERT_EQ(fields.size(), 6) << list.out.toStdString();
    EXPECT_EQ(fields[0], id);
    EXPECT_EQ(fields.mid(2), (QStringList{"XLSX", "12345", "Posudek 'oponenta'", path}));

    const QString out = dir.filePath(QStringLiteral("ven"));
    const CliRun get = Cli({"document", "get", id, "--out", out});
    EXPECT_EQ(get.code, 0) << get.err.toStdString();
    EXPECT_EQ(get.out.trimmed(), QStringLiteral("document get: %1/Posudek O'Hara.xlsx, 12345 bajtů").arg(out));
    EXPECT_EQ(ReadAll(out + QStringLiteral("/Posudek O'Hara.xlsx")), content);

    const struct {
        QStringList args;
        int code;
        const char *message;
    } refusals[] = {
        {{"document", "add", "9999", path}, 1, "GRANT 9999 v rozpočtu není."},
        {{"document", "add", "1203", dir.filePath("chybi.pdf")}, 1, "nebyl nalezen, nic nebylo uloženo."},
        {{"document", "get", "987654"}, 1, "Dokument 987654 v databázi není."},
        {{"document", "get", "abc"}, 1, "Číslo dokumentu \"abc\" není číslo."},
        {{"document", "add", "1203"}, 2, ""},
        {{"document", "list", "1203", "--bogus"}, 2, ""},
    };
    for (const auto &r : refusals) {
        const CliRun run = Cli(r.args);
        EXPECT_EQ(run.code, r.code) << r.args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(r.message))) << run.err.toStdString();
    }
    // A refused add leaves no row behind.
    EXPECT_EQ(Column(Granty, QStringLiteral("SELECT COUNT(*) FROM documents WHERE _grant='1203'")), QStringList{"1"});
}
