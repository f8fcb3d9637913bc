#pragma once

#include <functional>
#include <string>

/// A piece of the library's work and the least that any implementation of it would have to do.
struct Measurement
{
    std::string name;
    double goal; ///< most that the work may cost, as a multiple of the floor
    std::function<void()> work;
    std::function<void()> floor;
};

/// Registers the work and the floor as two benchmarks, which run in turns.
void Register(const Measurement& measurement);

// Each file registers its own.
void RegisterConfigurationQueries();
void RegisterModelFile();
void RegisterArmingPattern();
void RegisterSampleConversion();
void RegisterVerification();
