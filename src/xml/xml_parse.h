#pragma once

#include "foundation/astring_table.h"
#include "xml/xml_parse_search.h"
#include "xml/xml_parse_tag.h"
#include "xml/xml_plain.h"
#include "xml/xml_text_pack.h"
#include "xml/xml_tree.h"

#include <optional>
#include <string>
#include <vector>

// An element between its open and its close tag.
struct XMLOpenElement {
    XMLChars name;
    // As it was received. Text in several pieces stands around children and must be blank, so no
    // more than the first piece is ever wanted.
    XMLChars text;
    bool text_is_blank = true;  // of all pieces
    XMLTreeList::Entry element; // in the making; it has its children and attributes
};

// Parses the text of one element. Its room is used again for the next one. Reading a well-known
// name or word costs no text of its own: the string is that of the table. None there has a
// character that is escaped.
class XMLTreeBuilder
{
public:
    explicit XMLTreeBuilder(const AStringTable* names = nullptr);

    // The null tree when the text is refused; `refused`, if given, tells.
    static XMLTree parse(const AString& text, bool* refused = nullptr,
                         const AStringTable* names = nullptr);
    XMLTree parse(const XMLFlatText& flat_text, bool* refused);

private:
    void forget();
    void step();
    void add_text(XMLChars piece, bool is_space);
    void open_element(const XMLTag& tag);
    void close_element(const XMLTag& tag);
    bool set_known(AString& string, XMLChars chars) const;
    void set_name(XMLTree& tree, XMLChars name) const;
    void set_text(XMLTree& tree, XMLChars content);

    const AStringTable* known_names; // may be null
    const XMLFlatText* source = nullptr;
    XMLChars text;
    std::size_t pos = 0;
    bool error = false;
    bool done = false;
    XMLTree result;
    std::vector<XMLOpenElement> stack; // innermost last
    XMLTextPack short_texts;
};

// Finds complete elements in a stream of bytes that has no other framing, looking only for the open
// and close tags of a few root names. The first close tag of a root's name ends it. What stands
// before a root goes with it without any word.
class XMLParser
{
public:
    // `size` bytes are held at most; an element with the junk before it must fit.
    explicit XMLParser(std::uint64_t size);

    void add_root_tag(const std::string& tag);
    // Once, with all root tags added and in the table.
    void use_known_names(const AStringTable& names);
    // The bytes taken: fewer than offered when the buffer is full, all of them when the stream has
    // failed, for then they are swallowed.
    std::uint64_t feed(const void* bytes, std::uint64_t count);
    // The next complete element, or the null tree.
    XMLTree next_element();
    // The same where the element is plain, and the names are known: nearly always, and much faster.
    // Null for none; `next_element` may then have one. It lives until the next `feed`.
    const XMLPlainElement* next_plain_element();
    // A refused element was met. The stream stays stuck at it until `reset`.
    bool has_failed() const { return failed; }
    void reset();

private:
    struct RootTag {
        std::string name;
        XMLTagSearch open{false};
        XMLTagSearch close{true};
    };

    const unsigned char* held() const { return buf.data() + consumed; }
    RootTag* find_first_root();
    RootTag* find_first_root_before(std::uint64_t limit);
    void restart_plain();
    void drop_front(std::uint64_t count);

    std::vector<unsigned char> buf;
    std::uint64_t consumed = 0; // bytes at the front of `buf` that are done with
    std::uint64_t buflen = 0;   // bytes behind them
    std::uint64_t bufsize;
    bool failed = false;
    std::vector<RootTag> root_tags;
    XMLFlatText text; // of the element that is parsed
    XMLTreeBuilder builder;
    std::optional<XMLPlainParser> plain_parser;
    bool next_is_plain = true;          // as far as is known
    std::uint64_t incomplete_bytes = 0; // so many hold no complete element
};
