/// @file
/// What a camera is in a group, and how its module sees light of different colour.
#pragma once

#include <optional>
#include <vector>

#include "interface/aecalgoinput.h"
#include "parameters/tuningmode.h"

namespace kirosim
{

/// Sensitivity of a module under light of one colour.
struct CCTSensitivity
{
    DOUBLE CCT    = 5000.0;  ///< K
    DOUBLE factor = 1.0;     ///< of the sensor's sensitivity
};

struct CameraSetup
{
    StatsAlgoRole                           role = StatsAlgoRoleDefault;
    std::vector<TuningMode>                 modes;        ///< selectors from the first frame on; empty for Default
    std::optional<AECAlgoDCCalibrationInfo> calibration;  ///< what the factory has measured
    std::vector<CCTSensitivity>             byCCT;        ///< in ascending CCT; linear in between

    DOUBLE SensitivityAt(DOUBLE CCT) const;
};

}  // namespace kirosim
