#include "xml/xml_chars.h"

#include "foundation/astring_runs.h"
#include "foundation/utf8_text.h"

XMLChars trim_left(XMLChars text)
{
    while (!text.empty() && is_space(text.front())) {
        text = text.subspan(1);
    }
    return text;
}

XMLChars trim_right(XMLChars text)
{
    while (!text.empty() && is_space(text.back())) {
        text = text.first(text.size() - 1);
    }
    return text;
}

XMLFlatText::XMLFlatText(const AString& string) : text(string)
{
    AStringRuns run(text);
    if (run.count == text.length()) {
        chars = XMLChars(run.data, run.count);
        return;
    }
    own.reserve(text.length());
    for (; !run.at_end(); run.next_run()) {
        own.insert(own.end(), run.data, run.data + run.count);
    }
    chars = own;
}

void XMLFlatText::decode(const unsigned char* bytes, std::uint64_t count)
{
    text = AString();
    if (own.size() < count) {
        own.resize(count); // no character is more than one byte
    }
    AChar* room = own.data();
    decode_utf8(
        bytes, count,
        [&room](const unsigned char* run, std::uint64_t length) {
            widen(run, length, room);
            room += length;
        },
        [&room](AChar c) { *room++ = c; });
    chars = XMLChars(own.data(), room);
}

AString XMLFlatText::keep(XMLChars stretch, std::uint64_t slack) const
{
    if (stretch.empty()) {
        return AString();
    }
    if (can_share(stretch, slack)) {
        return text.mid(static_cast<std::uint64_t>(stretch.data() - chars.data()), stretch.size());
    }
    return AString::from_chars(stretch.data(), stretch.size());
}
