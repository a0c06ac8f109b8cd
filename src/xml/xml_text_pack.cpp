#include "xml/xml_text_pack.h"

#include <new>

void XMLTextPack::add(XMLChars text, AString* string)
{
    if (text.empty()) {
        return;
    }
    if (!texts.empty() && total + text.size() - std::min(shortest, text.size()) > slack) {
        flush();
    }
    shortest = texts.empty() ? text.size() : std::min(shortest, text.size());
    total += text.size();
    texts.push_back({text, string});
}

void XMLTextPack::flush()
{
    if (texts.empty()) {
        return;
    }
    AStringBuilder builder;
    for (const Text& text : texts) {
        if (!builder.append(text.chars.data(), text.chars.size())) {
            throw std::bad_alloc(); // or texts would have pieces of others
        }
    }
    const AString all = builder.finish();
    std::uint64_t at = 0;
    for (const Text& text : texts) {
        *text.string = all.mid(at, text.chars.size());
        at += text.chars.size();
    }
    clear();
}

void XMLTextPack::clear()
{
    texts.clear();
    total = 0;
}
