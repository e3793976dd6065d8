#include "tests/parameters/setmanagerfixture.h"

#include "parameters/tuningsetmanager.h"
#include "schema/kirotouch.h"

namespace
{

using enum ModeType;

}  // namespace

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

TEST_F(SetManagerTest, ABareModuleHasAnIdentityAndNoMore)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    zsl   = maker.Mode(root, Usecase, 3);
    maker.builder.AddModule("plain", {3, 4, 1}, root, {1});
    const UINT32 second = maker.builder.AddModule("plain", {3, 4, 1}, video, {2});
    maker.builder.AddModule("plain", {3, 4, 1}, zsl, {}, second);
    ParameterSetManager& manager = Open(maker.Build());
    const auto           id      = [&](const std::vector<TuningMode>& rBranch)
    {
        const auto* pRecord = Get<BareModuleType>(manager, "plain", rBranch);
        return (pRecord != nullptr) ? pRecord->SymbolTableID : 0;
    };
    EXPECT_EQ(id({}), 1u);
    EXPECT_EQ(id(Branch({{Usecase, 2}})), second);
    EXPECT_EQ(id(Branch({{Usecase, 3}})), second);
}

TEST_F(SetManagerTest, TheStoresKnowTheirModules)
{
    TuningFileMaker          maker;
    const UINT32             root       = maker.Table();
    CHAR                     revision[] = "r7";
    kirotouch::KIROTouchType touch      = {.module_version    = {.major_revision = 10},
                                           .parameter_version = {.revision = revision}};
    maker.writer.AddModule("kirotouch", {10, 0, 0}, root,
                           *TuningRecordOf(static_cast<const kirotouch::KIROTouchType*>(nullptr)), &touch);
    maker.builder.AddModule("lsc34_ife", {3, 4, 1}, root, {1, 2});
    TuningSetManager tuning("rear");
    tuning.SetLiveTuningAutostart(false);
    ASSERT_TRUE(LoadBuffer(tuning, maker.Build())) << log.Text();
    const kirotouch::KIROTouchType* pTouch = tuning.GetModule_kirotouch(nullptr, 0, nullptr);
    ASSERT_NE(pTouch, nullptr);
    EXPECT_EQ(pTouch->SymbolTableID, 1u);
    EXPECT_EQ(pTouch->module_version.major_revision, 10);
    EXPECT_STREQ(pTouch->parameter_version.revision, "r7");
    EXPECT_NE(tuning.GetModule_lsc34_ife(nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(tuning.GetModule_kiroface(nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(tuning.GetDefaultModule(1), nullptr);
    EXPECT_TRUE(log.Has("Failed to find module 0x1 in DefaultModuleMap\n"));
    EXPECT_FALSE(tuning.UpdateBinaryParameters(nullptr, 0));
    EXPECT_TRUE(log.Has("UpdateBinaryParameters not available.  To enable, add --update when generating parser utility "
                        "code\n"));

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
