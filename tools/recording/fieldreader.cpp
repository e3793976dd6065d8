#include "tools/recording/fieldreader.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <iterator>

using tuning::Form;
using tuning::ValueType;

namespace recording
{

VOID* Arena::Make(size_t size)
{
    return m_blocks.emplace_back(std::make_unique<BYTE[]>(size)).get();
}

VOID Arena::Join(Arena&& rOther)
{
    std::move(rOther.m_blocks.begin(), rOther.m_blocks.end(), std::back_inserter(m_blocks));
    rOther.m_blocks.clear();
}

FieldReader::FieldReader(std::span<const BYTE> bytes, Arena& rArena, TextPool& rTexts)
    : m_pArena(&rArena), m_bytes(bytes), m_rTexts(rTexts)
{
}

VOID FieldReader::Members(const tuning::RecordDescription& rRecord, VOID* pRecord)
{
    tuning::WalkRecord(rRecord, static_cast<BYTE*>(pRecord), *this);
}

tuning::MemberValues<BYTE> FieldReader::CountedValues(const tuning::RecordMember& rMember, BYTE* pRecord)
{
    UINT32 count  = 0;
    VOID*  pArray = nullptr;
    Take(rMember.pName, &count, sizeof(count));
    CheckRoom(rMember.pName, count, LeastSize(rMember));
    if (rMember.form == Form::Variable)
    {
        pArray = m_pArena->Make(static_cast<size_t>(count) * rMember.valueSize);
    }
    else if (count > 1)
    {
        throw MalformedError(fmt::format("{} of {}, at most 1", count, rMember.pName));
    }
    return tuning::SetCount(rMember, pRecord, count, pArray);
}

VOID FieldReader::Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<BYTE>& rValues)
{
    Take(rMember.pName, rValues.pFirst, static_cast<size_t>(rValues.count) * rMember.valueSize);
}

VOID FieldReader::Text(const tuning::RecordMember& rMember, BYTE* pPlace)
{
    CHAR* pText = nullptr;
    Text(rMember.pName, pText);
    tuning::Store(pPlace, pText);
}

bool FieldReader::Presence(const CHAR* pName)
{
    UINT8 isPresent = 0;
    Take(pName, &isPresent, sizeof(isPresent));
    return isPresent != 0;
}

VOID FieldReader::Text(const CHAR* pName, CHAR*& rpText)
{
    UINT32 length = NoText;
    Take(pName, &length, sizeof(length));
    rpText = nullptr;
    if (length != NoText)
    {
        CheckRoom(pName, length, 1);
        std::string text(length, '\0');
        Take(pName, text.data(), length);
        rpText = m_rTexts.Keep(std::move(text));
    }
}

VOID FieldReader::Take(const CHAR* pName, VOID* pTo, size_t size)
{
    if (size > m_bytes.size())
    {
        throw MalformedError(fmt::format("it ends within {}", pName));
    }
    std::copy_n(m_bytes.data(), size, static_cast<BYTE*>(pTo));
    m_bytes = m_bytes.subspan(size);
}

VOID FieldReader::CheckRoom(const CHAR* pName, UINT64 count, UINT64 least) const
{
    if (count > m_bytes.size() / std::max<UINT64>(least, 1))
    {
        throw MalformedError(fmt::format("{} of {} in {} bytes", count, pName, m_bytes.size()));
    }
}

UINT64 FieldReader::LeastSize(const tuning::RecordDescription& rRecord)
{
    UINT64 size = 0;
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        if (rMember.IsStored())
        {
            size += rMember.HasCount() ? sizeof(UINT32) : rMember.count * LeastSize(rMember);
        }
    }
    return size;
}

/// Of one value.
UINT64 FieldReader::LeastSize(const tuning::RecordMember& rMember)
{
    return (rMember.type == ValueType::Record) ? LeastSize(*rMember.pRecord)
           : (rMember.type == ValueType::Text) ? sizeof(UINT32)
                                               : rMember.valueSize;
}

}  // namespace recording
