/// @file
/// Coded algorithms for what tuning arithmetic cannot express. An analyzer names one by the first of its reserved
/// parameters; the algorithm takes the analyzer's result at the end of its run and hands a result back. Algorithms talk
/// to the rest of the core through the trigger bank.
#pragma once

#include "core/base/tavomemory.h"
#include "core/ikirocontextmanager.h"
#include "schema/kirometeringsaalgorithm.h"
#include "schema/kirometeringsceneanalyzer.h"

/// IDs up to 100 run after the analyzer's components, those above in their place.
enum AnalyzerAlgorithmType : INT32
{
    NoDefinedAlgorithm       = 0,
    LuxIndexCalculation      = 1,
    FlashLuxIndexCalculation = 2,
    Algorithm003             = 3,    ///< precision flash
    Algorithm004             = 4,    ///< hands its input back
    Algorithm101             = 101,  ///< hands its input back, which is zero
    MaxMethod                = 200
};

struct AnalyzerAlgorithmInput
{
    KIROAnalyzerOutput analyzerIn;
    DOUBLE             sensitivities[AECAlgoExposureCount];  ///< by AECAlgoExposureType
};

struct AnalyzerAlgorithmOutput
{
    KIROAnalyzerOutput analyzerOut;
};

class IAnalyzerAlgorithm
{
public:
    virtual ~IAnalyzerAlgorithm() = default;

    /// One frame; SetTuning must have been called. Missing data yields the input unchanged.
    virtual AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) = 0;

    /// Looks the algorithm's records up. They stay the tuning's and outlive the algorithm, as the context does.
    virtual VOID SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager) = 0;

    /// @return null for an ID without an algorithm, and when no memory is left
    static TavoPtr<IAnalyzerAlgorithm> Create(INT algorithmID);
};

/// What the algorithms have in common: their place in the tuning, and access to history and triggers.
class CAnalyzerAlgorithm : public IAnalyzerAlgorithm
{
public:
    VOID SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager) override;

protected:
    CAnalyzerAlgorithm();

    /// Takes an analyzer and the parameters of the algorithm that it names.
    /// @param pAnalyzer may be null, then there are no parameters
    VOID SetAnalyzer(UINT32 analyzerID, const kirometeringsceneanalyzer::SceneAnalyzerType* pAnalyzer,
                     IKIROContextManager& rContextManager);

    FLOAT ReadTrigger(KIROTriggerType trigger) const;
    VOID  Publish(KIROTriggerType trigger, FLOAT value, const CHAR* pDescription = nullptr) const;

    CKIROBankManager& Banks() const
    {
        return *m_pContextManager->m_pBankManager;
    }

    IKIROContextManager*                                m_pContextManager;
    const kirometeringsceneanalyzer::SceneAnalyzerType* m_pAnalyzerTuning;   ///< may be null
    const kirometeringsaalgorithm::SAAlgorithmType*     m_pAlgorithmTuning;  ///< may be null
    UINT32                                              m_analyzerID;
};

/// A place kept for tuning: hands its input back.
class CAnalyzerAlgorithm004 : public CAnalyzerAlgorithm
{
public:
    AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) override;
};

/// A place kept for an analysis all of its own: hands its input back, which is zero.
class CAnalyzerAlgorithm101 : public CAnalyzerAlgorithm
{
public:
    AnalyzerAlgorithmOutput RunAlgorithm(const AnalyzerAlgorithmInput& rInput) override;
};
