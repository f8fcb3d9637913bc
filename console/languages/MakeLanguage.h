#pragma once

#include "console/report/Command.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velox::console
{

/// What make-language was asked for.
struct LanguageRequest
{
    uint16_t language = 0;
    std::filesystem::path takes;
    std::vector<std::filesystem::path> background;
    std::filesystem::path folder; ///< for the files
    std::filesystem::path configuration;
    std::string name; ///< in the files' names; empty: the language's id
    double falseAlarmsPerHour = 0.5;
    std::optional<int> qualityThreshold;
    int batches = 2500;
    int copies = 10; ///< noisy copies of each take
    bool replace = false;
};

/// Learns a language from recordings, writes its files and adds it to the configuration file. Nothing is written until all is
/// learned, and then all of it or nothing.
/// @throws CommandFailure
Outcome MakeLanguage(const LanguageRequest& request, Context& context);

} // namespace velox::console
