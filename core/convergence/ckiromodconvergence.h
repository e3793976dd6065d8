/// @file
/// Moves the frame's exposures towards the metered targets, a few percent per frame.
///
/// All work is done in a log domain with steps of 3 percent. Safe is the exposure that the speed law drives; Short and
/// Long are carried as a distance from Safe. A stretch may move Short further than Safe on purpose, with a predictive
/// gain that records the part that Safe did not take. All exposures start again from the history each frame.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/base/statsdeque.h"
#include "core/convergence/cconveventmanager.h"
#include "core/convergence/smoothnode.h"
#include "core/modulecommon.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"

/// Tolerances below this land exactly on the target: 0 and 1.
constexpr FLOAT LandingTolerance = 1.0000001f;

/// Selects what GetExposureInfo returns.
enum KIROConvExpInfoType : INT32
{
    KIROConvMatched          = 0,  ///< exposure of the frame whose statistics are being looked at
    KIROConvPrevious         = 1,  ///< exposure of the previous frame
    KIROConvTgtMatchDelta    = 2,  ///< target minus matched
    KIROConvTgtPreviousDelta = 3,  ///< target minus previous
    KIROConvDRCCurrDelta     = 4,  ///< Safe target minus target
    KIROConvDRCPrevDelta     = 5,  ///< Safe minus exposure in the previous frame
    KIROConvMax              = 6
};

/// Exposures in the log domain and what goes with them, before they are capped.
struct KIROConvCoreOutput
{
    DOUBLE sensiLog103[3];
    FLOAT  predGain;
    FLOAT  shortStretchOffset;
};

/// One stretch, or the aggregate of several.
struct KIROTargetStretchOutType
{
    FLOAT weight;
    FLOAT stretchOffset;  ///< log steps
    FLOAT comp;           ///< share of a negative stretch that the predictive gain makes up for
    FLOAT tempWeight;     ///< weight of this frame in the temporal filter
    BOOL  bBrightToDark;
};

constexpr UINT32 ConvStretchCountMax = 10;

typedef Tavo::StatsDeque<KIROTargetStretchOutType, ConvStretchCountMax> KIROStretchOutputDeque;

class CKIROConvergence : public ModuleCommon
{
public:
    CKIROConvergence(StatsTuningData& rTuningData, IKIROContextManager& rContextManager);

    /// One frame. @return 0, or 1 without limits or without a previous frame in the history; rOutput is then not filled
    KiroResult RunConvProcesss(KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput);

    /// Ties Safe between Short and Long on a sensor with three exposures in one frame.
    VOID HandleExposureConstraints(KIROConvergenceOutput& rOutput);

    /// Decides whether convergence counts as done and sets the two flags.
    VOID RunConvSettle(KIROConvergenceOutput& rOutput);

    /// Publishes the frame's results to the trigger bank and clears context events.
    VOID RunConvPostProcess(KIROConvergenceOutput& rOutput);

private:
    // The frame.
    KiroResult Initialize(const KIROConvergenceInput& rInput);
    bool       RunStages();
    bool       ConvBasedOnDirection();
    bool       IfRunConvBasedOnConditions();
    bool       CheckRunConvConditions();
    VOID       AdjustExpWithUnitStepSize(DOUBLE& rLogExp, UINT32 exposureType) const;
    VOID       PopulateOutput(KIROConvergenceOutput& rOutput);
    VOID       CapExposure(KIROConvergenceOutput& rOutput);

    // What the stages read.
    VOID                   UpdateDBTriggers();
    VOID                   UpdateDBTriggersForNewTuning();
    VOID                   SetTriggerTrees();
    const AECFrameHistory* PreviousFrame() const;
    DOUBLE                 GetExposureInfo(KIROConvExpInfoType type, UINT32 expType) const;
    DOUBLE                 DRCPrevDelta(UINT32 expType) const;
    FLOAT                  GetTriggerValue(const DataBankType& rBank) const;
    FLOAT                  GridStep() const;
    FLOAT                  PreviousShortStretch() const;

