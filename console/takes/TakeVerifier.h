#pragma once

#include "console/hosting/Detector.h"
#include "console/hosting/StandInModels.h"
#include "console/takes/TakeReport.h"
#include "console/text/ExitCode.h"
#include "console/text/Progress.h"

#include <string>
#include <vector>

namespace velox::console
{

/// A language as its takes are looked at: by the library, and by the console's own review.
class TakeVerifier
{
public:
    /// @throws CommandFailure BadConfiguration when the configuration file cannot be read or lacks the language
    TakeVerifier(const DetectorOptions& options, const std::string& languageText, const LogOptions& log);

    /// Verifies the recordings one after the other. A file that cannot be read is reported as one; a fault of the library or its
    /// files ends it all.
    /// @throws CommandFailure
    std::vector<TakeReport> Verify(const std::vector<std::string>& files, Progress& progress);

    uint16_t Language() const
    {
        return language;
    }

    const StandInModels& Models() const
    {
        return models;
    }

    const ConfiguredLanguage& Configured() const
    {
        return configured;
    }

    Detector& Adapter()
    {
        return detector;
    }

private:
    TakeReport VerifyFile(const std::string& file);

    uint16_t language;
    ConfiguredLanguage configured;
    StandInModels models;
    std::optional<double> threshold;
    Detector detector;
};

/// How many takes were accepted, and which are to be recorded again: "2 of 3 takes are accepted. Record again: b.wav."
std::string Verdict(const std::vector<TakeReport>& takes);

/// Success when all were accepted, BadInput when a file could not be read, else Refused.
ExitCode ExitCodeOf(const std::vector<TakeReport>& takes);

} // namespace velox::console
