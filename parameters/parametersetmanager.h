/// @file
/// A handle of the tuning store of one camera, which holds what a parameter file says, and answers which module applies
/// to a mode path.
///
/// A file is used in one of two ways. In buffer mode all of it is parsed at once, and nothing is read or unloaded
/// afterwards. In file mode the modes of the Default and Sensor levels are loaded at once; the others are read from the
/// file when a caller's path first leads there, and the ones used longest ago are unloaded again. A module that a
/// caller holds is counted, and a mode with a counted module is never evicted.
///
/// One main manager owns everything, in a ParameterStore. A derived manager stands for one further mode table of the
/// same file: a handle of that store with its own table index in place of the caller's. It asks the main one, whose
/// class may have its own, about log lines, modes and the steps of a reload.
///
/// Modules may be fetched, released, and loaded ahead from any thread. Loading, reloading and updating of a whole file,
/// unloading of a mode, and destruction, may not run beside them. Text access and the tables' names, which the live
/// tuning service uses, may run beside all of this but destruction: they take the data mutex, and so does whatever
/// replaces or frees what the manager holds. Fetching never takes it, so that frames do not wait for a tuning tool. Log
/// lines may be written at any time.
#pragma once

#include <atomic>
#include <memory>
#include <span>
#include <string>

#include "parameters/moduledata.h"
#include "parameters/parameterdataapi.h"
#include "parameters/parameterlogging.h"
#include "parameters/parametermodetable.h"
#include "parameters/parametermodule.h"
#include "platform/tavocommonutils.h"

class IVernierCustomHandler;
class ParameterStore;
struct ParameterCTValue;

namespace tuning
{
struct ModuleDescription;
}

/// As of when a lookup has found what it found.
struct LookupStamp
{
    const std::atomic<UINT64>* pSerial;  ///< of the store, valid as long as that is
    UINT64                     serial;

    /// @return whether the same lookup would find the same
    bool IsCurrent() const
    {
        return pSerial->load(std::memory_order_acquire) == serial;
    }
};

class TAVO_VISIBLE ParameterSetManager : public IModeTable, public IParameterDataAPI
{
public:
    /// How a main manager works.
    struct Options
    {
        UINT32 activeModeCacheSize = 17;    ///< modes that stay loaded unused, at least 5; with 0 none is evicted
        bool   fileMode            = true;  ///< use files in file mode
        bool   logErrors           = true;
        bool   logWarnings         = true;
        bool   logDebug            = false;
        bool   allowUnknownModules = false;  ///< pass over modules of a file that are not in the list of modules
        bool   liveTuning          = false;  ///< serve tuning tools once a file is loaded
    };

    /// A main manager.
    /// @param pName   in front of the file's tag in log lines; may be null
    /// @param modules the modules that files may hold; must outlive the manager
    ParameterSetManager(const CHAR* pName, std::span<const tuning::ModuleDescription> modules, const Options& rOptions);

    /// A derived manager. @param pMain must outlive it; null leaves a manager that knows no modules
    ParameterSetManager(ParameterSetManager* pMain, BYTE tableIndex);

    ~ParameterSetManager() override;
    ParameterSetManager(const ParameterSetManager&)            = delete;
    ParameterSetManager& operator=(const ParameterSetManager&) = delete;

    /// Loads a file, in file mode or, if that is off, in buffer mode. A manager loads once; see ReloadBinaryParameters.
    /// @return false if the file was refused: GetErrorText says why, and the manager holds nothing
    bool LoadBinaryParameters(const CHAR* pFileName);

    /// Loads in buffer mode. @param pBuffer is not needed afterwards; at most 0xFFFFFFFF bytes
    bool LoadBinaryParameters(const BYTE* pBuffer, UINT64 length);

    /// Loads the file of the last LoadBinaryParameters in its present state. Records handed out before stay valid until
    /// the next reload, or destruction. If the mode tables have the same layout, reference counts carry over.
    /// @param bufferMode read the whole file, for good: the manager forgets the name
    /// @return false if the file was refused: the manager then holds nothing, but may be reloaded again
    bool ReloadBinaryParameters(bool bufferMode);

    /// Puts the modules of another manager in the place of this one's, mode by mode, where the trees agree. Records
    /// handed out before stay valid as with a reload.
    /// @param pOther a main manager for the same list of modules; kept as long as its modules are
    bool UpdateParameters(std::unique_ptr<ParameterSetManager> pOther);

    /// The reason why something was refused last. A load begins with an empty text.
    std::string GetErrorText() const;

