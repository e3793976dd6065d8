/// @file
/// Turns the frame's statistics into three target exposures: short, long and safe.
///
/// Called twice in a frame; between the calls the frame driver runs the active analyzers.
#pragma once

#include "core/base/binarymask.h"
#include "core/metering/canalyzermanager.h"
#include "core/metering/ccalculatormanager.h"
#include "core/modulecommon.h"
#include "interface/aecdebugdata.h"
#include "schema/kiroflash.h"
#include "schema/kirometering.h"

class CKIROMetering : public ModuleCommon
{
public:
    /// Target when nothing is known yet.
    static constexpr UINT64 DefaultExposure = 10000000;

    CKIROMetering(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);

    /// @return 0 when the frame was metered; 1 when it was skipped
    KiroResult RunMeteringPreprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);

    /// @return null for an unknown analyzer
    const KIROAnalyzerOutput* RunAnalyzer(UINT32 analyzerID);
    VOID                      UpdateAnalyzerMgrOutput(UINT32 analyzerID, KIROAnalyzerOutput* pOutput);

    /// Takes the analyzers' exposures and applies antibanding priorities.
    /// @return 0, or 1 when debug data of a flash snapshot cannot be filled
    KiroResult RunMeteringPostprocess(KIROMeteringInput& rInput, KIROMeteringOutput& rOutput);

    /// Replaces the exposures by the previous frame's targets while metering is locked. @return bLockMetering
    BOOL UpdateMeteringLockExposure(KIROMeteringOutput& rOutput);

    /// Behind isPreflashMeteringNeeded, with its tuning.
    BOOL IsPreflashMeteringNeeded(const KIROCntStatsOut* pOff, UINT32 offCount, const KIROCntStatsOut* pLow,
                                  UINT32 lowCount, const kiroflash::FlashStatsPreprocessingType* pTuning);

private:
    VOID UpdateManagers();
    VOID UpdateManagersForNewTuning();

    struct PreflashContext
    {
        INT32  LEDOffDilatedBrightTable[binarymask::CellCount];
        UINT64 fID;  ///< never assigned: the table is rebuilt on every call with a frame ID
    };

    const AECFrameHistory* FindMatchedFrame() const;
    bool                   IsFrameSkipped(const AECFrameHistory* pMatched, BOOL bStatsValid) const;
    VOID UsePreviousTargets(const AECFrameHistory* pMatched, BOOL bStatsValid, KIROMeteringOutput& rOutput);
    VOID PublishMatchedExposures(const AECFrameHistory& rMatched);
    VOID PublishShortBlend(const AECFrameHistory& rMatched);
    VOID PublishFlashLowExposures();
    VOID CollectAnalyzerOutputs(KIROMeteringOutput& rOutput) const;
    VOID CalculateAntibandingPriority(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) const;
    VOID PullSafeToAntibanding(const kirometering::AntibandingPrioOverLumaType& rTuning, UINT64 antibandingExposure,
                               UINT64* pExposures) const;
    VOID CalculateAntibandingADRCPriority(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) const;
    VOID PopulateDebugData(const KIROMeteringOutput& rOutput) const;
    KiroResult FillFlashDebugData(AECDebugDataFlashType* pRecord, const KIROMeteringOutput& rOutput) const;
    VOID       BuildLEDOffMask(const KIROCntStatsOut& rLevel, const KIROCntStatsOut& rSaturation,
                               const kiroflash::FlashStatsPreprocessingType& rTuning);

    // The calculators outlive the analyzers, which are destroyed first.
    CCalculatorManager m_calculatorManager;
    CAnalyzerManager   m_analyzerManager;
    PreflashContext    m_preflashContext;
};
