/// @file
/// Shows tools what the camera sees while it runs.
#pragma once

#include <atomic>
#include <mutex>
#include <span>
#include <vector>

#include "parameters/live/verniercustomhandler.h"
#include "tools/kirosim/regionpicture.h"

class TuningSetManager;

namespace kirosim
{

class Camera;

/// Answers the custom command of tools/liveclient/picturecommand.h. The frame loop hands a frame over only if a tool
/// has asked since the last one, and never waits for a tool; so a tool is shown the frame behind its last question.
class LivePicture : public IVernierCustomHandler
{
public:
    /// Serves as long as it lives. @param rManager whose tools are served; must outlive this object
    explicit LivePicture(TuningSetManager& rManager);
    ~LivePicture() override;
    LivePicture(const LivePicture&)            = delete;
    LivePicture& operator=(const LivePicture&) = delete;

    /// To be called by the frame loop, behind each frame.
    VOID Offer(UINT64 frame, const Camera& rCamera);

    UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                         UINT32& rOutputSize) override;

    VOID RequestTriggerValues(const CHAR* pModePath, const CHAR* pModule, UINT64 moduleNameHash,
                              const CHAR* pPipeline) override;

private:
    bool   TakeView(UINT64& rFrame);
    UINT32 Compress(std::span<BYTE> output);

    TuningSetManager& m_rManager;
    std::atomic<bool> m_isAskedFor = false;
    std::mutex        m_mutex;
    UINT64            m_frame = 0;  ///< that was handed over, 0 before the first
    RegionView        m_view{};

    // Of the service's thread.
    RegionView        m_shown{};
    RegionPixels      m_pixels{};
    std::vector<BYTE> m_jpeg;
};

}  // namespace kirosim
