/// @file
/// The report of a run, gathered frame by frame.
#pragma once

#include "tools/kirosim/moments.h"
#include "tools/kirosim/picturechoice.h"
#include "tools/kirosim/runoptions.h"
#include "tools/kirosim/runreport.h"
#include "tools/kirosim/statebands.h"
#include "tools/kirosim/tracetable.h"
#include "tools/report/page.h"
#include "tools/tuningfile/filereplacement.h"

namespace kirosim
{

class RunPage
{
public:
    /// Opens the file. @param rOptions, rScene, rTuning must outlive the page
    /// @throws tuningfile::InputError for a file that cannot be written, or another run's that cannot be read
    RunPage(const RunOptions& rOptions, const Scene& rScene, const LoadedTuning& rTuning);

    /// Sees each frame once it is decided. @param rCamera that has decided it
    VOID Add(const FrameRecord& rRecord, Camera& rCamera);

    /// Sees each frame of the second camera, whose lines are thin in the charts of the first one.
    VOID AddSecond(const FrameRecord& rRecord);

    /// After the last frame, which gets a picture. @param rCamera as for Add
    VOID End(Camera& rCamera);

    /// @param rReport of the same run
    /// @throws std::runtime_error without a frame
    VOID Commit(const RunReport& rReport);

private:
    FrameMoment   MomentOf(const FrameRecord& rRecord);
    VOID          AddPicture(const std::string& rReason, Camera& rCamera);
    size_t        IndexOf(const report::Weights& rWeights);
    report::Table OriginTable() const;

    const RunOptions&           m_rOptions;
    const Scene&                m_rScene;
    const LoadedTuning&         m_rTuning;
    tuningfile::FileReplacement m_file;
    std::optional<TraceTable>   m_against;
    TraceTable                  m_trace;
    std::optional<TraceTable>   m_second;  ///< none without a second camera
    StateBands                  m_bands;
    MomentWalk                  m_moments;
    PictureChoice               m_choice;
    bool                        m_isPictured;
    UINT64                      m_leftOutCount;  ///< pictures
    report::Page                m_page;
};

}  // namespace kirosim
