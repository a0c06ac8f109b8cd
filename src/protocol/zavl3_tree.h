#pragma once

#include "foundation/anumber.h"
#include "protocol/zavl3_tag.h"
#include "protocol/zavl3_types.h"
#include "xml/xml_plain.h"
#include "xml/xml_tree.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

// How the value of an element is read, and written to a tree. A reader returns false with its text
// in `error`, when that is given, and leaves the value partly written; writers cannot fail.
//
// An Element is an XMLPlainElement, read where it was received, or an XMLTree. The names given to
// readers are those of `tag`.
namespace ZAVL3
{

// The element itself when it has the name, else its one child of that name; null on failure.
template <typename Element>
const Element* get_tag(const Element& tree, const AString& name, AString* error);
AString get_trimmed_text(const XMLTree& tree);
AString get_trimmed_text(const XMLPlainElement& element);
AString get_raw_text(const XMLTree& tree);
AString get_raw_text(const XMLPlainElement& element);
template <typename Element>
bool invalid_value(const Element& tree, const AString& value, AString* error);
template <typename Element>
bool invalid_typed_value(const Element& tree, const AString& type_word, const AString& value,
                         AString* error);
bool too_many_subelements(const AString& name, std::uint32_t maximum, AString* error);
template <typename Element>
bool read_xid(const Element& tree, AString& xid, AString* error);

// The direct children of `element` with this name, in order, until `visit` says false.
template <typename Element, typename Visit>
bool for_each_child(const Element& element, const AString& name, Visit visit)
{
    return element.visit_children(
        [&](const Element& child) { return !child.has_name(name) || visit(child); });
}

template <typename Element>
bool has_child(const Element& element, const AString& name)
{
    return !for_each_child(element, name, [](const Element&) { return false; });
}

XMLTree write_text(const AString& name, const AString& text);
XMLTree write_empty(const AString& name);
XMLTree write_children(const AString& name, const XMLTreeList& children);

// The codecs: what the text or the children of an element mean. Each has a value_type, `read`,
// given the element or its parent, and `write`.

// Texts are kept as they stand, white space included; all else is trimmed.
struct Text {
    using value_type = AString;
    template <typename Element>
    static bool read(const Element& tree, const AString& name, AString& value, AString* error);
    static XMLTree write(const AString& name, const AString& value)
    {
        return write_text(name, value);
    }
};

struct Bool {
    using value_type = bool;
    // "true", "false", or a number that is not 0 or 0.
    template <typename Element>
    static bool read(const Element& tree, const AString& name, bool& value, AString* error);
    static XMLTree write(const AString& name, bool value);
};

// The white space around a number is left out.
template <auto Parse, typename T>
bool parse_number(const XMLTree& element, T* value)
{
    return Parse(element.get_text(), value);
}

template <auto Parse, typename T>
bool parse_number(const XMLPlainElement& element, T* value)
{
    return take_short_decimal(element.get_text(), value) || Parse(get_raw_text(element), value);
}

template <typename T, bool (*Parse)(const AString&, T*), AString (*Format)(T)>
struct Number {
    using value_type = T;

    template <typename Element>
    static bool read(const Element& tree, const AString& name, T& value, AString* error)
    {
        const Element* element = get_tag(tree, name, error);
        if (element == nullptr) {
            return false;
        }
        return parse_number<Parse>(*element, &value) ||
               invalid_value(*element, get_trimmed_text(*element), error);
    }

