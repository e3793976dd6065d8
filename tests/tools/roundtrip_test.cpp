/// What goes into a file comes out again: through text, through every file version with records, and through both ways
/// in which the store uses a file.
#include <gtest/gtest.h>

#include "parameters/parametersetmanager.h"
#include "parameters/tablemodule.h"
#include "tests/support/allforms.h"
#include "tests/support/temporaryfile.h"
#include "tests/tools/randomrecords.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/recordinput.h"
#include "tools/tuningfile/recordoutput.h"
#include "tools/tuningfile/samerecord.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace
{

using namespace tuningfile;

/// Every described module at Default, variants of them below, one mode that is the same as another, and one that is
/// linked.
Tuning MakeTuning(RandomRecords& rRandom)
{
    Tuning tuning;
    tuning.createdBy = "test";
    tuning.binaryTag = "round trip";
    tuning.pMemory   = rRandom.Memory();
    tuning.tables.emplace_back();
    std::vector<Mode>& rModes = tuning.tables.back().modes;
    // clang-format off
    rModes = {{0,  0, 0, {}, {}, false, {}},
              {1,  7, 0,  0, {}, false, {}},
              {2,  2, 0,  1, {}, true,  {}},
              {2,  1, 0,  1, {}, false, {}},
              {2,  3, 0,  1,  2, false, {}},
              {5, 14, 4,  2, {}, false, {}},
              {5, 14, 6,  5, {}, false, {}}};
    // clang-format on
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord == nullptr)
        {
            continue;
        }
        const VOID* pDefault = rRandom.Make(*rModule.pRecord);
        const VOID* pVariant = rRandom.MakeVariant(*rModule.pRecord, pDefault);
        rModes[0].modules.push_back({&rModule, pDefault});
        rModes[2].modules.push_back({&rModule, pVariant});
        rModes[3].modules.push_back({&rModule, pVariant});
        rModes[5 + rRandom.Below(2)].modules.push_back({&rModule, rRandom.MakeVariant(*rModule.pRecord, pVariant)});
    }
    return tuning;
}

VOID ExpectSame(const Tuning& rExpected, const Tuning& rActual)
{
    EXPECT_EQ(rExpected.createdBy, rActual.createdBy);
    EXPECT_EQ(rExpected.binaryTag, rActual.binaryTag);
    ASSERT_EQ(rExpected.tables.size(), rActual.tables.size());
    for (size_t table = 0; table < rExpected.tables.size(); ++table)
    {
        EXPECT_EQ(rExpected.tables[table].name, rActual.tables[table].name);
        ASSERT_EQ(rExpected.tables[table].modes.size(), rActual.tables[table].modes.size());
        for (size_t index = 0; index < rExpected.tables[table].modes.size(); ++index)
        {
            SCOPED_TRACE(index);
            const Mode& rWanted = rExpected.tables[table].modes[index];
            const Mode& rFound  = rActual.tables[table].modes[index];
            const auto  fields  = [](const Mode& rMode)
            { return std::tie(rMode.mode, rMode.subMode, rMode.group, rMode.parent, rMode.link, rMode.preserve); };
            EXPECT_EQ(fields(rWanted), fields(rFound));
            EXPECT_EQ(rWanted.modules.size(), rFound.modules.size());
            for (const Module& rModule : rWanted.modules)
            {
                const Module* pModule = FindModuleOf(rFound, *rModule.pDescription);
                ASSERT_NE(nullptr, pModule) << rModule.pDescription->pName;
                EXPECT_TRUE(SameRecord(*rModule.pDescription->pRecord, rModule.pRecord, pModule->pRecord))
                    << rModule.pDescription->pName;
            }
        }
    }
}

/// The modes of the tree in the order of a walk from the root, as texts and the store list them.
Tuning InWalkOrder(const Tuning& rTuning)
{
    constexpr UINT32         Order[] = {0, 1, 2, 5, 6, 3, 4};
    Tuning                   ordered = rTuning;
    std::map<UINT32, UINT32> place;
    for (UINT32 index = 0; index < std::size(Order); ++index)
    {
        place[Order[index]]            = index;
        ordered.tables[0].modes[index] = rTuning.tables[0].modes[Order[index]];
    }
    for (Mode& rMode : ordered.tables[0].modes)
    {
        rMode.parent = rMode.parent.has_value() ? std::optional(place[*rMode.parent]) : std::nullopt;
        rMode.link   = rMode.link.has_value() ? std::optional(place[*rMode.link]) : std::nullopt;
    }
    return ordered;
}

TEST(RoundTrip, TextKeepsEveryRecord)
{
    for (UINT32 seed = 1; seed <= 5; ++seed)
    {
        SCOPED_TRACE(seed);
        RandomRecords random(seed);
        const Tuning  tuning = MakeTuning(random);
        ExpectSame(InWalkOrder(tuning), ParseText(WriteText(tuning), "t.yaml"));
    }

    // Dump and compile give the same bytes.
    RandomRecords           random(21);
    const std::vector<BYTE> first  = WriteBinary(InWalkOrder(MakeTuning(random)), NewestVersion);
    const std::string       text   = WriteText(ReadBinary(first, "t.bin").tuning);
    const std::vector<BYTE> second = WriteBinary(ParseText(text, "t.yaml"), NewestVersion);
    EXPECT_EQ(first, second);
    EXPECT_EQ(text, WriteText(ReadBinary(second, "t.bin").tuning));
}

