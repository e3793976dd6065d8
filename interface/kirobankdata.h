/// @file
/// Arguments of setBankData, getBankData and setDynamicBankData.
///
/// A data bank holds entries by data ID; tuning refers to a value by bank and data ID. The three value banks keep
/// values in slots 0 to 999, which a write copies into and which are never empty. The tuned banks keep addresses of
/// payloads, at most 1000 each: those of the tuning, as creation or the last AECAlgoSetParamTunaraData took them, and
/// what host and stages have set since. Their data ID 0 is the entry that the context status selects by the tuned
/// priority map: the matching one of the highest priority, otherwise the newest entry, which is the last of the tuning
/// until somebody adds one.
#pragma once

#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

/// All banks in the order of their IDs, with the payload of each, which begins with its data ID. schema/<namespace>.h
/// declares the payload.
#define KIRO_BANKS(TUNED, VALUES)                                                                                      \
    TUNED(BankIDROITable, kirodbroi::DBROIPayload)                                                                     \
    TUNED(BankIDMetering2D, kirodb2dmeterweight::DBMeter2DWeightPayload)                                               \
    TUNED(BankIDMetering1D, kirodb1dmeterweight::DBMeter1DWeightPayload)                                               \
    VALUES(BankIDSceneAnalyzer, kirodbsceneanalyzer::DBStartEndPayload)                                                \
    VALUES(BankIDStatsCalculator, kirodbstatscalculator::DBFloatPayload)                                               \
    TUNED(BankIDArbitrationTable, kirodbarbitrationtable::DBArbitrationTablePayload)                                   \
    TUNED(BankIDArbitrationOrder, kirodbarbitrationorder::DBArbitrationOrderPayload)                                   \
    TUNED(BankIDArbitrationLUT, kirodbarbitrationlut::DBArbitrationLUTPayload)                                         \
    TUNED(BankIDArbitrationRange, kirodbarbitrationrange::DBArbitrationRangePayload)                                   \
    VALUES(BankIDTriggers, kirodbstatscalculator::DBFloatPayload)                                                      \
    TUNED(BankIDActiveAnalyzers, kirodbactiveanalyzers::DBActiveAnalyzersPayload)                                      \
    TUNED(BankIDConvBase, kirodbconvbase::DBConvBasePayload)                                                           \
    TUNED(BankIDConvStretch, kirodbconvstretch::DBConvStretchPayload)                                                  \
    TUNED(BankIDConvSettle, kirodbconvsettle::DBConvSettlePayload)                                                     \
    TUNED(BankIDConvActiveSCD, kirodbconvactivescd::DBConvActiveSCDPayload)                                            \
    TUNED(BankIDActiveCalculators, kirodbactivecalculators::DBActiveCalculatorsPayload)                                \
    TUNED(BankIDSnapshot, kirodbsnapshot::DBSnapshotPayload)

/// @return whether the bank is a value bank
constexpr bool IsValueBank(KIROBankIDType bankID)
{
#define TUNED(bank, Payload)
#define VALUES(bank, Payload) bankID == (bank) ||
    return KIRO_BANKS(TUNED, VALUES) false;
#undef VALUES
#undef TUNED
}

/// What setBankData writes. The record is needed for the call alone.
///
/// The payload stays the host's. In a tuned bank it is read until another entry of its ID takes its place, until the
/// next AECAlgoSetParamTunaraData, which drops it, or until the instance ends. A value bank copies it, but not the text
/// of its description, which must live until the slot is written again; it may be null.
struct KIROSetBankData
{
    KIROBankIDType bankID;   ///< bank to write
    VOID*          pData;    ///< payload; its data ID names the entry. BankIDSceneAnalyzer ignores -1
    INT32          nInSize;  ///< bytes, must be the size of the bank's payload
};

/// What getBankData reads.
struct KIROGetBankData
{
    KIROBankIDType bankID;    ///< by the host: bank to read
    INT32          dataID;    ///< by the host: which entry; 0 of a tuned bank is the one that the context selects
    VOID*          pData;     ///< by the core: the payload, read-only; see getBankData for what it holds on failure
    INT32          nOutSize;  ///< by the host: bytes, must be the size of the bank's payload
};

/// What setDynamicBankData does to data ID 0.
enum KIRODynamicDataOperationType : INT32
{
    DynamicDataOverride = 0,  ///< stands for the given data ID; so does any other value
    DynamicDataReset    = 1   ///< is the entry that the context selects; the data ID is not read
};
