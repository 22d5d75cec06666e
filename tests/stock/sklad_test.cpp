#include "core/db.h"
#include "core/session.h"
#include "stock/sklad.h"
#include "support/testenv.h"

#include <QSqlQuery>
#include <QSqlRecord>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Centre = QStringLiteral("fondarix_ofk");
const QString Chem = QStringLiteral("Skl1022026081512");   // "Chemikálie" of the demo
const QString Plasty = QStringLiteral("Skl1022026081544");

QString One(const QString &sql) { return Column(Centre, sql).value(0); }

// A fresh demo centre with an open connection to it.
struct Fresh {
    Fresh()
    {
        FreshDatabases(true);
        LoginAs(4);
    }
};
struct Stock : Fresh {
    DbConnection centre{ConnStrCentre()};
};

quint32 NomOf(const QString &file, const QString &name)
{
    return One(QStringLiteral("SELECT nom FROM %1 WHERE Nazev='%2'").arg(file, name)).toUInt();
}
} // namespace

TEST(Sklad, TableNamesAndIdentifiers)
{
    EXPECT_EQ(NewSkladTableName(QDateTime(QDate(2013, 3, 15), QTime(10, 15, 0))), "Skl1532013101500");
    EXPECT_EQ(NewSkladTableName(QDateTime(QDate(2026, 11, 2), QTime(9, 5, 7))), "Skl211202690507");
    const struct { const char *name; bool safe; } cases[] = {
        {"Skl1532013101500", true}, {"PLASTY", true}, {"a_b9", true}, {"", false}, {"a;b", false},
        {"x`y", false}, {"Skl1 DROP", false}, {"t'--", false}, {"Sklád", false},
        {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},   // 65
    };
    for (const auto &c : cases)
        EXPECT_EQ(IsSafeIdentifier(QString::fromUtf8(c.name)), c.safe) << c.name;
    const SkladRef ref = ParseOpenFile(QStringLiteral("Chemikálie~Skl1"));
    EXPECT_EQ(ref.typ, "Chemikálie");
    EXPECT_EQ(ref.file, "Skl1");
    EXPECT_EQ(ref.openFile(), "Chemikálie~Skl1");
    EXPECT_TRUE(ParseOpenFile(QStringLiteral("jen název")).isEmpty());
}

TEST(Sklad, CreationMakesTheTemplatesLayoutWithAKeyFromOne)
{
    Stock s;
    // The template holds a row, so the truncate is seen to work.
    Exec(Centre, "INSERT INTO PLASTY (Nazev) VALUES ('vzor')");
    QString error;
    const QString name = QString(300, QChar(0x10D));   // 300 × "č"
    ASSERT_TRUE(CreateSklad(s.centre, name, "Skl999", &error)) << error.toStdString();
    EXPECT_EQ(Column(Centre, "SHOW COLUMNS FROM Skl999"), Column(Centre, "SHOW COLUMNS FROM PLASTY"));
    EXPECT_EQ(One("SELECT COUNT(*) FROM Skl999"), "0");
    EXPECT_TRUE(SkladTableExists(s.centre, Centre, "SKL999"));   // names without regard to case
    EXPECT_EQ(One("SELECT Typ FROM typ WHERE File='Skl999'"), name);
    EXPECT_EQ(AddItem(s.centre, "Skl999", "první", QDate(2026, 5, 1), &error), 1u);
    EXPECT_EQ(AddItem(s.centre, "Skl999", "druhá", QDate(2026, 5, 1), &error), 2u);
    EXPECT_EQ(One("SELECT COLUMN_KEY FROM information_schema.COLUMNS WHERE TABLE_SCHEMA='fondarix_ofk' "
                  "AND TABLE_NAME='skl999' AND COLUMN_NAME='nom'"), "PRI");
    EXPECT_EQ(Column(Centre, "SELECT DISTINCT COLUMN_NAME FROM information_schema.STATISTICS WHERE TABLE_SCHEMA="
                             "'fondarix_ofk' AND TABLE_NAME='skl999' ORDER BY COLUMN_NAME"),
              (QStringList{"Katal", "Nazev", "nom", "ZKATALOG"}));

    // A second warehouse of the same second: the typ row is written, the table is refused.
    EXPECT_FALSE(CreateSklad(s.centre, "Dvojník", "Skl999", &error));
    EXPECT_TRUE(error.startsWith("Sklad se nepodařilo vytvořit (tabulka Skl999).")) << error.toStdString();
    EXPECT_EQ(One("SELECT COUNT(*) FROM typ WHERE File='Skl999'"), "2");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Skl999"), "2");

    // Names that are no table never reach the server.
    for (const char *bad : {"x; DROP TABLE typ", "Skl`1", ""}) {
        EXPECT_FALSE(CreateSklad(s.centre, "x", QString::fromUtf8(bad), &error)) << bad;
        EXPECT_TRUE(error.startsWith("Neplatný název tabulky skladu")) << bad;
    }
    EXPECT_FALSE(DropSklad(s.centre, "typ; --", &error));

    // Without the template nothing is made.
    Exec(Centre, "DROP TABLE PLASTY");
    EXPECT_FALSE(CreateSklad(s.centre, "Bez vzoru", "Skl998", &error));
    EXPECT_TRUE(Column(Centre, "SHOW TABLES LIKE 'skl998'").isEmpty());
}

