#pragma once

#include <cstdint>
#include <vector>

/// A result block of the detector, from 1250000 to 1260800. It has 60 bytes, whatever it says.
std::vector<uint8_t> ResultBlock(uint16_t keyword = 1, uint16_t score = 0x8000, uint32_t size = 60, uint8_t guidByte = 0x6C);
