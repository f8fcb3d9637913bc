#include "tests/support/TestConfiguration.h"

#include <filesystem>
#include <stdexcept>

TestConfiguration::TestConfiguration()
{
    std::filesystem::create_directory(Directory());
    WriteLanguages(LanguageElement("1033", 10) + LanguageElement("1040", 20));
    for (const std::string id : {"1033", "1040"})
    {
        WriteFile("kp_" + id + ".bin", "keyphrase " + id);
        WriteFile("am_" + id + ".bin", "acoustic " + id);
        WriteFile("zn_" + id + ".bin", "znorm " + id);
        WriteFile("fw_" + id + ".bin", "firmware " + id);
    }
    WriteFile("kpd_pre_1033.txt", "0.75\n");
    WriteFile("kpd_user_1033.txt", "0.5\n");
    WriteFile("kpd_pre_1040.txt", "1.25\n");
    WriteFile("kpd_user_1040.txt", "-1.3\n");
    WriteWholeFile(ConstraintsPath(), "memory=160k\nsecond line\n");
}

std::string TestConfiguration::Path() const
{
    return folder.Path() + "/configuration.xml";
}

std::string TestConfiguration::Directory() const
{
    return folder.Path() + "/models";
}

std::string TestConfiguration::ConstraintsPath() const
{
    return folder.Path() + "/constraints.txt";
}

void TestConfiguration::WriteXml(std::string_view text) const
{
    WriteWholeFile(Path(), text);
}

void TestConfiguration::WriteLanguages(std::string_view languageElements) const
{
    WriteXml("<keywords directory=\"" + Directory() + "\" constraints=\"" + ConstraintsPath() + "\">" +
             std::string(languageElements) + "</keywords>\n");
}

void TestConfiguration::ReplaceInXml(std::string_view piece, std::string_view replacement) const
{
    std::string text = ReadWholeFile(Path());
    const std::size_t position = text.find(piece);
    if (position == std::string::npos)
    {
        throw std::logic_error("the configuration file does not contain " + std::string(piece));
    }
    WriteXml(text.replace(position, piece.size(), replacement));
}

void TestConfiguration::WriteFile(const std::string& name, std::string_view bytes) const
{
    WriteWholeFile(Directory() + "\\" + name, bytes);
}

void TestConfiguration::RemoveFile(const std::string& name) const
{
    if (!std::filesystem::remove(Directory() + "\\" + name))
    {
        throw std::logic_error("there is no file " + name);
    }
}

std::string TestConfiguration::LanguageElement(const std::string& id, int qualityThreshold)
{
    return "<language id=\"" + id + "\" qualityThreshold=\"" + std::to_string(qualityThreshold) + "\">" + "<keyphraseModel>kp_" +
           id + ".bin</keyphraseModel>" + "<acousticModel>am_" + id + ".bin</acousticModel>" + "<znormPopulation>zn_" + id +
           ".bin</znormPopulation>" + "<fwBlob>fw_" + id + ".bin</fwBlob>" + "<preDefinedKpdSensitivity>kpd_pre_" + id +
           ".txt</preDefinedKpdSensitivity>" + "<userDefinedKpdSensitivity>kpd_user_" + id + ".txt</userDefinedKpdSensitivity>" +
           "</language>";
}
