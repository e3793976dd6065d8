#include "tools/tuningcheck/judgement.h"

#include "tools/tuningcheck/modeview.h"
#include "tools/tuningcheck/values.h"

namespace tuningcheck
{

using tuningfile::ModeTable;
using tuningfile::Module;
using tuningfile::Tuning;

std::vector<Finding> Judge(const Tuning& rTuning, const Surroundings& rSurroundings)
{
    (void)rSurroundings;
    Findings findings(rTuning);
    for (const ModeTable& rTable : rTuning.tables)
    {
        for (UINT32 mode = 0; mode < rTable.modes.size(); ++mode)
        {
            for (const Module& rModule : rTable.modes[mode].modules)
            {
                CheckValues(PlaceOf(rTuning, rTable, mode, rModule), findings);
            }
        }
    }
    return findings.Take();
}

}  // namespace tuningcheck
