#include "tools/kirosim/report.h"

#include <algorithm>

#include "tools/kirosim/bracketreport.h"
#include "tools/kirosim/detectorreport.h"
#include "tools/kirosim/faultreport.h"
#include "tools/kirosim/flashreport.h"
#include "tools/kirosim/hdrreport.h"
#include "tools/kirosim/monitorreport.h"
#include "tools/kirosim/outsidereport.h"
#include "tools/kirosim/startreport.h"
#include "tools/kirosim/twocamerasreport.h"

namespace kirosim
{

namespace
{

bool HasStarts(const Scene& rScene)
{
    return rScene.start.has_value() || (rScene.pSecond != nullptr && rScene.pSecond->start.has_value()) ||
           std::any_of(rScene.events.begin(), rScene.events.end(),
                       [](const Event& rEvent) { return rEvent.start.has_value(); });
}

}  // namespace

std::vector<std::unique_ptr<Report>> ReportsOf(const Scene& rScene)
{
    std::vector<std::unique_ptr<Report>> reports;
    if (FaultReport::IsAskedBy(rScene))
    {
        reports.push_back(std::make_unique<FaultReport>(rScene));
    }
    if (HasStarts(rScene))
    {
        reports.push_back(std::make_unique<StartReport>(rScene));
    }
    if (rScene.pSecond != nullptr)
    {
        reports.push_back(std::make_unique<TwoCamerasReport>(rScene));
    }
    if (!rScene.detectors.watched.empty())
    {
        reports.push_back(std::make_unique<DetectorReport>(rScene.detectors));
    }
    if (std::any_of(rScene.events.begin(), rScene.events.end(),
                    [](const Event& rEvent) { return rEvent.bracket.has_value(); }))
    {
        reports.push_back(std::make_unique<BracketReport>(rScene.sensor.Delay()));
    }
    if (rScene.isMonitored)
    {
        reports.push_back(std::make_unique<MonitorReport>());
    }
    if (HDRReport::IsAskedBy(rScene))
    {
        reports.push_back(std::make_unique<HDRReport>(rScene));
    }
    if (rScene.map.has_value())
    {
        reports.push_back(std::make_unique<TrackingReport>(rScene));
    }
    if (!rScene.gyro.empty())
    {
        reports.push_back(std::make_unique<ShakeReport>(rScene));
    }
    if (rScene.flash.has_value())
    {
        reports.push_back(std::make_unique<FlashReport>(*rScene.flash));
    }
    return reports;
}

}  // namespace kirosim