    /// Loads the modes of a branch ahead of their use; file mode only.
    /// @param pReason for the log, may be null
    /// @return false if a mode of the branch does not exist or could not be read
    bool LoadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pReason);

    /// Loads the modes of a branch as far as they exist.
    /// @return false if one of them cannot be read: the file has changed since it was loaded, and a reload is due, or
    ///         cannot be opened, and may come back. A fetch through that mode fails, which the log says once for each
    ///         module
    bool CanRead(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);

    /// Unloads the last mode of a branch, in use or not, unless it is preserved; file mode only. Records of the mode
    /// that a caller still holds are gone.
    bool UnloadMode(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);

    /// The module of the deepest mode on the branch that has one of that name, loaded, and in file mode counted.
    /// @param pBranch   Default first; null gives the Default variant
    /// @param pPrevious a module whose reference is given back, after the new one is taken; may be null
    /// @return null if no mode on the branch has the module, or if it could not be loaded; a log says which, once
    /// for a file that is lost
    ParameterModule* GetModuleInternal(BYTE tableIndex, const CHAR* pName, const TuningMode* pBranch, UINT32 count,
                                       ParameterModule* pPrevious);

    /// The same with namehash::OfName(pName) already known.
    ParameterModule* GetModuleInternal(BYTE tableIndex, const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch,
                                       UINT32 count, ParameterModule* pPrevious);

    /// The same for records: a struct of the module's described type, or a BareModuleType.
    /// @param pPreviousRecord a record of an earlier call, may be null
    VOID* GetModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count,
                          VOID* pPreviousRecord);

    /// The same for users that never give back. The record stays in memory, with what was edited in it, until its mode
    /// is unloaded on request or a reload replaces it, and counts as one reference however often it is fetched; a
    /// reload that finds the same layout keeps the new record in its place.
    VOID* KeepModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count);

    /// The same for users that remember what they have found.
    /// @param pStamp receives as of when the same lookup finds the record again, with nothing else to do or to say. It
    ///               stays as it was when a lookup has to be made each time: in file mode, where paths count as used,
    ///               on a derived manager, and the first time that a thread asks.
    VOID* KeepModuleRecord(const CHAR* pName, UINT64 nameHash, const TuningMode* pBranch, UINT32 count,
                           LookupStamp* pStamp);

    /// Releases what rList holds and fills it with the modules of the branch's last mode; with none if it does not
    /// exist.
    /// @param local     take modules that the mode owns
    /// @param inherited take modules that it shares with another mode, which owns them
    /// @param pPipeline take only modules of that hardware block; null for all
    VOID GetModules(BYTE tableIndex, PList<ParameterModule*>& rList, const TuningMode* pBranch, UINT32 count,
                    bool local, bool inherited, const PipelineType* pPipeline);

    /// Gives a reference back; in buffer mode a reference means nothing.
    VOID ReleaseModule(ParameterModule* pModule);

    /// Releases all modules of the list and empties it.
    VOID ReleaseModules(PList<ParameterModule*>& rList);

    // Text access with a branch in the place of a path, as in IParameterDataAPI. No branch means no answer.
    bool GetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText,
                  const CHAR* pMembers, CHAR* pValue, UINT32 size);
    bool SetValue(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pModuleText, const CHAR* pName,
                  const CHAR* pValue);
    bool GetInfo(BYTE tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pPath,
                 PList<ParameterParserInfo>& rList);

    /// @return how often SetValue has set a value
    UINT32 GetSetValueCount() const;

    /// Writes a branch as numeric path, up to the first selector that is not valid.
    /// @param size of pText, at least 1
    VOID GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pText, size_t size);

    /// Whether a file can be read and has a mode table of that name.
    static bool ModeTableEntryExists(const CHAR* pFileName, const CHAR* pTableName);

    /// Stores the reason of a refusal and logs it.
    /// @param pModuleData the module that it concerns, null for none
    VOID SetError(const CHAR* pText, const ModuleData* pModuleData = nullptr);

    /// The manager that owns what this one works on: itself, if it is not derived.
    ParameterSetManager* GetMainSetManager();

    // The live tuning service of a manager that was made with it; see docs/live-tuning.md. Without one, values go
    // nowhere and packets are refused.

    /// Whether the next load starts the service, as it does by default.
    VOID SetLiveTuningAutostart(bool isAutostart);

    /// Lets the service that the next load starts listen at one interface of the machine; at all of them by default.
    /// @param pAddress IPv4, such as "127.0.0.1"; copied
    /// @return false if it is none, and for a manager without service
    bool SetLiveTuningAddress(const CHAR* pAddress);

    /// @return the TCP port that tools connect to, 0 while nothing is served. Not beside a load
    UINT16 GetLiveTuningPort() const;

    /// Replaces the numbers of the running camera that a tool can watch. Any thread; never waits for the tool.
    VOID SetControlValues(const PList<ParameterCTValue>& rValues);

    /// Replaces or adds one number. A derived manager passes it on as a list of one, which replaces all numbers.
    VOID SetControlValue(const ParameterCTValue& rValue);

    /// Delivers the triggers of a module's instance to a tool that asked for them. Any thread.
    /// @return false if no tool waits for them
    bool SetTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline, const CHAR* pInstance,
                          const ParameterCTValue* pValues, UINT32 count);

    /// Installs what serves a tool's custom commands, null for none. It must live until it is replaced: the call
    /// returns when the handler before is not running any more.
    VOID SetCustomHandler(IVernierCustomHandler* pHandler);

    /// Take a tool's request apart and put an answer together, for hosts that carry packets by other ways; parameters
    /// as for ParameterVernierWorker. @return false also without a service, or while it does not start by itself
    bool ParseVernierRequest(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID, UINT32& rRequestID,
                             const BYTE*& rpPayload, UINT32& rPayloadSize) const;
    bool BuildVernierResponse(BYTE* pPacket, UINT32 packetSize, UINT32& rLength, UINT16 command, UINT64 vernierID,
                              UINT32 requestID, const BYTE* pPayload, UINT32 payloadSize) const;

    // Up to GetDataMutex callers find virtual operations by their order: one that moves is taken for another.

    /// @return null if no mode has that ID
    ModeEntryInfo* GetModeEntry(UINT32 id) override;

    UINT32 GetModeTableCount() const override;
    VOID   GetModeTableNames(PList<const CHAR*>& rList) const override;

    bool GetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText, const CHAR* pMembers, CHAR* pValue,
                  UINT32 size) override;
    bool SetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText, const CHAR* pName,
                  const CHAR* pValue) override;
    bool GetInfo(BYTE tableIndex, const CHAR* pModePath, const CHAR* pPath, PList<ParameterParserInfo>& rList) override;
    bool GetActiveModes(BYTE tableIndex, CHAR* pText, UINT32 size) override;
    bool GetModeShorthand(const CHAR* pPath, CHAR* pText, UINT32 size) override;

    /// The mode at the end of a numeric path such as "0.0|2.1", or of a branch. @return null if there is none
    virtual ModeEntry* GetModeEntry(BYTE tableIndex, const CHAR* pPath);
    virtual ModeEntry* GetModeEntry(BYTE tableIndex, const TuningMode* pBranch, UINT32 count);

    UINT32 GetChildModes(BYTE tableIndex, const CHAR* pPath, CHAR* pText, UINT32 size) override;

    /// The text stays valid as long as the manager, also after a reload has put another in its place.
    const CHAR* GetLoggingIdentifier() const override;
    bool        LoggingEnabled(ParameterLogging::ParameterLogLevel level) const override;

    /// What the manager knows of a module of its list. @return null, with a log, for any other
    virtual DefaultModule* GetDefaultModule(UINT64 nameHash);

