/// @file
/// References of a tuning: what is read must exist in each mode, what exists should be read in some mode.
#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/inventory.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

/// Judges the references of one tree of modes.
class References
{
public:
    /// @param rChannels names of statistics that the host delivers; none: they are not judged
    References(const std::vector<std::string>& rChannels, Findings& rFindings);

    /// A parent comes before its children.
    VOID CheckMode(const ModeView& rView);

    /// Once all modes have been seen: what none of them uses.
    VOID CheckUsage();

private:
    using Mentions = std::vector<Mention>;

    const Mentions& Of(const ModulePlace& rModule);

    bool AreRunListsSound(const std::vector<const Mention*>& rMentions, const Inventory& rInventory) const;

    VOID CheckReader(const Mention& rReader, const Inventory& rInventory, const ModeView& rView);

    const std::vector<std::string>&                m_rChannels;
    Findings&                                      m_rFindings;
    std::deque<Mentions>                           m_mentions;     ///< of each module that a mode has itself
    std::map<const tuningfile::Module*, Mentions*> m_ofModule;     ///< in m_mentions
    std::set<Kind>                                 m_wrongKinds;   ///< of readers that name what is not there
    std::set<Kind>                                 m_doubleKinds;  ///< of which a list has one number twice
};

}  // namespace tuningcheck
