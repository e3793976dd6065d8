#include "parameters/valueaccess.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "parameters/boundedtext.h"
#include "parameters/modenames.h"
#include "parameters/modepaths.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parameterstore.h"
#include "parameters/tablemodule.h"

namespace
{

constexpr UINT32 MaxModuleName  = 65;     ///< bytes, terminator included
constexpr UINT32 MaxValueText   = 65535;  ///< of one member
constexpr UINT32 MaxActiveText  = 4096;   ///< of the paths of active modes
constexpr size_t MaxActiveModes = 5;

/// Module and member path of a text such as "kiroconvergence.smoothADRC".
struct ModuleText
{
    explicit ModuleText(const CHAR* pText)
    {
        ParameterUtils::GetSubString(pText, '.', name, sizeof(name));
        const INT32 point = ParameterUtils::GetStringPos(pText, '.');
        if (point >= 0)
        {
            pRest = pText + point + 1;
        }
    }

    CHAR        name[MaxModuleName] = {};
    const CHAR* pRest               = "";
};

/// A module, loaded and kept in memory for as long as this lives.
class HeldModule
{
public:
    HeldModule(ParameterSetManager& rManager, BYTE tableIndex, const CHAR* pName, const TuningMode* pBranch,
               UINT32 count)
        : m_rManager(rManager), m_pModule(rManager.GetModuleInternal(tableIndex, pName, pBranch, count, nullptr))
    {
    }
    HeldModule(const HeldModule&)            = delete;
    HeldModule& operator=(const HeldModule&) = delete;

    ~HeldModule()
    {
        if (m_pModule != nullptr)
        {
            m_rManager.ReleaseModule(m_pModule);
        }
    }

