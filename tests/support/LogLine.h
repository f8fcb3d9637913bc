#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// One call of the logger, as the tests write and compare it. Where a test keeps what happens in one order, also a call of
/// another kind, which is only its text: "VWoVInitSession()", "Lock".
struct LogLine
{
    LogLine() = default;
    LogLine(std::string operationName, uint32_t lineLevel, uint32_t lineSource, std::string lineText, uint32_t lineValue)
        : operation(std::move(operationName)), level(lineLevel), source(lineSource), text(std::move(lineText)), value(lineValue)
    {
    }
    LogLine(std::string call) : text(std::move(call))
    {
    }
    LogLine(const char* call) : text(call)
    {
    }

    std::string operation; ///< name of the logger's operation; of another call empty
    uint32_t level = 0;    ///< of SetLevel: its argument
    uint32_t source = 0;
    std::string text;   ///< formatted; empty for the setters
    uint32_t value = 0; ///< the status or code, or SetLogToFile's argument

    bool operator==(const LogLine&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const LogLine& line)
{
    return out << line.operation << "(level " << line.level << ", source " << line.source << ", \"" << line.text << "\", 0x"
               << std::hex << line.value << std::dec << ")";
}

inline LogLine Log(uint32_t level, uint32_t source, const std::string& text)
{
    return {"Log", level, source, text, 0};
}

inline LogLine LogWithStatus(uint32_t level, uint32_t source, const std::string& text, int32_t status)
{
    return {"LogWithStatus", level, source, text, static_cast<uint32_t>(status)};
}

inline LogLine LogWithCode(uint32_t level, uint32_t source, const std::string& text, uint32_t code)
{
    return {"LogWithCode", level, source, text, code};
}

inline LogLine LogFormat(uint32_t level, uint32_t source, const std::string& text)
{
    return {"LogFormat", level, source, text, 0};
}

inline LogLine SetLevel(uint32_t level)
{
    return {"SetLevel", level, 0, "", 0};
}

inline LogLine SetLogToFile(bool enabled)
{
    return {"SetLogToFile", 0, 0, "", enabled ? 1U : 0U};
}

/// Lines in their order: `Entry + ForLanguage(1033) + "VWoVInitSession()" + Exit`.
class Lines : public std::vector<LogLine>
{
public:
    using vector::vector;

    Lines(const LogLine& line) : vector{line}
    {
    }
    Lines(const char* call) : Lines(LogLine(call))
    {
    }

    /// The text of each.
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const LogLine& line : *this)
        {
            texts.push_back(line.text);
        }
        return texts;
    }

    /// Those that were logged.
    Lines Logged() const
    {
        Lines logged = *this;
        std::erase_if(logged, [](const LogLine& line) { return line.operation.empty(); });
        return logged;
    }
};

inline Lines operator+(Lines first, const Lines& rest)
{
    first.insert(first.end(), rest.begin(), rest.end());
    return first;
}
