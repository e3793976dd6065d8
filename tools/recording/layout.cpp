#include "tools/recording/layout.h"

#include <string_view>

#include "tools/recording/chunks.h"
#include "tools/recording/setparams.h"
#include "tools/recording/slots.h"

namespace recording
{

const CHAR* const LibraryVersion = KIROCORE_VERSION;

namespace
{

VOID Add(UINT32& rSum, std::string_view text)
{
    // With its length, so that no two rows of names are alike.
    const auto length = static_cast<UINT32>(text.size());
    rSum              = ChecksumOf({reinterpret_cast<const BYTE*>(&length), sizeof(length)}, rSum);
    rSum              = ChecksumOf({reinterpret_cast<const BYTE*>(text.data()), text.size()}, rSum);
}

VOID Add(UINT32& rSum, const tuning::RecordDescription& rRecord)
{
    Add(rSum, rRecord.pName);
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        const tuning::RecordMember& rMember = rRecord.pMembers[index];
        const BYTE                  row[]   = {static_cast<BYTE>(rMember.type), static_cast<BYTE>(rMember.form),
                                               static_cast<BYTE>(rMember.count), static_cast<BYTE>(rMember.count >> 8)};
        Add(rSum, rMember.pName);
        rSum = ChecksumOf(row, rSum);
        if (rMember.pRecord != nullptr)
        {
            Add(rSum, *rMember.pRecord);
        }
    }
}

template <typename... Records> VOID AddAll(UINT32& rSum)
{
    (Add(rSum, DescriptionOf<Records>()), ...);
}

}  // namespace

UINT32 LayoutChecksum()
{
    UINT32 sum = 0;
    for (const CHAR* pName : SlotNames)
    {
        Add(sum, pName);
    }
    for (INT32 bank = 0; bank < BankIDMax; ++bank)
    {
        Add(sum, *PayloadOf(static_cast<KIROBankIDType>(bank)));
    }
    for (INT32 type = 0; type < AECAlgoSetParamMax; ++type)
    {
        const SetParamRule* pRule = RuleOf(static_cast<AECAlgoSetParamType>(type));
        if (pRule != nullptr && pRule->pRecord != nullptr)
        {
            Add(sum, *pRule->pRecord);
        }
    }
    AddAll<TuningMode, AECAlgoROI, StatsPeerInfoCombo, KIROPrecisionFlashHistory, AECMultiCamInfo, KIROArbitratedLimits,
           KIROMeteringInput, KIROMeteringOutput, KIROAnalyzerOutput, KIROArbitrationInput, KIROArbitrationOutput,
           KIROConvergenceInput, KIROConvergenceOutput, KIROFrameInfo, KIROPostProcessingInput, KIROSCDOutput,
           KIROAlgoStartExposureInfo, KIROCntStatsOut, KIROAlgoFlashInput, KIROAlgoFlashOutput, KIROExtensionInput,
           KIROExtensionOutput, AECAlgoEVCapabilities, AECAlgoFrameControl, AECAlgoExposureSet, AECAlgoExposureInfo,
           AECAlgoLEDCurrents, AECAlgoAPEXData, AECAlgoAdditionalInfo>(sum);
    return sum;
}

}  // namespace recording
