#include "engine/models/AcousticModel.h"

#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace AcousticModelTests
{

using namespace velox::engine;
using Model = velox::engine::AcousticModel;

TEST(AcousticModel, WhatWasReadWritesTheSameBytes)
{
    const std::vector<uint8_t> blob = WriteAcousticModel(TinyLanguage::Acoustic());
    Model read;
    ASSERT_EQ(ReadAcousticModel(blob.data(), &read), Status::Success);
    EXPECT_EQ(read.generic.states.size(), TinyLanguage::States);
    EXPECT_EQ(WriteAcousticModel(read), blob);
}

TEST(AcousticModel, DamageIsRefused)
{
    BlobDamage::ExpectDamageIsRefused(WriteAcousticModel(TinyLanguage::Acoustic()), [](const std::vector<uint8_t>& blob) {
        Model model;
        return ReadAcousticModel(blob.data(), &model);
    });
}

} // namespace AcousticModelTests
