#include "tools/tuningfile/tuning.h"

#include <algorithm>
#include <cstring>

namespace tuningfile
{

bool ModeTable::IsGroupEntry(UINT32 index) const
{
    const Mode& rMode = modes[index];
    return rMode.parent.has_value() && modes[*rMode.parent].mode == rMode.mode &&
           modes[*rMode.parent].subMode == rMode.subMode;
}

const tuning::ModuleDescription* FindModule(std::string_view name)
{
    const auto* pFound = std::find_if(std::begin(tuning::TuningModules), std::end(tuning::TuningModules),
                                      [name](const tuning::ModuleDescription& rModule)
                                      { return rModule.pRecord != nullptr && name == rModule.pName; });
    return (pFound != std::end(tuning::TuningModules)) ? pFound : nullptr;
}

const Module* FindModuleOf(const Mode& rMode, const tuning::ModuleDescription& rDescription)
{
    const auto found = std::find_if(rMode.modules.begin(), rMode.modules.end(),
                                    [&](const Module& rModule) { return rModule.pDescription == &rDescription; });
    return (found != rMode.modules.end()) ? &*found : nullptr;
}

const Module* FindModuleAbove(const ModeTable& rTable, UINT32 index, const tuning::ModuleDescription& rDescription)
{
    while (rTable.modes[index].parent.has_value())
    {
        index = *rTable.modes[index].parent;
        if (const Module* pModule = FindModuleOf(rTable.modes[index], rDescription))
        {
            return pModule;
        }
    }
    return nullptr;
}

VOID InitializeModuleRecord(const tuning::ModuleDescription& rDescription, VOID* pRecord)
{
    const tuning::RecordDescription& rRecord = *rDescription.pRecord;
    const INT32                      patch   = static_cast<INT32>(rDescription.patch);
    const module_versionStruct       version{0, rDescription.major, rDescription.minor, patch};
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        if (rMember.pRecord == TuningRecordOf(static_cast<const module_versionStruct*>(nullptr)))
        {
            std::memcpy(static_cast<BYTE*>(pRecord) + rMember.offset, &version, sizeof(version));
        }
    }
}

VOID* RecordArena::Allocate(size_t size)
{
    constexpr size_t BlockSize = static_cast<size_t>(64) * 1024;
    if (size > MaxBytes - std::min(m_used, MaxBytes))
    {
        return nullptr;
    }
    const size_t rounded =
        (size + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) * alignof(std::max_align_t);
    if (rounded > m_available)
    {
        m_available = std::max(rounded, BlockSize);
        m_blocks.push_back(std::make_unique<std::byte[]>(m_available));
        m_pFree = m_blocks.back().get();
    }
    std::byte* pMemory = m_pFree;
    m_pFree += rounded;
    m_available -= rounded;
    m_used += rounded;
    return pMemory;
}

}  // namespace tuningfile
