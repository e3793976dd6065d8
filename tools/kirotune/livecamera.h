/// @file
/// A running camera as those see it that edit it: its numbers, and what comes of setting them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/kirotune/livechange.h"
#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livejournaltext.h"
#include "tools/kirotune/livepatch.h"
#include "tools/liveclient/liveclient.h"
#include "tools/tuningfile/tuning.h"

namespace kirotune
{

/// What came of an edit.
struct EditOutcome
{
    /// @throws liveclient::Error if the camera has refused any
    VOID RequireAll() const;

    std::vector<Change>      changes;  ///< what has been set, with numbers as they read before and read now
    std::string              refused;  ///< members, each behind a blank
    std::vector<std::string> remarks;  ///< on numbers that read back as others, a line each
};

/// Gets what a person should know beside a result, a line each.
using RemarkTaker = std::function<VOID(const std::string&)>;

/// @return the tuning of a text or a parameter file @throws tuningfile::InputError
tuningfile::Tuning ReadTuning(const std::string& rFile);

/// What an answer without content may mean. The service does not say more.
/// @param rMembers those that are missing; none if all were asked for
liveclient::Error NothingThere(const std::string& rPath, const std::string& rModule,
                               const std::vector<std::string>& rMembers);

/// A number of a patch that sets what was sent. @throws liveclient::Error for members that this program does not know
PatchedNumber NumberAsSent(const std::string& rPath, const std::string& rModule, const std::string& rMember,
                           const std::string& rSent);

/// The text of a patch, for 'kirotune compile --patch'. @param rPlace host and port of the camera
/// @param table the mode table that the numbers are of
std::string PatchOf(const std::string& rPlace, const liveclient::DeviceInfo& rDevice, UINT32 table,
                    const std::vector<PatchedNumber>& rNumbers);

/// A connection. Prints nothing: what a person should know beside the result are remarks. All operations throw
/// liveclient::Error, also when the camera says no.
class LiveCamera
{
public:
    explicit LiveCamera(const liveclient::Options& rOptions);

    liveclient::Client& Client()
    {
        return m_client;
    }

    /// Host and port.
    const std::string& Place() const
    {
        return m_place;
    }

    /// Who answers; asked once.
    const liveclient::DeviceInfo& Device();

    /// The mode table that paths refer to.
    UINT32 TableInUse();

    /// @throws liveclient::Error unless the tuning has the mode: for others the service answers by their upper modes
    VOID RequireMode(const std::string& rPath);

    /// @param rMembers all of which must be there; none for all that there are
    std::vector<liveclient::Value> GetAll(const std::string& rPath, const std::string& rModule,
                                          const std::vector<std::string>& rMembers);

    // livecamera_edits.cpp

    /// All that is known of edits before they are sent. @param rPath by names @param rWanted numbers
    /// @throws liveclient::Error unless all of them can be read
    EditCommand Prepare(const std::string& rPath, const std::string& rModule,
                        const std::vector<liveclient::Value>& rWanted);

    /// What gives the numbers of an edit back, as far as the camera does not hold them.
    EditCommand Reverse(const EditCommand& rCommand);

    EditOutcome Send(const EditCommand& rCommand);

    /// Sends a command, and keeps it in the journal if any of it was set.
    EditOutcome SendAndKeep(const EditCommand& rCommand, Journal& rJournal);

    /// @return what the camera holds in the place of each edit
    std::vector<liveclient::Value> ReadHeld(const EditCommand& rCommand);

    // livecamera_diff.cpp

    /// The numbers that are not those of a tuning.
    /// @param rPath    the mode, with all below it, that is compared
    /// @param rTake gets a line if the tuning seems to be another one
    std::vector<Change> ChangesSince(const tuningfile::Tuning& rTuning, const std::string& rPath,
                                     const RemarkTaker& rTake);

    // livecamera_save.cpp

    /// What the camera now holds in the place of all that the journal has an edit of. What holds its old number is left
    /// out.
    std::vector<PatchedNumber> NumbersOfJournal(const Journal& rJournal, const RemarkTaker& rTake);

    /// All that differs from a tuning. The journal may know digits that the camera does not tell.
    std::vector<PatchedNumber> NumbersSince(const tuningfile::Tuning& rTuning, const Journal& rJournal,
                                            const RemarkTaker& rTake);

    /// The text of a patch of the table in use.
    std::string PatchOf(const std::vector<PatchedNumber>& rNumbers);

private:
    VOID AddChanges(const std::string& rFile, const std::string& rPath, const tuningfile::Module& rModule,
                    std::vector<Change>& rChanges);

    liveclient::Client                    m_client;
    const std::string                     m_place;
    std::optional<liveclient::DeviceInfo> m_device;
};

}  // namespace kirotune
