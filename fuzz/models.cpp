// Models as bytes from anywhere. The input is made into a block of its own size whose header's length and checksum are right,
// since a reader can find out everything but a header that promises more than there is; what is read is used.
#include "engine/api/EngineSession.h"
#include "engine/models/Blob.h"
#include "tests/engine/support/TinyLanguage.h"

#include <array>

using namespace velox::engine;

namespace
{

using Bytes = std::vector<uint8_t>;

void PutU32(Bytes* blob, std::size_t offset, uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
    {
        (*blob)[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

/// Behind the first byte, which says what is done: whole new contents, or changes (place and byte) to a good model.
Bytes Contents(const Bytes& good, bool changes, std::span<const uint8_t> input)
{
    if (!changes)
    {
        Bytes blob(good.begin(), good.begin() + BlobHeader::Size);
        blob.insert(blob.end(), input.begin(), input.end());
        return blob;
    }
    Bytes blob = good;
    for (; input.size() >= 3; input = input.subspan(3))
    {
        const std::size_t place = (input[0] | std::size_t{input[1]} << 8U) % (blob.size() - BlobHeader::Size);
        blob[BlobHeader::Size + place] = input[2];
    }
    return blob;
}

void Seal(Bytes* blob)
{
    PutU32(blob, 8, static_cast<uint32_t>(blob->size()));
    PutU32(blob, 12, Crc32(std::span(*blob).subspan(BlobHeader::Size)));
    blob->shrink_to_fit();
}

/// Installs the model and lets it hear the phrase.
void Listen(const Bytes& blob, const EngineAttributes& attributes)
{
    static const std::vector<int16_t> audio = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
    EngineSession session(attributes);
    session.InitComponent(2);
    session.InitComponent(4);
    if (session.SetModel(blob.data()) != Status::Success)
    {
        return;
    }
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        session.FeedFrame(audio.data() + start, FrameSize);
    }
    // A look-ahead may be thousands of frames long.
    for (int i = 0; i < 50 && session.Flush() == Status::Success; ++i)
    {
    }
}

/// Enrolls with what could be read.
/// @param finish  whether a model is made of the take, too, which takes a hundred times as long
void Enroll(const EngineAttributes& attributes, bool finish)
{
    static const std::vector<int16_t> audio = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
    EngineSession session(attributes);
    session.InitComponent(2);
    session.InitComponent(4);
    if (session.StartEnrollment() != Status::Success)
    {
        return;
    }
    session.StartUtterance();
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        session.FeedFrame(audio.data() + start, FrameSize);
    }
    uint8_t* model = nullptr;
    if (session.FinalizeUtterance() == Status::Success && finish && session.FinalizeEnrollment(&model) == Status::Success)
    {
        session.SetModel(model);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

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
    const std::size_t kind = (data[0] >> 1U) % kinds.size();
    Bytes blob = Contents(*kinds[kind], (data[0] & 1U) != 0, std::span(data, size).subspan(1));
    if (kind == 1 && (data[0] & 8U) != 0)
    {
        // The model inside has a checksum of its own.
        const std::size_t inside = BlobHeader::Size + 4;
        const std::size_t length = WritePhraseModel(TinyLanguage::Phrase()).size();
        if (blob.size() >= inside + length)
        {
            PutU32(&blob, inside + 12, Crc32(std::span(blob).subspan(inside + BlobHeader::Size, length - BlobHeader::Size)));
        }
    }
    Seal(&blob);

    EngineAttributes attributes;
    attributes.logLevel = 0;
    attributes.SetAcousticModel(kind == 1 ? blob.data() : acoustic.data());
    attributes.SetPopulation(kind == 2 ? blob.data() : population.data());
    if (kind == 0)
    {
        Listen(blob, attributes);
    }
    else
    {
        Enroll(attributes, (data[0] & 0xF0U) == 0xF0U);
    }
    return 0;
}
