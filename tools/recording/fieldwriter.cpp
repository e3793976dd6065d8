#include "tools/recording/fieldwriter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fmt/format.h>

using tuning::ValueType;

namespace recording
{

static_assert(std::endian::native == std::endian::little, "values go into files as they stand in memory");

namespace
{

using tuning::Load;

std::string EnumText(INT32 value, const tuning::EnumDescription& rEnum)
{
    const CHAR* pName = rEnum.NameOf(value);
    return (pName != nullptr) ? fmt::format("{} ({})", value, pName) : fmt::format("{}", value);
}

std::string ValueText(const Label& rLabel, const BYTE* pBytes)
{
    if (rLabel.type == ValueType::Text)
    {
        return fmt::format("\"{}\"", std::string(reinterpret_cast<const CHAR*>(pBytes), rLabel.size));
    }
    if (rLabel.pEnum != nullptr)
    {
        return EnumText(Load<INT32>(pBytes), *rLabel.pEnum);
    }
    // A character is a number here.
    return tuning::WithTypeOf(rLabel.type, [&](auto zero) { return fmt::format("{}", +Load<decltype(zero)>(pBytes)); });
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
    tuning::WalkRecord(rDescription, static_cast<const BYTE*>(pRecord), *this);
}

FieldWriter::Path FieldWriter::Enter(const tuning::RecordMember& rMember)
{
    return {*this, rMember.pName};
}

FieldWriter::Path FieldWriter::EnterItem(const tuning::RecordMember& rMember, UINT32 index)
{
    return rMember.IsArray() ? Path(*this, index, rMember.pIndexEnum) : Path(*this, "");
}

tuning::MemberValues<const BYTE> FieldWriter::CountedValues(const tuning::RecordMember& rMember, const BYTE* pRecord)
{
    const tuning::MemberValues<const BYTE> values = tuning::ValuesOf(rMember, pRecord);
    const Path                             path(*this, "count");
    Shape(values.count, sizeof(values.count));
    return values;
}

VOID FieldWriter::Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<const BYTE>& rValues)
{
    Scalars(rValues.pFirst, rValues.count,
            {rMember.valueSize, rMember.type, rMember.IsArray(), rMember.pEnum, rMember.pIndexEnum});
}

VOID FieldWriter::Text(const tuning::RecordMember&, const BYTE* pPlace)
{
    if (m_hasTexts)
    {
        Text("", Load<const CHAR*>(pPlace));
    }
}

VOID FieldWriter::Scalars(const VOID* pValues, UINT64 count, const Scalar& rScalar)
{
    for (UINT64 index = 0; m_pLabels != nullptr && index < count; ++index)
    {
        const Path item = rScalar.isArray ? Path(*this, index, rScalar.pIndexEnum) : Path(*this, "");
        m_pLabels->push_back(
            {m_path, m_rBytes.size() + index * rScalar.size, rScalar.size, rScalar.type, rScalar.pEnum, false});
    }
    Put(pValues, count * rScalar.size);
}

VOID FieldWriter::Put(const VOID* pBytes, size_t size)
{
    const auto* pFirst = static_cast<const BYTE*>(pBytes);
    m_rBytes.insert(m_rBytes.end(), pFirst, pFirst + size);
}

VOID FieldWriter::Note(size_t size, ValueType type, bool isShape)
{
    if (m_pLabels != nullptr)
    {
        m_pLabels->push_back({m_path, m_rBytes.size(), size, type, nullptr, isShape});
    }
}

VOID FieldWriter::Shape(UINT32 value, size_t size)
{
    Note(size, (size == sizeof(UINT32)) ? ValueType::UInt32 : ValueType::UInt8, true);
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
        Note(length, ValueType::Text, false);
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
