#pragma once

#include "engine/base/RandomStream.h"
#include "engine/models/Blob.h"

#include <gtest/gtest.h>

#include <vector>

/// Damage to models, for whoever reads them.
///
/// A reader knows a model's length only from its header, so these keep the header's length true, in blocks of exactly that size:
/// the address sanitizer sees every byte read beyond. Headers that promise more than there is cannot be found out.
namespace BlobDamage
{

using Bytes = std::vector<uint8_t>;

inline void PutU32(Bytes* blob, std::size_t offset, uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
    {
        (*blob)[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

/// Makes length and checksum fit the contents again.
inline void Reseal(Bytes* blob)
{
    PutU32(blob, 8, static_cast<uint32_t>(blob->size()));
    PutU32(blob, 12, velox::engine::Crc32(std::span(*blob).subspan(velox::engine::BlobHeader::Size)));
}

/// The first bytes in a block of their own.
inline Bytes Truncated(const Bytes& blob, std::size_t size)
{
    Bytes cut(blob.begin(), blob.begin() + static_cast<std::ptrdiff_t>(size));
    PutU32(&cut, 8, static_cast<uint32_t>(size));
    return cut;
}

/// Each fault of the header has its status, and no truncation nor bit flip gets past the reader; resealed damage may get past it,
/// but nothing else happens.
///
/// @param read  gives the reader's status
template <typename Read>
void ExpectDamageIsRefused(const Bytes& good, Read read)
{
    using velox::engine::Status;
    constexpr int Rounds = 400;
    ASSERT_EQ(read(good), Status::Success);

    Bytes blob = good;
    blob[0] ^= 1U;
    EXPECT_EQ(read(blob), Status::BlobKind);
    blob = good;
    blob[4] ^= 2U;
    EXPECT_EQ(read(blob), Status::BlobVersion);
    blob = good;
    PutU32(&blob, 8, velox::engine::BlobHeader::Size - 1);
    EXPECT_EQ(read(blob), Status::MalformedBlob);
    blob = good;
    PutU32(&blob, 8, velox::engine::BlobHeader::LargestBlob + 1);
    EXPECT_EQ(read(blob), Status::MalformedBlob);
    blob = good;
    blob[12] ^= 1U;
    EXPECT_EQ(read(blob), Status::BlobChecksum);
    blob = good;
    blob.push_back(0);
    Reseal(&blob);
    EXPECT_EQ(read(blob), Status::MalformedBlob) << "bytes that belong to nothing";

    velox::engine::RandomStream random(20261121);
    for (int i = 0; i < Rounds; ++i)
    {
        SCOPED_TRACE(i);
        const auto size =
            static_cast<std::size_t>(random.Integer(velox::engine::BlobHeader::Size, static_cast<int64_t>(good.size()) - 1));
        Bytes cut = Truncated(good, size);
        EXPECT_EQ(read(cut), Status::BlobChecksum);
        Reseal(&cut);
        EXPECT_EQ(read(cut), Status::MalformedBlob);

        const auto place =
            static_cast<std::size_t>(random.Integer(velox::engine::BlobHeader::Size, static_cast<int64_t>(good.size()) - 1));
        Bytes flipped = good;
        flipped[place] ^= static_cast<uint8_t>(1U << static_cast<unsigned>(random.Integer(0, 7)));
        EXPECT_EQ(read(flipped), Status::BlobChecksum);
        Reseal(&flipped);
        const Status resealed = read(flipped);
        EXPECT_TRUE(resealed == Status::Success || resealed == Status::MalformedBlob ||
                    (resealed >= Status::MalformedBlob && resealed <= Status::BlobKind)) // of a model inside
            << static_cast<uint32_t>(resealed);
    }
}

} // namespace BlobDamage
