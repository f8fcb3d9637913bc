#include "console/hosting/ConfigurationFile.h"

#include "console/hosting/ConfigurationXml.h"
#include "console/text/Utf8Path.h"

#include <algorithm>
#include <fstream>
#include <locale>

namespace velox::console
{

namespace
{

std::string Text(const char* text)
{
    return text == nullptr ? "" : text;
}

/// As the library joins them; natively a backslash is a character of a file's name.
std::filesystem::path FileOf(const tinyxml2::XMLElement& language, const char* element, const std::string& directory)
{
    const tinyxml2::XMLElement* found = language.FirstChildElement(element);
    const char* name = found == nullptr ? nullptr : found->GetText();
    return name == nullptr ? std::filesystem::path() : PathFromUtf8(directory + "\\" + name);
}

ConfiguredLanguage ReadLanguage(const tinyxml2::XMLElement& element, const std::string& directory)
{
    ConfiguredLanguage language;
    language.id = static_cast<uint16_t>(element.UnsignedAttribute("id"));
    if (int threshold = 0; element.QueryIntAttribute("qualityThreshold", &threshold) == tinyxml2::XML_SUCCESS)
    {
        language.qualityThreshold = threshold;
    }
    language.keyphraseModel = FileOf(element, "keyphraseModel", directory);
    language.acousticModel = FileOf(element, "acousticModel", directory);
    language.znormPopulation = FileOf(element, "znormPopulation", directory);
    language.firmwareModel = FileOf(element, "fwBlob", directory);
    language.preDefinedThreshold = FileOf(element, "preDefinedKpdSensitivity", directory);
    language.userDefinedThreshold = FileOf(element, "userDefinedKpdSensitivity", directory);
    return language;
}

} // namespace

const ConfiguredLanguage* ConfigurationFile::Find(uint16_t language) const
{
    const auto found = std::find_if(languages.begin(), languages.end(),
                                    [&](const ConfiguredLanguage& configured) { return configured.id == language; });
    return found == languages.end() ? nullptr : &*found;
}

ConfigurationFile ReadConfigurationFile(const std::filesystem::path& file)
{
    tinyxml2::XMLDocument document;
    RequireConfigurationXml(file, &document);
    const tinyxml2::XMLElement* root = document.RootElement();
    ConfigurationFile configuration;
    const std::string directory = Text(root->Attribute("directory"));
    configuration.directory = PathFromUtf8(directory);
    configuration.constraints = PathFromUtf8(Text(root->Attribute("constraints")));
    for (const auto* element = root->FirstChildElement(); element != nullptr; element = element->NextSiblingElement())
    {
        configuration.languages.push_back(ReadLanguage(*element, directory));
    }
    return configuration;
}

std::optional<double> ReadThreshold(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    stream.imbue(std::locale::classic());
    double number = 0.0;
    return stream >> number ? std::optional(number) : std::nullopt;
}

} // namespace velox::console
