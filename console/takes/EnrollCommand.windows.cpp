#include "console/takes/EnrollCommand.h"

#include "console/audio/MicrophoneCommands.h"
#include "console/audio/PortAudioMicrophone.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/UserModelStream.h"
#include "console/takes/LiveTakes.h"
#include "console/takes/TakeComparison.h"
#include "console/takes/VerifyCommand.h"
#include "console/text/Interruption.h"
#include "console/text/LanguageName.h"
#include "console/text/StatusText.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"
#include "engine/enrollment/TakeReview.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

struct EnrollOptions
{
    TakeOptions takes;
    std::string model;
    bool skipRefused = false;
    std::optional<std::string> microphone{}; ///< asked in place of files: a part of its name, or empty
    TakeRequest request;
};

std::vector<Output> OutputsOf(const EnrollOptions& options)
{
    std::vector<Output> outputs{{PathFromUtf8(options.model), OutputKind::UserModel}};
    for (std::size_t take = 1; !options.request.folder.empty() && take <= options.request.count; ++take)
    {
        outputs.push_back({PathFromUtf8(TakeFile(options.request, take)), OutputKind::Recording});
    }
    return outputs;
}

/// One run of the command, step by step. What was found is kept, whatever fails behind it.
class EnrollmentRun
{
public:
    EnrollmentRun(const EnrollOptions& enrollOptions, const Context& commandContext)
        : options(enrollOptions), context(commandContext), verifier(options.takes, context, OutputsOf(options))
    {
    }

    Report Run()
    {
        try
        {
            return Enroll();
        }
        catch (const CommandFailure& failure)
        {
            if (takes.empty())
            {
                throw;
            }
            return Failed(Conclude("No model was made." + Names(" Record again: ", comparison.again)), failure);
        }
    }

private:
    Report Enroll()
    {
        if (options.microphone)
        {
            AskForTakes();
        }
        else
        {
            verifier.Verify(context.progress, &takes);
        }
        comparison = CompareTakes(takes, verifier.models);
        const std::size_t accepted = NumbersOf(takes, true).size();
        if (options.skipRefused ? accepted == 0 : accepted < takes.size())
        {
            return Conclude("");
        }
        Train();
        WriteWhole(PathFromUtf8(options.model), model);
        return ConcludeTrained();
    }

    void AskForTakes()
    {
        const auto open = [this] {
            return OpenMicrophone(*options.microphone);
        };
        const auto judge = [this](const std::string& name, Audio audio) {
            return verifier.Judge(name, std::move(audio));
        };
        RecordTakes(options.request, open, judge, &context.progress, &takes);
    }

    /// @throws CommandFailure when there is no model
    void Train()
    {
        StopIfInterrupted();
        context.progress.Begin("Training");
        std::vector<std::span<const float>> recordings;
        for (const std::size_t take : NumbersOf(takes, true))
        {
            recordings.emplace_back(takes[take].audio.samples);
        }
        if (recordings.size() == 1)
        {
            comparison.remarks.push_back({Tone::Note, "OneTake", "one take alone: the model learns one way of saying the phrase",
                                          "Three takes and more are best."});
        }
        const auto stream = EmptyStream();
        const Answer answer = verifier.detector.Train(stream.get(), verifier.language, recordings);
        NameLeftOutTakes(answer);
        answer.Require("Training");
        // A model that the library cannot arm with must not replace one that it can.
        const ArmingAnswer armed = verifier.detector.Arm(stream.get(), verifier.language);
        armed.Require("Arming with the new model");
        if (!armed.usedUserModel)
        {
            throw CommandFailure(ExitCode::LibraryFailure, "The library does not take the new model for a user's.",
                                 "Is the VeloxWovSDK.dll beside the program the right one?");
        }
        model = Content(stream.get());
    }

    /// The library goes on without a take that the engine refuses: nobody would know.
    void NameLeftOutTakes(const Answer& answer)
    {
        const std::vector<LeftOutTake> leftOutTakes = FindLeftOutTakes(answer.lines);
        if (!answer.Succeeded() && !leftOutTakes.empty())
        {
            comparison.again.clear(); // those that made it fail are named alone
        }
        for (const LeftOutTake& leftOut : leftOutTakes)
        {
            const std::size_t take = NumbersOf(takes, true).at(leftOut.index);
            takes[take].remarks.push_back(
                {Tone::Warning, "LeftOut",
                 "left out of the training: the engine reports " + EngineStatusText(leftOut.engineStatus),
                 "Record it again, as clearly as the others."});
            comparison.again.push_back(take);
        }
    }

