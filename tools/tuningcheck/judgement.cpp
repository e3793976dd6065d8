#include "tools/tuningcheck/judgement.h"

#include "tools/tuningcheck/completeness.h"
#include "tools/tuningcheck/emptymodule.h"
#include "tools/tuningcheck/modes.h"
#include "tools/tuningcheck/modeview.h"
#include "tools/tuningcheck/references.h"
#include "tools/tuningcheck/shapes.h"
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
                if (!IsEmpty(rModule))
                {
                    CheckValues(PlaceOf(rTuning, rTable, mode, rModule), findings);
                    CheckModuleShapes(PlaceOf(rTuning, rTable, mode, rModule), findings);
                }
            }
            const ModeView view(rTuning, rTable, mode);
            CheckModeShapes(view, rSurroundings, findings);
            references.CheckMode(view);
        }
        references.CheckUsage();
        CheckModes(rTuning, rTable, findings);
        CheckCompleteness(rTuning, rTable, findings);
    }
    return findings.Take();
}

}  // namespace tuningcheck
