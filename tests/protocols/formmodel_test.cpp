#include "core/config.h"
#include "core/db.h"
#include "core/session.h"
#include "protocols/formmodel.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Sys = QString::fromLatin1(SysDbName);

QString WriteFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return path;
}

QString Count(const QString &sql) { return Column(Sys, sql).value(0); }
} // namespace

// Each index read, and written back in the locale's form with Access at index 9.
TEST(ParamField, ReadsEachIndexAccessOnlyFromIndexNineAndWritesBack)
{
    const struct {
        const char *text;
        double height, width, top, left, font;
        bool bold;
        int editList;
        const char *caption;
        bool access;   // Access starts true: a text without index 9 must leave it so
        const char *written;
    } cases[] = {
        {"300~1500,5~200~100~8,25~1~~4~Jméno", 300, 1500.5, 200, 100, 8.25, true, 4, "Jméno", true,
         "300~1500,5~200~100~8,25~1~~4~Jméno~1"},
        {"300~1500~200~100~8.25~0~~3~Jméno~0", 300, 1500, 200, 100, 8.25, false, 3, "Jméno", false,
         "300~1500~200~100~8,25~0~~3~Jméno~0"},
        {"195~3315~0~0~8~0~~0~~1", 195, 3315, 0, 0, 8, false, 0, "", true, "195~3315~0~0~8~0~~0~~1"},
        // A caption with "~" is cut there, and its second piece stands at index 9.
        {"10~20~30~40~9~0~~0~a~b", 10, 20, 30, 40, 9, false, 0, "a", false, "10~20~30~40~9~0~~0~a~0"},
        {"", 0, 0, 0, 0, 0, false, 0, "", true, "0~0~0~0~0~0~~0~~1"},
        {"x~y~z", 0, 0, 0, 0, 0, false, 0, "", true, "0~0~0~0~0~0~~0~~1"},
    };
    for (const auto &c : cases) {
        clsField f;
        f.Access = true;
        ApplyParamField(f, QString::fromUtf8(c.text));
        EXPECT_EQ(f.Height, c.height) << c.text;
        EXPECT_EQ(f.Width, c.width) << c.text;
        EXPECT_EQ(f.Top, c.top) << c.text;
        EXPECT_EQ(f.Left, c.left) << c.text;
        EXPECT_EQ(f.Font, c.font) << c.text;
        EXPECT_EQ(f.Bold, c.bold) << c.text;
        EXPECT_EQ(f.EditList, c.editList) << c.text;
        EXPECT_EQ(f.Caption, QString::fromUtf8(c.caption)) << c.text;
        EXPECT_EQ(f.Access, c.access) << c.text;
        EXPECT_EQ(ParamFieldText(f, true), QString::fromUtf8(c.written)) << c.text;
    }
}

TEST(clsDocument, KeysPositionsRemovalAndUnknownLookups)
{
    clsDocument doc;
    for (int k : {5, 2, 9}) {
        auto f = std::make_unique<clsField>();
        f->Key = k;
        ASSERT_NE(doc.Add(std::move(f), QString::number(k)), nullptr);
    }
    EXPECT_EQ(doc.Add(std::make_unique<clsField>(), QStringLiteral("2")), nullptr);   // key taken
    EXPECT_NE(doc.Add(std::make_unique<clsField>(), QString()), nullptr);             // no key at all
    EXPECT_EQ(doc.Count(), 4);
    EXPECT_EQ(doc.Item(1)->Key, 5);
    EXPECT_EQ(doc.Item(QStringLiteral("9"))->Key, 9);
    EXPECT_FALSE(doc.ItemExists(QStringLiteral("77")));
    EXPECT_FALSE(doc.ItemExists(0));
    EXPECT_FALSE(doc.ItemExists(5));
    doc.RemovItem(QStringLiteral("5"));
    EXPECT_EQ(doc.Item(1)->Key, 2);
    doc.RemovItem(1);
    EXPECT_EQ(doc.Item(1)->Key, 9);
    doc.Clear();
    EXPECT_EQ(doc.Count(), 0);

    // A new field: next key, next tab, the default look.
    auto f = std::make_unique<clsField>();
    f->Key = 4;
    f->TabIndex = 6;
    doc.Add(std::move(f), QStringLiteral("4"));
    const clsField *added = AddNewField(doc, TypTextBox);
    EXPECT_EQ(added->Key, 5);
    EXPECT_EQ(added->TabIndex, 7);
    EXPECT_EQ(ParamFieldText(*added, false), "195~3315~0~0~8~0~~0~");
}

