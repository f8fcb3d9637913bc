#include "console/languages/ConfigurationEdit.h"

#include "console/hosting/ConfigurationXml.h"
#include "console/text/CommandFailure.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"

#include <fmt/format.h>

namespace velox::console
{

namespace
{

using tinyxml2::XMLElement;

[[noreturn]] void Fail(const std::string& message, const std::string& fix)
{
    throw CommandFailure(ExitCode::BadConfiguration, message, fix);
}

void Load(const std::filesystem::path& file, tinyxml2::XMLDocument* document)
{
    if (std::filesystem::exists(file))
    {
        RequireConfigurationXml(file, document);
        return;
    }
    document->InsertEndChild(document->NewDeclaration());
    document->InsertEndChild(document->NewElement("keywords"));
}

void CheckDirectory(const XMLElement& root, const std::filesystem::path& configuration, const std::filesystem::path& directory)
{
    const char* named = root.Attribute("directory");
    std::error_code error;
    if (named != nullptr && PathFromUtf8(named).lexically_normal() != directory &&
        !std::filesystem::equivalent(PathFromUtf8(named), directory, error))
    {
        Fail(fmt::format("The files of all languages lie in one folder: {} names {}, not {}.", Utf8(configuration), named,
                         Utf8(directory)),
             fmt::format("Use --out \"{}\", or another configuration file.", named));
    }
}

/// Others would get this language's models.
void CheckNotShared(const XMLElement& other, const LanguageEntry& entry)
{
    for (const auto& [element, name] : entry.files)
    {
        const XMLElement* file = other.FirstChildElement(element.c_str());
        if (file != nullptr && file->GetText() != nullptr && file->GetText() == name)
        {
            Fail(fmt::format("Language {} uses the file {}, too, and would get the new models.",
                             LanguageText(static_cast<uint16_t>(other.UnsignedAttribute("id"))), name),
                 "Choose other names for the files with --name.");
        }
    }
}

/// @return null when the language is not there
XMLElement* FindLanguage(XMLElement* root, const LanguageEntry& entry)
{
    XMLElement* found = nullptr;
    for (XMLElement* element = root->FirstChildElement(); element != nullptr; element = element->NextSiblingElement())
    {
        if (element->UnsignedAttribute("id") != entry.id)
        {
            CheckNotShared(*element, entry);
        }
        else if (found == nullptr)
        {
            found = element;
        }
    }
    return found;
}

void Fill(XMLElement* language, const LanguageEntry& entry)
{
    language->SetAttribute("id", static_cast<unsigned>(entry.id));
    if (entry.qualityThreshold || language->Attribute("qualityThreshold") == nullptr)
    {
        language->SetAttribute("qualityThreshold", entry.qualityThreshold.value_or(DefaultQualityThreshold));
    }
    for (const auto& [element, name] : entry.files)
    {
        XMLElement* file = language->FirstChildElement(element.c_str());
        if (file == nullptr)
        {
            file = language->GetDocument()->NewElement(element.c_str());
            language->InsertEndChild(file);
        }
        file->SetText(name.c_str());
    }
}

/// The library puts file names together with a backslash, and opens the constraints by the path as it is.
void SetFolders(XMLElement* root, const std::filesystem::path& directory)
{
    const std::pair<const char*, std::filesystem::path> attributes[]{{"directory", directory},
                                                                     {"constraints", directory / "constraints.txt"}};
    for (const auto& [name, value] : attributes)
    {
        if (root->Attribute(name) == nullptr)
        {
            root->SetAttribute(name, Utf8(value).c_str());
        }
    }
}

} // namespace

ConfigurationEdit AddLanguage(const std::filesystem::path& configuration, const std::filesystem::path& directory,
                              const LanguageEntry& entry, bool replace)
{
    tinyxml2::XMLDocument document;
    Load(configuration, &document);
    XMLElement* root = document.RootElement();
    CheckDirectory(*root, configuration, directory);
    XMLElement* language = FindLanguage(root, entry);
    const bool replaces = language != nullptr;
    if (replaces && !replace)
    {
        Fail(fmt::format("{} has the language {} already.", Utf8(configuration), LanguageText(entry.id)),
             "Add --replace to put the new one in its place.");
    }
    if (!replaces)
    {
        language = document.NewElement("language");
        root->InsertEndChild(language);
    }
    SetFolders(root, directory);
    Fill(language, entry);
    tinyxml2::XMLPrinter printer;
    document.Print(&printer);
    return {printer.CStr(), PathFromUtf8(root->Attribute("constraints")), replaces};
}

} // namespace velox::console
