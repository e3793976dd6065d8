/// @file
/// The slots of a value bank, indexed by data ID.
#pragma once

#include <algorithm>

#include "core/base/ckirobank.h"

/// @tparam Payload with dataID and description
template <typename Payload> class ValueSlots
{
public:
    /// @return the slot, null for a data ID out of range
    Payload* Find(INT32 dataID)
    {
        return (static_cast<UINT32>(dataID) < BankSlotCount) ? &m_slots[dataID] : nullptr;
    }

    /// Writes the slot of a data ID, of values: a payload that was put together just before would be waited for.
    /// @return false if the data ID is out of range
    bool Store(INT32 dataID, decltype(Payload::value) value, const CHAR* pDescription, BankDataSourceType source)
    {
        Payload* pSlot = Find(dataID);
        if (pSlot == nullptr)
        {
            return false;
        }
        *pSlot = {dataID, value, const_cast<CHAR*>(pDescription)};

        m_isTuningText[static_cast<UINT32>(dataID)] = source == SourceModuleMetering;
        return true;
    }

    /// Takes away the descriptions that may be texts of the tuning, those that metering gave; the values stay.
    VOID ForgetTuningTexts()
    {
        for (UINT32 slot = 0; slot < BankSlotCount; ++slot)
        {
            if (m_isTuningText[slot])
            {
                m_slots[slot].description = nullptr;
            }
        }
        std::fill(std::begin(m_isTuningText), std::end(m_isTuningText), false);
    }

private:
    Payload m_slots[BankSlotCount]        = {};
    bool    m_isTuningText[BankSlotCount] = {};
};
