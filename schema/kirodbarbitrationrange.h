/// @file
/// Tuning module kirodbarbitrationrange.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbarbitrationrange
{

/// What a range limits.
enum ArbExposureQuantity : INT32
{
    ArbQuantityGain  = 0,
    ArbQuantityTime  = 1,
    ArbQuantityIndex = 2
};
TUNING_ENUM(ArbExposureQuantity)
    ENUMERATOR(ArbQuantityGain, "Gain, linear.")
    ENUMERATOR(ArbQuantityTime, "Time in ns.")
    ENUMERATOR(ArbQuantityIndex,
        "Exposure index in log steps of 3 percent, split along the table that the list has used last; needs such a "
        "table. As a quantity of compensation it has no effect.")
TUNING_ENUM_END

/// How a bound follows from the present one.
enum ArbRangeAdjustType : INT32
{
    ArbRangeAbsolute       = 0,
    ArbRangeRelativeFactor = 1,
    ArbRangeRelativeOffset = 2,
    ArbRangeInvalid        = 3
};
TUNING_ENUM(ArbRangeAdjustType)
    ENUMERATOR(ArbRangeAbsolute,
        "The value replaces the bound, even where that widens a gain or time range that earlier controls have "
        "narrowed.")
    ENUMERATOR(ArbRangeRelativeFactor,
        "The value multiplies the bound; for a time only its whole part does, so that a factor below 1 yields 0 and "
        "the control does not apply.")
    ENUMERATOR(ArbRangeRelativeOffset,
        "The value is added to the bound; for a time its whole part is, and a negative one counts as 0.")
    ENUMERATOR(ArbRangeInvalid, "The bound stays.")
TUNING_ENUM_END

/// What gives way when an exposure does not fit into gain and time range together.
enum RangeConflictHandlingType : INT32
{
    ModifyTimeRange = 0,
    ModifyGainRange = 1,
    ForceExposure   = 2,
    Discard         = 3,
    Ignore          = 4
};
TUNING_ENUM(RangeConflictHandlingType)
    ENUMERATOR(ModifyTimeRange,
        "The time range widens until the exposure is kept; where the sensor's times do not reach that far, the "
        "control does not apply.")
    ENUMERATOR(ModifyGainRange,
        "The gain range widens until the exposure is kept, upwards without limit; where that needs less than the "
        "sensor's lowest gain, the control does not apply.")
    ENUMERATOR(ForceExposure, "Gain and time are clamped to their ranges, and the exposure changes.")
    ENUMERATOR(Discard, "The control does not apply.")
    ENUMERATOR(Ignore,
        "The new range applies, with the time moved into it and a gain that stays outside, so that the exposure is "
        "kept.")
TUNING_ENUM_END

/// One bound of a range.
struct RangePoint
{
    float              val;
    ArbRangeAdjustType adj;
};
TUNING_RECORD(RangePoint)
    MEMBER(val,
        .meaning = "What the bound is replaced with, multiplied by, or moved by: linear gain, ns or log steps by the "
                   "range's quantity, or a factor. For a time only the whole part counts, as a factor too, and a "
                   "negative value counts as 0.",
        .unit = Unit::Varies, .range = Any, .start = "1.0",
        .when = "adj=ArbRangeAbsolute|ArbRangeRelativeFactor|ArbRangeRelativeOffset")
    MEMBER(adj,
        .meaning = "Selects how the bound follows from the present one: replaced, multiplied, moved, or left.",
        .start = "ArbRangeRelativeFactor")
TUNING_RECORD_END

/// Moves another quantity so that the range keeps its exposures.
struct RangeCompensationType
{
    BOOL                enableCompensation;
    ArbExposureQuantity compensationQuantity;
};
TUNING_RECORD(RangeCompensationType)
    BOOLEAN(enableCompensation,
        .meaning = "Switched on, the range of the other quantity moves the opposite way, time within the sensor's "
                   "limits and gain not below its lowest, so that the range reaches the same exposures as before.",
        .start = "false")
    MEMBER(compensationQuantity,
        .meaning = "Quantity that the range has changed, thus the same as the range's own: with time the gain range "
                   "makes up for it, with gain the time range does, with the index neither.",
        .when = "enableCompensation")
TUNING_RECORD_END

/// Fits the exposure into the new range.
struct RangeArbitrationType
{
    BOOL                      enableArbitration;
    RangeConflictHandlingType conflictHandling;
};
TUNING_RECORD(RangeArbitrationType)
    BOOLEAN(enableArbitration,
        .meaning = "Switched on, the exposure so far is split anew to fit the new range; off, only the range changes, "
                   "and fitting is left to later controls.",
        .start = "false")
    MEMBER(conflictHandling,
        .meaning = "Selects what gives way when the exposure fits neither by gain nor by time; read with "
                   "enableArbitration.",
        .when = "enableArbitration")
TUNING_RECORD_END

/// What happens once the bounds are set.
struct RangeHandlingType
{
    RangeCompensationType compensation;
    RangeArbitrationType  arbitration;
};
TUNING_RECORD(RangeHandlingType)
    MEMBER(compensation,
        .meaning = "Whether another quantity's range makes up for the change of this one.")
    MEMBER(arbitration,
        .meaning = "Whether the exposure is fitted into the new range at once.")
TUNING_RECORD_END

/// A control that narrows one quantity.
struct RangeType
{
    ArbExposureQuantity quantity;
    RangePoint          start;
    RangePoint          end;
    RangeHandlingType   handling;
};
TUNING_RECORD(RangeType)
    MEMBER(quantity,
        .meaning = "Quantity that the control limits; time for controls of frame rate, manual time, master time and "
                   "SHDR time, gain for those of manual gain and ISO.")
    MEMBER(start,
        .meaning = "Lower bound, not above the upper one nor below the sensor's, or the control does not apply; an "
                   "index bound must lie within the limits so far.")
    MEMBER(end,
        .meaning = "Upper bound; a time above the sensor's longest, or an index above the limits so far, keeps the "
                   "control from applying, a gain above the sensor's highest does not.")
    MEMBER(handling,
        .meaning = "What happens once the bounds are set.")
TUNING_RECORD_END

/// One range of the bank.
struct DBArbitrationRangePayload
{
    INT32     dataID;
    CHAR*     description;
    RangeType value;
};
TUNING_RECORD(DBArbitrationRangePayload)
    MEMBER(dataID,
        .meaning = "Number by which a control of the order names this range, from 1; of equal ones the last applies. "
                   "Range 17 is the one that a precision flash narrows to what LED and rolling shutter need, so its "
                   "bounds are absolute times.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDArbitrationRange)})
    MEMBER(description,
        .meaning = "Name of the range in logs.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "The quantity and its bounds.")
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationRangeType, DBArbitrationRangePayload,
    "The bank of controls that narrow gain, time or exposure.",
    .meaning = "Ranges that controls of the order can name, at most 1000. A host replaces those of frame rate and "
               "manual settings by copies of its own, which live edits do not reach.",
    .entries = {0, 1000})

} // namespace kirodbarbitrationrange
