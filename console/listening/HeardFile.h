#pragma once

#include "console/listening/Listening.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velox::console
{

/// A file that was listened to.
struct HeardFile
{
    std::string name;
    std::string conversion; ///< what was done to its audio; empty when nothing was
    Heard heard;
    std::vector<std::string> savedBlocks{}; ///< a file for each detection; empty when none were saved
};

/// What listen was asked for, besides the audio.
struct ListeningSubject
{
    std::string patternName;
    std::size_t patternSize = 0;
    uint16_t language = 0;
    std::vector<std::string> notes; ///< what is odd about the pattern or the fault
};

} // namespace velox::console
