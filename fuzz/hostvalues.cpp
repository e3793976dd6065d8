#include "fuzz/hostvalues.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

using tuning::ValueType;

namespace fuzz
{

namespace
{

constexpr BYTE   Raw           = 0xFF;   ///< the value's own bytes follow
constexpr UINT64 ArrayCountMax = 65536;  ///< as large as statistics get

using Floats = std::numeric_limits<FLOAT>;

constexpr std::array FloatValues = {0.0f,
                                    1.0f,
                                    Floats::quiet_NaN(),
                                    Floats::infinity(),
                                    -Floats::infinity(),
                                    Floats::max(),
                                    Floats::min(),
                                    Floats::lowest(),
                                    Floats::denorm_min(),
                                    -0.0f,
                                    -1.0f,
                                    0.5f,
                                    1e-6f,
                                    1e6f,
                                    1e9f,
                                    1e18f,
                                    1e20f,
                                    1e38f,
                                    -1e-6f,
                                    -1e9f,
                                    -1e20f,
                                    255.0f,
                                    256.0f,
                                    16777216.0f,
                                    2147483648.0f,
                                    4294967296.0f,
                                    1.8446744e19f,
                                    9.2233720e18f,
                                    1.03f,
                                    0.99999994f};

constexpr std::array<UINT64, 24> WholeValues = {~UINT64{0},
                                                0x7FFFFFFF,
                                                0x80000000,
                                                0xFFFFFFFE,
                                                0x7FFFFFFFFFFFFFFF,
                                                0x8000000000000000,
                                                8333333,
                                                10000000,
                                                16666667,
                                                33333333,
                                                20000,
                                                1000000,
                                                1000000000,
                                                60000000000,
                                                400,
                                                1000,
                                                4096,
                                                65535,
                                                65536,
                                                256,
                                                999,
                                                1024,
                                                0xFFFFFF9C,
                                                1ULL << 53};

UINT64 WholeOf(BYTE choice)
{
    constexpr BYTE smallEnd = 160;
    constexpr BYTE powerEnd = smallEnd + 64;
    if (choice < smallEnd)
    {
        return choice;
    }
    return (choice < powerEnd) ? UINT64{1} << (choice - smallEnd)
                               : WholeValues[(choice - powerEnd) % WholeValues.size()];
}

DOUBLE FloatingOf(BYTE choice)
{
    constexpr FLOAT step = 0.125f;
    return (choice < FloatValues.size()) ? FloatValues[choice] : static_cast<FLOAT>(choice) * step;
}

size_t SizeOf(ValueType type)
{
    return tuning::WithTypeOf(type, [](auto zero) { return sizeof(zero); });
}

}  // namespace

BYTE HostBytes::Next()
{
    if (m_bytes.empty())
    {
        return 0;
    }
    const BYTE next = m_bytes[0];
    m_bytes         = m_bytes.subspan(1);
    return next;
}

VOID HostBytes::Fill(VOID* pTo, size_t size)
{
    for (size_t index = 0; index < size; ++index)
    {
        static_cast<BYTE*>(pTo)[index] = Next();
    }
}

VOID HostValues::Scalar(ValueType type, BYTE* pTo, const tuning::EnumDescription* pEnum)
{
    constexpr BYTE namedEnd = 0xE0;
    const BYTE     choice   = m_rBytes.Next();
    if (choice == Raw)
    {
        m_rBytes.Fill(pTo, SizeOf(type));
    }
    else if (type == ValueType::Float)
    {
        const FLOAT value = static_cast<FLOAT>(FloatingOf(choice));
        std::memcpy(pTo, &value, sizeof(value));
    }
    else if (type == ValueType::Double)
    {
        const DOUBLE value = FloatingOf(choice);
        std::memcpy(pTo, &value, sizeof(value));
    }
    else if (pEnum != nullptr && pEnum->count > 0 && choice < namedEnd)
    {
        std::memcpy(pTo, &pEnum->pEnumerators[choice % pEnum->count].value, sizeof(INT32));
    }
    else
    {
        const UINT64 value = WholeOf(choice);
        std::memcpy(pTo, &value, SizeOf(type));
    }
}

bool HostValues::TakesFittingSize(const CHAR* pName, VOID* pSize)
{
    constexpr std::array<std::string_view, 4> names = {"nInSize", "nOutSize", "sizeOfAECSetParam", "sizeOfOutputData"};
    if (std::find(names.begin(), names.end(), pName) == names.end() || m_rBytes.Next() == Raw)
    {
        return false;
    }
    std::memcpy(pSize, &m_fittingSize, sizeof(m_fittingSize));
    return true;
}

/// Many values are all alike but for one, which has a place of its own.
VOID HostValues::Scalars(ValueType type, BYTE* pTo, UINT64 count, size_t size, const tuning::EnumDescription* pEnum)
{
    constexpr UINT64 fewValues = 8;
    for (UINT64 index = 0; index < count; ++index)
    {
        if (index < 1 || count <= fewValues)
        {
            Scalar(type, pTo + index * size, pEnum);
        }
        else
        {
            std::memcpy(pTo + index * size, pTo, size);
        }
    }
    if (count > fewValues)
    {
        const UINT64 place = m_rBytes.Next() * (count - 1) / Raw;
        Scalar(type, pTo + place * size, pEnum);
    }
}

VOID* HostValues::MakeArray(UINT64 count, size_t size)
{
    if (count > ArrayCountMax)
    {
        throw recording::MalformedError("more than an input may ask for");
    }
    return m_pArena->Make(count * size);
}

VOID HostValues::Members(const tuning::RecordDescription& rRecord, VOID* pRecord)
{
    tuning::WalkRecord(rRecord, static_cast<BYTE*>(pRecord), *this);
}

tuning::MemberValues<BYTE> HostValues::CountedValues(const tuning::RecordMember& rMember, BYTE* pRecord)
{
    const bool   isArray = rMember.form == tuning::Form::Variable;
    const UINT32 count   = m_rBytes.Next() % (isArray ? ListEntriesMax : 2);
    return tuning::SetCount(rMember, pRecord, count, isArray ? MakeArray(count, rMember.valueSize) : nullptr);
}

VOID HostValues::Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<BYTE>& rValues)
{
    Scalars(rMember.type, rValues.pFirst, rValues.count, rMember.valueSize, rMember.pEnum);
}

