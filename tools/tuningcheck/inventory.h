/// @file
/// What exists in a mode, by what its modules define and write.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/tuningcheck/mention.h"

namespace tuningcheck
{

class Inventory
{
public:
    /// @param rChannels that the host delivers; none: whatever a tuning asks for
    Inventory(const std::vector<const Mention*>& rMentions, const std::vector<std::string>& rChannels);

    bool Has(const Named& rNamed) const;

    /// @return whether calculators alone write it that no list of the mode runs, so that it keeps what it has or is 0
    bool IsIdle(const Named& rNamed) const;

    /// @return whether what the mention is a part of runs in the mode
    bool IsInUse(const Mention& rMention) const;

    /// @return "1 (FrameAverage), 2 (CentreWeighted)", shortened; empty if there is nothing of the kind
    std::string ListOf(const Kind& rKind) const;

    /// @return "did you mean 1 (FrameAverage)?"; where nothing is near, where to add what is missing
    std::string AdviceFor(const Named& rNamed) const;

private:
    using Labels = std::map<Named, std::string>;

    std::vector<Labels::const_iterator> OfKind(const Kind& rKind) const;

    Labels                                m_labels;   ///< what exists, and what the tuner calls it
    std::set<Named>                       m_inUse;    ///< what run lists and analyzers name
    std::map<Named, std::optional<Named>> m_idle;     ///< what would be written if its user ran
    std::map<Named, std::optional<Named>> m_written;  ///< what is written or defined in use, by its user
    bool                                  m_areChannelsKnown;
};

}  // namespace tuningcheck
