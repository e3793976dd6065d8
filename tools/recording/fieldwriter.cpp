#include "tools/recording/fieldwriter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fmt/format.h>

using tuning::Form;
using tuning::ValueType;

namespace recording
{

static_assert(std::endian::native == std::endian::little, "values go into files as they stand in memory");

namespace
{

constexpr tuning::Enumerator ExposureEnumerators[] = {{"short", 0}, {"long", 1}, {"safe", 2}};

template <typename T> T Load(const BYTE* pBytes)
{
    T value;
    std::memcpy(&value, pBytes, sizeof(value));
    return value;
}

std::string EnumText(INT32 value, const tuning::EnumDescription* pEnum)
{
    const CHAR* pName = (pEnum != nullptr) ? pEnum->NameOf(value) : nullptr;
    return (pName != nullptr) ? fmt::format("{} ({})", value, pName) : fmt::format("{}", value);
}

std::string ValueText(const Label& rLabel, const BYTE* pBytes)
{
    switch (rLabel.type)
    {
    case ValueType::Int8:
        return fmt::format("{}", static_cast<INT>(Load<INT8>(pBytes)));
    case ValueType::UInt8:
        return fmt::format("{}", static_cast<UINT>(Load<UINT8>(pBytes)));
    case ValueType::Int16:
        return fmt::format("{}", Load<INT16>(pBytes));
    case ValueType::UInt16:
        return fmt::format("{}", Load<UINT16>(pBytes));
    case ValueType::UInt32:
        return fmt::format("{}", Load<UINT32>(pBytes));
    case ValueType::Int64:
        return fmt::format("{}", Load<INT64>(pBytes));
    case ValueType::UInt64:
        return fmt::format("{}", Load<UINT64>(pBytes));
    case ValueType::Float:
        return fmt::format("{}", Load<FLOAT>(pBytes));
    case ValueType::Double:
        return fmt::format("{}", Load<DOUBLE>(pBytes));
    case ValueType::Text:
        return fmt::format("\"{}\"", std::string(reinterpret_cast<const CHAR*>(pBytes), rLabel.size));
    default:
        return EnumText(Load<INT32>(pBytes), rLabel.pEnum);
    }
}

/// Not-a-numbers and zeros may look alike.
Difference Describe(const Label& rLabel, const BYTE* pRecorded, const BYTE* pNow)
{
    Difference difference = {rLabel.path, ValueText(rLabel, pRecorded), ValueText(rLabel, pNow)};
    if (difference.recorded == difference.now && rLabel.type == ValueType::Float)
    {
        difference.recorded += fmt::format(" (bits {:08x})", Load<UINT32>(pRecorded));
        difference.now += fmt::format(" (bits {:08x})", Load<UINT32>(pNow));
    }
    return difference;
}

}  // namespace

const tuning::EnumDescription ExposureNames = {"AECAlgoExposureType", ExposureEnumerators,
                                               static_cast<UINT32>(std::size(ExposureEnumerators))};

FieldWriter::Path::Path(FieldWriter& rWriter, const CHAR* pName) : m_rWriter(rWriter), m_length(rWriter.m_path.size())
{
    if (rWriter.m_pLabels != nullptr && *pName != '\0')
    {
        rWriter.m_path += (m_length > 0) ? "." : "";
        rWriter.m_path += pName;
    }
}

FieldWriter::Path::Path(FieldWriter& rWriter, UINT64 index, const tuning::EnumDescription* pNames)
    : m_rWriter(rWriter), m_length(rWriter.m_path.size())
{
    if (rWriter.m_pLabels != nullptr)
    {
        const CHAR* pName = (pNames != nullptr) ? pNames->NameOf(static_cast<INT32>(index)) : nullptr;
        rWriter.m_path += (pName != nullptr) ? fmt::format("[{}]", pName) : fmt::format("[{}]", index);
    }
}

FieldWriter::Path::~Path()
{
    m_rWriter.m_path.resize(m_length);
}

FieldWriter::FieldWriter(std::vector<BYTE>& rBytes, std::vector<Label>* pLabels)
    : m_rBytes(rBytes), m_pLabels(pLabels), m_hasTexts(true)
{
}

VOID FieldWriter::Record(const CHAR* pName, const tuning::RecordDescription& rDescription, const VOID* pRecord)
{
    const Path path(*this, pName);
    Members(rDescription, pRecord);
}

VOID FieldWriter::Members(const tuning::RecordDescription& rRecord, const VOID* pRecord)
{
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        if (rRecord.pMembers[index].IsStored())
        {
            const Path path(*this, rRecord.pMembers[index].pName);
            Member(rRecord.pMembers[index], static_cast<const BYTE*>(pRecord));
        }
    }
}

