/// @file
/// Bytes within a page.
#pragma once

#include <span>
#include <string>

#include "platform/tavotypes.h"

namespace report
{

/// @return such as "data:image/png;base64,iVBO..."
std::string DataUri(const CHAR* pType, std::span<const BYTE> bytes);

}  // namespace report
