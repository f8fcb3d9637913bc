#include "console/hosting/Outputs.h"

#include "console/hosting/ConfigurationFile.h"
#include "console/text/Utf8Path.h"
#include "console/text/Words.h"
#include "firmware/BlockLayout.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <vector>

namespace velox::console
{

namespace
{

constexpr std::size_t LongestHead = 64;

std::vector<uint8_t> HeadOf(const std::filesystem::path& file)
{
    std::vector<uint8_t> head(LongestHead);
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char*>(head.data()), LongestHead);
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

bool IsPattern(std::span<const uint8_t> head)
{
    using firmware::PatternLayout;
    return head.size() >= PatternLayout::ModelOffset &&
           firmware::ReadUnsigned<uint32_t>(head, PatternLayout::SignatureOffset) == PatternLayout::Signature;
}

bool IsLogLine(std::string_view text)
{
    constexpr std::array<std::string_view, 6> Levels{"none ", "error ", "failure ", "warning ", "information ", "detail "};
    return std::ranges::any_of(Levels, [&](std::string_view level) { return text.starts_with(level); });
}

/// What a kind is called, and whether a file that begins so is one.
struct KindOfOutput
{
    OutputKind kind;
    std::string_view name;
    bool (*fits)(std::span<const uint8_t> head, uintmax_t size);
};
using Head = std::span<const uint8_t>;
constexpr std::array KindsOfOutput{
    KindOfOutput{OutputKind::Page, "report page",
                 [](Head head, uintmax_t) {
                     return AsText(head).starts_with("<!DOCTYPE html>");
                 }},
    KindOfOutput{OutputKind::UserModel, "user's model",
                 [](Head head, uintmax_t) {
                     return AsText(head).starts_with("VWOV");
                 }},
    KindOfOutput{OutputKind::Pattern, "arming block",
                 [](Head head, uintmax_t) {
                     return IsPattern(head);
                 }},
    KindOfOutput{OutputKind::ResultBlock, "result block",
                 [](Head head, uintmax_t size) {
                     return head.size() >= sizeof(uint32_t) &&
                            firmware::ReadUnsigned<uint32_t>(head, firmware::BlockHead::SizeOffset) == size;
                 }},
    KindOfOutput{OutputKind::Recording, "WAV recording",
                 [](Head head, uintmax_t) {
                     return AsText(head).starts_with("RIFF");
                 }},
    KindOfOutput{OutputKind::Log, "log of this program",
                 [](Head head, uintmax_t) {
                     return IsLogLine(AsText(head));
                 }},
    KindOfOutput{OutputKind::Configuration, "configuration file",
                 [](Head head, uintmax_t) {
                     return Trim(AsText(head)).starts_with('<') || AsText(head).starts_with("\xEF\xBB\xBF<");
                 }},
    KindOfOutput{OutputKind::Bundle, "support bundle", [](Head head, uintmax_t) {
                     return AsText(head).starts_with("velox-kws support bundle");
                 }}};

/// The inputs, and what those of them name that are configuration files.
std::vector<std::filesystem::path> WithNamedFiles(std::span<const std::filesystem::path> inputs)
{
    std::vector<std::filesystem::path> all(inputs.begin(), inputs.end());
    for (const std::filesystem::path& input : inputs)
    {
        if (Trim(AsText(HeadOf(input))).starts_with('<'))
        {
            try
            {
                const ConfigurationFile configuration = ReadConfigurationFile(input);
                all.push_back(configuration.constraints);
                for (const ConfiguredLanguage& language : configuration.languages)
                {
                    all.insert(all.end(), {language.keyphraseModel, language.acousticModel, language.znormPopulation,
                                           language.firmwareModel, language.preDefinedThreshold, language.userDefinedThreshold});
                }
            }
            catch (const CommandFailure&)
            {
                // Whoever needs it will say so.
            }
        }
    }
    return all;
}

bool AreTheSame(const std::filesystem::path& one, const std::filesystem::path& other)
{
    std::error_code error;
    return std::filesystem::equivalent(one, other, error) || (!one.empty() && one.lexically_normal() == other.lexically_normal());
}

void CheckOutput(const Output& output, std::span<const std::filesystem::path> inputs, std::span<const Output> others)
{
    const std::string name = Utf8(output.file);
    const KindOfOutput& kind = *std::ranges::find(KindsOfOutput, output.kind, &KindOfOutput::kind);
    const bool isInput = std::ranges::any_of(inputs, [&](const auto& input) { return AreTheSame(output.file, input); });
    const bool isOther = std::ranges::any_of(others, [&](const Output& other) { return AreTheSame(output.file, other.file); });
    if (isInput || isOther)
    {
        throw CommandFailure(ExitCode::Usage,
                             isInput
                                 ? fmt::format("{} is read by this command, and would be replaced by the {}.", name, kind.name)
                                 : fmt::format("{} would be written twice.", name),
                             "Name another file. Nothing was changed.");
    }
    std::error_code error;
    const uintmax_t size = std::filesystem::file_size(output.file, error);
    if (!error && size > 0 && !kind.fits(HeadOf(output.file), size))
    {
        throw CommandFailure(ExitCode::Usage, fmt::format("{} is there already and is no {}.", name, kind.name),
                             "Name another file, or remove this one. Nothing was changed.");
    }
}

} // namespace

void RefuseToReplace(const Context& context, std::span<const std::filesystem::path> inputs, std::span<const Output> outputs)
{
    const std::vector<std::filesystem::path> read = WithNamedFiles(inputs);
    std::vector<Output> written(outputs.begin(), outputs.end());
    written.push_back({context.page, OutputKind::Page});
    written.push_back({context.log.logFile, OutputKind::Log});
    std::erase_if(written, [](const Output& output) { return output.file.empty(); });
    for (std::size_t i = 0; i < written.size(); ++i)
    {
        CheckOutput(written[i], read, std::span(written).first(i));
    }
}

} // namespace velox::console
