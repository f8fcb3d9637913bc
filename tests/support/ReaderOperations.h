#pragma once

#include "library/configuration/ConfigurationReader.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

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
    std::size_t languageRoom = 262144; ///< entries that GetLanguagesIds gets
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
    bool looksUpLanguage = false; ///< it needs the directory and valid ids
};

inline std::ostream& operator<<(std::ostream& out, const ReaderOperation& operation)
{
    return out << operation.name;
}

/// All seven of them.
const std::vector<ReaderOperation>& ReaderOperations();

/// A reader before which each of the operations is put.
class EveryReaderOperation : public ReaderTest
{
protected:
    /// Each operation for which it is called fails with this line and leaves its outputs.
    /// @param line `LogLine(const ReaderOperation&)`
    template <typename Line>
    void ExpectRefused(
        Line line, bool (*concerns)(const ReaderOperation&) = [](const ReaderOperation&) { return true; })
    {
        for (const ReaderOperation& operation : ReaderOperations())
        {
            if (concerns(operation))
            {
                SCOPED_TRACE(operation);
                ReaderOutputs outputs;
                EXPECT_EQ(operation.run(reader, 1033, &outputs), E_FAIL);
                EXPECT_TRUE(outputs.Untouched());
                EXPECT_THAT(logger.Take(), testing::ElementsAre(line(operation)));
            }
        }
    }

    /// Each operation succeeds without a line.
    void ExpectAccepted(ReaderOutputs* outputs)
    {
        for (const ReaderOperation& operation : ReaderOperations())
        {
            SCOPED_TRACE(operation);
            EXPECT_EQ(operation.run(reader, 1033, outputs), S_OK);
        }
        EXPECT_THAT(logger.Take(), testing::IsEmpty());
    }
};
