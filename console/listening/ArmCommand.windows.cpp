#include "console/listening/ArmCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/PatternOrigin.h"
#include "console/text/FieldLine.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "firmware/BlockLayout.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

struct ArmOptions
{
    DetectorOptions detector;
    std::string language;
    std::string model;
    std::string output;
};

bool UsedUserModel(const ArmingAnswer& answer)
{
    return std::any_of(answer.lines.begin(), answer.lines.end(),
                       [](const LoggedLine& line) { return line.message == "[BuildArmingPatternData] Using user model."; });
}

ArmingAnswer BuildPattern(const ArmOptions& options, uint16_t language, const Context& context)
{
    Detector detector(options.detector, context.log);
    const auto stream = options.model.empty() ? EmptyStream() : OpenUserModel(PathFromUtf8(options.model));
    ArmingAnswer answer = detector.Arm(stream.get(), language);
    if (!answer.Succeeded())
    {
        throw ExplainFailure("Arming language " + LanguageText(language), answer.result, answer.lines);
    }
    if (!options.model.empty() && !UsedUserModel(answer))
    {
        throw CommandFailure(ExitCode::BadInput, options.model + " holds no user model: it does not begin with VWOV.",
                             "Make one with velox-kws enroll, or leave --model out to arm everybody's model.");
    }
    return answer;
}

Outcome Arm(const ArmOptions& options, const Context& context)
{
    const uint16_t language = ParseLanguage(options.language);
    const ArmingAnswer answer = BuildPattern(options, language, context);
    WriteWhole(PathFromUtf8(options.output), answer.pattern);

    const std::size_t modelBytes = answer.pattern.size() - firmware::PatternLayout::ModelOffset;
    const bool isUserModel = !options.model.empty();
    const std::string model = isUserModel ? "the user's, " + options.model : "everybody's, from the configuration";
    Outcome outcome;
    outcome.text = FieldLine("Language", LanguageText(language)) +
                   FieldLine("Model", fmt::format("{}, {} bytes", model, modelBytes)) +
                   FieldLine("Threshold", fmt::format("{:g} ({})", ThresholdOf(answer.pattern),
                                                      isUserModel ? "userDefinedKpdSensitivity" : "preDefinedKpdSensitivity")) +
                   FieldLine("Block", fmt::format("{} bytes", answer.pattern.size()));
    outcome.results.Add({{"file", options.output},
                         {"language", language},
                         {"model", isUserModel ? "user" : "predefined"},
                         {"modelBytes", modelBytes},
                         {"threshold", ThresholdOf(answer.pattern)},
                         {"bytes", answer.pattern.size()}});
    outcome.verdict = "Written: " + options.output + ".";
    return outcome;
}

} // namespace

void AddArmCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("arm", "Write the block that arms the firmware for a language");
    const auto options = std::make_shared<ArmOptions>();
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    command->add_option("--model", options->model, "The user's model, from velox-kws enroll; without it everybody's is armed")
        ->type_name("FILE");
    command->add_option("--out", options->output, "Where the block is written, exactly as the library returns it")
        ->required()
        ->type_name("FILE");
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws arm en-US --model jana.vwov --out pattern.bin\n");
    commands.run[command] = [options](Context& context) {
        return Arm(*options, context);
    };
}

} // namespace velox::console
