#include "host/kirocorelibrary.h"

#include <atomic>
#include <dlfcn.h>
#include <stdexcept>
#include <utility>

KiroCoreLibrary::KiroCoreLibrary(const std::string& rName, KiroTableDecorator decorate)
    : m_pHandle(dlopen(rName.c_str(), RTLD_NOW),
                [](VOID* pHandle)
                {
                    if (pHandle != nullptr)
                    {
                        dlclose(pHandle);
                    }
                }),
      m_create(nullptr), m_pLogLevels(nullptr), m_decorate(std::move(decorate))
{
    if (m_pHandle == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    m_create = reinterpret_cast<CreateFunction>(dlsym(m_pHandle.get(), "CreateKiroCoreAlgo"));
    if (m_create == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    m_pLogLevels = static_cast<UINT32*>(dlsym(m_pHandle.get(), "gStatsLogLevels"));
}

IKIROCoreAlgo* KiroCoreLibrary::Create(StatsTuningData& rTuningData, IKIRODebugData& rDebugData,
                                       StatsLogger logger) const
{
    // The logger stands first: the core takes the pointer of the first entry.
    AECAlgoCreateParam params[] = {
        {reinterpret_cast<VOID*>(logger), sizeof(logger), AECAlgoCreateParamsLoggerFunctionPtr}};
    const AECAlgoCreateParamList list  = {params, static_cast<UINT32>(std::size(params))};
    IKIROCoreAlgo*               pCore = nullptr;
    if (m_create(rTuningData, rDebugData, list, pCore) != 0)
    {
        return nullptr;
    }
    return m_decorate ? m_decorate(pCore, rTuningData) : pCore;
}

VOID KiroCoreLibrary::TakeLogLevels(UINT32 levels) const
{
    if (m_pLogLevels != nullptr)
    {
        std::atomic_ref<UINT32>(*m_pLogLevels).store(levels, std::memory_order_relaxed);
    }
}
