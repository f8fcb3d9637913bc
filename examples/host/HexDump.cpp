#include "HexDump.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{

constexpr std::size_t BytesPerRow = 16;
constexpr std::size_t RowsOfRest = 2;

/// The row's bytes in hexadecimal, filled up with blanks to the width of a full row.
void PrintRow(std::size_t offset, std::span<const uint8_t> row)
{
    std::printf("    %04zX  ", offset);
    for (const uint8_t byte : row)
    {
        std::printf("%02X ", byte);
    }
    std::printf("%*s", static_cast<int>((BytesPerRow - row.size()) * 3 + 1), "");
}

void PrintField(std::size_t offset, std::span<const uint8_t> bytes, const char* name)
{
    PrintRow(offset, bytes);
    std::printf("%-14s", name);
    if (uint32_t number = 0; bytes.size() == sizeof(number))
    {
        std::memcpy(&number, bytes.data(), sizeof(number));
        std::printf(number < 0x10000 ? "%u" : "0x%08X", number);
    }
    std::printf("\n");
}

void PrintRest(std::size_t offset, std::span<const uint8_t> rest, const char* name)
{
    for (std::size_t row = 0; row < RowsOfRest && !rest.empty(); ++row)
    {
        const auto bytes = rest.first(std::min(BytesPerRow, rest.size()));
        PrintRow(offset, bytes);
        std::printf("%s\n", row == 0 ? name : "");
        rest = rest.subspan(bytes.size());
        offset += bytes.size();
    }
    if (!rest.empty())
    {
        std::printf("    %04zX  and %zu bytes more\n", offset, rest.size());
    }
}

} // namespace

void PrintBlock(std::span<const uint8_t> block, const std::vector<Field>& fields, const char* restName)
{
    std::size_t offset = 0;
    for (const Field& field : fields)
    {
        if (field.size > block.size() - offset)
        {
            restName = "the block ends here";
            break;
        }
        PrintField(offset, block.subspan(offset, field.size), field.name);
        offset += field.size;
    }
    PrintRest(offset, block.subspan(offset), restName);
    std::fflush(stdout);
}
