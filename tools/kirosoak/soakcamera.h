/// @file
/// A scene's camera that goes on from lap to lap, and what each round of a lap must be like.
#pragma once

#include "tools/kirosim/runreport.h"
#include "tools/kirosoak/modechange.h"
#include "tools/kirosoak/soak.h"
#include "tools/kirosoak/speededit.h"

namespace kirosoak
{

class SoakCamera
{
public:
    /// In two rounds the exposure comes to where every round ends as it began, and the third is the measure. Then a
    /// round with an edit, one with other modes, one with a reload and snapshots, each with one to recover behind it.
    /// The last must be like the third to the bit.
    static constexpr UINT64 RoundsPerLap = 10;

    /// All but the result must outlive this object. @throws std::runtime_error for a scene too short to do it all
    SoakCamera(const kirosim::Scene& rScene, const std::string& rName, kirosim::LoadedTuning& rTuning,
               StatsLogger logger);

    /// @param isStopped asked before each frame; may be empty
    /// @return a sum over everything that was decided; meaningless when stopped
    UINT64 RunLap(const std::function<bool()>& isStopped, SoakResult& rResult);

private:
    /// Frames of a round in which something is other than usual.
    struct Window
    {
        UINT64 begin;
        UINT64 end;
        bool   isFollowing;  ///< the exposure follows a step of the light meanwhile
    };

    /// What a round has come to.
    struct Round
    {
        std::vector<UINT64>              frames;  ///< a sum over each
        std::vector<DOUBLE>              times;   ///< of each in the scene, s
        std::vector<kirosim::StepResult> steps;
        bool                             isSettled = false;  ///< as the core sees it, at the end
        UINT64                           pictures  = 0;
    };

    VOID   BeforeFrame(UINT64 round, UINT64 frame);
    VOID   AddFrame(const kirosim::FrameRecord& rRecord);
    VOID   EndRound(UINT64 round);
    VOID   JudgeSteps(UINT64 round);
    VOID   JudgeAgainstQuiet(UINT64 round);
    VOID   ChooseWindow();
    UINT64 FirstDifference(UINT64 begin, UINT64 end) const;
    VOID   EditSpeeds();
    VOID   UndoEdit();
    VOID   Reload();
    VOID   ChangeModes(VOID (ModeChange::*pChange)());
    VOID   Fault(const std::string& rText);

    const kirosim::Scene&   m_rScene;
    const std::string&      m_rName;
    kirosim::LoadedTuning&  m_rTuning;
    kirosim::Simulation     m_simulation;
    kirosim::RunReport      m_report;
    SpeedEdit               m_edit;
    std::vector<ModeChange> m_modeChanges;  ///< one per camera
    Window                  m_window;
    size_t                  m_valuesEdited;
    UINT64                  m_second;  ///< a sum over the second camera's frame
    Round                   m_round;
    Round                   m_quiet;
    UINT64                  m_lapSum;
    SoakResult*             m_pResult;  ///< of the present lap
};

}  // namespace kirosoak
