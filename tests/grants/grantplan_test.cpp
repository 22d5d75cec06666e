#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/frmGrantPlan.h"
#include "grants/grantplan.h"
#include "support/testenv.h"

#include <QApplication>
#include <QCheckBox>
#include <QColor>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

QAbstractItemModel *Grid(QWidget *screen) { return Child<QTableView>(screen, "MSFlexGrid2")->model(); }

QStringList GridGrants(QWidget *screen)
{
    QStringList grants;
    QAbstractItemModel *m = Grid(screen);
    for (int r = 0; r < m->rowCount(); ++r)
        grants << m->index(r, 0).data().toString();
    return grants;
}

int RowOf(QWidget *screen, const QString &grant) { return int(GridGrants(screen).indexOf(grant)); }

QString Text(QWidget *screen, const char *name) { return Child<QLineEdit>(screen, name)->text(); }

void Click(QWidget *screen, const char *name) { QTest::mouseClick(Child<QPushButton>(screen, name), Qt::LeftButton); }

// Clicks a command once for each scripted answer of its input box.
void ClickAnswering(QWidget *screen, const char *name, ScriptedMessages &messages, const QList<std::optional<QString>> &inputs)
{
    for (const auto &input : inputs) {
        messages.inputs = {input};
        Click(screen, name);
    }
}

void SelectGrant(QWidget *screen, const QString &grant)
{
    auto *grid = Child<QTableView>(screen, "MSFlexGrid2");
    grid->setCurrentIndex(grid->model()->index(RowOf(screen, grant), 0));
}

QStringList Grants(const QString &where = QString())
{
    return Column(Granty, QStringLiteral("SELECT _grant FROM GrantyPlan ") + where + QStringLiteral(" ORDER BY _grant"));
}

QStringList Read(const GrantPlanView &view, QSet<QString> *all = nullptr)
{
    DbConnection conn(ConnStrGranty());
    GrantPlanList list;
    EXPECT_TRUE(FillGrantPlan(conn, view, &list)) << conn.errorText().toStdString();
    if (all)
        *all = list.grants;
    QStringList grants;
    for (const GrantPlanRow &r : list.rows)
        grants << r.grant;
    return grants;
}
} // namespace

// --- the register's rules ------------------------------------------------------------

TEST(GrantPlan, RowsShownHiddenAndPermitted)
{
    FreshDatabases(true);
    // Hiding tests only whether ukonceni holds a value: a future end hides the grant too.
    Exec(Granty, "UPDATE GrantyPlan SET ukonceni='31.12.2099' WHERE _grant='2303'");
    const QStringList all12 = Grants();
    ASSERT_EQ(all12.size(), 12);
    QStringList notArchived = all12;
    notArchived.removeAll("1204");
    notArchived.removeAll("2305");
    const QStringList running{"1202", "1203", "1205", "1206", "2301", "2304", "2306"};
    const struct { GrantPlanView view; QStringList shown; } cases[] = {
        {{}, all12},
        {{.hideArchived = true}, notArchived},
        {{.hideEnded = true}, running},
        // The one grant asked for is shown, ended or not; nothing else.
        {{.grantActiv = "2303", .hideEnded = true}, {"2303"}},
        {{.grantActiv = "", .hideEnded = true}, running},
        // The user's permitted grants are prefixes; a trailing comma lets every grant through.
        {{.userFilter = "23,1201"}, {"1201", "2301", "2302", "2303", "2304", "2305", "2306"}},
        {{.userFilter = "2301,"}, all12},
        {{.userFilter = "9"}, {}},
        {{.grantActiv = "2303", .userFilter = "12"}, {}}};
    for (const auto &c : cases)
        EXPECT_EQ(Read(c.view), c.shown) << c.view.grantActiv.toStdString() << ' ' << c.view.userFilter.toStdString();
    QSet<QString> taken;
    Read({.hideEnded = true}, &taken);
    EXPECT_EQ(taken.size(), 12);   // hidden numbers still count as taken

    // Opening repairs a null Poskytnute.
    EXPECT_EQ(Column(Granty, "SELECT Poskytnute FROM GrantyPlan WHERE _grant='1206'"), QStringList{"0,00"});
}

