#include "benchmarks/Measurement.h"

#include "benchmarks/RatioReporter.h"

#include <benchmark/benchmark.h>

namespace
{

void RegisterOne(const std::string& name, const std::function<void()>& body)
{
    benchmark::RegisterBenchmark(name.c_str(), [body](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
        {
            body();
        }
    })->Unit(benchmark::kMicrosecond);
}

} // namespace

void Register(const Measurement& measurement)
{
    RegisterOne(measurement.name, measurement.work);
    RegisterOne(FloorName(measurement.name), measurement.floor);
    RatioReporter::Expect(measurement.name, measurement.goal);
}

void Register(const RealTimeMeasurement& measurement)
{
    constexpr double Microseconds = 1e6;
    RegisterOne(measurement.name, measurement.work);
    RatioReporter::Expect(measurement.name, measurement.goal, measurement.seconds * Microseconds);
}
