#include "core/codepage.h"
#include "core/config.h"
#include "core/session.h"
#include "import/DefinFieldsExport.h"
#include "import/pozice.h"
#include "samplefiles.h"
#include "support/testenv.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
// The head line of a movement export, in the code page of the accounting's files.
const QByteArray MovementHead = ToCp1250(QStringLiteral(
    "Datum splatnosti\tDatum\tDoklad\tText\tČástka\tÚčet MD\tÚčet DAL\tStř. MD\tStř. DAL\tNázev MD\tNázev DAL\r\n"
    "01.02.2024\t01.02.2024\tFA1\tReagencie\t100,00\t501100\t321000\t0012\t\tMateriál\tDodavatelé\r\n"));

void defineMovementHeadings()
{
    WriteIni(QStringLiteral("[DEFINE POZICE TAB]\r\nN_Datum=Datum\r\nN_Doklad=Doklad\r\nN_Text=Text\r\n"
                            "N_Castka=Částka\r\nN_Ucet MD=Účet MD\r\nN_Ucet DAL=Účet DAL\r\n"
                            "N_Grant MD=Stř. MD\r\nN_Grant DAL=Stř. DAL\r\nN_Nazev MD=Název MD\r\n"
                            "N_Nazev DAL=Název DAL\r\n"));
}

QList<QLineEdit *> boxes(QWidget *screen, const char *name)
{
    return screen->findChildren<QLineEdit *>(QString::fromLatin1(name));
}
} // namespace

TEST(Pozice, NumbersAndPositionsInMemory)
{
    EXPECT_TRUE(IsColumnNumberText(""));
    EXPECT_TRUE(IsColumnNumberText("7"));
    EXPECT_TRUE(IsColumnNumberText("12"));
    EXPECT_FALSE(IsColumnNumberText("123"));
    EXPECT_FALSE(IsColumnNumberText("1a"));
    EXPECT_FALSE(IsColumnNumberText(" 1"));
    EXPECT_FALSE(IsColumnNumberText("-1"));

    // Counted from 0; an empty key cannot be told from column 1, "0" is refused later.
    EXPECT_EQ(PoziceVPameti(""), 0);
    EXPECT_EQ(PoziceVPameti("1"), 0);
    EXPECT_EQ(PoziceVPameti("12"), 11);
    EXPECT_EQ(PoziceVPameti("0"), -1);
    EXPECT_EQ(PoziceVPameti("x"), -1);
}

TEST(Pozice, HeadingFoundByFirstSubstring)
{
    const QString head = "Datum splatnosti~Datum~Doklad";
    // "Datum" stands inside the earlier "Datum splatnosti": the earlier column wins.
    EXPECT_EQ(ColumnOfHeading(head, "Datum"), 1);
    EXPECT_EQ(ColumnOfHeading(head, "Doklad"), 3);
    EXPECT_EQ(ColumnOfHeading(head, "splatnosti"), 1);
    EXPECT_EQ(ColumnOfHeading(head, "Částka"), 0);
    EXPECT_EQ(ColumnOfHeading(head, ""), 0);
}

TEST(NactiPozice, PositionsOfAllTenHeadings)
{
    defineMovementHeadings();
    ScriptedMessages messages;
    std::array<short, 10> positions{};
    EXPECT_TRUE(NactiPozice(WriteSample("pohyby.txt", MovementHead), PoziceMD_DAL, &positions));
    EXPECT_TRUE(messages.shown.empty());
    // "Datum" is found in "Datum splatnosti" first.
    EXPECT_EQ(positions, (std::array<short, 10>{1, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST(NactiPozice, MissingOrUnknownHeadingRefusesTheImport)
{
    const QString file = WriteSample("pohyby.txt", MovementHead);
    defineMovementHeadings();
    SetPoziceTab("N_Text", "Popis");
    {
        ScriptedMessages messages;
        EXPECT_FALSE(NactiPozice(file, PoziceMD_DAL));
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].text,
                  "Pole: Popis ve sloupcích importního souboru neexistuje, zkontrolujte prosím správnost názvy pole!");
    }
    SetPoziceTab("N_Text", "");
    {
        ScriptedMessages messages;
        EXPECT_FALSE(NactiPozice(file, PoziceMD_DAL));
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].text,
                  "Není správně nadefinovaná názvy pole v importním soubore ve funkci Definice TAB, "
                  "pokračování v importu není možné!");
        EXPECT_EQ(messages.shown[0].style, 48);
    }
    {
        // An empty head line ends the check without a word.
        ScriptedMessages messages;
        EXPECT_FALSE(NactiPozice(WriteSample("empty.txt", ""), PoziceMD_DAL));
        EXPECT_FALSE(NactiPozice(WriteSample("emptyline.txt", "\r\nDatum\tDoklad\r\n"), PoziceMD_DAL));
        EXPECT_FALSE(NactiPozice(Session().TempDir + "/missing.txt", PoziceMD_DAL));
        EXPECT_TRUE(messages.shown.empty());
    }
}

