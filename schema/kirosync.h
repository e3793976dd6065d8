/// @file
/// Tuning module kirosync: exposures across the cameras of a group.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirosync
{

/// How a camera's targets heed the peer's.
enum AECMtrConfigType : INT32
{
    AECAlgoMeteringIndependent = 0,
    AECAlgoMeteringMixStatic   = 1,  ///< for a master
    AECAlgoMeteringMixDynamic  = 2   ///< for a slave
};
TUNING_ENUM(AECMtrConfigType)
    ENUMERATOR(AECAlgoMeteringIndependent)
    ENUMERATOR(AECAlgoMeteringMixStatic)
    ENUMERATOR(AECAlgoMeteringMixDynamic)
TUNING_ENUM_END

/// How a camera's exposures heed the peer's.
enum AECExpConfigType : INT32
{
    AECAlgoExposureIndependent = 0,
    AECAlgoExposureFollow      = 1
};
TUNING_ENUM(AECExpConfigType)
    ENUMERATOR(AECAlgoExposureIndependent)
    ENUMERATOR(AECAlgoExposureFollow)
TUNING_ENUM_END

/// Whose lux index a slave uses.
enum AECDualCamSlaveLuxType : INT32
{
    Independent = 0,  ///< its own
    UseMaster   = 1
};
TUNING_ENUM(AECDualCamSlaveLuxType)
    ENUMERATOR(Independent)
    ENUMERATOR(UseMaster)
TUNING_ENUM_END

/// Sync of one role.
struct MtrExpType
{
    AECMtrConfigType meteirngType;  // misspelled; tuning files hold the hash of the name as it stands
    AECExpConfigType exposureType;
};
TUNING_RECORD(MtrExpType)
    MEMBER(meteirngType)
    MEMBER(exposureType)
TUNING_RECORD_END

/// Sync of the two roles.
struct MasterAndSlaveConfigType
{
    MtrExpType master;
    MtrExpType slave;
};
TUNING_RECORD(MasterAndSlaveConfigType)
    MEMBER(master)
    MEMBER(slave)
TUNING_RECORD_END

/// Zone of one trigger.
LEAF_ZONE(aecTriggerDataFloatType, float, triggerData)

/// Sensitivity of this camera's module against the common space of exposures.
struct GlobalExpCompType
{
    BOOL                     enable;
    BOOL                     useTuning;          ///< the table below, even if there is a factory calibration
    UINT32                   trigger1DataCount;  ///< at least 1
    UINT32                   trigger1DataID;
    aecTriggerDataFloatType* trigger1Data;       ///< exposure factor over the lux index, above 0
};
TUNING_RECORD(GlobalExpCompType)
    BOOLEAN(enable)
    BOOLEAN(useTuning)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// Correction of that sensitivity by the colour of the light.
struct CCTBasedExpCompType
{
    BOOL                     enable;
    UINT32                   cctCompTriggerCount;  ///< at least 1
    UINT32                   cctCompTriggerID;
    aecTriggerDataFloatType* cctCompTrigger;       ///< exposure factor over the CCT in K, above 0
};
TUNING_RECORD(CCTBasedExpCompType)
    BOOLEAN(enable)
    VARIABLE(cctCompTrigger)
TUNING_RECORD_END

/// How exposures are matched.
struct AECExposureSyncConfigType
{
    GlobalExpCompType   globalExpComp;
    CCTBasedExpCompType cctBasedExpComp;
    BOOL                enableExposureTimeMatch;  ///< a slave takes the master's exposure time
    BOOL                bLockExpWhenSwitch;       ///< hold the exposure when a slave becomes master
    UINT32              minFrameNumToLock;        ///< frames, unless the scene changes
    UINT32              SCDID;                    ///< scene change detector that ends the hold
};
TUNING_RECORD(AECExposureSyncConfigType)
    MEMBER(globalExpComp)
    MEMBER(cctBasedExpComp)
    BOOLEAN(enableExposureTimeMatch)
    BOOLEAN(bLockExpWhenSwitch)
    MEMBER(minFrameNumToLock)
    MEMBER(SCDID)
TUNING_RECORD_END

/// Weight of the peer's targets by how much they differ.
struct DynamicMixingConfigType
{
    UINT32                   dynamicWeightTriggerCount;  ///< at least 1
    UINT32                   dynamicWeightTriggerID;
    aecTriggerDataFloatType* dynamicWeightTrigger;       ///< weight, 0 to 1, over the relative difference of Safe
    UINT32                   postExpCompTriggerCount;    ///< at least 1
    UINT32                   postExpCompTriggerID;
    aecTriggerDataFloatType* postExpCompTrigger;         ///< factor of the peer's targets over the lux index
};
TUNING_RECORD(DynamicMixingConfigType)
    VARIABLE(dynamicWeightTrigger)
    VARIABLE(postExpCompTrigger)
TUNING_RECORD_END

/// Fixed weight of the peer's targets.
struct StaticMixingConfigType
{
    float staticWeight;  ///< 0 to 1
};
TUNING_RECORD(StaticMixingConfigType)
    MEMBER(staticWeight)
TUNING_RECORD_END

/// How targets are mixed.
struct AECMeteringMixConfigType
{
    DynamicMixingConfigType dynamicMixingConfig;
    StaticMixingConfigType  staticMixingConfig;
};
TUNING_RECORD(AECMeteringMixConfigType)
    MEMBER(dynamicMixingConfig)
    MEMBER(staticMixingConfig)
TUNING_RECORD_END

/// The module.
struct KIROSyncType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    MasterAndSlaveConfigType  masterAndSlaveConfig;
    AECDualCamSlaveLuxType    luxSyncConfig;
    AECExposureSyncConfigType expSyncConfig;
    AECMeteringMixConfigType  mtrMixConfig;
};
TUNING_RECORD(KIROSyncType)
    MODULE_HEADER
    MEMBER(masterAndSlaveConfig)
    MEMBER(luxSyncConfig)
    MEMBER(expSyncConfig)
    MEMBER(mtrMixConfig)
TUNING_RECORD_END

} // namespace kirosync
