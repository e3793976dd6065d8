#include "tools/kirodamage/textdamage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <vector>

namespace kirodamage
{

namespace
{

constexpr std::string_view OddNumbers[] = {"0",     "-1",   "-0",         "1e-30",      "1e30",
                                           "-1e30", ".nan", ".inf",       "-.inf",      "nan",
                                           "inf",   "0.5",  "2147483648", "4294967295", "18446744073709551616"};

constexpr std::string_view OddForms[] = {"",     "~",    "[]",       "{}",      "[1, 2, 3]", "{a: 1}", "[[[[1]]]]",
                                         "text", "true", "\"text\"", "*nobody", "&name 1",   "|",      "!!binary AAAA"};

/// What a line may be repeated up to, and all lines together.
constexpr UINT32 RepeatMax = 1000;
constexpr size_t TextMax   = size_t{1} << 20;

/// A piece of the text.
struct Piece
{
    size_t begin;
    size_t size;
};

/// Values as they stand behind a colon, a comma or a bracket, up to the next of these. @param isNumber of numbers only
std::vector<Piece> FindValues(const std::string& rText, bool isNumber)
{
    constexpr std::string_view before = ":,[- ";
    constexpr std::string_view after  = ",]}\n#";

    std::vector<Piece> values;
    for (size_t place = 1; place < rText.size(); ++place)
    {
        const unsigned char letter = static_cast<unsigned char>(rText[place]);
        const bool          begins = rText[place - 1] == ' ' || rText[place - 1] == '[';
        const bool          fits   = isNumber ? std::isdigit(letter) != 0 : std::isalnum(letter) != 0;
        if (!begins || !fits || before.find(rText[place - 1]) == std::string_view::npos)
        {
            continue;
        }
        const size_t end = std::min(rText.find_first_of(after, place), rText.size());
        if (rText.find(':', place) > end)
        {
            values.push_back({place, end - place});
        }
        place = end;
    }
    return values;
}

/// A line and those that belong to it, which stand further in.
Piece FindBlock(const std::string& rText, size_t place)
{
    const size_t begin = rText.rfind('\n', place) + 1;
    const auto   depth = [&rText](size_t line) { return rText.find_first_not_of(' ', line) - line; };
    size_t       end   = begin;
    do
    {
        end = std::min(rText.find('\n', end), rText.size() - 1) + 1;
    } while (end < rText.size() && depth(end) > depth(begin));
    return {begin, end - begin};
}

size_t Any(size_t count, std::mt19937_64& rRandom)
{
    return static_cast<size_t>(rRandom() % count);
}

VOID ReplaceValue(std::string& rText, bool isNumber, std::mt19937_64& rRandom)
{
    const std::vector<Piece> values = FindValues(rText, isNumber);
    if (!values.empty())
    {
        const Piece            value = values[Any(values.size(), rRandom)];
        const std::string_view odd =
            isNumber ? OddNumbers[Any(std::size(OddNumbers), rRandom)] : OddForms[Any(std::size(OddForms), rRandom)];
        rText.replace(value.begin, value.size, odd);
    }
}

VOID RepeatBlock(std::string& rText, std::mt19937_64& rRandom)
{
    const Piece       block  = FindBlock(rText, Any(rText.size(), rRandom));
    const std::string copied = rText.substr(block.begin, block.size);
    UINT32            times  = (rRandom() % 4 == 0) ? RepeatMax : 1;
    std::string       copies;
    for (; times > 0 && rText.size() + copies.size() < TextMax; --times)
    {
        copies += copied;
    }
    rText.insert(block.begin, copies);
}

/// As a bad line or a bad disk does it.
VOID ChangeLetters(std::string& rText, std::mt19937_64& rRandom)
{
    const size_t place = Any(rText.size(), rRandom);
    switch (rRandom() % 3)
    {
    case 0:
        rText[place] = static_cast<CHAR>(rRandom());
        break;
    case 1:
        rText.erase(place, 1 + Any(10, rRandom));
        break;
    default:
        rText.insert(place, rText.substr(Any(rText.size(), rRandom), 1 + Any(20, rRandom)));
        break;
    }
}

}  // namespace

std::string DamageText(std::string text, std::mt19937_64& rRandom)
{
    for (UINT64 changes = 1 + rRandom() % 2; changes > 0 && !text.empty(); --changes)
    {
        switch (rRandom() % 8)
        {
        case 0:
        case 1:
        case 2:
            ReplaceValue(text, true, rRandom);
            break;
        case 3:
        case 4:
            ReplaceValue(text, false, rRandom);
            break;
        case 5:
        {
            const Piece block = FindBlock(text, Any(text.size(), rRandom));
            text.erase(block.begin, block.size);
            break;
        }
        case 6:
            RepeatBlock(text, rRandom);
            break;
        default:
            ChangeLetters(text, rRandom);
            break;
        }
    }
    return text;
}

}  // namespace kirodamage
