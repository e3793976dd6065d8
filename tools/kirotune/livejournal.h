/// @file
/// The journal of a camera: what commands have set since it was started, on disk, so that it can be taken back and
/// kept.
#pragma once

#include <string>
#include <vector>

#include "tools/kirotune/livejournaltext.h"
#include "tools/liveclient/liveclient.h"
#include "tools/program/filelock.h"

namespace kirotune
{

/// One file for each host and port, below $XDG_STATE_HOME/kirotune or ~/.local/state/kirotune. A camera that was
/// started anew, or another one at that port, gets a new journal with its first edit; the one before is kept as
/// "....journal.before". The file is locked as long as this object lives, and replaced as a whole by each change.
class Journal
{
public:
    /// @param rPlace  host and port @param rDevice who has answered there
    /// @throws liveclient::Error if there is no place for it, or what stands there is no journal
    Journal(const std::string& rPlace, const liveclient::DeviceInfo& rDevice);

    /// Commands since the start of the camera, the oldest first.
    const std::vector<EditCommand>& Commands() const
    {
        return m_content.commands;
    }

    /// To be called before the command is sent.
    VOID Add(EditCommand command);

    VOID DropLast();

private:
    std::string Text();
    VOID        Write();

    const std::string       m_path;
    const program::FileLock m_lock;
    JournalContent          m_content;
    bool                    m_isOfEarlierStart = false;  ///< what stands in the file
};

}  // namespace kirotune
