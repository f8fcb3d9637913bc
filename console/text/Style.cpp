#include "console/text/Style.h"

namespace velox::console
{

Style::Style(bool withColours) : coloured(withColours)
{
}

std::string Style::Good(std::string_view text) const
{
    return Wrap("32", text);
}

std::string Style::Bad(std::string_view text) const
{
    return Wrap("31", text);
}

std::string Style::Warning(std::string_view text) const
{
    return Wrap("33", text);
}

std::string Style::Dim(std::string_view text) const
{
    return Wrap("2", text);
}

std::string Style::Heading(std::string_view text) const
{
    return Wrap("1", text);
}

std::string Style::Wrap(const char* code, std::string_view text) const
{
    return coloured ? "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m" : std::string(text);
}

bool WantsColour(bool isTerminal, const char* noColour)
{
    return isTerminal && (noColour == nullptr || *noColour == '\0');
}

} // namespace velox::console
