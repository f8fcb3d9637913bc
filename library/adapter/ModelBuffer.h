#pragma once

#include <cstdint>

/// Owns a model's bytes, which come from array new, also when an exception leaves whoever fills it.
struct ModelBuffer
{
    ModelBuffer() = default;
    ModelBuffer(const ModelBuffer&) = delete;
    ModelBuffer& operator=(const ModelBuffer&) = delete;
    ~ModelBuffer()
    {
        delete[] data;
    }

    uint8_t* data = nullptr;
    uint32_t size = 0;
};
