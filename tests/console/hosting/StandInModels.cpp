#include "console/hosting/StandInModels.h"

#include "console/text/Utf8Path.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace StandInModelsTests
{

namespace console = velox::console;
namespace engine = velox::engine;

using Bytes = std::vector<uint8_t>;

/// Model files of the tones' language in a folder.
class StandInModels : public testing::Test
{
protected:
    StandInModels()
    {
        language.keyphraseModel = Write("kp.bin", engine::WritePhraseModel(TinyLanguage::Phrase()));
        language.acousticModel = Write("am.bin", engine::WriteAcousticModel(TinyLanguage::Acoustic()));
        language.znormPopulation = Write("zn.bin", engine::WritePopulation(TinyLanguage::Background()));
    }

    std::filesystem::path Write(const std::string& name, const Bytes& bytes) const
    {
        const std::string file = folder.Path() + "/" + name;
        WriteWholeFile(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        return console::PathFromUtf8(file);
    }

    TemporaryFolder folder;
    console::ConfiguredLanguage language;
};

TEST_F(StandInModels, AreReadByTheirPaths)
{
    const console::StandInModels models = console::ReadStandInModels(language);
    ASSERT_NE(models.phrase, nullptr);
    ASSERT_NE(models.acoustic, nullptr);
    ASSERT_NE(models.population, nullptr);
    EXPECT_EQ(engine::WritePhraseModel(*models.phrase), engine::WritePhraseModel(TinyLanguage::Phrase()));
    EXPECT_EQ(models.population->peaks.size(), TinyLanguage::Background().peaks.size());
}

TEST_F(StandInModels, WhatIsNoneOfTheStandInsIsLeftOut)
{
    Bytes damaged = engine::WritePhraseModel(TinyLanguage::Phrase());
    damaged.back() ^= 1U;
    const Bytes cases[]{{}, {'V', 'W'}, Bytes(100, 7), engine::WriteAcousticModel(TinyLanguage::Acoustic()), damaged};
    for (const Bytes& bytes : cases)
    {
        SCOPED_TRACE(bytes.size());
        Write("kp.bin", bytes);
        const console::StandInModels models = console::ReadStandInModels(language);
        EXPECT_EQ(models.phrase, nullptr);
        EXPECT_NE(models.acoustic, nullptr);
    }
}

TEST_F(StandInModels, AFileThatIsNotThereOrIsAFolderIsLeftOut)
{
    language.keyphraseModel.clear();
    language.acousticModel = console::PathFromUtf8(folder.Path());
    language.znormPopulation = console::PathFromUtf8(folder.Path() + "/none.bin");
    const console::StandInModels models = console::ReadStandInModels(language);
    EXPECT_EQ(models.phrase, nullptr);
    EXPECT_EQ(models.acoustic, nullptr);
    EXPECT_EQ(models.population, nullptr);
}

TEST_F(StandInModels, APhraseModelMustBeAsLongAsItsHeaderSays)
{
    Bytes bytes = engine::WritePhraseModel(TinyLanguage::Phrase());
    engine::PhraseModel model;
    EXPECT_EQ(console::ReadModel(bytes, &model), velox::engine::Status::Success);
    bytes.push_back(0);
    EXPECT_EQ(console::ReadModel(bytes, &model), velox::engine::Status::MalformedBlob);
    bytes.resize(bytes.size() - 2);
    EXPECT_EQ(console::ReadModel(bytes, &model), velox::engine::Status::MalformedBlob);
    EXPECT_EQ(console::ReadModel({}, &model), velox::engine::Status::MalformedBlob);
}

} // namespace StandInModelsTests
