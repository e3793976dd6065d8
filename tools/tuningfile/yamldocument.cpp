#include "tools/tuningfile/yamldocument.h"

#include <sstream>

#include <yaml-cpp/eventhandler.h>

#include "platform/tavotypes.h"

namespace tuningfile
{

namespace
{

/// Ends the parsing where a second document starts. A text may have no end of them: where a comma stands alone, the
/// parser makes documents of nothing until memory is out.
class SingleDocument final : public YAML::EventHandler
{
public:
    void OnDocumentStart(const YAML::Mark& rMark) override
    {
        if (m_started)
        {
            throw DocumentCountFault(rMark, "another YAML document, expected one");
        }
        m_started = true;
    }

    void OnDocumentEnd() override
    {
    }

    void OnNull(const YAML::Mark&, YAML::anchor_t) override
    {
    }

    void OnAlias(const YAML::Mark&, YAML::anchor_t) override
    {
    }

    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override
    {
    }

    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override
    {
    }

    void OnSequenceEnd() override
    {
    }

    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override
    {
    }

    void OnMapEnd() override
    {
    }

private:
    bool m_started = false;
};

}  // namespace

YAML::Node LoadDocument(const std::string& rText)
{
    std::istringstream stream(rText);
    YAML::Parser       parser(stream);
    SingleDocument     documents;
    if (!parser.HandleNextDocument(documents))
    {
        throw DocumentCountFault({}, "no YAML document, expected one");
    }
    parser.HandleNextDocument(documents);
    return YAML::Load(rText);
}

}  // namespace tuningfile
