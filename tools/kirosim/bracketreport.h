/// @file
/// The pictures of a run's brackets, and what they left behind in the preview.
#pragma once

#include <deque>
#include <optional>

#include "tools/kirosim/report.h"

namespace kirosim
{

struct BracketFrameResult
{
    UINT64                frame;
    INT32                 evSteps;
    DOUBLE                exposureLog2;  ///< of the safe exposure, gain times nanoseconds
    DOUBLE                exposureEV;  ///< of safe, against the bracket's picture of EV 0; against the preview if none
    FLOAT                 gain;        ///< of safe
    UINT64                timeNs;      ///< of safe
    std::optional<DOUBLE> pictureEV;   ///< what the sensor made of it; empty if the run ended before
    FLOAT                 ADRC;        ///< asked of the tuning
    FLOAT                 darkBoost;   ///< asked of the tuning
    DOUBLE                ADRCOfSensor;       ///< safe over short as decided
    DOUBLE                darkBoostOfSensor;  ///< long over safe as decided
    bool                  isLocked;
};

/// Pictures of consecutive frames.
struct BracketResult
{
    std::vector<BracketFrameResult> frames;
    KIROExposureSetType             before;           ///< the preview's safe exposure in the frame before
    std::optional<DOUBLE>           previewChangeEV;  ///< first preview exposure after against the last before
    std::optional<DOUBLE>           pictureChangeEV;  ///< first preview picture after against the last before
};

class BracketReport final : public Report
{
public:
    explicit BracketReport(UINT8 systemLatency);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    const std::vector<BracketResult>& Results() const
    {
        return m_results;
    }

private:
    VOID AddPicture(const FrameRecord& rRecord);
    VOID AddPreview(const FrameRecord& rRecord);
    VOID AddTruth(const FrameRecord& rRecord);

    UINT8                      m_systemLatency;
    std::vector<BracketResult> m_results;
    KIROExposureSetType        m_preview;           ///< safe, of the last preview frame
    DOUBLE                     m_previewPictureEV;  ///< of the last frame that showed the preview
    bool                       m_isInBracket;
};

}  // namespace kirosim
