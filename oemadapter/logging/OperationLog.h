#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velox::oemadapter
{

/// The lines of the call that is under way, whatever level is shown: what a call's result, and the text for Windows' own
/// diagnosis, follow from. Takes no memory, so that a line is not lost for want of it.
class OperationLog
{
public:
    /// Most bytes of text that are kept; lines that do not fit are counted only.
    static constexpr std::size_t MostText = 8192;

    /// A call begins: its predecessor's lines are forgotten.
    /// @param method  the COM method, a constant
    void Begin(const char* method);

    void Add(uint32_t level, std::string_view line);

    const char* Method() const
    {
        return method;
    }

    /// How many lines of the call had this level, 1 to 5.
    uint32_t Lines(uint32_t level) const
    {
        return counts.at(level);
    }

    /// Whether the library said that a user's model did not get into the stream: not all of it was taken, or it was not
    /// committed. It returns S_OK then all the same.
    bool ModelWasLost() const
    {
        return modelWasLost;
    }

    /// The lines, each with its level before it and a line break behind it.
    std::string_view Text() const
    {
        return {text.data(), length};
    }

private:
    const char* method = "";
    std::array<uint32_t, 6> counts{}; ///< by level
    bool modelWasLost = false;
    std::array<char, MostText> text{};
    std::size_t length = 0;
};

} // namespace velox::oemadapter