TEST(GrantPlan, HeadingSortKeysNumbersAndAmounts)
{
    FreshDatabases(true);
    // The column of Poskytnute sorts by the remainder; a column without a key has "".
    for (const auto &[column, key] : {std::pair{0, "_Grant"}, {2, "castka3"}, {7, "castka2"}, {8, ""}})
        EXPECT_EQ(GrantPlanSortKey(column), key) << column;
    GrantPlanView view;
    view.sortKey = "cislo";
    const QStringList byProject = Read(view);
    EXPECT_EQ(byProject.first(), "2303");   // FW07010045, the first project number
    EXPECT_EQ(byProject.last(), "1204");    // TL05000127
    view.descending = true;
    view.sortKey = "_Grant";
    EXPECT_EQ(Read(view).first(), "2306");
    view.sortKey = "1; DROP TABLE GrantyPlan";   // never reaches the SQL
    EXPECT_EQ(Read(view).size(), 12);

    const QString digitsOnly = "Číslo GRANTu smí obsahovat jen číslice 0 až 9.";
    for (const auto &[number, problem] : {std::pair{QString("1207"), QString()}, {QString("12a"), digitsOnly},
                                          {QString("12'; --"), digitsOnly},
                                          {QString(21, '1'), QString("Číslo GRANTu smí mít nejvýše 20 číslic.")},
                                          {QString("999999"), QString("Číslo 999999 nelze použít jako číslo GRANTu.")}})
        EXPECT_EQ(GrantNumberProblem(number), problem) << number.toStdString();
    for (const auto &[text, shown] : {std::pair{"", "0,00"}, {"1234,5", "1 234,50"}, {"abc", "0,00"}})
        EXPECT_EQ(GrantAmountText(text), shown) << text;
}

// --- the screen ------------------------------------------------------------------------

TEST(frmGrantPlan, GridColoursAndDetails)
{
    FreshDatabases(true);
    LoginAs(2);
    Exec(Granty, "INSERT INTO documents (_grant, `file`) VALUES ('1203', 'smlouva.zip'), ('1203', 'zprava.zip')");
    frmGrantPlan screen;
    screen.Load();
    EXPECT_EQ(screen.windowTitle(), "Rozpočet");
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 12);
    ASSERT_EQ(grid->columnCount(), 11);
    EXPECT_EQ(grid->headerData(1, Qt::Horizontal).toString(), " Rozpočet plán, Kč");
    EXPECT_EQ(grid->headerData(8, Qt::Horizontal).toString(), "          Řešitel GRANTU");
    EXPECT_EQ(grid->headerData(0, Qt::Vertical).toString(), "1.");
    EXPECT_TRUE(Child<QTableView>(&screen, "MSFlexGrid2")->isColumnHidden(10));

    const auto colour = [&](const QString &grant) {
        return grid->index(RowOf(&screen, grant), 3).data(Qt::BackgroundRole).value<QColor>().rgb() & 0xFFFFFF;
    };
    // White, green when ended, grey when archived (and ended).
    for (const auto &[grant, rgb] : {std::pair{"1202", 0xFFFFFFu}, {"1201", 0x00FF00u}, {"1204", 0xC0C0C0u}})
        EXPECT_EQ(colour(grant), rgb) << grant;
    // Blank values show as empty; a null Poskytnute shows "0,00".
    EXPECT_EQ(grid->index(RowOf(&screen, "1202"), 7).data().toString(), "");
    EXPECT_EQ(grid->index(RowOf(&screen, "1206"), 2).data().toString(), "0,00");

    EXPECT_EQ(Text(&screen, "Text4"), "1201");   // first row selected at opening
    SelectGrant(&screen, "1203");
    for (const auto &[name, text] : {std::pair{"Text4", "1203"}, {"Text5", "1 250 000,00"},
                                     {"Text6", "MUDr. Tomáš Bartoš, Ph.D."}, {"Text9", "GAČR"}})
        EXPECT_EQ(Text(&screen, name), QString::fromUtf8(text)) << name;
    EXPECT_EQ(Child<QLabel>(&screen, "PocetDocum")->text(), "2");
    SelectGrant(&screen, "1204");
    EXPECT_TRUE(Child<QCheckBox>(&screen, "Check1")->isChecked());
    EXPECT_EQ(Child<QLabel>(&screen, "PocetDocum")->text(), "0");
    EXPECT_TRUE(Child<QPushButton>(&screen, "cmdEdit")->isEnabled());
    SaveScreen(&screen, "frmGrantPlan");

    // Heading clicks alternate ascending and descending; a column without a key does nothing.
    QHeaderView *header = Child<QTableView>(&screen, "MSFlexGrid2")->horizontalHeader();
    const auto clickHeading = [&](int column) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 5, header->height() / 2));
    };
    clickHeading(0);
    EXPECT_EQ(GridGrants(&screen).first(), "1201");
    clickHeading(0);
    EXPECT_EQ(GridGrants(&screen).first(), "2306");
    EXPECT_EQ(Text(&screen, "Text4"), "1204");   // the selected grant stays selected
    const QStringList before = GridGrants(&screen);
    clickHeading(8);
    EXPECT_EQ(GridGrants(&screen), before);
}

