#pragma once

#include "foundation/afunctionext.h"
#include "xml/xml_parse.h"

#include <string>
#include <string_view>
#include <vector>

// Trees and texts as the bytes that tests compare.

inline AString from_bytes(std::string_view utf8)
{
    return AString::from_utf8(utf8.data(), utf8.size());
}

struct ByteCollector {
    std::string bytes;
    std::vector<std::string> chunks;

    void add(const unsigned char* data, std::uint64_t count)
    {
        chunks.emplace_back(reinterpret_cast<const char*>(data), count);
        bytes += chunks.back();
    }
};

inline std::string written(const XMLTree& tree, XMLWriteMode mode = XMLWriteMode::compact,
                           bool short_empty = true)
{
    ByteCollector collector;
    tree.write(bind<&ByteCollector::add>(&collector), mode, short_empty);
    return collector.bytes;
}

inline std::vector<std::string> pieces_of(const XMLTree& tree, XMLWriteMode mode,
                                          bool short_empty = true)
{
    std::vector<std::string> pieces;
    for (const AString& piece : tree.to_pieces(mode, short_empty)) {
        pieces.push_back(piece.to_utf8());
    }
    return pieces;
}

inline XMLTree parsed(std::string_view utf8, bool* refused = nullptr)
{
    return XMLTreeBuilder::parse(from_bytes(utf8), refused);
}

// What a text comes to: the tree as it is written, or that it is refused.
inline std::string fate_of(std::string_view utf8)
{
    bool refused = false;
    const XMLTree tree = parsed(utf8, &refused);
    if (refused != tree.is_null) {
        return "refused and parsed at once";
    }
    return refused ? "refused" : written(tree);
}
