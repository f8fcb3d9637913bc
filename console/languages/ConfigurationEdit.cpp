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

/// The language's element, or null. Refuses files that another language uses, too: it would get this one's models.
XMLElement* FindLanguage(XMLElement* root, const LanguageEntry& entry)
{
    XMLElement* found = nullptr;
    for (XMLElement* other = root->FirstChildElement(); other != nullptr; other = other->NextSiblingElement())
    {
        const unsigned id = other->UnsignedAttribute("id");
        if (id == entry.id)
        {
            found = found == nullptr ? other : found;
            continue;
        }
        for (const auto& [element, name] : entry.files)
        {
            const XMLElement* file = other->FirstChildElement(element.c_str());
            if (file != nullptr && file->GetText() != nullptr && file->GetText() == name)
            {
                Fail(fmt::format("Language {} uses the file {}, too, and would get the new models.",
                                 LanguageText(static_cast<uint16_t>(id)), name),
                     "Choose other names for the files with --name.");
            }
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
        (file != nullptr ? file : language->InsertNewChildElement(element.c_str()))->SetText(name.c_str());
    }
}

} // namespace

ConfigurationEdit AddLanguage(const std::filesystem::path& configuration, const std::filesystem::path& directory,
                              const LanguageEntry& entry, bool replace)
{
    tinyxml2::XMLDocument document;
    if (std::filesystem::exists(configuration))
    {
        RequireConfigurationXml(configuration, &document);
    }
    else
    {
        document.InsertEndChild(document.NewDeclaration());
        document.InsertEndChild(document.NewElement("keywords"));
    }
    XMLElement* root = document.RootElement();
    CheckDirectory(*root, configuration, directory);
    XMLElement* const language = FindLanguage(root, entry);
    const bool replaces = language != nullptr;
    if (replaces && !replace)
    {
        Fail(fmt::format("{} has the language {} already.", Utf8(configuration), LanguageText(entry.id)),
             "Add --replace to put the new one in its place.");
    }
    // The library puts file names together with a backslash, and opens the constraints by the path as it is.
    for (const auto& [name, path] : {std::pair("directory", directory), std::pair("constraints", directory / "constraints.txt")})
    {
        if (root->Attribute(name) == nullptr)
        {
            root->SetAttribute(name, Utf8(path).c_str());
        }
    }
    Fill(replaces ? language : root->InsertNewChildElement("language"), entry);
    tinyxml2::XMLPrinter printer;
    document.Print(&printer);
    return {printer.CStr(), PathFromUtf8(root->Attribute("constraints")), replaces};
}

} // namespace velox::console
