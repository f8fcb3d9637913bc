// A configuration file of any bytes, as the console's doctor checks it: what it says must be what the library does. The files
// that the configuration may name lie as for the target configuration, whose seeds these are.
#include "console/doctor/ConfigurationCheck.h"
#include "fuzz/Target.h"
#include "tests/support/ReaderTest.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace
{

using velox::console::ConfigurationCheck;
using velox::console::Operation;

/// Whether doctor says that an operation fails for a language.
bool SaysThatFails(const ConfigurationCheck& check, Operation operation, uint16_t language)
{
    return std::ranges::any_of(check.findings, [&](const velox::console::Finding& finding) {
        return std::ranges::any_of(finding.failures, [&](const velox::console::Failure& failure) {
            return failure.operation == operation && failure.language.value_or(language) == language;
        });
    });
}

/// What the library's arming and parsing need of the configuration.
void CheckLanguage(ConfigurationReader& reader, const ConfigurationCheck& check, uint16_t language)
{
    bool supported = false;
    Expect(reader.IsLanguageSupported(language, &supported) == S_OK && supported);
    VELOX_WOV_DETECTION_PARAMETERS parameters{};
    const bool parses = reader.GetDetectionParameters(language, &parameters) == S_OK;
    Expect(parses != SaysThatFails(check, Operation::Parsing, language));
    uint8_t* model = nullptr;
    uint32_t size = 0;
    const bool arms = parses && reader.GetPredefinedModel(language, &model, &size) == S_OK;
    delete[] model;
    Expect(arms != SaysThatFails(check, Operation::Arming, language));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const TestConfiguration configuration;
    static RecordingLogger logger;
    static ConfigurationReader reader(configuration.Path(), &logger);
    logger.keepLines = false;
    std::filesystem::current_path(std::filesystem::path(configuration.Path()).parent_path());
    const std::string_view xml(reinterpret_cast<const char*>(data), size);
    if (xml.find("/dev") != std::string_view::npos)
    {
        return -1; // Reading a device may never end.
    }
    configuration.WriteXml(xml);
    const ConfigurationCheck check = velox::console::CheckConfiguration(configuration.Path());
    uint32_t count = 0;
    Expect(check.usable == (reader.GetLanguagesCount(&count) == S_OK));
    for (const uint16_t language : check.languages)
    {
        CheckLanguage(reader, check, language);
    }
    Expect(!ReportOf(check.findings, check.languages).verdict.empty());
    return 0;
}
