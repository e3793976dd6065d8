/// @file
/// The commands that work on a running camera.
#pragma once

#include <string>
#include <vector>

#include "tools/kirotune/livecamera.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/liveclient.h"

namespace kirotune
{

struct WatchOptions
{
    DOUBLE rate        = 10.0;   ///< samples per second
    UINT64 count       = 0;      ///< lines to print, 0 for no end
    bool   everySample = false;  ///< a line for each sample, not only for changes

    std::vector<std::string> controls = {};  ///< names of numbers that the camera publishes, to print beside members
};

/// A connection to a camera for one command, which prints its answer to stdout. All commands throw liveclient::Error,
/// also when the camera says no.
class LiveSession
{
public:
    /// @param isJson JSON instead of tables
    LiveSession(const liveclient::Options& rOptions, bool isJson);

    VOID Device();
    VOID Modes(const std::string& rPath);
    VOID ActiveModes();

    /// Of those that this program knows. The service does not tell whether a mode has a module of its own or from
    /// above.
    VOID Modules(const std::string& rPath);

    VOID Controls();
    VOID Info(const std::string& rPath, const std::string& rModule);
    VOID Get(const std::string& rPath, const std::string& rModule, const std::string& rMembers);

    /// Keeps in the journal what it sets. @param rAssignments as "name=value"
    VOID Set(const std::string& rPath, const std::string& rModule, const std::vector<std::string>& rAssignments,
             bool isForced);

    /// Takes back what the last commands since the start of the camera have set.
    VOID Undo(UINT32 count);

    /// Shows the numbers that are not those of a file. The service does not tell from which file it was loaded.
    /// @param rFile text or parameter file @param rPath the mode, with all below it, that is compared
    VOID Diff(const std::string& rFile, const std::string& rPath);

    /// Writes a patch that makes of the camera's tuning what the camera holds.
    /// @param rTuning where to find the edits: what differs from this file, or the journal if it is empty
    VOID Save(const std::string& rPatch, const std::string& rTuning);

    /// Prints until there were as many lines as wanted, or until SIGINT or SIGTERM, which it keeps blocked.
    /// @param rMembers joined by ','; empty if it is about controls alone
    VOID Watch(const std::string& rPath, const std::string& rModule, const std::string& rMembers,
               const WatchOptions& rOptions);

    VOID ShowTable();
    VOID SelectTable(UINT32 index);
    VOID Custom(const std::string& rFile);

private:
    /// What is watched, at one time.
    struct Sample
    {
        bool operator==(const Sample&) const = default;

        std::vector<liveclient::Value> members;
        std::vector<liveclient::Value> controls;
    };

    /// Tells on stderr which camera is about to be changed: another one may have taken the port.
    VOID NameCamera();

    static VOID PrintRemark(const std::string& rRemark);

    VOID PrintTexts(const std::vector<std::string>& rTexts) const;
    VOID PrintTableIndex(UINT32 index);

    // livesession_values.cpp
    std::vector<liveclient::MemberInfo> Describe(const std::string& rPath, const std::string& rModule,
                                                 std::string& rRecord);

    // livesession_edits.cpp
    VOID PrintSet(const std::vector<Change>& rChanges) const;

    // livesession_save.cpp
    std::vector<PatchedNumber> NumbersToSave(const std::string& rTuning);

    // livesession_watch.cpp
    std::vector<liveclient::Value> ReadControls(const std::vector<std::string>& rNames);
    VOID                           PrintSample(const std::string& rModule, DOUBLE seconds, const Sample& rSample) const;

    LiveCamera          m_camera;
    liveclient::Client& m_client;  ///< of the camera
    const bool          m_isJson;
};

}  // namespace kirotune
