#include "core/metering/cexternalmapprocessor.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <numeric>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningvalues.h"

using namespace kiroexternalmapprocessor;

template <typename Condition> CExternalMapProcessor::Map CExternalMapProcessor::MapOf(Condition isMarked)
{
    Map map{};
    for (UINT32 cell = 0; cell < CellCount; ++cell)
    {
        map[cell / RowCount] |= static_cast<UINT16>((isMarked(cell) ? 1U : 0U) << cell % RowCount);
    }
    return map;
}

FLOAT CExternalMapProcessor::CountMarked(const Map& rMap)
{
    return static_cast<FLOAT>(std::accumulate(rMap.begin(), rMap.end(), 0,
                                              [](INT32 count, UINT16 row) { return count + std::popcount(row); }));
}

CExternalMapProcessor::CExternalMapProcessor()
    : m_pContextManager(nullptr),
      m_pTuning(nullptr), m_inputMap{}, m_decisionMap{}, m_prevTrackedDecisionMap{}, m_spatialtemporalMap{},
      m_mode(StandByMode), m_validFrameCount(0), m_invalidFrameCount(0), m_timeoutFrameCount(0), m_output{}
{
}

VOID CExternalMapProcessor::SetExtMapProcessorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager)
{
    constexpr INT32 levels = 1;
    m_pTuning              = pTuning;
    m_pContextManager      = &rContextManager;
    m_mode                 = StandByMode;
    m_validFrameCount      = 0;

    const MapProcessorRangeType& rRanges = pTuning->input.statsThres;
    AECTriggerXMLData            ranges{
        rRanges.trigger1Data, {levels, sizeof(StartEndType)}, static_cast<INT32>(rRanges.trigger1DataCount)};
    m_statsThresTrigger.SetData(&ranges, KIROMLTwoFloatsDataType);
}

VOID CExternalMapProcessor::Run()
{
    STATS_LOG_TRACE("[%s] processor: Metering2DDataBank [dst dataID:%d, src dataID:%d], Input Map Type:%d",
                    tuningvalues::TextOf(m_pTuning->description), m_pTuning->output.dataIDWeight2D,
                    m_pTuning->input.dataIDWeight2D, m_pTuning->input.mapType);
    PreprocessInputData();
    RunStateMachine();
    PopulateOutputData();
}

VOID CExternalMapProcessor::PreprocessInputData()
{
    const InputInfoType& rInput = m_pTuning->input;
    const auto*          pTable = m_pContextManager->m_pBankManager->GetDataMetering2D(rInput.dataIDWeight2D);
    if (pTable == nullptr)
    {
        STATS_LOG_TRACE("no external map in Metering2DDataBank %d", rInput.dataIDWeight2D);
        m_inputMap.fill(0);
        return;
    }
    switch (rInput.mapType)
    {
    case selectionMap:
        m_inputMap =
            MapOf([pTable](UINT32 cell) { return exposurearithmetic::SaturateToUINT32(pTable->weights[cell]) == 1; });
        break;
    case statsMap:
        MarkCellsInRange(*pTable);
        break;
    default:
        STATS_LOG_ERROR("unknown type %d of an external map", rInput.mapType);
        m_inputMap.fill(0);
        break;
    }
}

/// An evaluation remembers its zone: with the lux index on the border of two zones, the first one in a frame may yield
/// another range than all those behind it.
VOID CExternalMapProcessor::MarkCellsInRange(const DBMeter2DWeightPayload& rTable)
{
    const FLOAT lux      = m_pContextManager->m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
    const auto  evaluate = [&]
    { return *static_cast<const StartEndType*>(m_statsThresTrigger.GetData(lux, 0.0f, 0.0f)); };
    StartEndType range = evaluate();
    m_inputMap         = MapOf(
        [&](UINT32 cell)
        {
            range = (cell == 1) ? evaluate() : range;
            return rTable.weights[cell] >= range.start && rTable.weights[cell] <= range.end;
        });
}

bool CExternalMapProcessor::IsInputMapValid() const
{
    return CountMarked(m_inputMap) > m_pTuning->validGridRatio * CellCount;
}

bool CExternalMapProcessor::IsInputMapInvalid() const
{
    return CountMarked(m_inputMap) < m_pTuning->timeoutGridRatio * CellCount;
}

bool CExternalMapProcessor::IsDecisionMapInvalid() const
{
    return CountMarked(m_decisionMap) < m_pTuning->invalidGridRatio * CellCount;
}

VOID CExternalMapProcessor::RunStateMachine()
{
    switch (m_mode)
    {
    case StandByMode:
        RunStandBy();
        break;
    case TrackingMode:
        RunTracking();
        break;
    case RebasingMode:
        RunRebasing();
        break;
    default:
        m_decisionMap.fill(0);
        STATS_LOG_ERROR("No Matched State in external map processor");
        break;
    }
}

