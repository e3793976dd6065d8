#include "core/metering/ckirocalculationunit.h"

#include "core/base/kirolog.h"

using kirometeringsceneanalyzer::CalculationMethodType;
using kirometeringsceneanalyzer::CalculationUnitTriggerSystemType;
using kirometeringsceneanalyzer::CalculationUnitType;
using kirometeringsceneanalyzer::TargetCalculationUnitTriggerSystemType;
using kirometeringsceneanalyzer::TargetCalculationUnitType;
using kirometeringsceneanalyzer::TargetValueRangeStartEndType;

namespace
{

constexpr INT32 TreeLevels = 2;

/// Data ID 0 of a driving entry, or no bank, stands for a trigger that is not used.
FLOAT TriggerOf(const DataBankType& rBank, CKIROBankManager& rBanks)
{
    FLOAT value = 0.0f;
    if (rBank.dataID != 0 && rBank.bankID != BankIDInvalid)
    {
        (VOID) rBanks.UtilGetFloatFromBank(&rBank, value, TRUE, nullptr);
    }
    return value;
}

template <typename TriggerSystem>
const FLOAT* Evaluate(const TriggerSystem& rTuning, CKIRODataXML& rTree, CKIROBankManager& rBanks)
{
    const FLOAT trigger1 = TriggerOf(rTuning.trigger1DataBank, rBanks);
    const FLOAT trigger2 = TriggerOf(rTuning.trigger2DataBank, rBanks);
    return static_cast<const FLOAT*>(rTree.GetData(trigger1, trigger2, 0.0f));
}

template <typename TriggerSystem> AECTriggerXMLData Describe(const TriggerSystem& rTuning, size_t coreSize)
{
    return {rTuning.trigger1Data,
            {TreeLevels, static_cast<INT32>(coreSize)},
            static_cast<INT32>(rTuning.trigger1DataCount)};
}

VOID LogUnknownMethod(CalculationMethodType method)
{
    STATS_LOG_ERROR("No matched calculator method selected %d", static_cast<INT32>(method));
}

}  // namespace

namespace calculationunit
{

VOID LoadTree(const CalculationUnitTriggerSystemType& rTuning, CKIROOneFloatXML& rTree)
{
    AECTriggerXMLData data = Describe(rTuning, sizeof(FLOAT));
    rTree.SetData(&data, KIROMLOneFloatDataType);
}

VOID LoadTree(const TargetCalculationUnitTriggerSystemType& rTuning, CKIROTwoFloatsXML& rTree)
{
    AECTriggerXMLData data = Describe(rTuning, sizeof(TargetValueRangeStartEndType));
    rTree.SetData(&data, KIROMLTwoFloatsDataType);
}

StartEnd ReadTree(const TargetCalculationUnitTriggerSystemType& rTuning, CKIROTwoFloatsXML& rTree,
                  CKIROBankManager& rBanks)
{
    const FLOAT* pRange = Evaluate(rTuning, rTree, rBanks);
    return {pRange[0], pRange[1]};
}

FLOAT RunCalculationUnit(const CalculationUnitType& rUnit, CKIROOneFloatXML& rTree, CKIROBankManager& rBanks)
{
    FLOAT value = 0.0f;
    switch (rUnit.selection)
    {
    case CalculationMethodType::DataBankMethod:
        (VOID) rBanks.UtilGetFloatFromBank(&rUnit.dataBank, value, TRUE, nullptr);
        break;
    case CalculationMethodType::TriggerSystemMethod:
        value = *Evaluate(rUnit.triggerSystem, rTree, rBanks);
        break;
    default:
        LogUnknownMethod(rUnit.selection);
        break;
    }
    return value;
}

StartEnd RunTargetCalculationUnit(const TargetCalculationUnitType& rUnit, CKIROTwoFloatsXML& rTree,
                                  CKIROBankManager& rBanks)
{
    StartEnd value{0.0f, 0.0f};
    switch (rUnit.selection)
    {
    case CalculationMethodType::DataBankMethod:
        (VOID) rBanks.UtilGetStartEndFromBank(&rUnit.dataBank, value, TRUE);
        break;
    case CalculationMethodType::TriggerSystemMethod:
        value = ReadTree(rUnit.triggerSystem, rTree, rBanks);
        break;
    default:
        LogUnknownMethod(rUnit.selection);
        break;
    }
    return value;
}

FLOAT RunTargetWeightUnit(const CalculationUnitType& rUnit, CKIROOneFloatXML& rTree, CKIROBankManager& rBanks)
{
    if (rUnit.selection != CalculationMethodType::DataBankMethod)
    {
        return RunCalculationUnit(rUnit, rTree, rBanks);
    }
    StartEnd value{0.0f, 0.0f};
    (VOID) rBanks.UtilGetStartEndFromBank(&rUnit.dataBank, value, TRUE);
    return value.start;
}

}  // namespace calculationunit
