#include "tests/parameters/setmanagerfixture.h"

#include "parameters/tuningsetmanager.h"

TEST_F(SetManagerTest, WhatAModuleRefusesItNamesByItsRecordType)
{
    const std::tuple<const CHAR*, VersionUnion, const CHAR*> cases[] = {
        // Versions are shown as the 64 bits of the file: major, minor in the upper half word, patch in the upper word.
        {"alpha",
         {10, 0, 1},
         "Unable to create AlphaTypeClass, binary version (4294967306) does not match source version (10)\n"},
        {"beta",
         {9, 1, 0},
         "Unable to create BetaTypeClass, binary version (65545) does not match source version (10)\n"},
        {"plain",
         {3, 4, 0},
         "Unable to create plainTypeClass, binary version (262147) does not match source version (4295229443)\n"},
    };
    for (const auto& [pName, version, pLog] : cases)
    {
        TuningFileMaker maker;
        maker.builder.AddModule(pName, version, maker.Table(), std::vector<BYTE>(64));
        ParameterSetManager manager("cam", smallschema::Modules, Verbose());
        EXPECT_FALSE(LoadBuffer(manager, maker.Build()));
        EXPECT_TRUE(log.Has(pLog, "E")) << log.Text();
    }
}

TEST_F(SetManagerTest, AModuleIsNotMadeFromTheDataOfAnother)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    DefaultModule*      pAlpha = manager.GetDefaultModule(namehash::OfName("alpha"));
    ModuleData          foreign(0xAB, 1, 1, smallschema::RecordVersion, 0, &manager, &manager, nullptr, &manager);
    EXPECT_EQ(pAlpha->DefaultInstance().Create(&foreign, pAlpha), nullptr);
    CHAR text[128];
    std::snprintf(text, sizeof(text), "does not match source name hash (0x%016llx)\n",
                  static_cast<unsigned long long>(namehash::OfName("alpha")));
    EXPECT_TRUE(
        log.Has("Unable to create AlphaTypeClass, binary name hash (0x00000000000000ab) " + std::string(text), "E"))
        << log.Text();
}

TEST_F(SetManagerTest, OtherStoresHaveModulesOfTheirOwn)
{
    TuningFileMaker sensor;
    sensor.builder.AddModule("sensorDriverData", {1, 0, 0}, sensor.Table(), {1});
    ImageSensorModuleSetManager module("rear");
    ASSERT_TRUE(LoadBuffer(module, sensor.Build()));
    EXPECT_NE(module.GetModule_sensorDriverData(nullptr, 0, nullptr), nullptr);

    TuningFileMaker face;
    face.builder.AddModule("fdconfigdata", {1, 0, 0}, face.Table(), {1});
    fdSetManager faces("rear");
    ASSERT_TRUE(LoadBuffer(faces, face.Build()));
    EXPECT_NE(faces.GetModule_fdconfigdata(nullptr, 0, nullptr), nullptr);
    EXPECT_FALSE(LoadBuffer(faces, sensor.Build()));
}
