#pragma once

#include "console/report/Command.h"
#include "engine/training/LanguageOptions.h"

#include <span>

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
    std::optional<int> qualityThreshold;
    engine::LanguageOptions training{.batches = 2500}; ///< its threads and progress do not count
    bool replace = false;
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
