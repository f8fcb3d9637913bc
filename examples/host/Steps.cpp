#include "Steps.h"

#include "Detection.h"
#include "HostAdapter.h"
#include "Report.h"
#include "ResultName.h"

#include <mfapi.h>

#include <cmath>
#include <fstream>

namespace
{

constexpr uint16_t BritishEnglish = 2057; // a threshold file is missing
constexpr uint16_t German = 1031;         // the file of the firmware model is empty
constexpr uint16_t Japanese = 1041;       // not configured

/// The configured sensitivity as the firmware gets it, in 256ths.
uint32_t ConfiguredThreshold(const std::filesystem::path& file)
{
    double sensitivity = 0.0;
    std::ifstream(file) >> sensitivity;
    return static_cast<uint32_t>(std::lround(sensitivity * 256));
}

/// One adapter, and the steps of its life.
class Session
{
public:
    explicit Session(const std::filesystem::path& files) : folder(files), logger(files / "host.log")
    {
    }

    void CreateTheAdapter();
    void AskForCapabilities();
    void ArmPredefinedModel();
    void ArmUserModel();
    void ParseReportedBlock();
    void RefuseForeignAndCutBlocks();
    void RefuseUnknownLanguage();
    void RefuseMissingThresholdFile();
    void RefuseEmptyFirmwareModel();
    void ArmFromDamagedStreams();
    void DeleteBothWays();

    Report report;

private:
    Bytes FirmwareModel() const
    {
        return ReadFileBytes(folder / "models" / "fw_1033.bin");
    }
    StreamPointer UserModelStream() const
    {
        return OpenStream(folder / UserModelFile);
    }
    void ExpectResult(HRESULT actual, HRESULT expected)
    {
        report.Expect("result " + ResultName(actual) + (actual == expected ? "" : ", not " + ResultName(expected)),
                      actual == expected);
    }