VOID FieldWriter::Member(const tuning::RecordMember& rMember, const BYTE* pRecord)
{
    const BYTE* pValues = pRecord + rMember.offset;
    UINT32      count   = rMember.count;
    if (rMember.HasCount())
    {
        count = Load<UINT32>(pRecord + rMember.countOffset);
        if (rMember.form == Form::Variable)
        {
            pValues = Load<const BYTE*>(pValues);
            count   = (pValues != nullptr) ? count : 0;
        }
        else
        {
            count = std::min(count, 1U);
        }
        const Path path(*this, "count");
        Shape(count, sizeof(count));
    }
    Values(rMember, pValues, count, rMember.form == Form::Fixed || rMember.form == Form::Variable);
}

VOID FieldWriter::Values(const tuning::RecordMember& rMember, const BYTE* pValues, UINT32 count, bool isArray)
{
    if (rMember.type != ValueType::Record && rMember.type != ValueType::Text)
    {
        Scalars(pValues, count, rMember.valueSize, rMember.type, rMember.pEnum, isArray);
        return;
    }
    for (UINT32 index = 0; index < count; ++index)
    {
        const BYTE* pValue = pValues + static_cast<size_t>(index) * rMember.valueSize;
        const Path  element =
            isArray ? Path(*this, index, (rMember.pEnum == &ExposureNames) ? rMember.pEnum : nullptr) : Path(*this, "");
        if (rMember.type == ValueType::Record)
        {
            Members(*rMember.pRecord, pValue);
        }
        else if (m_hasTexts)
        {
            Text("", Load<const CHAR*>(pValue));
        }
    }
}

VOID FieldWriter::Scalars(const VOID* pValues, UINT64 count, size_t size, ValueType type,
                          const tuning::EnumDescription* pEnum, bool isArray)
{
    for (UINT64 index = 0; m_pLabels != nullptr && index < count; ++index)
    {
        const bool hasNames = pEnum == &ExposureNames;
        const Path element  = isArray ? Path(*this, index, hasNames ? pEnum : nullptr) : Path(*this, "");
        m_pLabels->push_back({m_path, m_rBytes.size() + index * size, size, type, hasNames ? nullptr : pEnum, false});
    }
    Put(pValues, count * size);
}

VOID FieldWriter::Put(const VOID* pBytes, size_t size)
{
    const auto* pFirst = static_cast<const BYTE*>(pBytes);
    m_rBytes.insert(m_rBytes.end(), pFirst, pFirst + size);
}

VOID FieldWriter::Note(size_t size, ValueType type, const tuning::EnumDescription* pEnum, bool isShape)
{
    if (m_pLabels != nullptr)
    {
        m_pLabels->push_back({m_path, m_rBytes.size(), size, type, pEnum, isShape});
    }
}

VOID FieldWriter::Shape(UINT32 value, size_t size)
{
    Note(size, (size == sizeof(UINT32)) ? ValueType::UInt32 : ValueType::UInt8, nullptr, true);
    Put(&value, size);
}

bool FieldWriter::Presence(const CHAR* pName, const VOID* pTarget)
{
    const Path path(*this, pName);
    const Path presence(*this, "present");
    Shape((pTarget != nullptr) ? 1 : 0, sizeof(UINT8));
    return pTarget != nullptr;
}

VOID FieldWriter::Text(const CHAR* pName, const CHAR* pText)
{
    const Path   path(*this, pName);
    const UINT32 length = (pText != nullptr) ? static_cast<UINT32>(std::strlen(pText)) : NoText;
    // The text itself says more than its length where both differ.
    const size_t start = (m_pLabels != nullptr) ? m_pLabels->size() : 0;
    Shape(length, sizeof(length));
    if (pText != nullptr && m_pLabels != nullptr)
    {
        m_pLabels->at(start).path += " length";
        Note(length, ValueType::Text, nullptr, false);
    }
    Put(pText, (pText != nullptr) ? length : 0);
}

std::vector<Difference> Compare(std::span<const BYTE> recorded, std::span<const BYTE> now,
                                const std::vector<Label>& rLabels)
{
    std::vector<Difference> differences;
    for (const Label& rLabel : rLabels)
    {
        if (rLabel.offset + rLabel.size > recorded.size())
        {
            differences.push_back({rLabel.path, "nothing", ValueText(rLabel, now.data() + rLabel.offset)});
            return differences;
        }
        const BYTE* pRecorded = recorded.data() + rLabel.offset;
        const BYTE* pNow      = now.data() + rLabel.offset;
        if (rLabel.size > 0 && std::memcmp(pRecorded, pNow, rLabel.size) != 0)
        {
            differences.push_back(Describe(rLabel, pRecorded, pNow));
            if (rLabel.isShape)
            {
                return differences;
            }
        }
    }
    if (recorded.size() > now.size())
    {
        differences.push_back({"length", fmt::format("{} bytes", recorded.size()), fmt::format("{}", now.size())});
    }
    return differences;
}

}  // namespace recording
