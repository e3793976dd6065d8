#include "core/metering/cexternalmapprocessor.h"

#include <algorithm>
#include <iterator>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningvalues.h"

using namespace kiroexternalmapprocessor;

namespace
{

constexpr UINT Marked = 1;

/// @return marked cells
template <typename Map> FLOAT CountMarked(const Map& rMap)
{
    return static_cast<FLOAT>(std::count(rMap.begin(), rMap.end(), Marked));
}

}  // namespace

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
        std::transform(std::begin(pTable->weights), std::end(pTable->weights), m_inputMap.begin(),
                       exposurearithmetic::SaturateToUINT32);
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

/// The range is evaluated for each cell: an evaluation remembers its zone, and with the lux index on the border of two
/// zones the second one may yield another range than the first.
VOID CExternalMapProcessor::MarkCellsInRange(const DBMeter2DWeightPayload& rTable)
{
    const FLOAT lux = m_pContextManager->m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
    for (INT32 cell = 0; cell < CellCount; ++cell)
    {
        const FLOAT weight = rTable.weights[cell];
        const auto* pRange = static_cast<const StartEndType*>(m_statsThresTrigger.GetData(lux, 0.0f, 0.0f));
        m_inputMap[cell]   = (weight >= pRange->start && weight <= pRange->end) ? Marked : 0;
    }
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
                   [](UINT reachable, UINT input) { return (reachable == Marked && input == Marked) ? Marked : 0; });
    m_prevTrackedDecisionMap = m_decisionMap;
}

VOID CExternalMapProcessor::ObtainSpatialTemporalMap()
{
    if (m_pTuning->spatialConsistencyStrength == 0)
    {
        m_spatialtemporalMap = m_prevTrackedDecisionMap;
        return;
    }
    m_spatialtemporalMap.fill(0);
    for (INT32 cell = 0; cell < CellCount; ++cell)
    {
        if (m_prevTrackedDecisionMap[cell] == Marked)
        {
            MarkNeighbours(cell / RowCount, cell % RowCount);
        }
    }
}

VOID CExternalMapProcessor::MarkNeighbours(INT32 row, INT32 column)
{
    constexpr INT32 last     = RowCount - 1;
    const INT32     left     = std::max(column - 1, 0);
    const INT32     width    = std::min(column + 1, last) - left + 1;
    const INT32     lastDown = std::min(row + 1, last);
    for (INT32 down = std::max(row - 1, 0); down <= lastDown; ++down)
    {
        std::fill_n(&m_spatialtemporalMap[down * RowCount + left], width, Marked);
    }
    if (m_pTuning->spatialConsistencyStrength > 1)
    {
        m_spatialtemporalMap[std::max(row - 2, 0) * RowCount + column]    = Marked;
        m_spatialtemporalMap[row * RowCount + std::max(column - 2, 0)]    = Marked;
        m_spatialtemporalMap[row * RowCount + std::min(column + 2, last)] = Marked;
        m_spatialtemporalMap[std::min(row + 2, last) * RowCount + column] = Marked;
    }
}

VOID CExternalMapProcessor::PopulateOutputData()
{
    std::transform(m_decisionMap.begin(), m_decisionMap.end(), std::begin(m_output.weights),
                   [](UINT decision) { return static_cast<FLOAT>(decision); });
    m_output.dataID = m_pTuning->output.dataIDWeight2D;
    (VOID) m_pContextManager->m_pBankManager->SetDataMetering2D({m_output.dataID, &m_output, SourceModuleMetering});
}
