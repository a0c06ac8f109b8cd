#include "xml/xml_tree.h"

namespace
{

// Names and texts of a tree hold no more characters than these beyond their own in memory.
constexpr std::uint64_t text_slack = 32;

} // namespace

XMLTree::XMLTree(const AString& element_name)
    : is_null(false), name(element_name.compact_copy(text_slack))
{
}

XMLTree::XMLTree(const AString& element_name, const AString& content) : XMLTree(element_name)
{
    text = content.compact_copy(text_slack);
}

XMLTree::XMLTree(const AString& element_name, const XMLTreeList& elements) : XMLTree(element_name)
{
    children = elements;
}

// Through a copy, since `other` may be a part of this tree.
XMLTree& XMLTree::operator=(const XMLTree& other)
{
    return *this = XMLTree(other);
}

XMLTree& XMLTree::operator=(XMLTree&& other) noexcept
{
    XMLTree taken(std::move(other));
    std::swap(is_null, taken.is_null);
    std::swap(name, taken.name);
    std::swap(text, taken.text);
    std::swap(children, taken.children);
    std::swap(attributes, taken.attributes);
    return *this;
}

// The lists below move to the end of this one, so that in the end none is destroyed inside another.
void XMLTree::take_apart(XMLTreeList& elements)
{
    if (!elements.is_sole_owner()) {
        return;
    }
    XMLTreeList::Body& all = elements.get_writable();
    for (const auto* link = &all.head; *link; link = &(*link)->next) {
        XMLTreeList& below = (*link)->value.children;
        // An entry that an iterator holds lives on, and keeps its children.
        if (below.length() != 0 && all.is_sole_holder(*link) && below.is_sole_owner()) {
            all.splice_back(below.get_writable());
        }
    }
}

XMLTreeList& XMLTree::get_writable_children()
{
    children.get_writable();
    return children;
}

void XMLTree::add_child(const XMLTree& child)
{
    get_writable_children().push_back(child);
}

const XMLTreeList::EntryStruct* XMLTree::first_child() const
{
    return children.length() != 0 ? children.get_readable().head.get() : nullptr;
}

template <typename Visit>
void XMLTree::for_each_named(const AString& child_name, Visit visit) const
{
    visit_children(
        [&](const XMLTree& child) { return !child.has_name(child_name) || visit(child); });
}

std::uint32_t XMLTree::count_children(const AString& child_name, XMLTree* first) const
{
    std::uint32_t count = 0;
    XMLTree found;
    for_each_named(child_name, [&](const XMLTree& child) {
        if (count++ == 0 && first != nullptr) {
            found = child;
        }
        return true;
    });
    if (count != 0 && first != nullptr) {
        *first = std::move(found);
    }
    return count;
}

bool XMLTree::has_child(const AString& child_name) const
{
    bool found = false;
    for_each_named(child_name, [&found](const XMLTree&) {
        found = true;
        return false;
    });
    return found;
}

XMLTreeList XMLTree::children_named(const AString& child_name) const
{
    XMLTreeList named;
    for_each_named(child_name, [&named](const XMLTree& child) {
        named.push_back(child);
        return true;
    });
    return named;
}
