#include "core/base/ckirobank.h"

#include <algorithm>
#include <cstring>

#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

namespace
{

constexpr UINT32 EventMask      = 63;
constexpr UINT64 OnlyAECDefault = 1;

}  // namespace

CKIROBank::CKIROBank()
    : m_payloadSize(0), m_pTunedBank(nullptr), m_bankID(BankIDInvalid), m_pBankname("BankIDInvalid"), m_context(0),
      m_overrideDynamic(DynamicDataReset), m_overrideIndex(0), m_dynamicData{}
{
}

VOID CKIROBank::Initialize(KIROBankIDType bankID, const CHAR* pBankname, size_t payloadSize)
{
    m_bankID      = bankID;
    m_pBankname   = pBankname;
    m_payloadSize = payloadSize;
}

VOID CKIROBank::SetTuning(TunaraBankDataType* pTunedBank, VOID* pPayloads, UINT32 count)
{
    m_pTunedBank = pTunedBank;
    m_dataDeque.clear();
    BYTE* pPayload = static_cast<BYTE*>(pPayloads);
    for (UINT32 index = 0; index < std::min(count, m_dataDeque.capacity()); ++index, pPayload += m_payloadSize)
    {
        BankData data{0, pPayload, SourceTuning};
        std::memcpy(&data.dataID, pPayload, sizeof(data.dataID));
        m_dataDeque.push_front(data);
    }
    SetBankBasedOnContext();
}

VOID CKIROBank::SetContext(UINT64 context)
{
    m_context = context;
    SetBankBasedOnContext();
}

VOID CKIROBank::SetDynamicOverride(KIRODynamicDataOperationType operation, INT32 dataID)
{
    m_overrideDynamic = operation;
    m_overrideIndex   = dataID;
}

KiroResult CKIROBank::SetBankData(const BankData& rData)
{
    if (rData.dataID == 0)
    {
        m_dynamicData = rData;
        return 0;
    }
    if (BankData* pEntry = FindEntry(rData.dataID))
    {
        *pEntry = rData;
    }
    else
    {
        m_dataDeque.push_front(rData);
    }
    return 0;
}

BankData* CKIROBank::FindEntry(INT32 dataID)
{
    for (UINT32 position = 0; position < m_dataDeque.size(); ++position)
    {
        BankData& rEntry = m_dataDeque[position];
        if (rEntry.dataID == dataID)
        {
            return &rEntry;
        }
    }
    return nullptr;
}

const BankData* CKIROBank::Find(INT32 dataID)
{
    if (dataID != 0)
    {
        return FindEntry(dataID);
    }
    return IsOverridden() ? FindEntry(m_overrideIndex) : &m_dynamicData;
}

KiroResult CKIROBank::GetBankData(BankData& rData)
{
    rData.pPayload         = nullptr;
    const BankData* pEntry = Find(rData.dataID);
    if (pEntry == nullptr)
    {
        return ResultNotFound;
    }
    if (rData.dataID == 0 && IsOverridden())
    {
        rData.pPayload = pEntry->pPayload;
    }
    else
    {
        rData = *pEntry;
    }
    return 0;
}

VOID CKIROBank::SetBankBasedOnContext()
{
    const BankData* pSelected = IsValueBank(m_bankID) ? nullptr : SelectEntry();
    if (pSelected == nullptr && !m_dataDeque.empty())
    {
        pSelected = &m_dataDeque.front();
    }
    m_dynamicData = (pSelected != nullptr) ? *pSelected : BankData{};
}

/// @return the entry that the priorities select, null for the front one
const BankData* CKIROBank::SelectEntry()
{
    if (m_pTunedBank == nullptr)
    {
        STATS_LOG_TRACE("no priority, needs debugging bank ID %d", m_bankID);
        return nullptr;
    }

    INT32 best   = -1;
    INT32 dataID = 0;
    for (UINT32 index = 0; index < m_pTunedBank->priorityMapCount; ++index)
    {
        const TunaraBankDataPriorityType& rEntry = m_pTunedBank->priorityMap[index];
        if (rEntry.priority > best && IsEventSet(rEntry.context, rEntry.contextCount) == TRUE)
        {
            best   = rEntry.priority;
            dataID = rEntry.dataID;
        }
    }
    if (best < 0)
    {
        STATS_LOG_TRACE("Bank %d did not find any priority: using first data", m_bankID);
        return nullptr;
    }
    if (dataID == 0)
    {
        STATS_LOG_TRACE("Bank %d dynamic data points to 0, using first data as fallback", m_bankID);
        return nullptr;
    }

    const BankData* pSelected = FindEntry(dataID);
    if (pSelected == nullptr)
    {
        STATS_LOG_TRACE("Bank %s dynamic data pointed to ID %d and returned KiroResult %d, using first data",
                        m_pBankname, dataID, ResultNotFound);
        return nullptr;
    }
    STATS_LOG_TRACE("Bank %s dynamic data pointed to ID %d", m_pBankname, dataID);
    return pSelected;
}

BOOL CKIROBank::IsEventSet(const KIROTunaraEventType* pEvents, UINT32 count) const
{
    UINT64 mask = 0;
    for (UINT32 index = 0; index < count; ++index)
    {
        mask |= 1ULL << (static_cast<UINT32>(pEvents[index]) & EventMask);
    }
    return (mask == OnlyAECDefault || (m_context & mask) == mask) ? TRUE : FALSE;
}

VOID CKIROBank::ResetData()
{
    m_dataDeque.clear();
    m_dynamicData = {};
}

VOID CKIROBank::ResetData(BankDataSourceType source)
{
    for (UINT32 remaining = m_dataDeque.size(); remaining > 0; --remaining)
    {
        const BankData data = m_dataDeque.front();
        m_dataDeque.pop_front();
        if (data.source != source)
        {
            m_dataDeque.push_back(data);
        }
    }
}

VOID CKIROBank::RemoveData(BankDataSourceType source)
{
    const bool isSelected = m_dynamicData.pPayload != nullptr && m_dynamicData.source == source;
    ResetData(source);
    if (isSelected)
    {
        SetBankBasedOnContext();
    }
}
