#include "xml/xml_parse.h"

namespace
{

// As a tree keeps them.
constexpr std::uint64_t text_slack = 32;

} // namespace

XMLTreeBuilder::XMLTreeBuilder(const AStringTable* names)
    : known_names(names), short_texts(text_slack)
{
}

XMLTree XMLTreeBuilder::parse(const AString& text, bool* refused, const AStringTable* names)
{
    return XMLTreeBuilder(names).parse(XMLFlatText(text), refused);
}

XMLTree XMLTreeBuilder::parse(const XMLFlatText& flat_text, bool* refused)
{
    forget(); // memory may have run out in the middle of the text before
    source = &flat_text;
    text = trim_right(trim_left(flat_text.get_chars()));
    pos = 0;
    error = false;
    done = false;
    while (!error && !done) {
        step();
    }
    if (refused != nullptr) {
        *refused = error;
    }
    if (error) {
        forget();
    }
    return std::exchange(result, XMLTree());
}

void XMLTreeBuilder::forget()
{
    short_texts.clear();
    stack.clear();
    result = XMLTree();
}

void XMLTreeBuilder::step()
{
    const XMLTag tag = next_tag(text, pos, stack.empty() ? XMLChars() : stack.back().name);
    if (tag.kind == XMLTagKind::error) {
        error = true;
        return;
    }
    if (tag.kind == XMLTagKind::none) {
        add_text(text.subspan(pos), tag.space_before);
        error = error || result.is_null;
        done = true;
        return;
    }
    add_text(text.subspan(pos, tag.start - pos), tag.space_before);
    pos = tag.end + 1;
    if (tag.kind != XMLTagKind::close) {
        open_element(tag);
    }
    if (tag.kind != XMLTagKind::open) {
        close_element(tag);
    }
}

void XMLTreeBuilder::add_text(XMLChars piece, bool is_space)
{
    if (stack.empty()) {
        error = error || !is_space;
        return;
    }
    XMLOpenElement& innermost = stack.back();
    if (innermost.text.empty()) {
        innermost.text = piece;
    }
    innermost.text_is_blank = innermost.text_is_blank && is_space;
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
    XMLOpenElement& opened = stack.emplace_back();
    opened.name = tag.name;
    opened.element = XMLTreeList::Entry::create_or_throw();
    XMLTree& tree = opened.element->value;
    for (const auto& [attribute_name, value] : tag.attributes) {
        tree.attributes[source->keep(attribute_name, text_slack)] = source->keep(value, text_slack);
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
    XMLOpenElement& closed = stack.back();
    XMLTree& tree = closed.element->value;
    const bool has_children = tree.children.length() != 0;
    if (has_children && !closed.text_is_blank) {
        error = true;
        return;
    }
    tree.is_null = false;
    set_name(tree, closed.name);
    if (!has_children) {
        set_text(tree, closed.text);
    }
    if (stack.size() == 1) {
        short_texts.flush();
        result = std::move(tree);
    } else {
        XMLTree& parent = stack[stack.size() - 2].element->value;
        parent.children.get_writable().link(std::move(closed.element));
    }
    stack.pop_back();
}

bool XMLTreeBuilder::set_known(AString& string, XMLChars chars) const
{
    const AStringTable::Entry* known =
        known_names != nullptr ? known_names->find(chars.data(), chars.size()) : nullptr;
    if (known != nullptr) {
        string = known->text;
    }
    return known != nullptr;
}

void XMLTreeBuilder::set_name(XMLTree& tree, XMLChars name) const
{
    if (!set_known(tree.name, name)) {
        tree.name = source->keep(name, text_slack);
    }
}

void XMLTreeBuilder::set_text(XMLTree& tree, XMLChars content)
{
    if (set_known(tree.text, content)) {
        return;
    }
    if (std::optional<AString> unescaped = xml_unescape(content)) {
        tree.text = *std::move(unescaped);
    } else if (source->can_share(content, text_slack)) {
        tree.text = source->keep(content, text_slack);
    } else {
        short_texts.add(content, &tree.text);
    }
}
