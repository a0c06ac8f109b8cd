#include "protocol/zavl3_tree.h"

#include "foundation/astring_runs.h"
#include "foundation/astringformat.h"

#include <new>

namespace ZAVL3
{

namespace
{

// Fills the placeholders of `text` in turn; builds nothing when nobody asks for the error.
template <typename... Values>
bool fail(AString* error, const char* text, const Values&... values)
{
    if (error != nullptr) {
        AStringFormat format{AString(text)};
        (format.arg(values), ...);
        *error = format.to_string();
    }
    return false;
}

} // namespace

template <typename Element>
const Element* get_tag(const Element& tree, const AString& name, AString* error)
{
    if (tree.has_name(name)) {
        return &tree;
    }
    const Element* first = nullptr;
    const bool single = for_each_child(tree, name, [&first](const Element& child) {
        return std::exchange(first, &child) == nullptr;
    });
    if (!single) {
        fail(error, "More than one tag '%1' found within '%2'", name, tree.get_name());
        return nullptr;
    }
    if (first == nullptr) {
        fail(error, "Tag '%1' not found within '%2'", name, tree.get_name());
    }
    return first;
}

AString get_trimmed_text(const XMLTree& tree)
{
    return tree.get_text().trim();
}

AString get_trimmed_text(const XMLPlainElement& element)
{
    return get_raw_text(element).trim();
}

AString get_raw_text(const XMLTree& tree)
{
    return tree.get_text();
}

AString get_raw_text(const XMLPlainElement& element)
{
    const std::string_view text = element.get_text();
    if (text.empty()) {
        return AString();
    }
    AString made(text.data(), text.size());
    if (made.length() != text.size()) {
        throw std::bad_alloc(); // strings do not tell; a reply would miss its command
    }
    return made;
}

template <typename Element>
bool invalid_value(const Element& tree, const AString& value, AString* error)
{
    return fail(error, "Tag %1 contains invalid value '%2'", tree.get_name(), value);
}

template <typename Element>
bool invalid_typed_value(const Element& tree, const AString& type_word, const AString& value,
                         AString* error)
{
    return fail(error, "Tag %1 contains invalid %3 value '%2'", tree.get_name(), value, type_word);
}

bool too_many_subelements(const AString& name, std::uint32_t maximum, AString* error)
{
    // The %u was never a placeholder of this formatter; the text is known to users as it stands.
    return fail(error, "Tag %1 contains %u subelements. The maximum is %2.", name,
                from_u32(maximum));
}

template <typename Element>
bool read_xid(const Element& tree, AString& xid, AString* error)
{
    return Text::read(tree, tag<"xid">(), xid, error);
}

XMLTree write_text(const AString& name, const AString& text)
{
    return XMLTree(name, text);
}

XMLTree write_empty(const AString& name)
{
    return XMLTree(name);
}

XMLTree write_children(const AString& name, const XMLTreeList& children)
{
    return XMLTree(name, children);
}

namespace
{

void set_text(AString& value, const XMLTree& element)
{
    value = element.get_text();
}

// A value that has the text already is left alone: replies to one command bring the same xid.
void set_text(AString& value, const XMLPlainElement& element)
{
    const std::string_view text = element.get_text();
    const AStringRuns run(value);
    const bool is_same = value.length() == text.size() && run.count == text.size() &&
                         std::equal(text.begin(), text.end(), run.data, [](char byte, AChar c) {
                             return L1(static_cast<unsigned char>(byte)) == c;
                         });
    if (!is_same) {
        value = get_raw_text(element);
    }
}

} // namespace

template <typename Element>
bool Text::read(const Element& tree, const AString& name, AString& value, AString* error)
{
    const Element* element = get_tag(tree, name, error);
    if (element == nullptr) {
        return false;
    }
    set_text(value, *element);
    return true;
}

template <typename Element>
bool Bool::read(const Element& tree, const AString& name, bool& value, AString* error)
{
    const Element* element = get_tag(tree, name, error);
    if (element == nullptr) {
        return false;
    }
    Boolean known{};
    if (parse_word(*element, &known)) {
        value = known == word<Boolean>("true");
        return true;
    }
    std::int32_t number = 0;
    if (parse_number<to_i32>(*element, &number)) {
        value = number != 0;
        return true;
    }
    return invalid_typed_value(*element, AString("boolean"), get_trimmed_text(*element), error);
}

#define ZAVL3_READ_FROM(Element)                                                                   \
    template const Element* get_tag(const Element&, const AString&, AString*);                     \
    template bool invalid_value(const Element&, const AString&, AString*);                         \
    template bool invalid_typed_value(const Element&, const AString&, const AString&, AString*);   \
    template bool read_xid(const Element&, AString&, AString*);                                    \
    template bool Text::read(const Element&, const AString&, AString&, AString*);                  \
    template bool Bool::read(const Element&, const AString&, bool&, AString*);
ZAVL3_READ_FROM(XMLTree)
ZAVL3_READ_FROM(XMLPlainElement)
#undef ZAVL3_READ_FROM

XMLTree Bool::write(const AString& name, bool value)
{
    return write_text(name, to_wire(value ? word<Boolean>("true") : word<Boolean>("false")));
}

} // namespace ZAVL3
