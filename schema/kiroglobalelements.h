/// @file
/// Building blocks that the records of several tuning modules share.
#pragma once

#include "schema/kiroenums.h"
#include "schema/tuningrecord.h"

TUNING_ENUM(KIROExposureSelection)
    ENUMERATOR(ExposureShort)
    ENUMERATOR(ExposureSafe)
    ENUMERATOR(ExposureLong)
    ENUMERATOR(ExposureNone)
TUNING_ENUM_END

TUNING_ENUM(KIROBankIDType)
    ENUMERATOR(BankIDROITable)
    ENUMERATOR(BankIDMetering2D)
    ENUMERATOR(BankIDMetering1D)
    ENUMERATOR(BankIDSceneAnalyzer)
    ENUMERATOR(BankIDStatsCalculator)
    ENUMERATOR(BankIDArbitrationTable)
    ENUMERATOR(BankIDArbitrationOrder)
    ENUMERATOR(BankIDArbitrationLUT)
    ENUMERATOR(BankIDArbitrationRange)
    ENUMERATOR(BankIDTriggers)
    ENUMERATOR(BankIDActiveAnalyzers)
    ENUMERATOR(BankIDConvBase)
    ENUMERATOR(BankIDConvStretch)
    ENUMERATOR(BankIDConvSettle)
    ENUMERATOR(BankIDConvActiveSCD)
    ENUMERATOR(BankIDActiveCalculators)
    ENUMERATOR(BankIDSnapshot)
    ENUMERATOR(BankIDMax)
    ENUMERATOR(BankIDInvalid)
TUNING_ENUM_END

TUNING_ENUM(KIROTunaraEventType)
    ENUMERATOR(AECDefault)
    ENUMERATOR(AECOpInit)
    ENUMERATOR(AECOpStreaming)
    ENUMERATOR(AECOpPreflash)
    ENUMERATOR(AECOpFastAEC)
    ENUMERATOR(AECOpAggressiveAEC)
    ENUMERATOR(AECOpFlashTuning)
    ENUMERATOR(AECOpFlashCalibration)
    ENUMERATOR(AECHDRTypeDisabled)
    ENUMERATOR(AECHDRTypeISPHDR)
    ENUMERATOR(AECHDRTypeSensorHDR)
    ENUMERATOR(AECHDRTypeSHDR2)
    ENUMERATOR(AECHDRTypeSHDR3)
    ENUMERATOR(AECHDRTypeMFHDR)
    ENUMERATOR(AECManualISO)
    ENUMERATOR(AECManualTime)
    ENUMERATOR(AECManualFull)
    ENUMERATOR(AECLock)
    ENUMERATOR(AECTouch)
    ENUMERATOR(AECFace)
    ENUMERATOR(AECT2T)
    ENUMERATOR(AECSaliency)
    ENUMERATOR(AECDepth)
    ENUMERATOR(AECEV)
    ENUMERATOR(AECEVChange)
    ENUMERATOR(AECFirstConvergingAfterEvent)
    ENUMERATOR(AECCoreSnapshotNormal)
    ENUMERATOR(AECCoreSnapshotLLS)
    ENUMERATOR(AECCoreSnapshotFlash)
    ENUMERATOR(AECCoreSnapshotHDR3)
    ENUMERATOR(AECCoreSnapshotPrecisionFlash)
    ENUMERATOR(AECCoreSnapshotZLL)
    ENUMERATOR(AECCoreSnapshotAdvanced)
    ENUMERATOR(AECTorch)
    ENUMERATOR(AECTorchChange)
    ENUMERATOR(AECSettled)
    ENUMERATOR(AECSlaveRole)
    ENUMERATOR(AECEVBracketing)
    ENUMERATOR(AECHybridHDR)
    ENUMERATOR(AECCustomContext1)
    ENUMERATOR(AECCustomContext2)
    ENUMERATOR(AECCustomContext3)
    ENUMERATOR(AECCustomContext4)
    ENUMERATOR(AECCustomContext5)
    ENUMERATOR(AECCustomContext6)
    ENUMERATOR(AECCustomContext7)
    ENUMERATOR(AECCustomContext8)
    ENUMERATOR(AECCustomContext9)
    ENUMERATOR(AECCustomContext10)
TUNING_ENUM_END

