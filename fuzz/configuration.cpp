// A configuration file of any bytes, before the seven operations that read it. The files that it may name lie in the folder that
// the program works in: directory="models", constraints="constraints.txt" (TestConfiguration has their names).
#include "fuzz/Target.h"
#include "tests/support/FileOpen.h"
#include "tests/support/ReaderOperations.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace
{

constexpr uint16_t Language = 1033;

/// A complete configuration, whose file each run replaces.
struct Place
{
    Place()
    {
        std::filesystem::current_path(std::filesystem::path(configuration.Path()).parent_path());
        logger.keepLines = false;
    }

    TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};

/// Runs an operation. Its result is S_OK, or E_FAIL with a line that says why.
bool Succeeds(const ReaderOperation& operation, Place& place, ReaderOutputs* outputs)
{
    const uint64_t lines = place.logger.calls;
    const HRESULT result = operation.run(place.reader, Language, outputs);
    Expect(result == S_OK || (result == E_FAIL && place.logger.calls > lines));
    return result == S_OK;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static Place place;
    static const std::vector<ReaderOperation>& operations = ReaderOperations();
    const std::string_view xml(reinterpret_cast<const char*>(data), size);
    if (xml.find("/dev") != std::string_view::npos)
    {
        return -1; // Reading a device may never end.
    }
    KeepInMemory(place.configuration.Path(), std::string(xml));

    enum Operation
    {
        Count,
        Ids,
        IsSupported,
        Constraints,
        Enrollment,
        Predefined,
        Detection
    };
    std::array<ReaderOutputs, Detection + 1> outputs;
    std::array<bool, Detection + 1> succeeded{};
    for (std::size_t i = 0; i < operations.size(); ++i)
    {
        outputs[i].languageRoom = size; // An element has several bytes.
        succeeded[i] = Succeeds(operations[i], place, &outputs[i]);
    }

    // These write all that they find, or nothing. The others leave what they have found before they failed.
    for (const Operation whole : {Count, IsSupported, Constraints, Predefined})
    {
        Expect(succeeded[whole] || outputs[whole].Untouched());
    }
    Expect(!succeeded[Ids] || succeeded[Count]);
    const bool isSupported = succeeded[IsSupported] && outputs[IsSupported].supported;
    if (succeeded[Ids])
    {
        const auto first = outputs[Ids].ids.begin();
        Expect(!isSupported || std::find(first, first + outputs[Count].count, Language) != first + outputs[Count].count);
    }
    // A language that the file lacks has no model; one that it has, a whole one.
    Expect((outputs[Predefined].model != nullptr) == (outputs[Predefined].modelSize != ReaderOutputs::Mark));
    Expect(!succeeded[Predefined] || !isSupported || outputs[Predefined].model != nullptr);
    return 0;
}