TEST(frmGrantPlan, AddRenameSaveDelete)
{
    FreshDatabases(true);
    LoginAs(2);
    Exec(Granty, "INSERT INTO documents (_grant, `file`) VALUES ('1203', 'smlouva.zip')");
    Exec(Granty, "INSERT INTO RozpocetFakt (`Grant`, Ucet, Castka) VALUES ('1203', '501100', '10,00')");
    frmGrantPlan screen;
    screen.Load();
    ScriptedMessages messages;

    // Add: the defaults of a new row, then the new row selected.
    messages.inputs = {QString(" 3001 ")};
    Click(&screen, "cmdNewRow");
    EXPECT_EQ(messages.prompts.value(0), "Zadejte číslo noveho GRANTu: ");
    EXPECT_EQ(Column(Granty, "SELECT CONCAT_WS('|', Castka1, Poskytnute, Castka2, Castka3, zahajeni, ukonceni, cislo, "
                             "stredisko, agentura, archiv) FROM GrantyPlan WHERE _grant='3001'"),
              QStringList{"0,00|0,00| |0,00| | | | | |0"});
    EXPECT_EQ(Text(&screen, "Text4"), "3001");
    EXPECT_EQ(Grid(&screen)->rowCount(), 13);

    // A number already there, an empty answer, Cancel: nothing, and not a word.
    ClickAnswering(&screen, "cmdNewRow", messages, {QString("1202"), QString(""), std::nullopt});
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Grants().size(), 13);

    // Letters or a quote are no grant number.
    ClickAnswering(&screen, "cmdNewRow", messages, {QString("12a"), QString("12'3")});
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[1].text, "Číslo GRANTu smí obsahovat jen číslice 0 až 9.");
    EXPECT_EQ(Grants().size(), 13);
    messages.shown.clear();

    // Renumber: only GrantyPlan changes; the other tables keep the old number.
    SelectGrant(&screen, "1202");
    messages.inputs = {QString("1299")};
    Click(&screen, "cmdEdit");
    EXPECT_EQ(messages.prompts.last(), "Číslo GRANTu :");
    EXPECT_EQ(Text(&screen, "Text4"), "1299");
    EXPECT_TRUE(Grants("WHERE _grant='1202'").isEmpty());
    EXPECT_EQ(Grants("WHERE _grant='1299'"), QStringList{"1299"});
    EXPECT_FALSE(Column(Granty, "SELECT id FROM SkupUctuGrant WHERE `Grant`='1202'").isEmpty());
    EXPECT_TRUE(Column(Granty, "SELECT id FROM SkupUctuGrant WHERE `Grant`='1299'").isEmpty());
    // Onto a number that exists, or with a quote: nothing changes.
    ClickAnswering(&screen, "cmdEdit", messages, {QString("1201"), QString("1'1")});
    EXPECT_EQ(Grants("WHERE _grant='1299'"), QStringList{"1299"});
    EXPECT_EQ(Grants().size(), 13);

    // Save: empty amounts as "0,00", other empty texts as one blank, quotes as typed.
    SelectGrant(&screen, "3001");
    for (const auto &[name, text] : {std::pair{"Text5", "12345,5"}, {"Text8", ""}, {"Text6", "Dr. O'Brien"}, {"Text3", "01.01.2026"}})
        Child<QLineEdit>(&screen, name)->setText(text);
    Child<QCheckBox>(&screen, "Check1")->setChecked(true);
    Click(&screen, "cmdSave");
    EXPECT_EQ(Column(Granty, "SELECT CONCAT_WS('|', Castka1, Poskytnute, Castka2, zahajeni, ukonceni, agentura, archiv) "
                             "FROM GrantyPlan WHERE _grant='3001'"),
              QStringList{"12 345,50|0,00|Dr. O'Brien|01.01.2026| | |1"});
    EXPECT_EQ(Text(&screen, "Text4"), "3001");
    EXPECT_EQ(Text(&screen, "Text5"), "12 345,50");

    // A text the code page cannot hold, or longer than the column (150), is refused by the
    // server and said under the box's caption; nothing is stored, the box keeps all of it.
    const QString tooLong = QString(151, QChar(u'ř'));
    messages.shown.clear();
    const std::pair<QString, QString> refused[] = {
        {QString::fromUtf8("名前"), "Pole „Řešitel“ obsahuje znak, který nelze uložit ve znakové sadě Windows-1250; "
                                    "text nebyl uložen."},
        {tooLong, "Text v poli „Řešitel“ je příliš dlouhý; nebyl uložen ani zkrácen. Zkraťte jej prosím."}};
    for (const auto &[typed, said] : refused) {
        Child<QLineEdit>(&screen, "Text6")->setText(typed);
        Click(&screen, "cmdSave");
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown.back().style, MsgCritical);
        EXPECT_EQ(messages.shown.back().text, said);
        EXPECT_EQ(Column(Granty, "SELECT Castka2 FROM GrantyPlan WHERE _grant='3001'"), QStringList{"Dr. O'Brien"});
        EXPECT_EQ(Text(&screen, "Text6"), typed);
        messages.shown.clear();
    }
    SaveScreen(&screen, "frmGrantPlan_refused_text");
    // Just the width of the column is stored whole.
    Child<QLineEdit>(&screen, "Text6")->setText(tooLong.left(150));
    Click(&screen, "cmdSave");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Column(Granty, "SELECT Castka2 FROM GrantyPlan WHERE _grant='3001'"), QStringList{tooLong.left(150)});

    // Delete, Cancel first: nothing goes.
    SelectGrant(&screen, "1203");
    messages.answers = {AnswerCancel};
    Click(&screen, "cmdDelete");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Chcete opravdu zrušit GRANT 1203?");
    EXPECT_EQ(messages.shown[0].title, "Delete row");
    EXPECT_EQ(messages.shown[0].style, MsgQuestionOkCancel);
    EXPECT_EQ(Grants("WHERE _grant='1203'").size(), 1);

    // OK: group rows, the grant and its documents go; the budget rows stay.
    Click(&screen, "cmdDelete");
    EXPECT_TRUE(Grants("WHERE _grant='1203'").isEmpty());
    EXPECT_TRUE(Column(Granty, "SELECT id FROM SkupUctuGrant WHERE `Grant`='1203'").isEmpty());
    EXPECT_TRUE(Column(Granty, "SELECT id_grant FROM documents WHERE _grant='1203'").isEmpty());
    EXPECT_EQ(Column(Granty, "SELECT Castka FROM RozpocetFakt WHERE `Grant`='1203'"), QStringList{"10,00"});
    EXPECT_EQ(Text(&screen, "Text4"), "1201");   // the previous row
    // The number is free again.
    ClickAnswering(&screen, "cmdNewRow", messages, {QString("1203")});
    EXPECT_EQ(Grants("WHERE _grant='1203'").size(), 1);
}

