#include "tests/console/support/ToneProject.h"

#include "console/text/WriteWhole.h"
#include "engine/models/AcousticModel.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/TinyLanguage.h"

using namespace velox;

namespace
{

std::string LanguageElement(uint16_t language)
{
    const std::string id = std::to_string(language);
    return "<language id=\"" + id +
           "\" qualityThreshold=\"0\"><keyphraseModel>kp.bin</keyphraseModel><acousticModel>am.bin</acousticModel>"
           "<znormPopulation>zn.bin</znormPopulation><fwBlob>fw.bin</fwBlob><preDefinedKpdSensitivity>pre_" +
           id + ".txt</preDefinedKpdSensitivity><userDefinedKpdSensitivity>user_" + id +
           ".txt</userDefinedKpdSensitivity></language>";
}

} // namespace

ToneProject::ToneProject()
{
    Write("kp.bin", engine::WritePhraseModel(TinyLanguage::Phrase()));
    Write("am.bin", engine::WriteAcousticModel(TinyLanguage::Acoustic()));
    Write("zn.bin", engine::WritePopulation(TinyLanguage::Background()));
    Write("fw.bin", engine::WritePhraseModel(TinyLanguage::Phrase()));
    Write("pre_1033.txt", std::string("70"));
    Write("user_1033.txt", std::string("60"));
    Write("pre_1040.txt", std::string("80"));
    Write("user_1040.txt", std::string("65"));
    Write("constraints.txt", std::string("\n"));
    WriteConfiguration(LanguageElement(English));
}

std::string ToneProject::File(const std::string& name) const
{
    return folder.Path() + "\\" + name;
}

void ToneProject::AddItalian() const
{
    WriteConfiguration(LanguageElement(English) + LanguageElement(Italian));
}

std::string ToneProject::Record(const std::string& name, std::span<const float> samples) const
{
    SoundFile::Write(File(name), SoundFile::FloatWav(samples));
    return File(name);
}

void ToneProject::Write(const std::string& name, std::span<const uint8_t> bytes) const
{
    console::WriteWhole(File(name), bytes);
}

void ToneProject::Write(const std::string& name, const std::string& text) const
{
    console::WriteWhole(File(name), text);
}

std::vector<uint8_t> ToneProject::Read(const std::string& name) const
{
    return console::ReadWhole(File(name));
}

void ToneProject::WriteConfiguration(const std::string& languages) const
{
    Write("configuration.xml", "<configuration directory=\"" + folder.Path() + "\" constraints=\"" + File("constraints.txt") +
                                   "\">" + languages + "</configuration>");
}
