#include "core/metering/canalyzermanager.h"

#include <algorithm>
#include <tuple>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/metering/analyzerbank.h"
#include "core/metering/analyzerstages.h"
#include "schema/kiroextension.h"

using kirometeringsceneanalyzer::OutputDataBankType;

CAnalyzerManager::CAnalyzerManager(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_analyzerMgrInput{}, m_analyzerMgrOutput{},
      m_decisionsEnd(0), m_sortedAnalyzerID{}
{
}

CAnalyzerManager::~CAnalyzerManager()
{
    DeleteAnalyzers();
}

VOID CAnalyzerManager::DeleteAnalyzers()
{
    m_analyzers.clear();
    m_pLuxAnalyzer.reset();
}

VOID CAnalyzerManager::UpdateAnalyzers(const Tuning* pTuning)
{
    m_tuning.Refresh(pTuning, [this](const Tuning* pRecord) { Rebuild(pRecord); });
}

VOID CAnalyzerManager::Rebuild(const Tuning* pTuning)
{
    DeleteAnalyzers();
    if (pTuning == nullptr)
    {
        return;
    }
    UINT32 count = analyzerbank::CountOf(pTuning->analyzers, pTuning->analyzersCount);
    if (count > AnalyzerCountMax)
    {
        STATS_LOG_ERROR("%d scene analyzers, only the first %d are used", count, AnalyzerCountMax);
        count = AnalyzerCountMax;
    }
    m_analyzers.reset(count);
    for (UINT32 index = 0; index < m_analyzers.size(); ++index)
    {
        m_analyzers[index].SetAnalyzerTuning(&pTuning->analyzers[index], m_rContextManager);
    }
    m_pLuxAnalyzer = TavoNew<CAnalyzer>();
    if (m_pLuxAnalyzer == nullptr || m_analyzers.size() != count)
    {
        STATS_LOG_ERROR("no memory for %d scene analyzers", count);
    }
    if (m_pLuxAnalyzer != nullptr)
    {
        m_pLuxAnalyzer->SetAnalyzerTuning(&pTuning->luxAnalyzer, m_rContextManager);
    }
    STATS_LOG_RARE("Update Scene Analyzer analyzerCount %d", m_analyzers.size());
    SortAnalyzers();
}

VOID CAnalyzerManager::SortAnalyzers()
{
    const UINT32 count = m_analyzers.size();
    for (UINT32 index = 0; index < count; ++index)
    {
        m_sortedAnalyzerID[index] = {m_analyzers[index].GetID(), index};
    }
    std::sort(m_sortedAnalyzerID, m_sortedAnalyzerID + count,
              [](const AnalyzerSortData& rLeft, const AnalyzerSortData& rRight) {
                  return std::tie(rLeft.analyzerID, rLeft.analyzerIndex) <
                         std::tie(rRight.analyzerID, rRight.analyzerIndex);
              });
}

/// @return the position of the first analyzer with that ID, -1 if there is none
INT32 CAnalyzerManager::GetAnalyzerIndex(UINT32 id) const
{
    const AnalyzerSortData* pEnd = m_sortedAnalyzerID + m_analyzers.size();
    const AnalyzerSortData* pFound =
        std::lower_bound(m_sortedAnalyzerID, pEnd, id,
                         [](const AnalyzerSortData& rEntry, UINT32 wanted) { return rEntry.analyzerID < wanted; });
    return (pFound != pEnd && pFound->analyzerID == id) ? static_cast<INT32>(pFound->analyzerIndex) : -1;
}

VOID CAnalyzerManager::SetSensitivities(const UINT64* pExposures)
{
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        m_analyzerMgrInput.sensitivities[type] = static_cast<DOUBLE>(pExposures[type]);
    }
    ForgetDecisions();
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug != nullptr)
    {
        pDebug->meteringInfo.analyzerCount = 0;
    }
}

