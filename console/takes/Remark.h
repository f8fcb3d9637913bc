#pragma once

#include <string>

namespace velox::console
{

/// One thing to say about a take.
struct TakeRemark
{
    std::string code; ///< for machines: the engine status's name, "QualityTooLow", "ScoreTooLow", "Unreadable", "Unlike..."
    std::string text; ///< for people, begins with a small letter, no full stop
    std::string fix;
};

} // namespace velox::console
