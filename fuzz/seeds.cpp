// Writes the inputs and the dictionaries that follow from the tables: fuzz_seeds FOLDER makes
// FOLDER/seeds/<target>/ and FOLDER/<dictionary>.dict.

#include "fuzz/link.h"
#include "fuzz/script.h"
#include "sim/commands.h"
#include "sim/scenario.h"
#include "support/wire_model.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

namespace
{

namespace files = std::filesystem;

void write_file(const files::path& file, const std::string& content)
{
    files::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

std::string element(std::string_view name, std::string_view content)
{
    return std::string("<").append(name).append(">").append(content).append("</").append(name) +
           ">";
}

// A reply to a command that waits for it.
std::string answered(const wire::Message& message, const std::string& xid)
{
    return element("reply", element("xid", xid) + message.content.xml());
}

std::string waited_for(const wire::Message& message)
{
    return message.is_reply ? answered(message, fuzz::Link::waiting_xid(message.content.name))
                            : message.wrap(message.content.xml());
}

constexpr char long_piece = '\xFF';

void write_messages(const files::path& seeds)
{
    std::string all;
    for (const wire::Message& message : wire::messages()) {
        const std::string text = waited_for(message);
        all += text;
        write_file(seeds / "messages" / message.content.name, text);
        const std::string in_pieces = fuzz::Script::make(std::string(8, '\x20'), text);
        write_file(seeds / "byte_stream" / message.content.name, in_pieces);
        write_file(seeds / "xml_tree" / message.content.name, in_pieces);
    }
    write_file(seeds / "messages" / "all", all);
}

// Every question with every reply that could be one to it.
void write_questions(const files::path& seeds)
{
    const std::string xid = fuzz::Link::question_xid();
    for (std::uint8_t question = 0; question < fuzz::questions().size(); ++question) {
        for (const wire::Message& message : wire::messages()) {
            if (message.is_reply) {
                const std::string steps = {static_cast<char>(question), long_piece};
                const std::string done = answered(wire::message("ok"), xid);
                write_file(seeds / "byte_stream" /
                               ("question_" + std::to_string(question) + message.content.name),
                           fuzz::Script::make(steps, answered(message, xid) + done));
            }
        }
    }
}

// What a command's fields can be, one of each kind.
std::string sample(const veltosim::FieldRule& rule)
{
    using veltosim::FieldKind;
    std::string content;
    switch (rule.kind) {
    case FieldKind::text:
        content = "news_open";
        break;
    case FieldKind::number:
        content = std::to_string(std::max<std::int64_t>(rule.lowest, 0));
        break;
    case FieldKind::speed:
        content = "1.5X";
        break;
    case FieldKind::word:
        content = rule.words.front();
        break;
    case FieldKind::flag:
        break;
    case FieldKind::list:
    case FieldKind::composite:
        for (const veltosim::FieldRule& part : rule.parts) {
            content += sample(part);
        }
    }
    return element(rule.name, content);
}

std::string command_text(const veltosim::CommandRule& rule)
{
    std::string fields;
    for (const veltosim::FieldRule& field : rule.fields) {
        fields += sample(field);
    }
    return element("cmd", element("xid", "1") + element(rule.name, fields));
}

void write_commands(const files::path& seeds)
{
    const std::string after = {0, 1};
    std::string all;
    for (const veltosim::CommandRule& rule : veltosim::commands()) {
        const std::string text = command_text(rule);
        all += text;
        write_file(seeds / "simulator" / std::string(rule.name),
                   fuzz::Script::make(std::string(8, long_piece) + after, text));
    }
    write_file(seeds / "simulator" / "all", fuzz::Script::make("", all));
    write_file(seeds / "simulator" / "control",
               fuzz::Script::make(std::string(4, '\x02'),
                                  "help\ndelay 200\nsplit 7\nrefuse stop\n" + all));
}

// The built-in scenario, and pieces of it, which reach as much and are quicker to change.
void write_scenarios(const files::path& seeds)
{
    using nlohmann::json;
    const json whole = json::parse(veltosim::default_scenario_text());
    write_file(seeds / "default", whole.dump());
    for (const auto& [key, value] : whole.items()) {
        write_file(seeds / key, json{{key, value}}.dump());
        std::size_t number = 0;
        for (const json& element : value.is_array() ? value : json::array()) {
            write_file(seeds / (key + std::to_string(++number)),
                       json{{key, json::array({element})}}.dump());
        }
    }
}

// The words of a text of messages: its tags, and what stands between them.
void add_words(const std::string& text, std::set<std::string>& words)
{
    for (std::size_t at = 0; at < text.size();) {
        const bool is_tag = text[at] == '<';
        const std::size_t end = is_tag ? text.find('>', at) + 1 : text.find('<', at);
        words.insert(text.substr(at, end - at));
        at = end;
    }
}

void write_dictionary(const files::path& file, const std::set<std::string>& words)
{
    std::string lines;
    for (const std::string& word : words) {
        lines += '"';
        for (const char c : word) {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned char>(c));
            lines += c >= ' ' && c <= '~' && c != '"' && c != '\\' ? std::string(1, c) : escaped;
        }
        lines += "\"\n";
    }
    write_file(file, lines);
}

#define ADD_WORDS(E, ...)                                                                          \
    for (const char* word : ZAVL3::wire_words(ZAVL3::E{})) {                                       \
        words.insert(word);                                                                        \
    }

void write_dictionaries(const files::path& folder)
{
    std::set<std::string> words = {"&lt;", "&gt;", "&amp;", "&apos;", "&quot;", "&#65;", " />"};
    write_dictionary(folder / "xml.dict", words);
    ZAVL3_ENUMERATIONS(ADD_WORDS)
    std::set<std::string> commands = words;
    for (const wire::Message& message : wire::messages()) {
        add_words(waited_for(message), words);
    }
    write_dictionary(folder / "messages.dict", words);
    for (const veltosim::CommandRule& rule : veltosim::commands()) {
        add_words(command_text(rule), commands);
    }
    write_dictionary(folder / "commands.dict", commands);
    std::set<std::string> keys;
    const auto add_key = [&keys](int, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
        if (event == nlohmann::json::parse_event_t::key) {
            keys.insert(parsed.dump());
        }
        return true;
    };
    static_cast<void>(nlohmann::json::parse(veltosim::default_scenario_text(), add_key));
    write_dictionary(folder / "scenario.dict", keys);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: fuzz_seeds FOLDER\n", stderr);
        return 2;
    }
    const files::path folder = argv[1];
    write_messages(folder / "seeds");
    write_questions(folder / "seeds");
    write_commands(folder / "seeds");
    write_scenarios(folder / "seeds" / "scenario");
    write_dictionaries(folder);
    return 0;
}
