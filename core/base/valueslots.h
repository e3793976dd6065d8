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

    /// Copies the payload into the slot of its data ID. @return false if that is out of range
    bool Store(const BankData& rData)
    {
        const Payload& rPayload = *static_cast<const Payload*>(rData.pPayload);
        Payload*       pSlot    = Find(rPayload.dataID);
        if (pSlot == nullptr)
        {
            return false;
        }
        *pSlot = rPayload;

        m_isTuningText[static_cast<UINT32>(rPayload.dataID)] = rData.source == SourceModuleMetering;
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
