// Models of the engine as bytes from anywhere. Their header's length and checksum are right, since a reader can find out
// everything but a header that promises more than there is; what is read is used.
#include "engine/api/EngineSession.h"
#include "fuzz/EditedBlob.h"
#include "fuzz/Target.h"
#include "tests/engine/support/TinyLanguage.h"

#include <algorithm>
#include <array>

using namespace velox::engine;

namespace
{

/// What the input's first byte says.
struct Plan
{
    explicit Plan(uint8_t byte)
        : changes((byte & 1U) != 0), kind((byte >> 1U) % 3U), sealsInside((byte & 8U) != 0), finishes((byte & 0xF0U) == 0xF0U)
    {
    }

    bool changes;     ///< to a good model; else its header and new contents
    std::size_t kind; ///< 0: firmware model, 1: acoustic model, 2: population
    bool sealsInside; ///< the model in an acoustic model, too
    bool finishes;    ///< an enrollment, which takes a hundred times as long
};

Bytes MakeBlob(const Bytes& good, const Plan& plan, std::span<const uint8_t> input)
{
    Bytes blob = good;
    if (plan.changes)
    {
        Edit(input, std::span(blob).subspan(BlobHeader::Size));
    }
    else
    {
        blob.resize(BlobHeader::Size);
        blob.insert(blob.end(), input.begin(), input.end());
    }
    const std::size_t inside = BlobHeader::Size + sizeof(uint32_t);
    static const std::size_t insideLength = WritePhraseModel(TinyLanguage::Phrase()).size();
    if (plan.kind == 1 && plan.sealsInside && blob.size() >= inside + insideLength)
    {
        Seal(std::span(blob).subspan(inside, insideLength));
    }
    Seal(blob);
    blob.shrink_to_fit();
    return blob;
}

void Hear(EngineSession& session)
{
    static const std::vector<int16_t> audio = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        session.FeedFrame(audio.data() + start, FrameSize);
        float score = 0.0F;
        uint32_t count = 1;
        if (session.GetScores(&score, &count) == Status::Success)
        {
            Expect(count == 1 && score >= 0.0F && score <= ScoreScale::Most);
        }
    }
}

/// Installs the model and lets it hear the phrase.
void Listen(const Bytes& blob, const EngineAttributes& attributes)
{
    EngineSession session(attributes);
    session.InitComponent(2);
    session.InitComponent(4);
    if (session.SetModel(blob.data()) != Status::Success)
    {
        return;
    }
    Hear(session);
    // A look-ahead may be thousands of frames long.
    for (int i = 0; i < 50 && session.Flush() == Status::Success; ++i)
    {
    }
}

/// Enrolls with what could be read.
void Enroll(const EngineAttributes& attributes, bool finishes)
{
    EngineSession session(attributes);
    session.InitComponent(2);
    session.InitComponent(4);
    if (session.StartEnrollment() != Status::Success)
    {
        return;
    }
    session.StartUtterance();
    Hear(session);
    uint8_t* model = nullptr;
    if (session.FinalizeUtterance() == Status::Success && finishes && session.FinalizeEnrollment(&model) == Status::Success)
    {
        Expect(session.SetModel(model) == Status::Success);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const Bytes firmware = WritePhraseModel(TinyLanguage::UserPhrase());
    static const Bytes acoustic = WriteAcousticModel(TinyLanguage::Acoustic());
    static const Bytes population = WritePopulation(TinyLanguage::Background());
    static const std::array<const Bytes*, 3> kinds{&firmware, &acoustic, &population};
    if (size == 0)
    {
        return 0;
    }
    const Plan plan(data[0]);
    const Bytes blob = MakeBlob(*kinds[plan.kind], plan, std::span(data, size).subspan(1));

    EngineAttributes attributes;
    attributes.logLevel = 0;
    attributes.SetAcousticModel(plan.kind == 1 ? blob.data() : acoustic.data());
    attributes.SetPopulation(plan.kind == 2 ? blob.data() : population.data());
    if (plan.kind == 0)
    {
        Listen(blob, attributes);
    }
    else
    {
        Enroll(attributes, plan.finishes);
    }
    return 0;
}
