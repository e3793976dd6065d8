/// @file
/// Replacing what a store holds: by a new state of its file, or by the modules of another manager. What was replaced
/// stays here for those who hold records of it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parameters/modeentry.h"
#include "parameters/parametermodule.h"
#include "parameters/storecontent.h"

class ParameterSetManager;
class ParameterStore;

/// The operations of ParameterSetManager. A reload and an update take the store's data mutex; an update first stops the
/// other manager's service. The steps and Clear are called under it.
class ContentReplacement
{
public:
    /// @param rStore owns the replacement
    explicit ContentReplacement(ParameterStore& rStore);
    ~ContentReplacement();
    ContentReplacement(const ContentReplacement&)            = delete;
    ContentReplacement& operator=(const ContentReplacement&) = delete;

    bool ReloadBinaryParameters(bool bufferMode);
    bool UpdateParameters(std::unique_ptr<ParameterSetManager> pOther);

    // Steps of a reload, by way of the manager, where they are virtual.
    VOID SaveAndClearModules();
    VOID SaveAndClearModule(DefaultModule* pModule);

    /// Frees what was replaced, but not what has taken its place.
    VOID Clear();

private:
    VOID FreeReplacedParameters();
    bool ReadReplacement(const std::string& rFileName, bool bufferMode);
    VOID TransferReferences() const;
    VOID TransferModeReferences(const ModeEntry& rPrevious, ModeEntry& rMode, UINT32 index) const;
    VOID MergeTree(ModeEntry* pRoot, ModeEntry* pOtherRoot);
    VOID MergeMode(ModeEntry* pMode, ModeEntry* pOtherMode);

    ParameterStore& m_rStore;

    // Modules go before the tables that their data stands in, hence the order of the members.
    std::vector<std::unique_ptr<ParameterSetManager>> m_previousMerged;
    std::vector<std::unique_ptr<ParameterSetManager>> m_merged;  ///< own the modules that UpdateParameters put here
    StoreContent                                      m_previousContent;
    std::vector<std::unique_ptr<ParameterModule>>     m_parkedModules;    ///< until the next reload
    std::vector<std::unique_ptr<ParameterModule>>     m_replacedModules;  ///< to be parked by the next reload
};