TEST(NactiPozice, AccountListChecksFourHeadingsNotTheCurrency)
{
    WriteIni(QStringLiteral("[DEFINE POZICE TAB2]\r\nUcet=Účet\r\nNazev=Název\r\nStredisko=Středisko\r\nStav=Stav\r\n"));
    const QString file = WriteSample("ucty.txt", ToCp1250(QStringLiteral("Účet\tNázev\tStředisko\tStav\r\n")));
    ScriptedMessages messages;
    std::array<short, 10> positions{};
    EXPECT_TRUE(NactiPozice(file, PoziceUcty, &positions));
    EXPECT_EQ(positions[0], 1);
    EXPECT_EQ(positions[3], 4);
    EXPECT_TRUE(messages.shown.empty());
}

TEST(NactiPozice, HeadLineReadToOneThousandCharacters)
{
    defineMovementHeadings();
    // A head line of 100,000 characters: what lies past the buffer is not seen.
    const QString head = QStringLiteral("Datum\tDoklad\tText\tČástka\tÚčet MD\tÚčet DAL\tStř. MD\tStř. DAL\t"
                                        "Název MD\t") + QString(100000, 'y') + QStringLiteral("\tNázev DAL\r\n");
    const QString file = WriteSample("long.txt", ToCp1250(head));
    ScriptedMessages messages;
    EXPECT_FALSE(NactiPozice(file, PoziceMD_DAL));
    EXPECT_TRUE(messages.saw(TextPoleNeexistuje("Název DAL")));
    EXPECT_EQ(ReadHeadLine(file).size(), 1000);

    // Binary data: read, nothing found, said, no crash.
    EXPECT_FALSE(NactiPozice(WriteSample("binary.bin", BinaryBytes(5000)), PoziceMD_DAL));
}

// --- the screens ------------------------------------------------------------------------

TEST(DefinFieldsExport, ColumnsReadFromSampleHeadLine)
{
    defineMovementHeadings();
    SetPoziceTab("Doklad", "9");
    SetPoziceTab("N_Nazev DAL", "Protiúčet");   // not in the file: keeps its number
    SetPoziceTab("Nazev DAL", "12");
    DefinFieldsExport screen;
    const QList<QLineEdit *> cod = boxes(&screen, "txtCod");
    const QList<QLineEdit *> name = boxes(&screen, "txtName");
    ASSERT_EQ(cod.size(), 10);
    ASSERT_EQ(name.size(), 10);
    EXPECT_EQ(cod[1]->text(), "9");
    EXPECT_EQ(name[3]->text(), "Částka");

    screen.SampleFile = WriteSample("vzor.txt", MovementHead);
    ScriptedMessages messages;
    QTest::mouseClick(screen.findChild<QPushButton *>("cmdFile"), Qt::LeftButton);
    EXPECT_TRUE(messages.shown.empty());
    QStringList shown;
    for (QLineEdit *e : cod)
        shown << e->text();
    EXPECT_EQ(shown, (QStringList{"1", "3", "4", "5", "6", "7", "8", "9", "10", "12"}));
    // Stored at once, numbers and headings, without pressing Ok.
    EXPECT_EQ(GetPoziceTab("Doklad"), "3");
    EXPECT_EQ(GetPoziceTab("Nazev MD"), "10");
    EXPECT_EQ(GetPoziceTab("Nazev DAL"), "12");
    EXPECT_EQ(GetPoziceTab("N_Castka"), "Částka");
    SaveScreen(&screen, "DefinFieldsExport");
}

