/// @file
/// The three results of a scene analyzer: luma and confidence are numbers, the target is a range. Each comes from its
/// own calculators, a value and a weight per calculator, and goes into a bank where later analyzers find it.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/base/tavomemory.h"
#include "core/ikirocontextmanager.h"
#include "schema/kirometeringsceneanalyzer.h"

/// A number.
class CGeneralAnalyzerComponent
{
public:
    CGeneralAnalyzerComponent();

    /// Must precede all else; allocates for all calculators. The record stays the tuning's.
    VOID SetTuning(const kirometeringsceneanalyzer::GeneralAnalyzerComponentType& rTuning,
                   IKIROContextManager&                                           rContextManager);

    /// Evaluates the calculators, aggregates and stores. @return 0 for a component that is off
    FLOAT RunGeneralAnalyzerComponent();

private:
    VOID  RunCalculators(CKIROBankManager& rBanks);
    FLOAT AggregateValuesAndWeights() const;

    const kirometeringsceneanalyzer::GeneralAnalyzerComponentType* m_pTuning;
    IKIROContextManager*                                           m_pContextManager;

    // One of each per calculator. The trees remember their zones from frame to frame; values and weights are
    // this frame's.
    TavoObjects<CKIROOneFloatXML> m_trigValues;
    TavoObjects<CKIROOneFloatXML> m_trigWeights;
    TavoArray<FLOAT>              m_pValues;
    TavoArray<FLOAT>              m_pWeights;
    UINT32                        m_numWeights;
};

/// A range of luma.
class CTargetAnalyzerComponent
{
public:
    CTargetAnalyzerComponent();

    /// Must precede all else; allocates for all calculators. The record stays the tuning's.
    VOID SetTuning(const kirometeringsceneanalyzer::TargetAnalyzerComponentType& rTuning,
                   IKIROContextManager&                                          rContextManager);

    /// Evaluates the calculators, aggregates and stores. @return zeros for a component that is off or got no memory
    StartEnd RunTargetAnalyzerComponent();

private:
    VOID     RunCalculators(CKIROBankManager& rBanks);
    StartEnd AggregateValuesAndWeights() const;

    const kirometeringsceneanalyzer::TargetAnalyzerComponentType* m_pTuning;
    IKIROContextManager*                                          m_pContextManager;

    // The same for ranges.
    TavoObjects<CKIROTwoFloatsXML> m_trigValues;
    TavoObjects<CKIROOneFloatXML>  m_trigWeights;
    TavoArray<StartEnd>            m_pStartEndValues;
    TavoArray<FLOAT>               m_pWeights;
    TavoArray<FLOAT>               m_pPositions;  ///< of the search for the best luma
    UINT32                         m_numWeights;
};
