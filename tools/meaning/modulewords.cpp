#include "tools/meaning/modulewords.h"

#include <iterator>

namespace meaning
{

namespace
{

#define TUNING_MODULE(name, RecordType, major, minor, patch)                                                           \
    TuningWordsOf(static_cast<const name::RecordType*>(nullptr)),
#define TUNING_MODULE_BARE(name, major, minor, patch) nullptr,

/// In the order of tuning::TuningModules.
constexpr const tuning::RecordWords* AllWords[] = {
#include "schema/modules.def"
};

#undef TUNING_MODULE
#undef TUNING_MODULE_BARE

static_assert(std::size(AllWords) == std::size(tuning::TuningModules));

}  // namespace

const tuning::RecordWords* WordsOf(const tuning::ModuleDescription& rModule)
{
    return AllWords[&rModule - tuning::TuningModules];
}

const CHAR* SentenceOf(const tuning::RecordWords& rModule)
{
    return rModule.pMembers[0].words.meaning;  // of the store's number, which stands first
}

const tuning::Words& EffectiveWords(const tuning::Words& rNesting, const tuning::Words& rOwn)
{
    return rNesting.range.IsGiven() ? rNesting : rOwn;
}

}  // namespace meaning
