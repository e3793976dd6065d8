/// @file
/// The commands that work on a running camera.
#pragma once

#include <string>
#include <vector>

#include "tools/liveclient/liveclient.h"
#include "tools/tuningfile/textnode.h"

namespace kirotune
{

struct WatchOptions
{
    DOUBLE rate        = 10.0;   ///< samples per second
    UINT64 count       = 0;      ///< lines to print, 0 for no end
    bool   everySample = false;  ///< a line for each sample, not only for changes
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

    /// @param rAssignments as "name=value"
    VOID Set(const std::string& rPath, const std::string& rModule, const std::vector<std::string>& rAssignments);

    /// Prints until there were as many lines as wanted, or until SIGINT or SIGTERM, which it keeps blocked.
    VOID Watch(const std::string& rPath, const std::string& rModule, const std::string& rMembers,
               const WatchOptions& rOptions);

    VOID ShowTable();
    VOID SelectTable(UINT32 index);
    VOID Custom(const std::string& rFile);

private:
    /// Tells on stderr which camera is about to be changed: another one may have taken the port.
    VOID NameCamera();

    VOID PrintTexts(const std::vector<std::string>& rTexts) const;
    VOID PrintSet(const std::string& rModule, const std::vector<liveclient::Value>& rOld,
                  const std::vector<liveclient::Value>& rNew) const;
    VOID PrintSample(const std::string& rModule, DOUBLE seconds, const std::vector<liveclient::Value>& rValues) const;
    VOID PrintTableIndex(UINT32 index);
    VOID RequireMode(const std::string& rPath);
    std::vector<liveclient::MemberInfo> Describe(const std::string& rPath, const std::string& rModule,
                                                 std::string& rRecord);
    std::vector<liveclient::Value>      GetAll(const std::string& rPath, const std::string& rModule,
                                               const std::vector<std::string>& rMembers);

    liveclient::Client m_client;
    const std::string  m_place;  ///< host and port
    const bool         m_isJson;
};

}  // namespace kirotune
