// Calls the interfaces' slot 0 through a pointer, so that the compiler lays their virtual tables out.
#include "VeloxHwKwsImpl.h"

void Delete(IVeloxKeywordDetectorLogger* logger, KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl* adapter,
            KeywordDetectorAdapterImplementation::IVeloxWovWrapper* wrapper)
{
    delete logger;
    delete adapter;
    delete wrapper;
}
