#include "foundation/astring_table.h"

#include "foundation/astring_runs.h"

#include <cstring>

namespace
{

constexpr std::size_t first_slots = 16;

// Three characters and the length tell nearly all words of one table apart.
std::uint32_t hash_of(const AChar* characters, std::uint64_t count)
{
    const std::uint32_t sum = characters[0] + 37 * characters[count / 2] +
                              1369 * characters[count - 1] +
                              50653 * static_cast<std::uint32_t>(count);
    const std::uint32_t mixed = sum * 0x9E3779B1u;
    return mixed ^ mixed >> 16;
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
    entries.push_back({text, value, characters_of(text)});
    if (2 * entries.size() > slots.size()) {
        const std::vector<Slot> before = std::exchange(slots, {});
        slots.resize(before.empty() ? first_slots : 2 * before.size());
        for (const Slot& slot : before) {
            if (slot.number != 0) {
                place(slot);
            }
        }
    }
    const std::vector<AChar>& characters = entries.back().characters;
    place({hash_of(characters.data(), characters.size()),
           static_cast<std::uint32_t>(entries.size())});
}

void AStringTable::place(const Slot& slot)
{
    std::size_t at = slot.hash;
    while (slots[at & (slots.size() - 1)].number != 0) {
        ++at;
    }
    slots[at & (slots.size() - 1)] = slot;
}

const AStringTable::Entry* AStringTable::find(const AChar* characters, std::uint64_t count) const
{
    if (count == 0 || slots.empty()) {
        return nullptr;
    }
    const std::uint32_t hash = hash_of(characters, count);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t at = hash & mask; slots[at].number != 0; at = (at + 1) & mask) {
        if (slots[at].hash != hash) {
            continue;
        }
        const Entry& entry = entries[slots[at].number - 1];
        if (entry.characters.size() == count &&
            std::memcmp(entry.characters.data(), characters, count * sizeof(AChar)) == 0) {
            return &entry;
        }
    }
    return nullptr;
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
