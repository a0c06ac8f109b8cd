#pragma once

#include "foundation/ns_list.h"
#include "xml/xml_tree.h"

#include <utility>
#include <vector>

namespace fuzz
{

// Compared by a loop, as inputs nest deep.
inline bool same_tree(const XMLTree& first, const XMLTree& second)
{
    std::vector<std::pair<const XMLTree*, const XMLTree*>> pairs{{&first, &second}};
    while (!pairs.empty()) {
        const auto [a, b] = pairs.back();
        pairs.pop_back();
        if (a->is_null != b->is_null || !(a->name == b->name) || !(a->text == b->text) ||
            !(a->attributes == b->attributes) || a->children.length() != b->children.length()) {
            return false;
        }
        const auto* other = b->first_child();
        for (const auto* child = a->first_child(); child != nullptr; child = child->next.get()) {
            pairs.emplace_back(&child->value, &other->value);
            other = other->next.get();
        }
    }
    return true;
}

} // namespace fuzz
