/// @file
/// Tuning module kirodbarbitrationrange: the bank of controls that narrow gain, time or exposure.
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
    ENUMERATOR(ArbQuantityGain)
    ENUMERATOR(ArbQuantityTime)
    ENUMERATOR(ArbQuantityIndex)
TUNING_ENUM_END

/// How a bound follows from the present one.
enum ArbRangeAdjustType : INT32
{
    ArbRangeAbsolute       = 0,  ///< the value replaces the bound
    ArbRangeRelativeFactor = 1,  ///< the value multiplies the bound
    ArbRangeRelativeOffset = 2,  ///< the value is added to the bound
    ArbRangeInvalid        = 3   ///< the bound stays
};
TUNING_ENUM(ArbRangeAdjustType)
    ENUMERATOR(ArbRangeAbsolute)
    ENUMERATOR(ArbRangeRelativeFactor)
    ENUMERATOR(ArbRangeRelativeOffset)
    ENUMERATOR(ArbRangeInvalid)
TUNING_ENUM_END

/// What gives way when an exposure does not fit into gain and time range together.
enum RangeConflictHandlingType : INT32
{
    ModifyTimeRange = 0,  ///< the time range widens, the exposure is kept
    ModifyGainRange = 1,  ///< the gain range widens, the exposure is kept
    ForceExposure   = 2,  ///< gain and time are clamped, the exposure changes
    Discard         = 3,  ///< the control does not apply
    Ignore          = 4   ///< the exposure stays out of range
};
TUNING_ENUM(RangeConflictHandlingType)
    ENUMERATOR(ModifyTimeRange)
    ENUMERATOR(ModifyGainRange)
    ENUMERATOR(ForceExposure)
    ENUMERATOR(Discard)
    ENUMERATOR(Ignore)
TUNING_ENUM_END

/// One bound of a range.
struct RangePoint
{
    float              val;  ///< linear gain, ns or index steps; a time is cut to whole ns, as a factor too
    ArbRangeAdjustType adj;
};
TUNING_RECORD(RangePoint)
    MEMBER(val)
    MEMBER(adj)
TUNING_RECORD_END

/// Moves another quantity so that the range keeps its exposures.
struct RangeCompensationType
{
    BOOL                enableCompensation;
    ArbExposureQuantity compensationQuantity;  ///< the quantity that the range has changed: time or gain
};
TUNING_RECORD(RangeCompensationType)
    BOOLEAN(enableCompensation)
    MEMBER(compensationQuantity)
TUNING_RECORD_END

/// Fits the exposure into the new range.
struct RangeArbitrationType
{
    BOOL                      enableArbitration;
    RangeConflictHandlingType conflictHandling;
};
TUNING_RECORD(RangeArbitrationType)
    BOOLEAN(enableArbitration)
    MEMBER(conflictHandling)
TUNING_RECORD_END

/// What happens once the bounds are set.
struct RangeHandlingType
{
    RangeCompensationType compensation;
    RangeArbitrationType  arbitration;
};
TUNING_RECORD(RangeHandlingType)
    MEMBER(compensation)
    MEMBER(arbitration)
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
    MEMBER(quantity)
    MEMBER(start)
    MEMBER(end)
    MEMBER(handling)
TUNING_RECORD_END

/// One range of the bank.
struct DBArbitrationRangePayload
{
    INT32     dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*     description;  ///< name in logs
    RangeType value;
};
TUNING_RECORD(DBArbitrationRangePayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationRangeType, DBArbitrationRangePayload)

} // namespace kirodbarbitrationrange
