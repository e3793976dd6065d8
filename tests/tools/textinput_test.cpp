/// What a text means, and what its writer is told about mistakes.
#include <cmath>
#include <limits>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace
{

using namespace tuningfile;

template <typename Record> const Record& RecordOf(const Tuning& rTuning, UINT32 mode, const char* pName)
{
    return *static_cast<const Record*>(FindModuleOf(rTuning.tables[0].modes[mode], *FindModule(pName))->pRecord);
}

TEST(TextInput, AModuleOfADeeperModeStartsAsTheOneAboveIt)
{
    const Tuning tuning   = ParseText(R"(
modes:
  Default:
    modules:
      kirometering:
        moduleID: 7
        luxIndexOperation: {enableCompensation: true, filteringFactor: 0.25}
        dynamicMtrLockEV: {enable: true, EVRange: {start: -2, end: 2}}
      kirodbroi:
        data: [{dataID: 1, description: first, coords: [0, 0, 1, 1]}, {dataID: 2, coords: {fill: 0.5, 3: 1.5}}]
    children:
      Sensor.0:
        children:
          Usecase.Video:
            modules:
              kirometering: {luxIndexOperation: {filteringFactor: 0.5}, dynamicMtrLockEV: ~}
              kirodbroi: {data: [{dataID: 9}]}
)",
                                      "t.yaml");
    const auto&  rDefault = RecordOf<kirometering::KIROMeteringType>(tuning, 0, "kirometering");
    EXPECT_EQ(10, rDefault.module_version.major_revision);
    EXPECT_EQ(0, rDefault.module_version.minor_revision);
    EXPECT_EQ(0u, rDefault.luxIndexOperation.refExposureForLuxIndexZero);
    EXPECT_EQ(-2.0f, rDefault.dynamicMtrLockEV.EVRange.start);

    const auto& rVideo = RecordOf<kirometering::KIROMeteringType>(tuning, 2, "kirometering");
    EXPECT_EQ(10, rVideo.module_version.major_revision);
    EXPECT_EQ(7u, rVideo.moduleID);
    EXPECT_EQ(TRUE, rVideo.luxIndexOperation.enableCompensation);
    EXPECT_EQ(0.5f, rVideo.luxIndexOperation.filteringFactor);
    EXPECT_EQ(FALSE, rVideo.dynamicMtrLockEV.enable);
    EXPECT_EQ(0.0f, rVideo.dynamicMtrLockEV.EVRange.start);

    const auto& rROI = RecordOf<kirodbroi::KIRODBROIType>(tuning, 0, "kirodbroi");
    ASSERT_EQ(2u, rROI.dataCount);
    EXPECT_STREQ("first", rROI.data[0].description);
    EXPECT_EQ(nullptr, rROI.data[1].description);
    EXPECT_EQ(0.5f, rROI.data[1].coords[2]);
    EXPECT_EQ(1.5f, rROI.data[1].coords[3]);

    // An array is replaced as a whole: nothing of the first item is left.
    const auto& rVideoROI = RecordOf<kirodbroi::KIRODBROIType>(tuning, 2, "kirodbroi");
    ASSERT_EQ(1u, rVideoROI.dataCount);
    EXPECT_EQ(9, rVideoROI.data[0].dataID);
    EXPECT_EQ(nullptr, rVideoROI.data[0].description);
    EXPECT_EQ(0.0f, rVideoROI.data[0].coords[3]);
}

TEST(TextInput, MergeKeysGiveWayToWhatStandsBesideThem)
{
    const Tuning tuning = ParseText(R"(
x-common: &common {enableCompensation: true, filteringFactor: 0.25}
x-more: &more {filteringFactor: 0.75, refExposureForLuxIndexZero: 0x10}
modes:
  Default:
    modules:
      kirometering: {luxIndexOperation: {<<: [*common, *more]}}
    children:
      Usecase.2: {modules: {kirometering: {luxIndexOperation: {filteringFactor: 1, <<: *common}}}}
      Scene.Night: {link: Default|Usecase.Video, preserve: true}
)",
                                    "t.yaml");
    const auto&  rLux   = RecordOf<kirometering::KIROMeteringType>(tuning, 0, "kirometering").luxIndexOperation;
    EXPECT_EQ(TRUE, rLux.enableCompensation);
    EXPECT_EQ(0.25f, rLux.filteringFactor);
    EXPECT_EQ(16u, rLux.refExposureForLuxIndexZero);
    EXPECT_EQ(1.0f,
              RecordOf<kirometering::KIROMeteringType>(tuning, 1, "kirometering").luxIndexOperation.filteringFactor);

    const Mode& rNight = tuning.tables[0].modes[2];
    EXPECT_EQ(5, rNight.mode);
    EXPECT_EQ(5, rNight.subMode);
    EXPECT_EQ(1u, rNight.link);
    EXPECT_TRUE(rNight.preserve);
}

