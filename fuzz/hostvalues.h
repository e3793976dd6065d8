/// @file
/// Arguments of the function table's calls from few bytes: records that a host may hand over, with any values.
///
/// It stands where a recording's reader does (tools/recording/identities.h), so that the calls of tools/recording serve
/// here too. A value takes one byte as a rule, so that a whole frame of arguments fits into an input; at its end all
/// values are zero. Memory is exactly as long as the record says.
#pragma once

#include <deque>
#include <span>

#include "tools/recording/identities.h"
#include "tools/recording/queryoutputs.h"
#include "tools/recording/setparams.h"

namespace fuzz
{

/// Names of the statistics that the example tunings select.
constexpr const CHAR* ChannelNames[] = {
    "SafeLuma", "SafeHist", "ShortLuma", "ShortHist", "LongLuma",       "LongHist",       "SafeSaturation",
    "SafeRG",   "SafeBG",   "luma16Off", "luma16Low", "gridRGratio",    "gridBGratio",    "sat16Off",
    "sat16Low", "ShortRG",  "ShortBG",   "LongRG",    "LongSaturation", "ShortSaturation"};

/// What is left of an input.
class HostBytes
{
public:
    explicit HostBytes(std::span<const BYTE> bytes) : m_bytes(bytes)
    {
    }

    bool IsEmpty() const
    {
        return m_bytes.empty();
    }

    /// @return 0 behind the end
    BYTE Next();

    VOID Fill(VOID* pTo, size_t size);

private:
    std::span<const BYTE> m_bytes;
};

/// What a host keeps for one camera, as long as its instance lives.
struct HostMemory
{
    StatsTuningData                      tuning{};
    recording::InstanceState             state;
    recording::Arena                     forLife;
    std::vector<std::pair<INT32, VOID*>> payloads;  ///< that banks keep, by bank
    std::vector<AECMultiCamInfo*>        peers;     ///< records of this camera and of the others
    KIROPrecisionFlashHistory            history{};
    AECMultiCamInfo                      foreignPeer{};
    std::map<INT64, recording::Arena>    inputs;  ///< of the last call of a kind that was taken, and of those since
};

class HostValues : public tuning::UntrackedVisitor
{
public:
    static constexpr bool IsReading = true;

    /// All are used, not owned.
    HostValues(HostBytes& rBytes, recording::Arena& rArena, HostMemory& rHost)
        : m_rBytes(rBytes), m_pArena(&rArena), m_rHost(rHost)
    {
    }

    // As recording::InputReader has them. @throws recording::MalformedError for more than an input may ask for

    template <typename T> VOID Value(const CHAR* pName, T& rValue)
    {
        static_assert(recording::IsScalar<T>);
        if (!TakesFittingSize(pName, &rValue))
        {
            Scalar(TypeOf<T>(), reinterpret_cast<BYTE*>(&rValue), nullptr);
        }
        Expect(rValue);
    }

    template <typename T> VOID Record(const CHAR*, T& rRecord)
    {
        Members(tuning::DescriptionOf<T>(), &rRecord);
    }

    template <typename T> VOID Argument(const CHAR* pName, T*& rpRecord)
    {
        rpRecord = static_cast<T*>(m_pArena->Make(sizeof(T)));
        Record(pName, *rpRecord);
    }

    template <typename T> VOID Reference(const CHAR* pName, T*& rpRecord)
    {
        if (PresenceInto(pName, rpRecord))
        {
            Record(pName, *rpRecord);
        }
    }

    template <typename T> VOID Array(const CHAR* pName, T*& rpValues, UINT64 count)
    {
        rpValues = nullptr;
        if (!Presence(pName))
        {
            return;
        }
        rpValues = static_cast<T*>(MakeArray(count, sizeof(T)));
        if constexpr (recording::IsScalar<T>)
        {
            Scalars(TypeOf<T>(), reinterpret_cast<BYTE*>(rpValues), count, sizeof(T), nullptr);
        }
        else
        {
            for (UINT64 index = 0; index < count; ++index)
            {
                Members(tuning::DescriptionOf<T>(), rpValues + index);
            }
        }
    }

    template <typename T> bool PresenceInto(const CHAR* pName, T*& rpTarget)
    {
        rpTarget = Presence(pName) ? static_cast<T*>(m_pArena->Make(sizeof(T))) : nullptr;
        return rpTarget != nullptr;
    }

    /// Mostly there: what is missing is soon refused.
    bool Presence(const CHAR*)
    {
        return m_rBytes.Next() != Missing;
    }

    VOID Text(const CHAR* pName, CHAR*& rpText);
    VOID Members(const tuning::RecordDescription& rRecord, VOID* pRecord);

    // Visitor of a record; see schema/recordwalk.h.

    tuning::MemberValues<BYTE> CountedValues(const tuning::RecordMember& rMember, BYTE* pRecord);
    VOID                       Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<BYTE>& rValues);
    VOID                       Text(const tuning::RecordMember& rMember, BYTE* pPlace);

    VOID TuningData(StatsTuningData& rTuning);
    VOID OwnOrHostRecord(recording::HostRecordKind kind, VOID*& rpRecord);
    VOID LastTable(kirodbarbitrationtable::ExposureTableType*& rpTable);
    VOID BankPayload(KIROBankIDType bank, VOID*& rpPayload);

    VOID ForgetHostRecords(recording::HostRecordKind)
    {
    }

    /// Entries of lists; nothing is read to fill them.
    size_t Remaining() const
    {
        return ListEntriesMax;
    }

    recording::Arena& Memory()
    {
        return *m_pArena;
    }

private:
    static constexpr BYTE   Missing        = 0xFF;
    static constexpr size_t ListEntriesMax = 16;

    template <typename T> static constexpr tuning::ValueType TypeOf()
    {
        if constexpr (std::is_enum_v<T>)
        {
            return (sizeof(T) == sizeof(UINT8)) ? tuning::ValueType::UInt8 : tuning::ValueType::Int32;
        }
        else
        {
            return tuning::ValueTypeOf<T>();
        }
    }

    // Sizes that a call is refused for unless they are those of what it names: mostly they are.

    template <typename T> VOID Expect(T value)
    {
        if constexpr (std::is_same_v<T, KIROBankIDType>)
        {
            const tuning::RecordDescription* pPayload = recording::PayloadOf(value);
            m_fittingSize                             = (pPayload != nullptr) ? pPayload->size : 0;
        }
        else if constexpr (std::is_same_v<T, AECAlgoSetParamType>)
        {
            const recording::SetParamRule* pRule = recording::RuleOf(value);
            m_fittingSize                        = (pRule != nullptr) ? pRule->leastSize : 0;
        }
        else if constexpr (std::is_same_v<T, AECAlgoGetParamOutputType>)
        {
            m_fittingSize = static_cast<UINT32>(recording::SizeOfOutput(value));
        }
    }

    bool  TakesFittingSize(const CHAR* pName, VOID* pSize);
    VOID* MakeArray(UINT64 count, size_t size);
    VOID  Scalar(tuning::ValueType type, BYTE* pTo, const tuning::EnumDescription* pEnum);
    VOID  Scalars(tuning::ValueType type, BYTE* pTo, UINT64 count, size_t size, const tuning::EnumDescription* pEnum);

    HostBytes&        m_rBytes;
    recording::Arena* m_pArena;
    HostMemory&       m_rHost;
    UINT32            m_fittingSize = 0;
};

}  // namespace fuzz
