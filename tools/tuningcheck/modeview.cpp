#include "tools/tuningcheck/modeview.h"

#include <algorithm>

#include "tools/tuningfile/modepath.h"

namespace tuningcheck
{

using tuningfile::ModeTable;
using tuningfile::Module;
using tuningfile::Tuning;

ModulePlace PlaceOf(const Tuning& rTuning, const ModeTable& rTable, UINT32 mode, const Module& rModule)
{
    return {&rTuning, &rTable, mode, &rModule, tuningfile::FindModuleAbove(rTable, mode, *rModule.pDescription)};
}

ModeView::ModeView(const Tuning& rTuning, const ModeTable& rTable, UINT32 mode) : m_rTable(rTable), m_mode(mode)
{
    for (std::optional<UINT32> at = mode; at.has_value(); at = rTable.modes[*at].parent)
    {
        for (const Module& rModule : rTable.modes[*at].modules)
        {
            if (Find(rModule.pDescription->pName) == nullptr)
            {
                m_modules.push_back(PlaceOf(rTuning, rTable, *at, rModule));
            }
        }
    }
}

const ModulePlace* ModeView::Find(std::string_view name) const
{
    const auto found =
        std::find_if(m_modules.begin(), m_modules.end(),
                     [name](const ModulePlace& rModule) { return name == rModule.pModule->pDescription->pName; });
    return (found != m_modules.end()) ? &*found : nullptr;
}

std::string InMode(const ModeView& rView, UINT32 mode)
{
    return (rView.Mode() != mode) ? " in " + tuningfile::PathOf(rView.Table(), rView.Mode()) : "";
}

}  // namespace tuningcheck
