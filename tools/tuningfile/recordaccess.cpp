#include "tools/tuningfile/recordaccess.h"

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
        return TextAt(pFirst) == TextAt(pSecond);
    default:
        return std::memcmp(pFirst, pSecond, rMember.valueSize) == 0;
    }
}

}  // namespace

Values ValuesOf(const tuning::RecordMember& rMember, const BYTE* pRecord)
{
    switch (rMember.form)
    {
    case tuning::Form::Variable:
    {
        const BYTE* pValues = Load<const BYTE*>(pRecord + rMember.offset);
        return {pValues, (pValues != nullptr) ? Load<UINT32>(pRecord + rMember.countOffset) : 0};
    }
    case tuning::Form::Optional:
        return {pRecord + rMember.offset, (Load<UINT32>(pRecord + rMember.countOffset) != 0) ? 1U : 0U};
    default:
        return {pRecord + rMember.offset, rMember.count};
    }
}

std::string_view TextAt(const BYTE* pValue)
{
    const CHAR* pText = Load<const CHAR*>(pValue);
    return (pText != nullptr) ? std::string_view(pText) : std::string_view();
}

bool SameMember(const tuning::RecordMember& rMember, const BYTE* pFirst, const BYTE* pSecond)
{
    if (!rMember.IsStored())
    {
        return true;
    }
    const Values first  = ValuesOf(rMember, pFirst);
    const Values second = ValuesOf(rMember, pSecond);
    if (first.count != second.count)
    {
        return false;
    }
    for (size_t index = 0; index < first.count; ++index)
    {
        const size_t offset = index * rMember.valueSize;
        if (!SameValue(rMember, first.pFirst + offset, second.pFirst + offset))
        {
            return false;
        }
    }
    return true;
}

bool SameRecord(const tuning::RecordDescription& rDescription, const VOID* pFirst, const VOID* pSecond)
{
    for (UINT32 index = 0; index < rDescription.memberCount; ++index)
    {
        if (!SameMember(rDescription.pMembers[index], static_cast<const BYTE*>(pFirst),
                        static_cast<const BYTE*>(pSecond)))
        {
            return false;
        }
    }
    return true;
}

}  // namespace tuningfile
