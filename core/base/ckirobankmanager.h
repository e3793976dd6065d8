/// @file
/// The shared blackboard of the core: tuned data chosen per context, and values that modules publish for one another.
#pragma once

#include "core/base/statsdeque.h"
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

/// Seventeen banks. Tuned banks hold pointers to payloads, the newest at the front; value banks (scene analyzer, stats
/// calculator, triggers) hold values in slots indexed by data ID. Data ID 0 of a tuned bank is the entry that the
/// context selects. Results: 0 success, 1 read failed, 4 write refused, 6 no such bank or entry.
class CKIROBankManager
{
public:
    CKIROBankManager();

    /// Rebuilds all tuned banks from the tuning; entries that modules or the host set are dropped.
    VOID SetTuning(StatsTuningData* pTuningData);

    /// Re-selects the dynamic entry of every bank.
    VOID RunBankStartOfFrame(UINT64 context);

    /// @return the context that the banks were last set up with
    UINT64 GetContext() const
    {
        return m_context;
    }

    KiroResult SetControlData(const KIROSetBankData* pSetData);
    KiroResult GetControlData(KIROGetBankData* pGetData);
    KiroResult SetControlDynamicData(KIRODynamicDataOperationType operation, KIROBankIDType bankID, INT32 dataID);

    /// Resolves a reference into a range; zeros on failure.
    KiroResult UtilGetStartEndFromBank(const DataBankType* pBank, StartEnd& rValue, BOOL bLogError);

    /// Resolves a reference into a number; 0 on failure.
    /// @param ppDescription may be null
    KiroResult UtilGetFloatFromBank(const DataBankType* pBank, FLOAT& rValue, BOOL bLogError, CHAR** ppDescription);

    /// Writes one end or both ends of an entry.
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

    /// Publishes a trigger value: SetDataTriggers with a payload of these fields.
    KiroResult PublishTrigger(INT32 dataID, FLOAT value, const CHAR* pDescription, BankDataSourceType source);

    const CHAR* GetBankName(KIROBankIDType bankID) const;
};
