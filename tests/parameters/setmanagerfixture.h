/// @file
/// A small schema, and tuning files made of it, for tests of the set manager.
#pragma once

#include <deque>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "parameters/parametersetmanager.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"
#include "tests/support/parameterfilebuilder.h"
#include "tests/support/recordwriter.h"
#include "tests/support/systemlogcapture.h"
#include "tests/support/temporaryfile.h"

namespace smallschema
{

/// A module with something to allocate.
struct AlphaType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    INT32                   value;
    UINT32                  stepsCount;
    UINT32                  stepsID;
    float*                  steps;
};
TUNING_RECORD(AlphaType)
    MODULE_HEADER("A record of tests.")
    MEMBER(value)
    VARIABLE(steps)
TUNING_RECORD_END

struct BetaType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    INT32                   value;
};
TUNING_RECORD(BetaType)
    MODULE_HEADER("A record of tests.")
    MEMBER(value)
TUNING_RECORD_END

inline constexpr tuning::ModuleDescription Modules[] = {
    {"alpha", namehash::OfName("alpha"), 10, 0, 0, TuningRecordOf(static_cast<const AlphaType*>(nullptr))},
    {"beta", namehash::OfName("beta"), 10, 0, 0, TuningRecordOf(static_cast<const BetaType*>(nullptr))},
    {"plain", namehash::OfName("plain"), 3, 4, 1, nullptr},
};

inline constexpr VersionUnion RecordVersion{10, 0, 0};

}  // namespace smallschema

using Selector = std::pair<ModeType, UINT16>;

/// Default and the selectors behind it.
inline std::vector<TuningMode> Branch(std::initializer_list<Selector> selectors)
{
    std::vector<TuningMode> branch(1);
    for (const auto& [mode, subMode] : selectors)
    {
        TuningMode& rSelector   = branch.emplace_back();
        rSelector.mode          = mode;
        rSelector.subMode.value = subMode;
    }
    return branch;
}

/// A file of the small schema under construction. A record's steps follow from its value: value + 0.5 and value + 0.25.
class TuningFileMaker
{
public:
    explicit TuningFileMaker(const VersionUnion& rVersion = BinaryFileFormat::MultiModeTableVersion)
        : builder(rVersion), writer(builder)
    {
    }

    /// A table with a Default mode. @return the mode's ID
    UINT32 Table(const std::string& rName = "")
    {
        return builder.AddRootMode(builder.AddModeTable(rName));
    }

    /// @return the new mode's ID
    UINT32 Mode(UINT32 parent, ModeType mode, UINT16 subMode, UINT32 link = BinaryFileFormat::NoLink, UINT32 group = 0,
                UINT32 flags = 0)
    {
        return builder.AddMode(BinaryFileFormat::GetModeTableIndex(parent), static_cast<UINT16>(mode), subMode, parent,
                               group, link, flags);
    }

    /// A new mode with an alpha. @return the mode's ID
    UINT32 AlphaMode(UINT32 parent, ModeType mode, UINT16 subMode, INT32 value)
    {
        const UINT32 id = Mode(parent, mode, subMode);
        Alpha(id, value);
        return id;
    }

    /// @return the entry ID
    UINT32 Alpha(UINT32 mode, INT32 value)
    {
        float                  steps[] = {static_cast<float>(value) + 0.5f, static_cast<float>(value) + 0.25f};
        smallschema::AlphaType record  = {.value = value, .stepsCount = 2, .steps = steps};
        return writer.AddModule("alpha", smallschema::RecordVersion, mode, smallschema::AlphaTypeTable::Description,
                                &record);
    }

    UINT32 Beta(UINT32 mode, INT32 value)
    {
        smallschema::BetaType record{};
        record.value = value;
        return writer.AddModule("beta", smallschema::RecordVersion, mode, smallschema::BetaTypeTable::Description,
                                &record);
    }

    /// A module whose block is that of an earlier one.
    UINT32 Same(const std::string& rName, UINT32 mode, UINT32 original)
    {
        return builder.AddModule(rName, smallschema::RecordVersion, mode, {}, original);
    }

    ParameterFile Build() const
    {
        return builder.Build();
    }

