// The order archive as its users meet it: the clerk, the pharmacy and the order manager.

#include "core/msg.h"
#include "core/session.h"
#include "orders/frmArchObj.h"
#include "orders/objrecord.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;
using namespace seed;

namespace {
QTableWidget *Grid(QWidget *s) { return Child<QTableWidget>(s, "MSFlexGrid2"); }
QLineEdit *Box(QWidget *s, const char *name) { return Child<QLineEdit>(s, name); }
void Click(QWidget *s, const char *name) { Child<QPushButton>(s, name)->click(); }
bool Enabled(QWidget *s, const char *name) { return Child<QPushButton>(s, name)->isEnabled(); }

// Chooses an entry of a combo box as the user does.
void Choose(QWidget *s, const char *combo, const QString &text)
{
    auto *c = Child<QComboBox>(s, combo);
    const int index = c->findText(text);
    ASSERT_GE(index, 0) << text.toStdString();
    c->setCurrentIndex(index);
    emit c->activated(index);
}

int RowOfNumber(QWidget *s, const QString &cisObj)
{
    for (int r = 0; r < Grid(s)->rowCount(); ++r)
        if (Grid(s)->item(r, 1)->text() == cisObj)
            return r;
    return -1;
}

void Select(QWidget *s, int row)
{
    ASSERT_GE(row, 0);
    Grid(s)->setCurrentCell(row, 1);
}

// Types into a box and leaves it with Enter.
void TypeEnter(QWidget *s, const char *name, const QString &text)
{
    QLineEdit *e = Box(s, name);
    e->setFocus();
    e->setText(text);
    e->setModified(true);
    QTest::keyClick(e, Qt::Key_Return);
    emit e->editingFinished();
}

QColor Colour(QWidget *s, int row, int column) { return Grid(s)->item(row, column)->background().color(); }

// 28 or 29 rows of one year in processing.
void SeedRows(int count)
{
    EmptyCentre();
    for (int i = 1; i <= count; ++i)
        Insert({{"cis_obj", QStringLiteral("%1/05012025").arg(i, 4, 10, QLatin1Char('0'))}, {"Dat_obj", "2025-01-05 10:00:00"},
                {"objWF", "06.01.2025"}, {"Castka", "0,00##"}, {"Grant", i % 2 ? "1201" : "1201, 1202"}, {"Typ", "1"}});
}
} // namespace

TEST(frmArchObj, PagesOf28And29RowsAndTheSumsWithoutSharedGrants)
{
    for (int count : {28, 29}) {
        SeedRows(count);
        LoginAs(2);
        frmArchObj screen;
        screen.Load();
        EXPECT_EQ(Grid(&screen)->rowCount(), 28) << count;
        EXPECT_EQ(Box(&screen, "txtPages")->text(), count == 28 ? "1" : "2");
        EXPECT_FALSE(Enabled(&screen, "cmdUp"));
        EXPECT_EQ(Enabled(&screen, "cmdDown"), count == 29);
        EXPECT_EQ(Grid(&screen)->item(27, 1)->text(), QStringLiteral("%1/05012025").arg(count, 4, 10, QLatin1Char('0')));
        if (count == 29) {
            Click(&screen, "cmdDown");
            EXPECT_EQ(Box(&screen, "txtPage")->text(), "1");
            EXPECT_EQ(Grid(&screen)->item(0, 1)->text(), "0001/05012025");
            EXPECT_TRUE(Enabled(&screen, "cmdUp"));
            EXPECT_FALSE(Enabled(&screen, "cmdDown"));
        }
        // Prices of rows on one grant only: every other row is on two grants.
        Exec(Centre, "UPDATE archobj SET Castka='100,00#40,00#'");
        Click(&screen, "cmdRefresh");
        EXPECT_EQ(Child<QLabel>(&screen, "Label20")->text(), "1 400,00");
        EXPECT_EQ(Child<QLabel>(&screen, "Label21")->text(), "560,00");
    }
}

