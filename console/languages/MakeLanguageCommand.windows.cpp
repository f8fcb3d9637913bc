#include "console/languages/MakeLanguageCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/NarrowPath.h"
#include "console/hosting/UserModelStream.h"
#include "console/languages/MakeLanguage.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

struct MakeLanguageOptions
{
    std::string language;
    DetectorOptions detector;
    LanguageRequest request;
};

/// The library opens the configuration by its narrow name, and the files by the configuration's bytes, which are UTF-8, as one.
void CheckPaths(const LanguageRequest& request)
{
    const std::filesystem::path folder = std::filesystem::absolute(request.folder);
    const bool folderOpens = NarrowPath(folder) == Utf8(folder);
    if (!folderOpens || !NarrowPath(request.configuration))
    {
        throw CommandFailure(ExitCode::BadConfiguration,
                             fmt::format("The library cannot open {}: its code page lacks letters of this path.",
                                         Utf8(folderOpens ? request.configuration : folder)),
                             "Choose a folder with a plain name.");
    }
}

/// A take may be refused: a short training does not promise more.
void UseLanguage(const DetectorOptions& options, uint16_t language, std::span<const float> take, const LogOptions& log)
{
    Detector detector(options, log);
    const Answer verified = detector.Verify(language, take);
    if (std::ranges::find(verified.lines, VeloxLogLevel::Error, &LoggedLine::level) != verified.lines.end())
    {
        verified.Require("Verifying a take");
    }
    detector.Arm(EmptyStream().get(), language).Require("Arming language " + LanguageText(language));
}

Report Make(const MakeLanguageOptions& options, Context& context)
{
    LanguageRequest request = options.request;
    request.language = ParseLanguage(options.language);
    request.configuration = PathFromUtf8(options.detector.configuration);
    CheckPaths(request);
    return MakeLanguage(request, context, [&](const LanguageRequest& written, std::span<const float> take) {
        UseLanguage(options.detector, written.language, take, context.log);
    });
}

/// File names that every system and the library can open.
std::string CheckFileName(const std::string& name)
{
    constexpr const char* Plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
    return !name.empty() && name.find_first_not_of(Plain) == std::string::npos ? "" : "use the letters a to z, digits, - and _";
}

} // namespace

void AddMakeLanguageCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("make-language", "Learn a key phrase from recordings and add it to a configuration");
    const auto options = std::make_shared<MakeLanguageOptions>();
    LanguageRequest& request = options->request;
    const auto addFolder = [command](const char* name, std::filesystem::path* folder, const char* help) {
        const auto set = [folder](const std::string& text) {
            *folder = PathFromUtf8(text);
        };
        command->add_option_function<std::string>(name, set, help)->required()->type_name("DIR");
    };
    const auto addNumber = [command](const char* name, auto* number, auto least, auto most, const char* help) {
        command->add_option(name, *number, help)->check(CLI::Range(least, most))->type_name("NUMBER");
    };
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    addFolder("--phrase", &request.takes,
              "Recordings of the phrase, said once in each: a sub-folder for each voice, or files whose names begin with the "
              "voice's name, up to the first - or _");
    command->add_option("--background", request.background, "Recordings of other speech and of sounds, the more the better")
        ->required()
        ->type_name("DIR");
    addFolder("--out", &request.folder, "Folder for the language's files: the configuration's directory");
    AddDetectorOptions(command, &options->detector);
    command->remove_option(command->get_option("--through")); // what is made is tried with the library itself
    addNumber("--false-alarms-per-hour", &request.training.falseAlarmsPerHour, 0.001, 50.0,
              "What the thresholds aim at; default 0.5");
    command->add_option("--name", request.name, "In the files' names, kp_NAME.bin; default the language's id")
        ->check(CLI::Validator(CheckFileName, "", "name"))
        ->type_name("NAME");
    command
        ->add_option("--quality-threshold", request.qualityThreshold,
                     "Least quality of an enrollment recording, in dB above the noise; default 10, or what the language has")
        ->type_name("DB");
    addNumber("--batches", &request.training.batches, 1, 100'000,
              "Length of the learning, default 2500; fewer are faster and worse");
    addNumber("--copies", &request.training.copies, 1, 100, "Noisy copies of each take, default 10");
    command->add_flag("--replace", request.replace, "Put it in the place of the language with the same id, and of its files");
    commands.AddPageOption(command);
    command->footer(
        "  velox-kws make-language en-US --phrase takes --background other-speech --out models --config config.xml\n");
    commands.run[command] = [options](Context& context) {
        return Make(*options, context);
    };
}

} // namespace velox::console
