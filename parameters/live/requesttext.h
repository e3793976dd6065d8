/// @file
/// The payload of a request as text.
#pragma once

#include <cstring>
#include <string>

#include "parameters/parameterutils.h"

/// The texts of a request, cut off one after the other.
class RequestText
{
public:
    /// Mode path, module or one item, with terminator.
    using Field = CHAR[512];

    /// @param offset of the payload; a payload without NUL ends with the packet
    RequestText(const BYTE* pRequest, UINT32 size, UINT32 offset)
    {
        if (size > offset)
        {
            const CHAR* pText = reinterpret_cast<const CHAR*>(pRequest + offset);
            m_text.assign(pText, strnlen(pText, size - offset));
        }
        m_pRest = m_text.c_str();
    }

    /// Takes what stands before the next delimiter, as far as a field holds it; an overlong text leaves its end for the
    /// next field, where nothing fits it.
    VOID Take(CHAR delimiter, Field& rField)
    {
        m_pRest += ParameterUtils::GetSubString(m_pRest, delimiter, rField, sizeof(rField));
        m_pRest += (*m_pRest == delimiter && !IsAtEnd()) ? 1 : 0;
    }

    /// What was not taken yet.
    const CHAR* Rest() const
    {
        return m_pRest;
    }

    bool IsAtEnd() const
    {
        return *m_pRest == '\0';
    }

private:
    std::string m_text;
    const CHAR* m_pRest;
};
