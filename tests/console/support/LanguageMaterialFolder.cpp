#include "tests/console/support/LanguageMaterialFolder.h"

#include "console/text/Utf8Path.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/TinyLanguage.h"

using velox::console::PathFromUtf8;
using velox::console::Utf8;

LanguageMaterialFolder::LanguageMaterialFolder()
{
    const velox::engine::LanguageMaterial material = TinyLanguage::Material();
    for (const velox::engine::PhraseTake& take : material.takes)
    {
        Record("takes/" + take.voice + "/" + take.name + ".wav", take.samples);
    }
    for (std::size_t i = 0; i < material.background.size(); ++i)
    {
        Record("other/" + std::to_string(i) + ".wav", material.background[i]);
    }
}

std::string LanguageMaterialFolder::Path(const std::string& name) const
{
    return Utf8((PathFromUtf8(folder.Path()) / PathFromUtf8(name)).make_preferred());
}

void LanguageMaterialFolder::Record(const std::string& name, std::span<const float> samples) const
{
    const std::filesystem::path file = PathFromUtf8(Path(name));
    std::filesystem::create_directories(file.parent_path());
    SoundFile::Write(file, SoundFile::FloatWav(samples));
}

void LanguageMaterialFolder::AddVoices(int count) const
{
    for (uint64_t voice = 4; voice < static_cast<uint64_t>(4 + count); ++voice)
    {
        for (uint64_t take = 0; take < 2; ++take)
        {
            Record("takes/voice " + std::to_string(voice) + "/" + std::to_string(take) + ".wav",
                   TinyLanguage::SayPhrase({}, 10 * voice + take));
        }
    }
    for (int i = 0; i < 7; ++i)
    {
        const std::string name = std::to_string(i) + ".wav";
        std::filesystem::copy_file(PathFromUtf8(Path("other/" + name)), PathFromUtf8(Path("other/more-" + name)));
    }
}

velox::console::LanguageRequest LanguageMaterialFolder::Request() const
{
    velox::console::LanguageRequest request;
    request.language = 1033;
    request.takes = PathFromUtf8(Path("takes"));
    request.background = {Path("other")};
    request.folder = PathFromUtf8(Path("models"));
    request.configuration = PathFromUtf8(Path("config.xml"));
    request.training.batches = 2;
    request.training.copies = 1;
    request.training.batchSize = 8;
    return request;
}

bool LanguageMaterialFolder::HoldsOnlyMaterial() const
{
    return std::distance(std::filesystem::directory_iterator(PathFromUtf8(folder.Path())), {}) == 2;
}