TEST(DefinFieldsExport, BadSamplesChangeNothing)
{
    defineMovementHeadings();
    SetPoziceTab("Datum", "2");
    DefinFieldsExport screen;
    ScriptedMessages messages;
    for (const QByteArray &content : {QByteArray(), QByteArray("\r\nDatum\r\n"), BinaryBytes(5000),
                                      QByteArray(100000, 'z') + "\tDatum\r\n"}) {
        screen.SampleFile = WriteSample("bad.txt", content);
        QTest::mouseClick(screen.findChild<QPushButton *>("cmdFile"), Qt::LeftButton);
        EXPECT_EQ(boxes(&screen, "txtCod")[0]->text(), "2");
        EXPECT_EQ(GetPoziceTab("Datum"), "2");
    }
    EXPECT_TRUE(messages.shown.empty());
}

TEST(DefinFieldsExport, NumberCheckedAndEnterMovesOn)
{
    WriteIni(QString());
    DefinFieldsExport screen;
    screen.show();
    QApplication::setActiveWindow(&screen);
    const QList<QLineEdit *> cod = boxes(&screen, "txtCod");
    const QList<QLineEdit *> name = boxes(&screen, "txtName");

    cod[0]->setFocus();
    QTest::keyClicks(cod[0], "4");
    QTest::keyClick(cod[0], Qt::Key_Return);
    EXPECT_TRUE(name[0]->hasFocus());
    EXPECT_TRUE(screen.isVisible());   // Enter is not the Ok button

    ScriptedMessages messages;
    cod[1]->setFocus();
    QTest::keyClicks(cod[1], "x1");
    QTest::keyClick(cod[1], Qt::Key_Tab);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Špatný formát datumu.");
    QApplication::processEvents();
    EXPECT_TRUE(cod[1]->hasFocus());

    // Ok refuses the bad number and stores nothing.
    QTest::mouseClick(screen.findChild<QPushButton *>("cmdClose"), Qt::LeftButton);
    EXPECT_TRUE(screen.isVisible());
    EXPECT_EQ(GetPoziceTab("Datum"), "");

    cod[1]->setText("11");
    name[1]->setText("Doklad");
    QTest::mouseClick(screen.findChild<QPushButton *>("cmdClose"), Qt::LeftButton);
    EXPECT_FALSE(screen.isVisible());
    EXPECT_EQ(GetPoziceTab("Datum"), "4");
    EXPECT_EQ(GetPoziceTab("Doklad"), "11");
    EXPECT_EQ(GetPoziceTab("N_Doklad"), "Doklad");
}

TEST(frmDefinFieldsExp, AccountListColumnsFromSample)
{
    WriteIni(QStringLiteral("[DEFINE POZICE TAB2]\r\nUcet=Účet\r\nNazev=Název\r\nStredisko=Středisko\r\n"
                            "Stav=Stav\r\nMena=Měna\r\nN_Mena=9\r\n"));
    frmDefinFieldsExp screen;
    ASSERT_EQ(boxes(&screen, "txtCod").size(), 5);
    screen.SampleFile = WriteSample("ucty.txt", ToCp1250(QStringLiteral("Středisko\tÚčet\tNázev\tStav\r\n")));
    QTest::mouseClick(screen.findChild<QPushButton *>("cmdFile"), Qt::LeftButton);
    EXPECT_EQ(GetPoziceTab2("N_Ucet"), "2");
    EXPECT_EQ(GetPoziceTab2("N_Nazev"), "3");
    EXPECT_EQ(GetPoziceTab2("N_Stredisko"), "1");
    EXPECT_EQ(GetPoziceTab2("N_Stav"), "4");
    EXPECT_EQ(GetPoziceTab2("N_Mena"), "9");
    EXPECT_EQ(GetPoziceTab2("Mena"), "Měna");
    SaveScreen(&screen, "frmDefinFieldsExp");
}
