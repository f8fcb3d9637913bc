#include "oemadapter/logging/AdapterLogger.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace velox::oemadapter
{

namespace
{

constexpr std::string_view Cut = "...";

/// Behind a message.
constexpr std::size_t LongestCode = sizeof(" 0x00000000");

/// Before a message: level, source and method.
constexpr std::size_t LongestBefore = 256;

const char* SourceName(uint32_t source)
{
    switch (source)
    {
    case VeloxLogSource::Adapter:
        return "library";
    case VeloxLogSource::Internals:
        return "internals";
    default:
        return "adapter";
    }
}

bool IsControlCharacter(char character)
{
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

} // namespace

void AdapterLogger::SetFile(const WideText* path)
{
    file.Close();
    filePath = path;
}

void AdapterLogger::Log(uint32_t level, uint32_t source, const std::string& message)
{
    Add(level, source, message);
}

void AdapterLogger::LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status)
{
    Add(level, source, message, static_cast<uint32_t>(status));
}

void AdapterLogger::LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code)
{
    Add(level, source, message, code);
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is given
void AdapterLogger::LogFormat(uint32_t level, uint32_t source, const char* format, ...)
{
    // One character more than is shown tells that the message is too long.
    std::array<char, LongestMessage + 2> message; // NOLINT(cppcoreguidelines-pro-type-member-init): as far as it is used
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(message.data(), message.size(), format, arguments);
    va_end(arguments);
    Add(level, source, length < 0 ? format : message.data());
}

void AdapterLogger::SetLevel(uint32_t level)
{
    threshold = level;
}

void AdapterLogger::SetLogToFile(bool enabled)
{
    if (enabled && filePath != nullptr)
    {
        file.Open(*filePath);
    }
    else
    {
        file.Close();
    }
}

void AdapterLogger::Add(uint32_t level, uint32_t source, std::string_view message, std::optional<uint32_t> code)
{
    std::array<char, LongestMessage + LongestCode> text; // NOLINT(cppcoreguidelines-pro-type-member-init): as far as it is used
    std::size_t length = std::min(message.size(), LongestMessage);
    std::replace_copy_if(message.begin(), message.begin() + static_cast<std::ptrdiff_t>(length), text.begin(), IsControlCharacter,
                         ' ');
    if (message.size() > LongestMessage)
    {
        std::ranges::copy(Cut, text.data() + length - Cut.size());
    }
    if (code)
    {
        length += static_cast<std::size_t>(std::max(0, std::snprintf(text.data() + length, LongestCode, " 0x%08X", *code)));
    }
    const std::string_view shown(text.data(), length);
    operation.Add(level, shown);
    if (level <= threshold)
    {
        Show(level, source, shown);
    }
}

void AdapterLogger::Show(uint32_t level, uint32_t source, std::string_view text)
{
    std::array<char, LongestBefore + LongestMessage + LongestCode> line{};
    const auto before = static_cast<std::size_t>(
        std::max(0, std::snprintf(line.data(), LongestBefore, "%u %s %.100s ", level, SourceName(source), operation.Method())));
    std::ranges::copy(text, line.data() + before);
    file.Write({line.data(), before + text.size()});
}

} // namespace velox::oemadapter
