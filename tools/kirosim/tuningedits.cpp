#include "tools/kirosim/tuningedits.h"

#include <fmt/format.h>

#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/modepath.h"

namespace kirosim
{

namespace
{

constexpr const CHAR* EditForm = "MODE/MODULE/MEMBER=VALUE";

struct TuningEdit
{
    std::string mode;
    std::string module;
    std::string member;
    std::string value;
};

[[noreturn]] VOID FailEdit(const std::string& rText, const std::string& rReason)
{
    throw tuningfile::InputError(fmt::format("--set {}: {}", rText, rReason));
}

TuningEdit EditIn(const std::string& rText)
{
    const size_t module = rText.find('/');
    const size_t member = (module == rText.npos) ? rText.npos : rText.find('/', module + 1);
    const size_t value  = (member == rText.npos) ? rText.npos : rText.find('=', member + 1);
    if (value == rText.npos)
    {
        FailEdit(rText, fmt::format("expected {}", EditForm));
    }
    return {rText.substr(0, module), rText.substr(module + 1, member - module - 1),
            rText.substr(member + 1, value - member - 1), rText.substr(value + 1)};
}

/// Selectors of a path such as "Default|Usecase.Video".
std::vector<TuningMode> BranchIn(const std::string& rText, const std::string& rPath)
{
    std::vector<TuningMode> branch;
    for (size_t begin = 0, end = 0; end != rPath.npos; begin = end + 1)
    {
        end = rPath.find('|', begin);
        tuningfile::ModeName name;
        std::string          fault;
        if (!tuningfile::ParseModeName(std::string_view(rPath).substr(begin, end - begin), name, fault))
        {
            FailEdit(rText, fault);
        }
        TuningMode& rMode   = branch.emplace_back();
        rMode.mode          = static_cast<ModeType>(name.mode);
        rMode.subMode.value = name.subMode;
    }
    return branch;
}

VOID Apply(const std::string& rText, TuningSetManager& rManager)
{
    const TuningEdit              edit   = EditIn(rText);
    const std::vector<TuningMode> branch = BranchIn(rText, edit.mode);
    const UINT32                  count  = static_cast<UINT32>(branch.size());
    if (rManager.GetModeEntry(0, branch.data(), count) == nullptr)
    {
        FailEdit(rText, fmt::format("the tuning has no mode {}", edit.mode));
    }
    CHAR old[64];
    if (!rManager.GetValue(0, branch.data(), count, edit.module.c_str(), edit.member.c_str(), old, sizeof(old)))
    {
        FailEdit(rText, fmt::format("the tuning has no {}.{} in {}", edit.module, edit.member, edit.mode));
    }
    if (!rManager.SetValue(0, branch.data(), count, edit.module.c_str(), edit.member.c_str(), edit.value.c_str()))
    {
        FailEdit(rText,
                 fmt::format("'{}' for {}.{}, expected one number for one", edit.value, edit.module, edit.member));
    }
}

}  // namespace

VOID ApplyEdits(const std::vector<std::string>& rEdits, LoadedTuning& rTuning)
{
    for (const std::string& rText : rEdits)
    {
        Apply(rText, rTuning.Manager());
    }
}

}  // namespace kirosim
