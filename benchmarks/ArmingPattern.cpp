#include "library/adapter/ArmingPattern.h"

#include "benchmarks/Floors.h"
#include "benchmarks/Measurement.h"
#include "benchmarks/SilentLogger.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/TestConfiguration.h"

#include <cstring>
#include <stdexcept>

namespace
{

constexpr double Goal = 1.10;
constexpr std::size_t ModelSize = 1024 * 1024;
constexpr uint16_t Language = 1033;

struct Armable
{
    TestConfiguration configuration;
    SilentLogger logger;
    VeloxKeywordDetectorAdapterImpl adapter{&logger, configuration.Path(), "bench", GUID{}};
    ScriptedStream stream{"VWOV" + std::string(ModelSize - 4, 'm')};
};

struct TaskMemoryFree
{
    void operator()(uint8_t* block) const
    {
        CoTaskMemFree(block);
    }
};

using TaskMemory = std::unique_ptr<uint8_t, TaskMemoryFree>;

void Build(Armable& armable)
{
    armable.stream.calls.clear();
    const KeywordSelector selector{1, Language};
    uint8_t* block = nullptr;
    if (FAILED(armable.adapter.BuildArmingPatternData(&armable.stream, &selector, 1, &block)))
    {
        throw std::runtime_error("the pattern is not built");
    }
    const TaskMemory owner(block);
}

/// The language check's load, the thresholds' loads, the stream into a block and the block into task memory.
void LoadAndCopy(Armable& armable)
{
    LoadDocumentOnly(armable.configuration.Path());
    LoadDocumentAndThresholdsOnly(armable.configuration, Language);

    armable.stream.calls.clear();
    const std::unique_ptr<uint8_t[]> model(new uint8_t[ModelSize]);
    ULONG count = 0;
    if (FAILED(armable.stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr)) ||
        FAILED(armable.stream.Read(model.get(), ModelSize, &count)) || count != ModelSize)
    {
        throw std::runtime_error("the stream is not read");
    }
    const TaskMemory block(static_cast<uint8_t*>(CoTaskMemAlloc(sizeof(ArmingPattern) + ModelSize)));
    std::memcpy(block.get() + sizeof(ArmingPattern), model.get(), ModelSize);
}

} // namespace

void RegisterArmingPattern()
{
    const auto armable = std::make_shared<Armable>();
    Register({"BuildArmingPatternData, 1 MB user model", Goal, [armable] { Build(*armable); },
              [armable] {
                  LoadAndCopy(*armable);
              }});
}
