/// @file
/// The questions before a first tuning, for a person at a terminal and for options alike.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "tools/newtuning/answers.h"

namespace newtuning
{

struct Question
{
    const CHAR* pName;  ///< of the option, without dashes
    const CHAR* pText;

    /// The answer that serves most, as text; it may depend on the questions before.
    std::string (*Default)(const Answers& rAnswers);

    /// Puts a text into the answers. @return what was expected instead, empty if the answer will do
    std::string (*Take)(std::string_view text, Answers& rAnswers);
};

/// In the order in which they are to be answered: an answer must fit those before.
std::span<const Question> Questions();

}  // namespace newtuning