TEST(TextInput, NumbersReachTheEndsOfTheirTypes)
{
    const auto lux = [](const std::string& rMembers)
    {
        const Tuning tuning =
            ParseText("modes: {Default: {modules: {kirometering: {luxIndexOperation: " + rMembers + "}}}}", "t");
        return RecordOf<kirometering::KIROMeteringType>(tuning, 0, "kirometering").luxIndexOperation;
    };
    EXPECT_EQ(18446744073709551615u,
              lux("{refExposureForLuxIndexZero: 18446744073709551615}").refExposureForLuxIndexZero);
    EXPECT_EQ(3.40282347e38f, lux("{filteringFactor: 3.4028234664e+38}").filteringFactor);
    EXPECT_TRUE(std::signbit(lux("{filteringFactor: -0}").filteringFactor));
    EXPECT_TRUE(std::isnan(lux("{filteringFactor: .nan}").filteringFactor));
    EXPECT_EQ(-std::numeric_limits<FLOAT>::infinity(), lux("{filteringFactor: -.inf}").filteringFactor);
    // The decimal text lies just above halfway between two floats: reading it as a double first would round it down.
    EXPECT_EQ(0x1.000002p0f, lux("{filteringFactor: 1.00000005960464477539062500000001}").filteringFactor);
}

using Mistakes = std::vector<std::pair<std::string, std::string>>;

/// Texts with a mistake, all with the same begin and end, and what is said of them behind the name of the file.
VOID ExpectMessages(const std::string& rBegin, const std::string& rEnd, const Mistakes& rMistakes)
{
    for (const auto& [text, message] : rMistakes)
    {
        const std::string whole = rBegin + text + rEnd;
        EXPECT_EQ("t.yaml:" + message, RefusalOf([&] { ParseText(whole, "t.yaml"); })) << whole;
    }
}

