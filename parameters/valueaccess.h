/// @file
/// Values as text, and the modes that there are, for the live tuning service. All of this holds the store's data mutex:
/// the file stays as it is meanwhile. Modes that frames load and evict in between are kept by a reference while they
/// are read.
#pragma once

#include <atomic>

#include "parameters/plist.h"
#include "parameters/tuningmode.h"

class ParameterParserInfo;
class ParameterStore;

/// The operations of ParameterSetManager and IParameterDataAPI.
class ValueAccess
{
public:
    /// @param rStore owns the access
    explicit ValueAccess(ParameterStore& rStore) : m_rStore(rStore)
    {
    }

    bool GetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                  const CHAR* pMembers, CHAR* pValue, UINT32 size);
    bool SetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText, const CHAR* pName,
                  const CHAR* pValue);
    bool GetInfo(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pPath,
                 PList<ParameterParserInfo>& rList);
    bool GetActiveModes(BYTE tableIndex, CHAR* pText, UINT32 size);
    UINT32 GetChildModes(BYTE tableIndex, const CHAR* pPath, CHAR* pText, UINT32 size);

    UINT32 GetSetValueCount() const
    {
        return m_setValueCount.load(std::memory_order_relaxed);
    }

private:
    ParameterStore&     m_rStore;
    std::atomic<UINT32> m_setValueCount = 0;
};
