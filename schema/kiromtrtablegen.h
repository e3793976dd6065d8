/// @file
/// Generation of two-dimensional metering tables, frame by frame.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiromtrtablegen
{

/// What drives a generator.
enum GenerationMethodType : INT32
{
    StatsDrivenMethod        = 0,  ///< a statistics channel
    ExternalDataDrivenMethod = 1   ///< another table of the bank
};
TUNING_ENUM(GenerationMethodType)
    ENUMERATOR(StatsDrivenMethod)
    ENUMERATOR(ExternalDataDrivenMethod)
TUNING_ENUM_END

/// Last level of a tree that maps a value to a weight.
struct GeneratorEndLevelDataType
{
    StartEndType trigger2;     ///< the value
    float        triggerData;  ///< weight
};
TUNING_RECORD(GeneratorEndLevelDataType)
    MEMBER(trigger2)
    MEMBER(triggerData)
TUNING_RECORD_END
static_assert(kiroglobalelements::IsLeafZone<GeneratorEndLevelDataType, float>());

/// First level of a tree that maps lux index and value to a weight.
struct GeneratorTwoLevelTriggerSystemType
{
    StartEndType               trigger1Lux;
    UINT32                     trigger2DataCount;
    UINT32                     trigger2DataID;
    GeneratorEndLevelDataType* trigger2Data;
};
TUNING_RECORD(GeneratorTwoLevelTriggerSystemType)
    MEMBER(trigger1Lux)
    VARIABLE(trigger2Data)
TUNING_RECORD_END
static_assert(kiroglobalelements::IsInnerZone<GeneratorTwoLevelTriggerSystemType>());

/// A map from lux index and value to a weight.
struct DataDrivenTriggerSystemType
{
    UINT32                              trigger1DataCount;
    UINT32                              trigger1DataID;
    GeneratorTwoLevelTriggerSystemType* trigger1Data;
};
TUNING_RECORD(DataDrivenTriggerSystemType)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// What a generator reads.
struct GeneratorSourceType
{
    INT32 base2DWeightID;        ///< table that the weights multiply
    CHAR* statsChannel;          ///< a grid of 16 x 16 regions of 8 bits
    INT32 externData2DWeightID;  ///< table that drives ExternalDataDrivenMethod
};
TUNING_RECORD(GeneratorSourceType)
    MEMBER(base2DWeightID)
    MEMBER(statsChannel)
    MEMBER(externData2DWeightID)
TUNING_RECORD_END

/// What a generator writes.
struct GeneratorOutputType
{
    INT32 output2DWeightID;
    BOOL  enableGetWeightAverage;
    INT32 outputWeightAverageTriggerID;  ///< receives the mean of all weights above 0, -1 if none is; 0 for nowhere
};
TUNING_RECORD(GeneratorOutputType)
    MEMBER(output2DWeightID)
    BOOLEAN(enableGetWeightAverage)
    MEMBER(outputWeightAverageTriggerID)
TUNING_RECORD_END

/// One generator.
struct TableGeneratorType
{
    BOOL                        enable;
    GenerationMethodType        method;
    GeneratorSourceType         input;
    GeneratorOutputType         output;
    DataDrivenTriggerSystemType triggerSystem;  ///< weight by lux index and luma (8 bits) or external weight
};
TUNING_RECORD(TableGeneratorType)
    BOOLEAN(enable)
    MEMBER(method)
    MEMBER(input)
    MEMBER(output)
    MEMBER(triggerSystem)
TUNING_RECORD_END

/// Channels of the flash bias table.
struct MtrStatsSelectionType
{
    CHAR*         channel1;  ///< luma, LED off
    CHAR*         channel2;  ///< saturation, LED off
    CHAR*         channel3;  ///< luma, LED low
    CHAR*         channel4;  ///< saturation, LED low
    CHAR*         channel5;  ///< not used
    KIROStatsType type;
};
TUNING_RECORD(MtrStatsSelectionType)
    MEMBER(channel1)
    MEMBER(channel2)
    MEMBER(channel3)
    MEMBER(channel4)
    MEMBER(channel5)
    MEMBER(type)
TUNING_RECORD_END

/// Attenuation of regions where the LED mirrors.
struct SpeckleScreenType
{
    BOOL         enable;
    StartEndType range;  ///< saturation, LED low: above start the gain falls, at end it is gone
};
TUNING_RECORD(SpeckleScreenType)
    BOOLEAN(enable)
    MEMBER(range)
TUNING_RECORD_END

/// Share of regions that the main flash would saturate.
struct SmartFlashConfType
{
    BOOL  enable;         ///< if not, the share is taken as 1
    float lumaHighSatTh;  ///< predicted luma above which a region counts
};
TUNING_RECORD(SmartFlashConfType)
    BOOLEAN(enable)
    MEMBER(lumaHighSatTh)
TUNING_RECORD_END

/// Influence of a further sensor on the bias table; not read by the core.
struct FlashBiasAssistType
{
    BOOL  enable;
    float strength;  ///< 0 to 1
};
TUNING_RECORD(FlashBiasAssistType)
    BOOLEAN(enable)
    MEMBER(strength)
TUNING_RECORD_END

/// How the flash bias table is made.
struct FlashBiasMtrTblGenCoreConfigType
{
    INT32               dataBankID;          ///< data ID of the table that is made
    INT32               baseTableID;         ///< data ID of the table that the gains multiply
    float               thresBrightSat;      ///< saturation, LED off, above which a region is bright without flash
    float               flashEstStrength;    ///< factor on the light that the flash is predicted to add; 1.0 takes it as it is
    INT32               minOffStats;         ///< luma, LED off, is lifted to this
    float               kFloorPct;           ///< share of regions, 0 to 1, those of least gain, whose gain becomes 1
    float               satPreventStrength;  ///< weight of the cubic rise of the largest gains, from 0
    SpeckleScreenType   SpeckleScreen;
    SmartFlashConfType  flashBiasConf;
    FlashBiasAssistType depthAssist;
    FlashBiasAssistType motionAssist;
};
TUNING_RECORD(FlashBiasMtrTblGenCoreConfigType)
    MEMBER(dataBankID)
    MEMBER(baseTableID)
    MEMBER(thresBrightSat)
    MEMBER(flashEstStrength)
    MEMBER(minOffStats)
    MEMBER(kFloorPct)
    MEMBER(satPreventStrength)
    MEMBER(SpeckleScreen)
    MEMBER(flashBiasConf)
    MEMBER(depthAssist)
    MEMBER(motionAssist)
TUNING_RECORD_END

/// The flash bias table of a flash snapshot.
struct FlashBiasMtrTblGenConfigType
{
    MtrStatsSelectionType            statsSelection;
    FlashBiasMtrTblGenCoreConfigType mtrTblConfig;
};
TUNING_RECORD(FlashBiasMtrTblGenConfigType)
    MEMBER(statsSelection)
    MEMBER(mtrTblConfig)
TUNING_RECORD_END

/// Whether a scene suits a precision flash, and its background and foreground tables.
struct PrecisionFlashType
{
    BOOL                        enable;
    DataDrivenTriggerSystemType BackGrdMask;       ///< weight by lux index and brightening relative to the mean
    DataDrivenTriggerSystemType ForeGrdMask;       ///< weight by lux index and brightening relative to the mean
    INT32                       BackGrdPctDataID;  ///< trigger that receives the background's share, in percent
    INT32                       BackGrdBiasTblID;  ///< data ID of the background table
    INT32                       ForeGrdBiasTblID;  ///< data ID of the foreground table
    INT32                       HighPct;           ///< percent of the regions, the brightest, that make the mean
    float                       BackGrdThld;       ///< least share of background, 0 to 1
    float                       ForeGrdThld;       ///< least share of foreground, 0 to 1
    INT32                       DetectionType;     ///< 0 takes the mean of all regions, any other value HighPct of them
    float                       MinPxlVal;         ///< not read by the core
};
TUNING_RECORD(PrecisionFlashType)
    BOOLEAN(enable)
    MEMBER(BackGrdMask)
    MEMBER(ForeGrdMask)
    MEMBER(BackGrdPctDataID)
    MEMBER(BackGrdBiasTblID)
    MEMBER(ForeGrdBiasTblID)
    MEMBER(HighPct)
    MEMBER(BackGrdThld)
    MEMBER(ForeGrdThld)
    MEMBER(DetectionType)
    MEMBER(MinPxlVal)
TUNING_RECORD_END

/// The module's record.
struct KIROMtrTableGenType
{
    UINT32                       SymbolTableID;
    module_versionStruct         module_version;
    parameter_versionStruct      parameter_version;
    UINT32                       moduleID;
    FlashBiasMtrTblGenConfigType flashBiasMetTblGen;
    PrecisionFlashType           PrecisionFlashTblGen;
    UINT32                       tableGeneratorCount;
    UINT32                       tableGeneratorID;
    TableGeneratorType*          tableGenerator;  ///< run in this order, except in flash snapshots
};
TUNING_RECORD(KIROMtrTableGenType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(flashBiasMetTblGen)
    MEMBER(PrecisionFlashTblGen)
    VARIABLE(tableGenerator)
TUNING_RECORD_END

} // namespace kiromtrtablegen
