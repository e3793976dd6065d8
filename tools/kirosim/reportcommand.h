/// @file
/// kirosim report: a page from the trace of an earlier run.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace kirosim
{

struct ReportOptions
{
    std::string trace;
    std::string output;
    std::string against;  ///< trace of another run; empty for none
    std::string command;  ///< line with which a person has asked for it
};

/// Writes the page. It shows what a trace has: no pictures, events or limits.
/// @throws tuningfile::InputError for a file that cannot be read or written, with the line of a faulty trace
VOID MakeReport(const ReportOptions& rOptions);

}  // namespace kirosim