TEST(frmArchObj, ClerkFiltersTypesTheLaterFactsCopiesDeletesAndHandsOver)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmArchObj screen;
    screen.Load();
    screen.show();
    EXPECT_EQ(screen.windowTitle(), "Seznam zádanek");
    const int demoRows = Column(Centre, "SELECT COUNT(*) FROM archobj").value(0).toInt();
    EXPECT_EQ(Box(&screen, "txtPages")->text(), QString::number(ObjPageCount(demoRows)));
    EXPECT_EQ(Grid(&screen)->horizontalHeaderItem(4)->text(), "          Název firmy");
    SaveScreen(&screen, "frmArchObj");

    // A status list is one page of rows of that colour only.
    Choose(&screen, "Combo2", "Výřizování");
    ASSERT_GT(Grid(&screen)->rowCount(), 0);
    EXPECT_EQ(Box(&screen, "txtPages")->text(), "1");
    for (int r = 0; r < Grid(&screen)->rowCount(); ++r)
        EXPECT_EQ(Colour(&screen, r, 0), ObjColours::Yellow) << r;
    Choose(&screen, "Combo2", "1203");
    for (int r = 0; r < Grid(&screen)->rowCount(); ++r)
        EXPECT_TRUE(Grid(&screen)->item(r, 3)->text().contains("1203"));

    // The later facts of an order: the official number, delivery, price.
    SeedRows(3);
    Choose(&screen, "Combo2", "- Vše -");
    Select(&screen, RowOfNumber(&screen, "0002/05012025"));
    EXPECT_EQ(Box(&screen, "Text6")->text(), "0002/05012025");
    TypeEnter(&screen, "Text2", "OBJ-'7'");
    // A character outside Windows-1250 is refused and said under the box's label.
    TypeEnter(&screen, "Text2", "OBJ-Ж");
    ASSERT_FALSE(messages.shown.empty());
    EXPECT_EQ(messages.shown.back().text, "Pole „Číslo objednávky“ obsahuje znak, který nelze uložit ve znakové sadě "
                                          "Windows-1250; text nebyl uložen.");
    EXPECT_EQ(Row("Cis_global", "0002/05012025"), "OBJ-7");
    TypeEnter(&screen, "Text2", "OBJ-7");
    TypeEnter(&screen, "Text7", "9.1.2025");
    EXPECT_EQ(Row("Cis_global, Dat_vyriz, Castka", "0002/05012025"), "OBJ-7|09.01.2025|0,00##");
    EXPECT_EQ(Colour(&screen, RowOfNumber(&screen, "0002/05012025"), 3), ObjColours::Green);
    TypeEnter(&screen, "txtCastka", "1250");
    EXPECT_EQ(Box(&screen, "txtCastka")->text(), "1 250,00");
    EXPECT_EQ(Row("Castka", "0002/05012025"), "1 250,00#0,00#");
    EXPECT_EQ(Colour(&screen, RowOfNumber(&screen, "0002/05012025"), 3), ObjColours::Red);
    TypeEnter(&screen, "txtZauct", "1250");
    Box(&screen, "Text9")->setText("31.01.2025");
    TypeEnter(&screen, "Text9", "31.01.2025");
    EXPECT_EQ(Row("Castka, objZauct", "0002/05012025"), "1 250,00#1 250,00#|31.01.2025");
    EXPECT_EQ(Colour(&screen, RowOfNumber(&screen, "0002/05012025"), 3), ObjColours::Grey);

    // Copy under the offered number, then under an existing one.
    messages.answers = {AnswerOk, AnswerOk};
    messages.inputs = {std::nullopt, QString("0002/05012025")};
    Click(&screen, "cmdCopy");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu kopirovat objednávku číslo 0002/05012025 ?");
    EXPECT_EQ(messages.prompts.back(), "Zadejte číslo objednávku");
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj").value(0), "3");   // cancelled input: nothing
    Click(&screen, "cmdCopy");
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj WHERE cis_obj='0002/05012025'").value(0), "2");
    EXPECT_EQ(Column(Centre, "SELECT CONCAT(objWF,'|',objZauct,'|',coml) FROM archobj WHERE cis_obj='0002/05012025' ORDER BY nom DESC").value(0), " | |0");

    // Handover by a click in the "  L" column, asked first.
    const int r1 = RowOfNumber(&screen, "0001/05012025");
    messages.answers = {AnswerOk};
    emit Grid(&screen)->cellClicked(r1, 7);
    EXPECT_EQ(messages.shown.back().text, "Opravdu chcete objednávku číslo: 0001/05012025\r\n předat do Lékárny?");
    EXPECT_EQ(Row("coml", "0001/05012025"), "1");
    EXPECT_FALSE(Grid(&screen)->item(r1, 7)->icon().isNull());

    // Space chooses rows (aqua), F8 deletes the chosen ones after the question.
    Select(&screen, RowOfNumber(&screen, "0001/05012025"));
    QTest::keyClick(Grid(&screen), Qt::Key_Space);
    Select(&screen, RowOfNumber(&screen, "0003/05012025"));
    QTest::keyClick(Grid(&screen), Qt::Key_Space);
    EXPECT_EQ(Colour(&screen, RowOfNumber(&screen, "0003/05012025"), 4), ObjColours::Aqua);
    SaveScreen(&screen, "frmArchObj-chosen");
    messages.answers = {AnswerOk};
    QTest::keyClick(Grid(&screen), Qt::Key_F8);
    EXPECT_TRUE(messages.saw("Chcete opravdu smazat 2 položky  objednavky? \r\n\r\n"));
    EXPECT_TRUE(messages.saw("2 - řádky/ů bylo smazano."));
    EXPECT_EQ(Column(Centre, "SELECT cis_obj FROM archobj"), QStringList({"0002/05012025", "0002/05012025"}));

    // A row deleted by another user meanwhile: saving does nothing and the list drops it.
    Select(&screen, 0);
    Exec(Centre, "DELETE FROM archobj");
    TypeEnter(&screen, "Text2", "X");
    EXPECT_EQ(Grid(&screen)->rowCount(), 0);
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM archobj").value(0), "0");
}