    // Stages.
    VOID   ComputeBasicSafeConvergence();
    bool   IsSafeSettledInTolerance(DOUBLE tgtPreviousDelta) const;
    DOUBLE BasicSafeDelta(DOUBLE tgtMatchedDelta, DOUBLE tgtPreviousDelta, DOUBLE previous) const;
    VOID   ComputeDRCConvergence();
    VOID   DRCDeltaConvergence(UINT32 expType, FLOAT speed);
    DOUBLE DRCMovedOutput(UINT32 expType, FLOAT speed, DOUBLE desiredDelta, DOUBLE inputDelta) const;
    VOID   ConvergeSmoothNode(AECAlgoExposureType exposureType);
    FLOAT  ADRCGainTarget() const;
    VOID   ComputeTargetStretchOutput();
    UINT32 StretchCount() const;
    VOID   ComputeStretch(UINT32 index);
    VOID   AggregateStretchOutput(KIROTargetStretchOutType& rAggOut);
    VOID   AverageStretches(KIROTargetStretchOutType& rAggOut, BOOL bBrightToDark) const;
    VOID   SortStretches();
    INT32  SelectByWeight(BOOL bBrightToDark) const;
    INT32  SelectByEffect(BOOL bBrightToDark) const;
    VOID   ComputeStretchOffset(const KIROTargetStretchOutType& rAggOut, FLOAT& rShortStretchOffset,
                                FLOAT& rSafeStretchOffset, FLOAT& rPredGain) const;
    VOID   DRCStretchAggregator();
    VOID   JoinDRCAndStretch(FLOAT stretchRatio, FLOAT drcRatio);
    VOID   AdoptDRCOutput();
    VOID   CalculateCompensationDarkBoostGain(const KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput) const;
    FLOAT  ConvergeDarkCompensation(const KIROConvergenceInput& rInput, const AECFrameHistory& rPrevious) const;

    // After the frame.
    VOID ApplyAdvancedSettle(BOOL* pSettleStatus) const;
    VOID ClearSettledEvents();
    VOID SetConvOutputToDB(const KIROConvergenceOutput& rOutput);
    VOID PopulateDebugData(const KIROConvergenceOutput& rOutput) const;

    KIROConvTempInput      m_input;
    KIROArbitratedLimits   m_range;   ///< a copy: the host may let its own go before the frame's debug data are written
    KIROArbitratedLimits*  m_pRange;  ///< that, null for a frame without limits
    KIROConvCoreOutput     m_output;
    DOUBLE                 m_DRCOutput[3];   ///< the DRC branch's own result
    KIROStretchOutputDeque m_tgtStretchOut;  ///< written by index; slots keep what they held

    const kiroconvergence::KIROConvergenceType*    m_pTuning;
    const kirodbconvbase::DBConvBasePayload*       m_pConvBase;
    const kirodbconvstretch::DBConvStretchPayload* m_pConvStretch;
    const kirodbconvsettle::DBConvSettlePayload*   m_pConvSettle;
    const kirodbconvbase::ConvBaseCoreDataType*    m_pBaseCoreData;

    CKIROConvBase                m_triggerBase;
    CKIROConvSettle              m_triggerSettle;
    CKIROConvStretch             m_triggerStretch[ConvStretchCountMax];
    UINT32                       m_scdID;  ///< the active scene change detector
    BOOL                         m_bBrightnessSettle;
    BOOL                         m_bSettle;
    BOOL                         m_bSettleArray[3];  ///< Short and Long settled, and for Safe the brightness flag
    UINT32                       m_settleCount;
    CConvEventManager            m_convEventManager;
    BOOL                         m_bIsTargetFixed;
    SmoothNodeConvergenceContext m_smoothADRC;
    SmoothNodeConvergenceContext m_smoothDarkBoost;
};
