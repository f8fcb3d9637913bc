#include "console/hosting/LogExplanation.h"

#include "console/text/StatusText.h"
#include "engine/base/EngineErrors.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace velox::console
{

namespace
{

constexpr uint32_t Error = 1;
constexpr uint32_t Failure = 2;

/// A piece of a line, and what it means. {} in a meaning stands for what follows the piece in the line, without the last full
/// stop.
struct Explanation
{
    std::string_view piece;
    ExitCode exitCode;
    std::string_view meaning;
    std::string_view fix;
    std::optional<engine::Status> status = std::nullopt; ///< that the line must have
};

constexpr ExitCode Configuration = ExitCode::BadConfiguration;
constexpr ExitCode Library = ExitCode::LibraryFailure;

// What several lines mean, and what to do about them.
constexpr std::string_view AddTheElement = "Add the element with a file's name.";
constexpr std::string_view CheckTheModel = "Was the file made for this engine? Check it with velox-kws inspect.";
constexpr std::string_view PutItThere = "Put it into the folder that \"directory\" of the configuration names.";
constexpr std::string_view CheckTheEngine = "Is the VeloxWovSDK.dll beside the program the right one?";
constexpr std::string_view ListLanguages = "velox-kws capabilities lists the languages that are.";
constexpr std::string_view NotConfigured = "the language is not in the configuration file";
constexpr std::string_view NoFirmwareForm = "the engine gives no form of the model for the firmware";
constexpr std::string_view CheckTheConstraints = "Is the model larger than the constraints allow?";

/// In the order in which they are looked for: what names the cause best comes first.
constexpr std::array Explanations{
    Explanation{"Failed to load configuration file: ", Configuration, "the configuration file cannot be read: {}",
                "Check its path and that it is well-formed XML."},
    Explanation{"Failed to load root element", Configuration, "the configuration file has no element", "Write the file anew."},
    Explanation{"Failed to get directory attribute", Configuration, "the configuration's root has no \"directory\"",
                "Add the attribute: the folder of the model files, without a backslash at its end."},
    Explanation{"Failed to get constraints attribute", Configuration, "the configuration's root has no \"constraints\"",
                "Add the attribute: the full path of the platform-constraints file."},
    Explanation{"Failed to open platform constraints file", Configuration,
                "the file that \"constraints\" of the configuration names cannot be opened",
                "\"constraints\" is a full path; it is not joined to \"directory\"."},
    Explanation{"Failed to load file: ", Configuration, "the model file {} cannot be opened", PutItThere},
    Explanation{"[LoadFile] The file: ", Configuration, "the model file {}", "Install the file again."},
    Explanation{"[LoadFile] Failed to allocate", Library, "there is no memory for a model file",
                "The file may be far too large: check it."},
    Explanation{"Failed to open threshold file", Configuration, "a threshold file of the language cannot be opened", PutItThere},
    Explanation{"Failed to query ID attribute", Configuration, "a language of the configuration has no valid \"id\"",
                "Give each language element its LANGID as a number; a faulty one hides all that follow it."},
    Explanation{"[GetDetectionParameters] Failed to query attribute", Configuration,
                "the language has no valid \"qualityThreshold\", or a language before it no valid \"id\"",
                "Give both as whole numbers."},
    Explanation{"keyphrase model", Configuration, "the language names no \"keyphraseModel\"", AddTheElement},
    Explanation{"Failed to get acoustic model", Configuration, "the language names no \"acousticModel\"", AddTheElement},
    Explanation{"znorm population", Configuration, "the language names no \"znormPopulation\"", AddTheElement},
    Explanation{"predefined model XML", Configuration, "the language names no \"fwBlob\"", AddTheElement},
    Explanation{"predefined model file", Configuration, "the language's \"fwBlob\" is empty", "Write the file's name into it."},
    Explanation{"predefined kpd sensitivity", Configuration, "the language names no \"preDefinedKpdSensitivity\"", AddTheElement},
    Explanation{"user defined kpd sensitivity", Configuration, "the language names no \"userDefinedKpdSensitivity\"",
                AddTheElement},
    Explanation{"Failed to set attribute - firmware constraints", Configuration,
                "the engine refuses the first line of the constraints file", "Check that line."},
    Explanation{"Failed to set attribute - acoustic model", Configuration, "the engine refuses the language's acoustic model",
                CheckTheModel},
    Explanation{"Failed to set attribute - ZNorm population", Configuration, "the engine refuses the language's population",
                CheckTheModel},
    Explanation{"Failed to set attribute - log level", Configuration, "the engine refuses its log level",
                "Check the registry value SDKLoggerLevel."},
    Explanation{"[VerifyKeyword] Failed to set keyphrase model", Configuration,
                "the engine refuses the language's key-phrase model", CheckTheModel},
    Explanation{"[InitializeSession] Failed", Library, "the engine gives no session", CheckTheEngine},
    Explanation{"Failed to get size of audio frame", Library, "the engine does not tell its frame size", CheckTheEngine},
    Explanation{"VWoVFinalizeEnrollmentUtterance failed", ExitCode::Refused, "the engine refuses a take",
                "Record that take again."},
    Explanation{"[TrainModel] Failed to finalize enrollment", ExitCode::Refused,
                "a take is not like the others, or far louder or quieter",
                "Record that take again: one person, at one distance, with the same phrase.", engine::Status::TakesDisagree},
    Explanation{"[TrainModel] Failed to finalize enrollment", ExitCode::Refused, "the engine can use fewer than two of the takes",
                "Record more, or those again: the whole phrase, loud and clear.", engine::Status::NoUtterances},
    Explanation{"[TrainModel] Failed to finalize enrollment", ExitCode::Refused, "the engine made no model of the takes",
                "Record more takes, or better ones."},
    Explanation{"Failed to start utterance enrollment", Library, "the engine takes no more takes", "Give fewer takes."},
    Explanation{"PrepareLpe", Library, NoFirmwareForm, CheckTheConstraints},
    Explanation{"Failed to prepare LPE", Library, NoFirmwareForm, CheckTheConstraints},
    Explanation{"[WriteModelToIStream] Failed", Library, "the model cannot be written to the stream", "Is memory short?"},
    Explanation{"[GetUserModelFromIStream] Failed", ExitCode::BadInput, "the user model cannot be read to its end",
                "Enroll again, or copy the file again."},
    Explanation{"[CheckIStreamForUserModel] Failed", ExitCode::BadInput, "the user model cannot be read", "Copy the file again."},
    Explanation{"expected result data size", ExitCode::BadInput,
                "the result block is of another detector, or shorter than 60 bytes",
                "Compare its bytes 4 to 19 with the GUID of --detector-id; velox-kws inspect shows them."},
    Explanation{"[VerifyUserKeyword] Validation error", Configuration, NotConfigured, ListLanguages},
    Explanation{"expected keyword ID", Configuration, NotConfigured, ListLanguages},
    Explanation{"The OEM adapter failed", Library, "the OEM adapter refused it",
                "Its log file, %ProgramData%\\Velox\\VeloxOemAdapter.log when not set otherwise, tells why; or try without "
                "--through adapter."},
    Explanation{"Failed to allocate", Library, "memory ran out", "Close other programs, or give less."},
};

bool IsFault(const LoggedLine& line)
{
    return line.level == Error || line.level == Failure;
}

std::string Rest(const std::string& message, std::string_view piece)
{
    std::string rest = message.substr(message.find(piece) + piece.size());
    return rest.ends_with('.') ? rest.substr(0, rest.size() - 1) : rest;
}

std::string Codes(const LoggedLine& line)
{
    return line.engineStatus ? " (engine status " + EngineStatusText(*line.engineStatus) + ")" : "";
}

/// The status of a take that was not learned from; 0 where the line tells of none. Of a take that it can do without the stand-in
/// engine says so in its own log alone.
uint32_t StatusOfTake(const LoggedLine& line)
{
    constexpr std::string_view OfTake = "take of the enrollment: ";
    if (line.engineStatus && line.message.starts_with("VWoVFinalizeEnrollmentUtterance failed"))
    {
        return *line.engineStatus;
    }
    const std::size_t place = line.source == EngineSource ? line.message.find(OfTake) : std::string::npos;
    return place == std::string::npos
               ? 0
               : static_cast<uint32_t>(std::strtoul(line.message.c_str() + place + OfTake.size(), nullptr, 10));
}

const LoggedLine* LineFor(const Explanation& explanation, std::span<const LoggedLine> lines)
{
    const auto found = std::ranges::find_if(lines, [&](const LoggedLine& line) {
        return IsFault(line) && line.message.find(explanation.piece) != std::string::npos &&
               (!explanation.status || line.engineStatus == static_cast<uint32_t>(*explanation.status));
    });
    return found == lines.end() ? nullptr : &*found;
}

} // namespace

CommandFailure ExplainFailure(const std::string& operation, int32_t result, std::span<const LoggedLine> lines)
{
    for (const Explanation& explanation : Explanations)
    {
        if (const LoggedLine* line = LineFor(explanation, lines))
        {
            const std::string meaning = fmt::format(fmt::runtime(explanation.meaning), Rest(line->message, explanation.piece));
            return {explanation.exitCode, fmt::format("{} failed: {}{}.", operation, meaning, Codes(*line)),
                    std::string(explanation.fix)};
        }
    }
    return {Library, fmt::format("{} failed with {}.", operation, ResultText(result)),
            "Run the command again with --verbose: docs/log-lines.md explains each line of the library."};
}

std::vector<LeftOutTake> FindLeftOutTakes(std::span<const LoggedLine> lines)
{
    constexpr std::string_view Begins = "[FeedRecordingsForEnrollment] Recording ";
    std::vector<LeftOutTake> takes;
    std::size_t number = 0; // the library counts from 1
    for (const LoggedLine& line : lines)
    {
        if (line.message.starts_with(Begins))
        {
            number = std::strtoul(line.message.c_str() + Begins.size(), nullptr, 10);
        }
        else if (const uint32_t status = StatusOfTake(line); number > 0 && status != 0)
        {
            takes.push_back({number - 1, status});
            number = 0; // what library and engine both say counts once
        }
    }
    return takes;
}

} // namespace velox::console
