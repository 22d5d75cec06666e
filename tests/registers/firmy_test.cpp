#include "core/db.h"
#include "core/msg.h"
#include "registers/firmy.h"
#include "registers/frmFirmy.h"
#include "support/testenv.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlField>
#include <QSqlRecord>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Centre = QStringLiteral("fondarix_ofk");
QString One(const QString &sql) { return Column(Centre, sql).value(0); }
void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }
QLineEdit *Field(QWidget *screen, int i)
{
    return screen->findChild<QLineEdit *>(QStringLiteral("txtFields%1").arg(i));
}
QString CurrentFirm(QWidget *screen)
{
    auto *grid = Child<QTableView>(screen, "DataGrid1");
    return grid->model()->index(grid->currentIndex().row(), 1).data().toString();
}
} // namespace

TEST(Firmy, PostcodeMaskAndTheOrderRecord)
{
    const struct { const char *in, *out; } psc[] = {
        {"14000", "140 00"}, {"140 00", "140 00"}, {" 1 4 0 0 0", "140 00"}, {"1400", "1400"}, {"14O00", "14O00"}, {"", ""},
    };
    for (const auto &c : psc)
        EXPECT_EQ(FormatPsc(c.in), c.out) << c.in;
    QSqlRecord r;
    for (const QString &column : FirmaColumns())
        r.append(QSqlField(column, QMetaType(QMetaType::QString)));
    for (const auto &[column, value] : {std::pair{"Firma", "Labora # Praha"}, {"Pobocka", "Katalog"}, {"Adres_1", "Na Pankráci 1"},
                                        {"Adres_2", "budova B"}, {"PSC", "140 00"}, {"Mesto", "Praha 4"},
                                        {"Tel", "241 440 100"}, {"Fax", "241 440 101"}})
        r.setValue(column, QString::fromUtf8(value));
    EXPECT_EQ(ObjednFirmaRecord(r), "Labora  Praha#Katalog#Na Pankráci 1, budova B#140 00#Praha 4#241 440 100#241 440 101");
    r.setValue("Adres_2", QVariant());
    r.setValue("Fax", QVariant());
    EXPECT_EQ(ObjednFirmaRecord(r), "Labora  Praha#Katalog#Na Pankráci 1#140 00#Praha 4#241 440 100#");
}