protected:
    /// Parks all module instances, or those of one module, until the next reload. Nothing may refer to them afterwards
    /// but records handed out before, so this is a step of a reload and nothing by itself.
    virtual VOID SaveAndClearModules();
    virtual VOID SaveAndClearModule(DefaultModule* pModule);

public:
    ParameterMutex& GetDataMutex() override;

protected:
    /// Enters a default instance under its name hash, in the place of another one, whose instances go: before a file is
    /// loaded, since modes point at them. Refused on a derived manager, and for null.
    VOID AddDefaultModule(std::unique_ptr<ParameterModule> pModule);

    /// Finds the mode table for a new derived manager, by index or by name. A table that does not exist is logged.
    bool HasTableForDerived(BYTE tableIndex) const;
    bool FindTableForDerived(const CHAR* pTableName, BYTE& rTableIndex);

    /// Ends the live tuning service, if there is one. Called first of all by the destructor of a class that is made
    /// with it: the service's thread calls virtual operations, which must still be those of the whole object.
    VOID StopLiveTuning();

private:
    friend class ContentReplacement;

    bool IsDerived() const
    {
        return m_isDerived;
    }

    /// The table that an operation is about.
    BYTE TableFor(BYTE callersTable) const
    {
        return IsDerived() ? m_tableIndex : callersTable;
    }

    const bool m_isDerived;  ///< also while its own store is made or goes, and asks it for log lines
    std::unique_ptr<ParameterStore> m_pOwnStore;  ///< null on a derived manager
    ParameterStore&                 m_rStore;
    const BYTE                      m_tableIndex;
};
