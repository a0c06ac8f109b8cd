#include "protocol/zavl3_tree.h"

#include "foundation/astringformat.h"

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

const XMLTree* get_tag(const XMLTree& tree, const AString& name, AString* error)
{
    if (tree.get_name() == name) {
        return &tree;
    }
    const XMLTree* first = nullptr;
    const bool single = for_each_child(tree, name, [&first](const XMLTree& child) {
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

AString get_raw_text(const XMLTree& tree)
{
    return tree.get_text();
}

bool invalid_value(const XMLTree& tree, const AString& value, AString* error)
{
    return fail(error, "Tag %1 contains invalid value '%2'", tree.get_name(), value);
}

bool invalid_typed_value(const XMLTree& tree, const AString& type_word, const AString& value,
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

bool read_xid(const XMLTree& tree, AString& xid, AString* error)
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

bool Text::read(const XMLTree& tree, const AString& name, AString& value, AString* error)
{
    const XMLTree* element = get_tag(tree, name, error);
    if (element == nullptr) {
        return false;
    }
    value = get_raw_text(*element);
    return true;
}

bool Bool::read(const XMLTree& tree, const AString& name, bool& value, AString* error)
{
    const XMLTree* element = get_tag(tree, name, error);
    if (element == nullptr) {
        return false;
    }
    const ATrimmed text(element->get_text());
    Boolean known{};
    if (from_wire(*text, &known)) {
        value = known == word<Boolean>("true");
        return true;
    }
    std::int32_t number = 0;
    if (to_i32(*text, &number)) {
        value = number != 0;
        return true;
    }
    return invalid_typed_value(*element, AString("boolean"), *text, error);
}

XMLTree Bool::write(const AString& name, bool value)
{
    return write_text(name, to_wire(value ? word<Boolean>("true") : word<Boolean>("false")));
}

} // namespace ZAVL3