VOID CExternalMapProcessor::SwitchTo(ExternMapProcessorState mode)
{
    m_mode              = mode;
    m_validFrameCount   = 0;
    m_invalidFrameCount = 0;
    m_timeoutFrameCount = 0;
}

VOID CExternalMapProcessor::RunStandBy()
{
    STATS_LOG_TRACE("StandBy Mode");
    m_decisionMap.fill(0);
    m_validFrameCount = IsInputMapValid() ? m_validFrameCount + 1 : 0;
    if (m_validFrameCount >= m_pTuning->validStateConsecutiveFrameCount)
    {
        STATS_LOG_TRACE("Switch from Stand By --> Tracking, %d %d ", m_validFrameCount,
                        m_pTuning->validStateConsecutiveFrameCount);
        SwitchTo(TrackingMode);
        m_prevTrackedDecisionMap = m_inputMap;
        ProcessTracking();
    }
}

VOID CExternalMapProcessor::RunTracking()
{
    STATS_LOG_TRACE("Tracking Mode");
    ProcessTracking();
    m_invalidFrameCount = IsDecisionMapInvalid() ? m_invalidFrameCount + 1 : 0;
    if (m_invalidFrameCount >= m_pTuning->invalidStateConsecutiveFrameCount)
    {
        STATS_LOG_TRACE("Switch from Tracking --> Rebasing, %d %d ", m_invalidFrameCount,
                        m_pTuning->invalidStateConsecutiveFrameCount);
        SwitchTo(RebasingMode);
    }
}

VOID CExternalMapProcessor::RunRebasing()
{
    STATS_LOG_TRACE("Rebasing Mode");
    m_decisionMap.fill(0);
    m_prevTrackedDecisionMap = m_inputMap;
    m_validFrameCount        = IsInputMapValid() ? m_validFrameCount + 1 : 0;
    if (m_validFrameCount >= m_pTuning->validStateConsecutiveFrameCount)
    {
        STATS_LOG_TRACE("Switch from Rebasing --> Tracking, %d %d ", m_validFrameCount,
                        m_pTuning->validStateConsecutiveFrameCount);
        SwitchTo(TrackingMode);
    }
    // Frames without the map add up over good frames in between: timeouts are tuned on that, in spite of the name.
    if (IsInputMapInvalid())
    {
        ++m_timeoutFrameCount;
    }
    if (m_timeoutFrameCount >= m_pTuning->timeoutStateConsecutiveFrameCount)
    {
        // The text is the one that hosts know.
        STATS_LOG_TRACE("Switch from Tracking --> Stand By, %d %d ", m_timeoutFrameCount,
                        m_pTuning->timeoutStateConsecutiveFrameCount);
        SwitchTo(StandByMode);
    }
}

VOID CExternalMapProcessor::ProcessTracking()
{
    ObtainSpatialTemporalMap();
    std::transform(m_spatialtemporalMap.begin(), m_spatialtemporalMap.end(), m_inputMap.begin(), m_decisionMap.begin(),
                   std::bit_and<UINT16>());
    m_prevTrackedDecisionMap = m_decisionMap;
}

/// A marked cell reaches its neighbours, on the axes also those two cells away if the strength is above 1. What would
/// lie outside falls on a neighbour inside, which is marked anyway.
VOID CExternalMapProcessor::ObtainSpatialTemporalMap()
{
    const UINT32 strength = m_pTuning->spatialConsistencyStrength;
    m_spatialtemporalMap  = m_prevTrackedDecisionMap;
    for (UINT32 row = 0; row < RowCount && strength > 0; ++row)
    {
        const UINT32 cells = m_prevTrackedDecisionMap[row];
        const auto   mark  = [&](UINT32 target, UINT32 marked)
        {
            if (target < RowCount)  // the row before the first one is none, too
            {
                m_spatialtemporalMap[target] |= static_cast<UINT16>(marked);
            }
        };
        const UINT32 beside = cells << 1 | cells | cells >> 1;
        mark(row - 1, beside);
        mark(row, beside);
        mark(row + 1, beside);
        if (strength > 1)
        {
            mark(row - 2, cells);
            mark(row, cells << 2 | cells >> 2);
            mark(row + 2, cells);
        }
    }
}

VOID CExternalMapProcessor::PopulateOutputData()
{
    for (UINT32 cell = 0; cell < CellCount; ++cell)
    {
        m_output.weights[cell] = static_cast<FLOAT>(m_decisionMap[cell / RowCount] >> cell % RowCount & 1);
    }
    m_output.dataID = m_pTuning->output.dataIDWeight2D;
    (VOID) m_pContextManager->m_pBankManager->SetDataMetering2D({m_output.dataID, &m_output, SourceModuleMetering});
}
