#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Name of the benchmark that runs a measurement's floor.
std::string FloorName(const std::string& measurementName);

/// Prints one row for each measurement: its time, its floor's, their ratio and the goal.
///
/// A time is the median of the repetitions' processor times. The repetitions of a measurement and of its floor are run in turns,
/// so that a change of the machine's speed meets both.
class RatioReporter : public benchmark::BenchmarkReporter
{
public:
    /// Makes the table have a row for this measurement. The rows stand in the order of the calls.
    /// @param givenFloor  microseconds, where the floor is not measured
    static void Expect(const std::string& measurementName, double goal, std::optional<double> givenFloor = std::nullopt);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    double Median(const std::string& benchmarkName) const;

    std::map<std::string, std::vector<double>> microseconds;
};