TEST(FormDefinition, LoadsFieldsInOrderAndFillsPatientColumns)
{
    FreshDatabases(true);
    LoginAs(1);
    DbConnection sys(ConnStrSys()), centre(ConnStrCentre());
    clsDocument doc;
    QString error;
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 1, QString(), nullptr, &error)) << error.toStdString();
    ASSERT_EQ(doc.Count(), 16);
    EXPECT_EQ(doc.Item(1)->Caption, "BIOPTICKÉ VYŠETŘENÍ");
    EXPECT_EQ(doc.Item(3)->MDB, "CISLOPROT");
    EXPECT_TRUE(doc.Item(3)->Access);
    EXPECT_EQ(doc.Item(14)->Font, 8.25);
    EXPECT_EQ(doc.Item(1)->Parent_Document, &doc);

    // One key only; the fill takes patient 3's columns and protocol 3's number and date.
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 1, QStringLiteral("7"), nullptr, &error));
    EXPECT_EQ(doc.Count(), 1);
    const FillSource fill{&centre, 3, 3, QStringLiteral("unused"), QStringLiteral("unused")};
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 1, QString(), &fill, &error));
    EXPECT_EQ(doc.Item(QStringLiteral("3"))->Caption, "3/2026");
    EXPECT_EQ(doc.Item(QStringLiteral("5"))->Caption, "04.04.2026 11:21");
    EXPECT_EQ(doc.Item(QStringLiteral("7"))->Caption, "Dvořák");
    const FillSource fresh{&centre, 3, 0, QStringLiteral("5/2027"), QStringLiteral("01.02.2027 10:00")};
    const struct {
        const char *column, *value;
    } values[] = {{"registraci", "10.04.2026"}, {" jmeno ", "Petr"}, {"cisloprot", "5/2027"},
                  {"DATUMTVOR", "01.02.2027 10:00"}, {"rc; DROP TABLE x", ""}, {"nosuchcolumn", ""}};
    for (const auto &v : values)
        EXPECT_EQ(FieldInitialValue(centre, QString::fromUtf8(v.column), fresh), QString::fromUtf8(v.value)) << v.column;
}

