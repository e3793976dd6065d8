/// What a patch of a tuning changes, and what its writer is told about mistakes.
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/patchinput.h"
#include "tools/tuningfile/textinput.h"

namespace
{

using namespace tuningfile;

constexpr const char* Base = R"(
modes:
  Default:
    modules:
      kirometering: {moduleID: 1, luxIndexOperation: {filteringFactor: 0.25}}
      kirosync: {luxSyncConfig: Independent}
      kirodbroi: {data: [{dataID: 1, description: first, coords: [0, 0, 1, 1]}, {dataID: 2}]}
    children:
      Sensor.0: {modules: {kirometering: {moduleID: 2}, kirodbroi: {dataBank: {bankID: 7}}}}
      Sensor.1: {children: {Usecase.Video: {modules: {kirometering: {}}}}}
      Sensor.2: {link: Default|Sensor.0}
      Sensor.3: {link: Default}
)";

/// A tuning as the store holds it.
Tuning Stored()
{
    return ReadBinary(WriteBinary(ParseText(Base, "base.yaml"), NewestVersion), "base").tuning;
}

template <typename Record> const Record& RecordOf(const Tuning& rTuning, const std::string& rPath, const char* pName)
{
    const ModeTable& rTable = rTuning.tables[0];
    UINT32           mode   = 0;
    while (PathOf(rTable, mode) != rPath)
    {
        ++mode;
    }
    return *static_cast<const Record*>(FindModuleOf(rTable.modes[mode], *FindModule(pName))->pRecord);
}

TEST(TuningPatch, ChangesTheNumbersThatItNamesAndNoOthers)
{
    Tuning tuning = Stored();
    EXPECT_EQ(WriteBinary(ParseText(Base, "base.yaml"), NewestVersion), WriteBinary(tuning, NewestVersion));
    ApplyPatch(R"(
modes:
  Default:
    modules:
      kirosync: {luxSyncConfig: UseMaster}
      kirodbroi: {data: {1: {coords: {3: 1.5}, weight: 0.1}}}
    children:
      Sensor.2: {modules: {kirometering: {luxIndexOperation: {enableCompensation: true}}}}
)",
               "p.yaml", tuning);
    EXPECT_EQ(1, static_cast<int>(RecordOf<kirosync::KIROSyncType>(tuning, "Default", "kirosync").luxSyncConfig));
    const auto& rROI = RecordOf<kirodbroi::KIRODBROIType>(tuning, "Default", "kirodbroi");
    EXPECT_EQ(1.0f, rROI.data[0].coords[3]);
    EXPECT_STREQ("first", rROI.data[0].description);
    EXPECT_EQ(0.0f, rROI.data[1].coords[2]);
    EXPECT_EQ(1.5f, rROI.data[1].coords[3]);
    EXPECT_EQ(0.1f, rROI.data[1].weight);
    const auto& rSensor = RecordOf<kirometering::KIROMeteringType>(tuning, "Default|Sensor.0", "kirometering");
    EXPECT_EQ(TRUE, rSensor.luxIndexOperation.enableCompensation) << "what a link leads to";
    EXPECT_EQ(2u, rSensor.moduleID);
}

TEST(TuningPatch, WhatIsAlikeChangesTogetherAsInACamera)
{
    Tuning tuning = Stored();
    ApplyPatch("modes: {Default: {modules: {kirodbroi: {data: {0: {weight: 3}}}}, children: {Sensor.1: {modules: "
               "{kirometering: {moduleID: 9}}}}}}",
               "p.yaml", tuning);
    const auto moduleID = [&tuning](const char* pPath)
    { return RecordOf<kirometering::KIROMeteringType>(tuning, pPath, "kirometering").moduleID; };
    EXPECT_EQ(9u, moduleID("Default")) << "a mode without the module has that of a mode above";
    EXPECT_EQ(9u, moduleID("Default|Sensor.1|Usecase.Video")) << "a module like another one";
    EXPECT_EQ(2u, moduleID("Default|Sensor.0"));
    EXPECT_EQ(3.0f, RecordOf<kirodbroi::KIRODBROIType>(tuning, "Default|Sensor.0", "kirodbroi").data[0].weight)
        << "a list like another one";
}

TEST(TuningPatch, MistakesNamePlaceAndExpectation)
{
    const std::pair<const char*, const char*> mistakes[] = {
        {"{kirodbroi: {data: [{weight: 1}]}}", "47: a list found, expected a map of positions in data"},
        {"{kirodbroi: {data: {2: {weight: 1}}}}",
         "48: '2' found for a position in data, expected an integer from 0 to 1"},
        {"{kirodbroi: {data: {fill: {weight: 1}}}}",
         "48: 'fill' found for a position in data, expected an integer from 0 to 1"},
        {"{kirodbroi: {data: {0: {description: x}}}}",
         "65: description is a text, expected a number: a patch changes numbers only"},
        {"{kirodbroi: {dataBank: {priorityMap: {0: {priority: 1}}}}}",
         "52: 'priorityMap' holds nothing in the tuning, expected what it has"},
        {"{kirodbroi: {datta: {}}}", "41: unknown member of KIRODBROIType 'datta', did you mean 'data'?"},
        {"{kirometering: {moduleID: ~}}", "54: nothing found for moduleID, expected an integer"},
        {"{kiroconvergence: {}}", "29: the tuning has no module 'kiroconvergence' for 'Default'"},
        {"{}, children: {Sensor.7: {}}", "43: the tuning has no mode 'Sensor.7' below 'Default'"},
        {"{}, preserve: true", "32: unknown entry of a mode 'preserve', expected one of: modules, children"},
    };
    for (const auto& [pModules, pMessage] : mistakes)
    {
        const std::string text   = std::string("modes: {Default: {modules: ") + pModules + "}}";
        Tuning            tuning = Stored();
        EXPECT_EQ(std::string("p.yaml:1:") + pMessage, RefusalOf([&] { ApplyPatch(text, "p.yaml", tuning); })) << text;
    }
    const std::pair<const char*, const char*> others[] = {
        {"tables: [{name: night, modes: {}}]", "17: the tuning has no mode table 'night'"},
        {"modes: {Default: &a {children: {Sensor.3: *a}}}", "33: modes nested too deeply, expected at most 64 levels"},
    };
    for (const auto& [pText, pMessage] : others)
    {
        Tuning tuning = Stored();
        EXPECT_EQ(std::string("p.yaml:1:") + pMessage,
                  RefusalOf([&, pText = pText] { ApplyPatch(pText, "p.yaml", tuning); }));
    }
}

}  // namespace
