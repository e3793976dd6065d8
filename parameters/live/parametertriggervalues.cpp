#include "parameters/live/parametertriggervalues.h"

#include <algorithm>

#include "parameters/live/vernierprotocol.h"

const ParameterTriggerIDValues* ParameterTriggerValues::Find(const CHAR* pInstance) const
{
    const auto found = std::find_if(instances.begin(), instances.end(),
                                    [pInstance](const auto& rInstance) { return rInstance.instance == pInstance; });
    return (found != instances.end()) ? &*found : nullptr;
}

bool ParameterTriggerValues::Add(const CHAR* pInstance, const ParameterCTValue* pValues, UINT32 count)
{
    // A tool may leave and never fetch its answer: what no packet can hold is not collected.
    if (m_wireSize >= vernier::PacketLimit)
    {
        return false;
    }
    ParameterTriggerIDValues& rInstance = instances.emplace_back();
    rInstance.instance                  = pInstance;
    rInstance.SetValues(pValues, count);
    m_wireSize += rInstance.WireSize();
    return true;
}
