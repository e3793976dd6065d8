/// @file
/// Drives the core from a recording and compares what it answers.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "host/kirocorelibrary.h"
#include "tools/recording/chunks.h"
#include "tools/recording/identities.h"
#include "tools/recording/slots.h"
#include "tools/recording/tuningreference.h"

class KiroDebugData;

namespace recording
{

/// A frame of the preview as the replayed core has decided it. Valid while it is shown.
struct ReplayedFrame
{
    UINT32                       camera;   ///< number, from 0
    UINT64                       frameID;  ///< as recorded; 0 for a frame of start-up
    IKIROCoreAlgo*               pAlgo;    ///< for questions that change nothing
    const KIROMeteringOutput&    rMetering;
    const KIROConvergenceOutput& rConvergence;
    const KIROArbitrationOutput* pArbitration;  ///< indexed by AECAlgoExposureType
    const KIROExtensionOutput&   rExtension;
};

struct ReplayPlan
{
    /// Called for each tuning of a recording, in their order. @return the store of the tuning that the recording names;
    /// throws to refuse it. It must outlive the replayer
    std::function<VOID*(const TuningReference&)> tuning;
    size_t                                       differenceMax = 1;  ///< after which the replay ends, at least 1
    StatsLogger                                  logger        = nullptr;
    std::function<VOID(const ReplayedFrame&)>    visit         = {};  ///< sees each frame; may be empty
};

struct ReplayResult
{
    UINT64                   frames = 0;   ///< of the camera with the most
    UINT64                   calls  = 0;   ///< replayed
    std::vector<std::string> differences;  ///< one line each, in their order
    std::string              damage;       ///< what is wrong with the file, and where; empty for a whole one
};

class Replayer
{
public:
    /// @throws std::runtime_error if the file cannot be read, is no recording, or one of other records
    Replayer(const std::string& rPath, const ReplayPlan& rPlan);
    ~Replayer();
    Replayer(const Replayer&)            = delete;
    Replayer& operator=(const Replayer&) = delete;

    /// Replays all that is whole, or up to the last difference of the plan. Once only.
    /// @throws std::runtime_error if the tuning is refused or the core cannot be created
    ReplayResult Run();

private:
    struct PresentCall;

    using Handler  = VOID (Replayer::*)(PresentCall& rCall);
    using Handlers = std::array<Handler, static_cast<size_t>(Slot::Count)>;

    bool Handle(const Chunk& rChunk);
    VOID CheckHead(const Chunk& rChunk);
    VOID AddTuning(const Chunk& rChunk);
    VOID AddInstance(const Chunk& rChunk);
    VOID EndInstance(ReplayInstance& rInstance);
    VOID SetHostRecord(const Chunk& rChunk);
    VOID CheckTail(const Chunk& rChunk);
    VOID RunCall(const Chunk& rChunk);

    template <typename... Calls> static constexpr Handlers HandlersOf(std::tuple<Calls...>*);

    template <typename Call> VOID Replay(PresentCall& rCall);
    template <typename Call> VOID Show(ReplayInstance& rInstance, const Call& rAnswered);
    template <typename Call> VOID Compare(const PresentCall& rCall, const Call& rAnswered);

    std::string Place(const PresentCall& rCall) const;

    ChunkReader                                 m_file;
    ReplayPlan                                  m_plan;
    KiroCoreLibrary                             m_library;
    std::vector<std::unique_ptr<KiroDebugData>> m_debugData;
    ReplayIdentities                            m_identities;
    ReplayResult                                m_result;
    size_t                                      m_livingCount;  ///< instances
    bool                                        m_hasTail;
};

}  // namespace recording
