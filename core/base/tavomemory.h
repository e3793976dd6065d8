/// @file
/// Owning pointers over the framework's allocator. Everything in the core lives in TavoCalloc memory.
#pragma once

#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/tavocommonutils.h"

namespace tavomemory
{

constexpr UINT Alignment  = 8;
constexpr INT  ObjectTag  = 9;
constexpr INT  TuningTag  = 13;
constexpr INT  WorkTag    = 1;
constexpr INT  ReleaseTag = 16;

struct ObjectDeleter
{
    template <typename T> VOID operator()(T* pObject) const
    {
        pObject->~T();
        TavoFree(pObject, ReleaseTag, nullptr, 0);
    }
};

struct ArrayDeleter
{
    VOID operator()(VOID* pArray) const
    {
        TavoFree(pArray, ReleaseTag, nullptr, 0);
    }
};

}  // namespace tavomemory

/// Owner of one object. A base class that is owned this way has a virtual destructor and stands first in the object.
template <typename T> using TavoPtr = std::unique_ptr<T, tavomemory::ObjectDeleter>;

/// Owner of an array of plain values.
template <typename T> using TavoArray = std::unique_ptr<T[], tavomemory::ArrayDeleter>;

/// Constructs a T in zero-filled memory.
/// @return null when no memory is left; an exception of the constructor frees the memory and passes on
template <typename T, typename... Arguments> TavoPtr<T> TavoNew(Arguments&&... arguments)
{
    constexpr UINT alignment = (alignof(T) > tavomemory::Alignment) ? alignof(T) : tavomemory::Alignment;
    VOID*          pMemory   = TavoCalloc(sizeof(T), alignment, tavomemory::ObjectTag, 0, nullptr, 0);
    if (pMemory == nullptr)
    {
        return nullptr;
    }
    try
    {
        return TavoPtr<T>(new (pMemory) T(std::forward<Arguments>(arguments)...));
    }
    catch (...)
    {
        TavoFree(pMemory, tavomemory::ReleaseTag, nullptr, 0);
        throw;
    }
}

/// @param count values, zero-filled
/// @return null when no memory is left
template <typename T> TavoArray<T> TavoNewArray(size_t count, INT tag = tavomemory::WorkTag)
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    constexpr UINT alignment = (alignof(T) > tavomemory::Alignment) ? alignof(T) : tavomemory::Alignment;
    if (count > SIZE_MAX / sizeof(T))
    {
        return nullptr;
    }
    return TavoArray<T>(static_cast<T*>(TavoCalloc(count * sizeof(T), alignment, tag, 0, nullptr, 0)));
}

/// Owner of an array of objects in one block of memory. Elements are destroyed last first.
template <typename T> class TavoObjects
{
public:
    TavoObjects()                              = default;
    TavoObjects(const TavoObjects&)            = delete;
    TavoObjects& operator=(const TavoObjects&) = delete;

    ~TavoObjects()
    {
        clear();
    }

    /// Replaces the elements by count default-constructed ones; none when no memory is left.
    VOID reset(UINT32 count)
    {
        clear();
        constexpr UINT alignment = (alignof(T) > tavomemory::Alignment) ? alignof(T) : tavomemory::Alignment;
        m_pElements              = (count == 0) ? nullptr
                                                : static_cast<T*>(TavoCalloc(sizeof(T) * static_cast<size_t>(count), alignment,
                                                                             tavomemory::ObjectTag, 0, nullptr, 0));
        for (; m_pElements != nullptr && m_count < count; ++m_count)
        {
            new (m_pElements + m_count) T();
        }
    }

    VOID clear()
    {
        while (m_count > 0)
        {
            --m_count;
            m_pElements[m_count].~T();
        }
        if (m_pElements != nullptr)
        {
            TavoFree(m_pElements, tavomemory::ReleaseTag, nullptr, 0);
        }
        m_pElements = nullptr;
    }

    UINT32 size() const
    {
        return m_count;
    }

    T& operator[](UINT32 index)
    {
        return m_pElements[index];
    }

    const T& operator[](UINT32 index) const
    {
        return m_pElements[index];
    }

    T* begin()
    {
        return m_pElements;
    }

    T* end()
    {
        return m_pElements + m_count;
    }

private:
    T*     m_pElements = nullptr;
    UINT32 m_count     = 0;
};
