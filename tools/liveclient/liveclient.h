/// @file
/// A client of the live tuning service: reads and changes the parameters of a running camera.
///
///     liveclient::Client client({.host = "192.168.1.20"});
///     client.Set("Default|Sensor.0|Usecase.Video", "kiroconvergence", {{"unitStepSize", "0.5"}});
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "parameters/live/vernierprotocol.h"
#include "tools/liveclient/error.h"

namespace liveclient
{

class Connection;
struct Answer;

struct Options
{
    std::string               host = "127.0.0.1";  ///< name or address
    UINT16                    port = vernier::DefaultPort;
    std::chrono::milliseconds timeout{2000};  ///< for the connection, and for each answer
};

struct DeviceInfo
{
    std::string              name;
    std::vector<std::string> tables;  ///< names of the mode tables, if there are two or more
    BYTE                     major = 0;
    BYTE                     minor = 0;
    UINT64                   id    = 0;  ///< the service's token
};

/// A number that the camera publishes as it runs.
struct ControlValue
{
    UINT32 id;
    DOUBLE value;
};

struct MemberInfo
{
    std::string           name;
    std::string           value;  ///< empty for records and arrays
    std::string           type;   ///< one of the type texts of ParameterParserInfo
    std::optional<UINT32> count;  ///< of an array
};

/// A member path within a module, and what it holds: a number, numbers joined by ",", or a text.
struct Value
{
    bool operator==(const Value&) const = default;

    std::string name;
    std::string text;
};

struct CustomResult
{
    UINT16            result;
    std::vector<BYTE> bytes;
};

/// @throws Error unless the text of the value is a number that can be set
VOID RequireNumber(const Value& rValue);

/// One connection. The service serves one client at a time, so keep it no longer than needed. To be used by one thread
/// at a time.
///
/// All operations throw Error when the arguments cannot be sent, and when no proper answer comes in time; the
/// connection is closed after the latter. The service says no by an answer that holds nothing: that is no error here.
///
/// Mode paths may be named, "Default|Usecase.Video", or numeric, "0|2.2"; a path that is neither is an Error. A path
/// that the tuning does not have leads to its deepest mode that exists, as for a frame. Module texts may lead on to a
/// record within the module: "kiroconvergence.smoothADRC".
class Client
{
public:
    explicit Client(const Options& rOptions);
    ~Client();

    Client(const Client&)            = delete;
    Client& operator=(const Client&) = delete;

    DeviceInfo Device();

    /// Named paths of the modes in use, the most recently used first.
    std::vector<std::string> ActiveModes();

    std::vector<ControlValue> ControlValues();

    /// @return names of the modes right below a path; those below the root if the tuning does not have the path
    std::vector<std::string> ChildModes(const std::string& rPath);

    /// @param rModule a module, or a record or member within it
    std::vector<MemberInfo> Info(const std::string& rPath, const std::string& rModule);

    /// @param rMembers member paths; none for all members at that level that hold values
    /// @return those that could be read
    std::vector<Value> Get(const std::string& rPath, const std::string& rModule,
                           const std::vector<std::string>& rMembers);

    /// Changes numbers, one after the other.
    /// @param rValues texts as IsNumber accepts them
    /// @return those that were set, as they read afterwards
    std::vector<Value> Set(const std::string& rPath, const std::string& rModule, const std::vector<Value>& rValues);

    /// @return the mode table that mode paths refer to
    UINT32 TableIndex();

    /// Lets mode paths refer to another table, for later clients too. @return the table in use, the one of before if
    /// there is no such table
    UINT32 SelectTable(UINT32 index);

    /// Bytes for whatever the host has installed to handle them; without it the result is 0.
    CustomResult Custom(std::span<const BYTE> bytes);

private:
    using Clock = std::chrono::steady_clock;

    Answer Exchange(vernier::Command command, std::span<const BYTE> payload);
    Answer Exchange(vernier::Command command, const std::string& rText);
    VOID   Synchronize();
    bool   Await(vernier::Command command, UINT32 oldestID, Clock::time_point deadline, Clock::time_point end,
                 Answer& rAnswer);
    UINT32 AskTableIndex(const std::string& rText);

    const std::chrono::milliseconds m_timeout;
    std::unique_ptr<Connection>     m_pConnection;
    UINT64                          m_vernierID = 0;  ///< 0 as long as it is not known
    UINT32                          m_requestID;      ///< of the latest request
};

}  // namespace liveclient
