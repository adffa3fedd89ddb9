#pragma once

// Samples of one measured case and their min/median/max, for the benchmarks.

#include <QVector>

#include <algorithm>
#include <cstdio>

namespace Bench {

struct Figures
{
    double min = 0;
    double median = 0;
    double max = 0;
};

inline Figures figures(QVector<double> samples)
{
    Figures f;
    if (samples.isEmpty())
        return f;
    std::sort(samples.begin(), samples.end());
    f.min = samples.first();
    f.median = samples.at(samples.size() / 2);
    f.max = samples.last();
    return f;
}

inline void printRow(const char *label, const Figures &f, const char *unit)
{
    std::printf("  %-34s min %9.1f  median %9.1f  max %9.1f %s\n", label, f.min, f.median, f.max,
                unit);
}

inline void printRatio(const char *label, const Figures &a, const Figures &b, const char *goal)
{
    std::printf("  %-34s min %.2fx  median %.2fx  (goal: %s)\n", label, a.min / b.min,
                a.median / b.median, goal);
}

} // namespace Bench
