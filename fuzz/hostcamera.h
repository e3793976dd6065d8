/// @file
/// A camera of a hostile host: whole frames as the reference host runs them, and any function of the table in between,
/// with any legal arguments.
#pragma once

#include <memory>

#include "fuzz/hoststatistics.h"
#include "host/kirohost.h"
#include "tools/recording/slots.h"

namespace fuzz
{

/// Which table a function gets. Without an instance it must refuse.
enum class TableUse
{
    Instance,
    Null,
    WithoutInstance
};

struct CameraPlan
{
    const KiroCoreLibrary* pLibrary;  ///< must outlive the camera
    StatsTuningData        tuning;
    bool                   isBare      = false;  ///< an instance and nothing else: nothing is set, no frames are run
    bool                   isRecorded  = false;  ///< its table is a recorder's
    bool                   isDebugging = false;
};

class HostCamera
{
public:
    HostCamera(const CameraPlan& rPlan, HostBytes& rBytes);
    ~HostCamera();
    HostCamera(const HostCamera&)            = delete;
    HostCamera& operator=(const HostCamera&) = delete;

    /// What the camera tells others of itself; null if the core does not say.
    AECMultiCamInfo* OwnRecord();

    /// @param rPeers records of all cameras, which outlive this one
    VOID SetPeers(const std::vector<AECMultiCamInfo*>& rPeers)
    {
        m_memory.peers = rPeers;
    }

    /// Calls the function of a slot. @throws recording::MalformedError for an input that asks for too much
    VOID Call(recording::Slot slot, TableUse use, HostBytes& rBytes);

    // What the reference host does. Nothing happens to a bare instance.

    VOID RunFrame(HostBytes& rBytes);
    VOID RunSnapshotFrame(HostBytes& rBytes);
    VOID BeginSession(HostBytes& rBytes);
    VOID Set(HostBytes& rBytes);
    /// Maps and samples from outside, for the next frame.
    VOID Sense(HostBytes& rBytes);
    /// What a flash is decided by, from the last frame's statistics and others.
    VOID AskFlash(HostBytes& rBytes);

    /// What the core answers about a snapshot, and of itself.
    VOID Query(HostBytes& rBytes);

    /// Makes an object of tuned data, hands it a tree of the tuning and asks it.
    VOID AskTunedData(HostBytes& rBytes);

private:
    using Handler = VOID (HostCamera::*)(TableUse use, HostBytes& rBytes);

    template <typename... Calls> static Handler HandlerOf(recording::Slot slot, std::tuple<Calls...>*);
    template <typename CallType> VOID           Invoke(TableUse use, HostBytes& rBytes);

    CameraPlan                      m_plan;
    HostMemory                      m_memory;
    std::unique_ptr<KiroDebugData>  m_pDebugData;   ///< of a bare instance
    std::unique_ptr<HostStatistics> m_pStatistics;  ///< of the last frame: the core may look at them until the next one
    std::unique_ptr<KiroHost>       m_pHost;        ///< null for a bare instance
    IKIROCoreAlgo*                  m_pAlgo;
    UINT64                          m_frameID;
};

}  // namespace fuzz
