/// @file
/// Tuning module kirodbarbitrationorder.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbarbitrationorder
{

/// What a control of the order list is for. Most differ by their tuning only.
enum ArbitrationControl : INT32
{
    ArbCtrlTable             = 0,
    ArbCtrlSensorRange       = 1,
    ArbCtrlTableGainRange    = 2,
    ArbCtrlTableTimeRange    = 3,
    ArbCtrlEVRange           = 4,
    ArbCtrlFPS               = 5,
    ArbCtrlFlicker50LUT      = 6,
    ArbCtrlFlicker60LUT      = 7,
    ArbCtrlFlickerArbitrary  = 8,
    ArbCtrlManualGain        = 9,
    ArbCtrlManualISO         = 10,
    ArbCtrlManualTime        = 11,
    ArbCtrlManualFull        = 12,
    ArbCtrlCustomRange       = 13,
    ArbCtrlCustomLUT         = 14,
    ArbCtrlGyro              = 15,
    ArbCtrlTimeRangeShort    = 16,
    ArbCtrlTimeRangeSafe     = 17,
    ArbCtrlTimeRangeLong     = 18,
    ArbCtrlFlickerMaxTime    = 19,
    ArbCtrlMasterTime        = 20,
    ArbCtrlSetTimeAsMaxRange = 21,
    ArbCtrlSHDRTimeRange     = 22,
    ArbCtrlGainRangeShort    = 23,
    ArbCtrlGainRangeSafe     = 24,
    ArbCtrlGainRangeLong     = 25,
    ArbCtrlSnapshotEVLUT     = 26,
    ArbCtrlMatchHistory      = 27,
    ArbCtrlAdvanced01        = 28,
    ArbCtrlAdvanced02        = 29,
    ArbCtrlAdvanced03        = 30,
    ArbCtrlAdvanced04        = 31,
    ArbCtrlAdvanced05        = 32,
    ArbCtrlAdvanced06        = 33,
    ArbCtrlAdvanced07        = 34,
    ArbCtrlAdvanced08        = 35,
    ArbCtrlAdvanced09        = 36,
    ArbCtrlAdvanced10        = 37
};
TUNING_ENUM(ArbitrationControl)
    ENUMERATOR(ArbCtrlTable,
        "Splits the exposure into gain and time along the knees of an exposure table, within the limits so far, and "
        "makes it the table of later index ranges.",
        Unit::None, ReadsBank(BankIDArbitrationTable).Unless(0))
    ENUMERATOR(ArbCtrlSensorRange,
        "A range, meant for the limits of the sensor; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlTableGainRange,
        "A range, meant for the gains of a table; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlTableTimeRange,
        "A range, meant for the times of a table; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlEVRange,
        "A range, meant for EV compensation; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlFPS,
        "A time range whose upper bound the host sets to the time of a frame at the lowest frame rate, or to the "
        "sensor's longest; the tuned bounds are replaced.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlFlicker50LUT,
        "A LUT that takes time to whole periods of 10 ms; where its time does not fit, the next shorter or longer "
        "number of periods is tried. The host applies it while protecting against 50 Hz.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlFlicker60LUT,
        "A LUT that takes time to whole periods of 8.333333 ms; where its time does not fit, the next shorter or "
        "longer number of periods is tried. The host applies it while protecting against 60 Hz.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlFlickerArbitrary,
        "A LUT for flicker of any other period; does what its tuning says, without trying neighbouring periods.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlManualGain,
        "A gain range both of whose bounds the host sets to the manual gain; applies while gain is manual.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlManualISO,
        "A gain range both of whose bounds the host sets to a hundredth of the manual ISO; applies while ISO is "
        "manual.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlManualTime,
        "A time range both of whose bounds the host sets to the manual time; applies while time is manual.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlManualFull,
        "A range that does what its tuning says; applies while gain and time are both manual.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlCustomRange,
        "A range that does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlCustomLUT,
        "A LUT that does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlGyro,
        "A LUT, meant to shorten time as the camera shakes; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlTimeRangeShort,
        "A range, meant for the time of Short; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlTimeRangeSafe,
        "A range, meant for the time of Safe; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlTimeRangeLong,
        "A range, meant for the time of Long; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlFlickerMaxTime,
        "A range, meant for the longest time without bands; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlMasterTime,
        "A time range both of whose values become the master camera's time, so its bounds must be absolute. Applies "
        "in a slave that follows exposures with enableExposureTimeMatch on.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlSetTimeAsMaxRange,
        "A range, meant to keep the time so far as the longest; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlSHDRTimeRange,
        "A time range of Short or Safe that lets its upper bound so far grow by the time that Long leaves of its "
        "range, at most to the tuned one, which must be absolute. The host applies it in staggered and multiframe "
        "HDR.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlGainRangeShort,
        "A range, meant for the gain of Short; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlGainRangeSafe,
        "A range, meant for the gain of Safe; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlGainRangeLong,
        "A range, meant for the gain of Long; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlSnapshotEVLUT,
        "A LUT, meant for the EV of pictures; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationLUT).Unless(0))
    ENUMERATOR(ArbCtrlMatchHistory,
        "Keeps gain and time of a reference of kiroarbitration as far as the exposure allows; its data ID names the "
        "reference, not a bank entry.",
        Unit::None, Reads(Thing::HistoryReference))
    ENUMERATOR(ArbCtrlAdvanced01,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced02,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced03,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced04,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced05,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced06,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced07,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced08,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced09,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
    ENUMERATOR(ArbCtrlAdvanced10,
        "A range for any further use; does what its tuning says.",
        Unit::None, ReadsBank(BankIDArbitrationRange).Unless(0))
TUNING_ENUM_END

/// One control of a list.
struct OrderType
{
    ArbitrationControl controlID;
    INT32              dataID;
    BOOL               enableControl;
};
TUNING_RECORD(OrderType)
    MEMBER(controlID,
        .meaning = "What the control is for, which tells the bank of its tuning and whether it applies in the present "
                   "settings; most differ by their tuning only.",
        .refers = {Reads(Thing::Control)}, .when = "enableControl")
    MEMBER(dataID,
        .meaning = "Entry of the control's range, LUT or table bank, 0 for the one that the context selects; for "
                   "ArbCtrlMatchHistory the dataID of a reference of kiroarbitration. A control without its entry "
                   "does not apply.",
        .unit = Unit::ID, .range = AtLeast(0), .odd = Any,
        .refers = {ReadsBank(BankIDArbitrationRange, BankIDArbitrationLUT, BankIDArbitrationTable).Unless(0),
                   Reads(Thing::HistoryReference).Unless(0)},
        .when = "enableControl")
    BOOLEAN(enableControl,
        .meaning = "Switched off, the control is skipped.",
        .start = "true")
TUNING_RECORD_END

/// The controls of one exposure, applied in order.
struct ArbitrationControlExposureType
{
    KIROExposureSelection exposureType;
    UINT32                controlsCount;
    UINT32                controlsID;
    OrderType*            controls;
};
TUNING_RECORD(ArbitrationControlExposureType)
    MEMBER(exposureType,
        .meaning = "Exposure that the list is for; ExposureNone switches the list off.")
    VARIABLE(controls,
        .meaning = "Controls in the order in which they are applied, each to the exposure and the limits that those "
                   "before it have left. Without any the sensor alone limits the exposure, which is not split.",
        .entries = AtLeast(1), .when = "exposureType=ExposureShort|ExposureSafe|ExposureLong")
TUNING_RECORD_END

/// The lists of the three exposures.
struct ArbitrationControlOrder
{
    ArbitrationControlExposureType exposureTypes[3];
};
TUNING_RECORD(ArbitrationControlOrder)
    MEMBER(exposureTypes,
        .meaning = "Lists of the three exposures in the order in which they are arbitrated, one for each; Long comes "
                   "before an exposure that uses ArbCtrlSHDRTimeRange.")
TUNING_RECORD_END

/// One order of the bank.
struct DBArbitrationOrderPayload
{
    INT32                   dataID;
    CHAR*                   description;
    ArbitrationControlOrder value;
};
TUNING_RECORD(DBArbitrationOrderPayload)
    MEMBER(dataID,
        .meaning = "Number by which priorities and hosts select this order, from 1; an entry numbered 0 can only be "
                   "the fallback as the last of the bank.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDArbitrationOrder)})
    MEMBER(description,
        .meaning = "Name of the order for the reader of the tuning; read by no stage.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "Lists of controls that limit and split the three exposures.")
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationOrderType, DBArbitrationOrderPayload,
    "The bank of lists of controls that the host walks to arbitrate an exposure.",
    .meaning = "Orders, at most 1000; the last one is the fallback. Without any, nothing is arbitrated.",
    .entries = {1, 1000})

} // namespace kirodbarbitrationorder