    std::filesystem::path folder;
    Logger logger;
    AdapterPointer adapter;
};

void Session::CreateTheAdapter()
{
    report.Step("Set the registry values and create an adapter");
    SwitchLoggingOn();
    adapter = CreateAdapter(folder, logger);
    report.Expect("the adapter exists", adapter != nullptr);
    report.Expect("the log goes to a file, too", std::filesystem::exists(folder / "host.log"));
}

void Session::AskForCapabilities()
{
    report.Step("Ask what the detector supports");
    int32_t supportsUserModels = 0;
    uint32_t* keywordIds = nullptr;
    uint32_t keywordCount = 0;
    uint16_t* languageIds = nullptr;
    uint32_t languageCount = 0;
    IMFMediaType* mediaType = nullptr;
    const HRESULT result =
        adapter->GetCapabilities(&supportsUserModels, &keywordIds, &keywordCount, &languageIds, &languageCount, &mediaType);
    ExpectResult(result, S_OK);
    if (result != S_OK)
    {
        return;
    }
    const std::unique_ptr<IMFMediaType, ComRelease> audio(mediaType);
    const std::vector<uint16_t> languages(languageIds, languageIds + languageCount);
    report.Expect("user models are supported", supportsUserModels == 1);
    report.Expect("one keyword, with the id 1", keywordCount == 1 && *keywordIds == 1);
    report.Expect("languages 1033, 2057 and 1031, in the order of the file",
                  languages == std::vector<uint16_t>{1033, 2057, 1031});
    UINT32 rate = 0, bits = 0, channels = 0;
    audio->GetUINT32(MF_MT_AUDIO_SAMPLES_PER_SECOND, &rate);
    audio->GetUINT32(MF_MT_AUDIO_BITS_PER_SAMPLE, &bits);
    audio->GetUINT32(MF_MT_AUDIO_NUM_CHANNELS, &channels);
    report.Expect("audio format: 16000 Hz, 16 bits, 1 channel", rate == 16000 && bits == 16 && channels == 1);
    CoTaskMemFree(keywordIds);
    CoTaskMemFree(languageIds);
}

void Session::ArmPredefinedModel()
{
    report.Step("Arm language 1033; the user's stream is empty, so its predefined model is taken");
    const StreamPointer stream = OpenStream(folder / "streams" / "empty.bin");
    const auto [result, block] = Arm(*adapter, stream.get(), English);
    ExpectResult(result, S_OK);
    if (result == S_OK)
    {
        PrintArmingBlock(block);
        report.Expect("the model is the file models/fw_1033.bin", ArmedModel(block) == FirmwareModel());
        report.Expect("the threshold is that of models/kpd_pre_1033.txt, times 256",
                      ArmedThreshold(block) == ConfiguredThreshold(folder / "models" / "kpd_pre_1033.txt"));
    }
}

void Session::ArmUserModel()
{
    report.Step("Arm language 1033 with the user model that the first process stored");
    const StreamPointer stream = UserModelStream();
    const auto [result, block] = Arm(*adapter, stream.get(), English);
    ExpectResult(result, S_OK);
    if (result == S_OK)
    {
        PrintArmingBlock(block);
        report.Expect("the model is the stream's whole content", ArmedModel(block) == ReadFileBytes(folder / UserModelFile));
        report.Expect("the threshold is that of models/kpd_user_1033.txt, times 256",
                      ArmedThreshold(block) == ConfiguredThreshold(folder / "models" / "kpd_user_1033.txt"));
    }
}

void Session::ParseReportedBlock()
{
    report.Step("The firmware has fired: parse the block that it reports");
    const Bytes block = ReadFileBytes(folder / "results" / "reported.bin");
    PrintResultBlock(block);
    const StreamPointer stream = UserModelStream();
    const Detection detection = Parse(*adapter, stream.get(), block);
    ExpectResult(detection.result, S_OK);
    report.Expect("keyword 1 in language 1033", detection.keywordId == 1 && detection.languageId == English);
    report.Expect("the user's own model matched, as it was armed last", detection.isUserMatch == TRUE);
    report.Expect("the keyword lies from 1250000 to 1260800",
                  detection.keywordStart == 1250000 && detection.keywordEnd == 1260800);
}

void Session::RefuseForeignAndCutBlocks()
{
    const StreamPointer stream = UserModelStream();
    report.Step("Refuse a block of another detector");
    const Bytes foreign = ReadFileBytes(folder / "results" / "foreign.bin");
    PrintResultBlock(foreign);
    report.Say("The library reports a foreign PatternType with its line about the size, too.");
    ExpectResult(Parse(*adapter, stream.get(), foreign).result, E_INVALIDARG);

    report.Step("Refuse a block that was cut");
    const Bytes cut = ReadFileBytes(folder / "results" / "cut.bin");
    PrintResultBlock(cut);
    ExpectResult(Parse(*adapter, stream.get(), cut).result, E_INVALIDARG);
}

void Session::RefuseUnknownLanguage()
{
    report.Step("Refuse a language that is not configured: 1041");
    report.Say("The library reports it with its line about the keyword id, which names the language as well.");
    const StreamPointer stream = UserModelStream();
    ExpectResult(Arm(*adapter, stream.get(), Japanese).result, E_INVALIDARG);
}

void Session::RefuseMissingThresholdFile()
{
    report.Step("Refuse to arm language 2057: its file models/kpd_user_2057.txt is missing");
    const StreamPointer stream = UserModelStream();
    ExpectResult(Arm(*adapter, stream.get(), BritishEnglish).result, E_FAIL);
}

void Session::RefuseEmptyFirmwareModel()
{
    report.Step("Refuse to arm language 1031: there is no user model, and the file of its predefined one is empty");
    const StreamPointer stream = OpenStream(folder / "streams" / "empty.bin");
    ExpectResult(Arm(*adapter, stream.get(), German).result, E_FAIL);
}

void Session::ArmFromDamagedStreams()
{
    for (const char* name : {"wrong-first-byte.bin", "three-bytes.bin"})
    {
        report.Step(std::string("A damaged user model, streams/") + name + ": the predefined one takes its place");
        report.Say("What does not begin with VWOV is no user model; arming goes on without it.");
        const StreamPointer stream = OpenStream(folder / "streams" / name);
        const auto [result, block] = Arm(*adapter, stream.get(), English);
        ExpectResult(result, S_OK);
        report.Expect("the model is the file models/fw_1033.bin", result == S_OK && ArmedModel(block) == FirmwareModel());
    }

    report.Step("A user model of which the end is missing, streams/cut.bin: armed as it stands");
    report.Say("The library does not look inside a model: only the firmware can tell.");
    const StreamPointer stream = OpenStream(folder / "streams" / "cut.bin");
    const auto [result, block] = Arm(*adapter, stream.get(), English);
    ExpectResult(result, S_OK);
    if (result == S_OK)
    {
        PrintArmingBlock(block);
        report.Expect("the model is what is left of it", ArmedModel(block) == ReadFileBytes(folder / "streams" / "cut.bin"));
    }
}

void Session::DeleteBothWays()
{
    constexpr const char* DestructorLine = "[VeloxKeywordDetectorAdapter] Destructor.";

    report.Step("Delete an adapter through the deleter that came with it");
    CreateAdapter(folder, logger).reset();
    report.Expect("the storage is released without a destructor line", logger.CountLines(DestructorLine) == 0);

    report.Step("Delete the adapter of the steps above through its virtual destructor");
    delete adapter.release();
    report.Expect("there is one destructor line", logger.CountLines(DestructorLine) == 1);
}

} // namespace

bool RunDetector(const std::filesystem::path& folder)
{
    Session session(folder);
    session.CreateTheAdapter();
    session.AskForCapabilities();
    session.ArmPredefinedModel();
    session.ArmUserModel();
    session.ParseReportedBlock();
    session.RefuseForeignAndCutBlocks();
    session.RefuseUnknownLanguage();
    session.RefuseMissingThresholdFile();
    session.RefuseEmptyFirmwareModel();
    session.ArmFromDamagedStreams();
    session.DeleteBothWays();
    return session.report.Conclude();
}
