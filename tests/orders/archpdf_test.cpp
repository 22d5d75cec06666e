// The archive's PDF form and its exchange panel, as the clerk meets them.

#include "core/msg.h"
#include "core/session.h"
#include "orders/exchange.h"
#include "orders/frmArchObj.h"
#include "orders/objexchangepanel.h"
#include "orders/objpdfform.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include <gtest/gtest.h>

#include <memory>

using namespace testenv;
using namespace seed;

namespace {
// The first row of the page whose order is of that kind.
int RowOfKind(QWidget *s, const QString &typ)
{
    const QStringList ofKind = Column(Centre, QStringLiteral("SELECT cis_obj FROM archobj WHERE Typ='%1'").arg(typ));
    for (int r = 0; r < GridRows(s); ++r)
        if (ofKind.contains(GridText(s, r, 1)))
            return r;
    return -1;
}

// The archive of the demo centre opened by the order clerk, with no viewer started.
class frmArchObjPdf : public ::testing::Test {
protected:
    void SetUp() override
    {
        FreshDatabases(true);
        LoginAs(4);
        ObjExchangeDesktop::NoView() = true;
        archive = std::make_unique<frmArchObj>();   // after the login: it reads the session
        archive->Load();
        archive->show();
    }
    void TearDown() override
    {
        ObjExchangeDesktop::NoView() = false;
        ObjExchangeDesktop::ChooseFile() = nullptr;
    }
    ScriptedMessages messages;
    std::unique_ptr<frmArchObj> archive;
};
} // namespace

// "Náhled v PDF" on an order of each generator's kind writes its form to the
// scratch folder.
TEST_F(frmArchObjPdf, PreviewWritesTheFormOfTheOrdersKind)
{
    frmArchObj &screen = *archive;
    for (const char *typ : {"1", "3", "4", "5"}) {
        const int row = RowOfKind(&screen, QLatin1String(typ));
        ASSERT_GE(row, 0) << typ;
        SelectRow(&screen, row);
        const QString cisObj = GridText(&screen, row, 1);
        const QString path = ObjPdfPath(cisObj);
        QFile::remove(path);
        Click(&screen, "cmdPDFForm");
        QFile pdf(path);
        ASSERT_TRUE(pdf.open(QIODevice::ReadOnly)) << typ << " " << path.toStdString();
        const QByteArray bytes = pdf.readAll();
        EXPECT_TRUE(bytes.startsWith("%PDF-1.3")) << typ;
        // The kind decides the head: the English letter has "To", the others their Czech title.
        EXPECT_TRUE(bytes.contains(QByteArray(typ) == "4" ? "(To) Tj" : "(\x8e\xc1" "DANKA - \xe8.) Tj")
                    || bytes.contains("(PO\x8e" "ADAVEK na n\xe1kup - \xe8.) Tj"))
            << typ;
        EXPECT_TRUE(bytes.contains("/Name /Img1") || QByteArray(typ) == "4") << typ;   // the demo's logo
    }
    EXPECT_TRUE(messages.shown.empty());
    SaveScreen(&screen, QStringLiteral("frmArchObj-pdf"));
}

// The export panel: the chosen order's firm goes into the list, the list is
// written into SMTP_Email, cleared and closed; a file is imported back.
TEST_F(frmArchObjPdf, ExportPanelAndImport)
{
    frmArchObj &screen = *archive;
    auto *panel = Child<QFrame>(&screen, "Frame6");
    EXPECT_FALSE(panel->isVisible());

    const int row = RowOfKind(&screen, QStringLiteral("1"));
    ASSERT_GE(row, 0);
    SelectRow(&screen, row);
    const QString cisObj = GridText(&screen, row, 1);
    const QString firma = Column(Centre, QStringLiteral("SELECT Firma FROM archobj WHERE cis_obj='%1'").arg(cisObj)).value(0);
    Click(&screen, "cmdEmail");
    EXPECT_TRUE(panel->isVisible());
    auto *list = Child<QTableWidget>(&screen, "MSFlexGrid1");
    EXPECT_EQ(list->item(0, 0)->text(), cisObj);
    EXPECT_EQ(list->item(0, 1)->text(), firma);
    SaveScreen(&screen, QStringLiteral("frmArchObj-Frame6"));

    Click(&screen, "cmdPostServer");   // does nothing, as it always has
    EXPECT_TRUE(messages.shown.empty());
    Click(&screen, "cmdExportObj");
    const QString file = ExchangeFileName(firma);
    EXPECT_EQ(Child<QLineEdit>(&screen, "Text3")->text(), QDir::toNativeSeparators(file));
    ASSERT_TRUE(QFile::exists(file));

    Click(&screen, "cmdClear");
    EXPECT_EQ(list->item(0, 0), nullptr);
    Click(&screen, "cmdExitExp");
    EXPECT_FALSE(panel->isVisible());

    // Import: cancelled, then the file written above.
    const int before = Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt();
    QString offered;
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &folder) {
        offered = folder;
        return QString();
    };
    Click(&screen, "cmdImportObj");
    EXPECT_EQ(offered, Pop3Folder());
    EXPECT_TRUE(messages.shown.empty());
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &) { return file; };
    Click(&screen, "cmdImportObj");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Export file complete"));
    EXPECT_EQ(Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt(), before + 1);

    // A file the server refuses: the Czech message, nothing stored.
    const QString bad = QDir(Session().TempDir).filePath(QStringLiteral("bad.txt"));
    QFile out(bad);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("0700/01012026~1\r\n" + QByteArray(60, '7') + "~2\r\n");
    out.close();
    ObjExchangeDesktop::ChooseFile() = [&](QWidget *, const QString &) { return bad; };
    Click(&screen, "cmdImportObj");
    EXPECT_TRUE(messages.lastText().startsWith(QStringLiteral("Objednávku 2 ze souboru nelze uložit")));
    EXPECT_EQ(messages.shown.back().style, int(MsgCritical));
    EXPECT_EQ(Column(Centre, QStringLiteral("SELECT COUNT(*) FROM archobj")).value(0).toInt(), before + 1);
}
