/// Tunings that look odd and work, for which a check has no error, and some that look well and do not work.
#include <fmt/format.h>

#include "tests/support/tuningslip.h"
#include "tools/tuningfile/files.h"

namespace
{

using tuningcheck::Finding;
using tuningcheck::Severity;

using Changes = std::vector<std::pair<const char*, const char*>>;  ///< in the least of all tunings

struct SoundCase
{
    const char* pName;
    bool        isOdd;  ///< worth an advice
    Changes     changes;
};

/// A grid for lamps of two zones, before the order.
std::string FlickerGrid(const CHAR* pFirst, UINT32 firstTime, const CHAR* pSecond, UINT32 secondTime)
{
    constexpr const CHAR* zone =
        "                - {{trigger: {}, trigger2Data: [{{trigger: *everywhere, triggerData: {}}}]}}\n";
    return R"(      kirodbarbitrationlut:
        dataBank: {bankID: BankIDArbitrationLUT}
        data:
          - dataID: 1
            value:
              keyType1: &timeKey {source: SourceArbitration, arbKey: LUTKeyTime}
              keyType2: *timeKey
              outType: ArbLutOutTime
              triggerData:
)" + fmt::format(zone, pFirst, firstTime) +
           fmt::format(zone, pSecond, secondTime) + "      kirodbarbitrationorder:";
}

const std::string PassingGrid = FlickerGrid("{start: 0, end: 0}", 0, "{start: 10000000, end: 20000000}", 10000000);
const std::string GappedGrid =
    FlickerGrid("{start: 10000000, end: 20000000}", 10000000, "{start: 30000000, end: 40000000}", 20000000);

const std::string Controls = "controls: &tableOnly [";