/// Tunings number their analyzers from 0, so few of the entries have been written.
VOID CAnalyzerManager::ForgetDecisions()
{
    std::fill_n(m_analyzerMgrOutput.isActive, m_decisionsEnd, FALSE);
    std::fill_n(m_analyzerMgrOutput.sensitivities, m_decisionsEnd, 0);
    std::fill_n(m_analyzerMgrOutput.type, m_decisionsEnd, AECAlgoExposureType{});
    std::fill_n(m_analyzerMgrOutput.confidences, m_decisionsEnd, 0.0f);
    m_decisionsEnd = 0;
}

/// @param id below AnalyzerCountMax
VOID CAnalyzerManager::StoreDecision(UINT32 id, UINT64 exposure, FLOAT confidence)
{
    m_analyzerMgrOutput.sensitivities[id] = exposure;
    m_analyzerMgrOutput.confidences[id]   = confidence;
    m_decisionsEnd                        = std::max(m_decisionsEnd, id + 1);
}

VOID CAnalyzerManager::ResetAnalyzerConfidence()
{
    if (m_pLuxAnalyzer != nullptr)
    {
        ResetConfidence(*m_pLuxAnalyzer);
    }
    for (const CAnalyzer& rAnalyzer : m_analyzers)
    {
        ResetConfidence(rAnalyzer);
    }
}

VOID CAnalyzerManager::ResetConfidence(const CAnalyzer& rAnalyzer)
{
    const OutputDataBankType output = rAnalyzer.GetAnalyzerOutputDataBanks().confidenceOutput;
    if (analyzerbank::IsOn(output.dataBank))
    {
        analyzerbank::SetToBank(*m_rContextManager.m_pBankManager, output.dataBank, {0.0f, 0.0f}, output.description,
                                BankDataType::startEnd);
    }
}

const KIROAnalyzerOutput* CAnalyzerManager::RunAnalyzer(UINT32 id)
{
    const INT32 index = GetAnalyzerIndex(id);
    if (index < 0)
    {
        STATS_LOG_ERROR("Invalid SA ID = %d", id);
        return nullptr;
    }
    CAnalyzer& rAnalyzer = m_analyzers[static_cast<UINT32>(index)];
    STATS_LOG_TRACE("\n---- Running analyzer ID: %d, %s ----", id,
                    (rAnalyzer.GetName() != nullptr) ? rAnalyzer.GetName() : "Anonymous");
    rAnalyzer.Run(m_analyzerMgrInput.sensitivities, NextDebugEntry(rAnalyzer));

    const KIROAnalyzerOutput& rOutput = rAnalyzer.GetOutput();
    AECAlgoExposureType       type;
    if (id < AnalyzerCountMax && rAnalyzer.GetExposureType(&type))
    {
        StoreDecision(id, rOutput.sensitivity, rOutput.confidence);
        m_analyzerMgrOutput.type[id]     = type;
        m_analyzerMgrOutput.isActive[id] = TRUE;
    }
    return &rOutput;
}

/// @return where the analyzer's run is recorded: null without verbose debug data, and for analyzers beyond the room
AECDebugAnalyzerType* CAnalyzerManager::NextDebugEntry(const CAnalyzer& rAnalyzer)
{
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug == nullptr ||
        tuningaccess::Require_kiroextension(*m_rContextManager.GetTuningData()).verboseDebugDataEnable.SceneAnalyzer !=
            TRUE)
    {
        return nullptr;
    }
    STATS_LOG_TRACE("Metering verbose debug data is enabled for analyzer ID: %d, %s.", rAnalyzer.GetID(),
                    analyzerbank::TextOf(rAnalyzer.GetName()));
    AECDebugDataMeteringType& rMetering = pDebug->meteringInfo;
    const UINT16              position  = rMetering.analyzerCount;
    rMetering.analyzerCount             = static_cast<UINT16>(position + 1);
    return (position < AECDebugAnalyzerCount) ? &rMetering.analyzers[position] : nullptr;
}

