/// @file
/// What the loading of records may cost.
#pragma once

#include "platform/tavotypes.h"

class IParameterLoggingAPI;

/// A damaged file can make a few bytes stand for any amount of data, since entries may point at the same bytes and at
/// one another. Loading therefore has an allowance, far above what any real tuning needs: each byte allocated or
/// fetched and each record or entry visited is charged. All records that are loaded with the file share one; after that
/// each load has its own. Not synchronised: a load runs in one thread.
class LoadAllowance
{
public:
    /// What a record or an entry is charged for, apart from its bytes.
    static constexpr UINT32 VisitCharge = 64;

    /// @param fileLength bytes
    /// @param pLog       must outlive the object
    LoadAllowance(UINT64 fileLength, const IParameterLoggingAPI* pLog);

    /// @return false once the allowance is used up, the first time with a log
    bool Charge(UINT64 bytes);

private:
    const UINT64                      m_fileLength;
    const UINT64                      m_limit;
    UINT64                            m_charged = 0;
    const IParameterLoggingAPI* const m_pLog;
};
