#include "core/metering/ckiro1dvectormanager.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/base/tuningvalues.h"

CKIRO1DVectorManager::CKIRO1DVectorManager(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_hasProcessors(false)
{
}

VOID CKIRO1DVectorManager::Update1DVectorProcessors()
{
    m_tuning.Refresh(tuningaccess::Get_kiro1dvectorprocessor(*m_rContextManager.GetTuningData()),
                     [this](const Tuning* pTuning) { Rebuild(pTuning); });
}

VOID CKIRO1DVectorManager::Rebuild(const Tuning* pTuning)
{
    m_1DVectorProcessors.clear();
    m_pGyroVectorProcessor.reset();
    m_hasProcessors = false;
    if (pTuning == nullptr)
    {
        return;
    }
    m_1DVectorProcessors.reset(tuningvalues::CountOf(pTuning->vectorProcessors, pTuning->vectorProcessorsCount));
    for (UINT32 index = 0; index < m_1DVectorProcessors.size(); ++index)
    {
        m_1DVectorProcessors[index].SetVectorProcessorTuning(&pTuning->vectorProcessors[index], m_rContextManager);
    }
    m_hasProcessors = m_1DVectorProcessors.size() == pTuning->vectorProcessorsCount;
    STATS_LOG_RARE("Update 1D Vector Processors processorCount %d", m_1DVectorProcessors.size());
    m_pGyroVectorProcessor = TavoNew<C1DVectorProcessor>();
    if (m_pGyroVectorProcessor != nullptr)
    {
        m_pGyroVectorProcessor->SetVectorProcessorTuning(&pTuning->gyroVectorProcessor, m_rContextManager);
    }
}

VOID CKIRO1DVectorManager::Run1DVectorProcessors(VectorProcessorUsageType usage, UINT32 sampleCount)
{
    Update1DVectorProcessors();
    STATS_LOG_TRACE("\n------------ Run 1D Vector Processors : usage type %d-----------------",
                    static_cast<INT32>(usage));
    switch (usage)
    {
    case VectorProcessorUsageType::Default:
        if (!m_hasProcessors)
        {
            STATS_LOG_ERROR("Failed to run Run1DVectorProcessors as m_p1DVectorProcessors is NULL");
        }
        for (C1DVectorProcessor& rProcessor : m_1DVectorProcessors)
        {
            rProcessor.Run(sampleCount);
        }
        break;
    case VectorProcessorUsageType::Gyro:
        if (m_pGyroVectorProcessor == nullptr)
        {
            STATS_LOG_ERROR("Failed to run Run1DVectorProcessors as m_pGyroVectorProcessor is NULL");
            break;
        }
        m_pGyroVectorProcessor->Run(sampleCount);
        break;
    default:
        STATS_LOG_ERROR("No Matched Vector Processor Usage Type %d", static_cast<INT32>(usage));
        break;
    }
    STATS_LOG_TRACE("\n------------ End Of 1D Vector Processors --------------\n");
}

VOID CKIRO1DVectorManager::Reset1DVectorProcessors(VectorProcessorUsageType usage)
{
    switch (usage)
    {
    case VectorProcessorUsageType::Default:
        if (!m_hasProcessors)
        {
            STATS_LOG_ERROR("Failed to reset Run1DVectorProcessors as m_p1DVectorProcessors is NULL");
        }
        for (C1DVectorProcessor& rProcessor : m_1DVectorProcessors)
        {
            rProcessor.ResetBuffer();
        }
        break;
    case VectorProcessorUsageType::Gyro:
        if (m_pGyroVectorProcessor == nullptr)
        {
            STATS_LOG_ERROR("Failed to reset Run1DVectorProcessors as m_pGyroVectorProcessor is NULL");
            break;
        }
        m_pGyroVectorProcessor->ResetBuffer();
        break;
    default:
        STATS_LOG_ERROR("No Matched Vector Processor Usage Type %d", static_cast<INT32>(usage));
        break;
    }
}
