/// @file
/// The numbers and names of a page, for its script.
#pragma once

#include <string>

#include "tools/report/page.h"

namespace report
{

/// @return JSON on one line that may stand within a script element: there is no "<" in it. What is no number is null,
/// and bytes that are no UTF-8 become the replacement character
std::string PageData(const Page& rPage);

}  // namespace report
