#include "tests/long/LibraryRounds.h"

#include "library/configuration/ConfigurationReader.h"
#include "tests/support/HostStream.h"
#include "tests/support/Registry.h"
#include "tests/support/ScriptedStream.h"

namespace
{

// Of lengths that no other block has, and no path either.
const std::string Constraints = "memory=160k;unknown=" + std::string(180, 'c');
const std::string Model = "VWOV" + std::string(296, 'm');
const std::string UserModel = "VWOV" + std::string(396, 'u');
constexpr std::size_t Samples = 1600; // 0.1 s

ScriptedEngine Script()
{
    ScriptedEngine engine;
    engine.laterStep.scores = {0.875F}; // beyond the threshold of 0.75
    engine.lpeData = Model;
    return engine;
}

HostStream StreamOf(const std::string& content)
{
    HostStream stream = MakeHostStream();
    stream->Write(content.data(), static_cast<ULONG>(content.size()), nullptr);
    return stream;
}

TestConfiguration& WithSettings(TestConfiguration& configuration)
{
    WriteWholeFile(configuration.ConstraintsPath(), Constraints);
    RemoveSettingsKey();
    WriteSettingsDword(L"LoggerLevel", 5);
    WriteSettingsDword(L"LogToFile", 0);
    WriteSettingsDword(L"SDKLoggerLevel", 2);
    return configuration;
}

} // namespace

LibraryRounds::LibraryRounds()
    : script(Script()), recording(MakeMediaBuffer(std::vector<float>(Samples, 0.25F))), host(WithSettings(configuration).Path())
{
    host.Take();
    GetScriptedEngine() = script;
}

LibraryRounds::~LibraryRounds()
{
    GetScriptedEngine().Reset();
    RemoveSettingsKey();
}

Answers LibraryRounds::Cycle()
{
    ++objectsReleased;
    LibraryHost own(configuration.Path());
    for (const std::string& content : {std::string(), UserModel})
    {
        const HostStream stream = StreamOf(content);
        own.Arm(stream.get());
        own.Parse(stream.get());
    }
    return own.Take();
}

Answers LibraryRounds::Verify()
{
    ++wrappersReleased;
    host.Verify(recording.get());
    return TakeWithCalls();
}

Answers LibraryRounds::Train()
{
    const HostStream stream = MakeHostStream();
    Train(stream.get());
    host.Arm(stream.get());
    return TakeWithCalls();
}

Answers LibraryRounds::TrainForAStreamThatCannotBeWritten()
{
    ++modelsNotWritten;
    ScriptedStream stream;
    stream.Answer("Write", 1, STG_E_MEDIUMFULL);
    Train(&stream);
    return TakeWithCalls();
}

void LibraryRounds::Train(IStream* stream)
{
    ++wrappersReleased;
    host.Train(stream, {recording.get(), recording.get()});
}

Answers LibraryRounds::ArmFromAStreamThatCannotBeRead()
{
    ++modelsNotRead;
    ScriptedStream stream(UserModel);
    stream.Answer("Read", 2, STG_E_READFAULT); // The first one looks whether there is a model.
    host.Arm(&stream);
    return TakeWithCalls();
}

Answers LibraryRounds::TakeWithCalls()
{
    Answers answers = host.Take();
    for (std::string& call : GetScriptedEngine().Take())
    {
        answers.outputs.push_back(std::move(call));
    }
    GetScriptedEngine() = script;
    return answers;
}

std::vector<KeptLoss> LibraryRounds::Losses() const
{
    return {{"configuration reader: the deleter runs no destructor", objectsReleased, sizeof(ConfigurationReader)},
            {"the configuration file's path within it", objectsReleased, configuration.Path().size() + 1},
            {"constraints' text of a wrapper: the deleter runs no destructor", wrappersReleased, Constraints.size() + 1},
            {"model that the stream did not take", modelsNotWritten, Model.size()},
            {"user's model whose read was no plain success", modelsNotRead, UserModel.size()}};
}
