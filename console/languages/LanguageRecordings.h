#pragma once

#include "console/report/Report.h"
#include "console/text/Progress.h"
#include "engine/training/LanguageMaterial.h"

#include <filesystem>
#include <set>

namespace velox::console
{

/// The files of a language's recordings.
struct LanguageFiles
{
    std::filesystem::path folder;           ///< of the takes
    std::vector<std::filesystem::path> all; ///< the takes, then the background, each in the order of their names
    std::size_t takes = 0;
};

/// Finds every file below the folders; hidden ones are passed over.
/// @param background  folders, single recordings, or patterns with * and ?
/// @throws CommandFailure BadInput for what is not there
LanguageFiles FindLanguageFiles(const std::filesystem::path& takes, const std::vector<std::string>& background);

/// What a language is learned from.
struct LanguageRecordings
{
    engine::LanguageMaterial material;
    std::vector<Entry> leftOut;   ///< that cannot be learned from, each with why
    std::vector<Remark> oddities; ///< of recordings that are used all the same, one of each kind

    double BackgroundHours() const;
};

std::set<std::string> VoicesOf(const std::vector<engine::PhraseTake>& takes);

/// Who says a take. In a folder of takes every sub-folder is a voice; a file that lies in no sub-folder belongs to the voice that
/// its name begins with, up to the first '-' or '_'.
/// @param take  relative to the folder of takes
std::string VoiceOf(const std::filesystem::path& take);

/// Reads the files, on all processors. What is no recording, and takes that hold no usable phrase, are left out.
/// @throws CommandFailure Interrupted
LanguageRecordings ReadLanguageRecordings(const LanguageFiles& files, Progress* progress);

} // namespace velox::console