TEST(Sklad, QuantitiesAsTyped)
{
    const struct { const char *text; double value; } quantities[] = {
        {"2", 2}, {"1,5", 1.5}, {"1.5", 1.5}, {" 3 ", 3}, {"0,00", 0}, {"", 0}, {"abc", 0}, {"2a", 0},
        {"1,5.2", 0}, {"-3", 0}, {"1 000", 0}, {"1e5", 0}, {"9999999999999", 0},
    };
    for (const auto &q : quantities)
        EXPECT_DOUBLE_EQ(ParseQuantity(QString::fromUtf8(q.text)), q.value) << q.text;
    const struct { const char *packages, *pieces; double moved; } movements[] = {
        {"2", "10", 20}, {"2", "", 2}, {"2", "0,00", 2}, {"3", "x", 3}, {"0,00", "5", 0}, {"1,5", "4", 6},
        {"x", "5", 0},
    };
    for (const auto &m : movements)
        EXPECT_DOUBLE_EQ(MovementPieces(m.packages, m.pieces), m.moved) << m.packages << " x " << m.pieces;
    EXPECT_EQ(IssueText("1", ""), "1 x ");
    const struct { int count; const char *word; } words[] = {
        {1, "položku"}, {2, "položky"}, {4, "položky"}, {5, " položek "}, {12, " položek "}, {0, " položek "},
    };
    for (const auto &w : words)
        EXPECT_EQ(ItemWord(w.count), QString::fromUtf8(w.word)) << w.count;
    EXPECT_EQ(NumberedNames({"a", "b"}), "1. a\r\n2. b");
}

// The receipt is the screen's flow (and the quantities' table above); here the issue's edges.
TEST(Sklad, IssueAndTheJournal)
{
    Stock s;
    QString error;
    const quint32 nom = NomOf(Plasty, "Mikrozkumavky 1,5 ml");
    const auto balance = [&] { return One("SELECT KUS_PR FROM " + Plasty + " WHERE nom=" + QString::number(nom)).toDouble(); };
    const double before = balance();

    const int journal = One("SELECT COUNT(*) FROM CHEM_VYD").toInt();
    IssueInput issue{"Mikrozkumavky 1,5 ml", "MZ-015", "Laboratoř PCR", "bal", "3.7.2026", "1", "", "Laboratorní plasty"};
    ASSERT_TRUE(IssueItem(s.centre, Plasty, nom, issue, &error)) << error.toStdString();
    EXPECT_DOUBLE_EQ(balance(), before - 1);
    EXPECT_EQ(Column(Centre, "SELECT CONCAT_WS('|', NAM_CHIM, KATAL, KOMU, MIRA, DAT_VYD, KUS_VY, sklad) FROM CHEM_VYD "
                             "ORDER BY id DESC LIMIT 1").value(0),
              "Mikrozkumavky 1,5 ml|MZ-015|Laboratoř PCR|bal|2026-07-03|1 x |Laboratorní plasty");

    // A comma and a point in one quantity count as nothing, but the journal keeps what was typed.
    issue.packages = "1,5.2";
    ASSERT_TRUE(IssueItem(s.centre, Plasty, nom, issue, &error));
    EXPECT_DOUBLE_EQ(balance(), before - 1);
    EXPECT_EQ(One("SELECT KUS_VY FROM CHEM_VYD ORDER BY id DESC LIMIT 1"), "1,5.2 x ");
    EXPECT_EQ(One("SELECT COUNT(*) FROM CHEM_VYD").toInt(), journal + 2);

    // An issue without a warehouse name leaves sklad empty; a bad date writes nothing.
    issue = {"Bez stavu", "", "", "", "1.1.2026", "4", "2,5", ""};
    Exec(Centre, "UPDATE " + Plasty + " SET KUS_PR = NULL WHERE nom=" + QString::number(nom));
    ASSERT_TRUE(IssueItem(s.centre, Plasty, nom, issue, &error));
    EXPECT_DOUBLE_EQ(balance(), -10);   // NULL counts as 0 and the balance may go below zero
    EXPECT_EQ(One("SELECT sklad IS NULL FROM CHEM_VYD ORDER BY id DESC LIMIT 1"), "1");
    issue.date = "31.2.2026";
    EXPECT_FALSE(IssueItem(s.centre, Plasty, nom, issue, &error));
    EXPECT_EQ(error, "Chybné datum výdeje: 31.2.2026");
    EXPECT_EQ(One("SELECT COUNT(*) FROM CHEM_VYD").toInt(), journal + 3);
    EXPECT_DOUBLE_EQ(balance(), -10);
}

