/// @file
/// A function of the table as a type: the arguments of a call, the call itself, and its answer.
#pragma once

#include <tuple>
#include <type_traits>

#include "interface/ikirocorealgo.h"
#include "tools/recording/slots.h"

namespace recording
{

/// An argument as it is kept: by address where the function takes a reference. What the core only reads is not const
/// here, since a replay fills it.
template <typename Parameter>
using Argument =
    std::conditional_t<std::is_reference_v<Parameter> || std::is_pointer_v<Parameter>,
                       std::remove_const_t<std::remove_pointer_t<std::remove_reference_t<Parameter>>>*, Parameter>;

template <typename Parameter> Argument<Parameter> Keep(Parameter parameter)
{
    if constexpr (std::is_reference_v<Parameter>)
    {
        return const_cast<Argument<Parameter>>(&parameter);
    }
    else if constexpr (std::is_pointer_v<Parameter>)
    {
        return const_cast<Argument<Parameter>>(parameter);
    }
    else
    {
        return parameter;
    }
}

template <typename Parameter> Parameter Pass(Argument<Parameter> argument)
{
    if constexpr (std::is_reference_v<Parameter>)
    {
        return *argument;
    }
    else
    {
        return argument;
    }
}

/// The members of the table, in the order of the slots.
inline constexpr auto TableMembers = std::tuple{
#define SLOT(name) &IKIROCoreAlgo::name,
    KIRO_CORE_FUNCTIONS(SLOT)
#undef SLOT
};

template <Slot TheSlot> inline constexpr auto TableMember = std::get<static_cast<size_t>(TheSlot)>(TableMembers);

template <Slot TheSlot, typename Member = std::remove_const_t<decltype(TableMember<TheSlot>)>> struct Call;

template <Slot TheSlot, typename Answer, typename... Parameters>
struct Call<TheSlot, Answer (*IKIROCoreAlgo::*)(IKIROCoreAlgo*, Parameters...)>
{
    static constexpr Slot slot      = TheSlot;
    static constexpr bool hasAnswer = !std::is_void_v<Answer>;

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        const auto function = [&](Argument<Parameters>... values)
        { return (rTable.*TableMember<TheSlot>)(pAlgo, Pass<Parameters>(values)...); };
        if constexpr (hasAnswer)
        {
            result = std::apply(function, arguments);
        }
        else
        {
            std::apply(function, arguments);
        }
    }

    std::tuple<Argument<Parameters>...>               arguments;
    std::conditional_t<hasAnswer, Answer, KiroResult> result;  ///< 0 of a function without an answer
};

}  // namespace recording
