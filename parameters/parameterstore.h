/// @file
/// What a main manager and the managers derived from it work on: the content of one file, the modules that it may hold,
/// and the live tuning service.
///
/// The operations are those of ParameterSetManager, which says what they promise; each takes the table that it is
/// about.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/contentreplacement.h"
#include "parameters/modecache.h"
#include "parameters/modeentry.h"
#include "parameters/parametersetmanager.h"
#include "parameters/storecontent.h"
#include "parameters/valueaccess.h"

class ParameterBinaryFile;
class ParameterVernierWorker;

class ParameterStore
{
public:
    using Options = ParameterSetManager::Options;

    /// By name hash.
    using DefaultModuleMap = std::unordered_map<UINT64, std::unique_ptr<DefaultModule>>;

    /// @param rManager the main manager, which owns the store. Its virtual operations are called where a class that is
    ///                 made of it may have its own, and log lines carry its identity
    ParameterStore(ParameterSetManager& rManager, const CHAR* pName, std::span<const tuning::ModuleDescription> modules,
                   const Options& rOptions);
    ~ParameterStore();
    ParameterStore(const ParameterStore&)            = delete;
    ParameterStore& operator=(const ParameterStore&) = delete;

    ParameterSetManager& Manager()
    {
        return m_rManager;
    }

    ParameterMutex& DataMutex()
    {
        return m_dataMutex;
    }

    // Errors and log lines.
    VOID        SetError(const CHAR* pText, const ModuleData* pModuleData = nullptr);
    std::string GetErrorText() const;
    bool        LoggingEnabled(ParameterLogging::ParameterLogLevel level) const;
    const CHAR* GetLoggingIdentifier() const
    {
        return m_pLoggingIdentifier.load(std::memory_order_acquire);
    }

    // The modules that a file may hold.
    DefaultModule*          AddDefaultModule(std::unique_ptr<ParameterModule> pModule);
    DefaultModule*          FindDefaultModule(UINT64 nameHash);
    const DefaultModuleMap& DefaultModules() const  ///< those that were found so far
    {
        return m_defaultModules;
    }

    // Loading.
    bool LoadBinaryParameters(const CHAR* pFileName);
    bool LoadBinaryParameters(const BYTE* pBuffer, UINT64 length);

    /// Hands the content out, and holds none until the next load.
    StoreContent TakeContent();

    /// Of the file in file mode, empty otherwise.
    const std::string& FileName() const
    {
        return m_fileName;
    }
    VOID SetFileName(const std::string& rFileName)
    {
        m_fileName = rFileName;
    }

    /// Whether the store is loaded, and the other one is for the same list of modules.
    bool CanMerge(const ParameterStore& rOther) const
    {
        return m_valid && m_modules.data() == rOther.m_modules.data();
    }

    /// What replaces the content.
    ContentReplacement& Replacement()
    {
        return m_replacement;
    }

    // Tables and modes.
    const StoreContent& GetContent() const
    {
        return m_content;
    }

    /// @return false, with a log, if there is no such table. @param pCaller for the log
    bool HasModeTable(const CHAR* pCaller, BYTE tableIndex) const;

    UINT32         GetModeTableCount() const;
    VOID           GetModeTableNames(PList<const CHAR*>& rList) const;
    ModeEntryInfo* GetModeEntry(UINT32 id);
    ModeEntry*     GetModeEntry(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);

    /// Whether modes come and go with their use. While no file name is kept, everything is in memory.
    bool IsFileMode() const
    {
        return !m_fileName.empty();
    }

    /// What loads and unloads them then.
    ModeCache& Modes()
    {
        return m_modes;
    }