namespace kiroglobalelements
{

/// A range of trigger values; also any other pair of a lower and an upper bound.
struct StartEndType
{
    float start;
    float end;
};
TUNING_RECORD(StartEndType)
    MEMBER(start)
    MEMBER(end)
TUNING_RECORD_END

/// The layout that the evaluation of trigger trees relies on. A tree is an array of zones sorted by rising trigger; a
/// zone of an inner level is its trigger range and a counted array of zones, 24 bytes in all.
template <typename Zone>
constexpr bool IsInnerZone()
{
    const tuning::RecordDescription& rZone = *TuningRecordOf(static_cast<const Zone*>(nullptr));
    return rZone.memberCount == 2 &&
           rZone.pMembers[0].pRecord == TuningRecordOf(static_cast<const StartEndType*>(nullptr)) &&
           rZone.pMembers[0].form == tuning::Form::Single && rZone.pMembers[1].form == tuning::Form::Variable &&
           rZone.pMembers[1].countOffset == 8 && rZone.pMembers[1].offset == 16 && rZone.size == 24;
}

/// A zone of the last level is its trigger range, followed at once by what the zone yields.
template <typename Zone, typename CoreRecord>
constexpr bool IsLeafZone()
{
    const tuning::RecordDescription& rZone = *TuningRecordOf(static_cast<const Zone*>(nullptr));
    return rZone.memberCount == 2 &&
           rZone.pMembers[0].pRecord == TuningRecordOf(static_cast<const StartEndType*>(nullptr)) &&
           rZone.pMembers[0].form == tuning::Form::Single && rZone.pMembers[1].offset == sizeof(StartEndType) &&
           rZone.size == sizeof(StartEndType) + sizeof(CoreRecord);
}

// Each declares the record of a zone of a tree over triggers, and its table: the range of the trigger, then what stands
// in the zone.

/// Of the last level. @param Core the record, or the number, that the zone yields
#define LEAF_ZONE(Name, Core, field)                                                                                   \
    struct Name                                                                                                        \
    {                                                                                                                  \
        kiroglobalelements::StartEndType trigger;                                                                      \
        Core                             field;                                                                        \
    };                                                                                                                 \
    TUNING_RECORD(Name)                                                                                                \
        MEMBER(trigger)                                                                                                \
        MEMBER(field)                                                                                                  \
    TUNING_RECORD_END                                                                                                  \
    static_assert(kiroglobalelements::IsLeafZone<Name, Core>());

/// Of a level above. @param Zone zones of the next level: at least 1, in ascending trigger
#define INNER_ZONE(Name, Zone, field)                                                                                  \
    struct Name                                                                                                        \
    {                                                                                                                  \
        kiroglobalelements::StartEndType trigger;                                                                      \
        UINT32                           field##Count;                                                                 \
        UINT32                           field##ID;                                                                    \
        Zone*                            field;                                                                        \
    };                                                                                                                 \
    TUNING_RECORD(Name)                                                                                                \
        MEMBER(trigger)                                                                                                \
        VARIABLE(field)                                                                                                \
    TUNING_RECORD_END                                                                                                  \
    static_assert(kiroglobalelements::IsInnerZone<Name>());

/// Which kind of statistics a channel holds.
enum KIROStatsType : INT32
{
    KIROStatsGrid = 0,  ///< one value per region of the frame
    KIROStatsHist = 1   ///< one count per bin
};
TUNING_ENUM(KIROStatsType)
    ENUMERATOR(KIROStatsGrid)
    ENUMERATOR(KIROStatsHist)
TUNING_ENUM_END

/// Which vector processors a call of the host is for.
enum class VectorProcessorUsageType : INT32
{
    Default = 0,  ///< the general ones
    Gyro    = 1
};

/// What of a pair a value bank reads or writes.
enum class BankDataType : INT32
{
    startEnd = 0,  ///< both halves
    start    = 1,
    end      = 2
};
TUNING_ENUM(BankDataType)
    ENUMERATOR(startEnd)
    ENUMERATOR(start)
    ENUMERATOR(end)
TUNING_ENUM_END

/// Whether the clamp of bright statistics follows the ratio of safe to short exposure.
enum ExpRatioHandleType : INT32
{
    DoNotHandle         = 0,  ///< clamp at 0.98 of full scale
    ScaleShortThreshold = 1   ///< pull the clamp down as the ratio grows
};
TUNING_ENUM(ExpRatioHandleType)
    ENUMERATOR(DoNotHandle)
    ENUMERATOR(ScaleShortThreshold)
TUNING_ENUM_END

/// Reference to an entry of a data bank.
struct DataBankType
{
    KIROBankIDType bankID;
    INT32          dataID;  ///< 0 is the entry that the present context selects
};
TUNING_RECORD(DataBankType)
    MEMBER(bankID)
    MEMBER(dataID)
TUNING_RECORD_END

/// Last level of a tree of zones over triggers: one number per zone.
LEAF_ZONE(TriggerSystemEndLevelType, float, triggerData)

/// Last level of a tree whose zones hold a range.
LEAF_ZONE(TriggerSystemEndLevelStartEndType, StartEndType, triggerData)

/// First level of a two-level tree.
INNER_ZONE(TwoLevelTriggerSystemLevel1Type, TriggerSystemEndLevelType, trigger2Data)

/// A two-level tree and the bank entries that drive it.
struct TwoLevelDataBankTriggerSystemType
{
    DataBankType                     trigger1DataBank;
    DataBankType                     trigger2DataBank;
    UINT32                           trigger1DataCount;
    UINT32                           trigger1DataID;
    TwoLevelTriggerSystemLevel1Type* trigger1Data;
};
TUNING_RECORD(TwoLevelDataBankTriggerSystemType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// Second level of a three-level tree.
INNER_ZONE(ThreeLevelTriggerSystemLevel2Type, TriggerSystemEndLevelType, trigger3Data)

/// First level of a three-level tree.
INNER_ZONE(ThreeLevelTriggerSystemLevel1Type, ThreeLevelTriggerSystemLevel2Type, trigger2Data)

/// A three-level tree and the bank entries that drive it.
struct ThreeLevelDataBankTriggerSystemType
{
    DataBankType                       trigger1DataBank;
    DataBankType                       trigger2DataBank;
    DataBankType                       trigger3DataBank;
    UINT32                             trigger3DataCount;
    UINT32                             trigger3DataID;
    ThreeLevelTriggerSystemLevel1Type* trigger3Data;  ///< the whole tree, in spite of the name
};
TUNING_RECORD(ThreeLevelDataBankTriggerSystemType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    MEMBER(trigger3DataBank)
    VARIABLE(trigger3Data)
TUNING_RECORD_END

/// How a module's regions of interest are turned into statistics regions.
struct StatsROIProcessType
{
    BOOL  enable;
    float scale;           ///< size factor about the region's centre; 1.0 keeps the size
    float temporalFilter;  ///< share of the previous region in the new one, 0 to 1; 0 follows at once
};
TUNING_RECORD(StatsROIProcessType)
    BOOLEAN(enable)
    MEMBER(scale)
    MEMBER(temporalFilter)
TUNING_RECORD_END

/// Which bank entry applies in which context: the entry of highest priority whose events are all set.
struct TunaraBankDataPriorityType
{
    UINT32               contextCount;
    UINT32               contextID;
    KIROTunaraEventType* context;
    INT32                priority;  ///< from 0; a negative one never wins
    INT32                dataID;
};
TUNING_RECORD(TunaraBankDataPriorityType)
    VARIABLE(context)
    MEMBER(priority)
    MEMBER(dataID)
TUNING_RECORD_END

/// The priority map of a data bank.
struct TunaraBankDataType
{
    KIROBankIDType              bankID;
    UINT32                      priorityMapCount;
    UINT32                      priorityMapID;
    TunaraBankDataPriorityType* priorityMap;
};
TUNING_RECORD(TunaraBankDataType)
    MEMBER(bankID)
    VARIABLE(priorityMap)
TUNING_RECORD_END

/// Declares the record of a module that fills a data bank, and its table: how the context selects, with the ID of the
/// module's bank, and at most 1000 payloads, of which the last applies where no priority does; the core
/// reads none for a value bank.
#define BANK_MODULE(Name, Payload)                                                                                     \
    struct Name                                                                                                        \
    {                                                                                                                  \
        UINT32                                 SymbolTableID;                                                          \
        module_versionStruct                   module_version;                                                         \
        parameter_versionStruct                parameter_version;                                                      \
        kiroglobalelements::TunaraBankDataType dataBank;                                                               \
        UINT32                                 dataCount;                                                              \
        UINT32                                 dataID;                                                                 \
        Payload*                               data;                                                                   \
    };                                                                                                                 \
    TUNING_RECORD(Name)                                                                                                \
        MODULE_HEADER                                                                                                  \
        MEMBER(dataBank)                                                                                               \
        VARIABLE(data)                                                                                                 \
    TUNING_RECORD_END

} // namespace kiroglobalelements

using kiroglobalelements::BankDataType;
using kiroglobalelements::DataBankType;
using kiroglobalelements::DoNotHandle;
using kiroglobalelements::ExpRatioHandleType;
using kiroglobalelements::KIROStatsGrid;
using kiroglobalelements::KIROStatsHist;
using kiroglobalelements::KIROStatsType;
using kiroglobalelements::ScaleShortThreshold;
using kiroglobalelements::StartEndType;
using kiroglobalelements::StatsROIProcessType;
using kiroglobalelements::ThreeLevelDataBankTriggerSystemType;
using kiroglobalelements::ThreeLevelTriggerSystemLevel1Type;
using kiroglobalelements::ThreeLevelTriggerSystemLevel2Type;
using kiroglobalelements::TriggerSystemEndLevelStartEndType;
using kiroglobalelements::TriggerSystemEndLevelType;
using kiroglobalelements::TunaraBankDataPriorityType;
using kiroglobalelements::TunaraBankDataType;
using kiroglobalelements::TwoLevelDataBankTriggerSystemType;
using kiroglobalelements::TwoLevelTriggerSystemLevel1Type;
using kiroglobalelements::VectorProcessorUsageType;
