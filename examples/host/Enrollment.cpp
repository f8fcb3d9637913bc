#include "Steps.h"

#include "HostAdapter.h"
#include "Recording.h"
#include "Report.h"
#include "ResultName.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{

/// What the user said into the microphone, one take after the other. The key phrase is the word "front".
struct Take
{
    const char* file;
    Stretch stretch;
    double keywordEnd; ///< seconds from the beginning of the stretch; 0: not known
    const char* heard;
};

constexpr std::array SpokenTakes{Take{"Front_Left.wav", {0.0, 0.7}, 0.45, "the word \"front\""},
                                 Take{"Front_Center.wav", {0.0, 0.7}, 0.45, "the word \"front\""},
                                 Take{"Front_Right.wav", {0.0, 0.8}, 0.55, "the word \"front\""}};
constexpr Take SilentTake{"Front_Left.wav", {0.5, 0.7}, 0.0, "the pause between two words"};

/// A take as it is handed to the library.
struct Recording
{
    BufferPointer buffer;
    int32_t keywordEnd;
};

Recording Record(const std::filesystem::path& folder, const Take& take)
{
    return {MakeBuffer(ReadRecording(folder / "recordings" / take.file, take.stretch)), BytePosition(take.keywordEnd)};
}

std::string Describe(const Take& take)
{
    const long milliseconds = std::lround((take.stretch.end - take.stretch.begin) * 1000);
    return std::string(take.heard) + ", " + std::to_string(milliseconds) + " ms of recordings/" + take.file;
}

/// The user's enrollment: takes are verified, and those that are good train a model.
class Enrollment
{
public:
    explicit Enrollment(const std::filesystem::path& files) : folder(files), logger(files / "enrollment.log")
    {
    }

    void CreateTheAdapter();
    void AcceptTake(const Take& take);
    void RefuseSilence();
    void TrainUserModel();
    bool Conclude();

private:
    HRESULT Verify(const Recording& recording)
    {
        return adapter->VerifyUserKeyword(nullptr, 1, English, recording.keywordEnd, recording.buffer.get());
    }

    Report report;
    std::filesystem::path folder;
    Logger logger;
    std::unique_ptr<Adapter> adapter; // deleted through its virtual destructor
    std::vector<Recording> accepted;
};

void Enrollment::CreateTheAdapter()
{
    report.Step("Set the registry values and create an adapter");
    SwitchLoggingOn();
    adapter.reset(CreateAdapter(folder, logger).release());
    report.Expect("the adapter exists", adapter != nullptr);
}

void Enrollment::AcceptTake(const Take& take)
{
    report.Step("Verify a take: " + Describe(take));
    Recording recording = Record(folder, take);
    const HRESULT result = Verify(recording);
    report.Expect("result " + ResultName(result) + ": the key phrase was found", result == S_OK);
    if (result == S_OK)
    {
        accepted.push_back(std::move(recording));
    }
}

void Enrollment::RefuseSilence()
{
    report.Step("Verify a take that is none: " + Describe(SilentTake));
    const int problems = logger.CountProblems();
    const HRESULT result = Verify(Record(folder, SilentTake));
    report.Expect("result " + ResultName(result) + ": the take is refused, the user would be asked again", result == E_FAIL);
    report.Expect("no error or warning was logged, so nothing is broken: the key phrase was not found",
                  logger.CountProblems() == problems);
}

void Enrollment::TrainUserModel()
{
    report.Step("Train a user model from the accepted takes and store it in a stream on " + std::string(UserModelFile));
    std::vector<IMFMediaBuffer*> recordings;
    std::vector<int32_t> keywordEnds;
    for (const Recording& recording : accepted)
    {
        recordings.push_back(recording.buffer.get());
        keywordEnds.push_back(recording.keywordEnd);
    }
    StreamPointer stream = CreateStream(folder / UserModelFile);
    const HRESULT result = adapter->ComputeAndAddUserModelData(stream.get(), {1, English}, keywordEnds.data(), recordings.data(),
                                                               static_cast<uint32_t>(recordings.size()));
    stream.reset();
    report.Expect("result " + ResultName(result), result == S_OK);
    const Bytes model = ReadFileBytes(folder / UserModelFile);
    constexpr std::array<uint8_t, 4> Magic{'V', 'W', 'O', 'V'};
    report.Expect("the stream holds a user model of " + std::to_string(model.size()) + " bytes, which begins with VWOV",
                  model.size() > Magic.size() && std::equal(Magic.begin(), Magic.end(), model.begin()));
}

bool Enrollment::Conclude()
{
    adapter.reset();
    return report.Conclude();
}

} // namespace

bool EnrollUser(const std::filesystem::path& folder)
{
    Enrollment enrollment(folder);
    enrollment.CreateTheAdapter();
    for (const Take& take : SpokenTakes)
    {
        enrollment.AcceptTake(take);
    }
    enrollment.RefuseSilence();
    enrollment.TrainUserModel();
    return enrollment.Conclude();
}

bool VerifyOneTake(const std::filesystem::path& folder)
{
    Enrollment enrollment(folder);
    enrollment.CreateTheAdapter();
    enrollment.AcceptTake(SpokenTakes.front());
    return enrollment.Conclude();
}
