#pragma once

#include "foundation/astring.h"
#include "foundation/ns_list.h"
#include "xml/xml_attributes.h"
#include "xml/xml_entities.h"

class XMLTree;
using XMLTreeList = nonstd_list<XMLTree>;

// Layout of the output.
enum class XMLWriteMode {
    compact = 0,
    lines = 1,    // a line break around every child element
    indented = 2, // as lines, and 4 spaces a level
};

// An XML element as a value: either text or children, and attributes. Copies share them.
class XMLTree
{
public:
    XMLTree() = default; // the null tree: the absence of an element
    explicit XMLTree(const AString& element_name);
    XMLTree(const AString& element_name, const AString& content);
    XMLTree(const AString& element_name, const XMLTreeList& elements);
    XMLTree(const XMLTree& other) = default;
    XMLTree(XMLTree&& other) noexcept = default;
    XMLTree& operator=(const XMLTree& other);
    XMLTree& operator=(XMLTree&& other) noexcept;
    ~XMLTree()
    {
        if (children.length() != 0) {
            take_apart(children);
        }
    }

    const AString& get_name() const { return name; }
    const AString& get_text() const { return text; }
    const XMLTreeList& get_children() const { return children; }
    XMLTreeList& get_writable_children();
    void add_child(const XMLTree& child);
    // The number of direct children with this name; the first goes to `first` if that is given.
    std::uint32_t count_children(const AString& child_name, XMLTree* first = nullptr) const;
    bool has_child(const AString& child_name) const;
    bool has_name(const AString& other) const { return name == other; }
    // Calls `visit` with each direct child, in order, until it says false; tells whether it never
    // did. Does not make the list.
    template <typename Visit>
    bool visit_children(Visit visit) const
    {
        for (const auto* entry = first_child(); entry != nullptr; entry = entry->next.get()) {
            if (!visit(entry->value)) {
                return false;
            }
        }
        return true;
    }
    XMLTreeList children_named(const AString& child_name) const;

    AStringList to_pieces(XMLWriteMode mode, bool short_empty) const;
    void write(const AString::BytesDelegate& sink, XMLWriteMode mode, bool short_empty) const;

    // The first entry of the children for code that walks them; does not make their list.
    const XMLTreeList::EntryStruct* first_child() const;

    bool is_null = true;
    AString name;
    AString text;
    XMLTreeList children;
    XMLAttributes attributes;

private:
    // Destroys what only `elements` refers to, in a loop: a message can nest deeper than a worker's
    // stack.
    static void take_apart(XMLTreeList& elements);

    template <typename Visit>
    void for_each_named(const AString& child_name, Visit visit) const;
};
