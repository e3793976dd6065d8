/// @file
/// The flags for capture decisions that the monitors of the extension say in each frame.
#pragma once

#include <array>

#include "interface/kiroextension.h"

namespace kirosim
{

enum class MonitoredFlag
{
    Flash,
    FaceDelay,  ///< of the flash, for face detection
    LEDAssist,  ///< light for AF
    LowLight,
    ZLL,
    ZLLEnforced,
    HDR3,  ///< a snapshot of three exposures is worth it
    Count
};

constexpr size_t MonitoredFlagCount = static_cast<size_t>(MonitoredFlag::Count);

/// What a person calls them.
constexpr std::array<const CHAR*, MonitoredFlagCount> MonitoredFlagNames = {
    "flash needed", "delay of the flash for faces", "LED assist for AF", "low-light snapshot", "ZLL snapshot",
    "ZLL enforced", "three-exposure snapshot"};

/// In the order of MonitoredFlag.
inline std::array<bool, MonitoredFlagCount> MonitoredFlagsOf(const KIROExtensionOutput& rOutput)
{
    const KIROExtFlagsMonitorOutput& rFlags = rOutput.monitoredFlags;
    return {rFlags.bFlashNeeded == TRUE,
            rFlags.bFDFlashDelayNeeded == TRUE,
            rFlags.bLEDAFNeeded == TRUE,
            rFlags.bLLSNeeded == TRUE,
            rFlags.bZLLEnabled == TRUE,
            rFlags.bZLLEnforced == TRUE,
            rOutput.snapshot3HDRTriggers.bIs3HDRSnapshot == TRUE};
}

}  // namespace kirosim
