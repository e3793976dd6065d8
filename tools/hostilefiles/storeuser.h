/// @file
/// What hosts and tools do with a store, whatever file it has: all modules of all modes, and a tool's questions.
#pragma once

#include <functional>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "parameters/parametersetmanager.h"
#include "schema/modules.h"
#include "tools/hostilefiles/textquestions.h"

namespace hostilefiles
{

struct UsePlan
{
    bool                    loadsModes = false;  ///< and unloads some of them; otherwise they are as the load left them
    std::optional<UINT32>   recordMax  = {};  ///< read as text, of all modules; without it, a question here and there
    std::function<UINT64()> complaints = {};  ///< of the store, so far; may be empty
};

struct UseFindings
{
    UINT64 fetched    = 0;      ///< modules that were handed out
    UINT64 withheld   = 0;      ///< modules that were there and not handed out
    bool   isDoubted  = false;  ///< the store has complained
    bool   isReticent = false;  ///< a module was withheld without a complaint
};

class StoreUser
{
public:
    /// @param rStore, rRandom must outlive this object
    StoreUser(ParameterSetManager& rStore, UsePlan plan, std::mt19937_64& rRandom)
        : m_rStore(rStore), m_plan(std::move(plan)), m_rRandom(rRandom),
          m_questions(rStore, m_plan.recordMax.value_or(0))
    {
    }

    /// All modes to which the tree leads.
    VOID UseAll();

    VOID UseBranch(BYTE table, const std::vector<TuningMode>& rBranch);

    /// Of all that was used so far.
    const UseFindings& Findings() const
    {
        return m_findings;
    }

    /// A number that comes from all that was read, so that no read is left out.
    UINT64 Sum() const
    {
        return m_sum;
    }

private:
    UINT64 Complaints() const
    {
        return m_plan.complaints ? m_plan.complaints() : 0;
    }

    VOID UseModule(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule,
                   ParameterModule& rLoaded);
    VOID AskOfEachModule(BYTE table, const std::vector<TuningMode>& rBranch);
    bool IsModuleOf(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule);

    ParameterSetManager& m_rStore;
    const UsePlan        m_plan;
    std::mt19937_64&     m_rRandom;
    TextQuestions        m_questions;
    UseFindings          m_findings;
    UINT64               m_sum = 0;
};

}  // namespace hostilefiles
