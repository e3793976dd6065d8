/// @file
/// How near each session began to where its exposure settled.
#pragma once

#include "tools/kirosim/report.h"

namespace kirosim
{

struct StartResult
{
    bool                                isSecond;  ///< of the second camera
    DOUBLE                              time;      ///< s
    std::optional<KIROAlgoStartExpType> source;    ///< none for the fixed start
    DOUBLE                              errorEV;   ///< first safe exposure against the settled one
    DOUBLE                              fixedEV;   ///< what the fixed start would have been off
};

class StartReport final : public Report
{
public:
    /// @param rScene must outlive the report
    explicit StartReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    VOID        AddSecond(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    /// One for each session, in ascending time; the settled exposure is that of its last frame.
    std::vector<StartResult> Results() const;

private:
    struct Session
    {
        bool                                isSecond;
        DOUBLE                              time;
        std::optional<KIROAlgoStartExpType> source;
        UINT64                              startExposure;
        UINT64                              fixedExposure;
        UINT64                              lastExposure;
    };

    VOID Add(const FrameRecord& rRecord, bool isSecond);

    const Scene&         m_rScene;
    std::vector<Session> m_sessions;
};

}  // namespace kirosim