    ParameterModule* Get() const
    {
        return m_pModule;
    }

private:
    ParameterSetManager& m_rManager;
    ParameterModule*     m_pModule;
};

std::string JoinPath(const CHAR* pRest, std::string_view member)
{
    std::string path(pRest);
    if (!path.empty())
    {
        path += '.';
    }
    return path += member;
}

VOID AppendValue(BoundedText& rText, std::string_view name, const CHAR* pValue)
{
    rText.Separate(";");
    rText.Append(name);
    rText.Append("=");
    rText.Append(pValue);
}

bool GetMemberValues(ParameterModule& rModule, const CHAR* pRest, const CHAR* pMembers, BoundedText& rText)
{
    const std::unique_ptr<CHAR[]> pValue  = std::make_unique_for_overwrite<CHAR[]>(MaxValueText);
    std::string_view              members = pMembers;
    bool                          isRead  = false;
    while (!members.empty())
    {
        const size_t           comma  = members.find(',');
        const std::string_view member = members.substr(0, comma);
        members.remove_prefix((comma == std::string_view::npos) ? members.size() : comma + 1);
        // Of what has no room any more, only the last counts, for the answer. A long list costs no more than its text.
        if (rText.IsFull() && !members.empty())
        {
            continue;
        }
        isRead = rModule.GetValue(JoinPath(pRest, member).c_str(), pValue.get(), MaxValueText);
        if (isRead)
        {
            AppendValue(rText, member, pValue.get());
        }
    }
    return isRead;
}

bool GetAllValues(ParameterModule& rModule, const CHAR* pRest, BoundedText& rText)
{
    const std::unique_ptr<CHAR[]> pValue = std::make_unique_for_overwrite<CHAR[]>(MaxValueText);
    PList<ParameterParserInfo>    list;
    if (!rModule.GetInfo(pRest, list))
    {
        // No record: then perhaps a value.
        if (!rModule.GetValue(pRest, pValue.get(), MaxValueText))
        {
            return false;
        }
        const std::string_view path(pRest);
        AppendValue(rText, path.substr(path.rfind('.') + 1), pValue.get());
        return true;
    }
    for (UINT32 index = 0; index < list.Count() && !rText.IsFull(); ++index)
    {
        const ParameterParserInfo& rInfo = list.ToArray()[index];
        const std::string_view     type  = rInfo.Type;
        if (type == ParameterParserInfo::TypeStructure || type == ParameterParserInfo::TypeModule)
        {
            continue;
        }
        AppendValue(rText, rInfo.Name, rInfo.Value);
        const std::string path = JoinPath(pRest, rInfo.Name) + '[';
        for (UINT32 item = 0; rInfo.IsArray && item < rInfo.Count && !rText.IsFull(); ++item)
        {
            if (!rModule.GetValue((path + std::to_string(item) + ']').c_str(), pValue.get(), MaxValueText))
            {
                return false;
            }
            rText.Append((item > 0) ? "," : "");
            rText.Append(pValue.get());
        }
    }
    return true;
}

/// Puts a mode that is in use among those collected. Of a mode and one below it only the lower one is told, since a
/// path names the upper ones anyway.
VOID CollectMode(std::vector<const ModeEntry*>& rModes, const ModeEntry* pMode)
{
    for (const ModeEntry*& rpCollected : rModes)
    {
        if (rpCollected->IsParent(pMode))
        {
            rpCollected = pMode;
            return;
        }
        if (pMode->IsParent(rpCollected))
        {
            return;
        }
    }
    rModes.push_back(pMode);
}

std::vector<const ModeEntry*> ActiveModesOf(ParameterModeTable& rTable)
{
    const std::lock_guard<ParameterMutex> lock(rTable.ActModeMutex);
    rTable.SortActiveModes();
    const PList<ModeEntry*>&      rActive = rTable.ActiveModes;
    std::vector<const ModeEntry*> modes;
    bool                          passedOver = false;
    for (UINT32 index = 0; index < rActive.Count() && modes.size() < MaxActiveModes; ++index)
    {
        // A preserved mode was put back by a fetch and says less: it counts only before the first that is out of use.
        if (!rActive[index]->IsActive() || (passedOver && rActive[index]->Preserve))
        {
            passedOver = true;
            continue;
        }
        CollectMode(modes, rActive[index]);
    }
    return modes;
}

/// Keeps an edited module in memory for good.
VOID PreserveMode(const ParameterModule& rModule)
{
    // A shared module is unloaded with the mode that owns it, wherever it was found.
    ModeEntry* pMode = rModule.Data->Mode->Entry;
    if (!pMode->Preserve)
    {
        const std::lock_guard<ParameterMutex> lock(pMode->Table->ActModeMutex);
        pMode->Preserve = true;
        pMode->Table->Unlist(pMode);
    }
}

/// Records that hold the same array share one in memory, so that an edit of one is an edit of all. Among the modules of
/// the modes are those of merged files and those that a merge has left to some modes only.
VOID NoteSharedEdit(const std::vector<std::unique_ptr<ParameterModeTable>>& rTables, TableModule& rEdited,
                    const CHAR* pPath)
{
    const VOID* pPlace = rEdited.PlaceInArray(pPath);
    if (pPlace == nullptr)
    {
        return;
    }
    std::unordered_set<ParameterModule*> told = {&rEdited};
    for (const auto& rpTable : rTables)
    {
        for (const ModeEntryInfo& rInfo : rpTable->Modes)
        {
            for (UINT32 index = 0; rInfo.Entry != nullptr && index < rInfo.Entry->ModuleMap.Count(); ++index)
            {
                ParameterModule* pModule = rInfo.Entry->ModuleMap[index].Module;
                if (told.insert(pModule).second)
                {
                    static_cast<TableModule*>(pModule)->NoteSharedEdit(pPlace);
                }
            }
        }
    }
}

/// "Usecase.Video", "Sensor.3", "Default".
std::string NameOfMode(const ModeEntry& rMode)
{
    const ModeType mode  = static_cast<ModeType>(rMode.Mode.Mode);
    const CHAR*    pMode = ModeNames::Modes().NameOf(rMode.Mode.Mode);
    std::string    name  = (pMode != nullptr) ? pMode : "";
    if (mode != ModeType::Default)
    {
        const CHAR* pSubMode = ModeNames::GetSubModeName(mode, rMode.Mode.SubMode);
        name += '.';
        name += (pSubMode != nullptr) ? pSubMode : std::to_string(rMode.Mode.SubMode);
    }
    return name;
}

}  // namespace

bool ValueAccess::GetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                           const CHAR* pMembers, CHAR* pValue, UINT32 size)
{
    if (pValue == nullptr || size == 0)
    {
        return false;
    }
    BoundedText text(pValue, size);
    if (pBranch == nullptr || count == 0 || pModuleText == nullptr)
    {
        return false;
    }
    const ModuleText                      moduleText(pModuleText);
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    const HeldModule                      module(m_rStore.Manager(), tableIndex, moduleText.name, pBranch, count);
    if (module.Get() == nullptr)
    {
        return false;
    }
    return (pMembers != nullptr && pMembers[0] != '\0')
               ? GetMemberValues(*module.Get(), moduleText.pRest, pMembers, text)
               : GetAllValues(*module.Get(), moduleText.pRest, text);
}

