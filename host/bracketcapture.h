/// @file
/// Pictures of one scene at several exposures, taken in the middle of the preview.
///
/// Each picture is a frame of its own kind: announced as a snapshot, with the event of bracketing and its EV in the
/// trigger bank, so that the tuning gives it its own order of controls, its gains, and the lock that keeps later
/// brackets of an unchanged scene at the same exposures. The preview neither sees the pictures' statistics nor moves
/// because of them.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "host/kirohost.h"
#include "host/snapshotgains.h"

/// One picture of a bracket, beside its exposures.
struct BracketPicture
{
    INT32    evSteps;     ///< as the core has it; a lock answers with the EV that it was set with
    FLOAT    multiplier;  ///< of the exposure, that the EV stands for
    DRCGains gains;
    bool     isLocked;  ///< the bracket lock held the targets of an earlier bracket
};

class BracketCapture
{
public:
    /// @param rHost         must outlive this object
    explicit BracketCapture(KiroHost& rHost);

    /// Asks for pictures, one per frame from the next frame on. They follow those that are still to be taken.
    /// @param rEVSteps as of KiroHost::SetExposureCompensation
    VOID Start(const std::vector<INT32>& rEVSteps);

    /// Runs a frame in place of KiroHost::RunFrame: a picture if one is due, otherwise preview. While the statistics
    /// show pictures the preview's last decision stands, and the core does not see the frame.
    /// @return what was decided, valid until the next call
    const KiroHostFrame& RunFrame(UINT64 frameID, KIROStatsList& rStats);

    /// The picture that the last frame was; empty for a preview frame.
    const std::optional<BracketPicture>& LastPicture() const
    {
        return m_picture;
    }

    /// Whether the last frame's statistics were those of a picture.
    bool HasShownPicture() const
    {
        return m_hasShownPicture;
    }

private:
    bool StatsShowPicture(UINT64 frameID);
    VOID TakePicture(UINT64 frameID, KIROStatsList& rStats, bool isMetered);
    VOID ChooseExposures(KiroHostFrame& rFrame, bool isMetered);
    VOID PublishEV(INT32 evSteps);

    KiroHost&                     m_rHost;
    SnapshotGains                 m_gains;
    std::deque<INT32>             m_pending;  ///< EVs of the pictures to take
    std::deque<UINT64>            m_taken;    ///< frames whose pictures the statistics have yet to show
    std::optional<BracketPicture> m_picture;
    /// Of the bracket's last picture whose statistics showed the preview; a short pipeline shows pictures to the
    /// others.
    std::optional<KIROMeteringOutput> m_metering;
    bool                              m_hasShownPicture;
    KiroHostFrame                     m_frame;
};
