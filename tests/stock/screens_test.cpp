#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "registers/frmFindAll.h"
#include "stock/frmCHEMIK.h"
#include "stock/frmTyp.h"
#include "support/testenv.h"

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <functional>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Centre = QStringLiteral("fondarix_ofk");
const QString Plasty = QStringLiteral("Skl1022026081544");
const QString Office = QStringLiteral("Skl1622026094003");
QString One(const QString &sql) { return Column(Centre, sql).value(0); }
void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }
QLineEdit *Edit(QWidget *screen, const char *name) { return Child<QLineEdit>(screen, name); }

// What the next modal window does once it is open (the screens open pickers with exec()).
void OnNextModal(std::function<void(QWidget *)> act)
{
    QTimer::singleShot(30, [act] {
        if (QWidget *modal = QApplication::activeModalWidget())
            act(modal);
    });
}

QAbstractItemModel *Grid(QWidget *screen) { return Child<QTableView>(screen, "DataGrid1")->model(); }
int Col(QWidget *screen, const char *name)
{
    QAbstractItemModel *m = Grid(screen);
    for (int c = 0; c < m->columnCount(); ++c)
        if (m->headerData(c, Qt::Horizontal).toString().compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return c;
    return -1;
}
int RowOf(QWidget *screen, const QString &name)
{
    QAbstractItemModel *m = Grid(screen);
    for (int r = 0; r < m->rowCount(); ++r)
        if (m->index(r, Col(screen, "Nazev")).data().toString() == name)
            return r;
    return -1;
}
void Select(QWidget *screen, const QStringList &names)
{
    auto *view = Child<QTableView>(screen, "DataGrid1");
    view->clearSelection();
    for (const QString &name : names) {
        const int row = RowOf(screen, name);
        ASSERT_GE(row, 0) << name.toStdString();
        view->selectionModel()->setCurrentIndex(view->model()->index(row, 0),
                                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}
double Balance(const QString &file, const QString &name)
{
    return One(QStringLiteral("SELECT KUS_PR FROM %1 WHERE Nazev='%2'").arg(file, name)).toDouble();
}
} // namespace

TEST(frmTyp, CreateRenamePickOrphanAndDrop)
{
    FreshDatabases(true);
    LoginAs(3);
    ScriptedMessages messages;
    frmTyp screen;
    screen.VyberSklad = -1;
    ASSERT_TRUE(screen.Load());
    EXPECT_EQ(screen.windowTitle(), "Sklady");
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 3);
    EXPECT_EQ(grid->index(0, 0).data().toString(), "Chemikálie");

    // New: asks, takes the name, makes the table and stands on it.
    messages.answers = {AnswerOk};
    messages.inputs = {QString("Reagencie'; DROP TABLE typ; --")};
    Click(&screen, "cmdAdd");
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete přídat nový sklad?");
    EXPECT_EQ(messages.prompts.back(), "Zadejte název skladu");
    ASSERT_EQ(grid->rowCount(), 4);
    const QString file = screen.currentFile();
    EXPECT_TRUE(file.startsWith("Skl"));
    EXPECT_EQ(screen.currentTyp(), "Reagencie'; DROP TABLE typ; --");
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + file), "0");
    messages.answers = {AnswerOk};
    messages.inputs = {std::nullopt};
    Click(&screen, "cmdAdd");   // a cancelled name ends the command
    EXPECT_EQ(grid->rowCount(), 4);

    // Rename keeps the table.
    messages.inputs = {QString("Reagencie")};
    Click(&screen, "cmdEdit");
    EXPECT_EQ(One("SELECT Typ FROM typ WHERE File='" + file + "'"), "Reagencie");
    EXPECT_EQ(screen.currentFile(), file);
    SaveScreen(&screen, "frmTyp");

    // A pending pick hands the choice back.
    screen.VyberPending = true;
    Click(&screen, "cmdOk");
    EXPECT_EQ(screen.mOpenFile, "Reagencie~" + file);
    EXPECT_EQ(screen.result(), QDialog::Accepted);
    screen.VyberPending = false;

    // Otherwise the warehouse opens on the stock screen...
    QString opened;
    OnNextModal([&](QWidget *w) {
        opened = w->windowTitle() + "|" + Child<QLabel>(w, "Label1")->text();
        qobject_cast<QDialog *>(w)->reject();
    });
    Click(&screen, "cmdOk");
    EXPECT_EQ(opened, "Sklad|Reagencie");

    // ...unless its table was dropped by hand: then the row goes at the first choice.
    Exec(Centre, "DROP TABLE " + Plasty);
    auto *view = Child<QTableView>(&screen, "DataGrid1");
    for (int r = 0; r < grid->rowCount(); ++r)
        if (grid->index(r, 0).data().toString() == "Laboratorní plasty")
            view->setCurrentIndex(grid->index(r, 0));
    Click(&screen, "cmdOk");
    EXPECT_EQ(grid->rowCount(), 3);
    EXPECT_EQ(One("SELECT COUNT(*) FROM typ WHERE File='" + Plasty + "'"), "0");

    // Delete asks with the name, drops the table, keeps the journal.
    view->setCurrentIndex(grid->index(0, 0));
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit sklad - Chemikálie ?");
    EXPECT_EQ(messages.shown.back().title, "Zrušit záznam ?");
    EXPECT_TRUE(Column(Centre, "SHOW TABLES LIKE 'skl1022026081512'").isEmpty());
    EXPECT_NE(One("SELECT COUNT(*) FROM CHEM_VYD WHERE sklad='Chemikálie'"), "0");
}

