/// @file
/// A small rule engine that answers whether the frame looks like one of the tuned scenes.
///
/// A criterion compares a bank value with the value that it had when the monitor was last rebased, maps the result
/// through a trigger curve and adds it to the score of its scene. A scene passes when its score reaches a threshold,
/// the monitor when any of its scenes does.
#pragma once

#include "core/base/ckirotrigger.h"
#include "core/base/tavomemory.h"
#include "core/ikirocontextmanager.h"
#include "schema/kiroextension.h"

class CKIROGeneralizedMonitor
{
public:
    explicit CKIROGeneralizedMonitor(IKIROContextManager& rContext);

    /// Keeps the pointer and allocates the data for it, zeros until the first rebase.
    /// @param pTuning not owned, valid until another one is set; null for none
    VOID SetTuning(const kiroextension::ExtensionGeneralizedMonitor* pTuning);

    /// Takes the present bank values as the base of comparisons. @return 1 if all of them could be read
    BOOL RebaseData();

    /// @return 1 if a scene passes; 0 without tuning
    BOOL RunCriteriaCheck();

    /// @return the scene's result in the last check, 0 for a scene that does not exist
    BOOL GetOneSceneDecision(UINT32 sceneNum) const;

    /// @param rData receives the value at the last rebase, unchanged when there is none
    /// @return 1, or 0 for a criterion that does not exist
    BOOL GetOneRebasedData(UINT32 sceneNum, UINT32 criteriaNum, FLOAT& rData) const;

    VOID FreeDataMemory();
    VOID AllocateDataMemory();

    bool IsTuningSet() const
    {
        return m_pTuning != nullptr;
    }

    /// @return 0 before the first rebase
    UINT64 GetRebasedFrameID() const
    {
        return m_rebasedFrameID;
    }

private:
    bool  IsDataReady() const;
    BOOL  CheckSceneCriteria(const kiroextension::MonitorSceneConfiguration* pScene, const FLOAT* pSceneData);
    FLOAT ScoreCriterion(const kiroextension::SceneCriterion& rCriterion, FLOAT rebased);

    const kiroextension::ExtensionGeneralizedMonitor* m_pTuning;
    IKIROContextManager&                              m_rContext;
    TavoObjects<TavoArray<FLOAT>>                     m_data;  ///< per scene, per criterion: the rebased value
    TavoArray<BOOL>                                   m_pDecisions;
    CKIRODataXML                                      m_criteriaTrigger;
    UINT64                                            m_rebasedFrameID;
};
