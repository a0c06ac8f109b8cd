#include "fuzz/xml_mutator.h"

#include "support/wire_model.h"

#include <sstream>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace fuzz
{

namespace
{

constexpr unsigned format = pugi::format_raw | pugi::format_no_declaration;

const char* const border_values[] = {
    "",
    " ",
    "0",
    "-1",
    "1",
    "7",
    "8",
    "11",
    "12",
    "255",
    "256",
    "32767.999999999999999X",
    "-32768X",
    "32768X",
    "-0.0000152587890625X",
    "1.5X",
    ".X",
    "65535",
    "65536",
    "2147483647",
    "2147483648",
    "-2147483648",
    "-2147483649",
    "4294967295",
    "4294967296",
    "9223372036854775807",
    "-9223372036854775808",
    "18446744073709551615",
    "18446744073709551616",
    "0x",
    "0x7fffffff",
    "true",
    "false",
    "A",
    "H",
    "L",
    "M",
    "nonsense",
    "&#65;",
    "<>&'\"",
    "\u00D6",
    "\u0100",
    "\U0001F600",
    "\xED\xA0\x80",
    "\xF4\xBF\xBF\xBF",
    "%1%2",
    "a text that is longer than what callers have room for when they read it back"};

// All elements of the catalogue, as samples.
const pugi::xml_document& samples()
{
    static const pugi::xml_document all = [] {
        std::string text;
        for (const wire::Message& message : wire::messages()) {
            text += message.wrap(message.content.xml());
        }
        pugi::xml_document document;
        document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_fragment);
        return document;
    }();
    return all;
}

std::vector<pugi::xml_node> elements_of(const pugi::xml_node& root)
{
    std::vector<pugi::xml_node> all;
    for (pugi::xml_node child : root.children()) {
        if (child.type() == pugi::node_element) {
            all.push_back(child);
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (pugi::xml_node child : all[i].children()) {
            if (child.type() == pugi::node_element) {
                all.push_back(child);
            }
        }
    }
    return all;
}

} // namespace

bool XMLMutator::read(const std::uint8_t* data, std::size_t size, pugi::xml_document& document)
{
    constexpr unsigned options =
        pugi::parse_escapes | pugi::parse_ws_pcdata_single | pugi::parse_fragment;
    return document.load_buffer(data, size, options, pugi::encoding_utf8) &&
           document.first_child().type() == pugi::node_element;
}

std::size_t XMLMutator::write(const pugi::xml_document& document, std::uint8_t* data,
                              std::size_t room)
{
    std::ostringstream stream;
    document.save(stream, "", format, pugi::encoding_utf8);
    const std::string text = stream.str();
    if (text.size() > room) {
        return 0;
    }
    std::copy(text.begin(), text.end(), data);
    return text.size();
}

void XMLMutator::mutate(pugi::xml_document& document)
{
    constexpr void (XMLMutator::*changes[])(pugi::xml_node) = {
        &XMLMutator::drop,         &XMLMutator::repeat,     &XMLMutator::exchange,
        &XMLMutator::nest,         &XMLMutator::rename,     &XMLMutator::set_value,
        &XMLMutator::change_value, &XMLMutator::set_sample, &XMLMutator::add_message};
    do {
        (this->*changes[below(std::size(changes))])(any_element(document));
    } while (document.first_child() && chance(30));
}

void XMLMutator::splice(pugi::xml_document& document, const pugi::xml_document& other)
{
    const pugi::xml_node target = any_element(document);
    target.parent().insert_copy_after(any_element(other), target);
}

pugi::xml_node XMLMutator::any_element(const pugi::xml_document& document)
{
    const std::vector<pugi::xml_node> all = elements_of(document);
    return all[below(all.size())];
}

void XMLMutator::drop(pugi::xml_node element)
{
    element.parent().remove_child(element);
}

void XMLMutator::repeat(pugi::xml_node element)
{
    element.parent().insert_copy_after(element, element);
}

void XMLMutator::exchange(pugi::xml_node element)
{
    pugi::xml_node parent = element.parent();
    parent.insert_move_before(element, parent.first_child());
}

void XMLMutator::nest(pugi::xml_node element)
{
    pugi::xml_node parent = element.parent();
    pugi::xml_node outer = parent.insert_child_before(pugi::node_element, element);
    outer.set_name(element.name());
    outer.append_move(element);
}

void XMLMutator::rename(pugi::xml_node element)
{
    element.set_name(any_element(samples()).name());
}

void XMLMutator::set_value(pugi::xml_node element)
{
    element.text().set(border_values[below(std::size(border_values))]);
}

void XMLMutator::change_value(pugi::xml_node element)
{
    std::string value = element.text().get();
    const std::size_t size = value.size();
    value.resize(size + 16);
    value.resize(
        LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(value.data()), size, value.size()));
    element.text().set(value.c_str());
}

// What stands in the catalogue under that name, whole.
void XMLMutator::set_sample(pugi::xml_node element)
{
    const std::string name = element.name();
    const pugi::xml_node sample =
        samples().find_node([&](const pugi::xml_node& node) { return node.name() == name; });
    if (sample) {
        element.parent().insert_copy_after(sample, element);
        element.parent().remove_child(element);
    }
}

void XMLMutator::add_message(pugi::xml_node element)
{
    const std::size_t count = wire::messages().size();
    pugi::xml_node message = samples().first_child();
    for (std::size_t skipped = below(count); skipped != 0; --skipped) {
        message = message.next_sibling();
    }
    element.root().append_copy(message);
}

} // namespace fuzz
