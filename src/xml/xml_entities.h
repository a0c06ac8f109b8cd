#pragma once

#include "xml/xml_chars.h"

#include <array>
#include <atomic>
#include <optional>
#include <string_view>

// A text that never changes: its string is made on first use, by whichever thread comes first, and
// kept for good. Usable before and after all static construction.
class XMLConstant
{
public:
    constexpr explicit XMLConstant(std::string_view content) : bytes(content) {}

    const AString& get_text();
    std::string_view get_bytes() const { return bytes; }

private:
    std::string_view bytes; // ASCII
    std::atomic<const AString*> cached{nullptr};
};

struct XMLEntity {
    AChar character;
    XMLConstant entity;
};

extern std::array<XMLEntity, 5> xml_entities;

// Replaces each of the five characters, the `&` of an existing entity too.
AString xml_escape(const AString& text);
// Replaces the five entities; every other `&` stays as it is written.
AString xml_unescape(const AString& text);
// Nothing when there is nothing to replace.
std::optional<AString> xml_unescape(XMLChars text);
