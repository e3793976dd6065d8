#include "tools/kirosim/report.h"

#include <algorithm>

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
    if (HasStarts(rScene))
    {
        reports.push_back(std::make_unique<StartReport>(rScene));
    }
    if (rScene.pSecond != nullptr)
    {
        reports.push_back(std::make_unique<TwoCamerasReport>(rScene));
    }
    return reports;
}

}  // namespace kirosim