TEST(frmGrantPlan, HideBoxesKeptOneGrantReadOnlyAndTheLastRowDeleted)
{
    FreshDatabases(true);
    LoginAs(2);
    {
        frmGrantPlan screen;
        screen.Load();
        Child<QCheckBox>(&screen, "Check2")->click();
        EXPECT_EQ(GetSetting("NASTAVENI", "ARCHIVNI"), "1");
        EXPECT_EQ(Grid(&screen)->rowCount(), 10);
        Child<QCheckBox>(&screen, "Check3")->click();
        EXPECT_EQ(GetSetting("NASTAVENI", "UKONCENE"), "1");
        EXPECT_EQ(GridGrants(&screen), (QStringList{"1202", "1203", "1205", "1206", "2301", "2303", "2304", "2306"}));
        Child<QCheckBox>(&screen, "Check2")->click();
        EXPECT_EQ(GetSetting("NASTAVENI", "ARCHIVNI"), "0");
        EXPECT_EQ(Grid(&screen)->rowCount(), 8);   // the archived grants have ended too
    }
    {
        frmGrantPlan again;
        again.Load();
        EXPECT_FALSE(Child<QCheckBox>(&again, "Check2")->isChecked());
        EXPECT_TRUE(Child<QCheckBox>(&again, "Check3")->isChecked());
        EXPECT_EQ(Grid(&again)->rowCount(), 8);
    }
    {
        // One grant asked for is shown though ended, yellow, and nothing of it can change.
        frmGrantPlan screen;
        screen.GrantActiv = "1204";
        screen.Load();
        ASSERT_EQ(GridGrants(&screen), QStringList{"1204"});
        EXPECT_EQ(Grid(&screen)->index(0, 0).data(Qt::BackgroundRole).value<QColor>().rgb() & 0xFFFFFF, 0xFFFF00u);
        EXPECT_EQ(Text(&screen, "Text4"), "1204");
        for (const char *name : {"Text5", "Text8", "Text6", "Text3", "Text1", "Text2", "Text7", "Text9"})
            EXPECT_FALSE(Child<QLineEdit>(&screen, name)->isEnabled()) << name;
        for (const char *name : {"cmdNewRow", "cmdEdit", "cmdDelete", "cmdSave"})
            EXPECT_FALSE(Child<QPushButton>(&screen, name)->isEnabled()) << name;
        for (const char *name : {"Check1", "Check2", "Check3"})
            EXPECT_FALSE(Child<QCheckBox>(&screen, name)->isEnabled()) << name;
        EXPECT_TRUE(Child<QPushButton>(&screen, "Command1")->isEnabled());
        SaveScreen(&screen, "frmGrantPlan_GrantActiv");
    }
    // The user's only grant deleted: the details are cleared and the commands ask nothing.
    Session().UserFiltrGrant = "2306";
    frmGrantPlan screen;
    screen.Load();
    ASSERT_EQ(GridGrants(&screen), QStringList{"2306"});
    ScriptedMessages messages;
    Click(&screen, "cmdDelete");
    EXPECT_EQ(Grid(&screen)->rowCount(), 0);
    EXPECT_EQ(Text(&screen, "Text4") + Text(&screen, "Text5") + Child<QLabel>(&screen, "PocetDocum")->text(), "");
    messages.shown.clear();
    for (const char *name : {"cmdDelete", "cmdSave", "cmdEdit"})
        Click(&screen, name);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Grants().size(), 11);
}