TEST(frmArchObj, PharmacySavesPriceAndDatesOnlyAndCannotHandOver)
{
    SeedRows(2);
    Exec(Centre, "UPDATE archobj SET coml=1 WHERE cis_obj='0001/05012025'");
    LoginAs(3);
    ScriptedMessages messages;
    frmArchObj screen;
    screen.Load();
    EXPECT_FALSE(Enabled(&screen, "cmdCerpani"));
    EXPECT_FALSE(Enabled(&screen, "cmdRozpocet"));
    // With no year chosen the pharmacy sees every row; with a year, its own first alternative.
    EXPECT_EQ(Grid(&screen)->rowCount(), 2);
    Choose(&screen, "Combo5", "2025");
    EXPECT_EQ(Grid(&screen)->rowCount(), 1);
    Select(&screen, 0);
    TypeEnter(&screen, "Text2", "OBJ-1");          // not a pharmacy column
    TypeEnter(&screen, "txtCastka", "99,5");
    TypeEnter(&screen, "Text8", "07.01.2025");
    EXPECT_EQ(Row("IFNULL(Cis_global,'-'), Castka, objWF", "0001/05012025"), "-|99,50#0,00#|07.01.2025");
    emit Grid(&screen)->cellClicked(0, 7);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Row("coml", "0001/05012025"), "1");
    SaveScreen(&screen, "frmArchObj-pharmacy");

    // The order manager (role 5) only reads.
    LoginAs(5);
    frmArchObj manager;
    manager.Load();
    EXPECT_FALSE(Enabled(&manager, "Command3"));
    EXPECT_TRUE(Child<QComboBox>(&manager, "cmbStrediska")->isVisibleTo(&manager));
    Select(&manager, 1);
    TypeEnter(&manager, "Text2", "OBJ-5");
    EXPECT_EQ(Row("IFNULL(Cis_global,'-')", "0002/05012025"), "-");
    emit Grid(&manager)->cellClicked(1, 7);
    EXPECT_TRUE(messages.shown.empty());
}
