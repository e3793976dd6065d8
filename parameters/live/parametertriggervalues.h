/// @file
/// A tool's request for the triggers of a module, and the values that the host has delivered for it so far.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "parameters/live/parameterctvalue.h"

/// The triggers of one instance of the module.
struct ParameterTriggerIDValues
{
    std::string                   instance;
    std::vector<ParameterCTValue> values;

    VOID SetValues(const ParameterCTValue* pValues, UINT32 count)
    {
        values.assign(pValues, pValues + ((pValues != nullptr) ? count : 0));
    }

    /// Bytes on the wire: name, ":", count and values.
    size_t WireSize() const
    {
        return instance.size() + 1 + sizeof(UINT16) + values.size() * sizeof(ParameterCTValue);
    }
};

/// One pending request, named by its three texts.
class ParameterTriggerValues
{
public:
    ParameterTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline, UINT32 clientNumber)
        : modePath(pModePath), module(pModule), pipeline(pPipeline), requestTime(std::clock()), client(clientNumber)
    {
    }

    bool IsRequest(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline) const
    {
        return modePath == pModePath && module == pModule && pipeline == pPipeline;
    }

    /// @return null if there is none of that name
    const ParameterTriggerIDValues* Find(const CHAR* pInstance) const;

    /// Keeps values for the answer. @return false if the answer is full already
    bool Add(const CHAR* pInstance, const ParameterCTValue* pValues, UINT32 count);

    const std::string                     modePath;
    const std::string                     module;
    const std::string                     pipeline;
    const std::clock_t                    requestTime;  ///< processor time, as the age of a request is measured
    UINT32                                client;       ///< who has asked last
    std::vector<ParameterTriggerIDValues> instances;

private:
    size_t m_wireSize = 0;
};