TEST(RoundTrip, EveryVersionWithRecordsKeepsThemAndReadsWithoutAWarning)
{
    for (const char* pVersion : {"6.0.0", "6.9.9", "7.0.0"})
    {
        SCOPED_TRACE(pVersion);
        RandomRecords           random(11);
        const Tuning            tuning = MakeTuning(random);
        const std::vector<BYTE> bytes  = WriteBinary(tuning, *ParseVersion(pVersion));
        const StoreLog          log;
        const BinaryTuning      binary = ReadBinary(bytes, "t.bin");
        EXPECT_EQ(std::vector<std::string>(), log.Lines());
        EXPECT_EQ(std::vector<std::string>(), binary.notes);
        ExpectSame(InWalkOrder(tuning), binary.tuning);
    }
}

TEST(RoundTrip, SeveralNamedTablesKeepTheirOrder)
{
    const Tuning tuning = ParseText("tables:\n"
                                    "  - name: wide\n"
                                    "    modes: {Default: {modules: {kirometering: {moduleID: 1}}}}\n"
                                    "  - modes: {}\n"
                                    "  - name: tele\n"
                                    "    modes: {Default: {modules: {kirometering: {moduleID: 3}}}}\n",
                                    "t.yaml");
    const Tuning again  = ReadBinary(WriteBinary(tuning, NewestVersion), "t.bin").tuning;
    ExpectSame(tuning, again);
    EXPECT_EQ("tele", again.tables[2].name);
    ExpectSame(tuning, ParseText(WriteText(again), "again.yaml"));
}

TEST(RoundTrip, EveryFormOfTheTablesIsKept)
{
    const tuning::RecordDescription& rDescription = *allforms::Module.pRecord;
    for (UINT32 seed = 1; seed <= 40; ++seed)
    {
        SCOPED_TRACE(seed);
        RandomRecords random(seed);
        const VOID*   pRecord  = random.Make(rDescription);
        const VOID*   pVariant = random.MakeVariant(rDescription, pRecord);

        // Through text, whole and as a difference.
        RecordArena arena;
        TextNode    node = TextNode::Map();
        node.Add("whole", RecordToText(rDescription, pRecord, nullptr));
        node.Add("difference", RecordToText(rDescription, pVariant, pRecord));
        const YamlInput   yaml(ToYaml(node), "t.yaml");
        TextPlaces        places;
        const RecordInput input(yaml, arena, places);
        VOID*             pRead = arena.Allocate(rDescription.size);
        input.ReadRecord(yaml.Root()["whole"], rDescription, pRead);
        EXPECT_TRUE(SameRecord(rDescription, pRecord, pRead));
        input.ReadRecord(yaml.Root()["difference"], rDescription, pRead);
        EXPECT_TRUE(SameRecord(rDescription, pVariant, pRead));

        // Through a file and the store.
        Tuning tuning;
        tuning.tables.push_back({"", {{0, 0, 0, {}, {}, false, {{&allforms::Module, pRecord}}}}});
        const std::vector<BYTE>      bytes = WriteBinary(tuning, NewestVersion);
        ParameterSetManager::Options options;
        options.fileMode = false;
        const StoreLog      log;
        ParameterSetManager store(nullptr, {&allforms::Module, 1}, options);
        ASSERT_TRUE(store.LoadBinaryParameters(bytes.data(), bytes.size())) << store.GetErrorText();
        auto* pModule = static_cast<TableModule*>(store.GetModuleInternal(0, "allforms", nullptr, 0, nullptr));
        ASSERT_NE(nullptr, pModule);
        EXPECT_TRUE(SameRecord(rDescription, pRecord, pModule->Record()));
        EXPECT_EQ(std::vector<std::string>(), log.Lines());
    }
}

TEST(RoundTrip, FileModeFindsTheModuleOfEachMode)
{
    const TemporaryFile file("roundtrip_test.bin");
    RandomRecords       random(31);
    const Tuning        tuning = MakeTuning(random);
    file.Write(WriteBinary(tuning, NewestVersion));

    TuningMode branch[4]      = {};
    branch[1].mode            = ModeType::Sensor;
    branch[1].subMode.value   = 7;
    branch[2].mode            = ModeType::Usecase;
    branch[2].subMode.usecase = ModeUsecaseSubModeType::Video;
    branch[3].mode            = ModeType::Scene;
    branch[3].subMode.scene   = ModeSceneSubModeType::NightPortrait;
    {
        const StoreLog      log;
        ParameterSetManager store(nullptr, tuning::TuningModules, ParameterSetManager::Options{});
        ASSERT_TRUE(store.LoadBinaryParameters(file.path.c_str())) << store.GetErrorText();
        const std::vector<Mode>& rModes = tuning.tables[0].modes;
        for (const Module& rModule : rModes[0].modules)
        {
            const CHAR*                      pName   = rModule.pDescription->pName;
            const tuning::RecordDescription& rRecord = *rModule.pDescription->pRecord;
            const Module*                    pNight  = FindModuleOf(rModes[5], *rModule.pDescription);
            pNight              = (pNight != nullptr) ? pNight : FindModuleOf(rModes[6], *rModule.pDescription);
            const auto recordOf = [&](UINT32 count)
            { return static_cast<TableModule*>(store.GetModuleInternal(0, pName, branch, count, nullptr))->Record(); };
            EXPECT_TRUE(SameRecord(rRecord, rModule.pRecord, recordOf(2))) << pName;
            EXPECT_TRUE(SameRecord(rRecord, FindModuleOf(rModes[2], *rModule.pDescription)->pRecord, recordOf(3)))
                << pName;
            EXPECT_TRUE(SameRecord(rRecord, pNight->pRecord, recordOf(4))) << pName;
        }
        EXPECT_EQ(std::vector<std::string>(), log.Lines());
    }
}

}  // namespace
