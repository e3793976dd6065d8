/// @file
/// A ring of a fixed number of plain records.
#pragma once

#include "core/base/tavomemory.h"

namespace Tavo
{

/// Position 0 is the front. The container is allocated once, zero-filled; a slot that was popped keeps its bytes.
template <typename T, UINT32 Capacity> class StatsDeque
{
public:
    StatsDeque() : m_pContainer(TavoNewArray<T>(Capacity)), m_nFront(0), m_nSize(0)
    {
        if (m_pContainer == nullptr)
        {
            throw std::bad_alloc();
        }
    }

    StatsDeque(const StatsDeque&)            = delete;
    StatsDeque& operator=(const StatsDeque&) = delete;

    /// The slot at a position, taken modulo the capacity: any position is valid to read.
    T& operator[](UINT32 position)
    {
        return m_pContainer[SlotOf(position)];
    }

    const T& operator[](UINT32 position) const
    {
        return m_pContainer[SlotOf(position)];
    }

    T& front()
    {
        return m_pContainer[m_nFront];
    }

    const T& front() const
    {
        return m_pContainer[m_nFront];
    }

    /// Does nothing on a full ring.
    VOID push_back(const T& rItem)
    {
        if (m_nSize < m_nMax)
        {
            (*this)[m_nSize] = rItem;
            ++m_nSize;
        }
    }

    /// Does nothing on a full ring.
    VOID push_front(const T& rItem)
    {
        if (m_nSize < m_nMax)
        {
            m_nFront               = (m_nFront == 0) ? m_nMax - 1 : m_nFront - 1;
            m_pContainer[m_nFront] = rItem;
            ++m_nSize;
        }
    }

    VOID pop_front()
    {
        if (m_nSize > 0)
        {
            m_nFront = (m_nFront + 1) % m_nMax;
            --m_nSize;
        }
    }

    VOID pop_back()
    {
        if (m_nSize > 0)
        {
            --m_nSize;
        }
    }

    /// Empties the ring; front and size return to 0.
    VOID clear()
    {
        m_nFront = 0;
        m_nSize  = 0;
    }

    UINT32 size() const
    {
        return m_nSize;
    }

    bool empty() const
    {
        return m_nSize == 0;
    }

    bool full() const
    {
        return m_nSize == m_nMax;
    }

    static constexpr UINT32 capacity()
    {
        return Capacity;
    }

private:
    /// Few positions lie beyond the end of the container: the others are found without a modulo.
    UINT64 SlotOf(UINT32 position) const
    {
        const UINT64 slot = static_cast<UINT64>(m_nFront) + position;
        return (slot < m_nMax) ? slot : slot % m_nMax;
    }

    static constexpr UINT32 m_nMax = Capacity;

    TavoArray<T> m_pContainer;
    UINT32       m_nFront;
    UINT32       m_nSize;
};

}  // namespace Tavo
