/// @file
/// A parameter file in one of the two forms in which a store takes it.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "parameters/parametersetmanager.h"
#include "tools/program/privatefile.h"

namespace hostilefiles
{

class LoadableFile
{
public:
    /// @param bytes must outlive this object. @throws std::system_error if there is no descriptor for a file
    LoadableFile(std::span<const BYTE> bytes, bool isFileMode);

    bool IsFileMode() const
    {
        return m_file.has_value();
    }

    /// Empty for a buffer.
    const CHAR* Path() const
    {
        return m_path.c_str();
    }

    /// @return false if the store refuses it
    bool LoadInto(ParameterSetManager& rStore) const;

    /// The file becomes shorter, whoever has it open. A buffer stays as it is.
    VOID Cut(size_t size) const;

private:
    const std::span<const BYTE>         m_bytes;
    std::optional<program::PrivateFile> m_file;
    std::string                         m_path;
};

}  // namespace hostilefiles