bool ValueAccess::SetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                           const CHAR* pName, const CHAR* pValue)
{
    if (pBranch == nullptr || count == 0 || pModuleText == nullptr || pName == nullptr || pValue == nullptr)
    {
        return false;
    }
    const ModuleText moduleText(pModuleText);
    if (moduleText.name[0] == '\0')
    {
        return false;
    }
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    const HeldModule                      module(m_rStore.Manager(), tableIndex, moduleText.name, pBranch, count);
    if (module.Get() == nullptr)
    {
        ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Error,
                                "Vernier SetValues failed: Module not found: \n");
        return false;
    }
    const std::string path = JoinPath(moduleText.pRest, pName);
    if (!module.Get()->SetValue(path.c_str(), pValue))
    {
        ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Error,
                                "Vernier SetValues failed: Variable not found: \n");
        return false;
    }
    m_setValueCount.fetch_add(1, std::memory_order_relaxed);
    PreserveMode(*module.Get());
    NoteSharedEdit(m_rStore.GetContent().modeTables, *static_cast<TableModule*>(module.Get()), path.c_str());
    return true;
}

bool ValueAccess::GetInfo(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pPath,
                          PList<ParameterParserInfo>& rList)
{
    if (pBranch == nullptr || count == 0)
    {
        ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Error,
                                "GetInfo called with null or empty modeBranch\n");
        return false;
    }
    if (pPath == nullptr)
    {
        return false;
    }
    const ModuleText                      moduleText(pPath);
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    const HeldModule                      module(m_rStore.Manager(), tableIndex, moduleText.name, pBranch, count);
    // One character is no member: then the whole module is described.
    const CHAR* pRest = (std::strlen(moduleText.pRest) >= 2) ? moduleText.pRest : nullptr;
    return module.Get() != nullptr && module.Get()->GetInfo(pRest, rList);
}

bool ValueAccess::GetActiveModes(BYTE tableIndex, CHAR* pText, UINT32 size)
{
    if (pText == nullptr || size == 0)
    {
        return false;
    }
    pText[0] = '\0';
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    if (!m_rStore.HasModeTable("GetActiveModes", tableIndex))
    {
        return false;
    }
    CHAR        paths[MaxActiveText];
    BoundedText pathText(paths, sizeof(paths));
    for (const ModeEntry* pMode : ActiveModesOf(*m_rStore.GetContent().modeTables[tableIndex]))
    {
        CHAR path[ModeEntry::MaxPathText];
        pMode->GetModePath(path, sizeof(path));
        pathText.Separate(";");
        pathText.Append(path);
    }
    ModePaths::GetVernierModesString(paths, pText, size);
    return true;
}

UINT32 ValueAccess::GetChildModes(BYTE tableIndex, const CHAR* pPath, CHAR* pText, UINT32 size)
{
    if (pText == nullptr || size == 0)
    {
        return 0;
    }
    BoundedText                           text(pText, size);
    const std::lock_guard<ParameterMutex> lock(m_rStore.DataMutex());
    ModeEntry*                            pMode = m_rStore.Manager().GetModeEntry(tableIndex, pPath);
    if (pMode == nullptr && m_rStore.HasModeTable("GetChildModes", tableIndex))
    {
        pMode = m_rStore.GetContent().modeTables[tableIndex]->RootMode.Entry;
    }
    const ModeEntry* pChild = (pMode != nullptr) ? pMode->Target()->FirstChild : nullptr;
    for (; pChild != nullptr; pChild = pChild->Next)
    {
        const std::string item = ((text.Length() > 0) ? "," : "") + NameOfMode(*pChild);
        if (text.Length() + item.size() >= size)
        {
            ParameterLogging::Write(&m_rStore.Manager(), ParameterLogging::Error,
                                    "Failed to write %lld bytes to binary offset %d, length %d\n",
                                    static_cast<INT64>(item.size()), text.Length(), size);
            break;
        }
        text.Append(item);
    }
    return text.Length() + 1;
}
