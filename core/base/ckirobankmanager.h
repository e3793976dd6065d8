/// @file
/// The shared blackboard of the core: tuned data chosen per context, and values that modules publish for one another.
#pragma once

#include "core/base/ckirobank.h"
#include "core/base/valueslots.h"
#include "interface/kirobankdata.h"
#include "interface/kiroframe.h"
#include "interface/statstuningdata.h"
#include "schema/kirodb1dmeterweight.h"
#include "schema/kirodb2dmeterweight.h"
#include "schema/kirodbactiveanalyzers.h"
#include "schema/kirodbactivecalculators.h"
#include "schema/kirodbarbitrationlut.h"
#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationrange.h"
#include "schema/kirodbarbitrationtable.h"
#include "schema/kirodbconvactivescd.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"
#include "schema/kirodbroi.h"
#include "schema/kirodbsceneanalyzer.h"
#include "schema/kirodbsnapshot.h"
#include "schema/kirodbstatscalculator.h"

/// Seventeen banks; interface/kirobankdata.h says what they hold. Results: 0 success, 1 read failed, 4 write refused,
/// 6 no such bank or entry.
class CKIROBankManager
{
public:
    CKIROBankManager();

    /// Rebuilds all tuned banks from the tuning; entries that modules or the host set are dropped. Value banks keep
    /// their values, without the descriptions that are texts of the tuning before.
    VOID SetTuning(StatsTuningData* pTuningData);

    /// The rebuilding of one tuned bank.
    /// @param pTunedBank priority map; null for a bank without a selection
    /// @param pPayloads  array of the bank's payloads; map and payloads stay where they are until the next rebuilding
    VOID SetBankTuning(KIROBankIDType bankID, TunaraBankDataType* pTunedBank, VOID* pPayloads, UINT32 count);

    /// Re-selects the dynamic entry of every bank.
    VOID RunBankStartOfFrame(UINT64 context);

    /// @return the context that the banks were last set up with
    UINT64 GetContext() const
    {
        return m_context;
    }

    // Behind setBankData, getBankData and setDynamicBankData. The override of data ID 0 acts at the moment of reading.
    KiroResult SetControlData(const KIROSetBankData* pSetData);
    KiroResult GetControlData(KIROGetBankData* pGetData);
    KiroResult SetControlDynamicData(KIRODynamicDataOperationType operation, KIROBankIDType bankID, INT32 dataID);

    /// Resolves a reference into a range; zeros on failure. A number stands for a range of no width, a region of
    /// interest for its weight.
    KiroResult UtilGetStartEndFromBank(const DataBankType* pBank, StartEnd& rValue, BOOL bLogError);

    /// Resolves a reference into a number; 0 on failure. A range stands for its start, a region of interest for its
    /// weight.
    /// @param ppDescription receives the text of the entry that was found; may be null
    KiroResult UtilGetFloatFromBank(const DataBankType* pBank, FLOAT& rValue, BOOL bLogError, CHAR** ppDescription);

    /// Writes one end or both ends of an entry of the scene analyzer bank. A trigger takes the start.
    KiroResult UtilSetStartEndToBank(const DataBankType* pBank, StartEnd value, const CHAR* pDescription,
                                     kiroglobalelements::BankDataType kind);

    // Readers: the slot of a value bank, the payload of a tuned bank; null if there is no such ID.
    kirodb1dmeterweight::DBMeter1DWeightPayload*         GetDataMetering1D(INT32 dataID);
    kirodb2dmeterweight::DBMeter2DWeightPayload*         GetDataMetering2D(INT32 dataID);
    kirodbsceneanalyzer::DBStartEndPayload*              GetDataSceneAnalyzer(INT32 dataID);
    kirodbstatscalculator::DBFloatPayload*               GetDataStatsCalculator(INT32 dataID);
    kirodbroi::DBROIPayload*                             GetDataROI(INT32 dataID);
    kirodbarbitrationtable::DBArbitrationTablePayload*   GetDataArbitrationTable(INT32 dataID);
    kirodbarbitrationorder::DBArbitrationOrderPayload*   GetDataArbitrationOrder(INT32 dataID);
    kirodbarbitrationlut::DBArbitrationLUTPayload*       GetDataArbitrationLUT(INT32 dataID);
    kirodbarbitrationrange::DBArbitrationRangePayload*   GetDataArbitrationRange(INT32 dataID);
    kirodbstatscalculator::DBFloatPayload*               GetDataTriggers(INT32 dataID);
    kirodbconvbase::DBConvBasePayload*                   GetDataConvBase(INT32 dataID);
    kirodbconvstretch::DBConvStretchPayload*             GetDataConvStretch(INT32 dataID);
    kirodbconvsettle::DBConvSettlePayload*               GetDataConvSettle(INT32 dataID);
    kirodbactiveanalyzers::DBActiveAnalyzersPayload*     GetDataActiveAnalyzers(INT32 dataID);
    kirodbactivecalculators::DBActiveCalculatorsPayload* GetDataActiveCalculators(INT32 dataID);
    kirodbconvactivescd::DBConvActiveSCDPayload*         GetDataConvActiveSCD(INT32 dataID);
    kirodbsnapshot::DBSnapshotPayload*                   GetDataSnapshot(INT32 dataID);

    // Writers. Value banks copy the payload; tuned banks keep the pointer, so the writer keeps the payload alive.
    KiroResult SetDataMetering2D(const BankData& rData);
    KiroResult SetDataSceneAnalyzer(const BankData& rData);
    KiroResult SetDataStatsCalculator(const BankData& rData);
    KiroResult SetDataTriggers(const BankData& rData);
    KiroResult SetDataConvBase(const BankData& rData);
    KiroResult SetDataConvStretch(const BankData& rData);
    KiroResult SetDataConvSettle(const BankData& rData);

    // The same for the value banks, with a payload of these fields.
    KiroResult PublishAnalyzed(INT32 dataID, StartEnd value, const CHAR* pDescription, BankDataSourceType source);
    KiroResult PublishCalculated(INT32 dataID, FLOAT value, const CHAR* pDescription, BankDataSourceType source);
    KiroResult PublishTrigger(INT32 dataID, FLOAT value, const CHAR* pDescription, BankDataSourceType source);

    /// Takes the entries of one source out of a tuned bank, and selects anew if it had the selected one: for a writer
    /// whose payloads are about to be freed. A value bank keeps no payloads, and is left alone.
    VOID RemoveData(KIROBankIDType bankID, BankDataSourceType source);

    /// @return a name for logs, also for an ID that is no bank
    const CHAR* GetBankName(KIROBankIDType bankID) const;

private:
    /// Logs and answers null for an ID that is no bank.
    CKIROBank* GetInternalBank(KIROBankIDType bankID);

    /// Logs and answers null for a data ID that is none.
    template <typename Payload> Payload* FindSlot(ValueSlots<Payload>& rSlots, const DataBankType& rBank);
    template <typename Payload> Payload* GetDequePayload(KIROBankIDType bankID, INT32 dataID);
    template <typename Record> VOID      SetBankRecord(KIROBankIDType bankID, Record* pRecord);

    UINT64                        m_context;
    ValueSlots<DBFloatPayload>    m_storageTriggers;
    ValueSlots<DBFloatPayload>    m_storageCalculators;
    ValueSlots<DBStartEndPayload> m_storageAnalyzers;
    UINT                          m_bankCount;
    CKIROBank                     m_banks[BankCount];  ///< indexed by bank ID
};
