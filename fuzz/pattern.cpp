// Arming patterns of any bytes, and good ones with changes, for the simulated DSP: what it takes, it listens with.
#include "firmware/DspSimulator.h"
#include "fuzz/EditedBlob.h"
#include "fuzz/Target.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <algorithm>

using namespace velox::firmware;

namespace
{

/// What the input's first byte says.
struct Plan
{
    explicit Plan(uint8_t byte)
        : changes((byte & 1U) != 0), ofUser((byte & 2U) != 0), sealsModel((byte & 4U) != 0), sealsHead((byte & 8U) != 0),
          fault(static_cast<Fault>(byte % 7U == 6U ? 1U + (byte >> 4U) % FaultNames.size() : 0U))
    {
    }

    bool changes; ///< to a good pattern; else the input is the pattern
    bool ofUser;
    bool sealsModel; ///< its length and checksum are made right
    bool sealsHead;  ///< the head's two lengths are made right
    Fault fault;
};

Bytes MakePattern(const Plan& plan, std::span<const uint8_t> input)
{
    constexpr uint32_t Threshold = 60 * 256;
    static const Bytes ofUser = HandMadePattern::Make(TinyLanguage::UserPhrase(), Threshold);
    static const Bytes ofAnybody = HandMadePattern::Make(TinyLanguage::Phrase(), Threshold);
    Bytes block(input.begin(), input.end());
    if (plan.changes)
    {
        block = plan.ofUser ? ofUser : ofAnybody;
        Edit(input, block);
    }
    if (plan.sealsModel && block.size() >= PatternLayout::ModelOffset + velox::engine::BlobHeader::Size)
    {
        Seal(std::span(block).subspan(PatternLayout::ModelOffset));
    }
    if (plan.sealsHead && block.size() >= PatternLayout::ModelOffset)
    {
        WriteUnsigned(static_cast<uint32_t>(block.size()), PatternLayout::SizeOffset, block);
        WriteUnsigned(static_cast<uint32_t>(block.size() - PatternLayout::ModelOffset), PatternLayout::ModelSizeOffset, block);
    }
    return block;
}

/// The block of a detection is one that the library takes, unless a fault spoils it.
void CheckReport(const ResultBlock& report, const DspSimulator& dsp, uint32_t threshold, Fault fault)
{
    const std::span<const uint8_t> block = report.Bytes();
    Expect(!dsp.IsArmed());
    Expect(ReadUnsigned<uint32_t>(block, ResultLayout::SizeOffset) == block.size());
    Expect(block.size() == ResultLayout::Length || fault == Fault::TruncatedBlock);
    if (fault == Fault::None)
    {
        const uint32_t score = block[ResultLayout::ScoreOffset] * 256U + block[ResultLayout::ScoreOffset + 1];
        Expect(score >= threshold);
        const auto end = ReadUnsigned<uint64_t>(block, ResultLayout::KeywordEndOffset);
        Expect(ReadUnsigned<uint64_t>(block, ResultLayout::KeywordStartOffset) <= end);
        Expect(end <= PerformanceCounter{}.At(dsp.SamplesHeard()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const std::vector<float> recording = TinyLanguage::SayPhrase();
    if (size == 0)
    {
        return 0;
    }
    const Plan plan(data[0]);
    const Bytes block = MakePattern(plan, std::span(data, size).subspan(1));

    DspSimulator dsp(HandMadePattern::Detector);
    dsp.SetFault(plan.fault);
    const auto refusal = dsp.SetPattern(block);
    Expect(dsp.HasPattern() != refusal.has_value());
    Expect(dsp.Arm() == dsp.HasPattern());
    const uint32_t threshold = dsp.Threshold();
    std::span<const float> audio = recording;
    while (!audio.empty())
    {
        if (const auto report = dsp.Hear(&audio))
        {
            CheckReport(*report, dsp, threshold, plan.fault);
            dsp.Arm();
        }
    }
    Expect(dsp.SamplesHeard() == static_cast<int64_t>(recording.size()));
    return 0;
}
