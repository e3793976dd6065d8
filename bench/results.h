/// @file
/// What was measured, and how it is printed: as a table for people, as JSON for comparisons.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

struct BenchResult
{
    std::string           name;
    const CHAR*           pUnit;   ///< "ns", "count", "ratio", "per second"
    DOUBLE                median;  ///< or the only value
    std::optional<DOUBLE> bar;     ///< most that is allowed

    /// Without a bar there is nothing to keep.
    bool IsKept() const
    {
        return !bar || median <= *bar;
    }
};

/// @param rValues not empty; their order changes @param fraction below 1; 0.5 for the median
DOUBLE PercentileOf(std::vector<DOUBLE>& rValues, DOUBLE fraction);

VOID PrintTable(const CHAR* pTitle, const std::vector<BenchResult>& rResults);

/// System, processor and load of the machine that measures.
VOID PrintMachine();

/// Prints results, and the machine that they were measured on.
VOID PrintJson(const std::vector<BenchResult>& rResults);
