// The language of manual pages.
#pragma once
#include <string>

namespace manual
{
// Text as it is, also where it begins a line.
std::string Escaped(std::string const& text);
std::string Bold(std::string const& text);
std::string Italic(std::string const& text);

// ".SH NAME" and the like, in lines of their own.
std::string Section(std::string const& title);
std::string Subsection(std::string const& title);
// A paragraph under a term, which is markup already; the text is not.
std::string Item(std::string const& term, std::string const& text);

// Markdown, with code in bold.
std::string FromMarkdown(std::string const& text);
}  // namespace manual
