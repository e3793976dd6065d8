#include "tools/tuningcheck/modes.h"

#include <algorithm>

#include "tools/tuningcheck/modeview.h"
#include "tools/tuningfile/samerecord.h"

namespace tuningcheck
{

namespace
{

using tuningfile::Mode;
using tuningfile::ModeTable;
using tuningfile::Module;
using tuningfile::Tuning;

VOID CheckModule(const ModulePlace& rModule, Findings& rFindings)
{
    const tuning::RecordDescription& rType = *rModule.pModule->pDescription->pRecord;
    if (rModule.pAbove != nullptr && tuningfile::SameRecord(rType, rModule.pModule->pRecord, rModule.pAbove->pRecord))
    {
        rFindings.Add(Severity::Advice, rModule, "holds the same as in the mode above", "something that differs",
                      "leave it out");
    }
}

bool IsWanted(const ModeTable& rTable, UINT32 index)
{
    const Mode& rMode = rTable.modes[index];
    return !rMode.modules.empty() || rMode.link.has_value() || !rMode.parent.has_value() ||
           std::ranges::any_of(rTable.modes,
                               [index](const Mode& rOther) { return rOther.parent == index || rOther.link == index; });
}

}  // namespace

VOID CheckModes(const Tuning& rTuning, const ModeTable& rTable, Findings& rFindings)
{
    for (UINT32 index = 0; index < rTable.modes.size(); ++index)
    {
        for (const Module& rModule : rTable.modes[index].modules)
        {
            CheckModule(PlaceOf(rTuning, rTable, index, rModule), rFindings);
        }
        if (!IsWanted(rTable, index))
        {
            rFindings.Add(Severity::Advice, rTable, index, "mode", "has no modules and no modes below",
                          "modules that differ from the mode above",
                          "leave it out: a camera then takes the mode above");
        }
    }
}

}  // namespace tuningcheck
