/// @file
/// Owns the scene analyzers and runs them one by one on demand. There is no resolution of dependencies between them:
/// the order of the calls is the order of the program that they make up.
///
/// A frame: UpdateAnalyzers, SetSensitivities, ResetAnalyzerConfidence, RunLuxAnalyzer, then RunAnalyzer for each
/// active ID, with UpdateAnalyzerMgrOutput for results that the caller amends.
#pragma once

#include "core/base/tuningdriven.h"
#include "core/metering/ckiroanalyzer.h"

/// Analyzers of one tuning; their IDs are below this.
constexpr UINT32 AnalyzerCountMax = 1000;

struct AnalyzerManagerInput
{
    DOUBLE sensitivities[AECAlgoExposureCount];  ///< the matched frame's exposures, by AECAlgoExposureType
};

/// What the analyzers decided in this frame, indexed by analyzer ID.
struct AnalyzerManagerOutput
{
    BOOL                isActive[AnalyzerCountMax];  ///< ran in this frame and decides an exposure
    UINT64              sensitivities[AnalyzerCountMax];
    AECAlgoExposureType type[AnalyzerCountMax];
    FLOAT               confidences[AnalyzerCountMax];
};

class CAnalyzerManager
{
public:
    using Tuning = kirometeringsceneanalyzer::KIROMeteringSceneAnalyzerType;

    explicit CAnalyzerManager(IKIROContextManager& rContextManager);
    ~CAnalyzerManager();
    CAnalyzerManager(const CAnalyzerManager&)            = delete;
    CAnalyzerManager& operator=(const CAnalyzerManager&) = delete;

    /// Called as metering starts a frame, and before the next use after a change of tuning; rebuilds the analyzers when
    /// the record is another one. With null there are none.
    VOID UpdateAnalyzers(const Tuning* pTuning);

    /// Starts a frame. @param pExposures of the matched frame, by AECAlgoExposureType
    VOID SetSensitivities(const UINT64* pExposures);

    /// Sets the confidence of every analyzer to 0 in its bank, so that one that does not run shows none.
    VOID ResetAnalyzerConfidence();

    /// @return the analyzer's result, valid until its next run or the next change of tuning; null for an unknown ID
    const KIROAnalyzerOutput* RunAnalyzer(UINT32 id);

    /// Runs the lux analyzer, whose results stand in the banks only; nothing happens before the first UpdateAnalyzers.
    VOID RunLuxAnalyzer();

    /// Puts an amended result back, into the manager's output and into the analyzer's banks.
    VOID UpdateAnalyzerMgrOutput(UINT32 id, const KIROAnalyzerOutput* pOutput);

    const AnalyzerManagerOutput& GetOutput() const;

private:
    struct AnalyzerSortData
    {
        UINT32 analyzerID;
        UINT32 analyzerIndex;
    };

    VOID  Rebuild(const Tuning* pTuning);
    VOID  DeleteAnalyzers();
    VOID  SortAnalyzers();
    INT32 GetAnalyzerIndex(UINT32 id) const;
    VOID  ResetConfidence(const CAnalyzer& rAnalyzer);

    AECDebugAnalyzerType* NextDebugEntry(const CAnalyzer& rAnalyzer);

    VOID     ForgetDecisions();
    VOID     StoreDecision(UINT32 id, UINT64 exposure, FLOAT confidence);
    VOID     UpdateDecision(UINT32 id, const KIROAnalyzerOutput& rOutput);
    VOID     UpdateBanks(const CAnalyzer& rAnalyzer, const KIROAnalyzerOutput& rOutput);
    StartEnd Overwrite(const kirometeringsceneanalyzer::OutputDataBankType& rBank, StartEnd value);

    IKIROContextManager&       m_rContextManager;
    TuningDriven<const Tuning> m_tuning;
    TavoPtr<CAnalyzer>         m_pLuxAnalyzer;
    TavoObjects<CAnalyzer>     m_analyzers;
    AnalyzerManagerInput       m_analyzerMgrInput;
    AnalyzerManagerOutput      m_analyzerMgrOutput;
    UINT32                     m_decisionsEnd;                        ///< entries from here on are zeros
    AnalyzerSortData           m_sortedAnalyzerID[AnalyzerCountMax];  ///< by rising ID, then by position
};
