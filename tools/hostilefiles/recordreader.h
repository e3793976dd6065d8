/// @file
/// Reads all that a record holds, as the core might.
#pragma once

#include <map>
#include <utility>

#include "tools/tuningfile/recordaccess.h"

namespace hostilefiles
{

/// Goes through what the counts of a record say that there is: they must be true of what stands behind them.
class RecordReader
{
public:
    /// @return a sum over the bytes, so that no read is left out
    UINT64 Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord);

private:
    bool   WasRead(const tuning::RecordMember& rMember, const tuningfile::Values& rValues);
    UINT64 ReadMember(const tuning::RecordMember& rMember, const tuningfile::Values& rValues);

    std::map<std::pair<const BYTE*, const tuning::RecordMember*>, UINT32> m_read;  ///< items by place and member
};

}  // namespace hostilefiles
