/// @file
/// A scene analyzer: a small program in tuning data that measures a luma, a target for it and a confidence, and works
/// out the exposure that would bring the luma to the target. Its results also go into banks, where analyzers that run
/// later read them.
#pragma once

#include "core/metering/ckiroanalyzeralgorithm.h"
#include "core/metering/ckiroanalyzercomponent.h"
#include "core/metering/ckiroarithmetic.h"

/// Where an analyzer leaves its results.
struct AnalyzerOutputDataBanks
{
    kirometeringsceneanalyzer::OutputDataBankType lumaOutput;
    kirometeringsceneanalyzer::OutputDataBankType targetOutput;
    kirometeringsceneanalyzer::OutputDataBankType confidenceOutput;
};

class CAnalyzer
{
public:
    CAnalyzer();

    /// Must precede all else. The record stays the tuning's and outlives the analyzer, as the context does.
    VOID SetAnalyzerTuning(const kirometeringsceneanalyzer::SceneAnalyzerType* pTuning,
                           IKIROContextManager&                                rContextManager);

    /// One frame. An algorithm with an ID above 100 runs in place of everything else.
    /// @param pExposures of the matched frame, by AECAlgoExposureType
    /// @param pDebug     receives what the run did; null for no record
    VOID Run(const DOUBLE* pExposures, AECDebugAnalyzerType* pDebug = nullptr);

    UINT32 GetID() const;

    /// @return the tuned name, which may be null
    const CHAR* GetName() const;

    /// The last run's; until then zeros but for name and types.
    const KIROAnalyzerOutput& GetOutput() const;

    /// The exposure that the last output decides. @return false if it decides none
    bool GetExposureType(AECAlgoExposureType* pType) const;

    AnalyzerOutputDataBanks GetAnalyzerOutputDataBanks() const;

private:
    UINT32 AlgorithmID() const;
    FLOAT  AdjustmentOfOperators() const;

    VOID Analyze(const DOUBLE* pExposures, AECDebugAnalyzerType* pDebug);
    VOID PopulateDebugData(FLOAT adjustment, AECDebugAnalyzerType& rDebug) const;

    KIROAnalyzerOutput RunAlgorithm(const DOUBLE* pExposures, const KIROAnalyzerOutput& rMeasured) const;

    const kirometeringsceneanalyzer::SceneAnalyzerType* m_pTuning;
    IKIROContextManager*                                m_pContextManager;

    // The trees of the components remember their zones from frame to frame. An algorithm keeps what it needs in
    // triggers.
    CGeneralAnalyzerComponent   m_lumaComponent;
    CTargetAnalyzerComponent    m_targetComponent;
    CGeneralAnalyzerComponent   m_confidenceComponent;
    CAnalyzerArithmetic         m_arithmetic;
    TavoPtr<IAnalyzerAlgorithm> m_pAlgorithm;  ///< null for most analyzers

    KIROAnalyzerOutput m_identity;  ///< name and types of the tuning, all else 0
    KIROAnalyzerOutput m_output;    ///< of the last run, for callers; a run begins it anew
};
