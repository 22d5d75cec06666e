// The import of a large period: an account list of 20,000 accounts and an MD/DAL export of
// 1,000,000 bookings over 1,000 grants (generated here, the same every run) go through
// ImportSouboru into a private server. Beside its rate stands the server's own
// LOAD DATA LOCAL INFILE of the same stored rows into the same table, in the same run.
// Then the tree build with summing. Usage: bench_import_import_bench [bookings]

#include "../common/benchenv.h"
#include "core/codepage.h"
#include "core/db.h"
#include "core/msg.h"
#include "import/buildtree.h"
#include "import/importsouboru.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QTextStream>

#include <cstdio>
#include <random>

#include <sys/resource.h>

namespace {
const char *const Head = "Datum\tDoklad\tText\tCastka\tUcet MD\tUcet DAL\tStredisko MD\tStredisko DAL\tNazev MD\tNazev DAL\r\n";
const char *const Accounts[] = {"501100", "501200", "502100", "512100", "518100", "521100", "524100", "551100", "558100", "513100"};

QString Write(const QString &path, const std::function<void(QFile &)> &body)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    body(f);
    return path;
}

// CPU seconds of this process so far: what the client itself spent, beside the wall time.
double CpuSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

long PeakKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    f.open(QIODevice::ReadOnly);
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return 0;
}

void Define()
{
    const QString ini = QStringLiteral("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n"
                                       "[DEFINE POZICE TAB]\r\nDatum=1\r\nDoklad=2\r\nText=3\r\nCastka=4\r\nUcet MD=5\r\n"
                                       "Ucet DAL=6\r\nGrant MD=7\r\nGrant DAL=8\r\nNazev MD=9\r\nNazev DAL=10\r\n")
                            .arg(testenv::ServerPort());
    testenv::WriteIni(ini);
}
} // namespace

