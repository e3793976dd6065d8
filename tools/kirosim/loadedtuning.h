/// @file
/// A tuning in a store, from a parameter file or from text.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "interface/statstuningdata.h"
#include "parameters/tuningsetmanager.h"
#include "tools/program/privatefile.h"
#include "tools/recording/tuningreference.h"

namespace kirosim
{

/// Selectors of the tuning's Default mode.
std::vector<TuningMode> DefaultSelectors();

class LoadedTuning
{
public:
    /// What the store reads a parameter file from, when a camera first asks for a mode and when it loads anew.
    enum class Source
    {
        Copy,  ///< what the file held at first, whatever becomes of it
        File   ///< the file as it stands then
    };

    /// Whoever reaches the port of live tuning can change everything: others than this machine do by request only.
    static constexpr const CHAR* LiveAddress = "127.0.0.1";

    /// @param isLive       open a port, so that a tool can read and change the tuning while it is in use
    /// @param pLiveAddress of the machine, IPv4, at which the port is open
    /// @throws tuningfile::InputError if the file cannot be read or the store refuses it, and for an address that is
    /// none
    explicit LoadedTuning(const std::string& rPath, bool isLive = false, Source source = Source::Copy,
                          const CHAR* pLiveAddress = LiveAddress);

    /// @param rSelectors seven, Default first; they stay valid as long as the tuning: several cameras use it
    StatsTuningData Data(const std::vector<TuningMode>& rSelectors);

    /// The deepest mode that the selectors name, if the tuning does not have it: cameras then use the one above it.
    /// @return such as "Usecase.Video"; nothing if it is there, or if none but Default is named
    std::optional<std::string> MissingMode(const std::vector<TuningMode>& rSelectors);

    bool IsLive() const
    {
        return m_isLive;
    }

    /// Where it came from, and what it is.
    const recording::TuningReference& Reference() const
    {
        return m_reference;
    }

    TuningSetManager& Manager()
    {
        return m_manager;
    }

private:
    const bool m_isLive;

    /// The copy, if there is one. Modes are read when a scene first asks for them, perhaps long after somebody has
    /// written the file anew. Outlives the store.
    std::optional<program::PrivateFile> m_file;
    TuningSetManager                    m_manager;
    recording::TuningReference          m_reference;
    std::deque<std::vector<TuningMode>> m_selectors;
};

}  // namespace kirosim
