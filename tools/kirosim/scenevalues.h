/// @file
/// How the members of a scene's maps are read: numbers, flags, names, lists and maps, each into a member of a struct.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// A member's type, or what it may have.
template <typename M> struct SceneOptional
{
    using Type = M;
};
template <typename M> struct SceneOptional<std::optional<M>>
{
    using Type = M;
};
template <typename M> using ScenePlain = typename SceneOptional<M>::Type;

/// The text of a member's value, if it is one that is always there.
template <typename T, typename M, typename Text> auto TextOfMember(M T::*pMember, Text text)
{
    return [=](const T& rTarget) -> std::string
    {
        if constexpr (std::is_same_v<M, ScenePlain<M>>)
        {
            return text(rTarget.*pMember);
        }
        return "";
    };
}

/// A number. @param factor from the text's unit to the member's
template <typename T, typename M> SceneValue<T> Number(M T::*pMember, DOUBLE low, DOUBLE high, DOUBLE factor = 1.0)
{
    return {
        [=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
        { rTarget.*pMember = static_cast<ScenePlain<M>>(rText.Number(rEntry, low, high) * factor); },
        {.type = SceneType::Number, .range = SceneRange{TextOf(low), TextOf(high)}},
        TextOfMember(pMember, [factor](ScenePlain<M> value) { return TextOf(static_cast<DOUBLE>(value) / factor); })};
}

/// What holds the limits of a member of whole numbers.
template <typename M> using SceneWhole = std::conditional_t<std::is_signed_v<ScenePlain<M>>, INT64, UINT64>;

template <typename T, typename M> SceneValue<T> Whole(M T::*pMember, SceneWhole<M> low, SceneWhole<M> high)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = static_cast<ScenePlain<M>>(rText.Whole(rEntry, low, high)); },
            {.type = SceneType::Whole, .range = SceneRange{std::to_string(low), std::to_string(high)}},
            TextOfMember(pMember, [](ScenePlain<M> value) { return std::to_string(value); })};
}

/// A list of so many numbers. @param set takes them into the target
template <typename T>
SceneValue<T> Numbers(size_t count, DOUBLE low, DOUBLE high, VOID (*set)(T&, const std::vector<DOUBLE>&))
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { set(rTarget, rText.Numbers(rEntry, count, low, high)); },
            {.type = SceneType::Number, .range = SceneRange{TextOf(low), TextOf(high)}, .lists = {{count, count}}}};
}

template <typename T, typename M> SceneValue<T> Flag(M T::*pMember)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = rText.Flag(rEntry); },
            {.type = SceneType::Flag},
            TextOfMember(pMember, [](bool value) { return value ? "true" : "false"; })};
}

/// Names and what they stand for.
template <typename V> using SceneChoices = std::vector<std::pair<std::string, V>>;

/// One of some names.
/// @param set takes what it stands for into the target
/// @param has says whether the target has it
template <typename T, typename V, typename Set, typename Has>
SceneValue<T> ChoiceBy(const SceneChoices<V>& rChoices, Set set, Has has)
{
    SceneForm form{.type = SceneType::Name};
    for (const auto& rChoice : rChoices)
    {
        form.names.push_back(rChoice.first);
    }
    return {[=, names = form.names](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { set(rTarget, rChoices[rText.Choice(rEntry, names)].second); },
            form,
            [=](const T& rTarget) -> std::string
            {
                const auto found = std::find_if(rChoices.begin(), rChoices.end(),
                                                [&](const auto& rChoice) { return has(rTarget, rChoice.second); });
                return (found != rChoices.end()) ? found->first : "";
            }};
}

template <typename T, typename M>
SceneValue<T> Choice(M T::*pMember, const std::type_identity_t<SceneChoices<ScenePlain<M>>>& rChoices)
{
    return ChoiceBy<T>(
        rChoices, [pMember](T& rTarget, const auto& rValue) { rTarget.*pMember = rValue; },
        [pMember](const T& rTarget, const auto& rValue) { return rTarget.*pMember == rValue; });
}

/// What a function makes of the text.
template <typename T, typename M, typename V>
SceneValue<T> Made(M T::*pMember, V (*make)(const SceneText&, const tuningfile::YamlEntry&), SceneForm form = {})
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = make(rText, rEntry); },
            std::move(form)};
}

