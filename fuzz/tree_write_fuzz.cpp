// A tree made as the input says, written and read again: by this library, and by another parser,
// which must see the same.

#include "fuzz/check.h"
#include "fuzz/trees.h"
#include "xml/xml_texts.h"

#include <cstring>
#include <pugixml.hpp>

namespace
{

using Bytes = std::string_view;

Bytes take(Bytes& input, std::size_t count)
{
    const Bytes taken = input.substr(0, count);
    input.remove_prefix(taken.size());
    return taken;
}

std::uint8_t take_byte(Bytes& input)
{
    const Bytes taken = take(input, 1);
    return taken.empty() ? 0 : static_cast<std::uint8_t>(taken.front());
}

AString make_name(std::uint8_t choice)
{
    constexpr const char* names[] = {"a", "B", "reply", "report", "x_1", "Key"};
    return AString(names[choice % std::size(names)]);
}

// Without what an attribute cannot hold: it is not quoted for the reader.
AString make_attribute(Bytes bytes)
{
    std::string value(bytes);
    std::erase_if(value, [](char c) { return c < '!' || std::strchr("='<>\"&", c) != nullptr; });
    return AString(value.data(), value.size());
}

XMLTree make_leaf(Bytes& input, std::uint8_t kind)
{
    // Twice, as not all that is read can be written.
    const std::string text = from_bytes(take(input, take_byte(input))).to_utf8();
    XMLTree leaf(make_name(kind / 8), from_bytes(text));
    if (kind % 8 == 7) {
        leaf.attributes[make_name(take_byte(input))] = make_attribute(take(input, kind / 8));
    }
    return leaf;
}

// The first close tag of the root's name ends it, so no other element has that. Every byte opens
// an element, closes one or adds a leaf; the rest of a leaf follows it.
XMLTree make_tree(Bytes input)
{
    std::vector<XMLTree> open{XMLTree(AString("root"))};
    while (!input.empty()) {
        const std::uint8_t kind = take_byte(input);
        if (kind % 8 <= 2) {
            open.emplace_back(make_name(kind / 8));
        } else if (kind % 8 == 3 && open.size() > 1) {
            const XMLTree closed = std::move(open.back());
            open.pop_back();
            open.back().add_child(closed);
        } else {
            open.back().add_child(make_leaf(input, kind));
        }
    }
    while (open.size() > 1) {
        const XMLTree closed = std::move(open.back());
        open.pop_back();
        open.back().add_child(closed);
    }
    return open.front();
}

// The size of an element in a stream is limited, but the parser takes what it is told to.
XMLTree read(const std::string& bytes)
{
    XMLParser parser(bytes.size() + 1);
    parser.add_root_tag("root");
    FUZZ_CHECK(parser.feed(bytes.data(), bytes.size()) == bytes.size());
    return parser.next_element();
}

void check_same(const XMLTree& root, const pugi::xml_node& root_node)
{
    std::vector<std::pair<const XMLTree*, pugi::xml_node>> pairs{{&root, root_node}};
    while (!pairs.empty()) {
        const auto [tree, node] = pairs.back();
        pairs.pop_back();
        FUZZ_CHECK(tree->name.to_utf8() == node.name());
        FUZZ_CHECK(tree->text.to_utf8() == node.text().get());
        for (const auto& [name, value] : tree->attributes) {
            FUZZ_CHECK(value.to_utf8() == node.attribute(name.to_utf8().c_str()).value());
        }
        pugi::xml_node other = node.first_child();
        for (const auto* child = tree->first_child(); child != nullptr; child = child->next.get()) {
            FUZZ_CHECK(other.type() == pugi::node_element);
            pairs.emplace_back(&child->value, other);
            other = other.next_sibling();
        }
        FUZZ_CHECK(tree->children.length() == 0 || !other);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const XMLTree tree = make_tree(fuzz::text_of(data, size));
    for (const XMLWriteMode mode :
         {XMLWriteMode::compact, XMLWriteMode::lines, XMLWriteMode::indented}) {
        for (const bool short_empty : {false, true}) {
            const bool has_close_tag = !short_empty || tree.first_child() != nullptr;
            const std::string bytes = written(tree, mode, short_empty);
            if (has_close_tag) { // as all elements of a stream have
                FUZZ_CHECK(fuzz::same_tree(read(bytes), tree));
            }
            pugi::xml_document document;
            FUZZ_CHECK(document.load_buffer(bytes.data(), bytes.size(),
                                            pugi::parse_escapes | pugi::parse_ws_pcdata_single,
                                            pugi::encoding_utf8));
            check_same(tree, document.document_element());
        }
    }
    return 0;
}
