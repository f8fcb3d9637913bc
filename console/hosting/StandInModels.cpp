#include "console/hosting/StandInModels.h"

#include "console/text/CommandFailure.h"
#include "console/text/WriteWhole.h"

#include <cstring>

namespace velox::console
{

namespace
{

/// Whether the length is the one that the header says: the engine believes the header.
bool IsWhole(std::span<const uint8_t> blob)
{
    constexpr std::size_t HeaderSize = 16;
    constexpr std::size_t LengthOffset = 8;
    uint32_t length = 0;
    if (blob.size() >= HeaderSize)
    {
        std::memcpy(&length, blob.data() + LengthOffset, sizeof(length));
    }
    return length == blob.size() && length >= HeaderSize;
}

std::vector<uint8_t> ReadFile(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) ? ReadWhole(file) : std::vector<uint8_t>();
}

template <typename Model>
std::unique_ptr<Model> Read(const std::filesystem::path& file, engine::Status (*read)(const uint8_t*, Model*))
{
    const std::vector<uint8_t> blob = ReadFile(file);
    auto model = std::make_unique<Model>();
    return IsWhole(blob) && read(blob.data(), model.get()) == engine::Status::Success ? std::move(model) : nullptr;
}

} // namespace

StandInModels ReadStandInModels(const ConfiguredLanguage& language)
{
    return {Read(language.keyphraseModel, engine::ReadPhraseModel), Read(language.acousticModel, engine::ReadAcousticModel),
            Read(language.znormPopulation, engine::ReadPopulation)};
}

bool ReadWholePhraseModel(std::span<const uint8_t> bytes, engine::PhraseModel* model)
{
    return IsWhole(bytes) && engine::ReadPhraseModel(bytes.data(), model) == engine::Status::Success;
}

} // namespace velox::console
