// The functions behind the table, LIBrunStartOfFrame and so on: each tests the table and the instance and forwards to
// the operation of the same name. Nothing here allocates or logs on the per-frame path.

#include <type_traits>

#include "core/base/kirolog.h"
#include "core/ckirocorefactory.h"
#include "interface/kiroresults.h"

namespace
{

/// What a table without an instance answers.
template <auto Operation> constexpr KiroResult Missing = ResultInvalidArgument;

template <> constexpr INT32                       Missing<&IKIROCore::GetFlashMaxCurrent>       = -1;
template <> constexpr AECAlgoFlashCalibrationData Missing<&IKIROCore::GetFlashCalibInfo>        = {};
template <> constexpr BOOL                        Missing<&IKIROCore::isPreflashMeteringNeeded> = FALSE;
template <> constexpr BOOL                        Missing<&IKIROCore::GetContextEvent>          = FALSE;
template <> constexpr BOOL                        Missing<&IKIROCore::GetSCDOutput>             = FALSE;
template <> constexpr UINT64                      Missing<&IKIROCore::GetContextStatus>         = 0;
template <> constexpr UINT32                      Missing<&IKIROCore::GetFICData>               = 0;

template <auto Operation> struct Forward;

template <typename Answer, typename... Parameters, Answer (IKIROCore::*Operation)(Parameters...)>
struct Forward<Operation>
{
    static Answer Call(IKIROCoreAlgo* pAlgo, Parameters... parameters)
    {
        if (pAlgo != nullptr && pAlgo->pCore != nullptr)
        {
            return (pAlgo->pCore->*Operation)(parameters...);
        }
        if constexpr (!std::is_void_v<Answer>)
        {
            return Missing<Operation>;
        }
    }
};

#define FORWARD(name) constexpr auto LIB##name = Forward<&IKIROCore::name>::Call;
KIRO_CORE_OPERATIONS(FORWARD)
#undef FORWARD

namespace logged
{

/// Neither clears pCore nor releases the table: hosts may still hold its address.
VOID LIBDestroyInstance(IKIROCoreAlgo* pAlgo)
{
    SYSTEM_LOG_VERBOSE("LIBDestroyInstance in:");
    Forward<&IKIROCore::DestroyInstance>::Call(pAlgo);
}

}  // namespace logged

}  // namespace

VOID SetCoreFunctions(IKIROCoreAlgo& rAlgo)
{
    rAlgo.createDataXml = KIROCreateTriggerDataInst;
#define STORE(name) rAlgo.name = LIB##name;
    KIRO_CORE_OPERATIONS(STORE)
#undef STORE
    rAlgo.DestroyInstance = logged::LIBDestroyInstance;
}
