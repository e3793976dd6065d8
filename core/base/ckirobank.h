/// @file
/// One data bank: entries with data IDs, and the entry among them that the context selects.
#pragma once

#include "core/base/statsdeque.h"
#include "interface/kirobankdata.h"
#include "schema/kiroglobalelements.h"

/// Who wrote an entry. The last write to a data ID wins; no source outranks another.
enum BankDataSourceType : INT32
{
    SourceControl           = 0,
    SourceTuning            = 1,
    SourceModuleMetering    = 2,
    SourceModuleConvergence = 3,
    SourceModuleArbitration = 4,
    SourceModuleExtension   = 5,
    SourceModuleMtrTableGen = 6,
    SourceModuleExternal    = 7,
    SourceCore              = 8
};

/// One entry of a bank. The payload is not copied, except into a value bank.
struct BankData
{
    INT32              dataID;
    VOID*              pPayload;
    BankDataSourceType source;
};

/// Slots of a value bank and entries of a tuned bank.
constexpr UINT32 BankSlotCount = 1000;
constexpr UINT32 BankCount     = 17;

typedef Tavo::StatsDeque<BankData, BankSlotCount> KIROBankDataDeque;

/// Entries of one bank, the newest at the front. The front entry is the fallback of the selection: tuned entries are
/// pushed in array order, so it is the last one of the tuning until somebody adds an entry.
class CKIROBank
{
public:
    CKIROBank();

    /// @param pBankname   for logs, lives as long as the bank
    /// @param payloadSize bytes of one payload
    VOID Initialize(KIROBankIDType bankID, const CHAR* pBankname, size_t payloadSize);

    /// Replaces all entries by tuned ones and selects anew. Entries beyond BankSlotCount are left out.
    /// @param pTunedBank priority map, may be null
    /// @param pPayloads  array of count payloads, not copied; each begins with its data ID
    VOID SetTuning(TunaraBankDataType* pTunedBank, VOID* pPayloads, UINT32 count);

    /// Takes a context and selects anew.
    VOID SetContext(UINT64 context);

    VOID SetDynamicOverride(KIRODynamicDataOperationType operation, INT32 dataID);

    /// Replaces the entry of the same ID where it stands, otherwise adds one at the front; a full bank drops a new ID.
    /// Data ID 0 replaces the selected entry until the next selection. @return 0
    KiroResult SetBankData(const BankData& rData);

    /// @param dataID 0 names the selected or overriding entry
    /// @return null if there is no such entry
    const BankData* Find(INT32 dataID);

    /// The same as a copy; of an overriding entry the payload alone.
    /// @param rData its dataID names the entry; the payload is null on failure
    /// @return 0, or 6 if there is no such entry
    KiroResult GetBankData(BankData& rData);

    /// Selects the entry of the highest priority whose events are all set, the earlier one of equals; the front entry
    /// if there is none.
    VOID SetBankBasedOnContext();

    /// @return 1 if all events are set in the context. A list of nothing but AECDefault and an empty one hold always.
    BOOL IsEventSet(const KIROTunaraEventType* pEvents, UINT32 count) const;

    /// Removes all entries, and with them the selected one.
    VOID ResetData();

    /// Removes the entries of one source; the selected entry stays until the next selection.
    VOID ResetData(BankDataSourceType source);
    /// The same, and selects anew if the selected entry was one of them.
    VOID RemoveData(BankDataSourceType source);

    const CHAR* GetName() const
    {
        return m_pBankname;
    }

    size_t GetPayloadSize() const
    {
        return m_payloadSize;
    }

private:
    bool IsOverridden() const
    {
        return m_overrideDynamic != DynamicDataReset && m_overrideIndex != 0;
    }

    BankData*       FindEntry(INT32 dataID);
    const BankData* SelectEntry();

    size_t                       m_payloadSize;
    TunaraBankDataType*          m_pTunedBank;  ///< in the tuning
    KIROBankDataDeque            m_dataDeque;
    KIROBankIDType               m_bankID;
    const CHAR*                  m_pBankname;
    UINT64                       m_context;
    KIRODynamicDataOperationType m_overrideDynamic;
    INT32                        m_overrideIndex;
    BankData                     m_dynamicData;  ///< the selected entry
};
