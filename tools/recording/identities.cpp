#include "tools/recording/identities.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>

#include "parameters/tuningsetmanager.h"
#include "schema/kirodb1dmeterweight.h"
#include "schema/kirodb2dmeterweight.h"
#include "schema/kirodbactiveanalyzers.h"
#include "schema/kirodbactivecalculators.h"
#include "schema/kirodbarbitrationlut.h"
#include "schema/kirodbarbitrationrange.h"
#include "schema/kirodbconvactivescd.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"
#include "schema/kirodbroi.h"
#include "schema/kirodbsceneanalyzer.h"
#include "schema/kirodbsnapshot.h"
#include "schema/kirodbstatscalculator.h"
#include "schema/kiroflash.h"
#include "schema/namehash.h"

using kirodbarbitrationtable::ExposureTableType;

namespace recording
{

namespace
{

/// How the table of an arbitration's input is written.
enum class TableKind : UINT8
{
    Null  = 0,
    Last  = 1,  ///< as the core has named it last
    Other = 2   ///< the host's own, which follows
};

}  // namespace

const tuning::RecordDescription& DescriptionOf(HostRecordKind kind)
{
    return (kind == HostRecordKind::PeerInfo) ? tuning::DescriptionOf<AECMultiCamInfo>()
                                              : tuning::DescriptionOf<KIROPrecisionFlashHistory>();
}

const tuning::RecordDescription* PayloadOf(KIROBankIDType bank)
{
    static constexpr const tuning::RecordDescription* payloads[] = {
#define BANK(bankID, Payload) &tuning::DescriptionOf<Payload>(),
        KIRO_BANKS(BANK, BANK)
#undef BANK
    };
    static_assert(std::size(payloads) == BankIDMax);
    return (static_cast<UINT32>(bank) < std::size(payloads)) ? payloads[bank] : nullptr;
}

VOID InputWriter::TuningData(const StatsTuningData& rTuning)
{
    const auto& rKnown = m_rIdentities.tunings;
    const auto  found  = std::find(rKnown.begin(), rKnown.end(), rTuning.pTuningSetManager);
    if (found == rKnown.end())
    {
        throw MalformedError("a camera uses a tuning store that the recorder was not told of");
    }
    Value("tuning", static_cast<UINT32>(found - rKnown.begin()));
    Value("numSelectors", rTuning.numSelectors);
    Array("selectors", static_cast<const TuningMode*>(rTuning.pTuningModeSelectors), rTuning.numSelectors);
    m_rInstance.tuning = rTuning;
}

VOID InputReader::TuningData(StatsTuningData& rTuning)
{
    UINT32 number = 0;
    Value("tuning", number);
    if (number >= m_rIdentities.tunings.size())
    {
        throw MalformedError("it names a tuning that is not in the recording");
    }
    TuningMode* pSelectors    = nullptr;
    rTuning.pTuningSetManager = m_rIdentities.tunings[number];
    Value("numSelectors", rTuning.numSelectors);
    Array("selectors", pSelectors, rTuning.numSelectors);
    rTuning.pTuningModeSelectors = pSelectors;
}

VOID InputWriter::OwnOrHostRecord(HostRecordKind kind, VOID* pRecord)
{
    const auto own = m_rIdentities.ownRecords.find(pRecord);
    if (pRecord == nullptr)
    {
        Value("kind", ReferenceKind::Null);
        Value("number", UINT32{0});
    }
    else if (own != m_rIdentities.ownRecords.end())
    {
        Value("kind", ReferenceKind::Instance);
        Value("number", own->second);
    }
    else
    {
        const UINT32 number = m_rIdentities.hostRecordCount++;
        m_rIdentities.hostRecords.push_back({number, m_rInstance.number, kind, pRecord, {}});
        Value("kind", ReferenceKind::HostRecord);
        Value("number", number);
    }
}

VOID InputReader::OwnOrHostRecord(HostRecordKind kind, VOID*& rpRecord)
{
    auto   reference = ReferenceKind::Null;
    UINT32 number    = 0;
    Value("kind", reference);
    Value("number", number);
    rpRecord = nullptr;
    if (reference == ReferenceKind::Instance && kind == HostRecordKind::PeerInfo &&
        number < m_rIdentities.instances.size())
    {
        // Not the core's: another camera may follow it beyond the life of that instance.
        ReplayInstance& rPeer = m_rIdentities.instances[number];
        rpRecord              = (rPeer.pPeerInfo != nullptr) ? &rPeer.shared : nullptr;
    }
    else if (reference == ReferenceKind::HostRecord)
    {
        const auto found = m_rIdentities.hostRecords.find(number);
        if (found == m_rIdentities.hostRecords.end())
        {
            throw MalformedError("it names a record of the host's that is not in the recording");
        }
        rpRecord = found->second.pPayload;
    }
    else if (reference != ReferenceKind::Null)
    {
        throw MalformedError("it names a record that is not in the recording");
    }
}

VOID InputWriter::ForgetHostRecords(HostRecordKind kind)
{
    std::erase_if(m_rIdentities.hostRecords, [&](const HostRecord& rRecord)
                  { return rRecord.instance == m_rInstance.number && rRecord.kind == kind; });
}

bool InputWriter::IsReadForPreflash(const CHAR* pChannelName) const
{
    const StatsTuningData& rData  = m_rInstance.tuning;
    const auto*            pFlash = static_cast<const kiroflash::KIROFlashType*>(
        static_cast<TuningSetManager*>(rData.pTuningSetManager)
            ->KeepModuleRecord("kiroflash", namehash::OfName("kiroflash"),
                                          static_cast<const TuningMode*>(rData.pTuningModeSelectors), rData.numSelectors));
    if (pFlash == nullptr || pChannelName == nullptr)
    {
        return false;
    }
    const auto& rTuning = pFlash->preflashStatsPreProcessing;
    const auto isName = [&](const CHAR* pTuned) { return pTuned != nullptr && std::strcmp(pTuned, pChannelName) == 0; };
    return isName(rTuning.stopMeteringYLevel.statsNameOff) || isName(rTuning.stopMeteringYLevel.statsNameLow) ||
           isName(rTuning.stopMeteringYSaturation.statsNameOff) || isName(rTuning.stopMeteringYSaturation.statsNameLow);
}

VOID InputWriter::LastTable(ExposureTableType* pTable)
{
    const auto kind = (pTable == nullptr)                  ? TableKind::Null
                      : (pTable == m_rInstance.pLastTable) ? TableKind::Last
                                                           : TableKind::Other;
    Value("table", kind);
    if (kind == TableKind::Other)
    {
        Record("pTable", *pTable);
    }
}

VOID InputReader::LastTable(ExposureTableType*& rpTable)
{
    auto kind = TableKind::Null;
    Value("table", kind);
    rpTable = (kind == TableKind::Last) ? m_rInstance.pLastTable : nullptr;
    if (kind == TableKind::Other)
    {
        Argument("pTable", rpTable);
    }
}

VOID InputWriter::BankPayload(KIROBankIDType bank, VOID* pPayload)
{
    if (!IsValueBank(bank))
    {
        const auto [kept, isNew] =
            m_rIdentities.kept.try_emplace(pPayload, static_cast<UINT32>(m_rIdentities.kept.size()));
        Value("object", kept->second);
    }
    Record("payload", *PayloadOf(bank), pPayload);
}

/// The same object is the same address again: an entry that was selected before shows what is set now.
VOID InputReader::BankPayload(KIROBankIDType bank, VOID*& rpPayload)
{
    const tuning::RecordDescription& rDescription = *PayloadOf(bank);
    if (IsValueBank(bank))
    {
        rpPayload = Memory().Make(rDescription.size);
        Members(rDescription, rpPayload);
        return;
    }
    UINT32 number = 0;
    Value("object", number);
    KeptPayload& rKept = m_rInstance.payloads[{bank, number}];
    if (rKept.pPayload == nullptr)
    {
        rKept.pPayload = rKept.record.Make(rDescription.size);
    }
    Arena  nested;
    Arena* pOuter = m_pArena;
    m_pArena      = &nested;
    std::vector<std::max_align_t> payload(rDescription.size / sizeof(std::max_align_t) + 1);
    Members(rDescription, payload.data());
    m_pArena = pOuter;
    std::copy_n(reinterpret_cast<const BYTE*>(payload.data()), rDescription.size, static_cast<BYTE*>(rKept.pPayload));
    rKept.nested = std::move(nested);
    rpPayload    = rKept.pPayload;
}

}  // namespace recording
