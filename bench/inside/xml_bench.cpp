#include "protocol/zavl3_tag.h"
#include "xml/xml_parse.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{

// A metadata reply of about `size` bytes: the longest messages of the protocol are of this kind.
std::string metadata_message(std::size_t size)
{
    std::string text = "<reply><xid>4711</xid><metadata><MetadataDatabase>rundown</"
                       "MetadataDatabase><MetadataPrefix></MetadataPrefix><MetadataList>";
    const std::string end = "</MetadataList></metadata></reply>";
    for (int i = 0; text.size() + end.size() < size - 80; ++i) {
        text += "<Metadata><Key>story." + std::to_string(i) +
                "</Key><Value>Weather &amp; sport, 18:30</Value></Metadata>";
    }
    return text + end;
}

XMLTree parse(XMLParser& parser, const std::string& message)
{
    parser.feed(message.data(), message.size());
    return parser.next_element();
}

struct MessageParser : XMLParser {
    MessageParser() : XMLParser(32768)
    {
        add_root_tag("reply");
        add_root_tag("report");
        use_known_names(ZAVL3::known_words());
    }
};

void per_byte(benchmark::State& state, std::size_t bytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
    state.counters["ns_per_byte"] = benchmark::Counter(
        static_cast<double>(bytes) * 1e-9,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void XmlParse(benchmark::State& state)
{
    const std::string message = metadata_message(static_cast<std::size_t>(state.range(0)));
    MessageParser parser;
    for (auto _ : state) {
        const XMLTree tree = parse(parser, message);
        if (tree.is_null) {
            state.SkipWithError("the message was refused");
            break;
        }
    }
    per_byte(state, message.size());
}

void XmlSerialise(benchmark::State& state)
{
    const std::string message = metadata_message(static_cast<std::size_t>(state.range(0)));
    MessageParser parser;
    const XMLTree tree = parse(parser, message);
    std::uint64_t written = 0;
    const AString::BytesDelegate count(
        [](void* total, const unsigned char*, std::uint64_t bytes) {
            *static_cast<std::uint64_t*>(total) += bytes;
        },
        &written);
    for (auto _ : state) {
        written = 0;
        tree.write(count, XMLWriteMode::lines, true);
    }
    per_byte(state, written);
}

BENCHMARK(XmlParse)->Arg(1024)->Arg(4096)->Arg(16384)->Arg(32768);
BENCHMARK(XmlSerialise)->Arg(1024)->Arg(4096)->Arg(16384)->Arg(32768);

} // namespace

BENCHMARK_MAIN();
