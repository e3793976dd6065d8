/// @file
/// Turns a map from outside into a stable decision map.
///
/// The input is a weight table of 16 x 16 cells that a host or another module puts into the bank; a cell of 1 is
/// marked. The processor stands by until the map has been usable for long enough. Then it tracks the marked cells: a
/// cell stays in the decision map only if the input marks it and the decision map of the frame before marked it or a
/// cell near it. When too little remains, it starts over from the input (rebasing) or, if that stays empty, stands by
/// again.
#pragma once

#include <array>

#include "core/base/ckirotriggerclasses.h"
#include "core/ikirocontextmanager.h"
#include "schema/kiroexternalmapprocessor.h"

enum ExternMapProcessorState : INT32
{
    StandByMode  = 0,
    TrackingMode = 1,
    RebasingMode = 2
};

class CExternalMapProcessor
{
public:
    using Tuning = kiroexternalmapprocessor::ExternalMapProcessorType;

    CExternalMapProcessor();

    /// Must precede all else. The record stays the tuning's.
    VOID SetExtMapProcessorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager);

    /// One frame: reads the input table, stores the decision map. The bank keeps a pointer into this object until the
    /// entry is replaced or taken out. A missing input table counts as one without marked cells.
    VOID Run();

    bool IsEnabled() const
    {
        return m_pTuning->enable == TRUE;
    }

private:
    static constexpr UINT32 RowCount  = 16;
    static constexpr UINT32 CellCount = RowCount * RowCount;

    /// Marked cells, a bit for each column of a row.
    using Map = std::array<UINT16, RowCount>;

    /// @param isMarked answers for a cell, from 0 to CellCount - 1, row by row
    template <typename Condition> static Map MapOf(Condition isMarked);

    /// @return marked cells
    static FLOAT CountMarked(const Map& rMap);

    VOID PreprocessInputData();
    VOID MarkCellsInRange(const DBMeter2DWeightPayload& rTable);
    VOID RunStateMachine();
    VOID RunStandBy();
    VOID RunTracking();
    VOID RunRebasing();
    VOID ProcessTracking();
    VOID ObtainSpatialTemporalMap();
    VOID PopulateOutputData();

    VOID SwitchTo(ExternMapProcessorState mode);

    bool IsInputMapValid() const;
    bool IsInputMapInvalid() const;
    bool IsDecisionMapInvalid() const;

    IKIROContextManager*    m_pContextManager;
    const Tuning*           m_pTuning;
    Map                     m_inputMap;
    Map                     m_decisionMap;
    Map                     m_prevTrackedDecisionMap;
    Map                     m_spatialtemporalMap;  ///< where a marked cell may be in this frame
    ExternMapProcessorState m_mode;
    UINT32                  m_validFrameCount;
    UINT32                  m_invalidFrameCount;
    UINT32                  m_timeoutFrameCount;
    CKIROTwoFloatsXML       m_statsThresTrigger;  ///< map values that mark a cell, over the lux index
    DBMeter2DWeightPayload  m_output;             ///< the bank points at it
};
