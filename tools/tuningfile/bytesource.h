/// @file
/// The bytes of a file or of standard input, read as far as somebody wants, and from there on later.
#pragma once

#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

class ByteSource
{
public:
    /// @throws InputError if the file cannot be opened, or is no file
    explicit ByteSource(const std::string& rPath);
    ~ByteSource();
    ByteSource(const ByteSource&)            = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// What comes there comes once; whoever asks again gets the same.
    static ByteSource& StandardInput();

    /// @return all that was read so far, at least so many bytes unless there are fewer @throws InputError
    std::vector<BYTE>& Read(size_t count);

    /// @return all bytes @throws InputError also for more than that
    std::vector<BYTE>& ReadAll(size_t maxSize);

private:
    ByteSource(int descriptor, std::string name);

    const int         m_descriptor;
    const std::string m_name;
    bool              m_isAtEnd;
    std::vector<BYTE> m_bytes;
};

}  // namespace tuningfile
