/// @file
/// Reads all that a record holds, as the core might.
#pragma once

#include <map>
#include <utility>

#include "schema/recordwalk.h"

namespace hostilefiles
{

/// Goes through what the counts of a record say that there is: they must be true of what stands behind them.
class RecordReader : public tuning::UntrackedVisitor
{
public:
    using Values = tuning::MemberValues<const BYTE>;

    /// @return a sum over the bytes, so that no read is left out
    UINT64 Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord);

    // Visitor of a record; see schema/recordwalk.h.

    Values CountedValues(const tuning::RecordMember& rMember, const BYTE* pRecord);
    VOID   Numbers(const tuning::RecordMember& rMember, const Values& rValues);
    VOID   Text(const tuning::RecordMember& rMember, const BYTE* pPlace);

private:
    UINT64                                                                m_sum = 0;
    std::map<std::pair<const BYTE*, const tuning::RecordMember*>, UINT32> m_read;  ///< items by place and member
};

}  // namespace hostilefiles
