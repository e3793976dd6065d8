/// What a check says of references: to what is not there, to banks that cannot stand where they do, over modes.
#include "tests/support/temporaryfile.h"
#include "tests/support/tuningslip.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace
{

using tuningcheck::Finding;
using tuningcheck::Severity;

const std::string RightText = R"(x-everywhere: &everywhere {start: 0, end: 1}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
modes:
  Default:
    modules:
      kirodbroi: {data: [{dataID: 20, description: Spot}, {dataID: 1, description: Whole}]}
      kirometeringstatscalculator:
        statsCalculators:
          - calculatorID: 5
            description: Spot
            APISelection: API01GridWeightedAverage
            statsSelection: {channel1: SafeLuma}
            outputStorage: {start: 7, end: 7}
            generalParameters: {ROIID: 20}
          - calculatorID: 6
            description: Dark
            APISelection: API05HistLumaRangeAverage
            statsSelection: {channel1: SafeHist}
            outputStorage: {start: 8, end: 9}
      kirodb2dmeterweight: {data: [{dataID: 1, weights: {fill: 1}}]}
      kirodbactivecalculators: {data: [{dataID: 1, calculatorID: [5, 6]}]}
      kirometeringsceneanalyzer:
        analyzers:
          - analyzerID: 0
            analyzerName: Safe
            exposureType: ExposureSafe
            luma:
              calculators:
                - {value: {dataBank: {bankID: BankIDStatsCalculator, dataID: 7}}, weight: *one}
                - {value: {dataBank: {bankID: BankIDStatsCalculator, dataID: 9}}, weight: *one}
              aggregator: {output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 1}}}
            target: {aggregator: {output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 2}}}}
            confidence: {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}
      kirodbactiveanalyzers: {data: [{dataID: 1, analyzerID: [0]}]}
    children:
      Sensor.0:
        modules:
          kirodbactivecalculators: {data: [{dataID: 1, calculatorID: [6, 5]}]}
      Sensor.1:
        modules:
          kirodbroi: {data: [{dataID: 20, description: Corner}]}
)";

struct ReferenceCase
{
    const char* pPart;
    const char* pBy;
    const char* pAt;  ///< a part of the line of the finding, there once
    const char* pPath;
    const char* pSays;
};

constexpr ReferenceCase Wrong[] = {
    {"ROIID: 20", "ROIID: 3", "ROIID: 3", "generalParameters.ROIID",
     "is 3, expected an entry of bank ROITable: 1 (Whole), 20 (Spot); or add it to data of kirodbroi"},
    {"ROIID: 20", "ROIID: 22", "ROIID: 22", "generalParameters.ROIID", "did you mean 20 (Spot)?"},
    {"[6, 5]}", "[66, 5]}", "[66, 5]", "Default|Sensor.0 kirodbactivecalculators.data[0].calculatorID[0]",
     "is 66, expected a calculator: 5 (Spot), 6 (Dark); did you mean 6 (Dark)?"},
    // The region that only one mode has left out is missing in that mode.
    {"{dataID: 20, description: Corner}", "{dataID: 4, description: Corner}", "ROIID: 20", "generalParameters.ROIID",
     "an entry of bank ROITable in Default|Sensor.1: 4 (Corner); did you mean 4 (Corner)?"},
    {"dataID: 9}}", "dataID: 10}}", "dataID: 10}}", "calculators[1].value.dataBank.dataID",
     "expected an entry of bank StatsCalculator: 7 (Spot), 8 (Dark), 9 (Dark)"},
    {"dataID: 9}}", "dataID: 1000}}", "dataID: 1000}}", "dataBank.dataID", "0 to 999"},
    {"{bankID: BankIDStatsCalculator, dataID: 9}", "{bankID: BankIDMetering2D, dataID: 1}", "BankIDMetering2D",
     "value.dataBank.bankID", "is BankIDMetering2D, expected an entry of banks"},
    // Who names the number that has gone may mean the one that is there twice.
    {"calculatorID: 6\n", "calculatorID: 5\n", "calculatorID: 5\n            description: Dark",
     "statsCalculators[1].calculatorID", "is 5, as statsCalculators[0].calculatorID, expected a number of its own"},
    {"{start: 8, end: 9}", "{start: 6, end: 9}", "start: 6", "statsCalculators[1].outputStorage.start",
     "also writes 7, which kirometeringstatscalculator.statsCalculators[0].outputStorage.start writes, too"},
    {"channel1: SafeHist", "channel1: SaveHist", "SaveHist", "channel1", "did you mean 'SafeHist'"},
    {"exposureType: ExposureSafe", "exposureType: ExposureLong", "analyzerID: [0]", "analyzerID[0]",
     "a list without an analyzer of ExposureSafe"},
    {"analyzerID: [0]", "analyzerID: [1]", "analyzerID: [1]", "analyzerID[0]", "did you mean 0 (Safe)?"}};

std::vector<Finding> NewFindingsOf(const std::string& rText)
{
    static const std::vector<Finding> right = FindingsOf(RightText, "t.yaml");
    return NewFindings(FindingsOf(rText, "t.yaml"), right);
}

