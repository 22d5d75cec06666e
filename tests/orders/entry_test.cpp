// Order entry as the clerk meets it: the goods order, the services and text orders, and the
// letterhead letter, each checked in the database and in the form written.

#include "core/codepage.h"
#include "core/config.h"
#include "core/msg.h"
#include "core/session.h"
#include "orders/frmObjSablona.h"
#include "orders/frmTvorObj.h"
#include "orders/objrecord.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

#include <gtest/gtest.h>

using namespace testenv;
using namespace seed;

namespace {
// Types a text into a box and leaves it.
void Type(QWidget *s, const char *name, const QString &text)
{
    QLineEdit *e = Box(s, name);
    e->setText(text);
    e->setModified(true);
    emit e->editingFinished();
}

// The order folder of the test: ZADANKY_SAVE in the settings store.
QString OrderFolder(const QTemporaryDir &dir)
{
    SaveSetting("NASTAVENI", "ZADANKY_SAVE", dir.path());
    return dir.path();
}

QString FormText(const QString &folder, const QString &number)
{
    return FromCp1250(ReadFile(folder + "/" + QString(number).replace('/', '-') + ".html"));
}
} // namespace

TEST(frmTvorObj, GoodsOrderReservedTypedPricedSavedAndViewed)
{
    EmptyCentre();
    LoginAs(4);
    QTemporaryDir dir;
    const QString folder = OrderFolder(dir);
    qputenv("FONDARIX_NO_BROWSER", "1");
    ScriptedMessages messages;

    // Opening reserves the number; closing without a save leaves the row with it alone.
    {
        frmTvorObj first;
        first.TypObjedn = 1;
        ASSERT_TRUE(first.Open());
        EXPECT_EQ(first.Number(), MakeObjCislo(1));
    }
    EXPECT_EQ(Row("cis_obj, IFNULL(Firma,'null'), IFNULL(Typ,'null')", MakeObjCislo(1)), MakeObjCislo(1) + "|null|null");

    frmTvorObj screen;
    screen.TypObjedn = 1;
    ASSERT_TRUE(screen.Open());
    screen.show();
    const QString number = screen.Number();
    EXPECT_EQ(number, MakeObjCislo(2));
    EXPECT_EQ(Box(&screen, "txtStredisko")->text(), "510");
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdView")->isEnabled());
    EXPECT_FALSE(Child<QWidget>(&screen, "Frame5")->isVisibleTo(&screen));

    // The firm from the card file, the goods from a warehouse: the pickers answer as scripted.
    screen.FirmPicker = [](QWidget *) { return std::optional<QString>("O'Brien & \"syn\" <script>#Katalog 2025#Tovární 1#277 11#Neratovice#315#316"); };
    screen.WarehousePicker = [](QWidget *) { return std::optional<QString>("Chemikálie~sklad_chem"); };
    screen.StockPicker = [](QWidget *, const QString &warehouse) {
        return std::optional<std::pair<QString, QString>>({warehouse, "Ethanol~K-1~l~245,50~Lach-Ner~~7"});
    };
    Click(&screen, "cmdFirmy");
    EXPECT_EQ(Box(&screen, "txtField4")->text(), "Neratovice");
    Click(&screen, "cmdSelect");
    EXPECT_EQ(messages.lastText(), "Není zvolen aktuální sklad!");
    Click(&screen, "cmdSklady");
    EXPECT_EQ(Child<QLabel>(&screen, "Label13")->text(), "Chemikálie");
    Child<QTableWidget>(&screen, "MSHFlexGrid1")->setCurrentCell(0, 0);
    Click(&screen, "cmdSelect");
    Choose(&screen, "Combo1", "1201");
    Choose(&screen, "Combo1", "1202");
    EXPECT_EQ(Box(&screen, "txtGrant")->text(), "1201, 1202");
    Choose(&screen, "Combo4", "GRANTU");
    EXPECT_EQ(Row("Firma, `Grant`, Prikazce", number), "O'Brien & \"syn\" <script>|1201, 1202|#GRANTU#");

    // Goods typed into the grid, quantities through the quantity box; letters count nothing.
    auto *grid = Child<QTableWidget>(&screen, "MSHFlexGrid1");
    const struct {
        int row;
        const char *name, *unit, *price, *qty;
    } goods[] = {{0, "Ethanol", "l", "245,50", "2"}, {1, "Špičky", "bal", "189,00", "abc"}, {2, "Rukavice", "bal", "1x", "3"}};
    EXPECT_EQ(grid->item(0, 0)->text() + "|" + grid->item(0, 2)->text() + "|" + grid->item(0, 3)->text(), "Ethanol|l|245,50");
    for (const auto &g : goods) {
        grid->item(g.row, 0)->setText(g.name);
        grid->item(g.row, 2)->setText(g.unit);
        grid->item(g.row, 3)->setText(g.price);
        grid->setCurrentCell(g.row, 1);
        Box(&screen, "Text1")->setText(g.qty);
        Click(&screen, "cmdAddRow");
    }
    EXPECT_EQ(Box(&screen, "txtCena")->text(), "494,00");   // 2 x 245,50 + 3 x 1
    EXPECT_EQ(Row("LineRec1, Poc1, LineRec2, Poc2, LineRec3, Poc3, poc10", number),
              "Ethanol#245,50#l|2|Špičky#189,00#bal||Rukavice#1x#bal|3|494,00");
    grid->setCurrentCell(2, 0);
    Click(&screen, "cmdDel");
    EXPECT_EQ(Row("LineRec3, Poc3, poc10", number), "##||491,00");

    // A date that is no date is refused and the saved one stays.
    Type(&screen, "datDatum", "31.2.2026");
    EXPECT_TRUE(messages.saw("Špatný formát datumu."));
    Type(&screen, "datDatum", "5.1.2026");
    EXPECT_EQ(Box(&screen, "datDatum")->text(), "05.01.2026");
    EXPECT_TRUE(Row("Dat_obj", number).startsWith("2026-01-05 "));

    messages.answers = {AnswerOk};
    Click(&screen, "cmdSave");
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete uložit objednávku?");
    EXPECT_EQ(Row("Typ, Autor, objWF, objZauct, coml, zkatalog, LineRec9", number), "1|510| | |0| |Tomáš Černý");
    EXPECT_TRUE(Child<QPushButton>(&screen, "cmdView")->isEnabled());
    Click(&screen, "cmdView");
    const QString form = FormText(folder, number);
    EXPECT_TRUE(form.contains("O'Brien &amp; &quot;syn&quot; &lt;script&gt;")) << "typed text printed as text";
    EXPECT_TRUE(form.contains("Hrazeno z GRANTu:&nbsp;<strong>1201, 1202</strong>"));
    EXPECT_TRUE(form.endsWith("</div></body></html>\r\n"));
    SaveScreen(&screen, "frmTvorObj-sklad");

    // Deleted by another user meanwhile: refused with a message, nothing brought back.
    Exec(Centre, "DELETE FROM archobj WHERE cis_obj='" + number + "'");
    Click(&screen, "cmdRecalk");
    EXPECT_TRUE(messages.lastText().startsWith("Objednávka číslo " + number + " už v databázi není"));
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj WHERE cis_obj='" + number + "'").value(0), "0");
}