TEST(TextInput, MistakesInRecordsNamePlaceAndExpectation)
{
    const std::string modules = "modes: {Default: {modules: {\n";
    ExpectMessages(
        modules + "kirometering: {", "}}}}",
        {{"luxIndexOperation: {filterFactor: 1}",
          "2:36: unknown member of LuxIndexOperationType 'filterFactor', did you mean 'filteringFactor'?"},
         {"luxIndexOperation: {gain: 1}",
          "2:36: unknown member of LuxIndexOperationType 'gain', expected one of: enableCompensation, "
          "refExposureForLuxIndexZero, filteringFactor"},
         {"SymbolTableID: 1",
          "2:16: unknown member of KIROMeteringType 'SymbolTableID', expected one of: module_version, "
          "parameter_version, moduleID, luxIndexOperation, dynamicMtrLockEV, trackerStatsROIProcess, "
          "antibandingMetering"},
         {"moduleID: -1", "2:26: '-1' is out of range for moduleID, expected an integer from 0 to 4294967295"},
         {"moduleID: 4294967296",
          "2:26: '4294967296' is out of range for moduleID, expected an integer from 0 to 4294967295"},
         {"moduleID: 1.5", "2:26: '1.5' found for moduleID, expected an integer from 0 to 4294967295"},
         {"moduleID: \"1\"", "2:26: text found for moduleID, expected an integer"},
         {"moduleID: [1]", "2:26: a list found for moduleID, expected an integer"},
         {"moduleID: 1,\n  moduleID: 2", "3:3: 'moduleID' given twice, expected once"},
         {"luxIndexOperation: {filteringFactor: 1e39}",
          "2:53: '1e39' is out of range for filteringFactor, expected a number, 0 or of magnitude 1.401e-45 "
          "to 3.403e+38"},
         {"luxIndexOperation: {enableCompensation: yes}",
          "2:56: 'yes' found for enableCompensation, expected true or false"},
         {"luxIndexOperation: 3",
          "2:35: '3' found, expected a map of enableCompensation, refExposureForLuxIndexZero, filteringFactor"}});
    ExpectMessages(modules + "kirodbroi: {", "}}}}",
                   {{"data: [{coords: [0, 0, 1]}]", "2:29: a list of 3 found for coords, expected a list of 4"},
                    {"data: [{coords: {1: 2}}]",
                     "2:29: no 'fill' for coords, expected a list of 4, or a map of 'fill' and of positions"},
                    {"data: [{coords: {fill: 2, 4: 1}}]",
                     "2:39: '4' found for a position in coords, expected an integer from 0 to 3"},
                    {"data: {dataID: 1}", "2:19: a map found for data, expected a list"}});
    ExpectMessages(
        modules + "kirometeringsceneanalyzer: {luxAnalyzer: {exposureType: ", "}}}}}",
        {{"ExposureSaif",
          "2:57: unknown KIROExposureSelection 'ExposureSaif' for exposureType, did you mean 'ExposureSafe'?"},
         {"Medium", "2:57: unknown KIROExposureSelection 'Medium' for exposureType, expected one of: ExposureShort, "
                    "ExposureSafe, ExposureLong, ExposureNone"}});
    ExpectMessages(
        modules, "}}}",
        {{"kirometring: {}", "2:1: unknown module 'kirometring', did you mean 'kirometering'?"},
         {"kirometering: ", "2:15: nothing found, expected a map of module_version, parameter_version, moduleID, "
                            "luxIndexOperation, dynamicMtrLockEV, trackerStatsROIProcess, ..."},
         {"kirometering:\n  moduleID: -1", "3:11: '{' opened at 1:28 is not closed, expected ',' or '}'"}});
}

TEST(TextInput, TriggersHaveNames)
{
    const auto triggerOf = [](std::string_view bank)
    {
        const std::string text = fmt::format(
            "modes: {{Default: {{modules: {{kirodbconvbase: {{data: [{{value: {{trigger1DataBank: {{{}}}}}}}]}}}}}}}}",
            bank);
        const Tuning tuning = ParseText(text, "t.yaml");
        const auto*  pBase =
            static_cast<const kirodbconvbase::KIRODBConvBaseType*>(tuning.tables[0].modes[0].modules[0].pRecord);
        EXPECT_NE(std::string::npos, WriteText(tuning).find("dataID: lux}")) << bank;
        return pBase->data[0].value.trigger1DataBank.dataID;
    };
    EXPECT_EQ(TriggerCtrlLux, triggerOf("bankID: BankIDTriggers, dataID: lux"));
    EXPECT_EQ(TriggerCtrlLux, triggerOf("dataID: lux, bankID: BankIDTriggers"));
    EXPECT_EQ(TriggerCtrlLux, triggerOf("bankID: BankIDTriggers, dataID: 8"));
    ExpectMessages("modes: {Default: {modules: {kirodbconvbase: {data: [{value: {trigger1DataBank: {", "}}}]}}}}",
                   {{"bankID: BankIDTriggers, dataID: luxx", "1:113: unknown trigger 'luxx', did you mean 'lux'?"},
                    {"bankID: BankIDSceneAnalyzer, dataID: lux",
                     "1:118: 'lux' names an entry of the trigger bank, expected bankID: BankIDTriggers beside it, or a "
                     "number"}});
}

