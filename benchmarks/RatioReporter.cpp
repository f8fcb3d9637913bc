#include "benchmarks/RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace
{

struct Row
{
    std::string name;
    double goal;
    std::optional<double> givenFloor;
};

std::vector<Row> rows;

} // namespace

std::string FloorName(const std::string& measurementName)
{
    return measurementName + ", floor";
}

void RatioReporter::Expect(const std::string& measurementName, double goal, std::optional<double> givenFloor)
{
    rows.push_back({measurementName, goal, givenFloor});
}

bool RatioReporter::ReportContext(const Context&)
{
    return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs)
    {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred)
        {
            microseconds[run.benchmark_name()].push_back(run.GetAdjustedCPUTime());
        }
    }
}

void RatioReporter::Finalize()
{
    std::printf("%-42s %12s %12s %7s %6s\n", "measurement", "time (us)", "floor (us)", "ratio", "goal");
    for (const Row& row : rows)
    {
        // What the command line filtered out has no row.
        if (!microseconds.contains(row.name) || !(row.givenFloor || microseconds.contains(FloorName(row.name))))
        {
            continue;
        }
        const double time = Median(row.name);
        const double floor = row.givenFloor ? *row.givenFloor : Median(FloorName(row.name));
        std::printf("%-42s %12.2f %12.2f %7.4f %6.3f\n", row.name.c_str(), time, floor, time / floor, row.goal);
    }
}

double RatioReporter::Median(const std::string& benchmarkName) const
{
    std::vector<double> times = microseconds.at(benchmarkName);
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}
