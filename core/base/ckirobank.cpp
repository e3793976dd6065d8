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

KiroResult CKIROBank::GetBankData(BankData& rData)
{
    rData.pPayload = nullptr;
    if (rData.dataID == 0)
    {
        if (m_overrideDynamic == DynamicDataReset || m_overrideIndex == 0)
        {
            rData = m_dynamicData;
            return 0;
        }
        BankData         overriding = {m_overrideIndex, nullptr, rData.source};
        const KiroResult result     = GetBankData(overriding);
        if (result == 0)
        {
            rData.pPayload = overriding.pPayload;
        }
        return result;
    }
    const BankData* pEntry = FindEntry(rData.dataID);
    if (pEntry == nullptr)
    {
        return ResultNotFound;
    }
    rData = *pEntry;
    return 0;
}

VOID CKIROBank::SetBankBasedOnContext()
{
    m_dynamicData = m_dataDeque.empty() ? BankData{} : m_dataDeque.front();
    if (IsValueBank(m_bankID))
    {
        return;
    }
    if (m_pTunedBank == nullptr)
    {
        STATS_LOG_TRACE("no priority, needs debugging bank ID %d", m_bankID);
        return;
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
        return;
    }
    if (dataID == 0)
    {
        STATS_LOG_TRACE("Bank %d dynamic data points to 0, using first data as fallback", m_bankID);
        return;
    }

    const BankData* pSelected = FindEntry(dataID);
    if (pSelected == nullptr)
    {
        STATS_LOG_TRACE("Bank %s dynamic data pointed to ID %d and returned KiroResult %d, using first data",
                        m_pBankname, dataID, ResultNotFound);
        return;
    }
    m_dynamicData = *pSelected;
    STATS_LOG_TRACE("Bank %s dynamic data pointed to ID %d", m_pBankname, dataID);
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
