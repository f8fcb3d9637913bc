#include "VeloxKeywordDetectorAdapterImpl.h"

HRESULT VeloxKeywordDetectorAdapterImpl::ComputeAndAddUserModelData(IStream*, KeywordSelector, const int32_t*, IMFMediaBuffer**,
                                                                    uint32_t)
{
    return E_NOTIMPL;
}