TEST(TextInput, MistakesInTheTreeOfModesNamePlaceAndExpectation)
{
    ExpectMessages(
        "modes: {Default: {children: {", "}}}",
        {{"Usecase.Vidio: {}", "1:30: unknown sub-mode 'Vidio' of Usecase, did you mean 'Video'?"},
         {"Camera.0: {}", "1:30: unknown mode 'Camera', expected one of: Default, Sensor, Usecase, Feature1, Feature2, "
                          "Scene, Effect"},
         {"Sensor: {}", "1:30: mode 'Sensor' without a sub-mode, expected 'Sensor.<sub-mode>'"},
         {"Sensor.70000: {}", "1:30: unknown sub-mode '70000' of Sensor, expected a number from 0 to 65535"},
         {"Sensor.0: {children: {Default: {}}}",
          "1:52: mode 'Default' below another mode, expected it at the root only"},
         {"Usecase.2: {}, Usecase.Video: {}", "1:45: mode 'Usecase.Video' given twice, expected once"},
         {"Sensor.0: {link: Default|Sensor.1}",
          "1:47: no mode 'Sensor.1' on the path 'Default|Sensor.1', did you mean 'Sensor.0'?"},
         {"Sensor.0: {link: Default|Sensor.1}, Sensor.1: {link: Default|Sensor.0}",
          "1:47: a link that leads back to itself, expected a chain that ends at a mode"},
         {"Sensor.0: {link: Default, children: {}}",
          "1:41: a link beside modules or children, expected it alone: it stands for all of them"}});
    ExpectMessages(
        "", "",
        {{"", "1:1: no YAML document, expected one"},
         {"modes: {}\n---\nmodes: {}", "2:1: another YAML document, expected one"},
         {"# a comma that no list has\n,", "2:1: another YAML document, expected one"},
         {"[1]", "1:1: a list found, expected a map with 'modes' or 'tables'"},
         {"tuning: {}", "1:1: neither 'modes' nor 'tables' given, expected one of them"},
         {"mods: {}", "1:1: unknown entry 'mods', did you mean 'modes'?"},
         {"modes: {Sensor.0: {}}", "1:9: mode 'Sensor.0' at the root, expected 'Default'"},
         {"modes: {Default: {modules: {kiroev: {}}, children: {Default: {group: 1, modules: {kiroev: {}}}}}}",
          "1:83: module 'kiroev' given in two groups of a mode, expected once"},
         {"modes: {Default: {preserve: 1}}", "1:29: '1' found for preserve, expected true or false"},
         {"modes: {Default: {group: 256}}", "1:26: '256' found for group, expected an integer from 0 to 255"},
         {"x-a: &a {Sensor.0: {children: *a}}\nmodes: {Default: {children: *a}}",
          "1:10: modes nested too deeply, expected at most 64 levels"},
         {"modes: &a {<<: *a}", "1:8: maps merged too deeply, expected no cycle of merge keys"},
         {"tuning: {binaryTag: " + std::string(65, '1') + "}\nmodes: {}",
          "1:21: a text of 65 bytes found for binaryTag, expected at most 64 bytes and no NUL"}});

    std::string many;
    for (UINT32 table = 0; table < 256; ++table)
    {
        many += "{modes: {Default: {}}},";
    }
    ExpectMessages("tables: [", "]", {{many, "1:9: 256 mode tables, expected at most 255"}});
}

TEST(TextInput, ATextThatIsNoYamlNamesWhereTheMistakeBegan)
{
    ExpectMessages(
        "", "",
        {{"modes: {Default: {}\nx-a: 1\n", "2:1: '{' opened at 1:8 is not closed, expected ',' or '}'"},
         {"modes:\n  Default: {modules: [a, b}\n", "2:27: '[' opened at 2:22 is not closed, expected ',' or ']'"},
         {"modes: {}\nx-a: \"it's\n", "3:2: '\"' opened at 2:6 is not closed, expected another \""},
         {"modes:\n  Default:\n\tmodules: {}\n", "3:1: a tab in the indentation, expected spaces"},
         {"x-a: *b\n", "1:6: the referenced anchor is not defined, expected YAML"}});

    // What only looks like a bracket, a quote or an indentation opens nothing.
    const std::string decoys = "x-a: it's {fine\nx-b: [1, 'it''s', \"a\\\"]\", c: 'd',\n\t2]\nx-c:\n  - >\n    [ {\n\n"
                               "    '\n  - d: |\n      \"a\n    e: &f 'g'\n# [ \"\n\t# h\n";
    ExpectMessages(decoys, "",
                   {{"modes: {Default: {}\n", "15:1: '{' opened at 14:8 is not closed, expected ',' or '}'"}});
    EXPECT_EQ(1u, ParseText(decoys + "modes: {Default: {}}\n", "t.yaml").tables[0].modes.size());
}

}  // namespace