VOID CAnalyzerManager::RunLuxAnalyzer()
{
    STATS_LOG_TRACE("\n---- Running Lux Analyzer ----");
    if (m_pLuxAnalyzer != nullptr)
    {
        m_pLuxAnalyzer->Run(m_analyzerMgrInput.sensitivities);
    }
}

/// Tuning keeps IDs equal to positions, so the ID finds the banks to update without a search.
VOID CAnalyzerManager::UpdateAnalyzerMgrOutput(UINT32 id, const KIROAnalyzerOutput* pOutput)
{
    if (id >= AnalyzerCountMax)
    {
        STATS_LOG_ERROR("analyzer ID %d cannot exceed %d undefined behavior", id, AnalyzerCountMax);
        return;
    }
    if (pOutput == nullptr)
    {
        STATS_LOG_ERROR("no output to update analyzer ID %d with", id);
        return;
    }
    UpdateDecision(id, *pOutput);
    if (id >= m_analyzers.size())
    {
        STATS_LOG_ERROR("no banks to update of analyzer ID %d: %d analyzers", id, m_analyzers.size());
        return;
    }
    UpdateBanks(m_analyzers[id], *pOutput);
}

/// The selection is taken for an index of exposures as it is, so Safe reads the long exposure and Long the safe one.
/// Mapped, an amended result would decide another exposure wherever the two differ.
VOID CAnalyzerManager::UpdateDecision(UINT32 id, const KIROAnalyzerOutput& rOutput)
{
    const UINT32 index = static_cast<UINT32>(rOutput.type);
    if (index >= AECAlgoExposureCount)
    {
        STATS_LOG_WARNING("analyzer ID %d decides no exposure, type %d", id, rOutput.type);
        return;
    }
    const UINT64 exposure =
        analyzerstages::AmendedExposure(m_analyzerMgrInput.sensitivities[index], rOutput.luma, rOutput.target.start);
    STATS_LOG_TRACE("Update analyzer ID %d: SI from %llu to %llu, Conf from %.2f to %.2f", id,
                    m_analyzerMgrOutput.sensitivities[id], exposure, m_analyzerMgrOutput.confidences[id],
                    rOutput.confidence);
    StoreDecision(id, exposure, rOutput.confidence);
}

VOID CAnalyzerManager::UpdateBanks(const CAnalyzer& rAnalyzer, const KIROAnalyzerOutput& rOutput)
{
    const AnalyzerOutputDataBanks banks  = rAnalyzer.GetAnalyzerOutputDataBanks();
    StartEnd                      stored = Overwrite(banks.lumaOutput, {rOutput.luma, rOutput.luma});
    STATS_LOG_TRACE("Update luma value to %.2f %.2f", stored.start, stored.end);
    stored = Overwrite(banks.targetOutput, rOutput.target);
    STATS_LOG_TRACE("Update target value to %.2f %.2f", stored.start, stored.end);
    stored = Overwrite(banks.confidenceOutput, {rOutput.confidence, rOutput.confidence});
    STATS_LOG_TRACE("Update confidence value to %.2f %.2f", stored.start, stored.end);
}

/// Stores both halves. @return what the bank holds afterwards, zeros for an output that is off
StartEnd CAnalyzerManager::Overwrite(const OutputDataBankType& rBank, StartEnd value)
{
    StartEnd stored{0.0f, 0.0f};
    if (analyzerbank::IsOn(rBank.dataBank))
    {
        CKIROBankManager& rBanks = *m_rContextManager.m_pBankManager;
        analyzerbank::SetToBank(rBanks, rBank.dataBank, value, rBank.description, BankDataType::startEnd);
        (VOID) rBanks.UtilGetStartEndFromBank(&rBank.dataBank, stored, FALSE);
    }
    return stored;
}

const AnalyzerManagerOutput& CAnalyzerManager::GetOutput() const
{
    return m_analyzerMgrOutput;
}