    ParameterFileBuilder builder;
    RecordWriter         writer;
};

class SetManagerTest : public ::testing::Test
{
protected:
    using Options = ParameterSetManager::Options;

    static Options Verbose(UINT32 cacheSize = 17)
    {
        Options options;
        options.activeModeCacheSize = cacheSize;
        options.logDebug            = true;
        return options;
    }

    /// Writes the file to the path that the test has for itself.
    const CHAR* Write(const ParameterFile& rFile) const
    {
        rFile.WriteTo(m_path);
        return m_path.c_str();
    }

    /// A manager that reads the file on demand; it lives as long as the test.
    ParameterSetManager& Open(const ParameterFile& rFile, UINT32 cacheSize = 17)
    {
        ParameterSetManager& rManager = m_managers.emplace_back("cam", smallschema::Modules, Verbose(cacheSize));
        EXPECT_TRUE(rManager.LoadBinaryParameters(Write(rFile))) << log.Text();
        return rManager;
    }

    /// A manager that has the file's bytes in memory; it lives as long as the test.
    ParameterSetManager& OpenBuffer(const ParameterFile& rFile)
    {
        ParameterSetManager& rManager = m_managers.emplace_back("cam", smallschema::Modules, Verbose());
        EXPECT_TRUE(LoadBuffer(rManager, rFile)) << log.Text();
        return rManager;
    }

    static bool LoadBuffer(ParameterSetManager& rManager, const ParameterFile& rFile)
    {
        return rManager.LoadBinaryParameters(rFile.bytes.data(), rFile.bytes.size());
    }

    template <typename Record>
    static Record* Get(ParameterSetManager& rManager, const CHAR* pName, const std::vector<TuningMode>& rBranch,
                       Record* pPrevious = nullptr)
    {
        return static_cast<Record*>(rManager.GetModuleRecord(pName, namehash::OfName(pName), rBranch.data(),
                                                             static_cast<UINT32>(rBranch.size()), pPrevious));
    }

    static smallschema::AlphaType* Alpha(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch,
                                         smallschema::AlphaType* pPrevious = nullptr)
    {
        return Get<smallschema::AlphaType>(rManager, "alpha", rBranch, pPrevious);
    }

    /// The value of the record that a branch leads to, -1 if there is none.
    static INT32 AlphaValue(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        const smallschema::AlphaType* pRecord = Alpha(rManager, rBranch);
        return (pRecord != nullptr) ? pRecord->value : -1;
    }

    static INT32 BetaValue(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        const auto* pRecord = Get<smallschema::BetaType>(rManager, "beta", rBranch);
        return (pRecord != nullptr) ? pRecord->value : -1;
    }

    static ModeEntry* Mode(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch, BYTE table = 0)
    {
        return rManager.GetModeEntry(table, rBranch.data(), static_cast<UINT32>(rBranch.size()));
    }

    static bool LoadMode(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch,
                         const CHAR* pReason = "test")
    {
        return rManager.LoadMode(0, rBranch.data(), static_cast<UINT32>(rBranch.size()), pReason);
    }

    static bool UnloadMode(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return rManager.UnloadMode(0, rBranch.data(), static_cast<UINT32>(rBranch.size()));
    }

    static bool IsLoaded(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return Mode(rManager, rBranch)->Loaded;
    }

    static UINT32 References(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return Mode(rManager, rBranch)->GetReferenceCount();
    }

    /// Fetches the alpha as a user does that never gives it back.
    static smallschema::AlphaType* KeepAlpha(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return static_cast<smallschema::AlphaType*>(rManager.KeepModuleRecord(
            "alpha", namehash::OfName("alpha"), rBranch.data(), static_cast<UINT32>(rBranch.size())));
    }

    static VOID Release(VOID* pRecord)
    {
        TableModule::FromRecord(pRecord)->Release();
    }

    SystemLogCapture    log;
    const TemporaryFile m_file{::testing::UnitTest::GetInstance()->current_test_info()->name() + std::string(".bin")};
    const std::string&  m_path = m_file.path;

private:
    std::deque<ParameterSetManager> m_managers;
};
