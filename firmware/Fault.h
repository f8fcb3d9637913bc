#pragma once

#include <array>
#include <string_view>

namespace velox::firmware
{

/// What the simulated firmware does wrong, until it is told otherwise.
enum class Fault
{
    None,
    Reset,          ///< loses pattern and arming when it should report a detection; nothing is reported
    ForeignGuid,    ///< reports with another detector's GUID
    TruncatedBlock, ///< reports 52 bytes, that is without the score, and says so in the size
    UnknownKeyword, ///< reports a keyword id that nobody armed
    StalePattern,   ///< accepts a new pattern but goes on with the one before
};

struct FaultName
{
    Fault fault;
    std::string_view name; ///< as people write it
    std::string_view sentence;
};

inline constexpr std::array FaultNames{
    FaultName{Fault::Reset, "reset", "The DSP resets itself instead of reporting a detection, and has lost pattern and arming."},
    FaultName{Fault::ForeignGuid, "foreign-guid", "Result blocks carry another detector's GUID."},
    FaultName{Fault::TruncatedBlock, "truncated", "Result blocks end before the score, after 52 bytes."},
    FaultName{Fault::UnknownKeyword, "unknown-keyword", "Result blocks name keyword id 2, which was never armed."},
    FaultName{Fault::StalePattern, "stale", "A new pattern is accepted, but the one before stays in use."},
};

} // namespace velox::firmware
