#include "core/metering/ccalculatormanager.h"

#include "core/base/kirolog.h"
#include "core/contextdebugdata.h"

namespace
{

/// Extreme colours that one walk serves.
constexpr UINT32 ColorGroupCountMax = 64;

TavoPtr<CCalculator> NewCalculator(const CCalculator::StatsCalculatorType& rTuning, IKIROContextManager& rContext)
{
    TavoPtr<CCalculator> pCalculator = TavoNew<CCalculator>();
    if (pCalculator != nullptr)
    {
        pCalculator->SetCalculatorTuning(&rTuning, rContext);
    }
    return pCalculator;
}

}  // namespace

CCalculatorManager::CCalculatorManager(IKIROContextManager& rContextManager) : m_rContextManager(rContextManager)
{
}

VOID CCalculatorManager::UpdateCalculators(Tuning* pTuning)
{
    m_tuning.Refresh(pTuning, [this](const Tuning* pRecord) { Rebuild(pRecord); });
}

VOID CCalculatorManager::Rebuild(const Tuning* pTuning)
{
    m_calculators.clear();
    for (TavoPtr<CCalculator>* ppFixed :
         {&m_pAverageCalculator, &m_pCtrWeightedCalculator, &m_pDarkRatioCalculator, &m_pBrightRatioCalculator})
    {
        ppFixed->reset();
    }
    if (pTuning == nullptr)
    {
        return;
    }
    m_calculators.reset(pTuning->statsCalculatorsCount);
    for (UINT32 index = 0; index < m_calculators.size(); ++index)
    {
        m_calculators[index].SetCalculatorTuning(&pTuning->statsCalculators[index], m_rContextManager);
    }
    m_pAverageCalculator     = NewCalculator(pTuning->averageStatsCalculator, m_rContextManager);
    m_pCtrWeightedCalculator = NewCalculator(pTuning->centerWeightedStatsCalculator, m_rContextManager);
    m_pDarkRatioCalculator   = NewCalculator(pTuning->darkRatioStatsCalculator, m_rContextManager);
    m_pBrightRatioCalculator = NewCalculator(pTuning->brightRatioStatsCalculator, m_rContextManager);
    STATS_LOG_TRACE("Updated Calculators, count: %d", m_calculators.size());
}

VOID CCalculatorManager::RunAverageCalculator()
{
    if (m_pAverageCalculator != nullptr)
    {
        STATS_LOG_TRACE("---- Running average calculator ID: %d, %s ----", m_pAverageCalculator->GetID(),
                        m_pAverageCalculator->GetDescription());
        m_pAverageCalculator->RunCalculator();
    }
}

VOID CCalculatorManager::RunCtrWeightedCalculator()
{
    if (m_pCtrWeightedCalculator != nullptr)
    {
        STATS_LOG_TRACE("---- Running center weighted calculator ID: %d, %s ----", m_pCtrWeightedCalculator->GetID(),
                        m_pCtrWeightedCalculator->GetDescription());
        m_pCtrWeightedCalculator->RunCalculator();
    }
}

VOID CCalculatorManager::RunDarkRatioCalculator()
{
    if (m_pDarkRatioCalculator != nullptr)
    {
        STATS_LOG_TRACE("---- Running dark ratio calculator ID: %d, %s ----", m_pDarkRatioCalculator->GetID(),
                        m_pDarkRatioCalculator->GetDescription());
        m_pDarkRatioCalculator->RunCalculator();
    }
}

VOID CCalculatorManager::RunBrightRatioCalculator()
{
    if (m_pBrightRatioCalculator != nullptr)
    {
        STATS_LOG_TRACE("---- Running bright ratio calculator ID: %d, %s ----", m_pBrightRatioCalculator->GetID(),
                        m_pBrightRatioCalculator->GetDescription());
        m_pBrightRatioCalculator->RunCalculator();
    }
}

VOID CCalculatorManager::RunCalculators()
{
    const auto* pActive = m_rContextManager.m_pBankManager->GetDataActiveCalculators(0);
    if (pActive != nullptr)
    {
        STATS_LOG_TRACE("Active Calculator dataID %d, number of active Calculators %d", pActive->dataID,
                        pActive->calculatorIDCount);
    }
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug != nullptr)
    {
        pDebug->meteringInfo.calculatorCount = 0;
    }
    if (pActive != nullptr)
    {
        for (UINT32 index = 0; index < pActive->calculatorIDCount; ++index)
        {
            RunActiveCalculator(pActive->calculatorID[index]);
        }
    }
    RunXtremeColors();
}

VOID CCalculatorManager::RunActiveCalculator(UINT32 id)
{
    for (CCalculator& rCalculator : m_calculators)
    {
        if (rCalculator.GetID() == id)
        {
            STATS_LOG_TRACE("---- Running calculator ID: %d, %s ----", rCalculator.GetID(),
                            rCalculator.GetDescription());
            rCalculator.RunCalculator();
        }
    }
}

/// A calculator that ran in an earlier frame and is not active now still takes part with its old group: its output
/// goes on following the scene. Left out, it would stand still for analyzers that read it under another active list.
VOID CCalculatorManager::RunXtremeColors()
{
    GroupedGridParameters* groups[ColorGroupCountMax];
    UINT32                 count = 0;
    CCalculator*           pLast = nullptr;
    for (CCalculator& rCalculator : m_calculators)
    {
        GroupedGridParameters* pGroup = rCalculator.GetValidGroup();
        if (pGroup != nullptr && count < ColorGroupCountMax)
        {
            groups[count] = pGroup;
            pLast         = &rCalculator;
            ++count;
        }
    }
    if (pLast != nullptr)
    {
        pLast->RunXtremeColor(groups, count);
    }
}
