/// @file
/// Building blocks that the records of several tuning modules share.
#pragma once

#include "interface/kiroenums.h"
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
struct TriggerSystemEndLevelType
{
    StartEndType trigger;
    float        triggerData;
};
TUNING_RECORD(TriggerSystemEndLevelType)
    MEMBER(trigger)
    MEMBER(triggerData)
TUNING_RECORD_END

/// Last level of a tree whose zones hold a range.
struct TriggerSystemEndLevelStartEndType
{
    StartEndType trigger;
    StartEndType triggerData;
};
TUNING_RECORD(TriggerSystemEndLevelStartEndType)
    MEMBER(trigger)
    MEMBER(triggerData)
TUNING_RECORD_END

/// First level of a two-level tree.
struct TwoLevelTriggerSystemLevel1Type
{
    StartEndType               trigger;
    UINT32                     trigger2DataCount;
    UINT32                     trigger2DataID;
    TriggerSystemEndLevelType* trigger2Data;
};
TUNING_RECORD(TwoLevelTriggerSystemLevel1Type)
    MEMBER(trigger)
    VARIABLE(trigger2Data)
TUNING_RECORD_END

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
struct ThreeLevelTriggerSystemLevel2Type
{
    StartEndType               trigger;
    UINT32                     trigger3DataCount;
    UINT32                     trigger3DataID;
    TriggerSystemEndLevelType* trigger3Data;
};
TUNING_RECORD(ThreeLevelTriggerSystemLevel2Type)
    MEMBER(trigger)
    VARIABLE(trigger3Data)
TUNING_RECORD_END

/// First level of a three-level tree.
struct ThreeLevelTriggerSystemLevel1Type
{
    StartEndType                       trigger;
    UINT32                             trigger2DataCount;
    UINT32                             trigger2DataID;
    ThreeLevelTriggerSystemLevel2Type* trigger2Data;
};
TUNING_RECORD(ThreeLevelTriggerSystemLevel1Type)
    MEMBER(trigger)
    VARIABLE(trigger2Data)
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

} // namespace kiroglobalelements

using kiroglobalelements::DataBankType;
using kiroglobalelements::StartEndType;
using kiroglobalelements::ThreeLevelTriggerSystemLevel1Type;
using kiroglobalelements::ThreeLevelTriggerSystemLevel2Type;
using kiroglobalelements::TriggerSystemEndLevelStartEndType;
using kiroglobalelements::TriggerSystemEndLevelType;
using kiroglobalelements::TunaraBankDataPriorityType;
using kiroglobalelements::TunaraBankDataType;
using kiroglobalelements::TwoLevelDataBankTriggerSystemType;
using kiroglobalelements::TwoLevelTriggerSystemLevel1Type;
