/// @file
/// The framework's list: short, filled once, read often.
#pragma once

#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "platform/tavotypes.h"

/// A list of plain values. Not synchronised.
///
/// It never preallocates: each insertion into a full list grows it by one slot. An insertion for which there is no
/// memory is lost without a word.
template <typename T> class PList
{
    static_assert(std::is_trivially_copyable_v<T>, "items are moved as bytes");

public:
    PList()                        = default;
    PList(const PList&)            = delete;
    PList& operator=(const PList&) = delete;

    ~PList()
    {
        std::free(m_list);
    }

    VOID Add(const T& rItem)
    {
        Insert(m_count, rItem);
    }

    /// @param index position of the new item; behind the end counts as the end
    VOID Insert(UINT32 index, const T& rItem)
    {
        const T item = rItem;  // rItem may stand in this list
        if (m_count == m_bufCnt && !Grow())
        {
            return;
        }
        const UINT32 place = (index < m_count) ? index : m_count;
        std::memmove(static_cast<VOID*>(m_list + place + 1), m_list + place, (m_count - place) * sizeof(T));
        std::memcpy(static_cast<VOID*>(m_list + place), &item, sizeof(T));
        ++m_count;
    }

    /// Takes off the first equal item. @return false if there is none
    bool Remove(const T& rItem)
    {
        const INT32 index = IndexOf(rItem);
        if (index < 0)
        {
            return false;
        }
        RemoveAt(static_cast<UINT32>(index), 1);
        return true;
    }

    /// Takes off up to count items from index on.
    VOID RemoveAt(UINT32 index, UINT32 count)
    {
        if (index >= m_count || count == 0)
        {
            return;
        }
        const UINT32 removed = (count < m_count - index) ? count : m_count - index;
        std::memmove(static_cast<VOID*>(m_list + index), m_list + index + removed,
                     (m_count - index - removed) * sizeof(T));
        m_count -= removed;
    }

    /// @return index of the first equal item, -1 if there is none
    INT32 IndexOf(const T& rItem) const
    {
        for (UINT32 index = 0; index < m_count; ++index)
        {
            if (m_list[index] == rItem)
            {
                return static_cast<INT32>(index);
            }
        }
        return -1;
    }

    bool Contains(const T& rItem) const
    {
        return IndexOf(rItem) >= 0;
    }

    /// Empties the list and keeps its memory, which goes at destruction.
    VOID Clear()
    {
        m_count = 0;
    }

    /// An index out of range gives a spare value, one for all lists of T: reads see a zero value unless somebody wrote
    /// there. So a loop with the count of another list reads zeros, where it would otherwise read foreign memory.
    T& operator[](UINT32 index)
    {
        return (index < m_count) ? m_list[index] : Spare();
    }

    const T& operator[](UINT32 index) const
    {
        return (index < m_count) ? m_list[index] : Spare();
    }

    UINT32 Count() const
    {
        return m_count;
    }

    /// @return the items, Count() of them, valid until the next insertion; null for a list that was never filled
    T* ToArray()
    {
        return m_list;
    }

    const T* ToArray() const
    {
        return m_list;
    }

private:
    static T& Spare()
    {
        static T spare{};
        return spare;
    }

    bool Grow()
    {
        VOID* pGrown = std::realloc(static_cast<VOID*>(m_list), (static_cast<size_t>(m_bufCnt) + 1) * sizeof(T));
        if (pGrown == nullptr)
        {
            return false;
        }
        m_list = static_cast<T*>(pGrown);
        ++m_bufCnt;
        return true;
    }

    T*     m_list   = nullptr;
    UINT32 m_count  = 0;
    UINT32 m_bufCnt = 0;
};
