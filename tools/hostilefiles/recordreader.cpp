#include "tools/hostilefiles/recordreader.h"

#include <algorithm>
#include <cstring>

namespace hostilefiles
{

UINT64 RecordReader::Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord)
{
    m_sum = 0;
    tuning::WalkRecord(rRecord, pRecord, *this);
    return m_sum;
}

/// Arrays may share their data: what was read as the same is not read again, or a walk would see far more than there
/// is.
RecordReader::Values RecordReader::CountedValues(const tuning::RecordMember& rMember, const BYTE* pRecord)
{
    const Values values = tuning::ValuesOf(rMember, pRecord);
    if (rMember.form != tuning::Form::Variable)
    {
        return values;
    }
    UINT32&    rCount  = m_read[{values.pFirst, &rMember}];
    const bool wasRead = values.count <= rCount;
    rCount             = std::max(rCount, values.count);
    return {values.pFirst, wasRead ? 0 : values.count};
}

VOID RecordReader::Numbers(const tuning::RecordMember& rMember, const Values& rValues)
{
    for (UINT32 index = 0; index < rValues.count; ++index)
    {
        const BYTE* pValue = rValues.At(rMember, index);
        m_sum += pValue[0] + pValue[rMember.valueSize - 1];
    }
}

VOID RecordReader::Text(const tuning::RecordMember&, const BYTE* pPlace)
{
    m_sum += std::strlen(tuning::TextAt(pPlace));
}

}  // namespace hostilefiles
