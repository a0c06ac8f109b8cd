#pragma once

#include "foundation/astring_table.h"

#include <string_view>
#include <vector>

// An element that is read where it was received, without a tree.
class XMLPlainElement
{
public:
    // A constant of the table of known names; empty for a name that it does not hold.
    const AString& get_name() const;
    // `constant` is one of that table.
    bool has_name(const AString& constant) const { return name_storage == constant.storage.get(); }
    std::string_view get_text() const { return text; } // ASCII

    // Calls `visit` with each child, in order, until it says false; tells whether it never did.
    template <typename Visit>
    bool visit_children(Visit visit) const
    {
        for (const XMLPlainElement* child = first_child(); child != nullptr;
             child = child->next()) {
            if (!visit(*child)) {
                return false;
            }
        }
        return true;
    }

private:
    friend class XMLPlainParser;

    const XMLPlainElement* first_child() const { return has_children ? this + 1 : nullptr; }
    const XMLPlainElement* next() const { return to_next != 0 ? this + to_next : nullptr; }

    const AStringStorage* name_storage = nullptr; // of the constant; null if it is none
    const AStringTable::Entry* known = nullptr;   // the same
    std::string_view name;
    std::string_view text;     // of an element without children
    std::uint32_t parent = 0;  // its number
    std::uint32_t to_next = 0; // from this element to the next of the same parent; 0: none
    bool has_children = false;
};

// Reads the elements of the plain form, as nearly all are that servers send, in one pass: ASCII,
// without attributes, entities, or white space within a tag but for one before the slash of an
// empty element. Gives up at anything else, right or wrong: that is for XMLTreeBuilder to say.
class XMLPlainParser
{
public:
    enum class Outcome { complete, incomplete, not_plain };

    explicit XMLPlainParser(const AStringTable& names) : known_names(names) {}

    // Does nothing for a name that is not known.
    void add_root_tag(std::string_view name);

    // What comes next begins another message.
    void restart() { at = nullptr; }
    // Reads on. The bytes are those of the last call, where they were, and what has come since;
    // the first ones may be blank.
    Outcome parse(const char* bytes, std::uint64_t byte_count);

    // Of a complete message. It lives as long as its bytes, until the next message is begun.
    const XMLPlainElement& get_root() const { return elements.front(); }
    const char* get_end() const { return at; } // behind the message

private:
    static constexpr std::uint32_t none = 0xFFFFFFFFu;

    Outcome take_tag();
    Outcome take_close_tag();
    Outcome take_open_tag();
    void skip_text();
    const AStringTable::Entry* expected_name() const;
    std::string_view scan_name() const;
    bool may_open(const AStringTable::Entry* known, bool is_empty) const;
    void open_element(std::string_view name, const AStringTable::Entry* known);
    void close_element();
    void go_behind_tag(const char* behind);

    const AStringTable& known_names;
    std::vector<const AStringTable::Entry*> root_names;
    // In the order of their tags. Those of the last message stay until they are written over: each
    // tells the likely name of the one that takes its place.
    std::vector<XMLPlainElement> elements;
    std::uint32_t count = 0;
    std::uint32_t innermost = none; // of the open elements
    std::uint32_t previous = none;  // the child of the innermost one that was closed last
    const char* at = nullptr;       // null before the first byte of a message
    const char* end = nullptr;      // of the bytes there are
    const char* text_start = nullptr;
    bool text_is_blank = true; // from there on
};
