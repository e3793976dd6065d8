/// @file
/// The one life of objects that are built from a tuning record: fetch the record at each use, rebuild when it is
/// another one than before, and drop them when there is none.
#pragma once

#include "parameters/tablemodule.h"

/// Watches what a module's record holds. Neither its address nor its SymbolTableID would do: after two reloads, or with
/// a store made in the place of another, both are those of the record before.
template <typename Record> class TuningDriven
{
public:
    /// Calls rebuild(pRecord) if the content is not that of the last call, or if there was a record and now is none.
    /// What was built before may then point at freed memory, so that rebuild must not read through it.
    /// @param pRecord of a module of a store; may be null, also for rebuild
    /// @return pRecord
    template <typename Rebuild> Record* Refresh(Record* pRecord, Rebuild&& rebuild)
    {
        const UINT64 stamp = TableModule::ContentStamp(pRecord);
        if (stamp != m_contentStamp)
        {
            m_contentStamp = stamp;
            rebuild(pRecord);
        }
        return pRecord;
    }

private:
    UINT64 m_contentStamp = 0;
};
