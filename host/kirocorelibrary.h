/// @file
/// Opening the exposure core by name and creating instances of it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "interface/ikirocorealgo.h"

/// Name of the library, found by the loader's search path.
constexpr const CHAR* KiroCoreLibraryName = "com.pelto.stats.kirocore.so.0";

/// Puts a table of its own in the place of an instance's: one that does more than to call the core, such as recording.
/// It is called with each instance once, right after its creation, and with the tuning that it was created with.
using KiroTableDecorator = std::function<IKIROCoreAlgo*(IKIROCoreAlgo* pAlgo, const StatsTuningData& rTuningData)>;

/// The opened library; instances must be gone before it.
class KiroCoreLibrary
{
public:
    /// @param decorate may be empty; what it gives to a host must outlive the host
    /// @throws std::runtime_error with the loader's message
    explicit KiroCoreLibrary(const std::string& rName = KiroCoreLibraryName, KiroTableDecorator decorate = {});

    /// @return a table, null if the core could not be created. Released by its DestroyInstance; the memory of the table
    ///         itself stays with the library.
    IKIROCoreAlgo* Create(StatsTuningData& rTuningData, IKIRODebugData& rDebugData, StatsLogger logger) const;

    /// Says which levels of the log the loggers of all instances take, as gStatsLogLevels does. A library that
    /// cannot be told logs all.
    VOID TakeLogLevels(UINT32 levels) const;

private:
    using CreateFunction = decltype(&CreateKiroCoreAlgo);

    std::shared_ptr<VOID> m_pHandle;
    CreateFunction        m_create;
    UINT32*               m_pLogLevels;  ///< null in a library without them
    KiroTableDecorator    m_decorate;
};
