#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A field at the head of a block: its length in bytes and its name. A field of four bytes is shown as a number, too.
struct Field
{
    std::size_t size;
    const char* name;
};

/// Prints a block: the fields one below the other with their offsets, then the first bytes of what follows them. A block
/// that ends within a field is shown to its end.
void PrintBlock(std::span<const uint8_t> block, const std::vector<Field>& fields, const char* restName);
