/// @file
/// Opening the exposure core by name and creating instances of it.
#pragma once

#include <memory>
#include <string>

#include "interface/ikirocorealgo.h"

/// Name of the library, found by the loader's search path.
constexpr const CHAR* KiroCoreLibraryName = "com.pelto.stats.kirocore.so.0";

/// The opened library; instances must be gone before it.
class KiroCoreLibrary
{
public:
    /// @throws std::runtime_error with the loader's message
    explicit KiroCoreLibrary(const std::string& rName = KiroCoreLibraryName);

    /// @return a table, null if the core could not be created. Released by its DestroyInstance; the memory of the table
    ///         itself stays with the library.
    IKIROCoreAlgo* Create(StatsTuningData& rTuningData, IKIRODebugData& rDebugData, StatsLogger logger) const;

private:
    using CreateFunction = decltype(&CreateKiroCoreAlgo);

    std::shared_ptr<VOID> m_pHandle;
    CreateFunction        m_create;
};
