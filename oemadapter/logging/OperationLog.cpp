#include "oemadapter/logging/OperationLog.h"

#include <IVeloxKeywordDetectorLogger.h>

#include <algorithm>

namespace velox::oemadapter
{

namespace
{

/// How the lines begin that the library writes about a user's model on its way into the stream.
constexpr std::string_view WritingModel = "[WriteModelToIStream]";

} // namespace

void OperationLog::Begin(const char* begun)
{
    method = begun;
    counts = {};
    modelWasLost = false;
    length = 0;
}

void OperationLog::Add(uint32_t level, std::string_view line)
{
    if (level >= counts.size())
    {
        return;
    }
    ++counts[level];
    modelWasLost = modelWasLost || (level == VeloxLogLevel::Failure && line.starts_with(WritingModel));

    const std::array<char, 2> before{static_cast<char>('0' + level), ' '};
    constexpr std::string_view After = "\r\n";
    if (before.size() + line.size() + After.size() > text.size() - length)
    {
        return;
    }
    for (const std::string_view part : {std::string_view(before.data(), before.size()), line, After})
    {
        std::ranges::copy(part, text.data() + length);
        length += part.size();
    }
}

} // namespace velox::oemadapter
