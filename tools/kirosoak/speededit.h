/// @file
/// An edit of the tuning that every camera feels, made by a tool through the service for live tuning.
#pragma once

#include "tools/liveclient/liveclient.h"

namespace kirosoak
{

class SpeedEdit
{
public:
    explicit SpeedEdit(UINT16 port);

    /// Halves the speeds of convergence that are in force in a mode. @return how many
    size_t Make(const std::string& rModePath);

    /// @return whether all read as before
    bool Undo();

private:
    liveclient::Options            m_options;
    std::string                    m_path;
    std::vector<liveclient::Value> m_before;
};

}  // namespace kirosoak
