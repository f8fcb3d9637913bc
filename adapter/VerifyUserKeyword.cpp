#include "VeloxKeywordDetectorAdapterImpl.h"

HRESULT VeloxKeywordDetectorAdapterImpl::VerifyUserKeyword(IStream*, uint32_t, uint16_t, int32_t, IMFMediaBuffer*)
{
    return E_NOTIMPL;
}
