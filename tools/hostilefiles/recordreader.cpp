#include "tools/hostilefiles/recordreader.h"

#include <algorithm>

namespace hostilefiles
{

UINT64 RecordReader::Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord)
{
    UINT64 sum = 0;
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        const tuning::RecordMember& rMember = rRecord.pMembers[index];
        if (rMember.IsStored())
        {
            sum += ReadMember(rMember, tuningfile::ValuesOf(rMember, pRecord));
        }
    }
    return sum;
}

/// Arrays may share their data: what was read as the same is not read again, or a walk would see far more than there
/// is.
bool RecordReader::WasRead(const tuning::RecordMember& rMember, const tuningfile::Values& rValues)
{
    if (rMember.form != tuning::Form::Variable)
    {
        return false;
    }
    UINT32&    rCount  = m_read[{rValues.pFirst, &rMember}];
    const bool wasRead = rValues.count <= rCount;
    rCount             = std::max(rCount, rValues.count);
    return wasRead;
}

UINT64 RecordReader::ReadMember(const tuning::RecordMember& rMember, const tuningfile::Values& rValues)
{
    if (WasRead(rMember, rValues))
    {
        return 0;
    }
    UINT64 sum = 0;
    for (UINT32 item = 0; item < rValues.count; ++item)
    {
        const BYTE* pValue = rValues.pFirst + static_cast<size_t>(item) * rMember.valueSize;
        if (rMember.type == tuning::ValueType::Record)
        {
            sum += Read(*rMember.pRecord, pValue);
            continue;
        }
        if (rMember.type == tuning::ValueType::Text)
        {
            sum += tuningfile::TextAt(pValue).size();
            continue;
        }
        sum += pValue[0] + pValue[rMember.valueSize - 1];
    }
    return sum;
}

}  // namespace hostilefiles
