// One-page order forms as PDF from the demo institute's orders, each of the three
// generators in turn, again and again into one file. Goal: 2,000 forms a second or
// more on one core for each. Beside them, as the reference of the same run, the
// writer alone: a document with the same two fonts, the logo and an empty page.
// Rates are counted on the process's CPU time, so other work on the machine does
// not change them; the run uses the private server only to read the orders. The file
// is written to /dev/shm where there is one (see below).
//
// Usage: bench_orders_objpdf_bench [seconds per generator]

#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "orders/objpdfform.h"
#include "orders/objrecord.h"
#include "pdf/objpdf.h"
#include "support/testenv.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlRecord>

#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

namespace {

double CpuSeconds() { return double(std::clock()) / CLOCKS_PER_SEC; }

// Forms a second of CPU time over the given time.
double Rate(double seconds, const std::function<void(int)> &one, long *count)
{
    const double start = CpuSeconds();
    long n = 0;
    while (CpuSeconds() - start < seconds)
        one(int(n++));
    *count = n;
    return n / (CpuSeconds() - start);
}

struct Order {
    QString line, body;
};

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 3;
    testenv::SetUp();
    testenv::FreshDatabases(true);
    testenv::LoginAs(4);

    // The demo's orders by generator: 3 Czech letter, 4 English letter, the rest the form.
    std::vector<Order> byGenerator[3];
    {
        DbConnection sys(ConnStrSys());
        DbConnection centre(ConnStrCentre());
        QString error;
        if (!ReadInstitution(sys) || !ObjPdfPicturesToTemp(sys, Session().UserLogin, &error)) {
            std::fprintf(stderr, "cannot read the institution: %s\n", qPrintable(error));
            return 1;
        }
        QSqlQuery q = centre.query();
        if (!centre.exec(q, QStringLiteral("SELECT * FROM archobj WHERE Typ IS NOT NULL ORDER BY nom"))) {
            std::fprintf(stderr, "cannot read the orders\n");
            return 1;
        }
        while (q.next()) {
            const QString typ = q.value(QStringLiteral("Typ")).toString();
            byGenerator[typ == QLatin1String("3") ? 0 : typ == QLatin1String("4") ? 1 : 2].push_back(
                {ObjRecordLine(q.record()), q.value(QStringLiteral("file_html_text")).toString()});
        }
    }
    // The writer deletes and creates its file each time; on a disk file system that costs
    // more than the form itself, so the file goes to memory (/dev/shm) when there is one.
    const QString folder = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : Session().TempDir;
    const QString file = QDir(folder).filePath(QStringLiteral("fondarix-bench-order.pdf"));
    std::printf("forms written to %s\n", qPrintable(file));
    const std::string logo = (Session().TempDir + QStringLiteral("/logo_kvl_tmp.bmp")).toStdString();

    long count = 0;
    const double reference = Rate(seconds, [&](int) {
        clsPDFCreator pdf;
        ObjPdfOpen(pdf, file.toStdString(), "OBJEDNAVKA");
        pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
        pdf.LoadFont("Fnt1b", 12, "Times New Roman", 1);
        pdf.LoadStrem(0);
        pdf.EndStrem();
        int16_t content = 0;
        pdf.TypePage(content);
        bool ok = false;
        pdf.LoadImgFromBMPFile("Img1", logo, false, "", ok);
        pdf.CreatePDFZaver(pdf);
        pdf.ClosePDFFile({});
    }, &count);
    std::printf("reference, the writer alone (fonts, logo, empty page): %.0f documents/s (%ld, %ju bytes)\n",
                reference, count, std::uintmax_t(QFileInfo(file).size()));

    const char *names[3] = {"ObjPdfCZ (kind 3)", "ObjPdfEN (kind 4)", "ObjPdfTyp (kinds 1, 2, 5)"};
    bool met = true;
    for (int g = 0; g < 3; ++g) {
        const std::vector<Order> &orders = byGenerator[g];
        if (orders.empty()) {
            std::printf("%s: no demo order\n", names[g]);
            met = false;
            continue;
        }
        const double rate = Rate(seconds, [&](int i) {
            const Order &o = orders[size_t(i) % orders.size()];
            if (!ObjPdfForm(file, o.line, o.body, true))
                std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
        }, &count);
        std::printf("%s over %zu demo orders: %.0f forms/s (%ld, last %lld bytes), %.0f %% of the reference\n",
                    names[g], orders.size(), rate, count, QFileInfo(file).size(), 100 * rate / reference);
        met = met && rate >= 2000;
    }
    std::printf("%s\n", met ? "goal met: 2000 forms/s or more for each generator" : "goal NOT met");
    testenv::TearDown();
    return 0;
}
