#include "tools/tuningcheck/rules/camerapairs.h"

#include <fmt/format.h>

#include "schema/kirosync.h"
#include "tools/tuningcheck/recordjudge.h"
#include "tools/tuningcheck/rules/arbitrationranges.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbarbitrationorder;
using namespace kirosync;

VOID CheckRoles(const MtrExpType& rRole, const std::string_view role, const RecordJudge& rJudge)
{
    const AECMtrConfigType wrong = (role == "master") ? AECAlgoMeteringMixDynamic : AECAlgoMeteringMixStatic;
    if (rRole.meteirngType == wrong)
    {
        rJudge.Error(role.data(), fmt::format("has the meteirngType {}", EnumeratorText(wrong)),
                     (role == "master") ? "AECAlgoMeteringMixStatic or AECAlgoMeteringIndependent"
                                        : "AECAlgoMeteringMixDynamic or AECAlgoMeteringIndependent",
                     "a master mixes by a static weight, a slave by a dynamic one");
    }
    else if (role == "master" && rRole.exposureType == AECAlgoExposureFollow)
    {
        rJudge.Advise("master", "has the exposureType AECAlgoExposureFollow", "AECAlgoExposureIndependent",
                      "a master that follows its slave leaves nobody to decide");
    }
}

VOID CheckFactors(const CHAR* pList, std::span<const aecTriggerDataFloatType> factors, const RecordJudge& rJudge)
{
    for (UINT32 index = 0; index < factors.size(); ++index)
    {
        if (factors[index].triggerData <= 0.0F)
        {
            rJudge.ErrorIn(pList, index, fmt::format("is a factor of {}", factors[index].triggerData),
                           "above 0 (factor)", "1 stands for a module like the others");
        }
    }
}

VOID CheckDynamicMixing(const DynamicMixingConfigType& rMixing, const RecordJudge& rJudge)
{
    if (rJudge.Around<KIROSyncType>()->masterAndSlaveConfig.slave.meteirngType != AECAlgoMeteringMixDynamic)
    {
        return;
    }
    if (rMixing.dynamicWeightTriggerCount == 0)
    {
        rJudge.Error("dynamicWeightTrigger", "has no zones", "weights for AECAlgoMeteringMixDynamic of the slave");
    }
    if (rMixing.postExpCompTriggerCount == 0)
    {
        rJudge.Error("postExpCompTrigger", "has no zones", "factors for AECAlgoMeteringMixDynamic of the slave");
    }
    CheckFactors("postExpCompTrigger", ListOf(rMixing.postExpCompTrigger, rMixing.postExpCompTriggerCount), rJudge);
    const auto weights = ListOf(rMixing.dynamicWeightTrigger, rMixing.dynamicWeightTriggerCount);
    for (UINT32 index = 0; index < weights.size(); ++index)
    {
        if (weights[index].triggerData > 1.0F)
        {
            rJudge.ErrorIn("dynamicWeightTrigger", index, fmt::format("is a weight of {}", weights[index].triggerData),
                           "0 to 1 (share)", "1 takes the targets of the master alone");
        }
    }
}

VOID CheckMatching(const AECExposureSyncConfigType& rConfig, const RecordJudge& rJudge)
{
    const MtrExpType& rSlave = rJudge.Around<KIROSyncType>()->masterAndSlaveConfig.slave;
    if (rConfig.cctBasedExpComp.enable != FALSE && rConfig.globalExpComp.enable == FALSE)
    {
        rJudge.Error("cctBasedExpComp", "is enabled without globalExpComp", "both enabled, or neither",
                     "a follower would multiply by what nobody has divided by");
    }
    if (rConfig.bLockExpWhenSwitch != FALSE && rSlave.exposureType != AECAlgoExposureFollow)
    {
        rJudge.Error("bLockExpWhenSwitch", "is true", "an exposureType of AECAlgoExposureFollow for the slave with it",
                     "only a slave that follows holds its exposure when it changes its role");
    }
}

bool HasMasterTime(const ModeView& rView)
{
    bool hasTime = false;
    ForEachControl(rView,
                   [&hasTime](std::span<const OrderType> controls, size_t index)
                   {
                       const OrderType& rControl = controls[index];
                       hasTime |= rControl.enableControl != FALSE && rControl.controlID == ArbCtrlMasterTime;
                   });
    return hasTime;
}

}  // namespace

VOID CheckCameraPairs(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirosync");
    if (pModule == nullptr)
    {
        return;
    }
    JudgeEach<MasterAndSlaveConfigType>(*pModule, rFindings,
                                        [](const MasterAndSlaveConfigType& rConfig, const RecordJudge& rJudge)
                                        {
                                            CheckRoles(rConfig.master, "master", rJudge);
                                            CheckRoles(rConfig.slave, "slave", rJudge);
                                        });
    JudgeEach<DynamicMixingConfigType>(*pModule, rFindings, CheckDynamicMixing);
    JudgeEach<GlobalExpCompType>(
        *pModule, rFindings,
        [](const GlobalExpCompType& rFactors, const RecordJudge& rJudge)
        { CheckFactors("trigger1Data", ListOf(rFactors.trigger1Data, rFactors.trigger1DataCount), rJudge); });
    JudgeEach<CCTBasedExpCompType>(
        *pModule, rFindings,
        [](const CCTBasedExpCompType& rFactors, const RecordJudge& rJudge)
        { CheckFactors("cctCompTrigger", ListOf(rFactors.cctCompTrigger, rFactors.cctCompTriggerCount), rJudge); });
    JudgeEach<AECExposureSyncConfigType>(*pModule, rFindings, CheckMatching);

    const bool hasTime = HasMasterTime(rView);
    JudgeEach<AECExposureSyncConfigType>(*pModule, rFindings,
                                         [hasTime](const AECExposureSyncConfigType& rConfig, const RecordJudge& rJudge)
                                         {
                                             if (rConfig.enableExposureTimeMatch != FALSE && !hasTime)
                                             {
                                                 rJudge.Advise("enableExposureTimeMatch", "is true",
                                                               "an enabled ArbCtrlMasterTime in an order with it",
                                                               "without that control no time is matched");
                                             }
                                         });
}

}  // namespace tuningcheck