TEST(FormFile, ExportThenImportGivesANewFormWithoutPatientColumnsAndBadFilesNothingHalfWay)
{
    FreshDatabases(true);
    LoginAs(1);
    DbConnection sys(ConnStrSys());
    clsDocument doc;
    ASSERT_TRUE(LoadFormDefinition(sys, doc, 2, QString(), nullptr, nullptr));
    const auto header = ReadFormHeader(sys, 2);
    ASSERT_TRUE(header);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("cytologie.form"));
    ASSERT_TRUE(ExportForm(doc, header->formParam.split(QLatin1Char('~')), header->name, 2, path));
    EXPECT_EQ(ReadProfileString(QStringLiteral("FORMULAR"), QStringLiteral("DOKUMENT"), QString(), 150, path),
              "Cytologie#2#1~0~10500~7000");
    EXPECT_EQ(ReadProfileString(QStringLiteral("formular"), QStringLiteral("pole_max"), QString(), 10, path), "14");
    EXPECT_EQ(ReadProfileString(QStringLiteral("FORMULAR"), QStringLiteral("POLE_7_PARAM_FIELDS"), QString(), 200, path),
              "285~2800~2100~3300~10~1~~0~");
    EXPECT_EQ(ReadProfileString(QStringLiteral("FORMULAR"), QStringLiteral("POLE_7_PAC_FIELDS"), QStringLiteral("-"), 10, path),
              "-");

    QString error;
    const int id = ImportForm(sys, path, &error);
    ASSERT_GT(id, 2) << error.toStdString();
    EXPECT_EQ(Count(QStringLiteral("SELECT CONCAT(name,'|',form_param) FROM documents WHERE id=%1").arg(id)),
              "Cytologie|1~0~10500~7000");
    EXPECT_EQ(Count("SELECT COUNT(*) FROM documents"), "3");   // the old form stays
    clsDocument imported;
    ASSERT_TRUE(LoadFormDefinition(sys, imported, id, QString(), nullptr, nullptr));
    ASSERT_EQ(imported.Count(), 14);
    for (int i = 1; i <= 14; ++i) {
        EXPECT_EQ(ParamFieldText(*imported.Item(i), false), ParamFieldText(*doc.Item(i), false)) << i;
        EXPECT_EQ(imported.Item(i)->Typ, doc.Item(i)->Typ);
        EXPECT_EQ(imported.Item(i)->MDB, "") << i;   // the file carries no patient columns
    }
    EXPECT_EQ(doc.Item(7)->MDB, "prijmeni");
    // A hand-made key is read.
    WriteProfileString(QStringLiteral("FORMULAR"), QStringLiteral("POLE_7_PAC_FIELDS"), QStringLiteral("rc"), path);
    const int again = ImportForm(sys, path, &error);
    EXPECT_EQ(Count(QStringLiteral("SELECT pac_field FROM formulars WHERE document=%1 AND `key`=7").arg(again)), "rc");

    // Bad files end silently or with a message, and store nothing half-way.
    QByteArray binary(4096, '\0');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char(i * 37);
    const struct {
        const char *name;
        QByteArray content;
        int result;        // 0 nothing, -1 refused, 1 a new form
        int fields;
    } cases[] = {
        {"empty.form", "", 0, 0},
        {"binary.form", binary, 0, 0},
        {"nodoc.form", "[FORMULAR]\r\nPOLE_MAX=2\r\n", 0, 0},
        {"huge.form", "[FORMULAR]\r\nDOKUMENT=X#1#1~0~9000~6000\r\nPOLE_MAX=1000000\r\n", -1, 0},
        {"negative.form", "[FORMULAR]\r\nDOKUMENT=X#1#1~0~9000~6000\r\nPOLE_MAX=-3\r\n", -1, 0},
        {"nomax.form", "[FORMULAR]\r\nDOKUMENT=X#1#1~0~9000~6000\r\n", -1, 0},
        {"zero.form", "[FORMULAR]\r\nDOKUMENT=Prázdný#1#1~0~9000~6000\r\nPOLE_MAX=0\r\n", 1, 0},
        {"missing.form", "[FORMULAR]\r\nDOKUMENT=Kusy#4\r\nPOLE_MAX=2\r\nPOLE_2_TYPE=2\r\n", 1, 2},
        {"tilde.form",
         "[FORMULAR]\r\nDOKUMENT=T#1#1~0~9000~6000\r\nPOLE_MAX=1\r\nPOLE_1_TYPE=1\r\n"
         "POLE_1_PARAM_FIELDS=300~1500.5~200~100~8.25~1~~0~a~b\r\n",
         1, 1},
    };
    int forms = Count("SELECT COUNT(*) FROM documents").toInt();
    int last = 0;
    for (const auto &c : cases) {
        const int id = ImportForm(sys, WriteFile(dir, QString::fromLatin1(c.name), c.content), &error);
        if (c.result == 0)
            EXPECT_EQ(id, 0) << c.name;
        if (c.result == -1) {
            EXPECT_EQ(id, -1) << c.name;
            EXPECT_TRUE(error.contains(QStringLiteral("počet polí"))) << c.name << " " << error.toStdString();
        }
        if (c.result == 1) {
            ++forms;
            last = id;
            ASSERT_GT(id, 0) << c.name;
            EXPECT_EQ(Count(QStringLiteral("SELECT COUNT(*) FROM formulars WHERE document=%1").arg(id)),
                      QString::number(c.fields)) << c.name;
        }
        EXPECT_EQ(Count("SELECT COUNT(*) FROM documents"), QString::number(forms)) << c.name;
    }
    // The other decimal form is read all the same; the caption's "~" splits it.
    ASSERT_TRUE(LoadFormDefinition(sys, doc, last, QString(), nullptr, nullptr));
    ASSERT_EQ(doc.Count(), 1);
    EXPECT_EQ(doc.Item(1)->Width, 1500.5);
    EXPECT_EQ(doc.Item(1)->Font, 8.25);
    EXPECT_EQ(doc.Item(1)->Caption, "a");
    EXPECT_EQ(ImportForm(sys, dir.filePath(QStringLiteral("none.form")), nullptr), -1);
}