TEST(Sklad, NewItemEditAndNamesFullOfSql)
{
    Stock s;
    QString error;
    const QString nasty = QStringLiteral("O'Brien \"x\"; `y`; DELETE FROM typ; --");
    const quint32 nom = AddItem(s.centre, Chem, nasty, QDate(2026, 6, 1), &error);
    ASSERT_NE(nom, 0u) << error.toStdString();
    EXPECT_EQ(Column(Centre, "SELECT CONCAT_WS('|', Nazev, Katal, CENA, KUS_PR, VYDEJ, DAT_OBJ, IFNULL(EXPIR,'-'), "
                             "ZKATALOG) FROM " + Chem + " WHERE nom=" + QString::number(nom)).value(0),
              nasty + "| |0,00|0|0|2026-06-01|-| ");
    ItemEdit edit{"Lach-Ner s.r.o.", "2.6.2026", "Kyselina 'octová' 99%", "K-1", "pozn.", "l", "Z-1", "120,00"};
    ASSERT_TRUE(SaveItem(s.centre, Chem, nom, edit, &error)) << error.toStdString();
    EXPECT_EQ(Column(Centre, "SELECT CONCAT_WS('|', Firma, DAT_OBJ, Nazev, Katal, Poznam, Mira, ZKATALOG, CENA) FROM "
                                 + Chem + " WHERE nom=" + QString::number(nom)).value(0),
              "Lach-Ner s.r.o.|2026-06-02|Kyselina `octová` 99%|K-1|pozn.|l|Z-1|120,00");
    edit.datObj = "zítra";
    EXPECT_FALSE(SaveItem(s.centre, Chem, nom, edit, &error));
    EXPECT_EQ(error, "Chybné datum zápisu: zítra");
    EXPECT_EQ(One("SELECT COUNT(*) FROM typ"), "3");

    ASSERT_TRUE(SetExpiry(s.centre, Chem, nom, "5.3.2026", &error));
    EXPECT_EQ(One("SELECT EXPIR FROM " + Chem + " WHERE nom=" + QString::number(nom)), "2026-03-05");
    EXPECT_TRUE(IsExpired(QDate(2026, 3, 5), QDate(2026, 3, 6)));
    EXPECT_FALSE(IsExpired(QDate(2026, 3, 5), QDate(2026, 3, 5)));
    EXPECT_FALSE(IsExpired(QVariant(), QDate(2026, 3, 5)));
}

TEST(Sklad, DeleteByNameTakesEveryRowOfThatName)
{
    Stock s;
    QString error;
    // Two more rows of one name, one of them in another year, and a name that LIKE would widen.
    AddItem(s.centre, Chem, "Ethanol 96% p.a.", QDate(2024, 1, 1), &error);
    AddItem(s.centre, Chem, "Ethanol 96% p.a.", QDate(2026, 1, 1), &error);
    AddItem(s.centre, Chem, "Ethanol 96% p.a. technický", QDate(2026, 1, 1), &error);
    AddItem(s.centre, Chem, "Ethanol 9_% p.a.", QDate(2026, 1, 1), &error);
    const int total = One("SELECT COUNT(*) FROM " + Chem).toInt();
    EXPECT_EQ(DeleteItemsByName(s.centre, Chem, "Ethanol 96% p.a.", &error), 3);
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + Chem).toInt(), total - 3);
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + Chem + " WHERE Nazev LIKE 'Ethanol 9%'"), "2");
    EXPECT_EQ(DeleteItemsByName(s.centre, "x;y", "a", &error), -1);
}

