#include "tools/tuningcheck/shapes.h"

#include "tools/tuningcheck/rules/analyzers.h"
#include "tools/tuningcheck/rules/antibanding.h"
#include "tools/tuningcheck/rules/blendparameters.h"
#include "tools/tuningcheck/rules/calculators.h"
#include "tools/tuningcheck/rules/camerapairs.h"
#include "tools/tuningcheck/rules/detectors.h"
#include "tools/tuningcheck/rules/evscale.h"
#include "tools/tuningcheck/rules/filters.h"
#include "tools/tuningcheck/rules/fixedgains.h"
#include "tools/tuningcheck/rules/flickergrids.h"
#include "tools/tuningcheck/rules/heededdetectors.h"
#include "tools/tuningcheck/rules/hybridhdr.h"
#include "tools/tuningcheck/rules/knees.h"
#include "tools/tuningcheck/rules/ledmixes.h"
#include "tools/tuningcheck/rules/lightstart.h"
#include "tools/tuningcheck/rules/mapprocessors.h"
#include "tools/tuningcheck/rules/measuredregions.h"
#include "tools/tuningcheck/rules/monitors.h"
#include "tools/tuningcheck/rules/orders.h"
#include "tools/tuningcheck/rules/pairs.h"
#include "tools/tuningcheck/rules/precisionsplit.h"
#include "tools/tuningcheck/rules/preflash.h"
#include "tools/tuningcheck/rules/ranges.h"
#include "tools/tuningcheck/rules/settling.h"
#include "tools/tuningcheck/rules/smoothnodes.h"
#include "tools/tuningcheck/rules/speeds.h"
#include "tools/tuningcheck/rules/stretches.h"
#include "tools/tuningcheck/rules/tablegenerators.h"
#include "tools/tuningcheck/rules/zones.h"

namespace tuningcheck
{

namespace
{

/// A check of one module alone.
struct ModuleCheck
{
    std::string_view module;
    VOID (*pCheck)(const ModulePlace&, Findings&);
};

constexpr ModuleCheck ModuleChecks[] = {
    {"kirometeringstatscalculator", CheckStatsCalculators},
    {"kirometeringsceneanalyzer", CheckSceneAnalyzers},
    {"kirometering", CheckAntibanding},
    {"kirometeringsaalgorithm", CheckPrecisionSplit},
    {"kiroconvergence", CheckSmoothNodes},
    {"kirodbconvbase", CheckSpeeds},
    {"kirodbconvstretch", CheckStretches},
    {"kiroscenechangedetector", CheckDetectors},
    {"kiroev", CheckEVScale},
    {"kiroflash", CheckLEDMixes},
    {"kiroflash", CheckPreflash},
    {"kiroextension", CheckMonitors},
    {"kiroparamextension", CheckBlendParameters},
    {"kirodbsnapshot", CheckFixedGains},
    {"kirostartup", CheckLightStart},
    {"kiroexternalmapprocessor", CheckMapProcessors},
    {"kiromtrtablegen", CheckTableGenerators},
    {"kiro1dvectorprocessor", CheckFilters},
};

constexpr VOID (*ModeChecks[])(const ModeView&, Findings&) = {
    CheckMeasuredRegions, CheckSettling,    CheckRanges,          CheckOrders,
    CheckFlickerGrids,    CheckCameraPairs, CheckHeededDetectors, CheckHybridHDR,
};

}  // namespace

VOID CheckModuleShapes(const ModulePlace& rModule, Findings& rFindings)
{
    CheckZones(rModule, rFindings);
    CheckPairs(rModule, rFindings);
    for (const ModuleCheck& rCheck : ModuleChecks)
    {
        if (rCheck.module == rModule.pModule->pDescription->pName)
        {
            rCheck.pCheck(rModule, rFindings);
        }
    }
}

VOID CheckModeShapes(const ModeView& rView, const Surroundings& rSurroundings, Findings& rFindings)
{
    CheckKnees(rView, rSurroundings, rFindings);
    for (const auto pCheck : ModeChecks)
    {
        pCheck(rView, rFindings);
    }
}

}  // namespace tuningcheck
