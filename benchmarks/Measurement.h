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

/// A piece of work on audio, beside the audio's own length: their ratio is the real-time factor.
struct RealTimeMeasurement
{
    std::string name;
    double goal; ///< highest real-time factor
    std::function<void()> work;
    double seconds; ///< of audio that the work goes through
};

void Register(const RealTimeMeasurement& measurement);

// Each file registers its own.
void RegisterConfigurationQueries();
void RegisterModelFile();
void RegisterArmingPattern();
void RegisterSampleConversion();
void RegisterVerification();
void RegisterListening();
void RegisterOemAdapter();
