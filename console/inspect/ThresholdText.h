#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velox::console
{

/// What the library makes of a threshold file's text, and what in the text is worth a word.
struct ThresholdText
{
    /// Bounds of the scores that the stand-in engine and the firmware report.
    static constexpr double LeastScore = 0.0;
    static constexpr double MostScore = 255.0;

    bool isNumber = false; ///< the text begins with a number; the library takes 0 when it does not
    double value = 0.0;
    int32_t q8 = 0;         ///< the value times 256, rounded half away from zero, within 32 bits
    bool saturated = false; ///< the value does not fit
    std::size_t offset = 0; ///< of the number, behind blanks
    std::string text{};     ///< the number as it stands there
    std::size_t restOffset = 0;
    std::string rest{};        ///< what follows, without blanks around it; the library ignores it
    std::string whatIsWrong{}; ///< why there is no number, or what about the rest is suspicious, as a reason; else empty
};

ThresholdText ReadThresholdText(std::string_view content);

/// "192 (0.75)": a Q8 number with what it stands for.
std::string Q8Text(int32_t q8);

} // namespace velox::console
