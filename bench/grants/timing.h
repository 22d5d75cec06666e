#pragma once
// Timing of the benchmark programs of the grant screens.

#include <QElapsedTimer>

#include <algorithm>
#include <functional>

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
