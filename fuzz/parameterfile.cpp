/// Parameter files from anywhere: each is refused, or all that a host and a tuning tool may ask of it is answered.
///
/// The first byte of an input says how the file is used, the rest is the file.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "fuzz/memoryfile.h"
#include "fuzz/parameterfiledamage.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parametersetmanager.h"
#include "schema/modules.h"

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

constexpr UINT32 MaxModes = 12;   ///< that are visited of one table, to bound the time of an input
constexpr UINT32 MaxDepth = 8;    ///< selectors of a branch
constexpr UINT32 MaxTexts = 100;  ///< records that are read as text

using Branch = std::vector<TuningMode>;

/// Asks a loaded store for everything.
class Visit
{
public:
    explicit Visit(ParameterSetManager& rManager) : m_rManager(rManager)
    {
    }

    VOID All()
    {
        PList<const CHAR*> names;
        m_rManager.GetModeTableNames(names);
        const UINT32 tables = std::min(m_rManager.GetModeTableCount(), 3U);
        for (UINT32 table = 0; table < tables; ++table)
        {
            const BYTE tableIndex = static_cast<BYTE>(table);
            Fetch(tableIndex, {Selector(0, 0)});
            Fetch(tableIndex, {Selector(0, 0), Selector(1, 0), Selector(2, 2), Selector(3, 2), Selector(4, 1),
                               Selector(5, 0), Selector(6, 0)});
            for (UINT32 index = 0; index < MaxModes; ++index)
            {
                ModeEntryInfo* const pInfo = m_rManager.GetModeEntry((table << 24) | index);
                if (pInfo != nullptr && pInfo->Entry != nullptr)
                {
                    VisitMode(tableIndex, *pInfo->Entry);
                }
            }
            CHAR text[512];
            m_rManager.GetActiveModes(tableIndex, text, sizeof(text));
        }
    }

private:
    static TuningMode Selector(UINT32 mode, UINT16 subMode)
    {
        TuningMode selector{};
        selector.mode          = static_cast<ModeType>(mode);
        selector.subMode.value = subMode;
        return selector;
    }

    VOID VisitMode(BYTE table, const ModeEntry& rMode)
    {
        CHAR path[ModeEntry::MaxPathText];
        rMode.GetModePath(path, sizeof(path));
        CHAR children[64];
        m_rManager.GetChildModes(table, path, children, sizeof(children));

        Branch branch;
        for (const ModeEntry* pMode = &rMode; pMode != nullptr && branch.size() < MaxDepth; pMode = pMode->Parent)
        {
            branch.insert(branch.begin(), Selector(pMode->Mode.Mode, pMode->Mode.SubMode));
        }
        const UINT32 count = static_cast<UINT32>(branch.size());
        m_rManager.LoadMode(table, branch.data(), count, "fuzz");
        ReadTexts(table, branch);
        if (rMode.Id % 3 == 0)
        {
            m_rManager.UnloadMode(table, branch.data(), count);
            ReadTexts(table, branch);
        }
    }

    /// Fetches all modules as frames do, each on its own, and gives them back.
    VOID Fetch(BYTE table, const Branch& rBranch)
    {
        const UINT32                  count = static_cast<UINT32>(rBranch.size());
        std::vector<ParameterModule*> held;
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            held.push_back(
                m_rManager.GetModuleInternal(table, rModule.pName, rModule.nameHash, rBranch.data(), count, nullptr));
        }
        for (ParameterModule* pModule : held)
        {
            if (pModule != nullptr)
            {
                m_rManager.ReleaseModule(pModule);
            }
        }
    }

    VOID ReadTexts(BYTE table, const Branch& rBranch)
    {
        PList<ParameterModule*> modules;
        m_rManager.GetModules(table, modules, rBranch.data(), static_cast<UINT32>(rBranch.size()), true, true, nullptr);
        for (UINT32 index = 0; index < modules.Count(); ++index)
        {
            // The text operations fetch it by its name.
            ReadText(table, rBranch, modules[index]->GetModuleName(), 0);
        }
        m_rManager.ReleaseModules(modules);
    }

    VOID ReadText(BYTE table, const Branch& rBranch, const std::string& rText, UINT32 depth)
    {
        if (++m_texts > MaxTexts || depth > MaxDepth)
        {
            return;
        }
        const UINT32               count = static_cast<UINT32>(rBranch.size());
        CHAR                       values[2048];
        PList<ParameterParserInfo> members;
        m_rManager.GetValue(table, rBranch.data(), count, rText.c_str(), nullptr, values, sizeof(values));
        m_rManager.GetInfo(table, rBranch.data(), count, rText.c_str(), members);
        for (UINT32 index = 0; index < members.Count(); ++index)
        {
            const ParameterParserInfo& rMember = members.ToArray()[index];
            const std::string          path    = rText + "." + rMember.Name;
            if (std::string(rMember.Type) == ParameterParserInfo::TypeStructure)
            {
                // The last item of an array is the one that may stand beyond its block.
                const UINT32 last = (rMember.Count > 0) ? rMember.Count - 1 : 0;
                ReadText(table, rBranch, rMember.IsArray ? path + "[" + std::to_string(last) + "]" : path, depth + 1);
            }
            else if (rMember.Count > 0)
            {
                const std::string item = std::string(rMember.Name) + "[" + std::to_string(rMember.Count - 1) + "]";
                m_rManager.SetValue(table, rBranch.data(), count, rText.c_str(), item.c_str(), "1.5");
            }
        }
    }

    ParameterSetManager& m_rManager;
    UINT32               m_texts = 0;
};

bool Load(ParameterSetManager& rManager, BYTE use, const fuzz::MemoryFile* pFile, const BYTE* pData, size_t size)
{
    return ((use & FileMode) != 0) ? rManager.LoadBinaryParameters(pFile->Path())
                                   : rManager.LoadBinaryParameters(pData, size);
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

    std::unique_ptr<fuzz::MemoryFile> pFile;
    if ((use & FileMode) != 0)
    {
        pFile = std::make_unique<fuzz::MemoryFile>(pContent, size);
        (VOID) ParameterSetManager::ModeTableEntryExists(pFile->Path(), "main");
    }
    ParameterSetManager::Options options;
    options.activeModeCacheSize = ((use & SmallCache) != 0) ? 5 : 17;
    options.logDebug            = (use & LogAll) != 0;
    ParameterSetManager manager("fuzz", tuning::TuningModules, options);
    if (!Load(manager, use, pFile.get(), pContent, size))
    {
        (VOID) manager.GetErrorText();
        return 0;
    }
    if ((use & CutAfterLoad) != 0 && pFile != nullptr)
    {
        pFile->Cut(size / 2);
    }
    Visit(manager).All();
    if ((use & Reload) != 0 && manager.ReloadBinaryParameters((use & ReloadAsBuffer) != 0))
    {
        Visit(manager).All();
    }
    if ((use & Update) != 0)
    {
        auto pOther = std::make_unique<ParameterSetManager>("other", tuning::TuningModules, options);
        if (Load(*pOther, use, pFile.get(), pContent, size) && manager.UpdateParameters(std::move(pOther)))
        {
            Visit(manager).All();
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
            fuzz::DamageNumber(pData + 1, size - 1, static_cast<UINT32>(random()));
        }
    }
    if (size > 1 && random() % 16 != 0)
    {
        fuzz::SealFile(pData + 1, size - 1);
    }
    return size;
}
