#pragma once

#include "xml/xml_chars.h"

// Makes the strings of the short texts of a message: several share a storage, as long as none of
// them then has more than `slack` characters in memory beyond its own.
class XMLTextPack
{
public:
    explicit XMLTextPack(std::uint64_t text_slack) : slack(text_slack) {}

    // Sets `*string`, which stays where it is, by the next `flush` at the latest.
    void add(XMLChars text, AString* string);
    void flush();
    // Forgets what is not set yet.
    void clear();

private:
    struct Text {
        XMLChars chars;
        AString* string;
    };

    std::uint64_t slack;
    std::vector<Text> texts; // none of them is empty
    std::uint64_t total = 0;
    std::uint64_t shortest = 0;
};
