#include "console/doctor/Bundle.h"

#include "console/doctor/FileCheck.h"
#include "console/inspect/ThresholdText.h"
#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/Words.h"
#include "console/text/WriteWhole.h"
#include "engine/models/Blob.h"

#include <fmt/format.h>

#include <utf8.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::string_view BundleHead =
    "velox-kws support bundle\n\n"
    "This text holds: the versions of program and Windows, what doctor found, the configuration file's text, the registry\n"
    "settings, where engine and library lie, sizes and checksums of the files that the configuration names, and the end of the\n"
    "log. It names folders and files of this computer. No recording, no voice and nothing of what a model holds is in it.\n";

std::string BundleSection(std::string_view title, const std::string& text)
{
    return fmt::format("\n== {} ==\n\n{}{}", title, text, text.ends_with('\n') ? "" : "\n");
}

std::string FindingsListing(const Report& report)
{
    std::string text;
    for (const Entry& entry : report.results)
    {
        text += fmt::format("{}: {}\n    {}\n", entry.status, entry.title, entry.facts.front().text);
        for (const Remark& remark : entry.remarks)
        {
            text += fmt::format("    {}{}{}\n", remark.text, remark.fix.empty() ? "" : "\n    fix: ", remark.fix);
        }
    }
    return text + report.verdict;
}

/// The text of what begins as XML, in whatever encoding: anything else could be a recording or a model.
std::string ConfigurationText(const std::filesystem::path& file)
{
    constexpr std::size_t Longest = 256U << 10U;
    try
    {
        const std::vector<uint8_t> bytes = ReadWhole(file);
        std::string text(AsText(bytes).substr(0, Longest));
        if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        {
            std::erase(text, '\0'); // every letter of UTF-16 has one
        }
        text.resize(std::min(text.find('\0'), text.size())); // as the parser: a block that begins with '<' is not shown
        const std::size_t begin = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF\xFE\xFF");
        return begin < text.size() && text[begin] == '<'
                   ? text
                   : fmt::format("{}; not shown, since it does not begin as XML.", Counted(bytes.size(), "byte"));
    }
    catch (const CommandFailure& failure)
    {
        return failure.what();
    }
}

/// Size and checksum, and what kind of file it is; of a threshold the number.
std::string FileLine(const ConfiguredFile& named)
{
    const NamedFile file = ReadNamedFile(named.path);
    const ThresholdText threshold = ReadThresholdText(AsText(file.bytes));
    const std::string size = Counted(file.size, "byte");
    const std::string what = named.element == "constraints" ? ""
                             : !named.element.ends_with("KpdSensitivity")
                                 ? fmt::format(", {}", FileKindName(Inspect(file.bytes).kind))
                             : threshold.isNumber ? ", threshold " + Q8Text(threshold.q8)
                                                  : ", no number";
    return fmt::format("{} {}: {}\n", named.element, named.path,
                       !file.readable ? WhyNotReadable(named.path).why
                       : file.size > NamedFile::LargestInspected
                           ? size
                           : fmt::format("{}, CRC-32 0x{:08X}{}", size, engine::Crc32(file.bytes), what));
}

std::string DllLine(const DllFacts& dll)
{
    return fmt::format("{}: {}, version {}, {}\n", dll.name, dll.path.empty() ? "not found" : dll.path,
                       dll.version.empty() ? "unknown" : dll.version, dll.loaded ? "loaded" : "not loaded: " + dll.loadError);
}

std::string SettingsListing(const RegistrySettings& settings)
{
    std::string text = settings.keyReadable ? "" : "The settings key is not there, or may not be read.\n";
    for (const RegistryValue& value : settings.values)
    {
        text += RegistryText(value) + "\n";
    }
    for (const std::string& name : settings.valuesOf32Bit)
    {
        text += name + " in the 32-bit view\n";
    }
    return text;
}

std::string LastLines(const std::filesystem::path& file)
{
    constexpr int MostLines = 200;
    const std::vector<uint8_t> bytes = ReadWhole(file);
    const std::string_view text = AsText(bytes);
    std::size_t begin = text.size();
    for (int lines = 0; lines <= MostLines && begin > 0 && begin != text.npos; ++lines)
    {
        begin = text.rfind('\n', begin - 1);
    }
    return std::string(text.substr(begin == text.npos || begin == 0 ? 0 : begin + 1));
}

} // namespace

std::string BundleText(const BundleContents& contents)
{
    std::string text(BundleHead);
    text += BundleSection("Versions", fmt::format("velox-kws {}\n{}\n{}{}", VELOX_VERSION, contents.system,
                                                  DllLine(contents.engine.engine), DllLine(contents.engine.library)));
    text += BundleSection("Findings", FindingsListing(contents.report));
    text += BundleSection("Configuration " + Utf8(contents.configuration), ConfigurationText(contents.configuration));
    std::string files;
    for (const ConfiguredFile& file : contents.files)
    {
        files += FileLine(file);
    }
    text += BundleSection("Files", files);
    text += BundleSection("Registry", SettingsListing(contents.settings));
    for (const std::filesystem::path& log : contents.logs)
    {
        std::error_code error;
        if (std::filesystem::is_regular_file(log, error))
        {
            text += BundleSection("Log " + Utf8(log), LastLines(log));
        }
    }
    return utf8::replace_invalid(text);
}

} // namespace velox::console
