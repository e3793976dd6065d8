/// @file
/// The costs that the library has to keep, and how a run of the benchmarks compares with them.
#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

#include "bench/results.h"
#include "tools/program/progress.h"

/// Names of the benchmarks, as bars refer to them.
namespace benchname
{

constexpr const CHAR* HeavyFrame      = "frame/heavy";
constexpr const CHAR* EverythingFrame = "frame/everything_on";
constexpr const CHAR* HeavyFloor      = "frame/heavy_floor";
constexpr const CHAR* LightFrame      = "frame/light";
constexpr const CHAR* LeastFrame      = "frame/least";
constexpr const CHAR* GetModuleBuffer = "store/get_module_buffer";
constexpr const CHAR* GetModuleFile   = "store/get_module_file";
constexpr const CHAR* GetMemberText   = "store/text_get_one_member";
constexpr const CHAR* GetModuleText   = "store/text_get_all_members";
constexpr const CHAR* SetMemberText   = "store/text_set_member";
constexpr const CHAR* ModuleInfo      = "store/text_get_info";
constexpr const CHAR* TriggerTree     = "core/trigger_three_levels";
constexpr const CHAR* LoadPhoneBuffer = "store/load_phone_buffer";
constexpr const CHAR* LoadPhoneFile   = "store/load_phone_file";
constexpr const CHAR* LoadLargeBuffer = "store/load_33_modules_40_modes_buffer";
constexpr const CHAR* LoadLargeFile   = "store/load_33_modules_40_modes_file";

}  // namespace benchname

/// Keeps the median of each benchmark, CPU time in ns.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    /// @param isShown   whether results are printed as they come
    /// @param rProgress makes room for them
    MedianReporter(bool isShown, program::Progress& rProgress);

    bool ReportContext(const Context& rContext) override;
    void ReportRuns(const std::vector<Run>& rRuns) override;

    const std::map<std::string, DOUBLE>& Medians() const
    {
        return m_medians;
    }

    /// What went wrong in benchmarks, one line each.
    const std::vector<std::string>& Errors() const
    {
        return m_errors;
    }

private:
    const bool                    m_isShown;
    program::Progress&            m_rProgress;
    std::map<std::string, DOUBLE> m_medians;
    std::vector<std::string>      m_errors;
};

/// @param rMedians as MedianReporter has them
/// @return those with a bar first
std::vector<BenchResult> CompareWithBars(const std::map<std::string, DOUBLE>& rMedians);