const SoundCase Sound[] = {
    {"a slave that does not mix",
     false,
     {{"kirosync: {}", "kirosync: {mtrMixConfig: {dynamicMixingConfig: {postExpCompTrigger: [{trigger: *everywhere, "
                       "triggerData: 0}]}}}"}}},
    {"no EV", false, {{"minEVValue: -4  ", "minEVValue: 0  "}, {"maxEVValue: 4", "maxEVValue: 0"}}},
    {"binned in the dark, whatever ADRC asks for",
     false,
     {{"kirohdrsensor: {}",
       "kirohdrsensor: {hybridHDR: {enableHybridHDR: true, switchRatio: 2.0, drcGainSwitchThresholdTrigger: "
       "{trigger: *everywhere, trigger2Data: [{trigger: {start: 0, end: 350}, triggerData: 2.0}, "
       "{trigger: {start: 420, end: 600}, triggerData: 100.0}]}}}"}}},
    {"a high threshold without smoothed ADRC, which alone is capped",
     false,
     {{"kirohdrsensor: {}",
       "kirohdrsensor: {hybridHDR: {enableHybridHDR: true, switchRatio: 2.0, drcGainSwitchThresholdTrigger: "
       "{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 4.0}]}}}"}}},
    {"a filter in place",
     false,
     {{"kiro1dvectorprocessor: {}",
       "kiro1dvectorprocessor: {vectorProcessors: [{enable: true, input: {bankID: BankIDStatsCalculator, dataID: 1}, "
       "output: {bankID: BankIDStatsCalculator, dataID: 1}, filtering: {method: MovingAverage, filterLength: 4}}]}"}}},
    {"a generator that goes on with the table of another, in the place of one without weights, and one for the flash",
     false,
     {{"weightTable2D: 1}", "weightTable2D: 30}"},
      {"weights: {fill: 1.0}}]", "weights: {fill: 1.0}}, {dataID: 30, weights: {fill: 0.0}}]"},
      {"kiromtrtablegen: {}",
       R"(kiromtrtablegen:
        flashBiasMetTblGen: {mtrTblConfig: {dataBankID: 30, minOffStats: 2}}
        tableGenerator:
          - &one30
            enable: true
            method: StatsDrivenMethod
            input: {base2DWeightID: 1, statsChannel: SafeLuma}
            output: {output2DWeightID: 30}
            triggerSystem: {trigger1Data: [{trigger1Lux: *everywhere, trigger2Data: [{trigger2: *everywhere, triggerData: 1}]}]}
          - {<<: *one30, input: {base2DWeightID: 30, statsChannel: SafeLuma}})"}}},
    {"parameters of an algorithm that no analyzer names",
     false,
     {{"kiroflash: {}",
       "kiroflash: {}\n      kirometeringsaalgorithm: {SAAlgorithm: [{ID: 3, extensionParameters: [22, 23, 24, "
       "25, 65, 0, 0, -1, 33, 2, 3, 1.2]}]}"}}},
    {"most effect of no stretch",
     false,
     {{"convStretchAgg: StretchAggAverage", "convStretchAgg: StretchAggMostEffect"}}},
    {"manual controls that share a range",
     false,
     {{"      kirodbarbitrationorder:",
       "      kirodbarbitrationrange: {dataBank: {bankID: BankIDArbitrationRange}, data: [{dataID: 4, value: "
       "{quantity: "
       "ArbQuantityGain, start: {val: 1, adj: ArbRangeRelativeFactor}, end: {val: 1, adj: ArbRangeRelativeFactor}}}]}\n"
       "      kirodbarbitrationorder:"},
      {Controls.c_str(),
       "controls: &tableOnly [{controlID: ArbCtrlManualGain, dataID: 4, enableControl: true}, {controlID: "
       "ArbCtrlManualISO, dataID: 4, enableControl: true}, "}}},
    {"short times below the first period of the light",
     false,
     {{"      kirodbarbitrationorder:", PassingGrid.c_str()},
      {"dataID: 1, enableControl: true}]",
       "dataID: 1, enableControl: true}, {controlID: ArbCtrlFlicker50LUT, dataID: 1, enableControl: true}]"}}},
    {"scores that pass by a rounding error",
     false,
     {{"        flagMonitor:",
       R"(        monitorEVBracketLock:
          enableEVBracketLock: true
          maxFrameNum: 300
          generalizedMonitor:
            scenes:
              - passThreshold: 1.6
                criteriaArray:
                  - &score {dataBankSource: {bankID: BankIDTriggers, dataID: lux}, postCalculation: Division, triggers: [{trigger: {start: 0, end: 1}, triggerData: 0.7}, {trigger: {start: 2, end: 9}, triggerData: 0.0}]}
                  - {<<: *score, triggers: [{trigger: {start: 0, end: 1}, triggerData: 0.9}, {trigger: {start: 2, end: 9}, triggerData: 0.0}]}
        flagMonitor:)"}}},
    {"histograms alone",
     false,
     {{"APISelection: API01GridWeightedAverage  ", "APISelection: API06HistPercentileRangeAverage  "},
      {"channel1: SafeLuma", "channel1: SafeHist"},
      {"{weightTable2D: 1}", "{rangeTrigger: [{trigger: *everywhere, triggerData: {start: 0.0, end: 1.0}}]}"},
      {"      kirodb2dmeterweight:\n        dataBank: {bankID: BankIDMetering2D}\n"
       "        data: [{dataID: 1, description: Uniform, weights: {fill: 1.0}}]\n",
       ""}}},
    {"a lux index from the host's zero",
     false,
     {{"{enableCompensation: true, refExposureForLuxIndexZero: 20000}", "{}"}}},
    {"a calculator for flash pictures, in which the fixed ones do not run",
     false,
     {{"        centerWeightedStatsCalculator:",
       "        statsCalculators: [{<<: *frameAverage, calculatorID: 7}]\n        centerWeightedStatsCalculator:"},
      {"dataBank: {bankID: BankIDActiveCalculators} ", "dataBank: {bankID: BankIDActiveCalculators, priorityMap: "
                                                       "[{context: [AECCoreSnapshotFlash], priority: 1, dataID: "
                                                       "2}]} "},
      {"[{dataID: 1, description: None}]", "[{dataID: 2, calculatorID: [7]}, {dataID: 1, description: None}]"}}},
    {"an output without an end", true, {{"outputStorage: {start: 1, end: 1}", "outputStorage: {start: 1}"}}},
    {"a heeded detector that is off",
     true,
     {{"kiroscenechangedetector: {}", "kiroscenechangedetector: {scdBank: [{SCDId: 1, enable: false}]}\n"
                                      "      kirodbconvactivescd: {data: [{dataID: 1, SCDID: 1}]}"}}},
};

struct FaultyCase
{
    const char* pSays;
    Changes     changes;
};

const FaultyCase Faulty[] = {
    {"is 17, expected an entry of bank StatsCalculator in Default|Sensor.0",
     {{"x-average: &average {selection: DataBankMethod, dataBank: {bankID: BankIDStatsCalculator, dataID: 1}}",
       "x-average: &average {selection: DataBankMethod, dataBank: {bankID: BankIDStatsCalculator, dataID: 17}}"},
      {"        centerWeightedStatsCalculator:",
       "        statsCalculators: [{<<: *frameAverage, calculatorID: 7, outputStorage: {start: 17, end: 17}}]\n"
       "        centerWeightedStatsCalculator:"},
      {"[{dataID: 1, description: None}]", "[{dataID: 1, calculatorID: [7]}]"},
      {"kiro1dvectorprocessor: {}", "kiro1dvectorprocessor: {}\n    children:\n      Sensor.0: {modules: "
                                    "{kirodbactivecalculators: {data: [{dataID: 1, calculatorID: []}]}}}"}}},
    {"is a list for ExposureNone",
     {{"{exposureType: ExposureShort, controls", "{exposureType: ExposureNone, controls"}}},
    {"weights sum up to 0", {{"weightTable2D: 1}", "weightTable2D: 0}"}, {"{fill: 1.0}}]", "{fill: 0.0}}]"}}},
    {"luma is switched off by its output",
     {{"output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 1}, description: Luma}",
       "output: {dataBank: {bankID: BankIDInvalid}}"}}},
    {"averageStatsCalculator.outputStorage.start writes, too",
     {{"centerWeightedStatsCalculator: {outputStorage: {start: 2, end: 2}}",
       "centerWeightedStatsCalculator: {<<: *frameAverage, calculatorID: 2}"}}},
    {"extensionArray[0] is 3, expected an exposure",
     {{"APISelection: API01GridWeightedAverage  ", "APISelection: API10HistPercentileRangeAverageHDR  "},
      {"{weightTable2D: 1}", "{rangeTrigger: [{trigger: *everywhere, triggerData: {start: 0.0, end: 1.0}}]}\n"
                             "          extensionArray: [3, 0, 1, 2, 9, 8]"}}},
    {"extensionArray[4] is 8, expected a bank of values",
     {{"APISelection: API01GridWeightedAverage  ", "APISelection: API10HistPercentileRangeAverageHDR  "},
      {"{weightTable2D: 1}", "{rangeTrigger: [{trigger: *everywhere, triggerData: {start: 0.0, end: 1.0}}]}\n"
                             "          extensionArray: [0, 2, 1, 2, 8, 8]"}}},
    {"starts at 30000000, above the end of the zone before it",
     {{"      kirodbarbitrationorder:", GappedGrid.c_str()},
      {"dataID: 1, enableControl: true}]",
       "dataID: 1, enableControl: true}, {controlID: ArbCtrlFlicker50LUT, dataID: 1, enableControl: true}]"}}},
    {"is 777, expected an entry of bank",
     {{"kiro1dvectorprocessor: {}",
       "kiro1dvectorprocessor: {vectorProcessors: [{enable: true, input: {bankID: BankIDStatsCalculator, dataID: 777}, "
       "output: {bankID: BankIDTriggers, dataID: 300}, filtering: {method: MovingAverage, filterLength: 4}}]}"}}},
    {"is 17, which the core publishes itself",
     {{"kiro1dvectorprocessor: {}",
       "kiro1dvectorprocessor: {vectorProcessors: [{enable: true, input: {bankID: BankIDStatsCalculator, dataID: 1}, "
       "output: {bankID: BankIDTriggers, dataID: 17}, filtering: {method: MovingAverage, filterLength: 4}}]}"}}},
    {"stopMeteringYSaturation.statsNameOff is missing",
     {{"kiroflash: {}", "kiroflash: {preflashStatsPreProcessing: {stopMeteringYLevel: {statsNameOff: luma16Off, "
                        "statsNameLow: luma16Low}}}"}}},
    // What the mode above has, and what it makes a fault of, may stand apart.
    {"Default|Sensor.0 kiroconvergence.smoothADRC.nodes[0].minNodeDRCGain is 4",
     {{"kiroconvergence: {unitStepSize: 0.25}",
       "kiroconvergence: {unitStepSize: 0.25, smoothADRC: {enableSmoothDRC: false, nodes: [{minNodeDRCGain: 4, "
       "maxNodeDRCGain: 1}]}}"},
      {"kiro1dvectorprocessor: {}", "kiro1dvectorprocessor: {}\n    children:\n      Sensor.0: {modules: "
                                    "{kiroconvergence: {smoothADRC: {enableSmoothDRC: true}}}}"}}},
    {"Default|Sensor.0 kirodb2dmeterweight.data[1].dataID is 2, as data[0].dataID",
     {{"{fill: 1.0}}]", "{fill: 1.0}}, {dataID: 2, weights: {fill: 1.0}}]"},
      {"kiro1dvectorprocessor: {}", "kiro1dvectorprocessor: {}\n    children:\n      Sensor.0: {modules: "
                                    "{kirodb2dmeterweight: {data: [{dataID: 2}, {dataID: 2}]}}}"}}},
    {"in a list without an analyzer of ExposureSafe, expected one in each list in Default|Sensor.0, where there is "
     "none",
     {{"kiro1dvectorprocessor: {}", "kiro1dvectorprocessor: {}\n    children:\n      Sensor.0: {modules: "
                                    "{kirometeringsceneanalyzer: {analyzers: [{exposureType: ExposureShort}]}}}"}}},
};

std::vector<Finding> FindingsWith(const Changes& rChanges)
{
    std::string text = tuningfile::ReadText(EXAMPLES_DIR "/tunings/minimal.yaml");
    for (const auto& [pPart, pBy] : rChanges)
    {
        UINT32 line = 0;
        text        = ReplacedText(text, pPart, pBy, 0, line);
    }
    return ::FindingsOf(text, "t.yaml");  // as kirotune check does
}

TEST(WorkingTunings, WhatWorksIsNoError)
{
    for (const SoundCase& rCase : Sound)
    {
        SCOPED_TRACE(rCase.pName);
        const std::vector<Finding> findings = FindingsWith(rCase.changes);
        EXPECT_EQ(rCase.isOdd, !findings.empty()) << ToText(findings);
        EXPECT_EQ(0u, tuningcheck::Count(findings, Severity::Error)) << ToText(findings);
    }
}

TEST(WorkingTunings, WhatDoesNotWorkIsTold)
{
    for (const FaultyCase& rCase : Faulty)
    {
        const std::string text = ToText(FindingsWith(rCase.changes));
        EXPECT_NE(text.npos, text.find(rCase.pSays)) << rCase.pSays << "\n" << text;
    }
}

}  // namespace
