#include "foundation/aassert.h"
#include "foundation/astring.h"
#include "foundation/astring_runs.h"

#include <bitset>

// Searches by cyclic agreement: the character `i` of the needle, looked for where the candidate
// would have it, either agrees with the candidate or moves it on to where that character implies;
// a candidate that a whole round agreed with is the place. No place is missed, as a candidate only
// moves over places that one character rules out. The walk goes forward from the candidate, which
// has its own place in the runs, so nothing is located again.
static std::int64_t find_needle(AStringRuns at_candidate, const AString& needle)
{
    std::uint64_t candidate = at_candidate.position();
    std::uint64_t agreed = 0;
    std::uint64_t i = 0;
    const AStringRuns needle_start(needle);
    AStringRuns wanted = needle_start;
    AStringRuns at = at_candidate;
    while (at.find(wanted.current())) {
        // In 32 bits, as positions are: what does not fit is reported.
        const std::uint64_t implied = static_cast<std::uint32_t>(at.position() - i);
        if (!A_CHECK("astring", implied >= candidate)) {
            return -1;
        }
        if (implied != candidate) {
            at_candidate.skip(implied - candidate);
            candidate = implied;
            agreed = 0;
        }
        if (++agreed == needle.length()) {
            return static_cast<std::int64_t>(candidate);
        }
        ++i;
        wanted.skip(1);
        at.skip(1);
        if (i == needle.length()) {
            i = 0;
            wanted = needle_start;
            at = at_candidate;
        }
    }
    return -1;
}

std::int64_t AString::find(AChar c, std::uint64_t from) const
{
    AStringRuns at(*this, from);
    return at.find(c) ? static_cast<std::int64_t>(at.position()) : -1;
}

std::int64_t AString::find(const AString& needle, std::uint64_t from) const
{
    if (needle.is_empty()) {
        return 0;
    }
    const AStringRuns start(*this, from);
    return start.at_end() ? -1 : find_needle(start, needle);
}

AStringList AString::split_with(const Finder& finder, bool keep_empties, bool keep_separators) const
{
    AStringList pieces;
    if (is_empty()) {
        return pieces;
    }
    if (finder.is_empty()) {
        pieces.push_back(*this);
        return pieces;
    }
    for (std::uint64_t pos = 0;;) {
        std::int64_t position = -1;
        std::uint64_t length = 1;
        finder(this, pos, &position, &length);
        const std::uint64_t found = static_cast<std::uint64_t>(position);
        // A find that went back would be found for ever.
        if (position < 0 || !A_CHECK("astring", found >= pos)) {
            const AString remainder = drop_left(pos);
            if (!remainder.is_empty() || keep_empties) {
                pieces.push_back(remainder);
            }
            return pieces;
        }
        if (found > pos || keep_empties) {
            pieces.push_back(mid(pos, found - pos));
        }
        if (keep_separators && length > 0) {
            pieces.push_back(mid(found, length));
        }
        pos = found + std::max<std::uint64_t>(length, 1);
    }
}

namespace
{

// The finders keep their place in the text, so a split walks the text once.
struct TextFinder {
    AStringRuns at;
    const AString& separator;

    static void find(void* self, const AString*, std::uint64_t from, std::int64_t* position,
                     std::uint64_t* length)
    {
        auto& finder = *static_cast<TextFinder*>(self);
        finder.at.skip(from - finder.at.position());
        *length = finder.separator.length();
        if (!finder.at.at_end() && *length != 0) {
            *position = find_needle(finder.at, finder.separator);
        }
    }
};

class CharacterSet
{
public:
    explicit CharacterSet(const AString& characters) : all(characters)
    {
        for (AStringRuns run(characters); !run.at_end(); run.next_run()) {
            for (std::uint64_t i = 0; i < run.count; ++i) {
                if (run.data[i] < latin1.size()) {
                    latin1.set(run.data[i]);
                }
            }
        }
    }

    bool contains(AChar c) const { return c < latin1.size() ? latin1.test(c) : all.find(c) >= 0; }

private:
    const AString& all;
    std::bitset<256> latin1;
};

struct SetFinder {
    AStringRuns at;
    const AString& text;
    CharacterSet set;

    static void find(void* self, const AString*, std::uint64_t from, std::int64_t* position,
                     std::uint64_t* length)
    {
        auto& finder = *static_cast<SetFinder*>(self);
        AStringRuns& at = finder.at;
        const CharacterSet& set = finder.set;
        at.skip(from - at.position());
        if (!at.find_if([&set](AChar c) { return set.contains(c); })) {
            return;
        }
        const std::uint64_t start = at.position();
        const bool more = at.find_if([&set](AChar c) { return !set.contains(c); });
        *position = static_cast<std::int64_t>(start);
        *length = (more ? at.position() : finder.text.length()) - start;
    }
};

} // namespace

AStringList AString::split(const AString& separator, bool keep_empties) const
{
    TextFinder finder{AStringRuns(*this), separator};
    return split_with(Finder(TextFinder::find, &finder), keep_empties, false);
}

AStringList AString::split_any(const AString& character_set, bool keep_empties) const
{
    SetFinder finder{AStringRuns(*this), *this, CharacterSet(character_set)};
    return split_with(Finder(SetFinder::find, &finder), keep_empties, false);
}