    // Lookup. What a thread has found is found again without a walk while the store stands as it did; in file mode by
    // KeepModule only.
    ParameterModule* FetchModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                 UINT32 count, ParameterModule* pPrevious);

    /// For good: the reference is never given back. In file mode the path counts as used, walked or not.
    /// @param pStamp may be null; see KeepModuleRecord
    ParameterModule* KeepModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                UINT32 count, LookupStamp* pStamp);

    /// Says that a lookup may find another module than before, or that a record in memory is gone.
    VOID ForgetLookups();

    VOID GetModules(BYTE tableIndex, PList<ParameterModule*>& rList, const TuningMode* pBranch, UINT32 count,
                    bool local, bool inherited, const PipelineType* pPipeline);
    VOID GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pText, size_t size);

    /// Whether a walk may follow the selector. @param pCaller for the error if it may not
    bool ValidateMode(const CHAR* pCaller, const TuningMode* pBranch, UINT32 index);

    /// Values as text.
    ValueAccess& Values()
    {
        return m_values;
    }

    /// The live tuning service, null for a store that was made without.
    ParameterVernierWorker* Worker() const
    {
        return m_pWorker.get();
    }

    /// Whether a load starts the service.
    std::atomic<bool> IsAutostart = true;

private:
    // Loading of files.
    bool             BeginLoad();
    bool             EndLoad(bool loaded);
    bool             LoadBuffer(const BYTE* pBuffer, UINT64 length);
    bool             LoadFile(const CHAR* pFileName);
    bool             ReadHeader(const BYTE* pBuffer, UINT64 length);
    bool             ReadSections(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile);
    bool             ReadTuning(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile,
                                const BinaryFileSections& rSections);
    bool             ReadModules(bool wholeFile);
    ParameterModule* CreateModule(DefaultModule* pDefault, ModuleData* pModuleData, bool load);
    bool             AddModule(const ModuleData* pModuleData, ParameterModule* pModule);
    VOID             FreeBinaryParameters();

    /// Makes the text the one that log lines carry. Any thread may be writing a line.
    VOID PublishLoggingIdentifier(const std::string& rText);

    /// Logs a line and keeps it as the reason of a refusal.
    VOID Refuse(const CHAR* pFormat, ...) __attribute__((format(printf, 2, 3)));

    // Lookup.
    enum class Hold
    {
        UntilReleased,
        ForGood
    };
    ParameterModule* WalkToModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                  UINT32 count, ParameterModule* pPrevious, Hold hold);

    /// WalkToModule, and notes what is found.
    ParameterModule* SearchModule(BYTE tableIndex, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                  UINT32 count, ParameterModule* pPrevious, Hold hold);
    ModeEntry*       RootForLookup(const CHAR* pName, BYTE tableIndex, const TuningMode* pBranch, UINT32 count);
    VOID             LogOddBranch(const CHAR* pName, const TuningMode* pBranch, UINT32 count);
    VOID             LogMissingRoot(const CHAR* pName, const ParameterModeTable* pTable) const;
    ParameterModule* FindModuleOnBranch(ModeEntry* pRoot, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                        UINT32 count);

    /// Whether the lookup of a module that was found would say nothing and find the same again.
    bool IsRepeatable(const ParameterModule* pModule, BYTE tableIndex, UINT64 nameHash, const TuningMode* pBranch,
                      UINT32 count);

    enum class Held
    {
        Yes,
        No,
        NoAsBefore  ///< for a reason that was told at an earlier fetch of the module
    };
    Held HoldModule(ParameterModule* pModule, Hold hold);

    ParameterSetManager&                             m_rManager;
    const Options                                    m_options;
    ModeCache                                        m_modes;
    ValueAccess                                      m_values;
    const std::string                                m_name;
    const std::span<const tuning::ModuleDescription> m_modules;

    /// Guards m_content and what belongs to it while it is replaced or freed, against text access.
    mutable ParameterMutex m_dataMutex;

    std::set<std::string>    m_loggingIdentifiers;  ///< all that were ever handed out
    std::atomic<const CHAR*> m_pLoggingIdentifier = "";

    mutable std::mutex m_errorMutex;  ///< guards m_errorText, which any thread may set
    std::string        m_errorText;

    std::atomic<UINT64> m_serial = 0;  ///< of what lookups find; see LookupMemo

    bool             m_valid = false;
    std::string      m_fileName;  ///< of a file in file mode, empty otherwise
    BinaryFileHeader m_header;

    // Modules go before the tables that their data stands in, and those of merged managers stand in the tables. The
    // destructor sees to that for what has been replaced: by the order of the members it would go last.
    ContentReplacement m_replacement;
    StoreContent       m_content;
    DefaultModuleMap   m_defaultModules;

    // Goes first: it works on all of the above.
    std::unique_ptr<ParameterVernierWorker> m_pWorker;
};
