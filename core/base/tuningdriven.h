/// @file
/// The one life of objects that are built from a tuning record: fetch the record at each use, and rebuild when it is
/// another one than before.
#pragma once

#include <atomic>

#include "platform/tavotypes.h"

/// Watches one module's record. SymbolTableID changes with the module instance and with every live edit; the address
/// changes when the file has been loaded anew.
template <typename Record> class TuningDriven
{
public:
    /// Calls rebuild(rRecord) if the record is not the one of the last call.
    /// @param pRecord may be null, then nothing happens
    /// @return pRecord
    template <typename Rebuild> Record* Refresh(Record* pRecord, Rebuild&& rebuild)
    {
        if (pRecord == nullptr)
        {
            return nullptr;
        }
        // A live edit stores the value first: whoever has seen the new ID also sees what was edited.
        const UINT32 symbolTableID = std::atomic_ref(pRecord->SymbolTableID).load(std::memory_order_acquire);
        if (pRecord != m_pRecord || symbolTableID != m_symbolTableID)
        {
            m_pRecord       = pRecord;
            m_symbolTableID = symbolTableID;
            rebuild(*pRecord);
        }
        return pRecord;
    }

private:
    Record* m_pRecord       = nullptr;
    UINT32  m_symbolTableID = 0;
};