TEST(frmGrantPlan, CalendarAmountBoxesAndRights)
{
    FreshDatabases(true);
    LoginAs(1);
    {
        frmGrantPlan screen;
        screen.Load();
        EXPECT_FALSE(Child<QPushButton>(&screen, "cmdEdit")->isEnabled());
        EXPECT_FALSE(Child<QPushButton>(&screen, "cmdKalendar")->isEnabled());
        EXPECT_TRUE(Child<QPushButton>(&screen, "cmdNewRow")->isEnabled());
    }
    LoginAs(2);
    frmGrantPlan screen;
    screen.Load();
    QStringList offered;
    std::optional<QString> answer = QString("05.03.2025");
    screen.DatePicker = [&](QWidget *, const QString &initial) {
        offered << initial;
        return answer;
    };
    screen.show();
    QApplication::setActiveWindow(&screen);
    // Without a box entered the start date is picked.
    Click(&screen, "cmdKalendar");
    EXPECT_EQ(Text(&screen, "Text3"), "05.03.2025");
    EXPECT_EQ(offered.value(0), "01.01.2022");
    Child<QLineEdit>(&screen, "Text1")->setFocus();
    answer = QString("30.06.2026");
    Click(&screen, "cmdKalendar");
    EXPECT_EQ(Text(&screen, "Text1"), "30.06.2026");
    EXPECT_EQ(offered.value(1), "31.12.2024");
    answer = std::nullopt;   // cancelled: the box keeps its date
    Click(&screen, "cmdKalendar");
    EXPECT_EQ(Text(&screen, "Text1"), "30.06.2026");

    // Amount boxes are formatted when left; an emptied box gives "0,00".
    for (const auto &[name, typed, shown] : {std::tuple{"Text5", "2500000,5", "2 500 000,50"}, {"Text8", "", "0,00"}}) {
        auto *box = Child<QLineEdit>(&screen, name);
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClicks(box, typed);
        QTest::keyClick(box, Qt::Key_Tab);
        EXPECT_EQ(box->text(), shown) << name;
    }
}
