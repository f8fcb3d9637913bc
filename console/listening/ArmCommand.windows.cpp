#include "console/listening/ArmCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/Outputs.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/Pattern.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "firmware/BlockLayout.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <array>
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

Report Arm(const ArmOptions& options, const Context& context)
{
    const std::array inputs{PathFromUtf8(options.detector.configuration), PathFromUtf8(options.model)};
    const std::filesystem::path output = PathFromUtf8(options.output);
    RefuseToReplace(context, inputs, std::array{Output{output, OutputKind::Pattern}});
    const uint16_t language = ParseLanguage(options.language);
    const bool isUserModel = !options.model.empty();
    Detector detector(options.detector, context.log);
    const auto stream = isUserModel ? OpenUserModel(inputs[1]) : EmptyStream();
    const ArmingAnswer answer = detector.Arm(stream.get(), language);
    answer.Require("Arming language " + LanguageText(language));
    if (isUserModel && !answer.UsedUserModel())
    {
        throw CommandFailure(ExitCode::BadInput, options.model + " holds no user model: it does not begin with VWOV.",
                             "Make one with velox-kws enroll, or leave --model out to arm everybody's model.");
    }
    const std::vector<uint8_t>& pattern = answer.pattern;
    WriteWhole(output, pattern);

    const std::size_t modelBytes = pattern.size() - firmware::PatternLayout::ModelOffset;
    Report report;
    Entry& block = report.results.emplace_back(options.output);
    block.facts = {
        {"file", options.output},
        {"language", language, "language", LanguageText(language)},
        {"model", isUserModel ? "user" : "predefined", "model",
         isUserModel ? "the user's, " + options.model : "everybody's, from the configuration"},
        {"modelBytes", modelBytes, "model's size", fmt::format("{} bytes", modelBytes)},
        {"threshold", ThresholdOf(pattern), "threshold",
         fmt::format("{:g} ({})", ThresholdOf(pattern), isUserModel ? "userDefinedKpdSensitivity" : "preDefinedKpdSensitivity")},
        {"bytes", pattern.size(), "size", fmt::format("{} bytes", pattern.size())}};
    if (const auto warning = SimulatorWarning(pattern))
    {
        block.remarks = {*warning};
    }
    report.verdict = "Written: " + options.output + ".";
    return report;
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
