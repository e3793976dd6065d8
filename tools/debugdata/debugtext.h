/// @file
/// Debug records as text for a person.
#pragma once

#include <string>
#include <string_view>

#include "interface/aecdebugdata.h"

namespace debugdata
{

/// One line, ended by a newline: frame, exposures, luma, lux index, settled.
std::string FormatLine(const AECDebugData& rRecord);

/// The whole record, part by part. Parts that hold nothing are named as empty or left out.
std::string FormatRecord(const AECDebugData& rRecord);

// Parts of it.
std::string FormatMetering(const AECDebugDataMeteringType& rMetering);

/// A name up to its end or to the end of its room; what a terminal could stumble over becomes '?'.
std::string NameOf(const CHAR (&rName)[AECDebugNameLength]);

constexpr UINT32 ExposureCount = 3;

/// "short" and so on, by AECAlgoExposureType.
std::string_view ExposureName(UINT32 type);

}  // namespace debugdata
