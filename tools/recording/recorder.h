/// @file
/// Writes everything that crosses the function table of the core's instances.
///
/// The host gets a table of the recorder's in place of each instance's own. Its functions write the inputs, call the
/// core, and write what came out. Neither the host nor the core sees a difference, but for the time that it takes.
#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <tuple>

#include "tools/recording/chunks.h"
#include "tools/recording/identities.h"
#include "tools/recording/tuningreference.h"

namespace recording
{

class Recorder
{
public:
    /// The file holds each call before the core has it: a run that dies in the core leaves the call that did it.
    /// @throws std::runtime_error if the file cannot be made
    explicit Recorder(const std::string& rPath);
    Recorder(const Recorder&)            = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Names a tuning, before an instance uses it: up to TuningCountMax. @param pManager its store, as the host names
    /// it to the core
    VOID AddTuning(const VOID* pManager, const TuningReference& rTuning);

    /// @param pCore an instance that has just been created; up to InstanceCountMax live at a time
    /// @return a table that stands for it, valid as long as the recorder; the instance's own stays valid too
    IKIROCoreAlgo* Wrap(IKIROCoreAlgo* pCore, const StatsTuningData& rTuning);

    /// Ends the recording and gives it its name; up to then it stands beside, and counts as cut.
    /// @throws std::runtime_error if something could not be written, now or before, or was what a replay does not take:
    ///         the recording ends there, and keeps its name of a part; the run goes on
    VOID Finish();

private:
    /// What a host holds for an instance. The instance's pCore stands in it too, for functions beside the table.
    struct Table : IKIROCoreAlgo
    {
        Recorder*     pRecorder;
        InstanceState state;
    };

    template <typename Call> static VOID Run(IKIROCoreAlgo* pAlgo, Call& rCall);
    template <typename Call> VOID        Record(Table& rTable, Call& rCall);
    template <typename Call> VOID        WriteCall(InstanceState& rState, Call& rCall);

    template <typename Call, typename Answer, typename... Parameters>
    static VOID                              SetFunction(Answer (*&rpFunction)(IKIROCoreAlgo*, Parameters...));
    template <typename... Calls> static VOID SetFunctions(IKIROCoreAlgo& rTable, std::tuple<Calls...>*);

    VOID Refuse(const std::string& rReason);
    VOID Write(ChunkType type, bool isFlushed);
    VOID WriteHostRecords();
    VOID UpdateHostRecords();

    const std::string  m_path;
    ChunkWriter        m_file;
    std::mutex         m_mutex;  ///< instances may run in threads of their own; a recording has one order
    std::deque<Table>  m_tables;
    RecordedIdentities m_identities;
    std::vector<BYTE>  m_bytes;  ///< of the chunk being made
    std::string        m_error;  ///< the first; nothing is written after it
    UINT64             m_callCount;
    size_t             m_livingCount;  ///< instances
    bool               m_isFinished;

    static IKIROCoreAlgo s_functions;  ///< the core's own, for calls without a table
};

}  // namespace recording
