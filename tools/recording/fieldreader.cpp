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
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        if (rRecord.pMembers[index].IsStored())
        {
            Member(rRecord.pMembers[index], static_cast<BYTE*>(pRecord));
        }
    }
}

VOID FieldReader::Member(const tuning::RecordMember& rMember, BYTE* pRecord)
{
    BYTE*  pValues = pRecord + rMember.offset;
    UINT32 count   = rMember.count;
    if (rMember.HasCount())
    {
        Take(rMember.pName, &count, sizeof(count));
        CheckRoom(rMember.pName, count, LeastSize(rMember));
        if (rMember.form == Form::Variable)
        {
            VOID* pMemory = m_pArena->Make(static_cast<size_t>(count) * rMember.valueSize);
            std::memcpy(pValues, &pMemory, sizeof(pMemory));
            pValues = static_cast<BYTE*>(pMemory);
        }
        else if (count > 1)
        {
            throw MalformedError(fmt::format("{} of {}, at most 1", count, rMember.pName));
        }
        std::memcpy(pRecord + rMember.countOffset, &count, sizeof(count));
    }
    Values(rMember, pValues, count);
}

VOID FieldReader::Values(const tuning::RecordMember& rMember, BYTE* pValues, UINT32 count)
{
    if (rMember.type != ValueType::Record && rMember.type != ValueType::Text)
    {
        Take(rMember.pName, pValues, static_cast<size_t>(count) * rMember.valueSize);
        return;
    }
    for (UINT32 index = 0; index < count; ++index)
    {
        BYTE* pValue = pValues + static_cast<size_t>(index) * rMember.valueSize;
        if (rMember.type == ValueType::Record)
        {
            Members(*rMember.pRecord, pValue);
        }
        else
        {
            CHAR* pText = nullptr;
            Text(rMember.pName, pText);
            std::memcpy(pValue, &pText, sizeof(pText));
        }
    }
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
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        const tuning::RecordMember& rMember = rRecord.pMembers[index];
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
