/// What has to hold between the values of a tuning, where a slip in an example does not show it.
#include <algorithm>

#include <gtest/gtest.h>

#include "tools/tuningcheck/judgement.h"
#include "tools/tuningfile/textinput.h"

namespace
{

using tuningcheck::Finding;
using tuningcheck::Surroundings;

/// @return what is told about a module, a line each
std::string FindingsOf(const std::string& rModule, const std::string& rText, const Surroundings& rSurroundings = {})
{
    std::string lines;
    for (const Finding& rFinding : tuningcheck::Judge(tuningfile::ParseText(rText, "t.yaml"), rSurroundings))
    {
        lines += (rFinding.path.find(rModule) != rFinding.path.npos) ? tuningcheck::ToText(rFinding) + "\n" : "";
    }
    return lines;
}

VOID ExpectOne(const std::string& rFindings, const std::string& rLine, const std::string& rSays)
{
    EXPECT_EQ(1, std::count(rFindings.begin(), rFindings.end(), '\n')) << rFindings;
    EXPECT_NE(rFindings.npos, rFindings.find("t.yaml:" + rLine + ":")) << rFindings;
    EXPECT_NE(rFindings.npos, rFindings.find(rSays)) << rFindings;
}

TEST(Shapes, AModeWithNothingIsToldOnceAndAModuleThatLacksByItsName)
{
    const std::string nothing = FindingsOf("", "modes: {Default: {modules: {kiroflash: {}}}}");
    EXPECT_NE(nothing.npos, nothing.find("modules hold none of those that a camera needs")) << nothing;
    EXPECT_NE(nothing.npos, nothing.find("kirotune new")) << nothing;
    EXPECT_EQ(1, std::count(nothing.begin(), nothing.end(), '\n')) << nothing;

    const std::string text = "modes: {Default: {modules: {kiroconvergence: {unitStepSize: 0.25}, kiroev: {}}}}";
    ExpectOne(FindingsOf("kirodbconvbase", text), "1", "is missing");
    ExpectOne(FindingsOf("kirodbarbitrationorder", text), "1", "is missing");
    ExpectOne(FindingsOf("kiroev", text), "1", "is empty");
    EXPECT_EQ("", FindingsOf("kiroconvergence", text));
}

/// A mode that names one member of a module has taken over the others, which are judged above.
TEST(Shapes, WhatAModeTakesOverIsToldWhereItStands)
{
    const std::string text = R"(modes:
  Default:
    modules:
      kiroconvergence:
        unitStepSize: 0.25
        smoothADRC:
          enableSmoothDRC: true
          nodes: [{minNodeDRCGain: 4, maxNodeDRCGain: 1, triggerPointUp: 1, multiplierIncrement: 1}]
    children:
      Sensor.0: {modules: {kiroconvergence: {unitStepSize: 0.5}}}
      Sensor.1:
        modules: {kiroconvergence: {smoothADRC: {enableSmoothDRC: false}}}
)";
    ExpectOne(FindingsOf("kiroconvergence", text), "8",
              "Default kiroconvergence.smoothADRC.nodes[0].minNodeDRCGain is 4");
}

/// The same faults, of features that are on and off.
TEST(Shapes, WhatIsSwitchedOffIsNotJudged)
{
    const auto findings = [](const std::string& rModule, const std::string& rSwitch)
    {
        return FindingsOf(rModule, R"(modes:
  Default:
    modules:
      kirohdrsensor:
        hybridHDR: {enableHybridHDR: )" +
                                       rSwitch + R"(, drcGainSwitchThresholdTrigger: {trigger2Data: [{triggerData: 1}]}}
      kiroscenechangedetector:
        scdBank: [{SCDId: 1, enable: )" +
                                       rSwitch + R"(, priority: Invalid}]
      kiroexternalmapprocessor:
        externalMapProcessor: [{enable: )" +
                                       rSwitch + R"(, validGridRatio: 0.1, invalidGridRatio: 0.2}]
)");
    };
    for (const char* pModule : {"kirohdrsensor", "kiroscenechangedetector", "kiroexternalmapprocessor"})
    {
        EXPECT_NE("", findings(pModule, "true")) << pModule;
        EXPECT_EQ("", findings(pModule, "false"));
    }
}

std::string ArbitrationText(const std::string& rControls)
{
    return R"(modes:
  Default:
    modules:
      kirodbarbitrationtable:
        data: [{dataID: 1, value: {correction: 1, expKnees: [{gain: 1, time: 20000}, {gain: 64, time: 33333333}]}}]
      kirodbarbitrationrange:
        data:
          - dataID: 1
            value: {quantity: ArbQuantityTime, start: &same {val: 1.0, adj: ArbRangeRelativeFactor}, end: *same}
          - {dataID: 2, value: {quantity: ArbQuantityGain, start: *same, end: {val: 8.0, adj: ArbRangeAbsolute}}}
          - {dataID: 4, value: {quantity: ArbQuantityGain, start: *same, end: {val: 0.5, adj: ArbRangeAbsolute}}}
          - {dataID: 3, value: {quantity: ArbQuantityIndex, start: *same, end: *same}}
      kirodbarbitrationorder:
        data:
          - dataID: 1
            value:
              exposureTypes:
                - exposureType: ExposureLong
                  controls: )" +
           rControls + R"(
                - {exposureType: ExposureSafe, controls: [{controlID: ArbCtrlTable, dataID: 1}]}
                - {exposureType: ExposureShort, controls: [{controlID: ArbCtrlTable, dataID: 1}]}
)";
}

