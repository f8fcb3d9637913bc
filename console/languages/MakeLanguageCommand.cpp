#include "console/languages/MakeLanguageCommand.h"

#include "console/languages/MakeLanguage.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

constexpr double LeastAlarmsPerHour = 0.001;
constexpr double MostAlarmsPerHour = 50.0;
constexpr int MostBatches = 100'000;
constexpr int MostCopies = 100;

struct MakeLanguageOptions
{
    std::string language;
    std::string takes;
    std::vector<std::string> background;
    std::string folder;
    std::string configuration = "VeloxKwsConfig.xml";
    LanguageRequest request; ///< what needs no translation
};

LanguageRequest RequestOf(const MakeLanguageOptions& options)
{
    LanguageRequest request = options.request;
    request.language = ParseLanguage(options.language);
    request.takes = PathFromUtf8(options.takes);
    std::ranges::transform(options.background, std::back_inserter(request.background), PathFromUtf8);
    request.folder = PathFromUtf8(options.folder);
    request.configuration = PathFromUtf8(options.configuration);
    return request;
}

/// File names that every system and the library can open.
std::string CheckFileName(const std::string& name)
{
    const bool plain = std::ranges::all_of(name, [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
               letter == '-' || letter == '_';
    });
    return plain && !name.empty() ? "" : "use the letters a to z, digits, - and _";
}

} // namespace

void AddMakeLanguageCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("make-language", "Learn a key phrase from recordings and add it to a configuration");
    const auto options = std::make_shared<MakeLanguageOptions>();
    LanguageRequest& request = options->request;
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    command
        ->add_option(
            "--phrase", options->takes,
            "Recordings of the phrase, said once in each: a sub-folder for each voice, or files whose names begin with the "
            "voice's name, up to the first - or _")
        ->required()
        ->type_name("DIR");
    command->add_option("--background", options->background, "Recordings of other speech and of sounds, the more the better")
        ->required()
        ->type_name("DIR");
    command->add_option("--out", options->folder, "Folder for the language's files: the configuration's directory")
        ->required()
        ->type_name("DIR");
    command
        ->add_option("--config", options->configuration,
                     "Configuration file, made when it is not there; without it the environment's VELOX_KWS_CONFIG, else "
                     "VeloxKwsConfig.xml here")
        ->envname("VELOX_KWS_CONFIG")
        ->type_name("FILE");
    command->add_option("--false-alarms-per-hour", request.falseAlarmsPerHour, "What the thresholds aim at; default 0.5")
        ->check(CLI::Range(LeastAlarmsPerHour, MostAlarmsPerHour))
        ->type_name("NUMBER");
    command->add_option("--name", request.name, "In the files' names, kp_NAME.bin; default the language's id")
        ->check(CLI::Validator(CheckFileName, "", "name"))
        ->type_name("NAME");
    command
        ->add_option("--quality-threshold", request.qualityThreshold,
                     "Least quality of an enrollment recording, in dB above the noise; default 10, or what the language has")
        ->type_name("DB");
    command->add_option("--batches", request.batches, "Length of the learning, default 2500; fewer are faster and worse")
        ->check(CLI::Range(1, MostBatches))
        ->type_name("NUMBER");
    command->add_option("--copies", request.copies, "Noisy copies of each take, default 10")
        ->check(CLI::Range(1, MostCopies))
        ->type_name("NUMBER");
    command->add_flag("--replace", request.replace, "Put it in the place of the language with the same id, and of its files");
    command->footer(
        "  velox-kws make-language en-US --phrase takes --background other-speech --out models --config config.xml\n");
    commands.run[command] = [options](Context& context) {
        return MakeLanguage(RequestOf(*options), context);
    };
}

} // namespace velox::console
