#pragma once

#include <cstdint>
#include <random>

#include <pugixml.hpp>

namespace fuzz
{

// Changes messages as messages: elements are dropped, doubled, moved, nested, renamed, replaced by
// others of the catalogue, or given a value at some border.
class XMLMutator
{
public:
    explicit XMLMutator(unsigned seed) : random(seed) {}

    // Inputs that are no XML are left alone.
    static bool read(const std::uint8_t* data, std::size_t size, pugi::xml_document& document);
    // 0 when the result does not fit.
    static std::size_t write(const pugi::xml_document& document, std::uint8_t* data,
                             std::size_t room);

    void mutate(pugi::xml_document& document);
    // Takes something of another input.
    void splice(pugi::xml_document& document, const pugi::xml_document& other);
    // In this many cases of a hundred.
    bool chance(unsigned percent) { return below(100) < percent; }

private:
    std::size_t below(std::size_t limit) { return random() % limit; }
    pugi::xml_node any_element(const pugi::xml_document& document);

    void drop(pugi::xml_node element);
    void repeat(pugi::xml_node element);
    void exchange(pugi::xml_node element);
    void nest(pugi::xml_node element);
    void rename(pugi::xml_node element);
    void set_value(pugi::xml_node element);
    void change_value(pugi::xml_node element);
    void set_sample(pugi::xml_node element);
    void add_message(pugi::xml_node element);

    std::minstd_rand random;
};

} // namespace fuzz
