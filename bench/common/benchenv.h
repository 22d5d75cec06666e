#pragma once
// What the benchmark programs stand on: an offscreen application, the private server with
// empty databases, an administrator who sees every grant, bulk inserts of generated rows,
// and timing.

#include "core/db.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QVariantList>
#include <QVector>

#include <algorithm>
#include <functional>

class BenchEnvironment {
public:
    BenchEnvironment(int &argc, char **argv) : m_app((offscreen(), argc), argv)
    {
        testenv::SetUp();
        testenv::FreshDatabases(false);
        Session().UserTyp = 2;
        Session().UserFiltrGrant = QStringLiteral("0");
    }
    ~BenchEnvironment() { testenv::TearDown(); }

private:
    static void offscreen()
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication m_app;
};

// The best of five runs, in milliseconds: the run least disturbed by the rest of the machine.
inline double BestOfFive(const std::function<void()> &run)
{
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        QElapsedTimer t;
        t.start();
        run();
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

// Inserts the rows in statements of many rows each, all in one transaction. head is the
// statement up to "VALUES ", each row holds the values of the columns it names.
inline bool InsertRows(DbConnection &conn, const QString &head, int columns, const QVector<QVariantList> &rows)
{
    const QString one = QLatin1Char('(') + QStringList(columns, QStringLiteral("?")).join(QLatin1Char(',')) + QLatin1Char(')');
    const qsizetype perStatement = std::max(1, 10000 / columns);   // well below the server's 65,535 bound values
    Transaction t(conn);
    for (qsizetype from = 0; from < rows.size(); from += perStatement) {
        const qsizetype n = std::min(perStatement, rows.size() - from);
        QVariantList values;
        for (qsizetype i = from; i < from + n; ++i)
            values += rows.at(i);
        if (!conn.exec(head + QStringList(n, one).join(QLatin1Char(',')), values))
            return false;
    }
    return t.commit();
}
