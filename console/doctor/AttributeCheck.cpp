#include "console/doctor/AttributeCheck.h"

#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace velox::console
{

int LineOf(const tinyxml2::XMLElement& element, const char* attribute)
{
    const tinyxml2::XMLAttribute* found = element.FindAttribute(attribute);
    return found == nullptr ? element.GetLineNum() : found->GetLineNum();
}

void CheckAttributeNames(const tinyxml2::XMLElement& element, std::initializer_list<std::string_view> known,
                         const Subject& subject)
{
    for (const auto* attribute = element.FirstAttribute(); attribute != nullptr; attribute = attribute->Next())
    {
        if (std::ranges::find(known, attribute->Name()) == known.end())
        {
            subject.Add(Tone::Warning, attribute->GetLineNum(),
                        fmt::format("{} is no attribute that the library knows.", attribute->Name()), "It is ignored.",
                        "Remove it, or correct its name; upper and lower case count.");
        }
    }
}

void CheckNumber(const tinyxml2::XMLAttribute& attribute, std::string_view what, int64_t value, const Subject& subject)
{
    std::string_view text = Trim(attribute.Value());
    const bool sign = text.starts_with('-') || text.starts_with('+');
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : sign ? 1 : 0);
    uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
    const bool tooLarge = error == std::errc::result_out_of_range || number > std::numeric_limits<uint32_t>::max();
    const std::string_view rest = Trim({stop, static_cast<std::size_t>(end - stop)});
    const std::string effect = tooLarge        ? "The number is beyond 32 bits, and its value depends on the C runtime."
                               : !rest.empty() ? fmt::format("The library takes {} and ignores \"{}\".", value, rest)
                               : hexadecimal   ? fmt::format("The library takes it for {}.", value)
                                               : "";
    if (!effect.empty())
    {
        subject.Add(tooLarge || !rest.empty() ? Tone::Warning : Tone::Note, attribute.GetLineNum(),
                    fmt::format("{} is written \"{}\".", what, attribute.Value()), effect, "Write the number alone, in decimal.");
    }
}

} // namespace velox::console
