/// @file
/// Tuning module kirodbarbitrationtable.
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
    ENUMERATOR(AECExpIncGain, "On the way up gain grows first, and time once gain has reached that of the upper knee.")
    ENUMERATOR(AECExpIncTime, "On the way up time grows first, and gain once time has reached that of the upper knee.")
    ENUMERATOR(AECExpIncMax, "Number of priorities; acts like AECExpIncTime.")
TUNING_ENUM_END

/// One knee of an exposure table.
struct ExposureKneeType
{
    ExposureIncPrioType incrementPriority;
    float               gain;
    UINT64              time;
};
TUNING_RECORD(ExposureKneeType)
    MEMBER(incrementPriority,
        .meaning = "Selects whether gain or time grows first from the knee before up to this one. That of the first "
                   "knee counts from the lower limits up to it, that of the last also from it up to the upper limits.",
        .start = "AECExpIncTime")
    MEMBER(gain,
        .meaning = "Gain at the knee; a knee with twice the gain and half the time is reached at the same exposure, "
                   "with more noise and less blur.",
        .unit = Unit::Gain, .range = AtLeast(1), .odd = Above(0), .start = "1.0")
    MEMBER(time,
        .meaning = "Time at the knee; a knee with twice the time and half the gain is reached at the same exposure, "
                   "with less noise and more blur.",
        .unit = Unit::Nanoseconds, .range = AtLeast(1), .start = "33333333")
TUNING_RECORD_END

/// Splits one exposure into gain and time along knees.
struct ExposureTableType
{
    float             correction;
    UINT64            minPreviewVertBlankTime;
    float             firstIndex;
    UINT32            expKneesCount;
    UINT32            expKneesID;
    ExposureKneeType* expKnees;
};
TUNING_RECORD(ExposureTableType)
    MEMBER(correction,
        .meaning = "Factor that the exposure holds besides gain and time, for a sensor that is more sensitive than "
                   "another: doubled, the product of gain and time is halved. A later range that splits the exposure "
                   "anew leaves it out.",
        .unit = Unit::Factor, .range = Above(0), .start = "1.0")
    MEMBER(minPreviewVertBlankTime,
        .meaning = "Least vertical blanking in a preview; read by no stage.",
        .unit = Unit::Nanoseconds, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(firstIndex,
        .meaning = "Exposure index of the first knee; read by no stage.",
        .unit = Unit::LogStep, .range = Any, .acts = Acts::Never)
    VARIABLE(expKnees,
        .meaning = "Knees in ascending exposure, along which the exposure is split; below the first and above the "
                   "last the split goes on to the limits so far. A table with fewer than two does not apply.",
        .entries = AtLeast(2))
TUNING_RECORD_END

/// One exposure table of the bank.
struct DBArbitrationTablePayload
{
    INT32             dataID;
    CHAR*             description;
    ExposureTableType value;
};
TUNING_RECORD(DBArbitrationTablePayload)
    MEMBER(dataID,
        .meaning = "Number by which a control of the order, or a reference of kiroarbitration, names this table, from "
                   "1; of equal ones the last applies.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDArbitrationTable)})
    MEMBER(description,
        .meaning = "Name of the table in logs.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "Knees and correction of the table.")
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationTableType, DBArbitrationTablePayload,
    "The bank of exposure tables.",
    .meaning = "Exposure tables that controls of the order can name, at most 1000. Without any the exposure is not "
               "split by a table.",
    .entries = {0, 1000})

} // namespace kirodbarbitrationtable
