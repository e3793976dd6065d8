/// @file
/// Tuning module kirosync.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirosync
{

/// How a camera's targets heed the peer's.
enum AECMtrConfigType : INT32
{
    AECAlgoMeteringIndependent = 0,
    AECAlgoMeteringMixStatic   = 1,
    AECAlgoMeteringMixDynamic  = 2
};
TUNING_ENUM(AECMtrConfigType)
    ENUMERATOR(AECAlgoMeteringIndependent, "The camera keeps the targets that it has metered.")
    ENUMERATOR(AECAlgoMeteringMixStatic,
        "For a master: it mixes the targets of the slave into its own by staticWeight. In another role nothing is "
        "mixed and each frame logs an error.")
    ENUMERATOR(AECAlgoMeteringMixDynamic,
        "For a slave: it mixes the targets of the master into its own by dynamicMixingConfig. In another role nothing "
        "is mixed and each frame logs an error.")
TUNING_ENUM_END

/// How a camera's exposures heed the peer's.
enum AECExpConfigType : INT32
{
    AECAlgoExposureIndependent = 0,
    AECAlgoExposureFollow      = 1
};
TUNING_ENUM(AECExpConfigType)
    ENUMERATOR(AECAlgoExposureIndependent, "The camera exposes as its own convergence says.")
    ENUMERATOR(AECAlgoExposureFollow,
        "The camera takes over the exposures and the settled state of its peer, corrected for sensitivity and colour "
        "of light.")
TUNING_ENUM_END

/// Whose lux index a slave uses.
enum AECDualCamSlaveLuxType : INT32
{
    Independent = 0,
    UseMaster   = 1
};
TUNING_ENUM(AECDualCamSlaveLuxType)
    ENUMERATOR(Independent, "Factors over the lux index go by the index of the camera itself.")
    ENUMERATOR(UseMaster,
        "Factors over the lux index go by the index of the peer, so that both cameras look them up alike; without a "
        "peer by their own.")
TUNING_ENUM_END

/// Sync of one role.
struct MtrExpType
{
    AECMtrConfigType meteirngType;  // misspelled; tuning files hold the hash of the name as it stands
    AECExpConfigType exposureType;
};
TUNING_RECORD(MtrExpType)
    MEMBER(meteirngType,
        .meaning = "How the targets of the camera heed those of its peer while it has the role. It is taken up when "
                   "the role changes.",
        .start = "AECAlgoMeteringIndependent", .acts = Acts::RoleChange)
    MEMBER(exposureType,
        .meaning = "Whether the camera follows the exposures of its peer while it has the role. It is taken up when "
                   "the role changes; that of the slave also decides, in each frame, whether bLockExpWhenSwitch can "
                   "hold.",
        .start = "AECAlgoExposureIndependent", .acts = Acts::RoleChange)
TUNING_RECORD_END

/// Sync of the two roles.
struct MasterAndSlaveConfigType
{
    MtrExpType master;
    MtrExpType slave;
};
TUNING_RECORD(MasterAndSlaveConfigType)
    MEMBER(master,
        .meaning = "What the camera does as master.",
        .acts = Acts::RoleChange)
    MEMBER(slave,
        .meaning = "What the camera does as slave.",
        .acts = Acts::RoleChange)
TUNING_RECORD_END

/// Zone of one trigger.
LEAF_ZONE(aecTriggerDataFloatType, float, triggerData,
    .meaning = "Exposure factor or weight of the zone, by the list. A factor must be above 0, a weight lies from 0 to "
               "1.",
    .unit = Unit::Varies, .range = AtLeast(0), .start = "1.0")

/// Sensitivity of this camera's module against the common space of exposures.
struct GlobalExpCompType
{
    BOOL                     enable;
    BOOL                     useTuning;
    UINT32                   trigger1DataCount;
    UINT32                   trigger1DataID;
    aecTriggerDataFloatType* trigger1Data;
};
TUNING_RECORD(GlobalExpCompType)
    BOOLEAN(enable,
        .meaning = "Corrects exposures that cameras exchange for the sensitivity of the module of this one; off, a "
                   "follower takes those of its peer as they are, and the two pictures differ by as much as the "
                   "modules do.",
        .start = "true")
    BOOLEAN(useTuning,
        .meaning = "Takes the table of trigger1Data even where the host has handed over a factory calibration; off, "
                   "the calibration comes first.",
        .start = "false", .when = "enable")
    VARIABLE(trigger1Data,
        .meaning = "Factor, over the lux index, by which this camera must expose more than a module of unit "
                   "sensitivity, unless a factory calibration comes first. Doubled on a follower, it exposes twice as "
                   "much; doubled on the master, its follower exposes half as much.",
        .entries = AtLeast(1), .when = "enable")
TUNING_RECORD_END

/// Correction of that sensitivity by the colour of the light.
struct CCTBasedExpCompType
{
    BOOL                     enable;
    UINT32                   cctCompTriggerCount;
    UINT32                   cctCompTriggerID;
    aecTriggerDataFloatType* cctCompTrigger;
};
TUNING_RECORD(CCTBasedExpCompType)
    BOOLEAN(enable,
        .meaning = "Corrects exposures that cameras exchange for the colour of the light as well. It is right only "
                   "with globalExpComp on: without, a follower multiplies by its factor what nobody has divided by "
                   "that of the peer.",
        .start = "true")
    VARIABLE(cctCompTrigger,
        .meaning = "Factor, over the colour temperature in K, by which this camera must expose more than by "
                   "globalExpComp alone; a follower goes by the temperature that its peer sees. Doubled on a "
                   "follower, it exposes twice as much in that light.",
        .entries = AtLeast(1), .when = "enable")
TUNING_RECORD_END

/// How exposures are matched.
struct AECExposureSyncConfigType
{
    GlobalExpCompType   globalExpComp;
    CCTBasedExpCompType cctBasedExpComp;
    BOOL                enableExposureTimeMatch;
    BOOL                bLockExpWhenSwitch;
    UINT32              minFrameNumToLock;
    UINT32              SCDID;
};
TUNING_RECORD(AECExposureSyncConfigType)
    MEMBER(globalExpComp,
        .meaning = "Sensitivity of the module of this camera against the common space in which exposures are "
                   "exchanged.")
    MEMBER(cctBasedExpComp,
        .meaning = "Correction of that sensitivity by the colour of the light.")
    BOOLEAN(enableExposureTimeMatch,
        .meaning = "Lets the control ArbCtrlMasterTime give a follower the exposure time of its peer; off, that "
                   "control does nothing.",
        .start = "true")
    BOOLEAN(bLockExpWhenSwitch,
        .meaning = "Holds the exposure when a slave gives up its role, as when it becomes the master, so that no "
                   "picture steps. It needs an exposureType of AECAlgoExposureFollow for the slave, and the detector "
                   "SCDID.",
        .start = "true")
    MEMBER(minFrameNumToLock,
        .meaning = "Frames for which the exposure is held after the change of role, unless the scene changes before: "
                   "the most, in spite of the name. Doubled, it is held twice as long; 0 holds nothing.",
        .unit = Unit::Frames, .range = {1, 2147483647}, .odd = {0, 2147483647}, .start = "900",
        .acts = Acts::RoleChange, .when = "bLockExpWhenSwitch")
    MEMBER(SCDID,
        .meaning = "Scene change detector that ends the hold; one that still reports a change when the role changes "
                   "ends it at once. Without such a detector nothing is held.",
        .unit = Unit::ID, .range = AtLeast(0), .refers = {Reads(Thing::Detector)}, .when = "bLockExpWhenSwitch")
TUNING_RECORD_END

/// Weight of the peer's targets by how much they differ.
struct DynamicMixingConfigType
{
    UINT32                   dynamicWeightTriggerCount;
    UINT32                   dynamicWeightTriggerID;
    aecTriggerDataFloatType* dynamicWeightTrigger;
    UINT32                   postExpCompTriggerCount;
    UINT32                   postExpCompTriggerID;
    aecTriggerDataFloatType* postExpCompTrigger;
};
TUNING_RECORD(DynamicMixingConfigType)
    VARIABLE(dynamicWeightTrigger,
        .meaning = "Weight of the targets of the master, from 0 (own alone) to 1 (those of the master alone), over "
                   "the relative difference of the two safe targets after postExpCompTrigger. Weights that fall with "
                   "the difference leave a slave that sees something else to itself.",
        .entries = AtLeast(0))
    VARIABLE(postExpCompTrigger,
        .meaning = "Factor on the targets of the master, over the lux index, before they are compared and mixed. "
                   "Doubled, the slave is drawn to twice the exposure.",
        .entries = AtLeast(0))
TUNING_RECORD_END

/// Fixed weight of the peer's targets.
struct StaticMixingConfigType
{
    float staticWeight;
};
TUNING_RECORD(StaticMixingConfigType)
    MEMBER(staticWeight,
        .meaning = "Share of the targets of the slave in those of the master: 0 keeps those of the master, 1 takes "
                   "those of the slave alone. Doubled, the master goes twice as far towards the slave.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.3")
TUNING_RECORD_END

/// How targets are mixed.
struct AECMeteringMixConfigType
{
    DynamicMixingConfigType dynamicMixingConfig;
    StaticMixingConfigType  staticMixingConfig;
};
TUNING_RECORD(AECMeteringMixConfigType)
    MEMBER(dynamicMixingConfig,
        .meaning = "How a slave mixes; read with AECAlgoMeteringMixDynamic.")
    MEMBER(staticMixingConfig,
        .meaning = "How a master mixes; read with AECAlgoMeteringMixStatic.")
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
    MODULE_HEADER("Exposures across the cameras of a group.")
    MEMBER(masterAndSlaveConfig,
        .meaning = "What the camera does in each role.",
        .acts = Acts::RoleChange)
    MEMBER(luxSyncConfig,
        .meaning = "Whose lux index the factors over it go by, in following and in dynamic mixing; what the camera "
                   "tells of itself goes by its own.",
        .start = "UseMaster")
    MEMBER(expSyncConfig,
        .meaning = "How exposures are matched.")
    MEMBER(mtrMixConfig,
        .meaning = "How targets are mixed.")
TUNING_RECORD_END

} // namespace kirosync
