#include "parameters/live/packetqueue.h"

#include <algorithm>
#include <utility>

#include "parameters/live/vernierprotocol.h"

PacketQueue::Packet::Packet(const BYTE* pData, UINT32 dataSize)
{
    if (pData != nullptr && dataSize > 0 && dataSize < vernier::PacketLimit)
    {
        data.reset(new BYTE[dataSize]);
        size = dataSize;
        std::copy_n(pData, dataSize, data.get());
    }
}

VOID PacketQueue::Push(std::unique_ptr<Packet> pPacket)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_packets.push_back(std::move(pPacket));
        m_ready = true;
    }
    m_condition.notify_one();
}

std::unique_ptr<PacketQueue::Packet> PacketQueue::Pop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_condition.wait(lock, [this] { return m_ready; });

    std::unique_ptr<Packet> pPacket;
    if (!m_packets.empty())
    {
        pPacket = std::move(m_packets.front());
        m_packets.pop_front();
    }
    m_ready = !m_packets.empty();
    return pPacket;
}

VOID PacketQueue::Wake()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_ready = true;
    }
    m_condition.notify_one();
}

VOID PacketQueue::Clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_packets.clear();
    m_ready = false;
}

size_t PacketQueue::Size() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_packets.size();
}
