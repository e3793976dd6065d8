#include "tools/kirosoak/tuningvariants.h"

#include <algorithm>
#include <set>
#include <span>

#include "tools/tuningfile/files.h"

namespace kirosoak
{

TuningVariants::TuningVariants(const std::string& rText, const std::string& rPath)
    : m_tuning(tuningfile::ReadTextFile(rText)), m_path(rPath),
      m_good(tuningfile::WriteBinary(m_tuning, tuningfile::NewestVersion))
{
    std::set<std::string> names;
    for (const tuningfile::ModeTable& rTable : m_tuning.tables)
    {
        for (const tuningfile::Mode& rMode : rTable.modes)
        {
            for (const tuningfile::Module& rModule : rMode.modules)
            {
                names.insert(rModule.pDescription->pName);
            }
        }
    }
    m_modules.assign(names.begin(), names.end());
    m_without.resize(m_modules.size());
    WriteGood();
}

VOID TuningVariants::WriteGood() const
{
    tuningfile::ReplaceFile(m_path, m_good);
}

VOID TuningVariants::WriteRefused() const
{
    tuningfile::ReplaceFile(m_path, std::span(m_good).first(m_good.size() / 2));
}

VOID TuningVariants::WriteWithout(size_t module)
{
    std::vector<BYTE>& rBytes = m_without[module];
    if (rBytes.empty())
    {
        tuningfile::Tuning lacking = m_tuning;
        for (tuningfile::ModeTable& rTable : lacking.tables)
        {
            for (tuningfile::Mode& rMode : rTable.modes)
            {
                std::erase_if(rMode.modules, [&](const tuningfile::Module& rModule)
                              { return m_modules[module] == rModule.pDescription->pName; });
            }
        }
        rBytes = tuningfile::WriteBinary(lacking, tuningfile::NewestVersion);
    }
    tuningfile::ReplaceFile(m_path, rBytes);
}

}  // namespace kirosoak
