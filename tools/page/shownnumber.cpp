#include "tools/page/shownnumber.h"

#include <optional>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"

namespace page
{

std::string ShownNumber(const std::string& rModule, const std::string& rPath, const std::string& rTold)
{
    if (rTold.find('.') == std::string::npos)
    {
        return rTold;
    }
    const std::optional<kirotune::KnownMember> known = kirotune::FindMember(rModule, rPath);
    const bool                                 isFraction =
        known && !known->isWholeArray &&
        (known->pMember->type == tuning::ValueType::Float || known->pMember->type == tuning::ValueType::Double);
    if (!isFraction)
    {
        return rTold;
    }
    kirotune::StoredNumber number(*known->pMember);
    return number.Set(rTold) ? number.InTuning() : rTold;
}

}  // namespace page