TEST(References, WhatIsNotThereIsToldWithWhatIs)
{
    for (const ReferenceCase& rCase : Wrong)
    {
        SCOPED_TRACE(rCase.pBy);
        UINT32            line     = 0;
        const std::string text     = ReplacedText(RightText, rCase.pPart, rCase.pBy, 0, line);
        const auto        findings = NewFindingsOf(text);
        (VOID) ReplacedText(text, rCase.pAt, "", 0, line);
        ASSERT_FALSE(findings.empty());
        const auto found =
            std::find_if(findings.begin(), findings.end(),
                         [&](const Finding& rFinding) { return rFinding.path.find(rCase.pPath) != std::string::npos; });
        ASSERT_NE(findings.end(), found) << ToText(findings);
        EXPECT_EQ(Severity::Error, found->severity);
        EXPECT_EQ(line, found->place->line);
        EXPECT_NE(std::string::npos, tuningcheck::ToText(*found).find(rCase.pSays)) << ToText(findings);
    }
}

TEST(References, ASlipInADeepTreeOfModesIsToldOnce)
{
    // Both modes take the misspelt reader over, in modules that they change elsewhere.
    UINT32      line = 0;
    std::string text = ReplacedText(RightText, "dataID: 9}}", "dataID: 90}}", 0, line);
    text             = ReplacedText(text, "      Sensor.1:\n        modules:\n",
                                    "      Sensor.1:\n        modules:\n          kirometeringsceneanalyzer: {luxAnalyzer: "
                                                "{analyzerName: Lux, luma: {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}}}\n",
                                    0, line);
    size_t readers   = 0;
    for (const Finding& rFinding : NewFindingsOf(text))
    {
        readers += (rFinding.value == "is 90") ? 1 : 0;
    }
    EXPECT_EQ(1u, readers) << ToText(NewFindingsOf(text));
}

TEST(References, WhatNoModeUsesIsAdvice)
{
    UINT32     line  = 0;
    const auto never = [&line](const char* pPart, const char* pBy)
    { return NewFindingsOf(ReplacedText(RightText, pPart, pBy, 0, line)); };
    const auto analyzer = never("      kirodbactiveanalyzers:", R"(          - analyzerID: 1
            exposureType: ExposureNone
            luma: {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}
            target: {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}
            confidence: {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}
      kirodbactiveanalyzers:)");
    ASSERT_EQ(1u, analyzer.size()) << ToText(analyzer);
    EXPECT_EQ(Severity::Advice, analyzer[0].severity);
    EXPECT_EQ("is 1, which nothing names", analyzer[0].value);

    // A list that one mode alone has is enough of a use, but not for the other mode, whose luma reads the output.
    const auto inOneMode = never("[5, 6]", "[5]");
    ASSERT_EQ(1u, inOneMode.size()) << ToText(inOneMode);
    EXPECT_EQ(Severity::Error, inOneMode[0].severity);
    EXPECT_EQ("calculator 6 writes it, but no list runs that one", inOneMode[0].advice);
    // Whoever is misspelt may be the one who is not named.
    const auto misspelt = never("[5, 6]", "[55]");
    ASSERT_EQ(1u, misspelt.size()) << ToText(misspelt);
    EXPECT_EQ(Severity::Error, misspelt[0].severity);
}

TEST(References, ModesThatChangeNothingAreAdvice)
{
    UINT32     line = 0;
    const auto same = NewFindingsOf(ReplacedText(RightText, "calculatorID: [6, 5]", "calculatorID: [5, 6]", 0, line));
    ASSERT_EQ(1u, same.size()) << ToText(same);
    EXPECT_EQ("Default|Sensor.0 kirodbactivecalculators", same[0].path);
    EXPECT_EQ("holds the same as in the mode above", same[0].value);
    EXPECT_EQ(line, same[0].place->line);

    const auto empty = NewFindingsOf(RightText + "      Sensor.2: {}\n");
    ASSERT_EQ(1u, empty.size()) << ToText(empty);
    EXPECT_EQ("Default|Sensor.2 mode", empty[0].path);
    EXPECT_TRUE(NewFindingsOf(RightText + "      Sensor.2: {}\n      Sensor.3: {link: Default|Sensor.2}\n").empty());
}

TEST(References, ChannelsComeFromAFile)
{
    const TemporaryFile file("channels.txt");
    const auto          names = tuningcheck::ReadChannels(file.Write(std::string("# of a host\n\n  Luma \r\nHist")));
    EXPECT_EQ((std::vector<std::string>{"Luma", "Hist"}), names);
    EXPECT_THROW((VOID)tuningcheck::ReadChannels(file.Write(std::string("# none\n"))), tuningfile::InputError);

    // Without any list there is nothing to go by.
    const auto judged = [](std::vector<std::string> channels)
    { return ToText(tuningcheck::Judge(tuningfile::ParseText(RightText, "t.yaml"), {std::move(channels)})); };
    EXPECT_EQ(std::string::npos, judged({}).find("channel1"));
    EXPECT_NE(std::string::npos,
              judged(names).find("channel1 is 'SafeLuma', expected a channel of statistics: Hist, Luma"));
}

}  // namespace
