/// @file
/// The parameter file of cameras that run, and what may stand in its place when it is reloaded.
#pragma once

#include <string>
#include <vector>

#include "tools/tuningfile/tuning.h"

namespace kirosoak
{

class TuningVariants
{
public:
    /// @param rText a tuning's text @param rPath of the file to write
    /// @throws tuningfile::InputError
    TuningVariants(const std::string& rText, const std::string& rPath);

    const std::string& Path() const
    {
        return m_path;
    }

    const tuningfile::Tuning& Tuning() const
    {
        return m_tuning;
    }

    /// Names of all modules that some mode has.
    const std::vector<std::string>& Modules() const
    {
        return m_modules;
    }

    VOID WriteGood() const;

    /// Half a file: the store refuses it and is empty.
    VOID WriteRefused() const;

    /// A file without a module in any mode. @param module index in Modules
    VOID WriteWithout(size_t module);

private:
    const tuningfile::Tuning       m_tuning;
    const std::string              m_path;
    const std::vector<BYTE>        m_good;
    std::vector<std::string>       m_modules;
    std::vector<std::vector<BYTE>> m_without;  ///< by module; made when first asked for
};

}  // namespace kirosoak
