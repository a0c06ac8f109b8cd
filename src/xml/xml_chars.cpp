#include "xml/xml_chars.h"

#include "foundation/astring_runs.h"

#include <algorithm>

bool is_blank(XMLChars text)
{
    return std::all_of(text.begin(), text.end(), [](AChar c) { return is_space(c); });
}

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

bool same_chars(XMLChars a, XMLChars b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

XMLFlatText::XMLFlatText(const AString& string) : text(string)
{
    AStringRuns run(text);
    if (run.count == text.length()) {
        chars = XMLChars(run.data, run.count);
        return;
    }
    copied.reserve(text.length());
    for (; !run.at_end(); run.next_run()) {
        copied.insert(copied.end(), run.data, run.data + run.count);
    }
    chars = copied;
}

AString XMLFlatText::keep(XMLChars stretch, std::uint64_t slack) const
{
    if (stretch.empty()) {
        return AString();
    }
    if (text.storage->total_len - stretch.size() <= slack) {
        return text.mid(static_cast<std::uint64_t>(stretch.data() - chars.data()), stretch.size());
    }
    return AString::from_chars(stretch.data(), stretch.size());
}