    /// All that was found.
    /// @param verdict  what became of the model; empty when none was to be made of these takes
    Report Conclude(const std::string& verdict) const
    {
        Report report = VerificationReport(verifier.language, takes);
        report.verdict = verdict.empty() ? report.verdict + " No model was made." : verdict;
        report.remarks = comparison.remarks;
        for (const Remark& remark : report.remarks)
        {
            report.verdict += " Note: " + remark.text + ".";
        }
        return report;
    }

    Report ConcludeTrained() const
    {
        const std::size_t used = NumbersOf(takes, true).size();
        const std::optional<std::size_t> heard = CountHeard();
        Report report = Conclude(fmt::format("Enrolled: {} of {} from {}.{}{}", options.model, LanguageText(verifier.language),
                                             Counted(used, "take"), Names(" Refused and left out: ", NumbersOf(takes, false)),
                                             Names(" Better to record again: ", comparison.again)));
        report.exitCode = ExitCode::Success;
        report.facts.insert(report.facts.end(),
                            {{"model", options.model, "model", options.model},
                             {"bytes", model.size(), "size", Counted(model.size(), "byte")},
                             {"takes", used, "takes", std::to_string(used)},
                             {"takesHeard", heard, "hears", heard ? fmt::format("{} of the {} takes", *heard, used) : ""}});
        return report;
    }

    /// How many of the takes the new model would have heard; nothing for a model of another engine.
    std::optional<std::size_t> CountHeard() const
    {
        const std::optional<double> threshold = ReadThreshold(verifier.configured.userDefinedThreshold);
        engine::PhraseModel made;
        if (!threshold || ReadModel(model, &made) != engine::Status::Success)
        {
            return std::nullopt;
        }
        return static_cast<std::size_t>(std::ranges::count_if(takes, [&](const Take& take) {
            const auto phrase = take.accepted ? engine::ReviewTake(&made, take.audio.samples).phrase : std::nullopt;
            return phrase && static_cast<double>(phrase->score) > *threshold;
        }));
    }

    /// Nothing without a take to name.
    std::string Names(const std::string& before, std::vector<std::size_t> numbers) const
    {
        return numbers.empty() ? "" : before + Joined(NamesOf(takes, std::move(numbers))) + ".";
    }

    const EnrollOptions& options;
    const Context& context;
    TakeVerifier verifier;
    std::vector<Take> takes;
    TakeComparison comparison;
    std::vector<uint8_t> model;
};

} // namespace

void AddEnrollCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command =
        app.add_subcommand("enroll", "Train a user's model from recordings of the key phrase, or from a microphone");
    const auto options = std::make_shared<EnrollOptions>();
    CLI::Option* files = AddTakeOptions(
        command, commands, "Recordings of one person, each with the phrase once, or folders of them; three or more are best",
        &options->takes);
    CLI::Option* microphone = AddMicrophoneOption(command, files, &options->microphone);
    command->add_option("--takes", options->request.count, "How many takes the microphone is asked for; default 3")
        ->needs(microphone)
        ->check(CLI::Range(1, 16))
        ->type_name("NUMBER");
    command->add_option("--save-takes", options->request.folder, "Folder for the takes from the microphone, take-1.wav and so on")
        ->needs(microphone)
        ->type_name("DIR");
    command->add_option("--model", options->model, "Where the user's model is stored")->required()->type_name("FILE");
    command->add_flag("--skip-refused", options->skipRefused, "Train from the accepted takes when others are refused")
        ->needs(files);
    command->footer("  velox-kws enroll en-US take-1.wav take-2.wav take-3.wav --model jana.vwov\n"
                    "  velox-kws enroll en-US --microphone --model jana.vwov --save-takes takes\n");
    commands.run[command] = [options](Context& context) {
        return EnrollmentRun(*options, context).Run();
    };
}

} // namespace velox::console
