#include "library/configuration/EnrollmentParameters.h"

#include <initializer_list>

EnrollmentParameters::~EnrollmentParameters()
{
    for (uint8_t** block : {&acousticModel, &znormPopulation, &keyphraseModel, &reservedBlob})
    {
        delete[] * block;
        *block = nullptr;
    }
}
