/// @file
/// The parts of the summary that a scene asks for beyond the control of exposure. Each feature of a scene has its own.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/kirosim/camera.h"
#include "tools/kirosim/figures/figure.h"
#include "tools/kirosim/jsonfacts.h"

namespace kirosim
{

class Report
{
public:
    virtual ~Report() = default;

    /// Sees each frame once it is decided.
    virtual VOID Add(const FrameRecord& rRecord) = 0;

    /// Sees each frame of the second camera, before the first one's of the same time.
    virtual VOID AddSecond(const FrameRecord&)
    {
    }

    /// Lines for a person to judge, each ended by a newline.
    virtual std::string Format() const = 0;

    /// The same for scripts, under the name of the report.
    virtual TextItem Facts() const = 0;

    /// Figures of merit of what the report is about.
    virtual std::vector<Figure> Figures() const
    {
        return {};
    }
};

/// The reports of a scene, in the order in which they are printed. @param rScene must outlive them
std::vector<std::unique_ptr<Report>> ReportsOf(const Scene& rScene);

}  // namespace kirosim
