#include "tools/kirosim/report.h"

#include "tools/kirosim/flashreport.h"

namespace kirosim
{

std::vector<std::unique_ptr<Report>> ReportsOf(const Scene& rScene)
{
    std::vector<std::unique_ptr<Report>> reports;
    if (rScene.flash.has_value())
    {
        reports.push_back(std::make_unique<FlashReport>(*rScene.flash));
    }
    return reports;
}

}  // namespace kirosim
