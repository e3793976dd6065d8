#include "parameters/definitionreader.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"
#include "schema/namehash.h"

namespace
{

/// Walks the records of a definition section. Every step answers false once the section ends early.
class DefinitionReader
{
public:
    DefinitionReader(const BYTE* pSection, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog,
                     ParameterDefinitions::ModuleMap& rModules, ParameterDefinitions::StructureMap& rStructures)
        : m_pSection(pSection), m_size(size), m_alignment(alignment), m_pLog(pLog), m_rModules(rModules),
          m_rStructures(rStructures)
    {
    }

    bool ReadAll()
    {
        while (m_position < m_size)
        {
            if (!ReadRecord())
            {
                return false;
            }
        }
        return true;
    }

private:
    bool ReadRecord()
    {
        BYTE kind = 0;
        if (!Read(kind))
        {
            return false;
        }
        switch (kind)
        {
        case ParameterDefinitionType_ScenarioMode:
            return SkipBytes(1) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_ScenarioSubMode:
            return SkipBytes(3) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_Pipeline:
            return SkipBytes(2) && SkipText() && SkipText();
        case ParameterDefinitionType_Module:
            return ReadModule();
        case ParameterDefinitionType_Structure:
            return ReadStructure();
        case ParameterDefinitionType_EnumDefinition:
            return SkipEnumeration();
        default:
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Unexpected type found in definition table (%u)\n", kind);
            return false;
        }
    }

    bool ReadModule()
    {
        auto             pModule = std::make_unique<ParameterDefinitionModule>();
        std::string_view name;
        if (!Read(pModule->StructureID) || !Read(pModule->NameHash) || !ReadText(name) || !SkipText())
        {
            return false;
        }
        pModule->Name    = TextOf(name);
        const auto entry = m_rModules.try_emplace(pModule->NameHash, nullptr);
        if (entry.second)
        {
            entry.first->second = std::move(pModule);
        }
        else
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure Hash (%llu) found in definition table: %s / %s\n",
                                    pModule->NameHash, entry.first->second->Name.c_str(), pModule->Name.c_str());
        }
        return true;
    }

    bool ReadStructure()
    {
        auto             pStructure = std::make_unique<ParameterDefinitionStructure>();
        std::string_view name;
        UINT32           childCount = 0;
        if (!Read(pStructure->StructureID) || !ReadText(name) || !Read(pStructure->StructureHash) || !Read(childCount))
        {
            return false;
        }
        pStructure->TypeName = TextOf(name);
        pStructure->Members.Reserve(static_cast<UINT32>(std::min<UINT64>(childCount, BytesLeft() / MinElementBytes)));
        bool complete = true;
        for (UINT32 child = 0; child < childCount && complete; ++child)
        {
            complete = ReadElement(*pStructure);
        }
        const auto entry = m_rStructures.try_emplace(pStructure->StructureID, nullptr);
        if (entry.second)
        {
            entry.first->second = std::move(pStructure);
        }
        else
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure ID (%u) found in definition table: %s / %s\n",
                                    pStructure->StructureID, entry.first->second->TypeName.c_str(),
                                    pStructure->TypeName.c_str());
        }
        return complete;
    }

    bool ReadElement(ParameterDefinitionStructure& rStructure)
    {
        ParameterDefinitionElement      element;
        ParameterDefinitionElementInfo& rInfo = element.Info.emplace();
        BYTE                            type  = 0;
        std::string_view                name;
        UINT32                          minimum = 0;
        if (!Read(type) || !Read(rInfo.ID) || !ReadText(name) || !Read(rInfo.Flags) || !Read(minimum) ||
            !Read(rInfo.MaxCount) || !SkipText())
        {
            return false;
        }
        rInfo.Type = static_cast<ParameterDefinitionType>(type);
        rInfo.Flags |= ParameterDefinitionElementInfo::FlagsFromCounts(minimum, rInfo.MaxCount);

        // The stored length counts the terminator, the hash does not.
        const UINT32 nameLength = static_cast<UINT32>(name.size());
        element.NameHash        = namehash::Checksum(name.data(), (nameLength > 0) ? nameLength - 1 : 0, true, 0);
        const ParameterDefinitionElement& rAppended = rStructure.Members.Append(std::move(element));
        if (rAppended.IsRepeated)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Duplicated hash found in Children (%llu) object %s\n", rAppended.NameHash,
                                    TextOf(name).c_str());
        }
        return true;
    }

    /// Enumerations are not kept: members of enumerated type hold the stored integers.
    bool SkipEnumeration()
    {
        UINT32 valueCount = 0;
        if (!SkipBytes(4) || !SkipText() || !SkipBytes(8) || !Read(valueCount))
        {
            return false;
        }
        for (UINT32 value = 0; value < valueCount; ++value)
        {
            if (!SkipBytes(5) || !SkipText() || !SkipText())
            {
                return false;
            }
        }
        return true;
    }

    UINT64 BytesLeft() const
    {
        return (m_position < m_size) ? m_size - m_position : 0;
    }

    template <typename T> bool Read(T& rValue)
    {
        return ParameterUtils::ReadField(rValue, m_pSection, m_size, m_position, m_alignment, m_pLog);
    }

    /// Raw bytes have no slot.
    bool SkipBytes(UINT32 count)
    {
        if (!ParameterUtils::HasBytes(m_size, m_position, count, m_pLog))
        {
            return false;
        }
        m_position += count;
        return true;
    }

    /// A skipped text is not padded.
    bool SkipText()
    {
        UINT32 length = 0;
        return Read(length) && SkipBytes(length);
    }

    /// @param rText all stored bytes, the terminator included
    bool ReadText(std::string_view& rText)
    {
        UINT32 length = 0;
        if (!Read(length))
        {
            return false;
        }
        const UINT64 start = m_position;
        if (!SkipBytes(length))
        {
            return false;
        }
        rText      = {reinterpret_cast<const CHAR*>(m_pSection + start), length};
        m_position = start + ParameterUtils::Padded(length, m_alignment);
        return true;
    }

    static std::string TextOf(std::string_view stored)
    {
        return std::string(stored.substr(0, stored.find('\0')));
    }

    /// Of a member without a name: what a count of members may claim.
    static constexpr UINT64 MinElementBytes = 23;

    const BYTE* const                   m_pSection;
    const UINT64                        m_size;
    const UINT32                        m_alignment;
    const IParameterLoggingAPI* const   m_pLog;
    ParameterDefinitions::ModuleMap&    m_rModules;
    ParameterDefinitions::StructureMap& m_rStructures;
    UINT64                              m_position = 0;
};

}  // namespace

bool ReadDefinitionSection(const BYTE* pSection, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog,
                           ParameterDefinitions::ModuleMap& rModules, ParameterDefinitions::StructureMap& rStructures)
{
    return DefinitionReader(pSection, size, alignment, pLog, rModules, rStructures).ReadAll();
}