int main(int argc, char **argv)
{
    BenchEnvironment env(argc, argv);
    const int bookings = argc > 1 ? std::atoi(argv[1]) : 1000000;
    const int grants = 1000;
    const int accounts = 20000;
    Define();
    MessageSink quiet{[](const QString &t, int, const QString &) {
                          std::fprintf(stderr, "message: %s\n", t.toUtf8().constData());
                          return int(AnswerOk);
                      },
                      [](const QString &, const QString &, const QString &) { return std::optional<QString>(); }};
    SetMessageSink(&quiet);
    const QString dir = Session().TempDir + QStringLiteral("/bench");
    QDir().mkpath(dir);

    std::mt19937 rnd(8);
    const QString ucty = Write(dir + QStringLiteral("/ucty.txt"), [&](QFile &f) {
        f.write("Ucet\tNazev\tStredisko\r\n");
        for (int i = 0; i < accounts; ++i)
            // 20 accounts of each grant: the level accounts of the movements and analytic ones beside them.
            f.write(QStringLiteral("%1%2\tUcet %3\t%4\r\n")
                        .arg(QLatin1String(Accounts[i % 9]).left(3))
                        .arg(i % 20 < 9 ? QLatin1String(Accounts[i % 9]).mid(3) : QString::number(900 + i % 20))
                        .arg(i)
                        .arg(1000 + i / 20)
                        .toLatin1());
    });
    const QString pohyby = Write(dir + QStringLiteral("/pohyby.txt"), [&](QFile &f) {
        f.write(Head);
        QByteArray block;
        for (int i = 0; i < bookings; ++i) {
            const int grant = 1000 + int(rnd() % grants);
            block += QStringLiteral("%1.%2.2025\tFA%3\tNakup materialu %3\t%4,%5\t%6\t321000\t%7\t\tMaterial\tDodavatele\r\n")
                         .arg(1 + rnd() % 28, 2, 10, QLatin1Char('0'))
                         .arg(1 + rnd() % 12, 2, 10, QLatin1Char('0'))
                         .arg(i)
                         .arg(rnd() % 100000)
                         .arg(rnd() % 100, 2, 10, QLatin1Char('0'))
                         .arg(QLatin1String(Accounts[rnd() % 10]))
                         .arg(grant)
                         .toLatin1();
            if (block.size() > (1 << 20)) {
                f.write(block);
                block.clear();
            }
        }
        f.write(block);
    });

    DbConnection conn(ConnStrGranty());
    conn.exec(QStringLiteral("INSERT INTO SkupUctu (Ucet, Nazev) VALUES ('501*,502*,512*,518*', 'Materiál'), ('521*,524*', 'Osobní'), "
                             "('551*,558*', 'Majetek')"));
    QElapsedTimer t;
    t.start();
    ImportRequest rq;
    rq.fileName = ucty;
    rq.mode = ImportUcty;
    const ImportResult a = ImportSouboru(conn, rq);
    std::printf("account list: %d rows stored in %.2f s\n", a.stored, t.nsecsElapsed() / 1e9);

    t.start();
    const double cpu0 = CpuSeconds();
    rq.fileName = pohyby;
    rq.mode = ImportPohyby;
    const ImportResult m = ImportSouboru(conn, rq);
    const double importSec = t.nsecsElapsed() / 1e9;
    const double importCpu = CpuSeconds() - cpu0;
    if (!m.ok) {
        std::printf("import failed: %s\n", m.failure.toUtf8().constData());
        return 1;
    }
    const long peak = PeakKb();

    // The same rows for LOAD DATA: what the import stored, as a tab-separated file.
    const QString rows = dir + QStringLiteral("/rows.tsv");
    {
        QFile f(rows);
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        QSqlQuery q = conn.query();
        q.setForwardOnly(true);
        conn.exec(q, QStringLiteral("SELECT Datum, Doklad, `Text`, Castka, Ucet, `Grant`, NazevUctu, `MD/DAL` FROM ImportUctyCastky ORDER BY id"));
        QByteArray block;
        while (q.next()) {
            QStringList cells;
            for (int i = 0; i < 8; ++i)
                cells << q.value(i).toString();
            block += ToCp1250(cells.join(QLatin1Char('\t'))) + '\n';
            if (block.size() > (1 << 20)) {
                f.write(block);
                block.clear();
            }
        }
        f.write(block);
    }
    const TreeResult tree = [&] {
        QElapsedTimer tt;
        tt.start();
        const double c0 = CpuSeconds();
        const TreeResult r = BuildTree(conn, true);
        std::printf("tree build with sums: %.2f s (goal under 10 s; client CPU %.2f s), %d accounts summed, %d added\n",
                    tt.nsecsElapsed() / 1e9, CpuSeconds() - c0, r.summed, r.added);
        return r;
    }();
    conn.exec(QStringLiteral("TRUNCATE TABLE ImportUctyCastky"));

    std::optional<DbAccount> account = ReadOptionFile(OptionFilePath(), nullptr);
    t.start();
    const int rc = QProcess::execute(
        QStringLiteral("mariadb"),
        {QStringLiteral("--local-infile=1"), QStringLiteral("-h127.0.0.1"), QStringLiteral("-P%1").arg(testenv::ServerPort()),
         QStringLiteral("-u") + account->user, QStringLiteral("-p") + account->password, QStringLiteral("fondarix_granty"),
         QStringLiteral("-e"),
         QStringLiteral("SET NAMES cp1250; LOAD DATA LOCAL INFILE '%1' INTO TABLE ImportUctyCastky CHARACTER SET cp1250 "
                        "(Datum, Doklad, `Text`, Castka, Ucet, `Grant`, NazevUctu, `MD/DAL`)")
             .arg(rows)});
    const double loadSec = t.nsecsElapsed() / 1e9;
    QSqlQuery count = conn.query();
    conn.exec(count, QStringLiteral("SELECT COUNT(*) FROM ImportUctyCastky"));
    count.next();
    const double ours = m.stored / importSec, theirs = count.value(0).toDouble() / loadSec;
    std::printf("bookings %d, rows stored %d (error lines %lld)\n", bookings, m.stored, qint64(m.errors.size()));
    std::printf("ImportSouboru: %.0f rows/s (%.2f s, splitting included; client CPU %.2f s)\n", ours, importSec, importCpu);
    std::printf("LOAD DATA LOCAL INFILE: %.0f rows/s (%.2f s, %d rows, exit %d)\n", theirs, loadSec, count.value(0).toInt(), rc);
    std::printf("ratio %.2f (goal at least 0.67); client peak memory %.1f MB (goal under 200 MB)\n", ours / theirs, peak / 1024.0);
    return tree.ok ? 0 : 1;
}
