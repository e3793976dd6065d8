/// @file
/// Owns a calculator for each tuned record and runs them in the order of the active list.
#pragma once

#include <compare>

#include "core/base/tuningdriven.h"
#include "core/metering/ckirocalculator.h"

class CCalculatorManager
{
public:
    using Tuning = kirometeringstatscalculator::KIROMeteringStatsCalculatorType;

    explicit CCalculatorManager(IKIROContextManager& rContextManager);

    /// Called every frame; rebuilds the calculators when the record is another one. With null there are none.
    VOID UpdateCalculators(Tuning* pTuning);

    // The four fixed calculators; nothing happens before the first UpdateCalculators.
    VOID RunAverageCalculator();
    VOID RunCtrWeightedCalculator();
    VOID RunDarkRatioCalculator();
    VOID RunBrightRatioCalculator();

    /// Runs the active list, then one walk for all extreme colours.
    VOID RunCalculators();

private:
    struct Place
    {
        UINT32 id;
        UINT32 index;

        auto operator<=>(const Place&) const = default;
    };

    VOID Rebuild(const Tuning* pTuning);
    VOID SortCalculators();
    VOID RunActiveCalculator(UINT32 id);
    VOID RunXtremeColors();

    IKIROContextManager& m_rContextManager;
    TuningDriven<Tuning> m_tuning;
    // Destroyed in this order reversed: the fixed ones last.
    TavoPtr<CCalculator>     m_pAverageCalculator;
    TavoPtr<CCalculator>     m_pCtrWeightedCalculator;
    TavoPtr<CCalculator>     m_pDarkRatioCalculator;
    TavoPtr<CCalculator>     m_pBrightRatioCalculator;
    TavoObjects<CCalculator> m_calculators;
    TavoArray<Place>         m_places;  ///< of the calculators, by rising ID, then by position
    UINT32                   m_placeCount = 0;
};
