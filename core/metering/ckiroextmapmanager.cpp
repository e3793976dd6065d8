#include "core/metering/ckiroextmapmanager.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/base/tuningvalues.h"

CKIROExtMapManager::CKIROExtMapManager(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_hasProcessors(false)
{
}

VOID CKIROExtMapManager::UpdateExtMapProcessors()
{
    m_tuning.Refresh(tuningaccess::Get_kiroexternalmapprocessor(*m_rContextManager.GetTuningData()),
                     [this](const Tuning* pTuning) { Rebuild(pTuning); });
}

VOID CKIROExtMapManager::Rebuild(const Tuning* pTuning)
{
    DeleteProcessors();
    m_hasProcessors = false;
    if (pTuning == nullptr)
    {
        return;
    }
    m_processors.reset(tuningvalues::CountOf(pTuning->externalMapProcessor, pTuning->externalMapProcessorCount));
    for (UINT32 index = 0; index < m_processors.size(); ++index)
    {
        m_processors[index].SetExtMapProcessorTuning(&pTuning->externalMapProcessor[index], m_rContextManager);
    }
    m_hasProcessors = m_processors.size() == pTuning->externalMapProcessorCount;
    STATS_LOG_RARE("Update External Map Processors processorCount %d", m_processors.size());
}

/// The bank points into the processors: a changed record may give their output another data ID or none.
VOID CKIROExtMapManager::DeleteProcessors()
{
    if (m_processors.size() != 0)
    {
        m_rContextManager.m_pBankManager->RemoveData(BankIDMetering2D, SourceModuleMetering);
        m_processors.clear();
    }
}

VOID CKIROExtMapManager::RunExtMapProcessors()
{
    UpdateExtMapProcessors();
    if (!m_hasProcessors)
    {
        STATS_LOG_ERROR("Failed to run external map processors: there are none");
        return;
    }
    for (CExternalMapProcessor& rProcessor : m_processors)
    {
        if (rProcessor.IsEnabled())
        {
            rProcessor.Run();
        }
    }
}