/// A map that changes the members it names.
template <typename T, typename M, typename I> SceneValue<T> Map(M T::*pMember, SceneTableSource<I> table)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                if constexpr (std::is_same_v<M, I>)
                {
                    table().Read(rText, rEntry.value, rTarget.*pMember);
                }
                else
                {
                    M& rMember = rTarget.*pMember;
                    table().Read(rText, rEntry.value, rMember.has_value() ? *rMember : rMember.emplace());
                }
            },
            {.type = SceneType::Map, .members = table}};
}

/// A map that begins anew: members that it does not name are as at first.
template <typename T, typename M, typename I> SceneValue<T> NewMap(M T::*pMember, SceneTableSource<I> table)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                I value{};
                table().Read(rText, rEntry.value, value);
                rTarget.*pMember = std::move(value);
            },
            {.type = SceneType::Map, .members = table}};
}

/// A map within the text whose members are the target's own.
template <typename T> SceneValue<T> Group(SceneTableSource<T> table)
{
    return {[table](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { table().Read(rText, rEntry.value, rTarget); },
            {.type = SceneType::Map, .members = table}};
}

/// The order in which the maps of a list must stand.
template <typename I> struct SceneOrder
{
    DOUBLE I::* pKey     = nullptr;  ///< what must ascend; null for any order
    bool        mayStay  = false;    ///< two may have the same
    const CHAR* pRefusal = nullptr;
};

/// A list of maps, in the place of what was there before. @param pWhat what the list holds, for the refusal
template <typename T, typename I>
SceneValue<T> List(std::vector<I> T::*pMember, const CHAR* pWhat, std::type_identity_t<SceneTableSource<I>> table,
                   SceneOrder<I> order = {})
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                std::vector<I> items;
                for (const YAML::Node& rItem : rText.Items(rEntry, pWhat))
                {
                    I item{};
                    table().Read(rText, rItem, item);
                    if (order.pKey != nullptr && !items.empty() &&
                        (item.*order.pKey < items.back().*order.pKey ||
                         (!order.mayStay && item.*order.pKey == items.back().*order.pKey)))
                    {
                        rText.Input().Fail(rItem, order.pRefusal);
                    }
                    items.push_back(std::move(item));
                }
                rTarget.*pMember = std::move(items);
            },
            {.type = SceneType::Map, .lists = {{}}, .members = table}};
}

/// A value of a struct within the target.
template <typename T, typename I> SceneValue<T> Within(I T::*pInner, const SceneValue<I>& rValue)
{
    return {[pInner, read = rValue.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { read(rText, rEntry, rTarget.*pInner); },
            rValue.form,
            [pInner, textOf = rValue.textOf](const T& rTarget)
            { return textOf ? textOf(rTarget.*pInner) : std::string(); }};
}

/// A value, or the word none. @param clear what the word does
template <typename T> SceneValue<T> OrNone(SceneValue<T> value, std::type_identity_t<VOID (*)(T&)> clear)
{
    value.form.names.emplace_back("none");
    value.read = [clear, read = value.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
    {
        if (rEntry.value.IsScalar() && rEntry.value.Scalar() == "none")
        {
            clear(rTarget);
            return;
        }
        read(rText, rEntry, rTarget);
    };
    return value;
}

/// A value with something to be done once it is read: a check, or an order.
template <typename T>
SceneValue<T> Then(SceneValue<T>                                                                      value,
                   std::type_identity_t<VOID (*)(const SceneText&, const tuningfile::YamlEntry&, T&)> next)
{
    value.read = [next, read = value.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
    {
        read(rText, rEntry, rTarget);
        next(rText, rEntry, rTarget);
    };
    return value;
}

}  // namespace kirosim
