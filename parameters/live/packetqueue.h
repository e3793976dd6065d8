/// @file
/// Packets on their way from one thread of the live tuning service to another.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include "platform/tavotypes.h"

class PacketQueue
{
public:
    struct Packet
    {
        /// Copies the data. Null, a size of 0 and a size that no packet can have give an empty packet.
        Packet(const BYTE* pData, UINT32 dataSize);

        std::unique_ptr<BYTE[]> data;        ///< null if empty
        UINT32                  size   = 0;  ///< bytes
        UINT32                  client = 0;  ///< running number of the client that it comes from or goes to
    };

    VOID Push(std::unique_ptr<Packet> pPacket);

    /// Waits for a packet or for Wake.
    /// @return the packet that has waited longest; null if there was none at the time of a Wake, which is then used up
    std::unique_ptr<Packet> Pop();

    /// Ends the wait that is going on, or the next one.
    VOID Wake();

    /// Frees what is queued and forgets a Wake.
    VOID Clear();

    size_t Size() const;

private:
    mutable std::mutex                  m_mutex;  ///< guards all that follows
    std::condition_variable             m_condition;
    std::deque<std::unique_ptr<Packet>> m_packets;
    bool                                m_ready = false;  ///< packets or a Wake have come since the queue was empty
};