TEST(frmTvorObj, ServicesAndTextOrders)
{
    EmptyCentre();
    LoginAs(4);
    ScriptedMessages messages;

    frmTvorObj services;
    services.TypObjedn = 5;
    ASSERT_TRUE(services.Open());
    services.show();
    EXPECT_FALSE(Child<QWidget>(&services, "FrameGoods")->isVisibleTo(&services));
    auto *text = Child<QPlainTextEdit>(&services, "Text2");
    text->setPlainText("Servis boxu č. 7\nTermín 'dle dohody'\n" + QString(10000, 'x'));
    messages.answers = {AnswerOk};
    Click(&services, "cmdSave");   // no firm: a services order is still complete
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete uložit objednávku?");
    EXPECT_EQ(Row("Typ, `Text`, LEFT(file_html_text, 45)", services.Number()),
              "5|F" + services.Number() + ".txt|Servis boxu č. 7<br>Termín 'dle dohody'<br>xx");
    SaveScreen(&services, "frmTvorObj-sluzby");

    frmTvorObj order;
    order.TypObjedn = 2;
    ASSERT_TRUE(order.Open());
    order.show();
    auto *edit = Child<QTextEdit>(&order, "DHTMLEdit1");
    edit->setPlainText("Servis přístroje");
    edit->selectAll();
    Child<QAction>(&order, "Bold")->trigger();
    edit->moveCursor(QTextCursor::End);
    edit->insertPlainText(" it's");
    messages.answers = {AnswerCancel, AnswerOk};
    Click(&order, "cmdSave");
    EXPECT_EQ(messages.shown.back().text, "Objednávka není kompletní. Chcete uložit objednávku?");
    EXPECT_EQ(Row("IFNULL(Typ,'null')", order.Number()), "null");   // cancelled: nothing saved
    Click(&order, "cmdSave");
    const QString body = Row("file_html_text", order.Number());
    EXPECT_TRUE(body.contains("font-weight:700") || body.contains("font-weight:600")) << body.toStdString();
    EXPECT_TRUE(body.contains("it\"s")) << "an apostrophe of the body is kept as a quote";
    EXPECT_FALSE(body.contains("<html")) << "the body only";
    SaveScreen(&order, "frmTvorObj-text");
}

