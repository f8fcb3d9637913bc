#pragma once

#include "console/report/Report.h"
#include "console/text/Progress.h"
#include "engine/training/LanguageTrainer.h"

#include <filesystem>

namespace velox::console
{

/// A recording that cannot be learned from, and why.
struct LeftOutRecording
{
    std::string file;
    Remark why;
};

/// What a language is learned from, as it was found in folders.
struct LanguageRecordings
{
    engine::LanguageMaterial material;
    std::vector<LeftOutRecording> leftOut;

    std::size_t Voices() const;
    double BackgroundHours() const;
};

/// Who says a take. In a folder of takes every sub-folder is a voice; a file that lies in no sub-folder belongs to the voice that
/// its name begins with, up to the first '-' or '_'.
/// @param take  relative to the folder of takes
std::string VoiceOf(const std::filesystem::path& take);

/// Reads every file below the folders, in the order of their names; hidden ones are passed over. What is no recording, and takes
/// that hold no usable phrase, are left out.
///
/// @param background  folders, or single recordings
/// @throws CommandFailure BadInput for a folder that is not there, or Interrupted
LanguageRecordings ReadLanguageRecordings(const std::filesystem::path& takes,
                                          const std::vector<std::filesystem::path>& background, Progress* progress);

} // namespace velox::console