TEST(Sklad, CopyTakesTheBalancesAlongOrNothing)
{
    Stock s;
    QString error;
    const QVector<quint32> noms{NomOf(Chem, "Tris base"), NomOf(Chem, "Agaróza pro elektroforézu")};
    Exec(Centre, "UPDATE " + Chem + " SET Poznam='a~b', EXPIR=NULL WHERE nom=" + QString::number(noms[0]));
    const QStringList buffer = ReadRowsToBuffer(s.centre, Chem, noms);
    ASSERT_EQ(buffer.size(), 2);
    EXPECT_EQ(buffer[0].count('~'), 21);
    EXPECT_TRUE(buffer[0].startsWith("Tris base~T-6066~1~bal~1 240,00~Kč~21 %~BioChem Brno a.s.~ab~"));

    const QString office = "Skl1622026094003";
    const int before = One("SELECT COUNT(*) FROM " + office).toInt();
    ASSERT_TRUE(CopyRows(s.centre, office, buffer, &error)) << error.toStdString();
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + office).toInt(), before + 2);
    const QString columns = "CONCAT_WS('|', Nazev, Katal, CENA, KUS_PR, DAT_OBJ, IFNULL(EXPIR,'-'), TypBal2, ZKATALOG)";
    EXPECT_EQ(One("SELECT " + columns + " FROM " + office + " WHERE Nazev='Agaróza pro elektroforézu'"),
              One("SELECT " + columns + " FROM " + Chem + " WHERE Nazev='Agaróza pro elektroforézu'"));
    EXPECT_EQ(One("SELECT IFNULL(EXPIR,'-') FROM " + office + " WHERE Nazev='Tris base'"), "-");

    // A target whose table was dropped by hand: a message, and nothing half-done.
    Exec(Centre, "DROP TABLE " + Plasty);
    EXPECT_FALSE(CopyRows(s.centre, Plasty, buffer, &error));
    EXPECT_TRUE(error.startsWith("Kopírování do skladu se nezdařilo, nic nebylo zkopírováno.")) << error.toStdString();
    // A row the server refuses half-way leaves the earlier ones out as well.
    QStringList broken = buffer;
    broken << QString(buffer[0]).replace("Tris base", QString(300, 'x'));
    EXPECT_FALSE(CopyRows(s.centre, office, broken, &error));
    EXPECT_EQ(One("SELECT COUNT(*) FROM " + office).toInt(), before + 2);
}

TEST(Sklad, SearchTriesTheFiveColumnsInTurnAndPicksForAnOrder)
{
    Stock s;
    QString error;
    Exec(Centre, "DELETE FROM " + Chem);
    const auto add = [&](const char *nazev, const char *zkatalog, const char *katal, const char *poznam, const char *cena) {
        const quint32 nom = AddItem(s.centre, Chem, nazev, QDate(2026, 2, 1), &error);
        Exec(Centre, QStringLiteral("UPDATE %1 SET ZKATALOG='%2', Katal='%3', Poznam='%4', CENA='%5' WHERE nom=%6")
                         .arg(Chem, zkatalog, katal, poznam, cena).arg(nom));
        return nom;
    };
    const quint32 byPrice = add("A", "z", "k", "p", "77,00");
    const quint32 byNote = add("B", "z", "k", "77 pozn", "1,00");
    const quint32 byKatal = add("C", "z", "77-K", "p", "1,00");
    const quint32 byLabel = add("D", "77Z", "k", "p", "1,00");
    const quint32 byName = add("E 77", "z", "k", "p", "1,00");
    const QString year = YearCondition();
    const QVariantList values = YearValues(2026);
    const auto find = [&](const char *text) { return FindInSklad(s.centre, Chem, text, year, values, "Nazev ASC"); };
    EXPECT_EQ(find("77"), byLabel);   // no name starts with 77: the catalogue label comes next
    EXPECT_EQ(find("E 7"), byName);
    EXPECT_EQ(find("77-"), byKatal);
    EXPECT_EQ(find("77 p"), byNote);
    EXPECT_EQ(find("77,"), byPrice);
    EXPECT_EQ(find("*7 poz"), byNote);   // "*" stands for any text
    EXPECT_EQ(find("nic"), 0u);
    EXPECT_EQ(FindInSklad(s.centre, Chem, "E", year, YearValues(2025), "Nazev ASC"), 0u);   // other year

    Exec(Centre, QStringLiteral("UPDATE %1 SET Mira='bal', TypBal1='2', TypBal2='50', Firma='Lach~Ner' WHERE nom=%2")
                     .arg(Chem).arg(byName));
    QSqlQuery q = s.centre.query();
    ASSERT_TRUE(s.centre.exec(q, "SELECT * FROM " + Chem + " WHERE nom=?", {byName}) && q.next());
    EXPECT_EQ(PickLine(q.record()), QStringLiteral("E 77, (2 x 50)~k~bal~1,00~LachNer~z~%1").arg(byName));
    ASSERT_TRUE(s.centre.exec(q, "SELECT * FROM " + Chem + " WHERE nom=?", {byPrice}) && q.next());
    EXPECT_EQ(PickLine(q.record()), QStringLiteral("A~k~~77,00~~z~%1").arg(byPrice));   // blanks are empty pieces
}
