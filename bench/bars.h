/// @file
/// The costs that the library has to keep, and how a run of the benchmarks compares with them.
#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

/// Names of the benchmarks, as bars refer to them.
namespace benchname
{

constexpr const CHAR* HeavyFrame      = "frame/heavy";
constexpr const CHAR* EverythingFrame = "frame/everything_on";
constexpr const CHAR* HeavyFloor      = "frame/heavy_floor";
constexpr const CHAR* LightFrame      = "frame/light";
constexpr const CHAR* GetModuleBuffer = "store/get_module_buffer";
constexpr const CHAR* GetModuleFile   = "store/get_module_file";
constexpr const CHAR* TriggerTree     = "core/trigger_three_levels";
constexpr const CHAR* LoadPhoneBuffer = "store/load_phone_buffer";
constexpr const CHAR* LoadPhoneFile   = "store/load_phone_file";
constexpr const CHAR* LoadLargeBuffer = "store/load_33_modules_40_modes_buffer";
constexpr const CHAR* LoadLargeFile   = "store/load_33_modules_40_modes_file";

}  // namespace benchname

/// Shows results as they come and keeps the median of each benchmark, CPU time in ns.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter();

    void ReportRuns(const std::vector<Run>& rRuns) override;

    const std::map<std::string, DOUBLE>& Medians() const
    {
        return m_medians;
    }

private:
    std::map<std::string, DOUBLE> m_medians;
};

/// Prints one line per bar whose benchmarks have run.
VOID PrintBars(const std::map<std::string, DOUBLE>& rMedians);
