// The reading of one layout text. The notation is in layout.h.
#include "trace/enums.h"
#include "trace/layout.h"
#include <cctype>

namespace nebtrace
{
namespace
{
struct Letter
{
    char letter;
    Kind kind;
};

constexpr Letter kScalars[] = {{'i', Kind::Signed}, {'u', Kind::Unsigned}, {'x', Kind::Fixed},
                               {'f', Kind::Float},  {'b', Kind::Bool},     {'c', Kind::Byte},
                               {'s', Kind::Short},  {'l', Kind::Signed64}, {'q', Kind::Unsigned64},
                               {'e', Kind::Enum},   {'m', Kind::Bitmask},  {'o', Kind::Object},
                               {'p', Kind::Pointer}};

constexpr Letter kComposites[] = {{'A', Kind::Array},    {'F', Kind::FixedArray}, {'S', Kind::Text},
                                  {'L', Kind::TextList}, {'K', Kind::AttribList}, {'I', Kind::Image},
                                  {'D', Kind::Blob},     {'X', Kind::IndexData},  {'V', Kind::ClientArrays}};

template <size_t N>
bool Lookup(Letter const (&letters)[N], char letter, Kind& kind)
{
    for (Letter const& entry : letters)
        if (entry.letter == letter)
        {
            kind = entry.kind;
            return true;
        }
    return false;
}

class Parser
{
public:
    explicit Parser(std::string_view text) : m_left(text) {}

    bool AtEnd() const { return m_left.empty(); }
    bool Accept(char letter)
    {
        if (m_left.empty() || m_left.front() != letter)
            return false;
        m_left.remove_prefix(1);
        return true;
    }
    std::string_view Until(char stop)
    {
        std::string_view const found = m_left.substr(0, m_left.find(stop));
        m_left.remove_prefix(found.size());
        return found;
    }
    bool Number(uint32_t& number);
    bool KindOf(FieldSpec& field);

private:
    bool Scalar(FieldSpec& field);
    bool Domain(FieldSpec& field);
    bool Elements(FieldSpec& field);

    std::string_view m_left;
};

// Four digits are more than any layout needs and keep the sizes far from overflow.
bool Parser::Number(uint32_t& number)
{
    size_t digits = 0;
    number = 0;
    while (digits < m_left.size() && digits < 5 && std::isdigit(static_cast<unsigned char>(m_left[digits])))
        number = number * 10 + static_cast<uint32_t>(m_left[digits++] - '0');
    m_left.remove_prefix(digits);
    return digits > 0 && digits < 5 && number > 0;
}

bool Parser::Domain(FieldSpec& field)
{
    if (!Accept('<'))
        return true;
    field.domain = Until('>');
    if (!Accept('>') || field.domain.empty())
        return false;
    if (field.element == Kind::Object)
        return true;
    field.group = FindEnumGroup(field.domain);
    return field.group != nullptr;
}

bool Parser::Scalar(FieldSpec& field)
{
    if (m_left.empty() || !Lookup(kScalars, m_left.front(), field.element))
        return false;
    m_left.remove_prefix(1);
    return Domain(field) && (field.element != Kind::Object || !field.domain.empty());
}

bool Parser::Elements(FieldSpec& field)
{
    if (!Accept('[') || !Scalar(field))
        return false;
    if (Accept('*') && !Number(field.components))
        return false;
    return Accept(']');
}

bool Parser::KindOf(FieldSpec& field)
{
    if (m_left.empty())
        return false;
    if (Lookup(kComposites, m_left.front(), field.kind))
    {
        m_left.remove_prefix(1);
        field.element = Kind::Byte;
        if (field.kind == Kind::Array || field.kind == Kind::FixedArray)
            return Elements(field);
        if (field.kind == Kind::AttribList)
            field.element = Kind::Signed;
        return true;
    }
    bool const isScalar = Scalar(field);
    field.kind = field.element;
    return isScalar;
}

bool ParseField(std::string_view word, FieldSpec& field)
{
    if (word == "api")
    {
        field.name = "api";
        field.kind = field.element = Kind::ApiByte;
        return true;
    }
    Parser parser(word);
    field.isResult = parser.Accept('=');
    if (field.isResult)
        field.name = "result";
    else
    {
        field.isArgument = !parser.Accept('+');
        field.name = parser.Until(':');
        if (field.name.empty() || !parser.Accept(':'))
            return false;
    }
    return parser.KindOf(field) && parser.AtEnd();
}
}  // namespace

bool ParseLayout(std::string_view text, std::vector<FieldSpec>& fields, std::string& error)
{
    fields.clear();
    while (!text.empty())
    {
        std::string_view const word = text.substr(0, text.find(' '));
        text.remove_prefix(word.size());
        if (!text.empty())
            text.remove_prefix(1);
        FieldSpec field;
        bool const whole = ParseField(word, field);
        // Client arrays have no count: nothing can stand behind them.
        bool const reachable = fields.empty() || fields.back().kind != Kind::ClientArrays;
        if (!whole || !reachable)
        {
            error = "cannot read \"" + std::string(word) + "\"";
            return false;
        }
        fields.push_back(std::move(field));
    }
    return true;
}
}  // namespace nebtrace
