// The road of a setting from setInput to the function that takes it.

#include <algorithm>
#include <iterator>

#include "core/base/kirolog.h"
#include "core/ckirocontextmanager.h"
#include "core/setparamnames.h"

struct CKIROContextManager::ParamHandler
{
    AECAlgoSetParamType type;
    UINT32              leastSize;
    KiroResult (*pSet)(CKIROContextManager& rSelf, const VOID* pParam, const CHAR* pName);
};

const CKIROContextManager::ParamHandler* CKIROContextManager::FindHandler(AECAlgoSetParamType type)
{
    static constexpr ParamHandler handlers[] = {
#define HANDLER(name, Payload, leastSize)                                                                              \
    {AECAlgoSetParam##name, leastSize, [](CKIROContextManager& rSelf, const VOID* pParam, const CHAR* pName) {         \
         return rSelf.Set##name(*static_cast<const Payload*>(pParam), pName);                                          \
     }},
#define SETTING(name, Payload) HANDLER(name, Payload, sizeof(Payload))
#define UNSIZED(name, Payload) HANDLER(name, Payload, 0)
#define UNREAD(name, size)                                                                                             \
    {AECAlgoSetParam##name, size, [](CKIROContextManager&, const VOID*, const CHAR*) { return KiroResult{0}; }},
        AEC_SET_PARAMS(SETTING, UNSIZED, UNREAD)
#undef UNREAD
#undef UNSIZED
#undef SETTING
#undef HANDLER
    };
    const auto* pFound = std::find_if(std::begin(handlers), std::end(handlers),
                                      [type](const ParamHandler& rHandler) { return rHandler.type == type; });
    return (pFound == std::end(handlers)) ? nullptr : pFound;
}

KiroResult CKIROContextManager::SetPEKInput(const AECAlgoSetParam* pParam)
{
    m_bResetFrameSkip = FALSE;
    if (pParam == nullptr)
    {
        return 1;
    }
    const ParamHandler* pHandler = FindHandler(pParam->setParamType);
    if (pHandler == nullptr)
    {
        return 0;
    }
    if (pParam->sizeOfAECSetParam < pHandler->leastSize)
    {
        STATS_LOG_ERROR("set param type %d input size %d expected at least %d", pParam->setParamType,
                        pParam->sizeOfAECSetParam, pHandler->leastSize);
        return 1;
    }
    if (pParam->pAECSetParam == nullptr)
    {
        return 0;
    }
    return pHandler->pSet(*this, pParam->pAECSetParam, SetParamName(pParam->setParamType));
}
