/// @file
/// Tuning module kirodbconvstretch.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvstretch
{

/// What stretchFactOffset is.
enum AECConvStretchType : INT32
{
    StretchTypeFactor = 0,
    StretchTypeOffset = 1,
    StretchTypeMax    = 2
};
TUNING_ENUM(AECConvStretchType)
    ENUMERATOR(StretchTypeFactor,
        "stretchFactOffset is a factor of the exposure: below 1 darkens, above 1 brightens, 0 and 1 are no stretch; a "
        "negative one is no exposure.")
    ENUMERATOR(StretchTypeOffset,
        "stretchFactOffset is in log steps, negative ones darken. To checks of direction it goes the way of the last "
        "factor that stood in this place of the list, at first as brightening, whatever its sign.")
    ENUMERATOR(StretchTypeMax, "Number of stretch types; acts like StretchTypeFactor.")
TUNING_ENUM_END

/// How the stretches of a frame become one.
enum AECConvStretchAggType : INT32
{
    StretchAggAverage     = 0,
    StretchAggLeastEffect = 1,
    StretchAggMostEffect  = 2,
    StretchAggLeastWeight = 3,
    StretchAggMostWeight  = 4,
    StretchAggTypeMax     = 5
};
TUNING_ENUM(AECConvStretchAggType)
    ENUMERATOR(StretchAggAverage,
        "Mean of all stretches by weight. Where none counts with a weight above 0, the stretch of the previous frame "
        "stays, and Safe takes it in full.")
    ENUMERATOR(StretchAggLeastEffect,
        "The smallest offset in the direction of the scene: the least positive one when it gets darker, the one next "
        "below the positive ones when it gets brighter; if no offset has that sign, the stretch fades. When it gets "
        "brighter a positive one must stand in the list too, or the fifth smallest is taken, and with fewer than five "
        "the previous stretch stays.")
    ENUMERATOR(StretchAggMostEffect,
        "The largest offset in the direction of the scene: the most positive one when it gets darker, the most "
        "negative one when it gets brighter; if no offset has that sign, the stretch fades.")
    ENUMERATOR(StretchAggLeastWeight,
        "The stretch of least weight; with convSameDirection the stretch fades instead if that one goes against the "
        "direction of the scene.")
    ENUMERATOR(StretchAggMostWeight,
        "The stretch of most weight. With convSameDirection it is taken only while the sixth in order of weight goes "
        "in the direction of the scene, with fewer than six as a rule while the scene asks for more exposure, and "
        "fades otherwise.")
    ENUMERATOR(StretchAggTypeMax,
        "Number of ways to join stretches; refused with a log, and the stretch of the previous frame stays, at first "
        "none.")
TUNING_ENUM_END

/// The stretch of a zone.
struct ConvStretchCoreDataType
{
    float weight;
    float stretchFactOffset;
    float comp;
    float tempWeight;
};
TUNING_RECORD(ConvStretchCoreDataType)
    MEMBER(weight,
        .meaning = "Weight of this stretch in the mean, and its rank where the aggregation goes by weight; doubling "
                   "all weights changes nothing.",
        .range = AtLeast(0), .start = "1.0",
        .when = "convStretchAgg=StretchAggAverage|StretchAggLeastWeight|StretchAggMostWeight")
    MEMBER(stretchFactOffset,
        .meaning = "How far Short is moved from the converged exposure, as a factor or in log steps by stretchType: "
                   "below 1 or negative darkens it and calls for a predictive gain, above 1 or positive brightens "
                   "Short and Safe alike. A stretch that comes to less than one step counts as none.",
        .unit = Unit::Varies, .range = Any, .start = "-8.0")
    MEMBER(comp,
        .meaning = "Share of a darkening stretch that the predictive gain makes up for and that Safe does not take: 1 "
                   "darkens Short alone and brightens it digitally, 0 darkens Safe with it. Brightening stretches do "
                   "not read it.",
        .unit = Unit::Share, .range = {0, 1}, .start = "1.0")
    MEMBER(tempWeight,
        .meaning = "Share of this frame's stretch in the one applied, the rest being the previous frame's: 1 applies "
                   "and ends a stretch at once, half of that lets it fade in and out over several frames. 0 keeps the "
                   "stretch of the previous frame for ever.",
        .unit = Unit::Share, .range = Above(0, 1), .odd = {0, 1}, .start = "0.7")
TUNING_RECORD_END

/// Zone of the third trigger.
LEAF_ZONE(ConvStretchLevel3DataType, ConvStretchCoreDataType, triggerData,
    .meaning = "Stretch of the zone.")

/// Zone of the second trigger.
INNER_ZONE(ConvStretchLevel2DataType, ConvStretchLevel3DataType, trigger3Data,
    .meaning = "Zones of the third trigger, in ascending order; a single one makes the stretch independent of that "
               "trigger.",
    .entries = AtLeast(1))

/// Zone of the first trigger.
INNER_ZONE(ConvStretchLevel1DataType, ConvStretchLevel2DataType, trigger2Data,
    .meaning = "Zones of the second trigger, in ascending order; a single one makes the stretch independent of that "
               "trigger.",
    .entries = AtLeast(1))

/// One stretch with its triggers.
struct ConvTargetStretchType
{
    AECConvStretchType         stretchType;
    DataBankType               trigger1DataBank;
    DataBankType               trigger2DataBank;
    DataBankType               trigger3DataBank;
    UINT32                     trigger1DataCount;
    UINT32                     trigger1DataID;
    ConvStretchLevel1DataType* trigger1Data;
};
TUNING_RECORD(ConvTargetStretchType)
    MEMBER(stretchType,
        .meaning = "Whether stretchFactOffset is a factor of the exposure or a number of log steps.",
        .start = "StretchTypeOffset")
    MEMBER(trigger1DataBank,
        .meaning = "Bank value that drives the first level of the tree; in the scene analyzer bank the lower end of "
                   "the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Bank value that drives the second level of the tree; in the scene analyzer bank the lower end of "
                   "the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger3DataBank,
        .meaning = "Bank value that drives the third level of the tree; in the scene analyzer bank the lower end of "
                   "the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    VARIABLE(trigger1Data,
        .meaning = "Zones of the first trigger, in ascending order; the tree below them holds the stretch.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// The stretches and their aggregation.
struct DBConvStretchCoreData
{
    BOOL                   convSameDirection;
    UINT32                 convStretchCount;
    UINT32                 convStretchID;
    ConvTargetStretchType* convStretch;
    AECConvStretchAggType  convStretchAgg;
};
TUNING_RECORD(DBConvStretchCoreData)
    BOOLEAN(convSameDirection,
        .meaning = "Switched on, a stretch by a factor is left out where it goes against the direction of the scene: "
                   "one that darkens while the scene asks for more exposure, or the other way round. Stretches in log "
                   "steps count as brightening unless a factor stood in their place before.",
        .start = "false", .when = "convStretchAgg=StretchAggAverage|StretchAggLeastWeight|StretchAggMostWeight")
    VARIABLE(convStretch,
        .meaning = "Stretches with triggers of their own, which become one per frame. Without any, or with more than "
                   "ten, the stretch of the previous frame stays, at first none; so a set without stretches is for "
                   "tunings in which no other set has one.",
        .entries = {0, 10})
    MEMBER(convStretchAgg,
        .meaning = "Selects how the stretches of a frame become one: their mean, the one of least or most effect, or "
                   "the one of least or most weight.",
        .start = "StretchAggAverage")
TUNING_RECORD_END

/// One set of stretches of the bank.
struct DBConvStretchPayload
{
    INT32                 dataID;
    CHAR*                 description;
    DBConvStretchCoreData value;
};
TUNING_RECORD(DBConvStretchPayload)
    MEMBER(dataID,
        .meaning = "Number by which priorities and hosts select these stretches, from 1; an entry numbered 0 can only "
                   "be the fallback as the last of the bank.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDConvStretch)})
    MEMBER(description,
        .meaning = "Name of these stretches for the reader of the tuning; read by no stage.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "Stretches and their aggregation.")
TUNING_RECORD_END

BANK_MODULE(KIRODBConvStretchType, DBConvStretchPayload,
    "The bank of stretches, deliberate offsets on top of the converged exposure.",
    .meaning = "Sets of stretches, at most 1000; the last one is the fallback. Without any, convergence computes "
               "nothing and never settles, and the exposure moves only where an event fixes it.",
    .entries = {1, 1000})

} // namespace kirodbconvstretch
