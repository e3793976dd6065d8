#include "tools/page/eventhub.h"

#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace page
{

VOID EventStream::AddSample(const std::string& rJson)
{
    const std::lock_guard lock(m_mutex);
    m_samples.push_back(rJson);
    if (m_samples.size() > MaxSamples)
    {
        m_samples.pop_front();
    }
    m_changed.notify_one();
}

VOID EventStream::AddEvent(const std::string& rName, const std::string& rJson)
{
    const std::lock_guard lock(m_mutex);
    m_events.push_back(fmt::format("event: {}\ndata: {}\n\n", rName, rJson));
    m_isClosed = m_isClosed || m_events.size() > MaxEvents;
    m_changed.notify_one();
}

VOID EventStream::Close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_changed.notify_one();
}

bool EventStream::Take(std::chrono::milliseconds timeout, std::string& rText)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, timeout, [this] { return m_isClosed || !m_samples.empty() || !m_events.empty(); });
    rText = fmt::format("{}", fmt::join(m_events, ""));
    if (!m_samples.empty())
    {
        rText += fmt::format("event: values\ndata: [{}]\n\n", fmt::join(m_samples, ","));
    }
    m_events.clear();
    m_samples.clear();
    return !m_isClosed;
}

bool EventStream::IsClosed() const
{
    const std::lock_guard lock(m_mutex);
    return m_isClosed;
}

std::vector<std::shared_ptr<EventStream>> EventHub::Streams()
{
    const std::lock_guard lock(m_mutex);
    return LockedStreams();
}

/// Those whose browsers still listen. The caller holds the lock.
std::vector<std::shared_ptr<EventStream>> EventHub::LockedStreams()
{
    std::vector<std::shared_ptr<EventStream>> streams;
    std::erase_if(m_streams,
                  [&streams](const std::weak_ptr<EventStream>& rWeak)
                  {
                      auto pStream = rWeak.lock();
                      if (pStream == nullptr || pStream->IsClosed())
                      {
                          return true;
                      }
                      streams.push_back(std::move(pStream));
                      return false;
                  });
    return streams;
}

std::shared_ptr<EventStream> EventHub::Open(const std::string& rClient)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed || LockedStreams().size() >= MaxStreams)
    {
        return nullptr;
    }
    auto pStream = std::make_shared<EventStream>(rClient);
    m_streams.push_back(pStream);
    return pStream;
}

VOID EventHub::PublishSample(const std::string& rJson)
{
    for (const auto& rpStream : Streams())
    {
        rpStream->AddSample(rJson);
    }
}

VOID EventHub::Publish(const std::string& rName, const std::string& rJson)
{
    for (const auto& rpStream : Streams())
    {
        rpStream->AddEvent(rName, rJson);
    }
}

VOID EventHub::PublishBy(const std::string& rClient, const std::string& rName, const std::string& rJsonForIt,
                         const std::string& rJsonForOthers)
{
    for (const auto& rpStream : Streams())
    {
        const bool isItsOwn = !rClient.empty() && rpStream->Client() == rClient;
        rpStream->AddEvent(rName, isItsOwn ? rJsonForIt : rJsonForOthers);
    }
}

bool EventHub::IsListenedTo()
{
    return !Streams().empty();
}

VOID EventHub::Close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }
    for (const auto& rpStream : Streams())
    {
        rpStream->Close();
    }
}

}  // namespace page
