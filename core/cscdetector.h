/// @file
/// A tuned scene change detector.
///
/// It watches one trigger and runs two state machines over it. The first one tells whether the scene has changed: the
/// filtered value has stood off its baseline for long enough; and after that whether the value has become stable again.
/// The second one holds a change for a tuned time. Only Rebase brings both back to their first state. A detector rests
/// until the exposure has settled once, since before that every trigger changes.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/ikirocontextmanager.h"
#include "schema/kiroscenechangedetector.h"

enum SCDetectionStateType : INT32
{
    SCMonitoring   = 0,
    SCDetected     = 1,
    SCPostStable   = 2,
    SCDHoldTimeMax = 3
};

enum HoldTimeStateType : INT32
{
    HoldTimeOff = 0,
    HoldTimeOn  = 1,
    HoldTimeEnd = 2,
    HoldTimeMax = 3
};

/// The tuned values of the present frame.
struct SCDCoreDataType
{
    FLOAT  valueThres;  ///< least difference from the baseline
    UINT32 countThres;  ///< consecutive frames that it must last
    FLOAT  holdTime;    ///< seconds
};

class CSCDetector
{
public:
    using Tuning      = kiroscenechangedetector::AECSCDType;
    using RunPriority = kiroscenechangedetector::SCDetectionRunPriority;

    CSCDetector();

    /// Must precede all else. The record stays the tuning's.
    VOID SetDetectorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager);

    /// One frame.
    /// @param bStatsValid 0 stops the detector until the exposure has settled again; its states stay
    VOID Run(BOOL bStatsValid);

    /// Takes a new baseline and brings both state machines to their first state. Nothing happens while the detector is
    /// off, or if its input cannot be read.
    VOID Rebase();

    UINT32      GetID() const;
    RunPriority GetPriority() const;

    VOID GetSCDOutput(KIROSCDOutput& rOutput) const
    {
        rOutput = m_scDOutput;
    }

private:
    static constexpr UINT32 HistorySize = 10;

    // Input and tuned values of the frame.
    bool                                        CheckTuningAndState(BOOL bStatsValid);
    bool                                        GetTriggerValue(const DataBankType& rBank, FLOAT& rValue) const;
    bool                                        GetInput(FLOAT& rValue);
    bool                                        RunPreProcessing();
    UINT32                                      FilterLength() const;
    FLOAT                                       GetAverageValue() const;
    FLOAT                                       GetMedianValue() const;
    bool                                        GetCoreData();
    template <typename TriggerData> const VOID* Evaluate(const TriggerData& rTuning, CKIRODataXML& rTree) const;
    VOID                                        UpdateOutputState();

    // State machines.
    FLOAT DiffFromBaseline() const;
    bool  DetectSceneChange();
    bool  DetectPostStable() const;
    VOID  RunSCDStateMachine();
    VOID  CheckHoldTimeEnterConfig();
    bool  CheckIfExitHoldTime();
    VOID  RunHoldTimeStateMachine();

    const CHAR* Name() const;

    SCDetectionStateType m_scDetectionState;
    HoldTimeStateType    m_holdTimeState;
    KIROSCDOutput        m_scDOutput;
    BOOL                 m_bFirstSettle;  ///< the exposure has settled since the detector was last stopped
    BOOL                 m_holdTimeEnterAllowed;
    const Tuning*        m_pTuning;
    IKIROContextManager* m_pContextManager;
    FLOAT                m_curFrameDuration;  ///< seconds, 0 for an unknown frame rate
    CKIROSCD             m_thresTrigger;
    CKIROOneFloatXML     m_holdtimeTrigger;
    SCDCoreDataType      m_coreData;
    UINT32               m_sceneChangeCounter;    ///< frames off the baseline
    FLOAT                m_settleElapsed;         ///< seconds at the baseline before a hold may begin
    FLOAT                m_holdTimeElapsed;       ///< seconds
    FLOAT                m_holdTimeThres;         ///< seconds
    FLOAT                m_history[HistorySize];  ///< newest first
    UINT32               m_histCount;             ///< a rebase does not take it back
    FLOAT                m_filteredData;
    FLOAT                m_baseline;
};
