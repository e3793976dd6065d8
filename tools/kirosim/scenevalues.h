/// @file
/// How the members of a scene's maps are read: numbers, flags, names, lists and maps, each into a member of a struct.
#pragma once

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

/// A number. @param factor from the text's unit to the member's
template <typename T, typename M> SceneValue<T> Number(M T::*pMember, DOUBLE low, DOUBLE high, DOUBLE factor = 1.0)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = static_cast<ScenePlain<M>>(rText.Number(rEntry, low, high) * factor); },
            {.range = SceneRange{low, high}}};
}

/// A whole number of 0 or above.
template <typename T, typename M> SceneValue<T> Unsigned(M T::*pMember, UINT64 maximum)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = static_cast<ScenePlain<M>>(rText.Unsigned(rEntry, maximum)); },
            {.range = SceneRange{0.0, static_cast<DOUBLE>(maximum)}}};
}

/// A list of so many numbers. @param set takes them into the target
template <typename T>
SceneValue<T> Numbers(size_t count, DOUBLE low, DOUBLE high, VOID (*set)(T&, const std::vector<DOUBLE>&))
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { set(rTarget, rText.Numbers(rEntry, count, low, high)); },
            {.range = SceneRange{low, high}}};
}

template <typename T, typename M> SceneValue<T> Flag(M T::*pMember)
{
    return {[=](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTarget.*pMember = rText.Flag(rEntry); },
            {.names = {"true", "false"}}};
}

/// Names and what they stand for.
template <typename V> using SceneChoices = std::vector<std::pair<std::string, V>>;

/// One of some names. @param set takes what it stands for into the target
template <typename T, typename V, typename Set> SceneValue<T> ChoiceBy(const SceneChoices<V>& rChoices, Set set)
{
    SceneForm form;
    for (const auto& rChoice : rChoices)
    {
        form.names.push_back(rChoice.first);
    }
    return {[=, names = form.names](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { set(rTarget, rChoices[rText.Choice(rEntry, names)].second); },
            form};
}

template <typename T, typename M>
SceneValue<T> Choice(M T::*pMember, const std::type_identity_t<SceneChoices<ScenePlain<M>>>& rChoices)
{
    return ChoiceBy<T>(rChoices, [pMember](T& rTarget, const auto& rValue) { rTarget.*pMember = rValue; });
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
template <typename T, typename M, typename I> SceneValue<T> Map(M T::*pMember, const SceneTable<I>& rTable)
{
    return {[=, &rTable](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                if constexpr (std::is_same_v<M, I>)
                {
                    rTable.Read(rText, rEntry.value, rTarget.*pMember);
                }
                else
                {
                    M& rMember = rTarget.*pMember;
                    rTable.Read(rText, rEntry.value, rMember.has_value() ? *rMember : rMember.emplace());
                }
            },
            {.pMembers = &rTable}};
}

/// A map that begins anew: members that it does not name are as at first.
template <typename T, typename M, typename I> SceneValue<T> NewMap(M T::*pMember, const SceneTable<I>& rTable)
{
    return {[=, &rTable](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                I value{};
                rTable.Read(rText, rEntry.value, value);
                rTarget.*pMember = std::move(value);
            },
            {.pMembers = &rTable}};
}

/// A map within the text whose members are the target's own.
template <typename T> SceneValue<T> Group(const SceneTable<T>& rTable)
{
    return {[&rTable](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { rTable.Read(rText, rEntry.value, rTarget); },
            {.pMembers = &rTable}};
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
SceneValue<T> List(std::vector<I> T::*pMember, const CHAR* pWhat, const SceneTable<I>& rTable, SceneOrder<I> order = {})
{
    return {[=, &rTable](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                std::vector<I> items;
                for (const YAML::Node& rItem : rText.Items(rEntry, pWhat))
                {
                    I item{};
                    rTable.Read(rText, rItem, item);
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
            {.pMembers = &rTable}};
}

/// A value of a struct within the target.
template <typename T, typename I> SceneValue<T> Within(I T::*pInner, const SceneValue<I>& rValue)
{
    return {[pInner, read = rValue.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            { read(rText, rEntry, rTarget.*pInner); },
            rValue.form};
}

/// A value, or the word none. @param clear what the word does
template <typename T> SceneValue<T> OrNone(const SceneValue<T>& rValue, std::type_identity_t<VOID (*)(T&)> clear)
{
    SceneForm form = rValue.form;
    form.names.emplace_back("none");
    return {[clear, read = rValue.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                if (rEntry.value.IsScalar() && rEntry.value.Scalar() == "none")
                {
                    clear(rTarget);
                    return;
                }
                read(rText, rEntry, rTarget);
            },
            std::move(form)};
}

/// A value with something to be done once it is read: a check, or an order.
template <typename T>
SceneValue<T> Then(const SceneValue<T>&                                                               rValue,
                   std::type_identity_t<VOID (*)(const SceneText&, const tuningfile::YamlEntry&, T&)> next)
{
    return {[next, read = rValue.read](const SceneText& rText, const tuningfile::YamlEntry& rEntry, T& rTarget)
            {
                read(rText, rEntry, rTarget);
                next(rText, rEntry, rTarget);
            },
            rValue.form};
}

}  // namespace kirosim
