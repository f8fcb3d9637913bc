#pragma once

#include <cstdint>

/// Owns the model files of one language for the span of one operation. The engine wrapper borrows the blocks and hands them to
/// the engine as they are; their lengths stand inside the blocks.
///
/// Each block is null or comes from array new. Callers rely on the members' order.
class EnrollmentParameters
{
public:
    EnrollmentParameters() = default;
    EnrollmentParameters(const EnrollmentParameters&) = delete;
    EnrollmentParameters& operator=(const EnrollmentParameters&) = delete;
    virtual ~EnrollmentParameters();

    uint8_t* acousticModel = nullptr;
    uint8_t* znormPopulation = nullptr;
    uint8_t* keyphraseModel = nullptr;
    uint8_t* reservedBlob = nullptr; ///< filled by nobody, released like the others
};
