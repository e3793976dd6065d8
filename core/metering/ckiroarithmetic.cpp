#include "core/metering/ckiroarithmetic.h"

#include <algorithm>

#include "core/base/debugdata.h"
#include "core/base/kirolog.h"
#include "core/metering/analyzerbank.h"
#include "core/metering/ckirocalculationunit.h"
#include "core/metering/operatormethods.h"

using namespace kirometeringsceneanalyzer;

namespace
{

VOID RecordOperation(const ArithmeticOperatorType& rOperator, const operatormethods::Operands& rOperands,
                     StartEnd result, AECDebugAnalyzerType& rDebug)
{
    constexpr UINT8 countMax      = 255;
    constexpr UINT8 dataTypeShift = 4;
    if (rDebug.operationCount < AECDebugOperationCount)
    {
        AECDebugOperationType operation{};
        operation.priorityAndDataType =
            static_cast<UINT8>(static_cast<UINT8>(rOperator.operatorPriority) |
                               (static_cast<UINT8>(rOperator.output.dataType) << dataTypeShift));
        operation.method      = static_cast<UINT8>(rOperator.operationMethod);
        operation.operands[0] = rOperands.a;
        operation.operands[1] = rOperands.b;
        operation.operands[2] = rOperands.c;
        operation.operands[3] = rOperands.d;
        operation.result      = {result.start, result.end};
        operation.output      = debugdata::Bank(rOperator.output.dataBank);
        debugdata::SetName(operation.description, rOperator.output.description);
        rDebug.operations[rDebug.operationCount] = operation;
    }
    rDebug.operationCount = static_cast<UINT8>(std::min<UINT32>(rDebug.operationCount + 1U, countMax));
}

}  // namespace

CAnalyzerArithmetic::CAnalyzerArithmetic()
    : m_pContextManager(nullptr), m_pOperators(nullptr), m_operatorCount(0), m_artOpePriorityEnable{},
      m_pAdjustmentRatioBank(nullptr)
{
}

VOID CAnalyzerArithmetic::SetTuning(const SceneAnalyzerType& rTuning, IKIROContextManager& rContextManager)
{
    m_pContextManager      = &rContextManager;
    m_pOperators           = rTuning.arithmeticOperators;
    m_operatorCount        = analyzerbank::CountOf(rTuning.arithmeticOperators, rTuning.arithmeticOperatorsCount);
    m_pAdjustmentRatioBank = nullptr;
    std::fill(std::begin(m_artOpePriorityEnable), std::end(m_artOpePriorityEnable), FALSE);
    for (UINT32 index = 0; index < m_operatorCount; ++index)
    {
        const ArithmeticOperatorType& rOperator = m_pOperators[index];
        if (rOperator.enableFlag != TRUE)
        {
            continue;
        }
        if (static_cast<UINT32>(rOperator.operatorPriority) >= PriorityCount)
        {
            STATS_LOG_ERROR("analyzer ID %d: operator %d has no such priority %d", rTuning.analyzerID, index,
                            rOperator.operatorPriority);
            continue;
        }
        m_artOpePriorityEnable[rOperator.operatorPriority] = TRUE;
        if (rOperator.operatorPriority == AdjustmentRatio)
        {
            m_pAdjustmentRatioBank = &rOperator.output.dataBank;
        }
    }
    if (NeedsTree())
    {
        // The first tree makes the object allocate, whatever tree it is; frames find the memory there.
        calculationunit::LoadTree(TargetCalculationUnitTriggerSystemType{}, m_operandTree);
    }
}

bool CAnalyzerArithmetic::NeedsTree() const
{
    const auto usesTree = [](const ArithmeticOperationOperandInputType& rOperand)
    { return rOperand.method == ArithmeticInputMethodType::TriggerSystemMethod; };
    return std::any_of(m_pOperators, m_pOperators + m_operatorCount,
                       [&](const ArithmeticOperatorType& rOperator)
                       {
                           return usesTree(rOperator.operandA) || usesTree(rOperator.operandB) ||
                                  usesTree(rOperator.operandC) || usesTree(rOperator.operandD);
                       });
}

const DataBankType* CAnalyzerArithmetic::GetAdjustmentRatioDataBank() const
{
    return m_pAdjustmentRatioBank;
}

VOID CAnalyzerArithmetic::RunArithMeticOperation(ArithmeticOperationPriorityType priority, AECDebugAnalyzerType* pDebug)
{
    if (m_artOpePriorityEnable[priority] == FALSE)
    {
        return;
    }
    for (UINT32 index = 0; index < m_operatorCount; ++index)
    {
        if (m_pOperators[index].enableFlag == TRUE && m_pOperators[index].operatorPriority == priority)
        {
            RunOperator(index, pDebug);
        }
    }
}

VOID CAnalyzerArithmetic::RunOperator(UINT32 index, AECDebugAnalyzerType* pDebug)
{
    const ArithmeticOperatorType& rOperator = m_pOperators[index];
    const OutputDataBankType&     rOutput   = rOperator.output;

    const operatormethods::Operands operands{UtilGetOperand(rOperator.operandA), UtilGetOperand(rOperator.operandB),
                                             UtilGetOperand(rOperator.operandC), UtilGetOperand(rOperator.operandD)};
    StartEnd                        result;
    if (!operatormethods::Compute(rOperator.operationMethod, operands, result))
    {
        STATS_LOG_ERROR("No matched arithmetic operation method. %d", rOperator.operationMethod);
    }
    analyzerbank::SetToBank(*m_pContextManager->m_pBankManager, rOutput.dataBank, result, rOutput.description,
                            rOutput.dataType);
    STATS_LOG_TRACE("ArithmeticOperator[%d] runs method %d on %f, %f, %f, %f: [%f, %f] to bankID %d, dataID %d %s",
                    index, rOperator.operationMethod, operands.a, operands.b, operands.c, operands.d, result.start,
                    result.end, rOutput.dataBank.bankID, rOutput.dataBank.dataID,
                    analyzerbank::TextOf(rOutput.description));
    if (pDebug != nullptr)
    {
        RecordOperation(rOperator, operands, result, *pDebug);
    }
}

FLOAT CAnalyzerArithmetic::UtilGetOperand(const ArithmeticOperationOperandInputType& rOperand)
{
    CKIROBankManager& rBanks = *m_pContextManager->m_pBankManager;
    StartEnd          value{0.0f, 0.0f};
    switch (rOperand.method)
    {
    case ArithmeticInputMethodType::TuningMethod:
        return rOperand.tuningValue;
    case ArithmeticInputMethodType::DataBankMethod:
        (VOID) rBanks.UtilGetStartEndFromBank(&rOperand.dataBank, value, TRUE);
        break;
    case ArithmeticInputMethodType::TriggerSystemMethod:
        calculationunit::LoadTree(rOperand.triggerSystem, m_operandTree);
        value = calculationunit::ReadTree(rOperand.triggerSystem, m_operandTree, rBanks);
        break;
    default:
        STATS_LOG_ERROR(" Invalid input method selected %d", static_cast<INT32>(rOperand.method));
        break;
    }
    return (rOperand.dataType == BankDataType::end) ? value.end : value.start;
}
