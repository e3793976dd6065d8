#include "tools/hostilefiles/textquestions.h"

#include "parameters/parameterparserinfo.h"

namespace hostilefiles
{

VOID TextQuestions::AskOne(BYTE table, const std::vector<TuningMode>& rBranch, const CHAR* pModule,
                           std::mt19937_64& rRandom)
{
    const UINT32               count = static_cast<UINT32>(rBranch.size());
    std::string                path  = pModule;
    PList<ParameterParserInfo> infos;
    if (rRandom() % 4 != 0 || !m_rStore.GetInfo(table, rBranch.data(), count, path.c_str(), infos) ||
        infos.Count() == 0)
    {
        return;
    }
    (VOID) m_rStore.GetValue(table, rBranch.data(), count, path.c_str(), nullptr, Answer(), AnswerSize);
    const ParameterParserInfo& rInfo = infos[static_cast<UINT32>(rRandom() % infos.Count())];
    path += std::string(".") + rInfo.Name;
    if (rInfo.IsArray)
    {
        path += '[' + std::to_string(rRandom() % (UINT64{rInfo.Count} + 1)) + ']';
    }
    (VOID) m_rStore.GetValue(table, rBranch.data(), count, path.c_str(), nullptr, Answer(), AnswerSize);
    (VOID) m_rStore.SetValue(table, rBranch.data(), count, pModule, rInfo.Name, "1");
}

VOID TextQuestions::AskAll(BYTE table, const std::vector<TuningMode>& rBranch, const std::string& rPath, UINT32 depth)
{
    constexpr UINT32 depthMax = 8;

    if (m_records >= m_recordMax || depth > depthMax)
    {
        return;
    }
    ++m_records;
    const UINT32               count = static_cast<UINT32>(rBranch.size());
    PList<ParameterParserInfo> infos;
    (VOID) m_rStore.GetValue(table, rBranch.data(), count, rPath.c_str(), nullptr, Answer(), AnswerSize);
    (VOID) m_rStore.GetInfo(table, rBranch.data(), count, rPath.c_str(), infos);
    for (UINT32 index = 0; index < infos.Count(); ++index)
    {
        // The last item of an array is the one that may stand beyond its block.
        const ParameterParserInfo& rInfo = infos[index];
        const std::string          last  = "[" + std::to_string((rInfo.Count > 0) ? rInfo.Count - 1 : 0) + "]";
        if (std::string(rInfo.Type) == ParameterParserInfo::TypeStructure)
        {
            AskAll(table, rBranch, rPath + "." + rInfo.Name + (rInfo.IsArray ? last : ""), depth + 1);
        }
        else if (rInfo.Count > 0)
        {
            (VOID) m_rStore.SetValue(table, rBranch.data(), count, rPath.c_str(), (rInfo.Name + last).c_str(), "1.5");
        }
    }
}

}  // namespace hostilefiles
