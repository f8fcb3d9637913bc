#include "benchmarks/Measurement.h"
#include "benchmarks/RatioReporter.h"

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

// Short runs, many of them, in random order: on a machine that does other work, too, the median of each stays put.
int main(int argc, char** argv)
{
    std::array<std::string, 3> defaults{"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=31",
                                        "--benchmark_min_time=0.02"};
    std::vector<char*> arguments{argv[0]};
    for (std::string& argument : defaults)
    {
        arguments.push_back(argument.data());
    }
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());

    RegisterConfigurationQueries();
    RegisterModelFile();
    RegisterArmingPattern();
    RegisterSampleConversion();
    RegisterVerification();
    RegisterListening();
    RegisterOemAdapter();

    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
    {
        return 2;
    }
    RatioReporter reporter;
    const bool anyRun = benchmark::RunSpecifiedBenchmarks(&reporter) > 0;
    benchmark::Shutdown();
    return anyRun ? 0 : 1;
}
