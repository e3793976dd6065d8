/// @file
/// Tuning module kiromtrtablegen.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiromtrtablegen
{

/// What drives a generator.
enum GenerationMethodType : INT32
{
    StatsDrivenMethod        = 0,
    ExternalDataDrivenMethod = 1
};
TUNING_ENUM(GenerationMethodType)
    ENUMERATOR(StatsDrivenMethod,
        "The tree is driven by the luma that a grid channel of the frame shows in the region.")
    ENUMERATOR(ExternalDataDrivenMethod,
        "The tree is driven by the weight that another table of the bank holds for the region, such as a tracked map.")
TUNING_ENUM_END

/// Last level of a tree that maps a value to a weight.
struct GeneratorEndLevelDataType
{
    StartEndType trigger2;
    float        triggerData;
};
TUNING_RECORD(GeneratorEndLevelDataType)
    MEMBER(trigger2,
        .meaning = "Range of the value for which this weight holds; between two ranges weights are interpolated. In a "
                   "generator the value is luma on the scale of 8 bits or a weight of the driving table, in the masks "
                   "of a precision flash the brightening by the LED relative to its mean.",
        .unit = Unit::Varies, .range = AtLeast(0), .odd = Any, .when = "enable")
    MEMBER(triggerData,
        .meaning = "Weight of a region whose value lies in this zone. In a generator it is the factor on the base "
                   "weight, so that doubled the region counts twice as much; in a mask of a precision flash it is the "
                   "share, 0 to 1, by which the region belongs to the part.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "1.0", .when = "enable")
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
    MEMBER(trigger1Lux,
        .meaning = "Range of the lux index for which these zones of the value hold; between two ranges the weights of "
                   "both are interpolated.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any, .when = "enable")
    VARIABLE(trigger2Data,
        .meaning = "Zones of the value in rising order, each with a weight.",
        .entries = AtLeast(1), .when = "enable")
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
    VARIABLE(trigger1Data,
        .meaning = "Zones of the lux index in rising order, each with the zones of the value; without any, every "
                   "weight is 0.",
        .entries = AtLeast(1), .when = "enable")
TUNING_RECORD_END

/// What a generator reads.
struct GeneratorSourceType
{
    INT32 base2DWeightID;
    CHAR* statsChannel;
    INT32 externData2DWeightID;
};
TUNING_RECORD(GeneratorSourceType)
    MEMBER(base2DWeightID,
        .meaning = "Table whose weights are multiplied with those of the tree; 0 takes the one that the context "
                   "selects. A missing table makes all 256 weights 1.",
        .unit = Unit::ID, .range = AtLeast(0), .refers = {ReadsBank(BankIDMetering2D).Unless(0)}, .when = "enable")
    MEMBER(statsChannel,
        .meaning = "Channel that drives the tree with StatsDrivenMethod: a grid of 16 x 16 regions of 8 bits. If it "
                   "is missing or of another shape, an error is logged and the table of the frame before stands, all "
                   "0 at first.",
        .acts = Acts::Never, .refers = {Reads(Thing::Channel)}, .when = "enable & method=StatsDrivenMethod")
    MEMBER(externData2DWeightID,
        .meaning = "Table whose weights drive the tree with ExternalDataDrivenMethod, often the output of a map "
                   "processor or of an earlier generator; 0 takes the one that the context selects. A missing table "
                   "makes all 256 weights 1.",
        .unit = Unit::ID, .range = AtLeast(0), .refers = {ReadsBank(BankIDMetering2D).Unless(0)},
        .when = "enable & method=ExternalDataDrivenMethod")
TUNING_RECORD_END

/// What a generator writes.
struct GeneratorOutputType
{
    INT32 output2DWeightID;
    BOOL  enableGetWeightAverage;
    INT32 outputWeightAverageTriggerID;
};
TUNING_RECORD(GeneratorOutputType)
    MEMBER(output2DWeightID,
        .meaning = "Entry that receives the generated table in each frame, for calculators and later generators that "
                   "name it; 0 replaces what the context has selected, until it selects anew.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .refers = {WritesBank(BankIDMetering2D)},
        .when = "enable")
    BOOLEAN(enableGetWeightAverage,
        .meaning = "On, the mean of all generated weights above 0 is published as the trigger "
                   "outputWeightAverageTriggerID, -1 if no weight is above 0.",
        .start = "false", .when = "enable")
    MEMBER(outputWeightAverageTriggerID,
        .meaning = "Trigger that receives the mean of the weights; 0 or below publishes it nowhere.",
        .unit = Unit::ID, .range = {0, 999}, .odd = AtMost(999), .start = "0",
        .refers = {WritesBank(BankIDTriggers).Unless(0)}, .when = "enable & enableGetWeightAverage")
TUNING_RECORD_END

/// One generator.
struct TableGeneratorType
{
    BOOL                        enable;
    GenerationMethodType        method;
    GeneratorSourceType         input;
    GeneratorOutputType         output;
    DataDrivenTriggerSystemType triggerSystem;
};
TUNING_RECORD(TableGeneratorType)
    BOOLEAN(enable,
        .meaning = "On, the generator runs in every frame with valid statistics that is no flash snapshot. Off, it "
                   "writes nothing: its output entry is missing unless the tuning holds a table of that ID, which a "
                   "generator that was on before has replaced until the host hands over a tuning anew.",
        .start = "true")
    MEMBER(method,
        .meaning = "Where the value comes from that the tree turns into a weight: a channel of the frame or another "
                   "table.",
        .start = "ExternalDataDrivenMethod", .when = "enable")
    MEMBER(input,
        .meaning = "What the generator reads: the base table and the value of each region.",
        .when = "enable")
    MEMBER(output,
        .meaning = "Where the generated table and its mean go.",
        .when = "enable")
    MEMBER(triggerSystem,
        .meaning = "Tree that turns lux index and value of a region into the factor on its base weight.",
        .when = "enable")
TUNING_RECORD_END

/// Channels of the flash bias table.
struct MtrStatsSelectionType
{
    CHAR*         channel1;
    CHAR*         channel2;
    CHAR*         channel3;
    CHAR*         channel4;
    CHAR*         channel5;
    KIROStatsType type;
};
TUNING_RECORD(MtrStatsSelectionType)
    MEMBER(channel1,
        .meaning = "Luma of 16 x 16 regions without LED. If it is missing or has fewer than 256 values, no table is "
                   "made for the flash picture.",
        .start = "luma16Off", .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(channel2,
        .meaning = "Saturation of 16 x 16 regions without LED. If it is missing or has fewer than 256 values, no "
                   "table is made for the flash picture.",
        .start = "sat16Off", .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(channel3,
        .meaning = "Luma of 16 x 16 regions under the low LED. If it is missing or has fewer than 256 values, no "
                   "table is made for the flash picture.",
        .start = "luma16Low", .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(channel4,
        .meaning = "Saturation of 16 x 16 regions under the low LED. If it is missing or has fewer than 256 values, "
                   "no table is made for the flash picture.",
        .start = "sat16Low", .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(channel5,
        .meaning = "Read by no stage.",
        .acts = Acts::Never)
    MEMBER(type,
        .meaning = "Kind of the four channels: a grid, or a histogram of at least 256 bins whose counts are then "
                   "taken for regions.",
        .start = "KIROStatsGrid")
TUNING_RECORD_END

/// Attenuation of regions where the LED mirrors.
struct SpeckleScreenType
{
    BOOL         enable;
    StartEndType range;
};
TUNING_RECORD(SpeckleScreenType)
    BOOLEAN(enable,
        .meaning = "On, regions in which the LED is mirrored lose their gain; off, they count as strongly brightened. "
                   "The host can switch it off, too, by its setting disableSpeckleDetection.",
        .start = "false")
    MEMBER(range,
        .meaning = "Saturation under the low LED: above start a region and its neighbours lose gain, and at end none "
                   "is left; what remains between goes with the cube of the distance to end. Without start below end, "
                   "or with an end below 0, the screening is off and an error logged.",
        .unit = Unit::ChannelUnits, .range = AtLeast(0), .when = "enable")
TUNING_RECORD_END

/// Share of regions that the main flash would saturate.
struct SmartFlashConfType
{
    BOOL  enable;
    float lumaHighSatTh;
};
TUNING_RECORD(SmartFlashConfType)
    BOOLEAN(enable,
        .meaning = "On, the share of regions that the main flash would saturate is published as "
                   "TriggerFlashSatStatsRatio; off, the share is 1.",
        .start = "true")
    MEMBER(lumaHighSatTh,
        .meaning = "Luma predicted for the main flash above which a region counts as saturated; a higher one lowers "
                   "the published share.",
        .unit = Unit::Luma, .range = AtLeast(0), .start = "250", .when = "enable")
TUNING_RECORD_END

/// Influence of a further sensor on the bias table; not read by the core.
struct FlashBiasAssistType
{
    BOOL  enable;
    float strength;
};
TUNING_RECORD(FlashBiasAssistType)
    BOOLEAN(enable,
        .meaning = "Read by no stage.",
        .start = "false", .acts = Acts::Never)
    MEMBER(strength,
        .meaning = "Read by no stage.",
        .unit = Unit::Share, .range = {0, 1}, .acts = Acts::Never)
TUNING_RECORD_END

/// How the flash bias table is made.
struct FlashBiasMtrTblGenCoreConfigType
{
    INT32               dataBankID;
    INT32               baseTableID;
    float               thresBrightSat;
    float               flashEstStrength;
    INT32               minOffStats;
    float               kFloorPct;
    float               satPreventStrength;
    SpeckleScreenType   SpeckleScreen;
    SmartFlashConfType  flashBiasConf;
    FlashBiasAssistType depthAssist;
    FlashBiasAssistType motionAssist;
};
TUNING_RECORD(FlashBiasMtrTblGenCoreConfigType)
    MEMBER(dataBankID,
        .meaning = "Entry that receives the bias table in a flash picture, for the calculators that weigh what the "
                   "flash will brighten.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .refers = {WritesBank(BankIDMetering2D)})
    MEMBER(baseTableID,
        .meaning = "Table whose weights are multiplied with the gains while the host meters centre-weighted; without "
                   "it, or in another metering mode, the gains stand alone. 0 takes the one that the context selects.",
        .unit = Unit::ID, .range = AtLeast(0), .refers = {ReadsBank(BankIDMetering2D).Unless(0)})
    MEMBER(thresBrightSat,
        .meaning = "Saturation without LED above which a region, with its neighbours, is bright already: it gets gain "
                   "1 and no part in the decision on a precision flash. A higher value leaves more regions to the "
                   "flash.",
        .unit = Unit::ChannelUnits, .range = AtLeast(0), .start = "128")
    MEMBER(flashEstStrength,
        .meaning = "Factor on the light that the main flash is predicted to add to a region; doubled, what the gain "
                   "of a region has above 1 doubles, and near regions stand out more. At 0 all regions count alike.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "1.0")
    MEMBER(minOffStats,
        .meaning = "Luma without LED to which darker regions are lifted, with what the LED adds kept; a higher value "
                   "keeps the gains of dark regions low. At 0 a region that is black without LED and lit by it gets a "
                   "gain of millions.",
        .unit = Unit::Luma, .range = AtLeast(1), .odd = AtLeast(0), .start = "2")
    MEMBER(kFloorPct,
        .meaning = "Share of the regions, those of the least gain, that end with gain 1; doubled, twice as many "
                   "regions count alike, and the others stand out by less. 0 keeps all differences, 1 makes every "
                   "gain 1.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.5")
    MEMBER(satPreventStrength,
        .meaning = "Weight of the cubic part v^3 - v that is added to a gain v above the floor; doubled, the regions "
                   "that the flash brightens most weigh up to twice as much, so that they are kept from saturating. 0 "
                   "leaves the gains as they are.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "0.5")
    MEMBER(SpeckleScreen,
        .meaning = "Screening of regions in which the LED is mirrored.")
    MEMBER(flashBiasConf,
        .meaning = "Share of regions that the main flash would saturate.")
    MEMBER(depthAssist,
        .meaning = "Read by no stage.",
        .acts = Acts::Never)
    MEMBER(motionAssist,
        .meaning = "Read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

/// The flash bias table of a flash snapshot.
struct FlashBiasMtrTblGenConfigType
{
    MtrStatsSelectionType            statsSelection;
    FlashBiasMtrTblGenCoreConfigType mtrTblConfig;
};
TUNING_RECORD(FlashBiasMtrTblGenConfigType)
    MEMBER(statsSelection,
        .meaning = "Channels without LED and under the low LED from which the flash is predicted.")
    MEMBER(mtrTblConfig,
        .meaning = "How the predicted gains become the bias table.")
TUNING_RECORD_END

/// Whether a scene suits a precision flash, and its background and foreground tables.
struct PrecisionFlashType
{
    BOOL                        enable;
    DataDrivenTriggerSystemType BackGrdMask;
    DataDrivenTriggerSystemType ForeGrdMask;
    INT32                       BackGrdPctDataID;
    INT32                       BackGrdBiasTblID;
    INT32                       ForeGrdBiasTblID;
    INT32                       HighPct;
    float                       BackGrdThld;
    float                       ForeGrdThld;
    INT32                       DetectionType;
    float                       MinPxlVal;
};
TUNING_RECORD(PrecisionFlashType)
    BOOLEAN(enable,
        .meaning = "On, a flash picture is examined for a split exposure, of which the LED lights a part; off, "
                   "TriggerCtrlPrecisionFlashOk is 0 and the flash is a plain one.",
        .start = "true")
    MEMBER(BackGrdMask,
        .meaning = "How much a region belongs to the background, 0 to 1, over the lux index and its brightening by "
                   "the LED relative to the mean that DetectionType names. Wider low zones find more background.",
        .when = "enable")
    MEMBER(ForeGrdMask,
        .meaning = "How much a region belongs to the foreground, 0 to 1, over the lux index and its brightening by "
                   "the LED relative to the mean that DetectionType names. Wider high zones find more foreground.",
        .when = "enable")
    MEMBER(BackGrdPctDataID,
        .meaning = "Trigger that receives the share of the background, in percent, when the scene is found fit. At 0 "
                   "it disturbs every tree that names trigger 0 for none.",
        .unit = Unit::ID, .range = {1, 999}, .start = "34", .refers = {WritesBank(BankIDTriggers)}, .when = "enable")
    MEMBER(BackGrdBiasTblID,
        .meaning = "Entry that receives the bias table of the background when the scene is found fit.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .refers = {WritesBank(BankIDMetering2D)},
        .when = "enable")
    MEMBER(ForeGrdBiasTblID,
        .meaning = "Entry that receives the bias table of the foreground when the scene is found fit.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .refers = {WritesBank(BankIDMetering2D)},
        .when = "enable")
    MEMBER(HighPct,
        .meaning = "With a DetectionType other than 0: percentage of the regions, those that the LED brightens most, "
                   "whose mean is the yardstick of both masks. Doubled, the mean falls and more regions count as "
                   "foreground; 0 leaves none, and the flash is a plain one.",
        .unit = Unit::Percent, .range = {1, 100}, .odd = {0, 100}, .start = "20", .when = "enable")
    MEMBER(BackGrdThld,
        .meaning = "Least share of background, of all 256 regions, in a scene for a precision flash; doubled, scenes "
                   "need twice as much of it. Right after a detection the hysteresis that kirometeringsaalgorithm "
                   "holds under ID 3 lowers it.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.2", .when = "enable")
    MEMBER(ForeGrdThld,
        .meaning = "Least share of foreground, of all 256 regions, in a scene for a precision flash; doubled, scenes "
                   "need twice as much of it. Right after a detection the hysteresis that kirometeringsaalgorithm "
                   "holds under ID 3 lowers it.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.05", .when = "enable")
    MEMBER(DetectionType,
        .meaning = "What brightening by the LED is compared with: 0 the mean of all regions that are not bright "
                   "without it, any other value the mean of the HighPct that it brightens most.",
        .range = {0, 1}, .odd = Any, .start = "0", .when = "enable")
    MEMBER(MinPxlVal,
        .meaning = "Read by no stage.",
        .range = Any, .acts = Acts::Never)
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
    TableGeneratorType*          tableGenerator;
};
TUNING_RECORD(KIROMtrTableGenType)
    MODULE_HEADER("Generation of two-dimensional metering tables, frame by frame.")
    MEMBER(moduleID,
        .meaning = "Number by which tools tell the module. Read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .start = "6", .acts = Acts::Never)
    MEMBER(flashBiasMetTblGen,
        .meaning = "The bias table of a flash picture: regions count by how much the flash will brighten them.")
    MEMBER(PrecisionFlashTblGen,
        .meaning = "Whether a flash picture suits a split exposure, and the tables of its background and foreground.")
    VARIABLE(tableGenerator,
        .meaning = "Generators, run in this order in frames with valid statistics that are no flash snapshots; a "
                   "later one can read what an earlier one has written.",
        .entries = AtLeast(0))
TUNING_RECORD_END

} // namespace kiromtrtablegen
