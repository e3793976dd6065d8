/// @file
/// A tuning as the core sees it: the modules that apply in a mode.
#pragma once

#include <vector>

#include "tools/tuningcheck/spot.h"

namespace tuningcheck
{

/// The modules of one mode: its own, and those that it takes over from above.
class ModeView
{
public:
    ModeView(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, UINT32 mode);

    const std::vector<ModulePlace>& Modules() const
    {
        return m_modules;
    }

    /// @return null if the mode has no module of that name
    const ModulePlace* Find(std::string_view name) const;

    /// @return the record of a module, null if the mode has none. @param Record the module's type
    template <typename Record> const Record* Get(const CHAR* pName) const
    {
        const ModulePlace* pModule = Find(pName);
        return (pModule != nullptr) ? static_cast<const Record*>(pModule->pModule->pRecord) : nullptr;
    }

    const tuningfile::ModeTable& Table() const
    {
        return m_rTable;
    }

    UINT32 Mode() const
    {
        return m_mode;
    }

private:
    const tuningfile::ModeTable& m_rTable;
    UINT32                       m_mode;
    std::vector<ModulePlace>     m_modules;
};

/// @param mode that has what a finding points to
/// @return " in Default|Sensor.0" for a fault that only a mode below has; empty if it is there already
std::string InMode(const ModeView& rView, UINT32 mode);

/// @return the module as a mode itself has it
ModulePlace PlaceOf(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, UINT32 mode,
                    const tuningfile::Module& rModule);

}  // namespace tuningcheck
