/// @file
/// Tuning module kiroexternalmapprocessor.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroexternalmapprocessor
{

/// What the input table holds.
enum ExternalMapType : INT32
{
    selectionMap = 0,
    statsMap     = 1
};
TUNING_ENUM(ExternalMapType)
    ENUMERATOR(selectionMap,
        "The table says itself which cells are marked: a weight from 1 up to below 2 marks a cell, any other does "
        "not.")
    ENUMERATOR(statsMap,
        "The table holds measured values such as distances; those within the range of statsThres at the present lux "
        "index mark a cell.")
TUNING_ENUM_END

/// A range of map values that holds for a range of lux indices.
struct RangeStartEndType
{
    StartEndType trigger1Lux;
    StartEndType triggerDataRange;
};
TUNING_RECORD(RangeStartEndType)
    MEMBER(trigger1Lux,
        .meaning = "Range of the lux index for which the range of map values holds; between two of them both ends are "
                   "interpolated.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any, .acts = Acts::Rebuilt,
        .when = "enable & mapType=statsMap")
    MEMBER(triggerDataRange,
        .meaning = "Map values that mark a cell, both ends included, in the unit of the map; a wider range marks more "
                   "cells, one with start above end none.",
        .unit = Unit::Varies, .range = Any, .acts = Acts::Rebuilt, .when = "enable & mapType=statsMap")
TUNING_RECORD_END
static_assert(kiroglobalelements::IsLeafZone<RangeStartEndType, StartEndType>());

/// Map values that mark a cell, by lux index.
struct MapProcessorRangeType
{
    UINT32             trigger1DataCount;
    UINT32             trigger1DataID;
    RangeStartEndType* trigger1Data;
};
TUNING_RECORD(MapProcessorRangeType)
    VARIABLE(trigger1Data,
        .meaning = "Zones of the lux index in rising order, each with the map values that mark a cell; without any, "
                   "the cells of value 0 are marked.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt, .when = "enable & mapType=statsMap")
TUNING_RECORD_END

/// What a processor reads.
struct InputInfoType
{
    ExternalMapType       mapType;
    INT32                 dataIDWeight2D;
    MapProcessorRangeType statsThres;
};
TUNING_RECORD(InputInfoType)
    MEMBER(mapType,
        .meaning = "Whether the input table tells the marked cells itself or holds values of which a range marks "
                   "them.",
        .start = "statsMap", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(dataIDWeight2D,
        .meaning = "Table of 16 x 16 cells that the host or another module puts into the bank for each frame; while "
                   "it is missing no cell is marked. 0 takes the one that the context selects.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDMetering2D).Unless(0)}, .when = "enable")
    MEMBER(statsThres,
        .meaning = "With statsMap: which values mark a cell, over the lux index.",
        .acts = Acts::Rebuilt, .when = "enable & mapType=statsMap")
TUNING_RECORD_END

/// What a processor writes.
struct OutputInfoType
{
    INT32 dataIDWeight2D;
};
TUNING_RECORD(OutputInfoType)
    MEMBER(dataIDWeight2D,
        .meaning = "Table that receives 1 for each tracked cell and 0 for all others in every frame, for calculators, "
                   "table generators and later processors; 0 replaces what the context has selected, until it selects "
                   "anew.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .acts = Acts::Rebuilt,
        .refers = {WritesBank(BankIDMetering2D)}, .when = "enable")
TUNING_RECORD_END

/// One processor. Ratios are shares of the 256 cells, 0 to 1.
struct ExternalMapProcessorType
{
    BOOL           enable;
    CHAR*          description;
    InputInfoType  input;
    OutputInfoType output;
    float          validGridRatio;
    float          invalidGridRatio;
    float          timeoutGridRatio;
    UINT32         validStateConsecutiveFrameCount;
    UINT32         invalidStateConsecutiveFrameCount;
    UINT32         timeoutStateConsecutiveFrameCount;
    UINT32         spatialConsistencyStrength;
};
TUNING_RECORD(ExternalMapProcessorType)
    BOOLEAN(enable,
        .meaning = "On, the processor runs in every frame, with valid statistics or not. Off, it writes nothing: its "
                   "output entry is missing unless the tuning holds a table of that ID, which a processor that was on "
                   "before has replaced until the host hands over a tuning anew.",
        .start = "true", .acts = Acts::Rebuilt)
    MEMBER(description,
        .meaning = "Name of the processor in logs.",
        .acts = Acts::Never)
    MEMBER(input,
        .meaning = "The map that is read, and what marks a cell in it.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(output,
        .meaning = "Where the tracked cells go.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(validGridRatio,
        .meaning = "The input map is usable while more than this share of its 256 cells is marked; doubled, a subject "
                   "must be twice as large before it is tracked. At 1 no map ever is.",
        .unit = Unit::Share, .range = Below(0, 1), .start = "0.02", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(invalidGridRatio,
        .meaning = "Tracking is losing its subject while less than this share of the 256 cells is tracked; doubled, "
                   "it gives up while twice as many are left. At 0 it never gives up, and a subject that is lost once "
                   "is not found again.",
        .unit = Unit::Share, .range = Above(0, 1), .start = "0.02", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(timeoutGridRatio,
        .meaning = "Once tracking has been given up, a frame counts towards standing by if less than this share of "
                   "the 256 input cells is marked; doubled, fuller maps count as gone. At 0 no frame counts.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.02", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(validStateConsecutiveFrameCount,
        .meaning = "Usable frames in a row before tracking begins or begins again; doubled, it takes twice as long. 0 "
                   "acts as 1, but needs no usable map.",
        .unit = Unit::Frames, .range = AtLeast(1), .odd = AtLeast(0), .start = "3", .acts = Acts::Rebuilt,
        .when = "enable")
    MEMBER(invalidStateConsecutiveFrameCount,
        .meaning = "Frames in a row with too little tracked before tracking is given up and the map is taken anew; "
                   "doubled, a subject may be hidden twice as long. 0 gives up after each frame.",
        .unit = Unit::Frames, .range = AtLeast(1), .odd = AtLeast(0), .start = "5", .acts = Acts::Rebuilt,
        .when = "enable")
    MEMBER(timeoutStateConsecutiveFrameCount,
        .meaning = "Frames without the map, added up over good ones in between, after which the processor stands by "
                   "instead of waiting to track again; doubled, it waits twice as long. 0 stands by at once.",
        .unit = Unit::Frames, .range = AtLeast(1), .odd = AtLeast(0), .start = "10", .acts = Acts::Rebuilt,
        .when = "enable")
    MEMBER(spatialConsistencyStrength,
        .meaning = "How far a mark may move in one frame: 0 not at all, 1 to the eight neighbours, 2 also two cells "
                   "along an axis. A mark that moves farther is dropped; values above 2 act as 2.",
        .range = {0, 2}, .odd = AtLeast(0), .start = "2", .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// The module's record.
struct KIROExternalMapProcessorType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    UINT32                    externalMapProcessorCount;
    UINT32                    externalMapProcessorID;
    ExternalMapProcessorType* externalMapProcessor;
};
TUNING_RECORD(KIROExternalMapProcessorType)
    MODULE_HEADER("External map processors: they turn a map from outside into a stable table of marked regions.")
    VARIABLE(externalMapProcessor,
        .meaning = "Processors, run in this order in every frame before the table generators. An edit of any member "
                   "makes all of them stand by and start anew.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
TUNING_RECORD_END

} // namespace kiroexternalmapprocessor
