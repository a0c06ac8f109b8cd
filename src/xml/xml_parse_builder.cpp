#include "xml/xml_parse.h"

namespace
{

// As a tree keeps them.
constexpr std::uint64_t text_slack = 32;

} // namespace

XMLTree XMLTreeBuilder::parse(const AString& text, bool* refused, const XMLNameSource& known_names)
{
    XMLTreeBuilder builder(text.trim(), known_names);
    while (!builder.error && !builder.done) {
        builder.step();
    }
    if (refused != nullptr) {
        *refused = builder.error;
    }
    return builder.error ? XMLTree() : std::move(builder.result);
}

XMLTreeBuilder::XMLTreeBuilder(const AString& string, const XMLNameSource& name_source)
    : source(string), known_names(name_source), text(source.get_chars())
{
}

void XMLTreeBuilder::step()
{
    const XMLTag tag = next_tag(text, pos);
    if (tag.kind == XMLTagKind::error) {
        error = true;
        return;
    }
    if (tag.kind == XMLTagKind::none) {
        end_text();
        return;
    }
    add_text(text.subspan(pos, tag.start - pos));
    pos = tag.end + 1;
    if (tag.kind != XMLTagKind::close) {
        open_element(tag);
    }
    if (tag.kind != XMLTagKind::open) {
        close_element(tag);
    }
}

void XMLTreeBuilder::end_text()
{
    add_text(text.subspan(pos));
    error = error || result.is_null;
    done = true;
}

void XMLTreeBuilder::add_text(XMLChars piece)
{
    if (stack.empty()) {
        error = error || !is_blank(piece);
        return;
    }
    XMLOpenElement& innermost = stack.back();
    if (innermost.text.empty()) {
        innermost.text = piece;
    }
    innermost.text_is_blank = innermost.text_is_blank && is_blank(piece);
}

void XMLTreeBuilder::open_element(const XMLTag& tag)
{
    if (error) {
        return;
    }
    if (!result.is_null) {
        error = true;
        return;
    }
    XMLOpenElement& element = stack.emplace_back();
    element.name = tag.name;
    for (const auto& [attribute_name, value] : tag.attributes) {
        element.attributes[source.keep(attribute_name, text_slack)] =
            source.keep(value, text_slack);
    }
}

void XMLTreeBuilder::close_element(const XMLTag& tag)
{
    if (error) {
        return;
    }
    if (stack.empty() || !same_chars(stack.back().name, tag.name)) {
        error = true;
        return;
    }
    XMLOpenElement& element = stack.back();
    const bool has_children = element.children.length() != 0;
    if (has_children && !element.text_is_blank) {
        error = true;
        return;
    }
    XMLTree tree;
    tree.is_null = false;
    tree.name = name_string(element.name);
    if (!has_children) {
        tree.text = text_string(element.text);
    }
    tree.children = std::move(element.children);
    tree.attributes = std::move(element.attributes);
    stack.pop_back();
    if (stack.empty()) {
        result = std::move(tree);
    } else {
        stack.back().children.push_back(std::move(tree));
    }
}

AString XMLTreeBuilder::name_string(XMLChars name) const
{
    AString known;
    known_names(name.data(), name.size(), &known);
    return known.is_empty() ? source.keep(name, text_slack) : known;
}

AString XMLTreeBuilder::text_string(XMLChars content) const
{
    std::optional<AString> unescaped = xml_unescape(content);
    return unescaped ? *std::move(unescaped) : source.keep(content, text_slack);
}
