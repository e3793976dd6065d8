/// @file
/// The one document of a YAML text.
#pragma once

#include <string>

#include <yaml-cpp/yaml.h>

namespace tuningfile
{

/// A text of no document, or of several. Its message is a whole one, with what was expected.
class DocumentCountFault final : public YAML::ParserException
{
public:
    using YAML::ParserException::ParserException;
};

/// @throws YAML::Exception if the text is no YAML; of these, a DocumentCountFault if it is not one document
YAML::Node LoadDocument(const std::string& rText);

}  // namespace tuningfile
