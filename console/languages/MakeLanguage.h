#pragma once

#include "console/report/Command.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// What make-language was asked for.
struct LanguageRequest
{
    uint16_t language = 0;
    std::filesystem::path takes;
    std::vector<std::string> background; ///< folders, recordings, patterns
    std::filesystem::path folder;        ///< for the files
    std::filesystem::path configuration;
    std::string name; ///< in the files' names; empty: the language's id
    double falseAlarmsPerHour = 0.5;
    std::optional<int> qualityThreshold;
    int batches = 2500;
    int copies = 10; ///< noisy copies of each take
    bool replace = false;
    bool noEstimate = false; ///< of the misses
};

/// Has the library use the language as it was written.
/// @param take  one of the phrase
/// @throws CommandFailure when it cannot
using ReadBack = std::function<void(const LanguageRequest& request, std::span<const float> take)>;

/// Learns a language from recordings, writes its files and adds it to the configuration file. Nothing is written until all is
/// learned, and then all of it or nothing.
/// @throws CommandFailure before the recordings are read, and when interrupted; later failures stand in the report
Report MakeLanguage(const LanguageRequest& request, Context& context, const ReadBack& readBack);

} // namespace velox::console
