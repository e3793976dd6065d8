/// @file
/// Cameras on one tuning store, what a host may do with them, and whether they are as good as new afterwards.
#pragma once

#include <memory>

#include "host/cameragroup.h"
#include "tools/kirosim/camera.h"
#include "tools/kirosoak/oddstatistics.h"
#include "tools/kirosoak/tuningvariants.h"

namespace kirosoak
{

/// A file for a reload.
struct ReloadFile
{
    enum class Kind
    {
        Good,
        Refused,
        Lacking
    };

    Kind   kind   = Kind::Good;
    size_t module = 0;  ///< that is lacking, by TuningVariants::Modules
};

class CameraLife
{
public:
    static constexpr size_t CamerasMax = 3;

    /// @param rVariants, rCalls must outlive this object; the latter gets a line before each call
    CameraLife(TuningVariants& rVariants, StatsLogger logger, std::string& rCalls);

    // What hosts do. There is always one camera at least.

    VOID AddCamera();
    VOID DropCamera(size_t camera);

    size_t CameraCount() const
    {
        return m_cameras.size();
    }

    /// From now on the camera has a part in the group of cameras, unless it has one.
    VOID Join(size_t camera, StatsAlgoRole role);
    VOID Leave(size_t camera);

    /// All cameras run so many frames, one after the other.
    VOID RunFrames(UINT32 count, Disturbance disturbance = Disturbance::None);

    /// @param rEvent anything but modes
    VOID Apply(size_t camera, const std::string& rWhat, const kirosim::Event& rEvent);
    VOID SetModes(size_t camera, const std::vector<TuningMode>& rModes);
    VOID Begin(size_t camera, const std::string& rWhat, const kirosim::StartPlan& rPlan);

    /// Reloads one file after the other and tells the cameras.
    /// @param isEachTold else they are told of the last one only
    VOID Reload(const std::vector<ReloadFile>& rFiles, bool isEachTold);

    /// The good file in a store of its own takes the place of the one in use, once so many times over.
    VOID ReplaceStore(UINT32 times);

    /// Stages of a frame between two frames.
    VOID RunStages(size_t camera, UINT32 analyzerID);

    /// Changes a number of the tuning as a tool does. @param choice of one; any number will do
    VOID Edit(UINT64 choice);

    /// Ends all that was set or began, shows all cameras 150 equal frames, and the same to a new one. Each number of
    /// the last frame must be the same to the bit. What stays of a life by design is kept out of it:
    /// - the lux index is filtered, and convergence stops somewhere within a tolerance: the first half of the frames is
    ///   a glare that ends at the same place from wherever it comes;
    /// - values that a tuning does not write stay in their banks: what is judged runs on the good file, however the
    ///   life has ended;
    /// - a reading of the light sensor cannot be taken back: all are given the same;
    /// - a smoothed gain moves from node to node, beginning at the lowest of the tuning of its first frame: Edit leaves
    ///   the nodes as they are;
    /// - MultiframeHDR stays in force for what the tuning chooses by it: RandomLife does not set it.
    /// @param isReloaded the good file is loaded once more before, and the new camera gets a store of its own; always
    ///                   so after a reload of another one
    /// @return how they differ; none if they do not
    std::vector<std::string> Judge(bool isReloaded);

    /// Run by all cameras so far.
    UINT64 Frames() const
    {
        return m_frames;
    }

private:
    struct Place
    {
        std::unique_ptr<kirosim::Camera> pCamera;
        UINT64                           frame     = 0;  ///< number of the last one
        bool                             isInGroup = false;
    };

    VOID                 Note(const std::string& rCall);
    Place                NewPlace(kirosim::LoadedTuning& rTuning);
    VOID                 TellCameras();
    kirosim::FrameRecord RunFrame(Place& rPlace, DOUBLE sceneTime);
    VOID                 Settle(Place& rPlace, kirosim::LoadedTuning& rTuning);
    std::string          LastDecision(Place& rPlace);

    TuningVariants&                        m_rVariants;
    const StatsLogger                      m_logger;
    std::string&                           m_rCalls;
    const kirosim::Scene                   m_scene;
    std::unique_ptr<kirosim::LoadedTuning> m_pTuning;  ///< outlives the cameras
    std::vector<Place>                     m_cameras;
    CameraGroup                            m_group;
    UINT64                                 m_frames;
    bool                                   m_isGood;  ///< the file that was loaded last
};

}  // namespace kirosoak
