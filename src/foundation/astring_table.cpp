#include "foundation/astring_table.h"

#include "foundation/astring_runs.h"

#include <cstring>

namespace
{

constexpr std::size_t first_slots = 16;

// Three characters and the length tell nearly all words of one table apart.
std::size_t hash_of(const AChar* characters, std::uint64_t count)
{
    const std::uint32_t sum = characters[0] + 37 * characters[count / 2] +
                              1369 * characters[count - 1] +
                              50653 * static_cast<std::uint32_t>(count);
    return sum * 0x9E3779B1u >> 16;
}

std::vector<AChar> characters_of(const AString& text)
{
    std::vector<AChar> characters;
    for (AStringRuns run(text); !run.at_end(); run.next_run()) {
        characters.insert(characters.end(), run.data, run.data + run.count);
    }
    return characters;
}

} // namespace

void AStringTable::add(const AString& text, std::int32_t value)
{
    if (!A_CHECK("astring_table", !text.is_empty()) || find(text) != nullptr) {
        return;
    }
    if (2 * ++used > slots.size()) {
        grow();
    }
    place({text, value, characters_of(text)});
}

const AStringTable::Entry* AStringTable::find(const AChar* characters, std::uint64_t count) const
{
    if (count == 0 || slots.empty()) {
        return nullptr;
    }
    for (std::size_t at = hash_of(characters, count);; ++at) {
        const Entry& entry = slots[at & (slots.size() - 1)];
        if (entry.text.is_empty()) {
            return nullptr;
        }
        if (entry.characters.size() == count &&
            std::memcmp(entry.characters.data(), characters, count * sizeof(AChar)) == 0) {
            return &entry;
        }
    }
}

const AStringTable::Entry* AStringTable::find(const AString& text) const
{
    const AStringRuns run(text);
    if (run.count == text.length()) {
        return find(run.data, run.count);
    }
    const std::vector<AChar> characters = characters_of(text);
    return find(characters.data(), characters.size());
}

void AStringTable::place(Entry entry)
{
    std::size_t at = hash_of(entry.characters.data(), entry.characters.size());
    while (!slots[at & (slots.size() - 1)].text.is_empty()) {
        ++at;
    }
    slots[at & (slots.size() - 1)] = std::move(entry);
}

void AStringTable::grow()
{
    std::vector<Entry> before = std::exchange(slots, {});
    slots.resize(before.empty() ? first_slots : 2 * before.size());
    for (Entry& entry : before) {
        if (!entry.text.is_empty()) {
            place(std::move(entry));
        }
    }
}
