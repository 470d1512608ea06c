#include "manual/roff.h"
#include <cmark.h>
#include <cstdlib>
#include <memory>

namespace manual
{
namespace
{
void MakeBold(cmark_node* code)
{
    cmark_node* const text = cmark_node_new(CMARK_NODE_TEXT);
    cmark_node* const strong = cmark_node_new(CMARK_NODE_STRONG);
    cmark_node_set_literal(text, cmark_node_get_literal(code));
    cmark_node_append_child(strong, text);
    cmark_node_replace(code, strong);
    cmark_node_free(code);
}
}  // namespace

std::string Escaped(std::string const& text)
{
    std::string escaped;
    for (char const c : text)
    {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n'))
            escaped += std::string("\\&") + c;
        else
            escaped += c;
    }
    return escaped;
}

std::string Bold(std::string const& text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(std::string const& text) { return "\\fI" + Escaped(text) + "\\fR"; }
std::string Section(std::string const& title) { return ".SH " + Escaped(title) + "\n"; }
std::string Subsection(std::string const& title) { return ".SS " + title + "\n"; }

std::string Item(std::string const& term, std::string const& text)
{
    return ".TP\n" + term + "\n" + Escaped(text) + "\n";
}

std::string FromMarkdown(std::string const& text)
{
    std::unique_ptr<cmark_node, void (*)(cmark_node*)> const document(
        cmark_parse_document(text.data(), text.size(), CMARK_OPT_DEFAULT), cmark_node_free);
    std::unique_ptr<cmark_iter, void (*)(cmark_iter*)> const steps(cmark_iter_new(document.get()),
                                                                   cmark_iter_free);
    // The iterator has gone on already when it hands out a node that has no children.
    for (cmark_event_type event = cmark_iter_next(steps.get()); event != CMARK_EVENT_DONE;
         event = cmark_iter_next(steps.get()))
        if (cmark_node* const node = cmark_iter_get_node(steps.get());
            cmark_node_get_type(node) == CMARK_NODE_CODE)
            MakeBold(node);
    std::unique_ptr<char, void (*)(void*)> const roff(cmark_render_man(document.get(), CMARK_OPT_DEFAULT, 0),
                                                      std::free);
    return roff.get();
}
}  // namespace manual
