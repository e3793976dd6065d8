/// @file
/// Tuning module kirodbconvbase.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvbase
{

/// What caps the move of a frame.
enum AECConvCappingType : INT32
{
    CappingTypeRatio       = 0,
    CappingTypeAbsolute    = 1,
    CappingTypeSystemDelay = 2,
    CappingTypeMax         = 3
};
TUNING_ENUM(AECConvCappingType)
    ENUMERATOR(CappingTypeRatio,
        "A frame moves by at most baseCapping times the distance of the target from the measured frame.")
    ENUMERATOR(CappingTypeAbsolute, "A frame moves by at most baseCapping log steps.")
    ENUMERATOR(CappingTypeSystemDelay,
        "A frame moves by at most the distance of the target from the measured frame, divided by the frames of "
        "pipeline delay; baseCapping is not read.")
    ENUMERATOR(CappingTypeMax, "Number of capping types; acts like CappingTypeSystemDelay.")
TUNING_ENUM_END

/// The speeds of a zone.
struct ConvBaseCoreDataType
{
    float baseSpeed;
    float baseCapping;
    float drcSpeed;
};
TUNING_RECORD(ConvBaseCoreDataType)
    MEMBER(baseSpeed,
        .meaning = "Share of the distance from the previous frame's Safe exposure to the target that one frame "
                   "covers: twice the share settles in about half the frames, 1 goes as far as the cap allows at "
                   "once, above 1 the cap alone stops it. Moves below unitStepSize become unitStepSize, and with 0 "
                   "the exposure sinks by unitStepSize in every frame.",
        .unit = Unit::Share, .range = Above(0, 1), .odd = Above(0), .start = "0.5")
    MEMBER(baseCapping,
        .meaning = "Largest move of a frame: a factor of the distance of the target from the measured frame with "
                   "CappingTypeRatio, log steps with CappingTypeAbsolute; twice the value lets an exposure far from "
                   "its target jump twice as far. With 0 the exposure sinks by unitStepSize in every frame.",
        .unit = Unit::Varies, .range = Above(0), .start = "1.0",
        .when = "cappingType=CappingTypeRatio|CappingTypeAbsolute")
    MEMBER(drcSpeed,
        .meaning = "Share of the change of a DRC gain (Safe over Short, Long over Safe) that one frame covers; twice "
                   "the share brings Short and Long to their new distance from Safe in about half the frames. With 0 "
                   "they rise by unitStepSize at a time and never sink on their own.",
        .unit = Unit::Share, .range = Above(0, 1), .odd = Below(0, 2), .start = "0.5")
TUNING_RECORD_END

/// Zone of the third trigger.
LEAF_ZONE(ConvBaseLevel3DataType, ConvBaseCoreDataType, triggerData,
    .meaning = "Speeds of the zone.")

/// Zone of the second trigger.
INNER_ZONE(ConvBaseLevel2DataType, ConvBaseLevel3DataType, trigger3Data,
    .meaning = "Zones of the third trigger, in ascending order; a single one makes the speeds independent of that "
               "trigger.",
    .entries = AtLeast(1))

/// Zone of the first trigger.
INNER_ZONE(ConvBaseLevel1DataType, ConvBaseLevel2DataType, trigger2Data,
    .meaning = "Zones of the second trigger, in ascending order; a single one makes the speeds independent of that "
               "trigger.",
    .entries = AtLeast(1))

/// How the Safe exposure moves to its target.
struct DBConvBaseCoreData
{
    BOOL                    convSameDirection;
    UINT32                  tolerance;
    AECConvCappingType      cappingType;
    DataBankType            trigger1DataBank;
    DataBankType            trigger2DataBank;
    DataBankType            trigger3DataBank;
    UINT32                  trigger1DataCount;
    UINT32                  trigger1DataID;
    ConvBaseLevel1DataType* trigger1Data;
};
TUNING_RECORD(DBConvBaseCoreData)
    BOOLEAN(convSameDirection,
        .meaning = "Switched on, all exposures rest while the target lies between the measured frame and the previous "
                   "frame, since the frames in flight will reach it unaided; a predictive gain other than 1 in the "
                   "previous frame overrides this.",
        .start = "false")
    MEMBER(tolerance,
        .meaning = "Once settled, an exposure rests while its target is nearer than this, so that twice the value "
                   "lets the light wander twice as far before the exposure follows, a stop from 23 on. 0 never rests, "
                   "and 1 besides ends a move exactly on the target when less than a step remains.",
        .unit = Unit::LogStep, .range = {0, 23}, .odd = AtLeast(0), .start = "5")
    MEMBER(cappingType,
        .meaning = "Selects what limits the move of a frame: a factor of the distance, a fixed number of log steps, "
                   "or the pipeline delay.",
        .start = "CappingTypeRatio")
    MEMBER(trigger1DataBank,
        .meaning = "Bank value that drives the first level of the tree of speeds; in the scene analyzer bank the "
                   "lower end of the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Bank value that drives the second level of the tree of speeds; in the scene analyzer bank the "
                   "lower end of the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger3DataBank,
        .meaning = "Bank value that drives the third level of the tree of speeds; in the scene analyzer bank the "
                   "lower end of the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    VARIABLE(trigger1Data,
        .meaning = "Zones of the first trigger, in ascending order; the tree below them holds the speeds.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// One set of speeds of the bank.
struct DBConvBasePayload
{
    INT32              dataID;
    CHAR*              description;
    DBConvBaseCoreData value;
};
TUNING_RECORD(DBConvBasePayload)
    MEMBER(dataID,
        .meaning = "Number by which priorities and hosts select these speeds, from 1; an entry numbered 0 can only be "
                   "the fallback as the last of the bank.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDConvBase)})
    MEMBER(description,
        .meaning = "Name of these speeds for the reader of the tuning; read by no stage.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "How the Safe exposure, and the distances of Short and Long from it, move to their targets.")
TUNING_RECORD_END

BANK_MODULE(KIRODBConvBaseType, DBConvBasePayload,
    "The bank of convergence speeds. Differences of exposure are in steps of 3 percent.",
    .meaning = "Sets of speeds, at most 1000; the last one is the fallback. Without any, convergence computes nothing "
               "and never settles, and the exposure moves only where an event fixes it.",
    .entries = {1, 1000})

} // namespace kirodbconvbase