TEST(frmFirmy, RegisterSortsAddsFindsEditsAndDeletes)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmFirmy screen;
    ASSERT_TRUE(screen.Load());
    EXPECT_EQ(screen.windowTitle(), "Seznam firem");
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdVyber")->isVisibleTo(&screen));
    auto *grid = Child<QTableView>(&screen, "DataGrid1");
    ASSERT_EQ(grid->model()->rowCount(), 20);
    EXPECT_EQ(CurrentFirm(&screen), "BioChem Brno a.s.");   // sorted by name
    EXPECT_EQ(Field(&screen, 8)->text(), "WWW.biochem-brno.cz");
    EXPECT_EQ(Child<QLabel>(&screen, "lblZaznam")->text(), "Záznam číslo : 1");
    EXPECT_EQ(Child<QComboBox>(&screen, "Combo1")->count(), 3);

    // The header of the name sorts down, a second click up again.
    grid->horizontalHeader()->sectionClicked(1);
    EXPECT_EQ(grid->model()->index(0, 1).data().toString(), "Verkon s.r.o.");
    grid->horizontalHeader()->sectionClicked(1);
    EXPECT_EQ(grid->model()->index(0, 1).data().toString(), "BioChem Brno a.s.");

    // Find by name, then by branch; nothing found says so.
    messages.inputs = {QString("chemos"), QString("Obvazov"), QString("O'Hara")};
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.prompts.value(0), "Zadejte název ");
    EXPECT_EQ(CurrentFirm(&screen), "Chemos Liberec a.s.");
    Click(&screen, "cmdFind");
    EXPECT_EQ(CurrentFirm(&screen), "Hartmann-Rico a.s.");
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.shown.back().text, "Položka nenajdena!");
    EXPECT_EQ(messages.shown.back().title, "Find");

    // Add: asks, makes a blank firm and stands on it; the fields are saved as they are left.
    messages.answers = {AnswerCancel, AnswerOk};
    Click(&screen, "cmdAdd");
    EXPECT_EQ(One("SELECT COUNT(*) FROM adrfirm"), "20");
    Click(&screen, "cmdAdd");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu přídat položku ?");
    EXPECT_EQ(messages.shown.back().title, "Chemikále");
    EXPECT_EQ(One("SELECT COUNT(*) FROM adrfirm"), "21");
    EXPECT_EQ(Field(&screen, 0)->text(), " ");
    Field(&screen, 0)->setText("Ábel & syn, s.r.o.");
    emit Field(&screen, 0)->editingFinished();
    Field(&screen, 4)->setText("25401");
    QFocusEvent in(QEvent::FocusIn);
    QApplication::sendEvent(Field(&screen, 4), &in);
    EXPECT_EQ(Field(&screen, 4)->text(), "254 01");
    emit Field(&screen, 4)->editingFinished();
    Field(&screen, 7)->setText("ábel@example.cz");
    emit Field(&screen, 7)->editingFinished();
    EXPECT_EQ(One("SELECT CONCAT_WS('|', Firma, PSC, Email, IFNULL(HTTP,'-')) FROM adrfirm ORDER BY nom DESC LIMIT 1"),
              "Ábel & syn, s.r.o.|254 01|ábel@example.cz|-");
    EXPECT_EQ(CurrentFirm(&screen), "Ábel & syn, s.r.o.");
    SaveScreen(&screen, "frmFirmy");

    // Delete asks with the name and removes that one row.
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete smazat firmu: Ábel & syn, s.r.o. ?");
    EXPECT_EQ(messages.shown.back().title, "Delete row");
    EXPECT_EQ(One("SELECT COUNT(*) FROM adrfirm"), "20");
    EXPECT_EQ(One("SELECT COUNT(*) FROM adrfirm WHERE Firma LIKE 'Ábel%'"), "0");

    // An empty card file: delete and pick do nothing.
    Exec(Centre, "DELETE FROM adrfirm");
    frmFirmy empty;
    empty.VyberSet = true;
    ASSERT_TRUE(empty.Load());
    const size_t shown = messages.shown.size();
    Click(&empty, "cmdDelete");
    Click(&empty, "cmdVyber");
    EXPECT_EQ(messages.shown.size(), shown);
    EXPECT_TRUE(empty.ObjednFirma.isEmpty());
}

TEST(frmFirmy, PickerHandsTheFirmToOrderEntry)
{
    FreshDatabases(true);
    LoginAs(4);
    ScriptedMessages messages;
    frmFirmy picker;
    picker.VyberSet = true;
    ASSERT_TRUE(picker.Load());
    EXPECT_TRUE(Child<QPushButton>(&picker, "cmdVyber")->isVisibleTo(&picker));
    messages.inputs = {QString("Plastika")};
    Click(&picker, "cmdFind");
    SaveScreen(&picker, "frmFirmy_vyber");
    Click(&picker, "cmdVyber");
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_FALSE(picker.CancelForm);
    EXPECT_EQ(picker.ObjednFirma,
              "Plastika Zlín spol. s r.o.#Spotřební plasty#Tř. Tomáše Bati 5335, Budova 62#76001#Zlín#577 433 000#577 433 009");
    EXPECT_EQ(picker.VyberFirmaInsert, "Plastika Zlín spol. s r.o.");
    EXPECT_EQ(picker.VyberPoznamInsert, "");
    EXPECT_EQ(picker.VyberZKataloguInsert, "Spotřební plasty");

    // A double click picks too; Zavřít leaves without a pick.
    frmFirmy second;
    second.VyberSet = true;
    ASSERT_TRUE(second.Load());
    auto *grid = Child<QTableView>(&second, "DataGrid1");
    grid->setCurrentIndex(grid->model()->index(2, 1));
    const QString third = grid->model()->index(2, 1).data().toString();
    emit grid->doubleClicked(grid->currentIndex());
    EXPECT_EQ(second.VyberFirmaInsert, third);
    EXPECT_EQ(second.result(), QDialog::Accepted);
    frmFirmy cancelled;
    cancelled.VyberSet = true;
    ASSERT_TRUE(cancelled.Load());
    Click(&cancelled, "cmdClose");
    EXPECT_TRUE(cancelled.CancelForm);
    EXPECT_TRUE(cancelled.ObjednFirma.isEmpty());
}
