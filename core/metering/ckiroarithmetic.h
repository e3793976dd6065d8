/// @file
/// A scene analyzer's own arithmetic: operators of four operands that read banks and write banks, run at three points
/// of the analysis.
#pragma once

#include "core/base/ckirotriggerclasses.h"
#include "core/ikirocontextmanager.h"
#include "interface/aecdebugdata.h"
#include "schema/kirometeringsceneanalyzer.h"

class CAnalyzerArithmetic
{
public:
    CAnalyzerArithmetic();

    /// Must precede all else. The record stays the tuning's.
    VOID SetTuning(const kirometeringsceneanalyzer::SceneAnalyzerType& rTuning, IKIROContextManager& rContextManager);

    /// Runs the enabled operators of the priority in array order.
    /// @param pDebug receives them; null for no record
    VOID RunArithMeticOperation(kirometeringsceneanalyzer::ArithmeticOperationPriorityType priority,
                                AECDebugAnalyzerType*                                      pDebug);

    /// @return the output of the last enabled operator that adjusts the ratio; null if there is none
    const DataBankType* GetAdjustmentRatioDataBank() const;

private:
    static constexpr UINT32 PriorityCount = 3;

    bool  NeedsTree() const;
    VOID  RunOperator(UINT32 index, AECDebugAnalyzerType* pDebug);
    FLOAT UtilGetOperand(const kirometeringsceneanalyzer::ArithmeticOperationOperandInputType& rOperand);

    IKIROContextManager*                                     m_pContextManager;
    const kirometeringsceneanalyzer::ArithmeticOperatorType* m_pOperators;
    UINT32                                                   m_operatorCount;
    BOOL                m_artOpePriorityEnable[PriorityCount];  ///< an enabled operator has the priority
    const DataBankType* m_pAdjustmentRatioBank;

    /// Loaded anew for each operand: operands do not remember where they were in their tree.
    CKIROTwoFloatsXML m_operandTree;
};
