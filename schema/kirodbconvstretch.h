/// @file
/// Tuning module kirodbconvstretch: the bank of stretches, deliberate offsets on top of the converged exposure.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvstretch
{

/// What stretchFactOffset is.
enum AECConvStretchType : INT32
{
    StretchTypeFactor = 0,  ///< factor of the exposure
    StretchTypeOffset = 1,  ///< steps of 3 percent
    StretchTypeMax    = 2
};
TUNING_ENUM(AECConvStretchType)
    ENUMERATOR(StretchTypeFactor)
    ENUMERATOR(StretchTypeOffset)
    ENUMERATOR(StretchTypeMax)
TUNING_ENUM_END

/// How the stretches of a frame become one.
enum AECConvStretchAggType : INT32
{
    StretchAggAverage     = 0,  ///< weighted mean
    StretchAggLeastEffect = 1,  ///< the smallest offset in the direction of the scene
    StretchAggMostEffect  = 2,  ///< the largest offset in the direction of the scene
    StretchAggLeastWeight = 3,
    StretchAggMostWeight  = 4,
    StretchAggTypeMax     = 5
};
TUNING_ENUM(AECConvStretchAggType)
    ENUMERATOR(StretchAggAverage)
    ENUMERATOR(StretchAggLeastEffect)
    ENUMERATOR(StretchAggMostEffect)
    ENUMERATOR(StretchAggLeastWeight)
    ENUMERATOR(StretchAggMostWeight)
    ENUMERATOR(StretchAggTypeMax)
TUNING_ENUM_END

/// The stretch of a zone.
struct ConvStretchCoreDataType
{
    float weight;             ///< in the aggregation, from 0
    float stretchFactOffset;  ///< factor, 0 for none, or steps of 3 percent, by the stretch type
    float comp;               ///< share of a darkening stretch that the predictive gain makes up for, 0 to 1
    float tempWeight;         ///< weight of this frame against the previous one, 0 to 1
};
TUNING_RECORD(ConvStretchCoreDataType)
    MEMBER(weight)
    MEMBER(stretchFactOffset)
    MEMBER(comp)
    MEMBER(tempWeight)
TUNING_RECORD_END

/// Zone of the third trigger.
LEAF_ZONE(ConvStretchLevel3DataType, ConvStretchCoreDataType, triggerData)

/// Zone of the second trigger.
INNER_ZONE(ConvStretchLevel2DataType, ConvStretchLevel3DataType, trigger3Data)

/// Zone of the first trigger.
INNER_ZONE(ConvStretchLevel1DataType, ConvStretchLevel2DataType, trigger2Data)

/// One stretch with its triggers.
struct ConvTargetStretchType
{
    AECConvStretchType         stretchType;
    DataBankType               trigger1DataBank;
    DataBankType               trigger2DataBank;
    DataBankType               trigger3DataBank;
    UINT32                     trigger1DataCount;  ///< at least 1
    UINT32                     trigger1DataID;
    ConvStretchLevel1DataType* trigger1Data;       ///< in ascending trigger
};
TUNING_RECORD(ConvTargetStretchType)
    MEMBER(stretchType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    MEMBER(trigger3DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// The stretches and their aggregation.
struct DBConvStretchCoreData
{
    BOOL                   convSameDirection;  ///< leave out a stretch against the direction of the scene
    UINT32                 convStretchCount;   ///< 1 to 10
    UINT32                 convStretchID;
    ConvTargetStretchType* convStretch;
    AECConvStretchAggType  convStretchAgg;
};
TUNING_RECORD(DBConvStretchCoreData)
    BOOLEAN(convSameDirection)
    VARIABLE(convStretch)
    MEMBER(convStretchAgg)
TUNING_RECORD_END

/// One set of stretches of the bank.
struct DBConvStretchPayload
{
    INT32                 dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*                 description;  ///< name in logs
    DBConvStretchCoreData value;
};
TUNING_RECORD(DBConvStretchPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBConvStretchType, DBConvStretchPayload)

} // namespace kirodbconvstretch
