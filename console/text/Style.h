#pragma once

#include <string>
#include <string_view>

namespace velox::console
{

/// Colours of a text for people; without colours the text stays as it is.
class Style
{
public:
    explicit Style(bool coloured);

    std::string Good(std::string_view text) const;
    std::string Bad(std::string_view text) const;
    std::string Warning(std::string_view text) const;
    std::string Dim(std::string_view text) const;
    std::string Heading(std::string_view text) const;

private:
    std::string Wrap(const char* code, std::string_view text) const;

    bool coloured;
};

/// Whether to colour: only on a terminal, and not when the environment variable NO_COLOR is set and not empty.
/// @param noColour  its value; null when it is not set
bool WantsColour(bool isTerminal, const char* noColour);

} // namespace velox::console
