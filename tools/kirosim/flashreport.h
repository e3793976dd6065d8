/// @file
/// The part of the summary that tells of pictures with flash.
#pragma once

#include <vector>

#include "tools/kirosim/report.h"

namespace kirosim
{

/// How far a chosen mix lies from the one that is wanted.
struct MixMatch
{
    DOUBLE distance;  ///< of the wanted colour from the nearest that the LEDs can make
    DOUBLE steps;     ///< of the chosen colour from that nearest one, in steps of 1 mA
};

/// @param rCurrent what was chosen, with the row of mixes to choose from
MixMatch MatchOf(const KIROAlgoFlashOutput& rCurrent, const Colour& rWanted);

class FlashReport : public Report
{
public:
    /// @param rScene with a flash; must outlive this object
    explicit FlashReport(const FlashScene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    std::vector<Figure> Figures() const override;

    const std::vector<FlashShot>& Shots() const
    {
        return m_shots;
    }

    /// Largest current of both LEDs together in any frame, mA.
    INT32 CurrentMax() const
    {
        return m_currentMax;
    }

    /// Colour error of the mixes at a picture, over that of the first picture.
    DOUBLE KneeErrorLeft(size_t shot) const;

    /// Mean luma of the near part over its target.
    static DOUBLE NearOverTarget(const FlashShot& rShot);

private:
    std::string FormatShot(size_t index) const;
    std::string FormatCalibration() const;
    TextNode    ShotFacts(size_t index) const;

    const FlashScene&      m_rScene;
    std::vector<FlashShot> m_shots;
    std::vector<DOUBLE>    m_times;
    INT32                  m_currentMax;
};

}  // namespace kirosim
