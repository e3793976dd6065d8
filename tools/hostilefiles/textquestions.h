/// @file
/// A tuning tool's view of modules: their values as text.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "parameters/parametersetmanager.h"

namespace hostilefiles
{

class TextQuestions
{
public:
    /// @param recordMax records that AskAll reads in the life of this object
    TextQuestions(ParameterSetManager& rStore, UINT32 recordMax) : m_rStore(rStore), m_recordMax(recordMax)
    {
    }

    /// Of one module in four: its values, and a step into one of its members.
    VOID AskOne(BYTE table, const std::vector<TuningMode>& rBranch, const CHAR* pModule, std::mt19937_64& rRandom);

    /// All members of a record, those of the records in it too, as long as there are not too many.
    /// @param rPath of the record, beginning with its module
    VOID AskAll(BYTE table, const std::vector<TuningMode>& rBranch, const std::string& rPath, UINT32 depth = 0);

    /// Room for answers.
    CHAR* Answer()
    {
        return m_answer.data();
    }

    static constexpr UINT32 AnswerSize = 16384;  ///< bytes of a text

private:
    ParameterSetManager& m_rStore;
    const UINT32         m_recordMax;
    UINT32               m_records = 0;
    std::vector<CHAR>    m_answer  = std::vector<CHAR>(AnswerSize);
};

}  // namespace hostilefiles
