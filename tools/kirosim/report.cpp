#include "tools/kirosim/report.h"

#include "tools/kirosim/hdrreport.h"
#include "tools/kirosim/outsidereport.h"

namespace kirosim
{

std::vector<std::unique_ptr<Report>> ReportsOf(const Scene& rScene)
{
    std::vector<std::unique_ptr<Report>> reports;
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
    return reports;
}

}  // namespace kirosim