std::string Control(const std::string& rName, INT32 dataID)
{
    return "{controlID: " + rName + ", dataID: " + std::to_string(dataID) + ", enableControl: true}";
}

TEST(Shapes, AControlNeedsARangeThatItCanUseAndThatIsItsOwn)
{
    const auto findings = [](const std::string& rFirst, const std::string& rSecond)
    { return FindingsOf("kirodbarbitrationorder", ArbitrationText("[" + rFirst + ", " + rSecond + "]")); };

    EXPECT_EQ("", findings(Control("ArbCtrlFPS", 1), Control("ArbCtrlManualGain", 2)));
    ExpectOne(findings(Control("ArbCtrlFPS", 1), Control("ArbCtrlManualISO", 1)), "19",
              "controls[1] names range 1, which is of ArbQuantityTime");
    ExpectOne(findings(Control("ArbCtrlManualGain", 2), Control("ArbCtrlTableGainRange", 2)), "19",
              "controls[1] shares range 2 with ArbCtrlManualGain");
    EXPECT_EQ("", findings(Control("ArbCtrlCustomRange", 2), Control("ArbCtrlTableGainRange", 2)));

    ExpectOne(findings(Control("ArbCtrlTable", 1), Control("ArbCtrlMasterTime", 1)), "19", "has a relative bound");
    ExpectOne(FindingsOf("data[2].value.end", ArbitrationText("[]")), "11", "below the sensor's lowest gain");

    EXPECT_EQ("", findings(Control("ArbCtrlTable", 1), Control("ArbCtrlCustomRange", 3)));
    ExpectOne(findings(Control("ArbCtrlCustomRange", 3), Control("ArbCtrlTable", 1)), "19", "before a table");
    ExpectOne(findings(Control("ArbCtrlTable", 1), Control("ArbCtrlSHDRTimeRange", 1)), "19", "for ExposureLong");
}

TEST(Shapes, ATableThatEndsBelowTheSensorIsCappedByARangeOrToldOf)
{
    const Surroundings sensor{{}, 128.0F, 33333333};
    const std::string  open = ArbitrationText("[" + Control("ArbCtrlTable", 1) + "]");
    EXPECT_EQ("", FindingsOf("expKnees", open));
    ExpectOne(FindingsOf("expKnees", open, sensor), "5", "expected a gain of 128 or more; the last knee is no cap");

    const std::string capped =
        ArbitrationText("[" + Control("ArbCtrlCustomRange", 2) + ", " + Control("ArbCtrlTable", 1) + "]");
    EXPECT_EQ("", FindingsOf("expKnees", capped, sensor));
}

/// Whatever numbers a text holds, it is judged to the end.
TEST(Shapes, NumbersAtTheirLimitsAreJudgedToTheEnd)
{
    const std::string findings = FindingsOf("", R"(modes:
  Default:
    modules:
      kiroev: {EVCoreData: {stepsPerEV: -2147483648, minEVValue: 2147483647, maxEVValue: -2147483648}}
      kiroflash:
        LEDMatching: {countPower: -1, countMix: -1, table: [{LED1Setting: 2147483647, LED2Setting: 2147483647}]}
        LEDInlineCalibration: {numOfFactoringRegions: 3, minKneeCnt: 2147483647, maxZoneCnt: 2147483647}
      kirometeringstatscalculator:
        averageStatsCalculator:
          APISelection: API05HistLumaRangeAverage
          outputStorage: {start: 2147483647, end: 2147483647}
      kirodbarbitrationtable:
        data: [{dataID: 1, value: {expKnees: [{gain: .inf, time: 18446744073709551615}, {gain: .nan, time: 0}]}}]
)");
    for (const char* pModule : {"kiroev", "kiroflash", "kirometeringstatscalculator", "kirodbarbitrationtable"})
    {
        EXPECT_NE(findings.npos, findings.find(pModule)) << findings;
    }
}

}  // namespace
