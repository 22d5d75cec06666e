#pragma once
// What the import tests share: the column definitions of the demo exports, small exports
// written on the spot, and the rows of a table as one list of texts.

#include "core/codepage.h"
#include "core/db.h"
#include "samplefiles.h"
#include "support/testenv.h"

#include "fondarix_paths.h"

#include <QSqlRecord>
#include <QStringList>

// The definitions run.sh writes for the demo exports.
inline void DefineDemoColumns()
{
    testenv::WriteIni(QStringLiteral("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n").arg(testenv::ServerPort()) + QStringLiteral(
        "[DEFINE POZICE TAB]\r\nDatum=1\r\nDoklad=2\r\nText=3\r\nCastka=4\r\nUcet MD=5\r\nUcet DAL=6\r\nGrant MD=7\r\n"
        "Grant DAL=8\r\nNazev MD=9\r\nNazev DAL=10\r\nN_Datum=Datum\r\nN_Doklad=Doklad\r\nN_Text=Text\r\nN_Castka=Částka\r\n"
        "N_Ucet MD=Účet MD\r\nN_Ucet DAL=Účet DAL\r\nN_Grant MD=Středisko MD\r\nN_Grant DAL=Středisko DAL\r\n"
        "N_Nazev MD=Název MD\r\nN_Nazev DAL=Název DAL\r\n[DEFINE POZICE TAB2]\r\nN_Ucet=1\r\nN_Nazev=2\r\nN_Stredisko=3\r\n"
        "N_Stav=4\r\nN_Mena=5\r\nUcet=Účet\r\nNazev=Název účtu\r\nStredisko=Středisko\r\nStav=Stav\r\nMena=Měna\r\n"));
}

inline const QString MovementHeadLine = QStringLiteral(
    "Datum\tDoklad\tText\tČástka\tÚčet MD\tÚčet DAL\tStředisko MD\tStředisko DAL\tNázev MD\tNázev DAL");
inline const QString AccountHeadLine = QStringLiteral("Účet\tNázev účtu\tStředisko\tStav\tMěna");

// An export of these lines after its head line, in Windows-1250 with CR LF.
inline QString WriteExport(const QString &name, const QString &head, const QStringList &lines)
{
    return WriteSample(name, ToCp1250(head + QStringLiteral("\r\n") + lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")));
}

inline QString DemoExport(const char *name) { return QStringLiteral(FONDARIX_SOURCE_DIR "/db/demo/exports/") + QLatin1String(name); }

// Rows of a query on the centre's grant database, the columns of a row joined by "|".
inline QStringList Rows(const QString &sql)
{
    DbConnection conn(ConnStrGranty());
    QSqlQuery q = conn.query();
    EXPECT_TRUE(conn.exec(q, sql)) << sql.toStdString() << conn.errorText().toStdString();
    QStringList rows;
    while (q.next()) {
        QStringList cells;
        for (int i = 0; i < q.record().count(); ++i)
            cells << q.value(i).toString();
        rows << cells.join(QLatin1Char('|'));
    }
    return rows;
}
