#include "xml/xml_entities.h"

#include "foundation/astring_runs.h"

#include <algorithm>
#include <memory>

constinit std::array<XMLEntity, 5> xml_entities{{
    {L1('\''), XMLConstant("&apos;")},
    {L1('<'), XMLConstant("&lt;")},
    {L1('>'), XMLConstant("&gt;")},
    {L1('"'), XMLConstant("&quot;")},
    {L1('&'), XMLConstant("&amp;")},
}};

const AString& XMLConstant::get_text()
{
    const AString* text = cached.load(std::memory_order_acquire);
    if (text == nullptr) {
        auto made = std::make_unique<const AString>(bytes.data(), bytes.size());
        if (cached.compare_exchange_strong(text, made.get())) {
            text = made.release();
        }
    }
    return *text;
}

namespace
{

constexpr AChar ampersand = L1('&');

constexpr std::uint64_t bit_of(char character)
{
    return std::uint64_t{1} << character;
}

// All five lie below 64.
constexpr std::uint64_t special_characters =
    bit_of('\'') | bit_of('<') | bit_of('>') | bit_of('"') | bit_of('&');

// A function object, so that the loops that take it have it inline.
constexpr auto is_special = [](AChar c) { return c < 64 && (special_characters >> c & 1) != 0; };

XMLConstant& entity_of(AChar character)
{
    return std::find_if(xml_entities.begin(), xml_entities.end(),
                        [character](const XMLEntity& row) { return row.character == character; })
        ->entity;
}

// The entity that stands at the start of `text`, if one does.
const XMLEntity* entity_at(XMLChars text)
{
    for (const XMLEntity& row : xml_entities) {
        const std::string_view name = row.entity.get_bytes();
        if (text.size() >= name.size() &&
            std::equal(name.begin(), name.end(), text.begin(),
                       [](char a, AChar b) { return L1(static_cast<unsigned char>(a)) == b; })) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace

AString xml_escape(const AString& text)
{
    AStringRuns run(text);
    if (!run.find_if(is_special)) {
        return text;
    }
    AStringBuilder escaped;
    for (run = AStringRuns(text); !run.at_end();) {
        const AChar* end = run.data + run.count;
        const AChar* special = std::find_if(run.data, end, is_special);
        escaped.append(run.data, static_cast<std::uint64_t>(special - run.data));
        if (special == end) {
            run.next_run();
            continue;
        }
        escaped.append(entity_of(*special).get_text());
        run.skip(static_cast<std::uint64_t>(special - run.data) + 1);
    }
    return escaped.finish();
}

std::optional<AString> xml_unescape(XMLChars text)
{
    std::optional<AStringBuilder> replaced;
    const AChar* done_to = text.data();
    const AChar* const end = done_to + text.size();
    for (const AChar* at = done_to; (at = std::find(at, end, ampersand)) != end;) {
        const XMLEntity* row = entity_at(XMLChars(at, end));
        if (row == nullptr) {
            ++at;
            continue;
        }
        if (!replaced) {
            replaced.emplace();
        }
        replaced->append(done_to, static_cast<std::uint64_t>(at - done_to));
        replaced->append(row->character);
        at += row->entity.get_bytes().size();
        done_to = at;
    }
    if (!replaced) {
        return std::nullopt;
    }
    replaced->append(done_to, static_cast<std::uint64_t>(end - done_to));
    return replaced->finish();
}

AString xml_unescape(const AString& text)
{
    if (text.find(ampersand) < 0) {
        return text;
    }
    return xml_unescape(XMLFlatText(text).get_chars()).value_or(text);
}
