/// @file
/// Moves the frame's exposures towards the metered targets, a few percent per frame.
///
/// All work is done in a log domain with steps of 3 percent. Safe is the exposure that the speed law drives; Short and
/// Long are carried as a distance from Safe. A stretch may move Short further than Safe on purpose, with a predictive
/// gain that records the part that Safe did not take. All exposures start again from the history each frame.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/base/exposurearithmetic.h"
#include "core/convergence/cconveventmanager.h"
#include "core/convergence/convergencestages.h"
#include "core/modulecommon.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"

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

class CKIROConvergence : public ModuleCommon
{
public:
    CKIROConvergence(InstanceTuning& rTuningData, IKIROContextManager& rContextManager);

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
    bool       ConvBasedOnDirection() const;
    bool       IfRunConvBasedOnConditions();
    bool       CheckRunConvConditions() const;
    bool       RunStages();
    VOID       PopulateOutput(KIROConvergenceOutput& rOutput);

    // Stages, where more than values goes into one.
    const kirodbconvbase::ConvBaseCoreDataType* SelectSpeeds();
    VOID                                        ComputeTargetStretchOutput(DOUBLE converged);
    KIROLogExposures ComputeDRCConvergence(const convergencestages::MoveTuning& rTuning, DOUBLE safe);
    FLOAT            ADRCGainTarget() const;
    FLOAT            CalculateCompensationDarkBoostGain(const KIROConvergenceInput&  rInput,
                                                        const KIROConvergenceOutput& rOutput) const;

    // What the stages read.
    VOID                            UpdateDBTriggers();
    VOID                            UpdateDBTriggersForNewTuning();
    VOID                            SetTriggerTrees();
    const AECFrameHistory*          PreviousFrame() const;
    DOUBLE                          GetExposureInfo(KIROConvExpInfoType type, UINT32 expType) const;
    DOUBLE                          DRCCurrDelta(UINT32 expType) const;
    DOUBLE                          DRCPrevDelta(UINT32 expType, DOUBLE prediction) const;
    convergencestages::ExposureMove MoveOf(UINT32 expType) const;
    FLOAT                           GetTriggerValue(const DataBankType& rBank) const;
    bool                            IsLongCompensated() const;

    // After the frame.
    VOID ApplyAdvancedSettle(BOOL* pSettleStatus) const;
    VOID ClearSettledEvents();
    VOID SetConvOutputToDB(const KIROConvergenceOutput& rOutput);
    VOID PopulateDebugData(const KIROConvergenceOutput& rOutput) const;

    // The frame's, until the next one.
    KIROConvTempInput     m_input;
    DOUBLE                m_previousLog103[AECAlgoExposureCount];  ///< of the previous frame's exposures
    KIROArbitratedLimits  m_range;   ///< a copy: the host may let its own go before the frame's debug data are written
    KIROArbitratedLimits* m_pRange;  ///< that, null for a frame without limits
    KIROConvCoreOutput    m_output;
    BOOL                  m_bIsTargetFixed;

    const kiroconvergence::KIROConvergenceType*    m_pTuning;
    const kirodbconvbase::DBConvBasePayload*       m_pConvBase;
    const kirodbconvstretch::DBConvStretchPayload* m_pConvStretch;
    const kirodbconvsettle::DBConvSettlePayload*   m_pConvSettle;
    const kirodbconvbase::ConvBaseCoreDataType*    m_pBaseCoreData;  ///< null until the frame has selected its speeds

    CKIROConvBase    m_triggerBase;
    CKIROConvSettle  m_triggerSettle;
    CKIROConvStretch m_triggerStretch[ConvStretchCountMax];

    // What lives from frame to frame. All else starts anew with each frame, from the history.
    UINT32                       m_scdID;            ///< the active scene change detector
    UINT32                       m_settleCount;      ///< frames in a row in which Safe stood still
    BOOL                         m_bSettleArray[3];  ///< Short and Long settled, and for Safe the brightness flag
    SmoothNodeConvergenceContext m_smoothADRC;
    SmoothNodeConvergenceContext m_smoothDarkBoost;
    KIROStretchOutputDeque       m_tgtStretchOut;
    CConvEventManager            m_convEventManager;

    exposurearithmetic::SteadyExposure m_steadyExposures[AECAlgoExposureCount];  ///< of the logs that a frame ends with
};
