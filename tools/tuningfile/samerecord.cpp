#include "tools/tuningfile/samerecord.h"

#include <algorithm>
#include <cstring>

#include "schema/recordwalk.h"

namespace tuningfile
{

namespace
{

bool SameValue(const tuning::RecordMember& rMember, const BYTE* pFirst, const BYTE* pSecond)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        return SameRecord(*rMember.pRecord, pFirst, pSecond);
    case tuning::ValueType::Text:
        return std::strcmp(tuning::TextAt(pFirst), tuning::TextAt(pSecond)) == 0;
    default:
        return std::memcmp(pFirst, pSecond, rMember.valueSize) == 0;
    }
}

}  // namespace

bool SameMember(const tuning::RecordMember& rMember, const BYTE* pFirst, const BYTE* pSecond)
{
    if (!rMember.IsStored())
    {
        return true;
    }
    const auto first  = tuning::ValuesOf(rMember, pFirst);
    const auto second = tuning::ValuesOf(rMember, pSecond);
    if (first.count != second.count)
    {
        return false;
    }
    for (UINT32 index = 0; index < first.count; ++index)
    {
        if (!SameValue(rMember, first.At(rMember, index), second.At(rMember, index)))
        {
            return false;
        }
    }
    return true;
}

bool SameRecord(const tuning::RecordDescription& rDescription, const VOID* pFirst, const VOID* pSecond)
{
    const auto members = rDescription.Members();
    return std::all_of(
        members.begin(), members.end(),
        [&](const tuning::RecordMember& rMember)
        { return SameMember(rMember, static_cast<const BYTE*>(pFirst), static_cast<const BYTE*>(pSecond)); });
}

}  // namespace tuningfile
