#include "core/metering/ccalculatormanager.h"

#include <algorithm>

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

/// @param pCalculator may be null, then nothing runs
/// @param pKind       for the log: empty, or with a blank behind it
VOID RunCalculator(CCalculator* pCalculator, const CHAR* pKind)
{
    if (pCalculator != nullptr)
    {
        STATS_LOG_TRACE("---- Running %scalculator ID: %d, %s ----", pKind, pCalculator->GetID(),
                        pCalculator->GetDescription());
        pCalculator->RunCalculator();
    }
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
    m_placeCount = 0;
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
    SortCalculators();
    m_pAverageCalculator     = NewCalculator(pTuning->averageStatsCalculator, m_rContextManager);
    m_pCtrWeightedCalculator = NewCalculator(pTuning->centerWeightedStatsCalculator, m_rContextManager);
    m_pDarkRatioCalculator   = NewCalculator(pTuning->darkRatioStatsCalculator, m_rContextManager);
    m_pBrightRatioCalculator = NewCalculator(pTuning->brightRatioStatsCalculator, m_rContextManager);
    STATS_LOG_TRACE("Updated Calculators, count: %d", m_calculators.size());
}

VOID CCalculatorManager::SortCalculators()
{
    m_places     = TavoNewArray<Place>(m_calculators.size());
    m_placeCount = (m_places != nullptr) ? m_calculators.size() : 0;
    if (m_placeCount != m_calculators.size())
    {
        STATS_LOG_ERROR("no memory for the order of %d calculators", m_calculators.size());
    }
    for (UINT32 index = 0; index < m_placeCount; ++index)
    {
        m_places[index] = {m_calculators[index].GetID(), index};
    }
    std::sort(m_places.get(), m_places.get() + m_placeCount);
}

VOID CCalculatorManager::RunAverageCalculator()
{
    RunCalculator(m_pAverageCalculator.get(), "average ");
}

VOID CCalculatorManager::RunCtrWeightedCalculator()
{
    RunCalculator(m_pCtrWeightedCalculator.get(), "center weighted ");
}

VOID CCalculatorManager::RunDarkRatioCalculator()
{
    RunCalculator(m_pDarkRatioCalculator.get(), "dark ratio ");
}

VOID CCalculatorManager::RunBrightRatioCalculator()
{
    RunCalculator(m_pBrightRatioCalculator.get(), "bright ratio ");
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

/// Several calculators may have one ID: all of them run, in the order of the tuning.
VOID CCalculatorManager::RunActiveCalculator(UINT32 id)
{
    const Place* pFirst = m_places.get();
    const Place* pEnd   = pFirst + m_placeCount;
    for (const Place* pPlace = std::lower_bound(pFirst, pEnd, Place{id, 0}); pPlace != pEnd && pPlace->id == id;
         ++pPlace)
    {
        RunCalculator(&m_calculators[pPlace->index], "");
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
