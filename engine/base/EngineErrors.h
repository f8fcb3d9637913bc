#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace velox::engine
{

/// Statuses of the fifteen functions. The first three are the contract's; the rest are this engine's own, and callers only log
/// them.
enum class Status : uint32_t
{
    Success = 0,
    BufferTooSmall = 2,
    NothingLeft = 0xFFFFFFFF,

    BadHandle = 101,
    NullArgument = 102,
    UnknownIdentifier = 103,
    OrderViolated = 104,
    NoModel = 105,
    MalformedBlob = 106,
    BlobVersion = 107,
    BlobChecksum = 108,
    BlobKind = 109,
    ModelTooLarge = 110,
    WrongFrameSize = 111,
    OutOfMemory = 112,
    ModelsDisagree = 113,
    BadValue = 114,

    UtteranceTooShort = 120,
    TooQuiet = 121,
    Clipped = 122,
    NoSpeech = 123,
    PhraseNotFound = 124,
    TakesDisagree = 125,
    CutAtStart = 126,
    CutAtEnd = 127,
    TwoPhrases = 128,
    NoUtterances = 129,
};

struct StatusText
{
    Status status = Status::Success;
    std::string_view name;
    std::string_view sentence;
};

/// Every status with its name and what it means, for logs, the console and the documentation.
inline constexpr std::array StatusTexts{
    StatusText{Status::Success, "Success", "The call did what it is for."},
    StatusText{Status::BufferTooSmall, "BufferTooSmall", "The buffer is too small; the count now holds what is needed."},
    StatusText{Status::NothingLeft, "NothingLeft", "Nothing is left to flush, or no score has come out yet."},
    StatusText{Status::BadHandle, "BadHandle", "There is no session with this handle."},
    StatusText{Status::NullArgument, "NullArgument", "A pointer that is needed is null."},
    StatusText{Status::UnknownIdentifier, "UnknownIdentifier", "There is no attribute, component or output with this number."},
    StatusText{Status::OrderViolated, "OrderViolated", "The call is not due in the session's present state."},
    StatusText{Status::NoModel, "NoModel", "The session lacks a model that the call needs."},
    StatusText{Status::MalformedBlob, "MalformedBlob", "The model's header, lengths or contents are not those of a model."},
    StatusText{Status::BlobVersion, "BlobVersion", "The model was made for another version of the engine."},
    StatusText{Status::BlobChecksum, "BlobChecksum", "The model's checksum is wrong: its bytes were changed or cut."},
    StatusText{Status::BlobKind, "BlobKind", "The model is one of another kind."},
    StatusText{Status::ModelTooLarge, "ModelTooLarge", "The firmware model is larger than the platform's constraints allow."},
    StatusText{Status::WrongFrameSize, "WrongFrameSize", "A frame of another length than the engine's was fed."},
    StatusText{Status::OutOfMemory, "OutOfMemory", "Memory ran out."},
    StatusText{Status::ModelsDisagree, "ModelsDisagree", "The acoustic model and the population are not of the same phrase."},
    StatusText{Status::BadValue, "BadValue", "The text of an attribute is not what the attribute takes."},
    StatusText{Status::UtteranceTooShort, "UtteranceTooShort", "The utterance is shorter than the phrase can be."},
    StatusText{Status::TooQuiet, "TooQuiet", "The utterance is too quiet."},
    StatusText{Status::Clipped, "Clipped", "The utterance is clipped: the recording level is too high."},
    StatusText{Status::NoSpeech, "NoSpeech", "There is no speech in the utterance."},
    StatusText{Status::PhraseNotFound, "PhraseNotFound", "There is speech, but not the phrase."},
    StatusText{Status::TakesDisagree, "TakesDisagree", "The utterances are too different from each other."},
    StatusText{Status::CutAtStart, "CutAtStart", "The recording starts in the middle of speech."},
    StatusText{Status::CutAtEnd, "CutAtEnd", "The recording ends in the middle of speech."},
    StatusText{Status::TwoPhrases, "TwoPhrases", "The phrase is said more than once."},
    StatusText{Status::NoUtterances, "NoUtterances", "The enrollment has fewer than two utterances that can be used."},
};

/// @return an empty text for a number that is no status
constexpr StatusText TextOf(Status status)
{
    for (const StatusText& text : StatusTexts)
    {
        if (text.status == status)
        {
            return text;
        }
    }
    return {};
}

} // namespace velox::engine
