#pragma once

#include <cstdint>
#include <ostream>
#include <string>

/// One call of the logger, as the tests write and compare it.
struct LogLine
{
    std::string operation; ///< name of the logger's operation
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
