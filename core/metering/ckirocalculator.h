/// @file
/// A tuned measurement: which statistic to compute on which channels, and where in the bank the number goes.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/ikirocontextmanager.h"
#include "core/statsprocessor/ckiromodstatsprocessor.h"
#include "schema/kirometeringstatscalculator.h"

class CCalculator
{
public:
    using StatsCalculatorType = kirometeringstatscalculator::StatsCalculatorType;

    static constexpr UINT32 OutputCountMax = 2;

    CCalculator();

    /// Must precede all else. The record stays the tuning's.
    VOID SetCalculatorTuning(const StatsCalculatorType* pTuning, IKIROContextManager& rContextManager);

    /// Measures and stores; -1.0 is stored where the measurement failed. Extreme colours are stored by RunXtremeColor.
    VOID RunCalculator();

    /// One walk over the grid for the groups of several calculators; it stores their results.
    VOID RunXtremeColor(GroupedGridParameters** ppGroups, UINT32 count);

    UINT32      GetID() const;
    const CHAR* GetDescription() const;

    /// @return the extreme colour region, null if the last run made none
    GroupedGridParameters* GetValidGroup();

private:
    KiroResult   HandleAPIGridWeightedAverage();
    KiroResult   HandleAPIHistWeightedAverage();
    KiroResult   HandleAPIHistRangeAverage(KIROHistRangeType type, BOOL bMultiExposure);
    KiroResult   HandleAPIGridRgbgStatsCounter();
    KiroResult   HandleAPIExtremeColorRgbgStatsRatio();
    KiroResult   HandleAPIGridStatsRoughness();
    KiroResult   ScaleMultiExposurePercentileStats(FLOAT* pOut, FLOAT* pOutExposure1Weight) const;
    StartEndType RangeAtLux();
    VOID         StoreResults(UINT32 outCount);

    CKIROStatsProcessor& Stats() const
    {
        return *m_pContextManager->m_pStatsProcessor;
    }

    GroupedGridParameters      m_group;  ///< filled for extreme colours only
    const StatsCalculatorType* m_pTuning;
    IKIROContextManager*       m_pContextManager;
    FLOAT                      m_results[OutputCountMax];
    CKIROTwoFloatsXML          m_triggerRange;  ///< ranges over the lux index
};
