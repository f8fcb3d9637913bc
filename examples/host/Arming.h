#pragma once

#include "FileStream.h"

#include <VeloxHwKwsImpl.h>

using Adapter = KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;

/// What came of arming: the block only when the result is S_OK.
struct Arming
{
    HRESULT result;
    Bytes block;
};

/// Asks the adapter for the block that arms keyword 1 in this language. A real host hands the block on to the audio driver.
Arming Arm(Adapter& adapter, IStream* userModel, uint16_t language);

/// The block's parts that a host may want to look at.
uint32_t ArmedThreshold(const Bytes& block);
Bytes ArmedModel(const Bytes& block);

void PrintArmingBlock(const Bytes& block);
