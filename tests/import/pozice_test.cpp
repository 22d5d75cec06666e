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

QList<QLineEdit *> boxes(QWidget *screen, const char *name) { return screen->findChildren<QLineEdit *>(QString::fromLatin1(name)); }

QStringList codes(QWidget *screen)
{
    QStringList texts;
    for (QLineEdit *e : boxes(screen, "txtCod"))
        texts << e->text();
    return texts;
}

void click(QWidget *screen, const char *name) { QTest::mouseClick(screen->findChild<QPushButton *>(name), Qt::LeftButton); }
} // namespace

TEST(Pozice, NumbersPositionsInMemoryAndHeadingsByFirstSubstring)
{
    for (const auto &[text, number] : {std::pair{"", true}, {"7", true}, {"12", true}, {"123", false}, {"1a", false},
                                       {" 1", false}, {"-1", false}})
        EXPECT_EQ(IsColumnNumberText(text), number) << text;

    // Counted from 0; an empty key cannot be told from column 1, "0" is refused later.
    for (const auto &[key, position] : {std::pair{"", 0}, {"1", 0}, {"12", 11}, {"0", -1}, {"x", -1}})
        EXPECT_EQ(PoziceVPameti(key), position) << key;

    // "Datum" stands inside the earlier "Datum splatnosti": the earlier column wins.
    const QString head = "Datum splatnosti~Datum~Doklad";
    for (const auto &[heading, column] : {std::pair{"Datum", 1}, {"Doklad", 3}, {"splatnosti", 1}, {"Částka", 0}, {"", 0}})
        EXPECT_EQ(ColumnOfHeading(head, QString::fromUtf8(heading)), column) << heading;
}

TEST(NactiPozice, PositionsOfTheMovementAndAccountHeadings)
{
    defineMovementHeadings();
    ScriptedMessages messages;
    std::array<short, 10> positions{};
    EXPECT_TRUE(NactiPozice(WriteSample("pohyby.txt", MovementHead), PoziceMD_DAL, &positions));
    // "Datum" is found in "Datum splatnosti" first.
    EXPECT_EQ(positions, (std::array<short, 10>{1, 3, 4, 5, 6, 7, 8, 9, 10, 11}));

    // The account list checks four headings, not the currency.
    WriteIni(QStringLiteral("[DEFINE POZICE TAB2]\r\nUcet=Účet\r\nNazev=Název\r\nStredisko=Středisko\r\nStav=Stav\r\n"));
    const QString file = WriteSample("ucty.txt", ToCp1250(QStringLiteral("Účet\tNázev\tStředisko\tStav\r\n")));
    EXPECT_TRUE(NactiPozice(file, PoziceUcty, &positions));
    EXPECT_EQ(positions[0], 1);
    EXPECT_EQ(positions[3], 4);
    EXPECT_TRUE(messages.shown.empty());
}

TEST(NactiPozice, MissingUnknownOrUnseenHeadingRefusesTheImport)
{
    const QString file = WriteSample("pohyby.txt", MovementHead);
    defineMovementHeadings();
    for (const auto &[heading, text] :
         {std::pair{"Popis", "Pole: Popis ve sloupcích importního souboru neexistuje, zkontrolujte prosím správnost názvy pole!"},
          {"", "Není správně nadefinovaná názvy pole v importním soubore ve funkci Definice TAB, "
               "pokračování v importu není možné!"}}) {
        SetPoziceTab("N_Text", heading);
        ScriptedMessages messages;
        EXPECT_FALSE(NactiPozice(file, PoziceMD_DAL));
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].text, QString::fromUtf8(text));
        if (!*heading)
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
    defineMovementHeadings();
    // A head line of 100,000 characters: what lies past the 1000 read is not seen.
    const QString head = QStringLiteral("Datum\tDoklad\tText\tČástka\tÚčet MD\tÚčet DAL\tStř. MD\tStř. DAL\t"
                                        "Název MD\t") + QString(100000, 'y') + QStringLiteral("\tNázev DAL\r\n");
    const QString longFile = WriteSample("long.txt", ToCp1250(head));
    ScriptedMessages messages;
    EXPECT_FALSE(NactiPozice(longFile, PoziceMD_DAL));
    EXPECT_TRUE(messages.saw(TextPoleNeexistuje("Název DAL")));
    EXPECT_EQ(ReadHeadLine(longFile).size(), 1000);
    // Binary data: read, nothing found, said, no crash.
    EXPECT_FALSE(NactiPozice(WriteSample("binary.bin", BinaryBytes(5000)), PoziceMD_DAL));
}

