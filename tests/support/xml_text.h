#pragma once

#include "xml/xml_parse.h"

#include <stdexcept>
#include <string>

inline AString utf8(const std::string& text)
{
    return AString::from_utf8(text.data(), text.size());
}

inline XMLTree parse_xml(const std::string& text)
{
    bool refused = false;
    const XMLTree tree = XMLTreeBuilder::parse(utf8(text), &refused);
    if (refused) {
        throw std::invalid_argument("no XML of this dialect: " + text);
    }
    return tree;
}

inline std::string to_xml(const XMLTree& tree)
{
    std::string text;
    const auto append = [](void* to, const unsigned char* bytes, std::uint64_t count) {
        static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(bytes), count);
    };
    tree.write(AString::BytesDelegate(append, &text), XMLWriteMode::compact, true);
    return text;
}

inline std::string xml_element(const std::string& name, const std::string& content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}
