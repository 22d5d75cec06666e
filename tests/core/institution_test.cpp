#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QDateTime>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
QStringList institutionRow()
{
    return Column("fondarix_sys", "SELECT CONCAT_WS('|', Firma, PSC, Mesto, ICO, CONCAT('[', DIC, ']'), `Cislo uctu`, "
                                  "`Nazev banky`, `Cislo uctu_2`, newdate_ucet) FROM sys_nastaveni");
}
} // namespace

TEST(Institution, NewdateCountsLocalTimeAsUniversal)
{
    EXPECT_EQ(NewdateUcetText(QDateTime(QDate(1970, 1, 1), QTime(0, 0))), "0");
    EXPECT_EQ(NewdateUcetText(QDateTime(QDate(1970, 1, 2), QTime(1, 0, 5))), "90005");
    // The same wall-clock time gives the same text whatever the zone.
    EXPECT_EQ(NewdateUcetText(QDateTime(QDate(2024, 7, 1), QTime(12, 0), Qt::UTC)),
              NewdateUcetText(QDateTime(QDate(2024, 7, 1), QTime(12, 0), Qt::LocalTime)));
}

TEST(Institution, EmptyColumnsAreRepairedOnTheServerAFilledRowIsLeftAlone)
{
    FreshDatabases();
    Exec("fondarix_sys", "UPDATE sys_nastaveni SET PSC='', Mesto=NULL, DIC=NULL, `Nazev banky`='', newdate_ucet=''");
    DbConnection sys(ConnStrSys());
    const qint64 before = NewdateUcetText(QDateTime::currentDateTime()).toLongLong();
    ASSERT_TRUE(ReadInstitution(sys));
    const qint64 after = NewdateUcetText(QDateTime::currentDateTime()).toLongLong();

    const SessionRecord &s = Session();
    EXPECT_EQ(s.InstFirma, "Ústav klinického výzkumu Lhotka");
    EXPECT_EQ(s.InstPSC, "100 00");
    EXPECT_EQ(s.InstMesto, "Lhotka");
    EXPECT_EQ(s.InstDIC, " ");
    EXPECT_EQ(s.InstBanka, "Banka Lhotka-město");
    EXPECT_GE(s.InstNewdateUcet.toLongLong(), before);
    EXPECT_LE(s.InstNewdateUcet.toLongLong(), after);

    const QStringList row = institutionRow();
    ASSERT_EQ(row.size(), 1);
    EXPECT_EQ(row[0], "Ústav klinického výzkumu Lhotka|100 00|Lhotka|123 456|[ ]|11111-222/0100|Banka Lhotka-město|"
                      "99999-999/0100|" + s.InstNewdateUcet);

    // A filled row is left alone; no row leaves the session empty.
    Exec("fondarix_sys", "UPDATE sys_nastaveni SET PSC='120 00', newdate_ucet='1700000000'");
    const QStringList filled = institutionRow();
    ASSERT_TRUE(ReadInstitution(sys));
    EXPECT_EQ(institutionRow(), filled);
    EXPECT_EQ(Session().InstPSC, "120 00");
    EXPECT_EQ(Session().InstNewdateUcet, "1700000000");

    Exec("fondarix_sys", "DELETE FROM sys_nastaveni");
    ASSERT_TRUE(ReadInstitution(sys));
    EXPECT_TRUE(Session().InstFirma.isEmpty());
    EXPECT_TRUE(Session().InstPSC.isEmpty());
    EXPECT_TRUE(institutionRow().isEmpty());
}
