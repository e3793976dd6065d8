/// @file
/// Tuning module kirodbarbitrationorder: the bank of lists of controls that the host walks to arbitrate an exposure.
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
    ArbCtrlFlicker50LUT      = 6,   ///< time grid of 10 ms
    ArbCtrlFlicker60LUT      = 7,   ///< time grid of 8.333333 ms
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
    ArbCtrlMasterTime        = 20,  ///< takes the time of the master camera
    ArbCtrlSetTimeAsMaxRange = 21,
    ArbCtrlSHDRTimeRange     = 22,  ///< lets Short or Safe grow with the time that Long leaves
    ArbCtrlGainRangeShort    = 23,
    ArbCtrlGainRangeSafe     = 24,
    ArbCtrlGainRangeLong     = 25,
    ArbCtrlSnapshotEVLUT     = 26,
    ArbCtrlMatchHistory      = 27,  ///< keeps gain and time of a reference frame as far as possible
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
    ENUMERATOR(ArbCtrlTable)
    ENUMERATOR(ArbCtrlSensorRange)
    ENUMERATOR(ArbCtrlTableGainRange)
    ENUMERATOR(ArbCtrlTableTimeRange)
    ENUMERATOR(ArbCtrlEVRange)
    ENUMERATOR(ArbCtrlFPS)
    ENUMERATOR(ArbCtrlFlicker50LUT)
    ENUMERATOR(ArbCtrlFlicker60LUT)
    ENUMERATOR(ArbCtrlFlickerArbitrary)
    ENUMERATOR(ArbCtrlManualGain)
    ENUMERATOR(ArbCtrlManualISO)
    ENUMERATOR(ArbCtrlManualTime)
    ENUMERATOR(ArbCtrlManualFull)
    ENUMERATOR(ArbCtrlCustomRange)
    ENUMERATOR(ArbCtrlCustomLUT)
    ENUMERATOR(ArbCtrlGyro)
    ENUMERATOR(ArbCtrlTimeRangeShort)
    ENUMERATOR(ArbCtrlTimeRangeSafe)
    ENUMERATOR(ArbCtrlTimeRangeLong)
    ENUMERATOR(ArbCtrlFlickerMaxTime)
    ENUMERATOR(ArbCtrlMasterTime)
    ENUMERATOR(ArbCtrlSetTimeAsMaxRange)
    ENUMERATOR(ArbCtrlSHDRTimeRange)
    ENUMERATOR(ArbCtrlGainRangeShort)
    ENUMERATOR(ArbCtrlGainRangeSafe)
    ENUMERATOR(ArbCtrlGainRangeLong)
    ENUMERATOR(ArbCtrlSnapshotEVLUT)
    ENUMERATOR(ArbCtrlMatchHistory)
    ENUMERATOR(ArbCtrlAdvanced01)
    ENUMERATOR(ArbCtrlAdvanced02)
    ENUMERATOR(ArbCtrlAdvanced03)
    ENUMERATOR(ArbCtrlAdvanced04)
    ENUMERATOR(ArbCtrlAdvanced05)
    ENUMERATOR(ArbCtrlAdvanced06)
    ENUMERATOR(ArbCtrlAdvanced07)
    ENUMERATOR(ArbCtrlAdvanced08)
    ENUMERATOR(ArbCtrlAdvanced09)
    ENUMERATOR(ArbCtrlAdvanced10)
TUNING_ENUM_END

/// One control of a list.
struct OrderType
{
    ArbitrationControl controlID;
    INT32              dataID;         ///< entry of the bank that fits the control: range, LUT or table
    BOOL               enableControl;  ///< 0 skips the control
};
TUNING_RECORD(OrderType)
    MEMBER(controlID)
    MEMBER(dataID)
    BOOLEAN(enableControl)
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
    MEMBER(exposureType)
    VARIABLE(controls)
TUNING_RECORD_END

/// The lists of the three exposures.
struct ArbitrationControlOrder
{
    ArbitrationControlExposureType exposureTypes[3];  ///< in the order in which the host arbitrates them
};
TUNING_RECORD(ArbitrationControlOrder)
    MEMBER(exposureTypes)
TUNING_RECORD_END

/// One order of the bank.
struct DBArbitrationOrderPayload
{
    INT32                   dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*                   description;  ///< name in logs
    ArbitrationControlOrder value;
};
TUNING_RECORD(DBArbitrationOrderPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationOrderType, DBArbitrationOrderPayload)

} // namespace kirodbarbitrationorder