TEST(frmObjSablona, EnglishLetterSavedLockedAndViewed)
{
    EmptyCentre();
    LoginAs(4);
    QTemporaryDir dir;
    const QString folder = OrderFolder(dir);
    SaveSetting("FORMULAR", "TELEFON-ENG", "+420 267 161 111");
    SaveSetting("FORMULAR", "EMAIL", "cerny@ukv-lhotka.cz");
    ScriptedMessages messages;
    frmObjSablona screen;
    screen.TypeObjedn = 1;
    ASSERT_TRUE(screen.Open());
    screen.show();
    EXPECT_EQ(Box(&screen, "txtInst0")->text(), "Ústav klinického výzkumu Lhotka");
    const QString lines[] = {"Acme Ltd.", "1 High Street", "Oxford", "United Kingdom", ""};
    for (int i = 0; i < 5; ++i)
        Box(&screen, QStringLiteral("Text1_%1").arg(i).toLatin1().constData())->setText(lines[i]);
    Box(&screen, "txtOsoba")->setText("Offer <request>");
    Child<QTextEdit>(&screen, "DHTMLEdit1")->setPlainText("We kindly ask for an offer, it's urgent.");
    // Its row deleted by another user meanwhile: the save makes it again.
    Exec(Centre, "DELETE FROM archobj");
    messages.answers = {AnswerOk};
    Click(&screen, "cmdSave");
    EXPECT_EQ(messages.shown.front().text, "Opravdu si přejete uložit doklad?");
    EXPECT_EQ(messages.lastText(), "Objednávka byla uložená");
    EXPECT_TRUE(Box(&screen, "Text1_0")->isReadOnly());
    EXPECT_TRUE(Child<QTextEdit>(&screen, "DHTMLEdit1")->isReadOnly());
    Click(&screen, "cmdEdit");
    EXPECT_FALSE(Child<QTextEdit>(&screen, "DHTMLEdit1")->isReadOnly());
    EXPECT_EQ(Row("Typ, Poc9, LineRec1, LineRec4, LineRec5, Firma, coml, `Text`, LOCATE('it\"s urgent', file_html_text) > 0",
                  screen.Number()),
              "4|+420 267 161 111~cerny@ukv-lhotka.cz|Acme Ltd.|United Kingdom||Ústav klinického výzkumu Lhotka|0|F"
                  + screen.Number() + ".txt|1");
    Click(&screen, "cmdView");
    const QString form = FormText(folder, screen.Number());
    EXPECT_TRUE(form.contains("e-mail address: cerny@ukv-lhotka.cz</font></td>"));
    EXPECT_TRUE(form.contains("<p>Offer &lt;request&gt;</p>"));
    SaveScreen(&screen, "frmObjSablona-AN");
}
