#include "xml/xml_parse.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr std::uint64_t default_size = 1024;
constexpr std::uint64_t first_look = 64;

} // namespace

XMLParser::XMLParser(std::uint64_t size)
    : bufsize(A_CHECK("xml_parse", size != 0) ? size : default_size)
{
    buf.resize(bufsize);
}

void XMLParser::add_root_tag(const std::string& tag)
{
    root_tags.push_back(RootTag{tag});
}

void XMLParser::use_known_names(const AStringTable& names)
{
    builder = XMLTreeBuilder(&names);
    plain_parser.emplace(names);
    for (const RootTag& root : root_tags) {
        plain_parser->add_root_tag(root.name);
    }
}

std::uint64_t XMLParser::feed(const void* bytes, std::uint64_t count)
{
    if (failed) {
        return count;
    }
    const std::uint64_t taken = std::min(count, bufsize - buflen);
    if (taken == 0) {
        return 0;
    }
    if (bufsize - consumed - buflen < taken) {
        std::memmove(buf.data(), held(), buflen);
        consumed = 0;
        restart_plain();
    }
    std::memcpy(buf.data() + consumed + buflen, bytes, taken);
    buflen += taken;
    return taken;
}

const XMLPlainElement* XMLParser::next_plain_element()
{
    if (failed || !plain_parser || !next_is_plain) {
        return nullptr;
    }
    const char* const bytes = reinterpret_cast<const char*>(held());
    switch (plain_parser->parse(bytes, buflen)) {
    case XMLPlainParser::Outcome::complete:
        drop_front(static_cast<std::uint64_t>(plain_parser->get_end() - bytes));
        return &plain_parser->get_root();
    case XMLPlainParser::Outcome::incomplete:
        incomplete_bytes = buflen;
        return nullptr;
    default:
        next_is_plain = false;
        return nullptr;
    }
}

XMLTree XMLParser::next_element()
{
    if (failed || (buflen != 0 && incomplete_bytes == buflen)) {
        return XMLTree();
    }
    RootTag* root = find_first_root();
    if (root == nullptr || !root->close.find(root->name, held(), buflen, buflen)) {
        return XMLTree();
    }
    const std::uint64_t start = root->open.get_start();
    const std::uint64_t end = root->close.get_end();
    text.decode(held() + start, end - start);
    XMLTree tree = builder.parse(text, &failed);
    if (!failed) {
        drop_front(end);
    }
    return tree;
}

// The one whose open tag stands first. Looks at a little more at a time, so that one name is not
// looked for in all that is held while another stands right in front.
XMLParser::RootTag* XMLParser::find_first_root()
{
    RootTag* first = nullptr;
    for (std::uint64_t limit = first_look; first == nullptr; limit *= 2) {
        first = find_first_root_before(std::min(limit, buflen));
        if (limit >= buflen) {
            break;
        }
    }
    return first;
}

XMLParser::RootTag* XMLParser::find_first_root_before(std::uint64_t limit)
{
    RootTag* first = nullptr;
    for (RootTag& root : root_tags) {
        const bool was_found = root.open.is_found();
        if (!root.open.find(root.name, held(), buflen, limit)) {
            continue;
        }
        const std::uint64_t start = root.open.get_start();
        if (!was_found) {
            root.close.restart(start);
        }
        if (start < limit) {
            limit = start;
            first = &root;
        }
    }
    return first;
}

void XMLParser::restart_plain()
{
    if (plain_parser) {
        plain_parser->restart();
    }
}

void XMLParser::drop_front(std::uint64_t count)
{
    restart_plain();
    next_is_plain = true;
    incomplete_bytes = 0;
    for (RootTag& root : root_tags) {
        root.open.drop_front(count);
        root.close.drop_front(count);
    }
    buflen -= count;
    consumed = buflen == 0 ? 0 : consumed + count;
}

void XMLParser::reset()
{
    drop_front(buflen);
    failed = false;
}