// --- the screens ------------------------------------------------------------------------

TEST(DefinFieldsExport, ColumnsReadFromSampleHeadLineAndBadSamplesChangeNothing)
{
    defineMovementHeadings();
    SetPoziceTab("Doklad", "9");
    SetPoziceTab("N_Nazev DAL", "Protiúčet");   // not in the file: keeps its number
    SetPoziceTab("Nazev DAL", "12");
    DefinFieldsExport screen;
    ASSERT_EQ(boxes(&screen, "txtCod").size(), 10);
    ASSERT_EQ(boxes(&screen, "txtName").size(), 10);
    EXPECT_EQ(codes(&screen).value(1), "9");
    EXPECT_EQ(boxes(&screen, "txtName")[3]->text(), "Částka");

    screen.SampleFile = WriteSample("vzor.txt", MovementHead);
    ScriptedMessages messages;
    click(&screen, "cmdFile");
    EXPECT_EQ(codes(&screen), (QStringList{"1", "3", "4", "5", "6", "7", "8", "9", "10", "12"}));
    // Stored at once, numbers and headings, without pressing Ok.
    for (const auto &[key, value] : {std::pair{"Doklad", "3"}, {"Nazev MD", "10"}, {"Nazev DAL", "12"}, {"N_Castka", "Částka"}})
        EXPECT_EQ(GetPoziceTab(key), QString::fromUtf8(value)) << key;
    SaveScreen(&screen, "DefinFieldsExport");

    SetPoziceTab("Datum", "2");
    DefinFieldsExport again;
    for (const QByteArray &content : {QByteArray(), QByteArray("\r\nDatum\r\n"), BinaryBytes(5000),
                                      QByteArray(100000, 'z') + "\tDatum\r\n"}) {
        again.SampleFile = WriteSample("bad.txt", content);
        click(&again, "cmdFile");
        EXPECT_EQ(codes(&again).value(0), "2");
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
    click(&screen, "cmdClose");
    EXPECT_TRUE(screen.isVisible());
    EXPECT_EQ(GetPoziceTab("Datum"), "");

    cod[1]->setText("11");
    name[1]->setText("Doklad");
    click(&screen, "cmdClose");
    EXPECT_FALSE(screen.isVisible());
    for (const auto &[key, value] : {std::pair{"Datum", "4"}, {"Doklad", "11"}, {"N_Doklad", "Doklad"}})
        EXPECT_EQ(GetPoziceTab(key), value) << key;
}

TEST(frmDefinFieldsExp, AccountListColumnsFromSample)
{
    WriteIni(QStringLiteral("[DEFINE POZICE TAB2]\r\nUcet=Účet\r\nNazev=Název\r\nStredisko=Středisko\r\n"
                            "Stav=Stav\r\nMena=Měna\r\nN_Mena=9\r\n"));
    frmDefinFieldsExp screen;
    ASSERT_EQ(boxes(&screen, "txtCod").size(), 5);
    screen.SampleFile = WriteSample("ucty.txt", ToCp1250(QStringLiteral("Středisko\tÚčet\tNázev\tStav\r\n")));
    click(&screen, "cmdFile");
    for (const auto &[key, value] : {std::pair{"N_Ucet", "2"}, {"N_Nazev", "3"}, {"N_Stredisko", "1"}, {"N_Stav", "4"},
                                     {"N_Mena", "9"}, {"Mena", "Měna"}})
        EXPECT_EQ(GetPoziceTab2(key), QString::fromUtf8(value)) << key;
    SaveScreen(&screen, "frmDefinFieldsExp");
}
