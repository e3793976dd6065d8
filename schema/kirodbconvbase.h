/// @file
/// Tuning module kirodbconvbase: the bank of convergence speeds. Differences of exposure are in steps of 3 percent.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvbase
{

/// What caps the move of a frame.
enum AECConvCappingType : INT32
{
    CappingTypeRatio       = 0,  ///< baseCapping times the distance of the target from the measured frame
    CappingTypeAbsolute    = 1,  ///< baseCapping itself
    CappingTypeSystemDelay = 2,  ///< that distance over the frames of pipeline delay
    CappingTypeMax         = 3
};
TUNING_ENUM(AECConvCappingType)
    ENUMERATOR(CappingTypeRatio)
    ENUMERATOR(CappingTypeAbsolute)
    ENUMERATOR(CappingTypeSystemDelay)
    ENUMERATOR(CappingTypeMax)
TUNING_ENUM_END

/// The speeds of a zone.
struct ConvBaseCoreDataType
{
    float baseSpeed;    ///< share of the distance from the previous frame to the target that one frame covers, 0 to 1
    float baseCapping;  ///< factor or steps, by the capping type
    float drcSpeed;     ///< share of the change of a DRC gain that one frame covers, 0 to 1
};
TUNING_RECORD(ConvBaseCoreDataType)
    MEMBER(baseSpeed)
    MEMBER(baseCapping)
    MEMBER(drcSpeed)
TUNING_RECORD_END

/// Zone of the third trigger.
LEAF_ZONE(ConvBaseLevel3DataType, ConvBaseCoreDataType, triggerData)

/// Zone of the second trigger.
INNER_ZONE(ConvBaseLevel2DataType, ConvBaseLevel3DataType, trigger3Data)

/// Zone of the first trigger.
INNER_ZONE(ConvBaseLevel1DataType, ConvBaseLevel2DataType, trigger2Data)

/// How the Safe exposure moves to its target.
struct DBConvBaseCoreData
{
    BOOL                    convSameDirection;  ///< hold when the frames in flight will reach the target unaided
    UINT32                  tolerance;          ///< a settled exposure rests within so many steps of 3 percent
    AECConvCappingType      cappingType;
    DataBankType            trigger1DataBank;
    DataBankType            trigger2DataBank;
    DataBankType            trigger3DataBank;
    UINT32                  trigger1DataCount;  ///< at least 1
    UINT32                  trigger1DataID;
    ConvBaseLevel1DataType* trigger1Data;       ///< in ascending trigger
};
TUNING_RECORD(DBConvBaseCoreData)
    BOOLEAN(convSameDirection)
    MEMBER(tolerance)
    MEMBER(cappingType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    MEMBER(trigger3DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// One set of speeds of the bank.
struct DBConvBasePayload
{
    INT32              dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*              description;  ///< name in logs
    DBConvBaseCoreData value;
};
TUNING_RECORD(DBConvBasePayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBConvBaseType, DBConvBasePayload)

} // namespace kirodbconvbase
