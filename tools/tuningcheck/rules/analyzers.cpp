#include "tools/tuningcheck/rules/analyzers.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/kirometeringsceneanalyzer.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirometeringsceneanalyzer;

constexpr UINT32 LuxAlgorithm   = 1;    ///< reservedParameter[0] of the analyzer that publishes the lux index
constexpr UINT32 FirstFreeRatio = 101;  ///< algorithms from here on decide without luma and target

UINT32 AlgorithmOf(const SceneAnalyzerType& rAnalyzer)
{
    const auto parameters = ListOf(rAnalyzer.reservedParameter, rAnalyzer.reservedParameterCount);
    return parameters.empty() ? 0 : parameters[0];
}

bool HasRatio(const SceneAnalyzerType& rAnalyzer)
{
    const auto operators = ListOf(rAnalyzer.arithmeticOperators, rAnalyzer.arithmeticOperatorsCount);
    return std::any_of(operators.begin(), operators.end(),
                       [](const ArithmeticOperatorType& rOperator)
                       { return rOperator.enableFlag != FALSE && rOperator.operatorPriority == AdjustmentRatio; });
}

template <typename Component>
VOID CheckPart(const CHAR* pName, const Component& rPart, const SceneAnalyzerType& rAnalyzer, const RecordJudge& rJudge)
{
    const DataBankType& rOutput = rPart.aggregator.output.dataBank;
    const bool          isOff   = rOutput.bankID == BankIDInvalid || rOutput.dataID < 0;
    if (rPart.calculatorsCount == 0 || isOff)
    {
        rJudge.Error(pName, (rPart.calculatorsCount == 0) ? "has no calculators" : "is switched off by its output",
                     fmt::format("{} for an analyzer of {}",
                                 (rPart.calculatorsCount == 0) ? "at least one" : "an entry that it is stored in",
                                 EnumeratorText(rAnalyzer.exposureType)),
                     "its exposure is target over luma, or what an operator with AdjustmentRatio yields");
    }
}

/// An exposure is decided by target over luma, or by an operator.
VOID CheckParts(const SceneAnalyzerType& rAnalyzer, const RecordJudge& rJudge)
{
    if (rAnalyzer.exposureType == ExposureNone || AlgorithmOf(rAnalyzer) >= FirstFreeRatio || HasRatio(rAnalyzer))
    {
        return;
    }
    CheckPart("luma", rAnalyzer.luma, rAnalyzer, rJudge);
    CheckPart("target", rAnalyzer.target, rAnalyzer, rJudge);
}

VOID CheckMethods(const SceneAnalyzerType& rAnalyzer, const RecordJudge& rJudge)
{
    for (const auto& [pName, pComponent] :
         {std::pair("luma", &rAnalyzer.luma), std::pair("confidence", &rAnalyzer.confidence)})
    {
        const AggregationMethodType method = pComponent->aggregator.method;
        const bool isOfTargets             = method == MinWeightedAbsoluteSumDifference || method == RangeIntersection;
        if (isOfTargets && pComponent->calculatorsCount > 0)
        {
            rJudge.Error(pName, fmt::format("is put together by {}", EnumeratorText(method)),
                         "a method for single numbers", "that one is for ranges of targets alone");
        }
    }
}

VOID CheckRatioOutput(const ArithmeticOperatorType& rOperator, const RecordJudge& rJudge)
{
    if (rOperator.enableFlag != FALSE && rOperator.operatorPriority == AdjustmentRatio &&
        rOperator.output.dataType == BankDataType::end)
    {
        rJudge.Error("output", "writes the end of its entry", "dataType startEnd or start with AdjustmentRatio",
                     "the ratio is read from the start");
    }
}

VOID CheckLux(const KIROMeteringSceneAnalyzerType& rModule, const RecordJudge& rJudge)
{
    if (AlgorithmOf(rModule.luxAnalyzer) != LuxAlgorithm)
    {
        rJudge.Error("luxAnalyzer", fmt::format("has the algorithm {}", AlgorithmOf(rModule.luxAnalyzer)),
                     "reservedParameter: [1]", "otherwise nothing publishes the lux index, dark and bright ratio");
    }
}

}  // namespace

VOID CheckSceneAnalyzers(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<SceneAnalyzerType>(rModule, rFindings, CheckParts);
    JudgeEach<SceneAnalyzerType>(rModule, rFindings, CheckMethods);
    JudgeEach<ArithmeticOperatorType>(rModule, rFindings, CheckRatioOutput);
    JudgeEach<KIROMeteringSceneAnalyzerType>(rModule, rFindings, CheckLux);
}

}  // namespace tuningcheck
