/// @file
/// The lux index: how bright the scene is, as an exposure index that falls as light grows. With it go the triggers that
/// tell how much of the frame is dark or bright, and how much light the LED adds in preflash.
#pragma once

#include "core/metering/ckiroanalyzeralgorithm.h"
#include "schema/kirometeringstatscalculator.h"

/// Runs on the lux analyzer.
class CAnalyzerAlgorithm001 : public CAnalyzerAlgorithm
{
public:
    CAnalyzerAlgorithm001();

    AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) override;

    /// Takes the lux analyzer, whatever the ID.
    VOID SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager) override;

private:
    struct LuxAlgorithmTuning
    {
        BOOL   enableLuxCompensation;
        UINT64 refExposureForLuxIndexZero;  ///< at least 1
        FLOAT  filterinFactor;              ///< share of the previous index
    };

    AECAlgoExposureType ReferenceType() const;
    FLOAT               BaseIndex() const;
    VOID  PublishRatio(KIROTriggerType trigger, const kirometeringstatscalculator::StatsCalculatorType& rCalculator,
                       const CHAR* pDescription) const;
    VOID  ProvideFlashInfluence(const KIROAnalyzerOutput& rAnalyzer) const;
    VOID  PopulateDebugData(const KIROAnalyzerOutput& rAnalyzer) const;
    FLOAT PreflashInfluence(const KIROAnalyzerOutput& rAnalyzer) const;

    LuxAlgorithmTuning                                      m_luxAlgorithmTuning;
    const kirometeringstatscalculator::StatsCalculatorType* m_pDarkRatioCalculatorTuning;
    const kirometeringstatscalculator::StatsCalculatorType* m_pBrightRatioCalculatorTuning;
};
