#include "console/doctor/ThresholdCheck.h"

#include "console/inspect/ThresholdText.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <cctype>

namespace velox::console
{

namespace
{

constexpr std::string_view ChooseFix =
    "Write a number between 0 and 255; a higher one gives fewer false triggers and more missed ones.";

constexpr std::string_view WriteANumber = "Write one decimal number with a point, such as 0.75, as plain text.";

/// A reason as a sentence begins.
std::string Capital(std::string text)
{
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text;
}

} // namespace

void CheckThreshold(const NamedFile& file, std::string_view what, Findings* findings)
{
    const std::string_view content = AsText(file.bytes);
    const ThresholdText text = ReadThresholdText(content);
    const auto add = [&](Severity severity, std::size_t position, std::string_view message, std::string_view effect,
                         std::string_view fix) {
        findings->push_back({severity,
                             file.path,
                             LineAt(content, position),
                             fmt::format("{} {}", what, message),
                             std::string(effect),
                             std::string(fix),
                             {}});
    };
    if (!text.isNumber)
    {
        add(Severity::Error, 0, fmt::format("counts as 0: {}.", text.whatIsWrong),
            "The library says nothing about it, and every score above 0 is a detection.", WriteANumber);
        return;
    }
    const std::string is = fmt::format("is {}, in the library {}.", text.text, Q8Text(text.q8));
    if (text.value < ThresholdText::LeastScore)
    {
        add(Severity::Error, text.offset, is, "Scores lie between 0 and 255: every one is above it, everything is a detection.",
            ChooseFix);
    }
    else if (text.value > ThresholdText::MostScore)
    {
        add(Severity::Error, text.offset, fmt::format("{}{}", is, text.saturated ? " The number does not fit into 32 bits." : ""),
            "Scores lie between 0 and 255: none is above it, nothing is ever detected.", ChooseFix);
    }
    else if (!text.rest.empty())
    {
        const bool comma = text.rest.front() == ',';
        add(comma ? Severity::Error : Severity::Warning, text.restOffset, is, fmt::format("{}.", Capital(text.whatIsWrong)),
            WriteANumber);
    }
    else
    {
        add(Severity::Good, text.offset, is, {}, {});
    }
}

} // namespace velox::console
