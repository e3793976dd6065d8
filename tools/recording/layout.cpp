#include "tools/recording/layout.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <string_view>
#include <vector>

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

BYTE Low(UINT32 value)
{
    return static_cast<BYTE>(value);
}

struct RecordSum
{
    std::string name;
    UINT32      sum;

    bool operator==(const RecordSum&) const = default;
};

/// Sums of records, each once, those within a record before it: the first that differs is the one that was changed.
class RecordSums
{
public:
    VOID Add(const tuning::RecordDescription& rRecord)
    {
        if (!m_known.insert(&rRecord).second)
        {
            return;
        }
        UINT32 sum = 0;
        for (const tuning::RecordMember& rMember : rRecord.Members())
        {
            const BYTE row[] = {Low(UINT32(rMember.type)), Low(UINT32(rMember.form)), Low(rMember.count),
                                Low(rMember.count >> 8)};
            recording::Add(sum, rMember.pName);
            sum = ChecksumOf(row, sum);
            if (rMember.pRecord != nullptr)
            {
                Add(*rMember.pRecord);
                recording::Add(sum, rMember.pRecord->pName);
            }
        }
        m_sums.push_back({rRecord.pName, sum});
    }

    template <typename... Records> VOID AddAll()
    {
        (Add(tuning::DescriptionOf<Records>()), ...);
    }

    VOID AddFunctions()
    {
        UINT32 sum = 0;
        for (const CHAR* pName : SlotNames)
        {
            recording::Add(sum, pName);
        }
        m_sums.push_back({"IKIROCoreAlgo", sum});
    }

    const std::vector<RecordSum>& Sums() const
    {
        return m_sums;
    }

private:
    std::vector<RecordSum>                     m_sums;
    std::set<const tuning::RecordDescription*> m_known;
};

std::vector<RecordSum> BuildSums()
{
    RecordSums sums;
    sums.AddFunctions();
    for (INT32 bank = 0; bank < BankIDMax; ++bank)
    {
        sums.Add(*PayloadOf(static_cast<KIROBankIDType>(bank)));
    }
    for (INT32 type = 0; type < AECAlgoSetParamMax; ++type)
    {
        const SetParamRule* pRule = RuleOf(static_cast<AECAlgoSetParamType>(type));
        if (pRule != nullptr && pRule->pRecord != nullptr)
        {
            sums.Add(*pRule->pRecord);
        }
    }
    sums.AddAll<TuningMode, AECAlgoROI, StatsPeerInfoCombo, KIROPrecisionFlashHistory, AECMultiCamInfo,
                KIROArbitratedLimits, KIROMeteringInput, KIROMeteringOutput, KIROAnalyzerOutput, KIROArbitrationInput,
                KIROArbitrationOutput, KIROConvergenceInput, KIROConvergenceOutput, KIROFrameInfo,
                KIROPostProcessingInput, KIROSCDOutput, KIROAlgoStartExposureInfo, KIROCntStatsOut, KIROAlgoFlashInput,
                KIROAlgoFlashOutput, KIROExtensionInput, KIROExtensionOutput, AECAlgoEVCapabilities,
                AECAlgoFrameControl, AECAlgoExposureSet, AECAlgoExposureInfo, AECAlgoLEDCurrents, AECAlgoAPEXData,
                AECAlgoAdditionalInfo>();
    return sums.Sums();
}

UINT32 ChecksumOf(const std::vector<RecordSum>& rSums)
{
    UINT32 sum = 0;
    for (const RecordSum& rRecord : rSums)
    {
        Add(sum, rRecord.name);
        Add(sum, std::to_string(rRecord.sum));
    }
    return sum;
}

/// @return what differs first between the records of a recording and the present ones
std::string DifferenceOf(const std::vector<RecordSum>& rRecorded, const std::vector<RecordSum>& rPresent)
{
    const auto missing = [](const std::vector<RecordSum>& rFrom, const std::vector<RecordSum>& rIn)
    {
        return std::find_if(rFrom.begin(), rFrom.end(),
                            [&](const RecordSum& rSum)
                            { return std::find(rIn.begin(), rIn.end(), rSum) == rIn.end(); });
    };
    if (const auto other = missing(rRecorded, rPresent); other != rRecorded.end())
    {
        return "another " + other->name;
    }
    const auto added = missing(rPresent, rRecorded);
    return (added != rPresent.end()) ? "no " + added->name : "records in another order";
}

}  // namespace

UINT32 LayoutChecksum()
{
    return ChecksumOf(BuildSums());
}

VOID WriteLayout(FieldWriter& rWriter)
{
    const std::vector<RecordSum> sums = BuildSums();
    rWriter.Text("version", LibraryVersion);
    rWriter.Value("records", static_cast<UINT32>(sums.size()));
    for (const RecordSum& rRecord : sums)
    {
        rWriter.Text("name", rRecord.name.c_str());
        rWriter.Value("sum", rRecord.sum);
    }
    rWriter.Value("layout", ChecksumOf(sums));
}

VOID CheckLayout(FieldReader& rReader)
{
    CHAR*  pVersion = nullptr;
    UINT32 count    = 0;
    UINT32 layout   = 0;
    rReader.Text("version", pVersion);
    rReader.Value("records", count);
    std::vector<RecordSum> recorded;
    for (UINT32 index = 0; index < count; ++index)
    {
        CHAR*  pName = nullptr;
        UINT32 sum   = 0;
        rReader.Text("name", pName);
        rReader.Value("sum", sum);
        recorded.push_back({(pName != nullptr) ? pName : "", sum});
    }
    rReader.Value("layout", layout);
    const std::vector<RecordSum> present = BuildSums();
    if (layout != ChecksumOf(present))
    {
        throw MalformedError(fmt::format("recorded with {}, by version {}; this is version {}",
                                         DifferenceOf(recorded, present), (pVersion != nullptr) ? pVersion : "unknown",
                                         LibraryVersion));
    }
}

}  // namespace recording
