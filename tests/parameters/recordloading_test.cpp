#include "parameters/recordloader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "platform/tavodesk.h"
#include "tests/parameters/loadedrecord.h"
#include "tests/support/allforms.h"
#include "tests/support/loadedtable.h"
#include "tests/support/recordwriter.h"
#include "tests/support/systemlogcapture.h"

using namespace allforms;

namespace
{

using Source = LoadedTable::Source;

constexpr UINT32 OwnID = 0x05000007;

ParameterFile FileOf(const EverythingType& rRecord, const VersionUnion& rVersion, bool define)
{
    ParameterFileBuilder builder(rVersion);
    RecordWriter         writer(builder);
    if (define)
    {
        writer.AddModule("everything", ModuleVersion, 0, tuning::DescriptionOf<EverythingType>(), &rRecord);
    }
    else
    {
        builder.AddModule("everything", ModuleVersion, 0,
                          writer.Encode(tuning::DescriptionOf<EverythingType>(), &rRecord));
    }
    return builder.Build();
}

TEST(RecordLoading, EveryFormSurvivesTheWayThroughAFile)
{
    const Everything original;
    for (const VersionUnion& rVersion : {VersionUnion(6, 0, 0), VersionUnion(6, 3, 0), VersionUnion(7, 0, 0)})
    {
        for (const bool define : {false, true})
        {
            for (const Source source : {Source::Buffer, Source::Disk})
            {
                SCOPED_TRACE(::testing::Message() << rVersion.Version.Major << " " << define);
                const ParameterFile file = FileOf(original.record, rVersion, define);
                SystemLogCapture    log;
                LoadedTable         loaded(file, source);
                ASSERT_TRUE(loaded.loaded) << log.Text();
                if (define && rVersion == BinaryFileFormat::MultiModeTableVersion)
                {
                    // Otherwise the load is slow, and nothing else says so.
                    EXPECT_TRUE(loaded.table->FindModuleStructure(namehash::OfName("everything"))
                                    ->IsLayoutOf(tuning::DescriptionOf<EverythingType>()));
                }
                for (int round = 0; round < 2; ++round)
                {
                    const UINT64 before = LiveAllocations();
                    {
                        Loaded<EverythingType> result(loaded, 1);
                        EXPECT_EQ(log.Count("", "E") + log.Count("", "W"), 0U) << log.Text();
                        const EverythingType& r = result.record;
                        EXPECT_EQ(r.corners[1].y, 3);
                        EXPECT_EQ(r.leaves[0].curve[1], 0.75F);
                        EXPECT_NE(r.leavesID, 0U);
                        EXPECT_EQ(r.absent, nullptr);
                        // What is loaded makes the same file again.
                        EXPECT_EQ(FileOf(r, rVersion, define).bytes, file.bytes);
                    }
                    EXPECT_EQ(LiveAllocations(), before);
                    // Definitions that have matched are dropped and not missed.
                    loaded.table->ClearDefinitions(false);
                    EXPECT_EQ(loaded.table->Definitions().StructureCount(), 0U);
                }
            }
        }
    }
}

TEST(RecordLoading, AnEntryThatIsNotFoundGivesARecordOfZerosWithTheStoresOwnMember)
{
    const Everything              original;
    LoadedTable                   loaded(FileOf(original.record, {7, 0, 0}, true));
    EverythingType                record = {.SymbolTableID = OwnID, .last = 5};
    ParameterFileSymbolTableEntry entry;
    SystemLogCapture              log;
    EXPECT_FALSE(loaded.table->Find(entry, 55, true));
    RecordLoader::LoadModule(tuning::DescriptionOf<EverythingType>(), &record, entry, namehash::OfName("everything"));
    EXPECT_EQ(record.last, 0U);
    EXPECT_EQ(record.title, nullptr);
    EXPECT_EQ(record.SymbolTableID, OwnID);
}

/// A file of modules of one record, of which only the leaves are there. The curves and names of all leaves are the same
/// block.
/// @param isFirstWithoutName whether the name of the first leaf cannot be found
ParameterFile FileOfLeaves(UINT32 leafCount, UINT32 modules, bool isFirstWithoutName)
{
    ParameterFileBuilder builder;
    const UINT32         curve = builder.AddData(std::vector<BYTE>(60000, 1));
    ByteWriter           leaves;
    for (UINT32 index = 0; index < leafCount; ++index)
    {
        const UINT32 name = (isFirstWithoutName && index == 0) ? 9999U : curve;
        leaves.Add<UINT32>(16, 15000, curve, 60000, name);
    }
    const EverythingType record{};
    std::vector<BYTE>    block = RecordWriter(builder).Encode(tuning::DescriptionOf<EverythingType>(), &record);
    // Count and entry of the leaves stand before the pairs of notes, limit, centre, remark and absent, and last.
    const UINT32 pair[] = {leafCount, builder.AddData(leaves.Get())};
    std::memcpy(block.data() + block.size() - 4 - 6 * 8, pair, sizeof(pair));
    for (; modules > 0; --modules)
    {
        builder.AddModule("everything", ModuleVersion, 0, block);
    }
    return builder.Build();
}

TEST(HostileFiles, AFewBytesCannotStandForEndlessRecords)
{
    // Each of three thousand leaves points at the same block, and each module of many does so again.
    const ParameterFile file = FileOfLeaves(3000, 20, false);
    for (const Source source : {Source::Buffer, Source::Disk})
    {
        LoadedTable      loaded(file, source);
        SystemLogCapture log;
        const UINT64     before = TavoDesk::GetAllocationCounters().bytes;
        {
            std::vector<std::unique_ptr<Loaded<EverythingType>>> records;
            for (UINT32 id = 1; id <= 20; ++id)
            {
                records.push_back(std::make_unique<Loaded<EverythingType>>(loaded, id));
            }
            ASSERT_EQ(records[0]->record.leavesCount, 3000U);
        }
        const UINT64 allocated = TavoDesk::GetAllocationCounters().bytes - before;
        EXPECT_LT(allocated, 8 * 1024 * 1024 + 64 * file.bytes.size());
        EXPECT_EQ(log.Count("bytes of work to load from a file of ", "E"), 1U);
    }
}

TEST(HostileFiles, ALoadDoesNotPayForAnotherOneBesideIt)
{
    // Sixteen leaves of one curve cost more than half of what a load may.
    LoadedTable loaded(FileOfLeaves(16, 2, true), Source::Disk);
    loaded.table->ClearDefinitions(false);
    bool isStarted = false;
    bool isCut     = false;
    // The second load runs from begin to end while the first one stands at its first leaf.
    auto beside = [&](const CHAR* pLine)
    {
        isCut = isCut || std::strstr(pLine, "bytes of work to load") != nullptr;
        if (std::strstr(pLine, "entry ID 9999 out of range") != nullptr && !std::exchange(isStarted, true))
        {
            const Loaded<EverythingType> second(loaded, 2);
        }
    };
    using Beside = decltype(beside);
    TavoDesk::SetSystemLogSink([](VOID* pContext, UINT64, const CHAR*, UINT32, const CHAR* pLine)
                               { (*static_cast<Beside*>(pContext))(pLine); },
                               &beside);
    {
        Loaded<EverythingType> first(loaded, 1);
        ASSERT_EQ(first.record.leavesCount, 16U);
        EXPECT_EQ(first.record.leaves[15].curveCount, 15000U);
        EXPECT_NE(first.record.leaves[15].curve, nullptr);
    }
    TavoDesk::SetSystemLogSink(nullptr, nullptr);
    EXPECT_TRUE(isStarted);
    EXPECT_FALSE(isCut);
}

}  // namespace
