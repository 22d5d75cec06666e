// The order archive over 100,000 orders: opening frmArchObj, a status and a year filter,
// paging; and 1,000 HTML order forms. Goals: each screen step under 300 ms, the forms
// under 1 s; a step is timed until the shown screen has painted its grid. Reference of the
// same run: one bare COUNT(*) over the table, and the wide rows of the status list read
// whole, as the list did before it kept only keys.

#include "core/db.h"
#include "core/session.h"
#include "orders/frmArchObj.h"
#include "orders/objhtml.h"
#include "orders/objrecord.h"
#include "support/testenv.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPushButton>
#include <QSqlRecord>
#include <QTableView>

#include <cstdio>
#include <functional>

namespace {
double Ms(const std::function<void()> &run)
{
    QElapsedTimer t;
    t.start();
    run();
    QCoreApplication::processEvents();   // the grid's paint, which reads the shown rows
    return t.nsecsElapsed() / 1e6;
}

void Choose(QComboBox *c, const QString &text)
{
    const int i = c->findText(text);
    c->setCurrentIndex(i);
    emit c->activated(i);
}
} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testenv::SetUp();
    testenv::FreshDatabases(true);
    testenv::LoginAs(2);
    const QString db = Session().MysqlDb;
    {
        // 100,000 orders: the demo's rows copied over and over with new numbers.
        DbConnection c(ConnStrFor(db));
        c.exec(QStringLiteral("DELETE FROM archobj WHERE Typ IS NULL"));
        while (true) {
            QSqlQuery q = c.query();
            c.exec(q, QStringLiteral("SELECT COUNT(*) FROM archobj"));
            q.next();
            const int n = q.value(0).toInt();
            if (n >= 100000)
                break;
            c.exec(QStringLiteral("INSERT INTO archobj (cis_obj, Cis_global, Firma, Pobocka, Adres, PSC, Mesto, Tel, Fax, Dat_obj, "
                                  "Dat_vyriz, Autor, Castka, Typ, `Text`, Text1, Prikazce, SpravceRozp, LineRec1, Poc1, LineRec2, Poc2, "
                                  "LineRec9, Poc9, LineRec10, poc10, paticka, file_paticka, file_html_text, objWF, objZauct, coml, "
                                  "zkatalog, `Grant`) SELECT CONCAT(LPAD(nom + ?, 6, '0'), SUBSTRING(cis_obj, 5)), Cis_global, Firma, "
                                  "Pobocka, Adres, PSC, Mesto, Tel, Fax, Dat_obj, Dat_vyriz, Autor, Castka, Typ, `Text`, Text1, Prikazce, "
                                  "SpravceRozp, LineRec1, Poc1, LineRec2, Poc2, LineRec9, Poc9, LineRec10, poc10, paticka, file_paticka, "
                                  "file_html_text, objWF, objZauct, coml, zkatalog, `Grant` FROM archobj LIMIT ?"),
                   {n, std::min(n, 100000 - n)});
        }
    }
    DbConnection c(ConnStrFor(db));
    const double reference = Ms([&] {
        QSqlQuery q = c.query();
        c.exec(q, QStringLiteral("SELECT COUNT(*) FROM archobj"));
    });
    frmArchObj screen;
    const double open = Ms([&] {
        screen.Load();
        screen.show();
    });
    auto *status = screen.findChild<QComboBox *>(QStringLiteral("Combo2"));
    auto *year = screen.findChild<QComboBox *>(QStringLiteral("Combo5"));
    const double byYear = Ms([&] { Choose(year, QStringLiteral("2025")); });
    const double byStatus = Ms([&] { Choose(status, QStringLiteral("Výřizování")); });
    // The status alone: the rows of its colour over every year.
    year->setCurrentIndex(-1);
    const double byStatusAlone = Ms([&] { screen.FilterObj(); });
    const int statusRows = screen.findChild<QTableView *>(QStringLiteral("MSFlexGrid2"))->model()->rowCount();
    Choose(status, QStringLiteral("- Vše -"));
    const double paging = Ms([&] { screen.findChild<QPushButton *>(QStringLiteral("cmdDown"))->click(); });

    const double wideRows = Ms([&] {
        QSqlQuery q = c.query();
        q.setForwardOnly(true);
        c.exec(q, QStringLiteral("SELECT nom, cis_obj, Dat_obj, `Grant`, Firma, Castka, coml, Dat_vyriz, objWF, Cis_global "
                                 "FROM archobj WHERE stav IN (1, 9) ORDER BY cis_obj, nom"));
        while (q.next()) {
        }
    });

    DbConnection sys(ConnStrSys());
    const ObjFormContext ctx = LoadObjFormContext(sys, Session().TempDir);
    QSqlQuery q = c.query();
    c.exec(q, QStringLiteral("SELECT * FROM archobj WHERE Typ IN ('1','2','5') LIMIT 1000"));
    QStringList lines, bodies;
    while (q.next()) {
        lines << ObjRecordLine(q.record());
        bodies << q.value(QStringLiteral("file_html_text")).toString();
    }
    const QString dir = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    BuildObjLJ out;
    const double forms = Ms([&] {
        for (int i = 0; i < lines.size(); ++i)
            WriteObjForm(out, ctx, dir + QStringLiteral("/bench-order.html"), lines[i], bodies[i]);
    });
    std::printf("orders: 100000; reference COUNT(*) %.1f ms\n", reference);
    std::printf("open %.1f ms, year filter %.1f ms, status filter with the year %.1f ms, page %.1f ms (goal < 300 each)\n",
                open, byYear, byStatus, paging);
    std::printf("status filter without a year %.1f ms, %d rows in its one page; reference: its wide rows read whole %.1f ms\n",
                byStatusAlone, statusRows, wideRows);
    std::printf("%lld HTML forms %.1f ms (goal < 1000)\n", static_cast<long long>(lines.size()), forms);
    testenv::TearDown();
    return 0;
}
