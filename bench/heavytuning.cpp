#include "bench/heavytuning.h"

#include <fmt/format.h>
#include <iterator>
#include <string>

#include "bench/everythingtuning.h"
#include "bench/exampletuning.h"
#include "tools/tuningfile/files.h"

namespace heavytuning
{

namespace
{

constexpr INT32  ROIID          = 30;
constexpr INT32  FirstColorROI  = 31;
constexpr UINT32 FirstTable     = 2;
constexpr INT32  FirstListedOut = 11;  ///< in the bank of results; every calculator gets two entries

/// The calculators that every tuning has, and the bank's regions.
constexpr const CHAR* Head = R"(
tuning: {createdBy: kirotune, binaryTag: heavy}
x-everywhere: &everywhere {start: 0, end: 1}
x-lux: &lux {bankID: BankIDTriggers, dataID: 8}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
x-target: &target
  selection: TriggerSystemMethod
  triggerSystem:
    trigger1DataBank: {bankID: BankIDTriggers, dataID: 8}
    trigger1Data:
      - trigger: {start: 0, end: 400}
        trigger2Data: [{trigger: *everywhere, triggerData: {rangeStart: 46.0, rangeEnd: 46.0}}]
      - trigger: {start: 480, end: 600}
        trigger2Data: [{trigger: *everywhere, triggerData: {rangeStart: 32.0, rangeEnd: 32.0}}]
modes:
  Default:
    modules:
      kirometeringstatscalculator:
        averageStatsCalculator:
          {calculatorID: 1, description: Average, APISelection: API01GridWeightedAverage,
           statsSelection: {channel1: SafeLuma}, outputStorage: {start: 1, end: 1},
           generalParameters: {weightTable2D: 1}}
        centerWeightedStatsCalculator:
          {calculatorID: 2, description: Centre, APISelection: API01GridWeightedAverage,
           statsSelection: {channel1: SafeLuma}, outputStorage: {start: 2, end: 2},
           generalParameters: {weightTable2D: 2}}
        darkRatioStatsCalculator: &ratio
          {calculatorID: 3, description: Dark, APISelection: API05HistLumaRangeAverage,
           statsSelection: {channel1: SafeHist}, outputStorage: {start: 3, end: 4},
           generalParameters: {rangeTrigger: [{trigger: *everywhere, triggerData: {start: 0.0, end: 8.0}}]}}
        brightRatioStatsCalculator:
          {<<: *ratio, calculatorID: 4, description: Bright, outputStorage: {start: 5, end: 6},
           generalParameters: {rangeTrigger: [{trigger: *everywhere, triggerData: {start: 248.0, end: 256.0}}]}}
        statsCalculators:
)";

/// The rest of the calculators, and the list of them.
class CalculatorList
{
public:
    VOID Add(const CHAR* pAPI, const std::string& rSettings)
    {
        const UINT32 id  = 100 + m_count;
        const INT32  out = FirstListedOut + 2 * static_cast<INT32>(m_count);
        m_text += fmt::format("          - {{calculatorID: {}, description: Calculator{}, APISelection: {}, "
                              "outputStorage: {{start: {}, end: {}}}, {}}}\n",
                              id, id, pAPI, out, out + 1, rSettings);
        m_ids += fmt::format("{}{}", m_ids.empty() ? "" : ", ", id);
        ++m_count;
    }

    VOID Add(UINT32 count, const CHAR* pAPI, const std::string& rSettings)
    {
        for (UINT32 index = 0; index < count; ++index)
        {
            Add(pAPI, rSettings);
        }
    }

