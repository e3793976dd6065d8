/// @file
/// Building blocks that the records of several tuning modules share.
#pragma once

#include "schema/kiroenumtables.h"
#include "schema/tuningrecord.h"

namespace kiroglobalelements
{

/// A range of trigger values; also any other pair of a lower and an upper bound.
struct StartEndType
{
    float start;
    float end;
};
TUNING_RECORD(StartEndType)
    MEMBER(start,
        .meaning = "Lower bound, in the unit of what the range is of. In a tree of zones the value is flat from here "
                   "to end, goes in a straight line from there to the start of the next zone, and below the first "
                   "start is that of the first zone.",
        .unit = Unit::Varies, .range = Any)
    MEMBER(end,
        .meaning = "Upper bound, not below start, in the unit of what the range is of. In a tree the last zone holds "
                   "beyond its end as well.",
        .unit = Unit::Varies, .range = Any)
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

#define ZONE_TRIGGER                                                                                                   \
    MEMBER(trigger,                                                                                                    \
        .meaning = "Range of the trigger within which the zone stands unchanged: between two zones what they yield "   \
                   "is interpolated, beyond the outer ones the nearest stands.",                                       \
        .unit = Unit::Varies, .range = Any)

/// Of the last level. @param Core the record, or the number, that the zone yields @param ... its words
#define LEAF_ZONE(Name, Core, field, ...)                                                                              \
    struct Name                                                                                                        \
    {                                                                                                                  \
        kiroglobalelements::StartEndType trigger;                                                                      \
        Core                             field;                                                                        \
    };                                                                                                                 \
    TUNING_RECORD(Name)                                                                                                \
        ZONE_TRIGGER                                                                                                   \
        MEMBER(field, __VA_ARGS__)                                                                                     \
    TUNING_RECORD_END                                                                                                  \
    static_assert(kiroglobalelements::IsLeafZone<Name, Core>());

/// Of a level above. @param Zone zones of the next level: at least 1, in ascending trigger @param ... their words
#define INNER_ZONE(Name, Zone, field, ...)                                                                             \
    struct Name                                                                                                        \
    {                                                                                                                  \
        kiroglobalelements::StartEndType trigger;                                                                      \
        UINT32                           field##Count;                                                                 \
        UINT32                           field##ID;                                                                    \
        Zone*                            field;                                                                        \
    };                                                                                                                 \
    TUNING_RECORD(Name)                                                                                                \
        ZONE_TRIGGER                                                                                                   \
        VARIABLE(field, __VA_ARGS__)                                                                                   \
    TUNING_RECORD_END                                                                                                  \
    static_assert(kiroglobalelements::IsInnerZone<Name>());

/// Which kind of statistics a channel holds.
enum KIROStatsType : INT32
{
    KIROStatsGrid = 0,
    KIROStatsHist = 1
};
TUNING_ENUM(KIROStatsType)
    ENUMERATOR(KIROStatsGrid,
        "One value for each region of the frame; weights and regions of interest choose among them.")
    ENUMERATOR(KIROStatsHist,
        "One count for each bin of luma; it knows how many samples are dark or bright, but not where.")
TUNING_ENUM_END

/// Which vector processors a call of the host is for.
enum class VectorProcessorUsageType : INT32
{
    Default = 0,
    Gyro    = 1
};

/// What of a pair a value bank reads or writes.
enum class BankDataType : INT32
{
    startEnd = 0,
    start    = 1,
    end      = 2
};
TUNING_ENUM(BankDataType)
    ENUMERATOR(startEnd, "Writing replaces both halves of the pair; reading takes the start.")
    ENUMERATOR(start, "Writing replaces the start and keeps the end; reading takes the start.")
    ENUMERATOR(end,
        "Writing replaces the end and keeps the start, so that a trigger, which is a start alone, stays as it was; "
        "reading takes the end.")
TUNING_ENUM_END

/// Whether the clamp of bright statistics follows the ratio of safe to short exposure.
enum ExpRatioHandleType : INT32
{
    DoNotHandle         = 0,
    ScaleShortThreshold = 1
};
TUNING_ENUM(ExpRatioHandleType)
    ENUMERATOR(DoNotHandle, "Values of the channel are clamped at 0.98 of full scale, whatever the exposures are.")
    ENUMERATOR(ScaleShortThreshold,
        "The clamp is 0.98 of full scale over the ratio of safe to short, without the predictive gain: twice the "
        "ratio halves it, a ratio below 1 leaves it. With long ADRC that gain takes the place of the ratio.")
TUNING_ENUM_END

/// Reference to an entry of a data bank.
struct DataBankType
{
    KIROBankIDType bankID;
    INT32          dataID;
};
TUNING_RECORD(DataBankType)
    MEMBER(bankID,
        .meaning = "Bank that holds the value. A number can be read from BankIDTriggers, BankIDStatsCalculator, "
                   "BankIDSceneAnalyzer (its start) and, except by convergence, from BankIDROITable (its weight); "
                   "detectors take BankIDTriggers alone, vector processors have banks of their own.")
    MEMBER(dataID,
        .meaning = "Number of the entry: 0 to 999 in a bank of values (BankIDTriggers, BankIDStatsCalculator, "
                   "BankIDSceneAnalyzer), in a tuned bank that of an entry or 0 for the one that the context selects. "
                   "In a tree of an analyzer 0 reads nothing and drives it with 0; as the output of a component, a "
                   "negative one switches the component off.",
        .unit = Unit::ID, .range = {0, 999}, .odd = AtLeast(-1), .refers = {Reads(Thing::SiblingBank).Unless(0)})
TUNING_RECORD_END

/// Last level of a tree of zones over triggers: one number per zone.
LEAF_ZONE(TriggerSystemEndLevelType, float, triggerData,
    .meaning = "Number that the tree yields within this zone; between two zones it goes in a straight line from one "
               "to the other. Its unit is that of what the tree is for.",
    .unit = Unit::Varies, .range = Any)

/// Last level of a tree whose zones hold a range.
LEAF_ZONE(TriggerSystemEndLevelStartEndType, StartEndType, triggerData,
    .meaning = "Range that holds within this zone, each end interpolated between zones: of luma, or of a share. Where "
               "the tree maps luma to a weight, the weight runs from start to end over the zone, and may fall.")

/// First level of a two-level tree.
INNER_ZONE(TwoLevelTriggerSystemLevel1Type, TriggerSystemEndLevelType, trigger2Data,
    .meaning = "Zones of the next driving value in rising order, each with the number that the tree yields.",
    .entries = AtLeast(1))

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
    MEMBER(trigger1DataBank,
        .meaning = "Read by no stage: the only tree of this kind, the hysteresis of a precision flash, is driven by "
                   "the lux index.",
        .acts = Acts::Never)
    MEMBER(trigger2DataBank,
        .meaning = "Read by no stage: the second level of the only tree of this kind is driven by the seconds since "
                   "the last precision flash was found fit.",
        .acts = Acts::Never)
    VARIABLE(trigger1Data,
        .meaning = "Zones of the first level in rising order; the whole tree. Without any it yields 0.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// Second level of a three-level tree.
INNER_ZONE(ThreeLevelTriggerSystemLevel2Type, TriggerSystemEndLevelType, trigger3Data,
    .meaning = "Zones of the third driving value in rising order, each with the number that the tree yields.",
    .entries = AtLeast(1))

/// First level of a three-level tree.
INNER_ZONE(ThreeLevelTriggerSystemLevel1Type, ThreeLevelTriggerSystemLevel2Type, trigger2Data,
    .meaning = "Zones of the second driving value in rising order, each with those of the third.",
    .entries = AtLeast(1))

/// A three-level tree and the bank entries that drive it.
struct ThreeLevelDataBankTriggerSystemType
{
    DataBankType                       trigger1DataBank;
    DataBankType                       trigger2DataBank;
    DataBankType                       trigger3DataBank;
    UINT32                             trigger3DataCount;
    UINT32                             trigger3DataID;
    ThreeLevelTriggerSystemLevel1Type* trigger3Data;
};
TUNING_RECORD(ThreeLevelDataBankTriggerSystemType)
    MEMBER(trigger1DataBank,
        .meaning = "Entry whose value chooses among the zones of the first level; in the hold time of a detector it "
                   "must stand in BankIDTriggers, or the detector does not run.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Entry whose value chooses among the zones of the second level. In the hold time of a detector it "
                   "drives the third level too, and must stand in BankIDTriggers, or the detector does not run.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger3DataBank,
        .meaning = "Entry whose value chooses among the zones of the third level; not read in the hold time of a "
                   "detector.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    VARIABLE(trigger3Data,
        .meaning = "Zones of the first level in rising order: the whole tree, in spite of the name. Without any it "
                   "yields 0.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// How a module's regions of interest are turned into statistics regions.
struct StatsROIProcessType
{
    BOOL  enable;
    float scale;
    float temporalFilter;
};
TUNING_RECORD(StatsROIProcessType)
    BOOLEAN(enable,
        .meaning = "Read by no stage; meant to switch on that regions of interest become regions of the statistics.",
        .start = "false", .acts = Acts::Never)
    MEMBER(scale,
        .meaning = "Read by no stage; meant as a factor on the size of a region about its centre, 1 keeping the size.",
        .unit = Unit::Factor, .range = Any, .start = "1.0", .acts = Acts::Never)
    MEMBER(temporalFilter,
        .meaning = "Read by no stage; meant as the share of the previous region in the new one, 0 following at once.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.0", .acts = Acts::Never)
TUNING_RECORD_END

/// Which bank entry applies in which context: the entry of highest priority whose events are all set.
struct TunaraBankDataPriorityType
{
    UINT32               contextCount;
    UINT32               contextID;
    KIROTunaraEventType* context;
    INT32                priority;
    INT32                dataID;
};
TUNING_RECORD(TunaraBankDataPriorityType)
    VARIABLE(context,
        .meaning = "Events that must all be set for this row to count. None, or AECDefault alone, count always; "
                   "AECDefault among others needs the event itself.",
        .entries = AtLeast(0), .start = "[AECDefault]")
    MEMBER(priority,
        .meaning = "Of the rows that count, the highest wins, and of equal ones the first; a negative one never does.",
        .range = AtLeast(0), .odd = Any, .start = "0")
    MEMBER(dataID,
        .meaning = "Entry that all who ask for data ID 0 of the bank get while this row wins. If it is 0, or the bank "
                   "has no such entry, they get the last entry of the module, or what a module or the host has added "
                   "since.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .refers = {Reads(Thing::OwnBank).Unless(0)})
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
    MEMBER(bankID,
        .meaning = "Bank of the module; read by no stage, as each module fills a bank of its own.",
        .acts = Acts::Never)
    VARIABLE(priorityMap,
        .meaning = "Which entry the context selects: rows of events, priority and entry. Without a row that counts, "
                   "the last entry of the module holds.",
        .entries = AtLeast(0))
TUNING_RECORD_END

/// Declares the record of a module that fills a data bank, and its table: how the context selects, with the ID of the
/// module's bank, and at most 1000 payloads, of which the last applies where no priority does; the core
/// reads none for a value bank. @param sentence about the module @param ... the words of the payloads
#define BANK_MODULE(Name, Payload, sentence, ...)                                                                      \
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
        MODULE_HEADER(sentence)                                                                                        \
        MEMBER(dataBank,                                                                                               \
            .meaning = "Which entry applies in which context: of the priorities whose events are all set the highest " \
                       "wins, and without one the last entry of data applies.")                                        \
        VARIABLE(data, __VA_ARGS__)                                                                                    \
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
