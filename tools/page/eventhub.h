/// @file
/// What happens to the camera, on its way to all browsers that listen.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace page
{

/// The events for one browser, up to the time at which it takes them. A browser that is slow loses the oldest samples;
/// one that leaves other events lying is closed, since it would show a camera that is not there: it connects anew and
/// reads the state.
class EventStream
{
public:
    static constexpr size_t MaxSamples = 128;
    static constexpr size_t MaxEvents  = 512;

    explicit EventStream(std::string client) : m_client(std::move(client))
    {
    }

    /// By which the browser names itself.
    const std::string& Client() const
    {
        return m_client;
    }

    /// @param rJson a sample of the control values
    VOID AddSample(const std::string& rJson);

    /// @param rJson in one line
    VOID AddEvent(const std::string& rName, const std::string& rJson);

    VOID Close();

    /// Waits for events.
    /// @param rText what to send, as the format of server-sent events has it; empty if nothing came for so long
    /// @return false once the stream is closed
    bool Take(std::chrono::milliseconds timeout, std::string& rText);

    bool IsClosed() const;

private:
    const std::string       m_client;
    mutable std::mutex      m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_samples;
    std::deque<std::string> m_events;  ///< as they are sent
    bool                    m_isClosed = false;
};

/// All browsers. May be used by any thread; never waits for a browser.
class EventHub
{
public:
    static constexpr size_t MaxStreams = 32;

    /// @return null if there are too many, or if the hub is closed
    std::shared_ptr<EventStream> Open(const std::string& rClient);

    VOID PublishSample(const std::string& rJson);
    VOID Publish(const std::string& rName, const std::string& rJson);

    /// An event that tells a browser whether it has caused it.
    VOID PublishBy(const std::string& rClient, const std::string& rName, const std::string& rJsonForIt,
                   const std::string& rJsonForOthers);

    bool IsListenedTo();

    /// Ends all streams, and opens none any more.
    VOID Close();

private:
    std::vector<std::shared_ptr<EventStream>> Streams();
    std::vector<std::shared_ptr<EventStream>> LockedStreams();

    std::mutex                              m_mutex;
    std::vector<std::weak_ptr<EventStream>> m_streams;
    bool                                    m_isClosed = false;
};

}  // namespace page