    std::string Text() const
    {
        return m_text + fmt::format("      kirodbactivecalculators:\n"
                                    "        dataBank: {{bankID: BankIDActiveCalculators}}\n"
                                    "        data: [{{dataID: 1, description: All, calculatorID: [{}]}}]\n",
                                    m_ids);
    }

private:
    std::string m_text;
    std::string m_ids;
    UINT32      m_count = 0;
};

std::string CalculatorsText()
{
    constexpr UINT32 fixedGrids  = 2;
    constexpr UINT32 fixedRanges = 2;
    const auto       grid        = [](const CHAR* pChannel, UINT32 table, INT32 roi)
    {
        return fmt::format("statsSelection: {{channel1: {}}}, generalParameters: {{weightTable2D: {}, ROIID: {}}}",
                           pChannel, FirstTable + table, roi);
    };
    const auto histogram = [](const CHAR* pChannel, DOUBLE start, DOUBLE end)
    {
        return fmt::format("statsSelection: {{channel1: {}}}, generalParameters: {{weightTable1D: 1, rangeTrigger: "
                           "[{{trigger: *everywhere, triggerData: {{start: {:.2f}, end: {:.2f}}}}}]}}",
                           pChannel, start, end);
    };
    CalculatorList list;
    for (UINT32 table = fixedGrids; table < WholeGridCount; ++table)
    {
        list.Add("API01GridWeightedAverage", grid("SafeLuma", table, 0));
    }
    for (UINT32 table = 0; table < ROIGridCount; ++table)
    {
        list.Add("API01GridWeightedAverage", grid("ShortLuma", table, ROIID));
    }
    list.Add(HistWeightedCount, "API04HistWeightedAverage", histogram("SafeHist", 0.0, 1.0));
    list.Add(HistLumaRangeCount - fixedRanges, "API05HistLumaRangeAverage", histogram("SafeHist", 0.0, 256.0));
    list.Add(HistPercentileCount, "API06HistPercentileRangeAverage", histogram("ShortHist", 0.0, 0.97));
    for (UINT32 color = 0; color < ExtremeColorCount; ++color)
    {
        list.Add("API08ExtremeColorRgBgStatsRatio",
                 fmt::format("statsSelection: {{channel1: SafeLuma, channel2: SafeRG, channel3: SafeBG}}, "
                             "generalParameters: {{ROIID: {}, rangeTrigger: [{{trigger: {{start: 0.0, end: {:.1f}}}, "
                             "triggerData: {{start: 1.0, end: 1.0}}}}, {{trigger: {{start: {:.1f}, end: 255.0}}, "
                             "triggerData: {{start: 0.0, end: 0.0}}}}]}}, extensionArray: [{:.2f}]",
                             FirstColorROI + static_cast<INT32>(color), LumaFull, LumaNone, ColorFallOff));
    }
    return list.Text();
}

/// A table for each of the averages, as a tuning has: those of one table would need to be measured but once.
std::string TablesText()
{
    std::string text = "      kirodb2dmeterweight:\n        dataBank: {bankID: BankIDMetering2D}\n        data:\n";
    const auto  add  = [&text](UINT32 id, const std::string& rWeights)
    { text += fmt::format("          - {{dataID: {}, description: Table, weights: {}}}\n", id, rWeights); };
    for (const UINT32 place : {40U, 42U, 20U, 21U, 22U})  // that maps and the table generator fill
    {
        add(place, "{fill: 0.0}");
    }
    add(1, "{fill: 1.0}");
    for (UINT32 table = 0; table < WholeGridCount; ++table)
    {
        std::string weights;
        for (UINT32 entry = 0; entry < 256; ++entry)
        {
            weights += fmt::format("{}{:.4f}", weights.empty() ? "" : ", ", 1.0 + entry * (table + 1) % 16 / 16.0);
        }
        add(FirstTable + table, "[" + weights + "]");
    }
    return text;
}

std::string RegionsText()
{
    std::string text = "      kirodbroi:\n        dataBank: {bankID: BankIDROITable}\n        data:\n";
    const auto  add  = [&text](INT32 id, FLOAT x, FLOAT y, FLOAT dx, FLOAT dy)
    {
        text += fmt::format("          - {{dataID: {}, description: Region, coords: [{:.2f}, {:.2f}, {:.2f}, {:.2f}], "
                            "weight: 1.0}}\n",
                            id, x, y, dx, dy);
    };
    add(ROIID, ROIStart, ROIStart, ROISize, ROISize);
    for (UINT32 color = 0; color < ExtremeColorCount; ++color)
    {
        const FLOAT* pBox = ColorBoxes[color];
        add(FirstColorROI + static_cast<INT32>(color), pBox[0], pBox[1], pBox[2], pBox[3]);
    }
    return text;
}

/// Each weighs the averages of three calculators and lets its target give way where much is clipped.
std::string AnalyzerText(UINT32 id, const CHAR* pAnchor)
{
    constexpr const CHAR* types[] = {"ExposureSafe", "ExposureShort", "ExposureLong"};
    const CHAR*           pType   = types[id % std::size(types)];
    const INT32           out     = 100 + 10 * static_cast<INT32>(id);
    const auto            unit    = [](INT32 entry)
    {
        return fmt::format("{{value: {{selection: DataBankMethod, dataBank: {{bankID: BankIDStatsCalculator, "
                           "dataID: {}}}}}, weight: *one}}",
                           entry);
    };
    const auto part = [](const CHAR* pName, const std::string& rUnits, const CHAR* pMethod, INT32 entry)
    {
        return fmt::format("{}: {{calculators: [{}], aggregator: {{method: {}, output: {{dataBank: {{bankID: "
                           "BankIDSceneAnalyzer, dataID: {}}}, description: {}}}}}}}",
                           pName, rUnits, pMethod, entry, pName);
    };
    return fmt::format(
        "{}{{analyzerID: {}, analyzerName: Analyzer{}, exposureType: {}, refExposureType: ExposureSafe,\n"
        "            {},\n            {},\n            {},\n"
        "            arithmeticOperators: [{{enableFlag: true, operatorPriority: AdjustmentRatio, operationMethod: "
        "Division, operandA: {{method: DataBankMethod, dataBank: {{bankID: BankIDSceneAnalyzer, dataID: {}}}}}, "
        "operandB: {{method: TuningMethod, tuningValue: 1.0}}, operandC: {{method: DataBankMethod, dataBank: "
        "{{bankID: BankIDSceneAnalyzer, dataID: {}}}}}, operandD: {{method: TuningMethod, tuningValue: 1.0}}, output: "
        "{{dataBank: {{bankID: BankIDSceneAnalyzer, dataID: {}}}, dataType: startEnd, description: Ratio}}}}],\n"
        "            reservedParameter: [{}]}}\n",
        pAnchor, id, id, pType,
        part("luma", unit(1) + ", " + unit(2) + ", " + unit(FirstListedOut + 2 * static_cast<INT32>(id)),
             "NormalizedWeightedSum", out + 1),
        part("target", "{value: *target, weight: *one}", "Average", out + 2),
        part("confidence", "{value: *one, weight: *one}", "Average", out + 3), out + 2, out + 1, out + 4,
        (id == AnalyzerCount) ? 1 : 0);
}

std::string AnalyzersText()
{
    std::string text = "      kirometeringsceneanalyzer:\n";
    text += AnalyzerText(AnalyzerCount, "        luxAnalyzer: ");
    text += "        analyzers:\n";
    std::string ids;
    for (UINT32 id = 0; id < AnalyzerCount; ++id)
    {
        text += AnalyzerText(id, "          - ");
        ids += fmt::format("{}{}", ids.empty() ? "" : ", ", id);
    }
    return text + fmt::format("      kirodbactiveanalyzers:\n        dataBank: {{bankID: BankIDActiveAnalyzers}}\n"
                              "        data: [{{dataID: 1, description: All, analyzerID: [{}]}}]\n",
                              ids);
}

}  // namespace

std::vector<BYTE> Compile(bool isEverythingOn)
{
    const std::string text = Head + CalculatorsText() + TablesText() + RegionsText() + AnalyzersText() +
                             (isEverythingOn ? everythingtuning::ModulesText() : std::string());
    return tuningfile::WriteBinary(exampletuning::With("phone.yaml", text, "heavy tuning"), tuningfile::NewestVersion);
}

}  // namespace heavytuning
