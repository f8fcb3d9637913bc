#include "console/text/StatusText.h"

#include "engine/base/EngineErrors.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

struct ResultName
{
    uint32_t result;
    const char* name;
};

/// The library's own, and those of the platform calls whose results it hands on.
constexpr std::array ResultNames{
    ResultName{0x00000000, "S_OK"},
    ResultName{0x00000001, "S_FALSE"},
    ResultName{0x80004001, "E_NOTIMPL"},
    ResultName{0x80004002, "E_NOINTERFACE"},
    ResultName{0x80004003, "E_POINTER"},
    ResultName{0x80004004, "E_ABORT"},
    ResultName{0x80004005, "E_FAIL"},
    ResultName{0x8000FFFF, "E_UNEXPECTED"},
    ResultName{0x80030001, "STG_E_INVALIDFUNCTION"},
    ResultName{0x80030005, "STG_E_ACCESSDENIED"},
    ResultName{0x80030008, "STG_E_INSUFFICIENTMEMORY"},
    ResultName{0x80030009, "STG_E_INVALIDPOINTER"},
    ResultName{0x80030019, "STG_E_SEEKERROR"},
    ResultName{0x8003001D, "STG_E_WRITEFAULT"},
    ResultName{0x8003001E, "STG_E_READFAULT"},
    ResultName{0x80030020, "STG_E_SHAREVIOLATION"},
    ResultName{0x80030070, "STG_E_MEDIUMFULL"},
    ResultName{0x80030102, "STG_E_REVERTED"},
    ResultName{0x80070002, "ERROR_FILE_NOT_FOUND"},
    ResultName{0x80070005, "E_ACCESSDENIED"},
    ResultName{0x8007000E, "E_OUTOFMEMORY"},
    ResultName{0x80070057, "E_INVALIDARG"},
    ResultName{0xC00D36B0, "MF_E_PLATFORM_NOT_INITIALIZED"},
};

} // namespace

std::string ResultText(int32_t result)
{
    const auto code = static_cast<uint32_t>(result);
    const auto* found =
        std::find_if(ResultNames.begin(), ResultNames.end(), [&](const ResultName& entry) { return entry.result == code; });
    return found == ResultNames.end() ? fmt::format("0x{:08X}", code) : fmt::format("0x{:08X} {}", code, found->name);
}

std::string EngineStatusText(uint32_t status)
{
    const auto& texts = engine::StatusTexts;
    const auto* found = std::find_if(texts.begin(), texts.end(), [&](const engine::StatusText& entry) {
        return static_cast<uint32_t>(entry.status) == status;
    });
    return found == texts.end() ? fmt::format("{} (not a status of the stand-in engine)", status)
                                : fmt::format("{} {}: {}", status, found->name, found->sentence);
}

} // namespace velox::console
