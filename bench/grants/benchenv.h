#pragma once
// What the benchmark programs of the grant screens stand on: an offscreen application,
// the private server with empty databases, an administrator who sees every grant, and timing.

#include "core/session.h"
#include "support/testenv.h"

#include <QApplication>
#include <QElapsedTimer>

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
