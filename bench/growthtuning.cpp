#include "bench/growthtuning.h"

#include <fmt/format.h>
#include <string>

#include "bench/everythingtuning.h"
#include "bench/exampletuning.h"
#include "bench/framerig.h"
#include "tools/tuningfile/files.h"

namespace
{

constexpr UINT32 FirstCalculatorID = 10;

/// What the modules below refer to.
constexpr const CHAR* GrowthHead = R"(
tuning: {createdBy: kirotune, binaryTag: growth}
x-everywhere: &everywhere {start: 0, end: 1}
x-lux: &lux {bankID: BankIDTriggers, dataID: 8}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
x-average: &average {selection: DataBankMethod, dataBank: {bankID: BankIDStatsCalculator, dataID: 1}}
x-grey: &grey
  selection: TriggerSystemMethod
  triggerSystem:
    trigger1Data:
      - {trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: {rangeStart: 46.0, rangeEnd: 46.0}}]}
modes:
  Default:
    modules:
)";

std::string GrowthCalculators(UINT32 count, UINT32 channels)
{
    const auto calculator = [channels](UINT32 index, UINT32 id, UINT32 output, UINT32 table)
    {
        return fmt::format("{{calculatorID: {0}, description: Mean{0}, APISelection: API01GridWeightedAverage, "
                           "statsSelection: {{channel1: {3}}}, outputStorage: {{start: {1}, end: {1}}}, "
                           "generalParameters: {{weightTable2D: {2}}}}}\n",
                           id, output, table, LightFrame::ChannelNames[index % channels]);
    };
    std::string list;
    std::string ids;
    std::string tables = "          - {dataID: 1, description: Uniform, weights: {fill: 1.0}}\n";
    for (UINT32 index = 1; index < count; ++index)
    {
        list += "          - " + calculator(index, FirstCalculatorID + index, FirstCalculatorID + index, 1 + index);
        ids += fmt::format("{}{}", ids.empty() ? "" : ", ", FirstCalculatorID + index);
        tables += fmt::format("          - {{dataID: {}, description: Table, weights: {{fill: {:.3f}}}}}\n", 1 + index,
                              1.0 + index / 128.0);
    }
    return "      kirometeringstatscalculator:\n        averageStatsCalculator: " + calculator(0, 1, 1, 1) +
           "        centerWeightedStatsCalculator: {outputStorage: {start: 2, end: 2}}\n"
           "        darkRatioStatsCalculator: {outputStorage: {start: 3, end: 3}}\n"
           "        brightRatioStatsCalculator: {outputStorage: {start: 4, end: 4}}\n" +
           (list.empty() ? list : "        statsCalculators:\n" + list) +
           "      kirodbactivecalculators:\n        dataBank: {bankID: BankIDActiveCalculators}\n"
           "        data: [{dataID: 1, description: All, calculatorID: [" +
           ids + "]}]\n      kirodb2dmeterweight:\n        dataBank: {bankID: BankIDMetering2D}\n        data:\n" +
           tables;
}

std::string GrowthAnalyzers(UINT32 count)
{
    const auto part = [](const CHAR* pName, const CHAR* pValue, UINT32 output)
    {
        return fmt::format("{0}: {{calculators: [{{value: {1}, weight: *one}}], aggregator: {{method: Average, output: "
                           "{{dataBank: {{bankID: BankIDSceneAnalyzer, dataID: {2}}}, description: {0}}}}}}}",
                           pName, pValue, output);
    };
    const auto analyzer = [&part](UINT32 id, UINT32 output, UINT32 algorithm)
    {
        return fmt::format("{{analyzerID: {}, analyzerName: Analyzer, exposureType: ExposureSafe, refExposureType: "
                           "ExposureSafe,\n            {},\n            {},\n            {},\n            "
                           "reservedParameter: [{}]}}\n",
                           id, part("luma", "*average", output), part("target", "*grey", output + 1),
                           part("confidence", "*one", output + 2), algorithm);
    };
    std::string list;
    std::string ids;
    for (UINT32 id = 0; id < count; ++id)
    {
        list += "          - " + analyzer(id, 10 + 3 * id, 0);
        ids += fmt::format("{}{}", ids.empty() ? "" : ", ", id);
    }
    return "      kirometeringsceneanalyzer:\n        luxAnalyzer: " + analyzer(0, 1, 1) + "        analyzers:\n" +
           list +
           "      kirodbactiveanalyzers:\n        dataBank: {bankID: BankIDActiveAnalyzers}\n"
           "        data: [{dataID: 1, description: All, analyzerID: [" +
           ids + "]}]\n";
}

/// Each mode has its own module of few values, and takes all others from Default.
VOID AddModes(tuningfile::ModeTable& rTable, UINT32 count)
{
    const std::vector<tuningfile::Module> own(1, rTable.modes.at(0).modules.at(0));
    for (UINT32 level = 1; level < count; ++level)
    {
        tuningfile::Mode mode{};
        mode.mode    = static_cast<UINT16>(level);
        mode.parent  = level - 1;
        mode.modules = own;
        rTable.modes.push_back(std::move(mode));
    }
}

}  // namespace

UINT32 GrowthGridWidth(const GrowthTuning& rTuning)
{
    constexpr UINT32 smallGrid = 256;
    return (rTuning.regions <= smallGrid) ? 16 : (rTuning.regions <= 4 * smallGrid) ? 32 : 64;
}

std::vector<BYTE> CompileGrowth(const GrowthTuning& rTuning)
{
    const std::string text = GrowthHead + GrowthCalculators(rTuning.calculators, rTuning.channels) +
                             GrowthAnalyzers(rTuning.analyzers) +
                             (rTuning.detectors > 0 ? everythingtuning::DetectorsText(rTuning.detectors) : "");
    tuningfile::Tuning tuning = exampletuning::With("minimal.yaml", text, "growth tuning");
    AddModes(tuning.tables.at(0), rTuning.modes);
    return tuningfile::WriteBinary(tuning, tuningfile::NewestVersion);
}
