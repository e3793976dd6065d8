/// @file
/// A text that is put together in a caller's buffer.
#pragma once

#include <cstring>
#include <string_view>

#include "platform/tavotypes.h"

/// Appends as long as there is room, and cuts what goes beyond. The text is terminated at any time.
class BoundedText
{
public:
    /// Empties the buffer. @param size of pText, at least 1
    BoundedText(CHAR* pText, UINT32 size) : m_pText(pText), m_size(size)
    {
        m_pText[0] = '\0';
    }

    VOID Append(std::string_view text)
    {
        const size_t room   = m_size - 1 - m_length;
        const size_t length = (text.size() < room) ? text.size() : room;
        std::memcpy(m_pText + m_length, text.data(), length);
        m_length += static_cast<UINT32>(length);
        m_pText[m_length] = '\0';
    }

    /// Appends the separator unless the text is empty so far.
    VOID Separate(std::string_view separator)
    {
        if (m_length > 0)
        {
            Append(separator);
        }
    }

    UINT32 Length() const
    {
        return m_length;
    }

    bool IsFull() const
    {
        return m_length + 1 == m_size;
    }

private:
    CHAR* const  m_pText;
    const UINT32 m_size;
    UINT32       m_length = 0;
};
