#include "tools/tuningfile/yamlscan.h"

namespace tuningfile
{

namespace
{

constexpr std::string_view Blanks         = " \t\r\n";
constexpr std::string_view FlowIndicators = ",[]{}";

/// Walks through a text token by token. A bracket or a quote counts where a value may begin, not within one.
class YamlScanner
{
public:
    YamlScanner(std::string_view text, size_t endLine, size_t endColumn)
        : m_text(text), m_endLine(endLine), m_endColumn(endColumn)
    {
    }

    YamlContext Scan()
    {
        StartLine();
        while (!IsAtEnd())
        {
            if (Letter() == '\n')
            {
                Advance();
                StartLine();
            }
            else if (IsIn(Letter(), Blanks))
            {
                SkipBlanks();
            }
            else if (Letter() == '#' && m_isAfterBlank)
            {
                SkipLine();
            }
            else if (!ReadFlowIndicator() && !ReadColon())
            {
                ReadToken();
            }
        }
        return m_context;
    }

private:
    static bool IsIn(CHAR letter, std::string_view letters)
    {
        return letters.find(letter) != letters.npos;
    }

    bool IsAtEnd() const
    {
        return m_at >= m_text.size() || m_line > m_endLine || (m_line == m_endLine && m_column >= m_endColumn);
    }

    CHAR Letter() const
    {
        return m_text[m_at];
    }

    /// The end of the text counts as the end of a line.
    CHAR NextLetter() const
    {
        return (m_at + 1 < m_text.size()) ? m_text[m_at + 1] : '\n';
    }

    bool IsInFlow() const
    {
        return !m_context.open.empty();
    }

    VOID Advance()
    {
        const bool isNewLine = Letter() == '\n';
        m_line += isNewLine ? 1 : 0;
        m_column = isNewLine ? 1 : m_column + 1;
        ++m_at;
        m_isAfterBlank = false;
    }

    VOID SkipBlanks()
    {
        while (!IsAtEnd() && Letter() != '\n' && IsIn(Letter(), Blanks))
        {
            Advance();
        }
        m_isAfterBlank = true;
    }

    VOID SkipLine()
    {
        while (!IsAtEnd() && Letter() != '\n')
        {
            Advance();
        }
    }

    VOID StartLine();
    bool ReadFlowIndicator();
    bool ReadColon();
    VOID ReadToken();
    VOID ReadQuoted();
    VOID SkipBlockText();

    const std::string_view m_text;
    const size_t           m_endLine;
    const size_t           m_endColumn;
    size_t                 m_at           = 0;
    size_t                 m_line         = 1;
    size_t                 m_column       = 1;
    size_t                 m_indent       = 1;     ///< column of the map or list that this line goes on with
    bool                   m_isLead       = true;  ///< nothing but dashes yet in this line
    bool                   m_isValueStart = true;  ///< a value may begin here
    bool                   m_isAfterBlank = true;
    YamlContext            m_context;
};

VOID YamlScanner::StartLine()
{
    std::optional<YamlLetter> tab;
    while (!IsAtEnd() && (Letter() == ' ' || Letter() == '\t'))
    {
        if (Letter() == '\t' && !tab.has_value())
        {
            tab = YamlLetter{'\t', m_line, m_column};
        }
        Advance();
    }
    m_isLead           = true;
    m_isValueStart     = true;
    m_isAfterBlank     = true;
    const bool isEmpty = m_at >= m_text.size() || IsIn(Letter(), "\r\n#");
    if (!m_context.tab.has_value() && !IsInFlow() && !isEmpty)
    {
        m_context.tab = tab;
    }
}

/// Within brackets, they and commas end a plain value too; outside, a bracket is one where a value may begin.
bool YamlScanner::ReadFlowIndicator()
{
    const CHAR letter = Letter();
    const bool opens  = letter == '[' || letter == '{';
    if (!IsIn(letter, FlowIndicators) || (!IsInFlow() && !(opens && m_isValueStart)))
    {
        return false;
    }
    if (opens)
    {
        m_context.open.push_back({letter, m_line, m_column});
    }
    else if (letter != ',')
    {
        m_context.open.pop_back();
    }
    Advance();
    m_isValueStart = opens || letter == ',';
    return true;
}

bool YamlScanner::ReadColon()
{
    const bool isColon =
        Letter() == ':' && (IsIn(NextLetter(), Blanks) || (IsInFlow() && IsIn(NextLetter(), FlowIndicators)));
    if (isColon)
    {
        Advance();
        m_isValueStart = true;
    }
    return isColon;
}

VOID YamlScanner::ReadToken()
{
    const CHAR letter = Letter();
    if (!m_isValueStart)
    {
        Advance();
        return;
    }
    const bool isBlockText = !IsInFlow() && (letter == '|' || letter == '>');
    if (m_isLead && !isBlockText)
    {
        m_indent = m_column;
    }
    if ((letter == '-' || letter == '?') && IsIn(NextLetter(), Blanks))
    {
        Advance();
        return;
    }
    if (isBlockText)
    {
        SkipBlockText();
        return;
    }
    if (IsIn(letter, "&*!"))  // a name, and behind it the value
    {
        while (!IsAtEnd() && !IsIn(Letter(), Blanks) && !(IsInFlow() && IsIn(Letter(), FlowIndicators)))
        {
            Advance();
        }
        return;
    }
    m_isLead       = false;
    m_isValueStart = false;
    if (letter == '"' || letter == '\'')
    {
        ReadQuoted();
        return;
    }
    Advance();
}

VOID YamlScanner::ReadQuoted()
{
    const CHAR quote = Letter();
    m_context.open.push_back({quote, m_line, m_column});
    Advance();
    while (!IsAtEnd())
    {
        const bool isEscape = (quote == '"') ? Letter() == '\\' : Letter() == '\'' && NextLetter() == '\'';
        if (Letter() == quote && !isEscape)
        {
            m_context.open.pop_back();
            Advance();
            return;
        }
        Advance();
        if (isEscape && !IsAtEnd())
        {
            Advance();
        }
    }
}

/// A text behind '|' or '>' goes on as long as lines are empty or stand deeper than what it belongs to.
VOID YamlScanner::SkipBlockText()
{
    SkipLine();
    while (!IsAtEnd())
    {
        const size_t start = m_text.find_first_not_of(" \r\n", m_at);
        if (start == m_text.npos)
        {
            m_at = m_text.size();
            return;
        }
        const size_t lineStart = m_text.rfind('\n', start) + 1;
        if (start - lineStart < m_indent)
        {
            return;
        }
        while (!IsAtEnd() && m_at < start)
        {
            Advance();
        }
        SkipLine();
    }
}

}  // namespace

YamlContext ScanYaml(std::string_view text, size_t line, size_t column)
{
    return YamlScanner(text, line, column).Scan();
}

}  // namespace tuningfile