TEST(frmCHEMIK, MovementsEditsSearchesDeletesAndCopies)
{
    FreshDatabases(true);
    LoginAs(3);
    ScriptedMessages messages;
    frmCHEMIK screen;
    screen.OpenFile = "Laboratorní plasty~" + Plasty;
    ASSERT_TRUE(screen.Load());
    EXPECT_EQ(Child<QLabel>(&screen, "Label1")->text(), "Laboratorní plasty");
    EXPECT_EQ(Child<QComboBox>(&screen, "Combo5")->currentText(), QString::number(QDate::currentDate().year()));
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 14);
    EXPECT_EQ(grid->index(0, Col(&screen, "Nazev")).data().toString(), "Centrifugační zkumavky 15 ml");
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdVyber")->isVisibleTo(&screen));
    // Items past their expiry stand out; the others do not.
    EXPECT_TRUE(grid->index(RowOf(&screen, "Nitrilové rukavice vel. M"), 0).data(Qt::BackgroundRole).isValid());
    EXPECT_FALSE(grid->index(RowOf(&screen, "Nitrilové rukavice vel. L"), 0).data(Qt::BackgroundRole).isValid());
    // A header click sorts down, the next up.
    Child<QTableView>(&screen, "DataGrid1")->horizontalHeader()->sectionClicked(Col(&screen, "Nazev"));
    EXPECT_EQ(grid->index(0, Col(&screen, "Nazev")).data().toString(), "Špičky k pipetám 200 µl, žluté");
    Child<QTableView>(&screen, "DataGrid1")->horizontalHeader()->sectionClicked(Col(&screen, "Nazev"));
    EXPECT_EQ(grid->index(0, Col(&screen, "Nazev")).data().toString(), "Centrifugační zkumavky 15 ml");

    // Combo2 widens the year of Combo5 to a span; a year chosen in Combo5 is a single year again.
    const int year = QDate::currentDate().year();
    Exec(Centre, QStringLiteral("INSERT INTO %1 (Nazev, DAT_OBJ) VALUES ('Loňská', '%2-12-31'), ('Předloňská', '%3-01-01')")
                     .arg(Plasty).arg(year - 1).arg(year - 2));
    ASSERT_EQ(Child<QComboBox>(&screen, "Combo2")->count(), Child<QComboBox>(&screen, "Combo5")->count());
    const struct { const char *combo; int year, rows; } years[] = {
        {"Combo2", year - 1, 15}, {"Combo5", year - 2, 1}, {"Combo2", year, 16}, {"Combo5", year, 14}};
    for (const auto &y : years) {
        auto *combo = Child<QComboBox>(&screen, y.combo);
        combo->setCurrentText(QString::number(y.year));
        emit combo->activated(combo->currentIndex());
        EXPECT_EQ(grid->rowCount(), y.rows) << y.combo << " " << y.year;
    }
    Exec(Centre, "DELETE FROM " + Plasty + " WHERE Nazev IN ('Loňská', 'Předloňská')");

    // Receipt: packages, Enter, pieces, Enter.
    const QString tubes = "Mikrozkumavky 2,0 ml";
    const double before = Balance(Plasty, tubes);
    Select(&screen, {tubes});
    Click(&screen, "cmdPrijem");
    EXPECT_TRUE(Child<QFrame>(&screen, "FramePrijem")->isVisibleTo(&screen));
    EXPECT_EQ(Edit(&screen, "TypBal1")->text(), "0,00");
    Edit(&screen, "TypBal1")->setText("2");
    QTest::keyClick(Edit(&screen, "TypBal1"), Qt::Key_Return);
    Edit(&screen, "TypBal2")->setText("500");
    QTest::keyClick(Edit(&screen, "TypBal2"), Qt::Key_Return);
    EXPECT_DOUBLE_EQ(Balance(Plasty, tubes), before + 1000);
    EXPECT_FALSE(Child<QFrame>(&screen, "FramePrijem")->isVisibleTo(&screen));

    // Issue: the panel shows the balance before and after as it is typed, red below zero.
    Click(&screen, "cmdVydej");
    EXPECT_EQ(Edit(&screen, "txtNazevVydej")->text(), tubes);
    EXPECT_EQ(Edit(&screen, "txtMnoz")->text(), "6 x 500");
    EXPECT_EQ(Edit(&screen, "txtDatVyd")->text(), QDate::currentDate().toString("dd.MM.yyyy"));
    auto *stav = Child<QLabel>(&screen, "lblStavVydej");
    Edit(&screen, "Text10")->setText("100");
    EXPECT_TRUE(stav->text().contains(QString::number(before + 1000)));
    EXPECT_TRUE(stav->text().contains(QString::number(before + 1000 - 50000)));
    EXPECT_TRUE(stav->styleSheet().contains("#c00000"));
    Edit(&screen, "Text10")->setText("1");
    Edit(&screen, "Text11")->setText("");
    EXPECT_EQ(Edit(&screen, "txtMnoz")->text(), "1 x ");
    EXPECT_TRUE(stav->styleSheet().isEmpty());
    Edit(&screen, "txtKomuVydej")->setText("Laboratoř PCR");
    Edit(&screen, "txtDatVyd")->setText("20.11.2026");
    SaveScreen(&screen, "frmCHEMIK_vydej");
    Click(&screen, "cmdSaveVydej");
    EXPECT_DOUBLE_EQ(Balance(Plasty, tubes), before + 999);
    EXPECT_EQ(One("SELECT CONCAT_WS('|', NAM_CHIM, KOMU, DAT_VYD, KUS_VY, sklad) FROM CHEM_VYD ORDER BY id DESC LIMIT 1"),
              tubes + "|Laboratoř PCR|2026-11-20|1 x |Laboratorní plasty");

    // Edit and save: the apostrophe of the name comes back as a backtick.
    Click(&screen, "Command2");
    EXPECT_EQ(Edit(&screen, "Text5")->text(), tubes);
    EXPECT_EQ(Edit(&screen, "Text3")->text(), "455,00");
    Edit(&screen, "Text5")->setText("Mikrozkumavky 2,0 ml 'safe-lock'");
    Edit(&screen, "Text3")->setText("470,00");
    Click(&screen, "cmdSave");
    EXPECT_EQ(One("SELECT CONCAT(Nazev, '|', CENA) FROM " + Plasty + " WHERE Katal='MZ-020'"),
              "Mikrozkumavky 2,0 ml `safe-lock`|470,00");

    // The unit picker fills from the units when the unit field is entered.
    Edit(&screen, "Text7")->setFocus();
    QFocusEvent in(QEvent::FocusIn);
    QApplication::sendEvent(Edit(&screen, "Text7"), &in);
    EXPECT_EQ(Child<QComboBox>(&screen, "Combo1")->count(), 12);

    // New item with the name from the field.
    Edit(&screen, "Text5")->setText("Stojánek na zkumavky");
    messages.answers = {AnswerOk};
    Click(&screen, "cmdAdd");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu přídat položku ?");
    EXPECT_EQ(grid->rowCount(), 15);
    EXPECT_EQ(grid->index(Child<QTableView>(&screen, "DataGrid1")->currentIndex().row(), Col(&screen, "Nazev")).data().toString(),
              "Stojánek na zkumavky");

    // Search here: by catalogue number when no name fits; nothing found says so.
    messages.inputs = {QString("PM-"), QString("xyz")};
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.prompts.back(), "Zadejte název zboží");
    EXPECT_EQ(screen.currentNom(), One("SELECT nom FROM " + Plasty + " WHERE Katal='PM-90'").toUInt());
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.shown.back().text, "Položka nenajdena!");

    // Copy two rows to the office, chosen in the list of warehouses.
    Select(&screen, {"Parafilm M", "Kryozkumavky 2 ml"});
    messages.answers = {AnswerOk};
    OnNextModal([](QWidget *w) {
        auto *typ = qobject_cast<frmTyp *>(w);
        ASSERT_NE(typ, nullptr);
        QAbstractItemModel *m = Grid(typ);
        for (int r = 0; r < m->rowCount(); ++r)
            if (m->index(r, 0).data().toString() == "Kancelář")
                Child<QTableView>(typ, "DataGrid1")->setCurrentIndex(m->index(r, 0));
        Click(typ, "cmdOk");
    });
    Click(&screen, "cmdCopy");
    EXPECT_TRUE(messages.shown[messages.shown.size() - 2].text.startsWith("Chcete opravdu zkopirovát 2 položky?"));
    EXPECT_EQ(messages.shown.back().text, "2 řádků bylo zkopírováno do skladu - Kancelář");
    EXPECT_DOUBLE_EQ(Balance(Office, "Parafilm M"), Balance(Plasty, "Parafilm M"));
    Child<QTableView>(&screen, "DataGrid1")->clearSelection();
    const size_t shown = messages.shown.size();
    Click(&screen, "cmdCopy");   // nothing selected: nothing happens
    EXPECT_EQ(messages.shown.size(), shown);

    // Delete several: the numbered names under the question, then every row of each name.
    Select(&screen, {"Parafilm M", "Kryozkumavky 2 ml"});
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "1. Parafilm M\r\n2. Kryozkumavky 2 ml\r\n\r\nOpravdu si přejete smazat 2 položky ?");
    EXPECT_EQ(messages.shown.back().title, "Smazat vybrané položky ?");
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + Plasty + " WHERE Nazev IN ('Parafilm M', 'Kryozkumavky 2 ml')"), "0");
    SaveScreen(&screen, "frmCHEMIK");

    // Delete one: that row only.
    Select(&screen, {"Stojánek na zkumavky"});
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Opravdu si přejete smazat položku: Stojánek na zkumavky ?");
    EXPECT_EQ(grid->rowCount(), 12);
}

