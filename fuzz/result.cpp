// Result blocks of any bytes and size, for adapters that armed nothing, the predefined model or a user's. The input's first byte
// says which, and which argument is missing.
#include "fuzz/Target.h"
#include "tests/support/ArmingTest.h"

#include <algorithm>
#include <array>
#include <optional>

namespace
{

/// An adapter that armed a language once, or nothing.
struct Armed
{
    Armed(const std::string& configuration, std::optional<uint16_t> armed, std::string_view userModel)
        : adapter(&logger, configuration, "1.2.3", DetectorId), language(armed.value_or(0)), isUserMatch(!userModel.empty())
    {
        logger.keepLines = false;
        if (armed)
        {
            ScriptedStream stream(userModel);
            const KeywordSelector selector{1, language};
            uint8_t* block = nullptr;
            Expect(adapter.BuildArmingPatternData(&stream, &selector, 1, &block) == S_OK);
            CoTaskMemFree(block);
        }
    }

    RecordingLogger logger;
    VeloxKeywordDetectorAdapterImpl adapter;
    uint16_t language;
    bool isUserMatch;
};

/// What the firmware hands over, in memory of its own length: as long as its first field says, as far as anybody reads.
std::vector<uint8_t> MakeBlock(const uint8_t* data, std::size_t size)
{
    std::vector<uint8_t> block(data, data + size);
    block.resize(std::max(size, sizeof(uint32_t)));
    uint32_t said = 0;
    std::memcpy(&said, block.data(), sizeof(said));
    block.resize(std::max<std::size_t>(block.size(), std::min(said, DetectionResultMinSize)));
    block.shrink_to_fit();
    return block;
}

struct Outputs
{
    uint32_t keyword = 4711;
    uint16_t language = 4711;
    BOOL isUserMatch = 4711;
    uint64_t start = 4711;
    uint64_t end = 4711;

    bool operator==(const Outputs&) const = default;
};

/// What the documents say that comes of a whole block.
Outputs Expected(const DetectionResult& block, const Armed& armed)
{
    return {block.KeywordIdFw == 1 ? 1U : 0U, armed.language, armed.isUserMatch ? TRUE : FALSE, block.KeywordStart,
            block.KeywordEnd};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const TestConfiguration configuration;
    static std::array<Armed, 3> adapters{Armed{configuration.Path(), {}, ""}, Armed{configuration.Path(), 1033, ""},
                                         Armed{configuration.Path(), 1040, "VWOV of a user"}};
    if (size == 0)
    {
        return 0;
    }
    Armed& armed = adapters[data[0] % adapters.size()];
    const std::size_t missing = data[0] / adapters.size(); // seven of them are arguments, the others none
    const std::vector<uint8_t> bytes = MakeBlock(data + 1, size - 1);
    const auto* const block = reinterpret_cast<const DetectionResult*>(bytes.data());

    ScriptedStream stream;
    Outputs outputs;
    const auto unless = [missing](std::size_t number, auto* argument) {
        return missing == number ? nullptr : argument;
    };
    const HRESULT result = armed.adapter.ParseDetectionResultData(
        unless(0, static_cast<IStream*>(&stream)), unless(1, block), unless(2, &outputs.keyword), unless(3, &outputs.language),
        unless(4, &outputs.isUserMatch), unless(5, &outputs.start), unless(6, &outputs.end));

    const bool isOurs = block->Size >= DetectionResultMinSize && block->PatternType == DetectorId;
    Expect(result == (missing < 7 ? E_POINTER : isOurs ? S_OK : E_INVALIDARG));
    Expect(outputs == (result == S_OK ? Expected(*block, armed) : Outputs{}));
    return 0;
}
