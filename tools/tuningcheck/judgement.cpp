#include "tools/tuningcheck/judgement.h"

#include "tools/tuningcheck/modes.h"
#include "tools/tuningcheck/modeview.h"
#include "tools/tuningcheck/references.h"
#include "tools/tuningcheck/values.h"

namespace tuningcheck
{

using tuningfile::ModeTable;
using tuningfile::Module;
using tuningfile::Tuning;

std::vector<Finding> Judge(const Tuning& rTuning, const Surroundings& rSurroundings)
{
    Findings findings(rTuning);
    for (const ModeTable& rTable : rTuning.tables)
    {
        References references(rSurroundings.channels, findings);
        for (UINT32 mode = 0; mode < rTable.modes.size(); ++mode)
        {
            for (const Module& rModule : rTable.modes[mode].modules)
            {
                CheckValues(PlaceOf(rTuning, rTable, mode, rModule), findings);
            }
            references.CheckMode(ModeView(rTuning, rTable, mode));
        }
        references.CheckUsage();
        CheckModes(rTuning, rTable, findings);
    }
    return findings.Take();
}

}  // namespace tuningcheck
