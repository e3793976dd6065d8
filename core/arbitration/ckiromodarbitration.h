/// @file
/// Splits an exposure into gain and time under limits that narrow one by one.
///
/// Each call applies one control: a range, a look-up table or an exposure table; see KIROArbitrationInput for how a
/// host walks a list of them.
#pragma once

#include "core/arbitration/arbitrationmemo.h"
#include "core/base/ckirotrigger.h"
#include "core/modulecommon.h"
#include "interface/kiroframe.h"
#include "schema/kiroarbitration.h"
#include "schema/kirodbarbitrationlut.h"
#include "schema/kirodbarbitrationrange.h"
#include "schema/kirodbarbitrationtable.h"

class CKIROArbitration : public ModuleCommon
{
public:
    CKIROArbitration(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);

    /// Applies one control.
    /// @return 0 applied; 1 failed or not applicable; 3 not in follow mode; 6 data not found; 10 not for this frame
    KiroResult RunArbitration(KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput);

private:
    using ExposureTableType = kirodbarbitrationtable::ExposureTableType;
    using ExposureKneeType  = kirodbarbitrationtable::ExposureKneeType;
    using RangeType         = kirodbarbitrationrange::RangeType;
    using LUTType           = kirodbarbitrationlut::LUTType;
    using LUTKeyType        = kirodbarbitrationlut::LUTKeyType;

    VOID       RepairInput(KIROArbitrationInput& rInput) const;
    VOID       HoldSoundExposure(KIROArbitrationOutput& rOutput) const;
    VOID       PopulateDebugData() const;
    KiroResult ApplyControl(KIROArbitrationOutput& rOutput);

    // Ranges.
    KiroResult ApplyCoreRange();
    KiroResult AdjustSpecialRange(RangeType* pAdj, const CHAR* pDescription);
    KiroResult UpdateRange(KIROExposureRange* pTempRange, const RangeType* pAdj);
    KiroResult UpdateRangeGain(FLOAT* pStartGain, FLOAT* pEndGain, const RangeType* pAdj) const;
    KiroResult UpdateRangeTime(UINT64* pStartTime, UINT64* pEndTime, const RangeType* pAdj) const;
    KiroResult UpdateRangeIndex(KIROExposureRange* pTempRange, const RangeType* pAdj);
    VOID       UpdateOneRangeIndex(FLOAT index, KIROExposureSetType* pBound);
    KiroResult ArbitrateExposureRange(KIROExposureRange* pTempRange, const RangeType* pAdj);
    /// Lets the tuned handling decide where gain or time still lies outside; 0 where nothing does.
    KiroResult ResolveConflict(KIROExposureRange* pTempRange, const RangeType* pAdj, bool isTimeMoved, FLOAT* pGain,
                               UINT64* pTime);
    VOID       WriteArbitratedExposure(FLOAT gain, UINT64 time, FLOAT correction);
    VOID       CompensateRange(const KIROExposureRange* pOld, KIROExposureRange* pNew,
                               kirodbarbitrationrange::ArbExposureQuantity quantity) const;
    KiroResult ApplyPrecisionFlashRange(RangeType* pAdj) const;
    KiroResult ApplyCoreRangeAECSync(RangeType* pAdj) const;
    KiroResult ApplyCoreRangeSHDRTime(RangeType* pAdj) const;

    // Tables.
    /// Splits the current exposure along the control's table and fits it into the range.
    /// @param pOutExposure is of no use after a result other than 0: the split is made in place
    KiroResult ApplyCoreTable(KIROExposureSetType* pOutExposure);
    /// Splits an exposure along a table, wherever the range lies.
    KiroResult   ApplyCoreTable(KIROExposureSetType* pOutExposure, const ExposureTableType& rTable, UINT64 exposure);
    TableSegment SelectSegment(const ExposureTableType& rTable, UINT64 exposure) const;
    VOID         SplitAlongSegment(const TableSegment& rSegment, FLOAT correction, KIROExposureSetType* pSplit) const;

    // Look-up tables.
    KiroResult ApplyCoreLUT();
    KiroResult GetLUTTrigger(const LUTKeyType* pKey, FLOAT* pValue) const;
    KiroResult FitLUTOutput(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const;
    KiroResult FitLUTGain(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const;
    KiroResult FitLUTTime(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const;
    VOID       AlignToFlickerGrid(const LUTType& rLUT, KIROExposureSetType* pCandidate) const;
    VOID       UtilTryATBPeriod(UINT64 period, KIROExposureSetType* pCandidate) const;
    KiroResult FinishLUTOutput(const LUTType& rLUT, KIROExposureSetType* pCandidate) const;

    // Control history.
    KiroResult MatchControlHistory(KIROExposureSetType* pOutExposure);
    KiroResult CheckBracketing(const kiroarbitration::ArbitrationReferenceType& rReference) const;
    KiroResult FindReferenceKnee(const kiroarbitration::ReferenceSourceType& rSource, ExposureKneeType* pKnee) const;
    const AECFrameHistory* FindPreviewFrame(const kiroarbitration::PreviewFrameSelectionType& rSelection) const;
    KiroResult             FindEndKnee(const kiroarbitration::ArbitrationEndType& rEnd, ExposureKneeType* pKnee) const;

    const KIROExposureSetType& CurrentExposure() const
    {
        return m_pIn->exposures[m_pIn->expType];
    }

    KIROArbitrationInput*  m_pIn;   ///< for the call
    KIROArbitrationOutput* m_pOut;  ///< for the call
    CKIRODataXML           m_LUTTrigger;
    UINT64                 m_maxTimes[AECAlgoExposureCount];   ///< of the last output range per exposure type, ns
    SplitMemo              m_splits[AECAlgoExposureCount][2];  ///< of walks for exposures, and of those for limits
    LimitsMemo             m_limits[AECAlgoExposureCount];
};
