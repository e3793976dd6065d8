/// @file
/// External map processors: they turn a map from outside into a stable table of marked regions.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroexternalmapprocessor
{

/// What the input table holds.
enum ExternalMapType : INT32
{
    selectionMap = 0,  ///< 1 for a marked cell
    statsMap     = 1   ///< values; statsThres tells which mark a cell
};
TUNING_ENUM(ExternalMapType)
    ENUMERATOR(selectionMap)
    ENUMERATOR(statsMap)
TUNING_ENUM_END

/// A range of map values that holds for a range of lux indices.
struct RangeStartEndType
{
    StartEndType trigger1Lux;
    StartEndType triggerDataRange;  ///< both ends included
};
TUNING_RECORD(RangeStartEndType)
    MEMBER(trigger1Lux)
    MEMBER(triggerDataRange)
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
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// What a processor reads.
struct InputInfoType
{
    ExternalMapType       mapType;
    INT32                 dataIDWeight2D;  ///< data ID in the bank of two-dimensional weights
    MapProcessorRangeType statsThres;      ///< for statsMap
};
TUNING_RECORD(InputInfoType)
    MEMBER(mapType)
    MEMBER(dataIDWeight2D)
    MEMBER(statsThres)
TUNING_RECORD_END

/// What a processor writes.
struct OutputInfoType
{
    INT32 dataIDWeight2D;  ///< data ID in the bank of two-dimensional weights; 1 for a marked cell, 0 for any other
};
TUNING_RECORD(OutputInfoType)
    MEMBER(dataIDWeight2D)
TUNING_RECORD_END

/// One processor. Ratios are shares of the 256 cells, 0 to 1.
struct ExternalMapProcessorType
{
    BOOL           enable;
    CHAR*          description;
    InputInfoType  input;
    OutputInfoType output;
    float          validGridRatio;                     ///< more input cells marked: the map is usable
    float          invalidGridRatio;                   ///< fewer tracked cells marked: tracking is lost
    float          timeoutGridRatio;                   ///< fewer input cells marked: the map is gone
    UINT32         validStateConsecutiveFrameCount;    ///< usable frames before tracking begins
    UINT32         invalidStateConsecutiveFrameCount;  ///< lost frames before tracking is given up
    UINT32         timeoutStateConsecutiveFrameCount;  ///< frames without the map, not only consecutive, to stand by
    UINT32         spatialConsistencyStrength;         ///< cells a mark may move per frame; 2: two on an axis
};
TUNING_RECORD(ExternalMapProcessorType)
    BOOLEAN(enable)
    MEMBER(description)
    MEMBER(input)
    MEMBER(output)
    MEMBER(validGridRatio)
    MEMBER(invalidGridRatio)
    MEMBER(timeoutGridRatio)
    MEMBER(validStateConsecutiveFrameCount)
    MEMBER(invalidStateConsecutiveFrameCount)
    MEMBER(timeoutStateConsecutiveFrameCount)
    MEMBER(spatialConsistencyStrength)
TUNING_RECORD_END

/// The module's record.
struct KIROExternalMapProcessorType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    UINT32                    externalMapProcessorCount;
    UINT32                    externalMapProcessorID;
    ExternalMapProcessorType* externalMapProcessor;  ///< run in this order
};
TUNING_RECORD(KIROExternalMapProcessorType)
    MODULE_HEADER
    VARIABLE(externalMapProcessor)
TUNING_RECORD_END

} // namespace kiroexternalmapprocessor
