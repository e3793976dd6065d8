#include "bench/everythingtuning.h"

#include <fmt/format.h>

namespace everythingtuning
{

namespace
{

constexpr INT32 FirstTrackedID   = 320;
constexpr INT32 FirstGeneratedID = 340;
constexpr INT32 FirstFilteredID  = 600;

std::string MapsText()
{
    std::string text = "      kiroexternalmapprocessor:\n        externalMapProcessor:\n";
    for (UINT32 index = 0; index < MapCount; ++index)
    {
        text += fmt::format(
            "          - {{enable: true, description: Map{}, input: {{mapType: statsMap, dataIDWeight2D: {}, "
            "statsThres: "
            "{{trigger1Data: [{{trigger1Lux: *everywhere, triggerDataRange: {{start: 0.5, end: 2.0}}}}]}}}}, output: "
            "{{dataIDWeight2D: {}}}, validGridRatio: 0.05, invalidGridRatio: 0.02, timeoutGridRatio: 0.01, "
            "validStateConsecutiveFrameCount: 2, invalidStateConsecutiveFrameCount: 5, "
            "timeoutStateConsecutiveFrameCount: 5, spatialConsistencyStrength: 2}}\n",
            index, FirstMapID, FirstTrackedID + static_cast<INT32>(index));
    }
    return text;
}

std::string VectorsText()
{
    constexpr const CHAR* filterings[] = {
        "{method: MovingAverage, filterLength: 60}",
        "{method: FIR, filterLength: 8, FIRCoefficients: [0.3, 0.2, 0.15, 0.1, 0.1, 0.05, 0.05, 0.05]}",
        "{method: MedianFilter, filterLength: 15}"};
    std::string text = "      kiro1dvectorprocessor:\n        vectorProcessors:\n";
    for (UINT32 index = 0; index < VectorCount; ++index)
    {
        text +=
            fmt::format("          - {{enable: true, description: Filter{}, input: {{bankID: BankIDStatsCalculator, "
                        "dataID: 1}}, output: {{bankID: BankIDTriggers, dataID: {}}}, filtering: {}}}\n",
                        index, FirstFilteredID + static_cast<INT32>(index), filterings[index % std::size(filterings)]);
    }
    return text;
}

std::string GeneratorsText()
{
    std::string text = "      kiromtrtablegen:\n        tableGenerator:\n";
    for (UINT32 index = 0; index < GeneratorCount; ++index)
    {
        const bool isFromMap = index % 2 == 1;
        text += fmt::format(
            "          - {{enable: true, method: {}, input: {{base2DWeightID: 2, statsChannel: {}, "
            "externData2DWeightID: "
            "{}}}, output: {{output2DWeightID: {}, enableGetWeightAverage: true, outputWeightAverageTriggerID: {}}}, "
            "triggerSystem: {{trigger1Data: [{{trigger1Lux: *everywhere, trigger2Data: [{{trigger2: {{start: 0, end: "
            "40}}, triggerData: 1.0}}, {{trigger2: {{start: 200, end: 255}}, triggerData: 0.2}}]}}]}}}}\n",
            isFromMap ? "ExternalDataDrivenMethod" : "StatsDrivenMethod", SmallLuma,
            FirstTrackedID + static_cast<INT32>(index), FirstGeneratedID + static_cast<INT32>(index),
            FirstFilteredID + 20 + static_cast<INT32>(index));
    }
    return text;
}

/// Three scenes of five criteria each.
std::string MonitorText()
{
    std::string scenes;
    for (UINT32 scene = 0; scene < 3; ++scene)
    {
        std::string criteria;
        for (UINT32 criterion = 0; criterion < 5; ++criterion)
        {
            criteria +=
                fmt::format("{}{{dataBankSource: {{bankID: BankIDStatsCalculator, dataID: {}}}, postCalculation: "
                            "AbsoluteDifferencePercentage, triggers: [{{trigger: *everywhere, triggerData: 0.2}}]}}",
                            criteria.empty() ? "" : ", ", criterion + 1);
        }
        scenes += fmt::format("{}{{sceneDescription: Scene{}, passThreshold: 0.5, criteriaArray: [{}]}}",
                              scenes.empty() ? "" : ", ", scene, criteria);
    }
    return fmt::format("{{monitorDescription: Monitor, scenes: [{}]}}", scenes);
}

std::string MonitorsText()
{
    return fmt::format(
        "      kiroextension:\n"
        "        flagMonitor:\n"
        "          flashFlag: {{flashLuxTrigger: {{start: 300, end: 320}}, flashFDReqestDelayLuxTrigger: "
        "{{start: 300, end: 320}}}}\n"
        "          LLSFlag: {{enableLLS: true, LLSLuxHysteresis: {{start: 350, end: 370}}}}\n"
        "          YHistStretch: {{enableYHistStretch: true, tempFilterStrength: 0.5, clampValue: "
        "{{bankID: BankIDSceneAnalyzer, dataID: 300}}, scalingValue: {{bankID: BankIDSceneAnalyzer, "
        "dataID: 301}}}}\n"
        "          ZLLFlag: {{enableZLLSnapshot: true}}\n"
        "        monitor3HDRSnapshot: {{enable3HDRSnapshot: true, frameCounterEnter: 3, "
        "generalizedMonitor: {0}}}\n"
        "        monitorEVBracketLock: {{enableEVBracketLock: true, maxFrameNum: 1000, "
        "generalizedMonitor: {0}}}\n",
        MonitorText());
}

}  // namespace

std::string DetectorsText(UINT32 count)
{
    constexpr const CHAR* priorities[] = {"MeteringStart", "ConvergenceStart", "ExtensionStart", "ExtensionEnd",
                                          "EndOfFrame"};
    constexpr const CHAR* filters[]    = {"Disable", "Average", "Median"};
    std::string           text         = "      kiroscenechangedetector:\n        scdBank:\n";
    for (UINT32 index = 0; index < count; ++index)
    {
        text += fmt::format(
            "          - enable: true\n            priority: {}\n            SCDId: {}\n            SCDName: "
            "Detector{}\n"
            "            SCDetectionConfig:\n"
            "              inputDataConfig: {{inputDataSource: {{bankID: BankIDTriggers, dataID: 8}}, windowSize: 8, "
            "filterType: {}}}\n"
            "              thresConfig: {{baselineType: UseRebasedData, bUsePercentageError: true, thresData: "
            "{{trigger1DataBank: *lux, trigger2DataBank: *lux, trigger3DataBank: *lux, trigger1: [{{trigger: "
            "*everywhere, trigger2: [{{trigger: *everywhere, trigger3: [{{trigger: *everywhere, triggerData: "
            "{{valueThres: 20.0, countThres: 3}}}}]}}]}}]}}}}\n"
            "              SCPostStableConfig: {{windowSize: 5, variationThres: 5.0}}\n"
            "            holdTimeConfig:\n              enable: true\n              holdTimeData: {{trigger1DataBank: "
            "*lux, trigger2DataBank: *lux, trigger3DataBank: *lux, trigger3Data: [{{trigger: *everywhere, "
            "trigger2Data: [{{trigger: *everywhere, trigger3Data: [{{trigger: *everywhere, triggerData: "
            "1.0}}]}}]}}]}}\n",
            priorities[index % std::size(priorities)], index + 1, index + 1, filters[index % std::size(filters)]);
    }
    return text;
}

std::string ModulesText()
{
    return DetectorsText(DetectorCount) + MapsText() + VectorsText() + GeneratorsText() + MonitorsText();
}

}  // namespace everythingtuning
