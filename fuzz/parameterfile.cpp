/// Parameter files from anywhere: each is refused, or all that a host and a tuning tool may ask of it is answered.
///
/// The first byte of an input says how the file is used, the rest is the file.
#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "parameters/modeentry.h"
#include "parameters/parametersetmanager.h"
#include "schema/modules.h"
#include "tools/hostilefiles/loadablefile.h"
#include "tools/hostilefiles/numberdamage.h"
#include "tools/hostilefiles/storeuser.h"

extern "C" size_t LLVMFuzzerMutate(BYTE* pData, size_t size, size_t maxSize);

namespace
{

enum Use : BYTE
{
    FileMode       = 1,
    Reload         = 2,
    ReloadAsBuffer = 4,
    SmallCache     = 8,  ///< modes are evicted soon
    LogAll         = 16,
    Update         = 32,  ///< by a second load of the same file
    CutAfterLoad   = 64   ///< the file loses its second half while it is in use
};

constexpr UINT32 TableMax  = 3;    ///< that are visited
constexpr UINT32 ModeMax   = 12;   ///< of one table, to bound the time of an input
constexpr UINT32 DepthMax  = 8;    ///< selectors of a branch
constexpr UINT32 RecordMax = 100;  ///< that are read as text in one visit

using Branch = std::vector<TuningMode>;

TuningMode Selector(ModeType mode, UINT16 subMode)
{
    TuningMode selector{};
    selector.mode          = mode;
    selector.subMode.value = subMode;
    return selector;
}

/// By its parents, which a file may have made a circle.
Branch BranchOf(const ModeEntry& rMode)
{
    Branch branch;
    for (const ModeEntry* pMode = &rMode; pMode != nullptr && branch.size() < DepthMax; pMode = pMode->Parent)
    {
        branch.insert(branch.begin(), Selector(static_cast<ModeType>(pMode->Mode.Mode), pMode->Mode.SubMode));
    }
    return branch;
}

/// Asks a loaded store for everything: modes that it may not have, and those of each row, whether the tree leads there
/// or not.
VOID Visit(ParameterSetManager& rManager, std::mt19937_64& rRandom)
{
    hostilefiles::StoreUser user(rManager, {.loadsModes = true, .recordMax = RecordMax}, rRandom);
    PList<const CHAR*>      names;
    rManager.GetModeTableNames(names);
    const UINT32 tables = std::min(rManager.GetModeTableCount(), TableMax);
    for (UINT32 table = 0; table < tables; ++table)
    {
        const BYTE tableIndex = static_cast<BYTE>(table);
        for (UINT32 index = 0; index < ModeMax; ++index)
        {
            ModeEntryInfo* const pInfo = rManager.GetModeEntry((table << 24) | index);
            if (pInfo != nullptr && pInfo->Entry != nullptr)
            {
                CHAR path[ModeEntry::MaxPathText];
                CHAR children[64];
                pInfo->Entry->GetModePath(path, sizeof(path));
                rManager.GetChildModes(tableIndex, path, children, sizeof(children));
                user.UseBranch(tableIndex, BranchOf(*pInfo->Entry));
            }
        }
        // Last: what they ask counts among the same records.
        user.UseBranch(tableIndex, {Selector(ModeType::Default, 0)});
        user.UseBranch(tableIndex,
                       {Selector(ModeType::Default, 0), Selector(ModeType::Sensor, 0), Selector(ModeType::Usecase, 2),
                        Selector(ModeType::Feature1, 2), Selector(ModeType::Feature2, 1), Selector(ModeType::Scene, 0),
                        Selector(ModeType::Effect, 0)});
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    if (size < 1)
    {
        return 0;
    }
    const BYTE  use      = pData[0];
    const BYTE* pContent = pData + 1;
    --size;

    const hostilefiles::LoadableFile file({pContent, size}, (use & FileMode) != 0);
    if (file.IsFileMode())
    {
        (VOID) ParameterSetManager::ModeTableEntryExists(file.Path(), "main");
    }
    ParameterSetManager::Options options;
    options.activeModeCacheSize = ((use & SmallCache) != 0) ? 5 : 17;
    options.logDebug            = (use & LogAll) != 0;
    ParameterSetManager manager("fuzz", tuning::TuningModules, options);
    if (!file.LoadInto(manager))
    {
        (VOID) manager.GetErrorText();
        return 0;
    }
    if ((use & CutAfterLoad) != 0)
    {
        file.Cut(size / 2);
    }
    std::mt19937_64 random(size);
    Visit(manager, random);
    if ((use & Reload) != 0 && manager.ReloadBinaryParameters((use & ReloadAsBuffer) != 0))
    {
        Visit(manager, random);
    }
    if ((use & Update) != 0)
    {
        auto pOther = std::make_unique<ParameterSetManager>("other", tuning::TuningModules, options);
        if (file.LoadInto(*pOther) && manager.UpdateParameters(std::move(pOther)))
        {
            Visit(manager, random);
        }
    }
    return 0;
}

/// Most files keep a checksum that fits, or no damage would get past the door.
extern "C" size_t LLVMFuzzerCustomMutator(BYTE* pData, size_t size, size_t maxSize, unsigned int seed)
{
    std::minstd_rand random(seed);
    if (random() % 2 == 0 || size < 2)
    {
        size = LLVMFuzzerMutate(pData, size, maxSize);
    }
    else
    {
        for (size_t count = random() % 3 + 1; count > 0; --count)
        {
            hostilefiles::DamageNumber({pData + 1, size - 1}, static_cast<UINT32>(random()));
        }
    }
    if (size > 1 && random() % 16 != 0)
    {
        hostilefiles::SealFile({pData + 1, size - 1});
    }
    return size;
}
