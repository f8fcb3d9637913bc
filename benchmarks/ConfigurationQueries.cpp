#include "benchmarks/Floors.h"
#include "benchmarks/Measurement.h"
#include "benchmarks/SilentLogger.h"
#include "library/configuration/ConfigurationReader.h"
#include "tests/support/TestConfiguration.h"

#include <stdexcept>

namespace
{

/// Every load that the query needs, plus a tenth.
constexpr double Goal = 1.10;

constexpr uint16_t LastLanguage = 1033;

/// A configuration file whose last language is LastLanguage, so that a query passes over all the others.
struct Languages
{
    explicit Languages(int count)
    {
        std::string elements;
        for (int other = 1; other < count; ++other)
        {
            elements += TestConfiguration::LanguageElement(std::to_string(LastLanguage + other), 10);
        }
        configuration.WriteLanguages(elements + TestConfiguration::LanguageElement(std::to_string(LastLanguage), 10));
    }

    TestConfiguration configuration;
    SilentLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};

void AskIsLanguageSupported(Languages& languages)
{
    bool supported = false;
    if (FAILED(languages.reader.IsLanguageSupported(LastLanguage, &supported)) || !supported)
    {
        throw std::runtime_error("the language is not found");
    }
}

void AskGetDetectionParameters(Languages& languages)
{
    VELOX_WOV_DETECTION_PARAMETERS parameters{};
    if (FAILED(languages.reader.GetDetectionParameters(LastLanguage, &parameters)) || parameters.qualityThreshold != 10)
    {
        throw std::runtime_error("the detection parameters are not found");
    }
}

} // namespace

void RegisterConfigurationQueries()
{
    for (const int count : {1, 20, 200})
    {
        const auto languages = std::make_shared<Languages>(count);
        const std::string suffix = ", " + std::to_string(count) + (count == 1 ? " language" : " languages");
        Register({"IsLanguageSupported" + suffix, Goal, [languages] { AskIsLanguageSupported(*languages); },
                  [languages] {
                      LoadDocumentOnly(languages->configuration.Path());
                  }});
        Register({"GetDetectionParameters" + suffix, Goal, [languages] { AskGetDetectionParameters(*languages); },
                  [languages] {
                      LoadDocumentAndThresholdsOnly(languages->configuration, LastLanguage);
                  }});
    }
}