TEST(frmCHEMIK, SearchInAllWarehousesAndPickForAnOrder)
{
    FreshDatabases(true);
    LoginAs(4);
    ScriptedMessages messages;
    // Opened, as the order archive does, on a centre other than the user's own (here a database
    // without warehouses): the screens opened from it work on that centre too.
    Session().MysqlDb = QStringLiteral("fondarix_granty");
    frmCHEMIK screen;
    screen.CentreDb = Centre;
    screen.OpenFile = "Kancelář~" + Office;
    screen.VyberObjedn = true;
    ASSERT_TRUE(screen.Load());
    EXPECT_TRUE(Child<QPushButton>(&screen, "cmdVyber")->isVisibleTo(&screen));
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdSklady")->isVisibleTo(&screen));

    // All warehouses, one of them dropped by hand: the hits of the others, by warehouse.
    Exec(Centre, "DROP TABLE Skl1022026081512");
    messages.inputs = {QString("Mikro")};
    QStringList hits;
    OnNextModal([&](QWidget *w) {
        auto *find = qobject_cast<frmFindAll *>(w);
        ASSERT_NE(find, nullptr);
        auto *table = Child<QTableView>(find, "MSFlexGrid1");
        QAbstractItemModel *m = table->model();
        for (int r = 0; r < m->rowCount(); ++r)
            hits << m->index(r, 1).data().toString() + "|" + m->index(r, 3).data().toString();
        EXPECT_EQ(m->headerData(1, Qt::Horizontal).toString(), "            Název zboží");
        SaveScreen(find, "frmFindAll");
        table->setCurrentIndex(m->index(1, 1));
        Click(find, "cmdOk");
    });
    Click(&screen, "cmdFindAll");
    EXPECT_EQ(messages.prompts.back(), "Zadejte název zboží (maximálně 2 znaky)");
    EXPECT_EQ(hits, (QStringList{"Mikrotitrační destičky 96 jamek|Laboratorní plasty",
                                 "Mikrozkumavky 1,5 ml|Laboratorní plasty", "Mikrozkumavky 2,0 ml|Laboratorní plasty"}));
    EXPECT_EQ(screen.OpenFile, "Laboratorní plasty~" + Plasty);
    EXPECT_EQ(Grid(&screen)->rowCount(), 3);   // the warehouse filtered to the names found

    // The issue journal of this warehouse and the warehouses to copy to.
    int journal = -1, warehouses = -1;
    OnNextModal([&](QWidget *w) {
        journal = Grid(w)->rowCount();
        qobject_cast<QDialog *>(w)->reject();
    });
    Click(&screen, "cmdArchVyd");
    EXPECT_EQ(journal, One("SELECT COUNT(*) FROM CHEM_VYD WHERE sklad='Laboratorní plasty'").toInt());
    Select(&screen, {"Mikrozkumavky 1,5 ml"});
    messages.answers = {AnswerOk};
    OnNextModal([&](QWidget *w) {
        warehouses = Grid(w)->rowCount();
        qobject_cast<QDialog *>(w)->reject();
    });
    Click(&screen, "cmdCopy");
    EXPECT_EQ(warehouses, 3);

    Select(&screen, {"Mikrozkumavky 1,5 ml"});
    SaveScreen(&screen, "frmCHEMIK_vyber");
    Click(&screen, "cmdVyber");
    EXPECT_EQ(screen.result(), QDialog::Accepted);
    EXPECT_EQ(screen.mLineInput, "Mikrozkumavky 1,5 ml, (10 x 500)~MZ-015~bal~420,00~Plastika Zlín spol. s r.o.~PL-201~"
                                     + One("SELECT nom FROM " + Plasty + " WHERE Katal='MZ-015'"));
}
