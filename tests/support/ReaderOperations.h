#pragma once

#include "library/configuration/ConfigurationReader.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// Where the reader's operations write. Filled with marks, so that it shows what was written.
struct ReaderOutputs
{
    static constexpr uint32_t Mark = 4711;

    ReaderOutputs() = default;
    ReaderOutputs(const ReaderOutputs&) = delete;
    ReaderOutputs& operator=(const ReaderOutputs&) = delete;
    ~ReaderOutputs();

    /// Whether everything still holds its mark.
    bool Untouched() const;

    uint32_t count = Mark;
    std::vector<uint16_t> ids;
    bool supported = true;
    std::string constraints = "mark";
    EnrollmentParameters enrollment;
    uint8_t* model = nullptr;
    uint32_t modelSize = Mark;
    VELOX_WOV_DETECTION_PARAMETERS detection{Mark, Mark, Mark};
};

/// One of the operations that read the configuration file.
struct ReaderOperation
{
    std::string name;
    HRESULT (*run)(ConfigurationReader& reader, uint16_t languageId, ReaderOutputs* outputs);

    /// The operation's own line: its name in brackets and the text.
    std::string Line(const std::string& text) const
    {
        return "[" + name + "] " + text;
    }
};

inline std::ostream& operator<<(std::ostream& out, const ReaderOperation& operation)
{
    return out << operation.name;
}

/// All seven of them; GetLanguagesIds gets room for 262144 entries.
const std::vector<ReaderOperation>& ReaderOperations();
