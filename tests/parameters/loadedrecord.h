/// @file
/// Records that are loaded from files by themselves.
#pragma once

#include "parameters/recordloader.h"
#include "platform/tavodesk.h"
#include "tests/support/loadedtable.h"

constexpr VersionUnion ModuleVersion{1, 0, 0};

/// A record with its memory given back at the end.
template <typename Record> class Loaded
{
public:
    Loaded(LoadedTable& rLoaded, UINT32 id, const CHAR* pName = "everything") : m_pTable(rLoaded.table.get())
    {
        ParameterFileSymbolTableEntry entry;
        found = m_pTable->Find(entry, id, true);
        RecordLoader::LoadModule(tuning::DescriptionOf<Record>(), &record, entry, namehash::OfName(pName));
    }

    ~Loaded()
    {
        RecordLoader::Unload(tuning::DescriptionOf<Record>(), &record, m_pTable);
    }

    Loaded(const Loaded&)            = delete;
    Loaded& operator=(const Loaded&) = delete;

    Record record{};
    bool   found = false;

private:
    ParameterFileSymbolTable* m_pTable;
};

inline UINT64 LiveAllocations()
{
    const TavoDesk::AllocationCounters counters = TavoDesk::GetAllocationCounters();
    return counters.allocations - counters.releases;
}
