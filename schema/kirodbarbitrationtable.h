/// @file
/// Tuning module kirodbarbitrationtable: the bank of exposure tables.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbarbitrationtable
{

/// Which quantity grows first on the way up between two knees.
enum ExposureIncPrioType : INT32
{
    AECExpIncGain = 0,
    AECExpIncTime = 1,
    AECExpIncMax  = 2
};
TUNING_ENUM(ExposureIncPrioType)
    ENUMERATOR(AECExpIncGain)
    ENUMERATOR(AECExpIncTime)
    ENUMERATOR(AECExpIncMax)
TUNING_ENUM_END

/// One knee of an exposure table.
struct ExposureKneeType
{
    ExposureIncPrioType incrementPriority;  ///< what grows first from the knee before up to this one
    float               gain;               ///< linear, 1.0 is unity
    UINT64              time;               ///< ns
};
TUNING_RECORD(ExposureKneeType)
    MEMBER(incrementPriority)
    MEMBER(gain)
    MEMBER(time)
TUNING_RECORD_END

/// Splits one exposure into gain and time along knees.
struct ExposureTableType
{
    float             correction;               ///< factor of the exposure, 1.0 is none
    UINT64            minPreviewVertBlankTime;  ///< ns
    float             firstIndex;               ///< exposure index of the first knee, steps of 3 percent
    UINT32            expKneesCount;            ///< at least 2
    UINT32            expKneesID;
    ExposureKneeType* expKnees;                 ///< in ascending exposure
};
TUNING_RECORD(ExposureTableType)
    MEMBER(correction)
    MEMBER(minPreviewVertBlankTime)
    MEMBER(firstIndex)
    VARIABLE(expKnees)
TUNING_RECORD_END

/// One exposure table of the bank.
struct DBArbitrationTablePayload
{
    INT32             dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*             description;  ///< name in logs
    ExposureTableType value;
};
TUNING_RECORD(DBArbitrationTablePayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationTableType, DBArbitrationTablePayload)

} // namespace kirodbarbitrationtable