VOID HostValues::Text(const tuning::RecordMember& rMember, BYTE* pPlace)
{
    CHAR* pText = nullptr;
    Text(rMember.pName, pText);
    tuning::Store(pPlace, pText);
}

/// In memory of its own: a name that is kept beyond its life is found out.
VOID HostValues::Text(const CHAR*, CHAR*& rpText)
{
    constexpr BYTE ownText = 0xF0;
    const BYTE     choice  = m_rBytes.Next();
    rpText                 = nullptr;
    if (choice == Missing)
    {
        return;
    }
    if (choice < ownText)
    {
        const CHAR* pName = ChannelNames[choice % std::size(ChannelNames)];
        rpText            = static_cast<CHAR*>(m_pArena->Make(std::strlen(pName) + 1));
        std::copy_n(pName, std::strlen(pName), rpText);
    }
    else
    {
        const size_t length = choice - ownText;
        rpText              = static_cast<CHAR*>(m_pArena->Make(length + 1));
        m_rBytes.Fill(rpText, length);
    }
}

VOID HostValues::TuningData(StatsTuningData& rTuning)
{
    const size_t count      = m_rBytes.Next() % (static_cast<size_t>(ModeType::EnumModeType_COUNT) + 2);
    auto*        pSelectors = static_cast<TuningMode*>(m_pArena->Make(count * sizeof(TuningMode)));
    for (size_t level = 0; level < count; ++level)
    {
        pSelectors[level].mode          = static_cast<ModeType>(level);
        pSelectors[level].subMode.value = (level > 0) ? m_rBytes.Next() : UINT16{0};
    }
    rTuning = {m_rHost.tuning.pTuningSetManager, pSelectors, static_cast<UINT>(count)};
}

VOID HostValues::OwnOrHostRecord(recording::HostRecordKind kind, VOID*& rpRecord)
{
    const BYTE choice = m_rBytes.Next();
    if (choice == 0)
    {
        rpRecord = nullptr;
    }
    else if (kind == recording::HostRecordKind::PrecisionFlashHistory)
    {
        Record("history", m_rHost.history);
        rpRecord = &m_rHost.history;
    }
    else if (choice <= m_rHost.peers.size())
    {
        rpRecord = m_rHost.peers[choice - 1];
    }
    else
    {
        Record("peer", m_rHost.foreignPeer);
        rpRecord = &m_rHost.foreignPeer;
    }
}

VOID HostValues::LastTable(kirodbarbitrationtable::ExposureTableType*& rpTable)
{
    switch (m_rBytes.Next())
    {
    case 0:
        rpTable = m_rHost.state.pLastTable;
        break;
    case 1:
        Argument("pTable", rpTable);
        break;
    default:
        rpTable = nullptr;
        break;
    }
}

/// A payload of a bank that keeps it may be one that the bank has already, with other contents.
VOID HostValues::BankPayload(KIROBankIDType bank, VOID*& rpPayload)
{
    const tuning::RecordDescription& rDescription = *recording::PayloadOf(bank);
    if (IsValueBank(bank))
    {
        rpPayload = m_pArena->Make(rDescription.size);
        Members(rDescription, rpPayload);
        return;
    }
    recording::Arena* const pOuter = m_pArena;
    m_pArena                       = &m_rHost.forLife;
    const size_t again             = m_rBytes.Next();
    if (again < m_rHost.payloads.size() && m_rHost.payloads[again].first == bank)
    {
        rpPayload = m_rHost.payloads[again].second;
    }
    else
    {
        rpPayload = m_pArena->Make(rDescription.size);
        m_rHost.payloads.emplace_back(bank, rpPayload);
    }
    Members(rDescription, rpPayload);
    m_pArena = pOuter;
}

}  // namespace fuzz