    static XMLTree write(const AString& name, T value) { return write_text(name, Format(value)); }
};

template <typename T>
AString decimal(T value)
{
    if constexpr (std::is_signed_v<T>) {
        return from_i64(value);
    } else {
        return from_u64(value);
    }
}

inline AString fixed_text(fract16 value)
{
    constexpr std::uint32_t digits = 15;
    return from_fract16(value, digits);
}

using U8 = Number<std::uint8_t, to_u8, decimal>;
using U16 = Number<std::uint16_t, to_u16, decimal>;
using U32 = Number<std::uint32_t, to_u32, decimal>;
using U64 = Number<std::uint64_t, to_u64, decimal>;
using I32 = Number<std::int32_t, to_i32, decimal>;
using Fixed = Number<fract16, to_fract16, fixed_text>;

inline std::string_view trimmed(std::string_view ascii)
{
    const auto blank = [](char c) { return is_space(L1(static_cast<unsigned char>(c))); };
    while (!ascii.empty() && blank(ascii.front())) {
        ascii.remove_prefix(1);
    }
    while (!ascii.empty() && blank(ascii.back())) {
        ascii.remove_suffix(1);
    }
    return ascii;
}

template <typename E>
bool parse_word(const XMLTree& element, E* value)
{
    return from_wire(*ATrimmed(element.get_text()), value);
}

template <typename E>
bool parse_word(const XMLPlainElement& element, E* value)
{
    return from_wire(trimmed(element.get_text()), value);
}

template <typename E>
struct Word {
    using value_type = E;

    // The failure names the enclosing element and the tag, not the word. Users match on that text.
    template <typename Element>
    static bool read(const Element& tree, const AString& name, E& value, AString* error)
    {
        const Element* element = get_tag(tree, name, error);
        if (element == nullptr) {
            return false;
        }
        return parse_word(*element, &value) || invalid_value(tree, name, error);
    }

    static XMLTree write(const AString& name, E value) { return write_text(name, to_wire(value)); }
};

// An element that says all by being there.
struct Presence {
    using value_type = bool;
};

// An element with the fields of a Record as its children.
template <typename Fields>
struct Composite {
    using value_type = Fields;

    template <typename Element>
    static bool read(const Element& tree, const AString& name, Fields& value, AString* error)
    {
        const Element* element = get_tag(tree, name, error);
        return element != nullptr && value.read_composite(*element, error);
    }

    static XMLTree write(const AString& name, const Fields& value)
    {
        return write_children(name, value.write());
    }
};

// An element with any number of children of one name.
template <FixedString Item, typename ItemCodec>
struct List {
    using item_type = typename ItemCodec::value_type;
    using value_type = std::vector<item_type>;

    template <typename Element>
    static bool read(const Element& tree, const AString& name, value_type& value, AString* error)
    {
        const Element* element = get_tag(tree, name, error);
        if (element == nullptr) {
            return false;
        }
        value.clear();
        return for_each_child(*element, tag<Item>(), [&](const Element& child) {
            item_type item{};
            const bool good = ItemCodec::read(child, tag<Item>(), item, error);
            value.push_back(std::move(item));
            return good;
        });
    }

    static XMLTree write(const AString& name, const value_type& value)
    {
        XMLTreeList children;
        for (const item_type& item : value) {
            children.push_back(ItemCodec::write(tag<Item>(), item));
        }
        return write_children(name, children);
    }
};

// The same with a bound, that of the value. Too many children fail the read before the first one.
template <typename Value, FixedString Item, typename ItemCodec>
struct Vector {
    using value_type = Value;

    template <typename Element>
    static bool read(const Element& tree, const AString& name, Value& value, AString* error)
    {
        const Element* element = get_tag(tree, name, error);
        if (element == nullptr) {
            return false;
        }
        value.count = 0;
        std::uint32_t items = 0;
        for_each_child(*element, tag<Item>(), [&items](const Element&) { return ++items != 0; });
        if (items > Value::bound) {
            return too_many_subelements(name, Value::bound, error);
        }
        return for_each_child(*element, tag<Item>(), [&](const Element& child) {
            return ItemCodec::read(child, tag<Item>(), value.vec[value.count++], error);
        });
    }

    static XMLTree write(const AString& name, const Value& value)
    {
        XMLTreeList children;
        A_CHECK("zavl3_tree", value.count <= Value::bound);
        const std::uint32_t used = std::min(value.count, Value::bound);
        for (std::uint32_t i = 0; i < used; ++i) {
            children.push_back(ItemCodec::write(tag<Item>(), value.vec[i]));
        }
        return write_children(name, children);
    }
};

} // namespace ZAVL3
