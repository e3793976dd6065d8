#include "tools/meaning/numbersense.h"

#include <cmath>

#include <fmt/format.h>

#include "tools/meaning/wordtext.h"

namespace meaning
{

namespace
{

using tuning::Unit;

constexpr DOUBLE NsPerUs = 1e3;
constexpr DOUBLE NsPerMs = 1e6;

/// A time in ns below this is shorter than any sensor's line: another unit is meant.
constexpr DOUBLE ShortestTime = 1000.0;

/// Which unit a number was probably written in.
std::string OtherUnit(const tuning::Words& rWords, DOUBLE value)
{
    if (rWords.unit == Unit::Share && value > 1.0 && value <= 100.0)
    {
        return fmt::format("{} percent are {}", NumberText(value), NumberText(value / 100.0));
    }
    if (rWords.unit == Unit::Percent && value > 0.0 && value < 1.0)
    {
        return fmt::format("a share of {} is {} percent", NumberText(value), NumberText(value * 100.0));
    }
    return "";
}

bool IsTime(Unit unit)
{
    return unit == Unit::Nanoseconds || unit == Unit::GainTimesNs;
}

std::optional<NumberFault> ShortTimeFault(const tuning::Words& rWords, DOUBLE value)
{
    if (!IsTime(rWords.unit) || value <= 0.0 || value >= ShortestTime)
    {
        return std::nullopt;
    }
    return NumberFault{false, fmt::format("at least {} ({})", NumberText(ShortestTime), UnitText(rWords.unit)),
                       fmt::format("{0} ms are {1:.0f} ns, {0} us are {2:.0f} ns", NumberText(value), value * NsPerMs,
                                   value * NsPerUs)};
}

}  // namespace

std::optional<NumberFault> FaultOf(const tuning::Words& rWords, DOUBLE value)
{
    if (!rWords.range.IsGiven())
    {
        return std::nullopt;
    }
    if (std::isnan(value))
    {
        return NumberFault{false, ExpectedText(rWords.range, rWords.unit), "it is not a number"};
    }
    if (rWords.range.Holds(value))
    {
        return ShortTimeFault(rWords, value);
    }
    const bool isOdd = rWords.odd.IsGiven() && rWords.odd.Holds(value);
    return NumberFault{isOdd, ExpectedText(rWords.range, rWords.unit), OtherUnit(rWords, value)};
}

std::optional<NumberFault> CountFaultOf(const tuning::Words& rWords, size_t count)
{
    if (!rWords.entries.IsGiven() || rWords.entries.Holds(static_cast<DOUBLE>(count)))
    {
        return std::nullopt;
    }
    return NumberFault{false, RangeText(rWords.entries) + " entries", ""};
}

}  // namespace meaning
