/// @file
/// What a host can add to the live tuning service.
#pragma once

#include "platform/tavotypes.h"

/// Installed by a host with ParameterSetManager::SetCustomHandler. Its operations run on the service's own thread, may
/// use the store, and must not throw. Replacing the handler and destroying the store wait for an operation that is
/// running, so neither may be done while holding what the operation waits for.
class IVernierCustomHandler
{
public:
    /// Serves a custom command.
    /// @param pPayload    payloadSize bytes from the tool
    /// @param capacity    bytes of pOutput
    /// @param rOutputSize bytes that were written, 0 at the call
    /// @return what the tool gets as the result
    virtual UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                                 UINT32& rOutputSize) = 0;

    /// A tool wants to know the triggers of a module. The values go to ParameterSetManager::SetTriggerValues under the
    /// same texts, within the following frames.
    virtual VOID RequestTriggerValues(const CHAR* pModePath, const CHAR* pModule, UINT64 moduleNameHash,
                                      const CHAR* pPipeline) = 0;

    virtual ~IVernierCustomHandler() = default;
};
