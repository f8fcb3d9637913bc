#pragma once

#include "console/hosting/Detector.h"
#include "console/hosting/Outputs.h"
#include "console/hosting/StandInModels.h"
#include "console/report/Command.h"
#include "console/takes/TakeReport.h"

namespace CLI
{
class Option;
}

namespace velox::console
{

/// velox-kws verify: tells of recordings whether they could enroll a user, and why not.
void AddVerifyCommand(CLI::App& app, Commands& commands);

/// What verify and enroll are given alike.
struct TakeOptions
{
    DetectorOptions detector;
    std::string language;
    std::vector<std::string> files; ///< recordings, folders, patterns
};

/// Declares LANG, WAV, --report and the detector's options.
/// @return WAV, which is not required yet
CLI::Option* AddTakeOptions(CLI::App* command, Commands& commands, const char* filesHelp, TakeOptions* options);

/// A language as its takes are looked at: by the library, and by the console's own review.
class TakeVerifier
{
public:
    /// Finds the recordings, and refuses outputs that would replace what is read.
    /// @throws CommandFailure also BadConfiguration when the configuration file cannot be read or lacks the language
    TakeVerifier(const TakeOptions& options, const Context& context, std::span<const Output> outputs);

    /// Verifies the recordings one after the other. A file that cannot be read is a take that says so; a fault of the library or
    /// its files ends it all.
    /// @param takes  receives them one by one: they are there when it ends early
    /// @throws CommandFailure
    void Verify(Progress& progress, std::vector<Take>* takes);

    /// Verifies one recording.
    /// @param name  of the take
    /// @throws CommandFailure
    Take Judge(const std::string& name, Audio audio);

    const std::vector<std::string> files;
    const uint16_t language;
    const ConfiguredLanguage configured;
    const StandInModels models;
    Detector detector;

private:
    Take VerifyFile(const std::string& file);

    std::optional<double> threshold;
};

} // namespace velox::console
