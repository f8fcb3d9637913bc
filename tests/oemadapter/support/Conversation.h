#pragma once

#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"

#include <windows.h>

#include <string>
#include <vector>

/// What a program does with an adapter: every method, on recordings whose loudness the engine's double takes for the key phrase.
struct Conversation
{
    std::vector<HRESULT> results;
    std::vector<std::string> answers;

    bool operator==(const Conversation&) const = default;
};

/// Every method of a generation.
/// @param stream  of the user's model; the model that is trained gets into it
void SpeakWithFirst(IKeywordDetectorOemAdapter* adapter, IStream* stream, Conversation* conversation);
void SpeakWithSecond(IEventDetectorOemAdapter* adapter, IStream* stream, Conversation* conversation);
