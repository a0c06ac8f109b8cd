// Messages of the catalogue, changed as messages, up to the state that applications read. What is
// read of a message is the same when it has been written and read again.

#include "fuzz/both_roads.h"
#include "fuzz/link.h"
#include "fuzz/xml_mutator.h"
#include "support/describe.h"

#include <pugixml.hpp>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed);
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t max_out_size,
                                                 unsigned seed);

namespace
{

template <typename Message>
void check_written(const Message& message)
{
    const XMLTree tree(AString("content"), message.write());
    Message again;
    AString error;
    FUZZ_CHECK(again.read_message(tree, &error));
    FUZZ_CHECK(describe(again) == describe(message));
}

class RewritingParser : public ZAVL3::APIParser2
{
public:
#define REWRITE_REPLY(name, ...)                                                                   \
    void on_reply_##name(const AString& /*xid*/, const ZAVL3::reply::name& message) override       \
    {                                                                                              \
        check_written(message);                                                                    \
    }
#define REWRITE_REPORT(name, ...)                                                                  \
    void on_report_##name(const ZAVL3::report::name& message) override                             \
    {                                                                                              \
        check_written(message);                                                                    \
    }
    ZAVL3_REPLIES(REWRITE_REPLY)
    ZAVL3_REPORTS(REWRITE_REPORT)
#undef REWRITE_REPLY
#undef REWRITE_REPORT
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RewritingParser parser;
    parser.feed_bytes(data, size);
    fuzz::Link link;
    link.feed(fuzz::text_of(data, size));
    FUZZ_CHECK(link.is_broken() == parser.is_stream_broken());
    link.read_back();
    fuzz::BothRoads roads;
    roads.feed(fuzz::text_of(data, size));
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                    unsigned seed)
{
    fuzz::XMLMutator mutator(seed);
    pugi::xml_document document;
    if (mutator.chance(10) || !fuzz::XMLMutator::read(data, size, document)) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    mutator.mutate(document);
    const std::size_t written = fuzz::XMLMutator::write(document, data, max_size);
    return written != 0 ? written : LLVMFuzzerMutate(data, size, max_size);
}

std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                      const std::uint8_t* data2, std::size_t size2,
                                      std::uint8_t* out, std::size_t max_out_size, unsigned seed)
{
    pugi::xml_document document;
    pugi::xml_document other;
    if (!fuzz::XMLMutator::read(data1, size1, document) ||
        !fuzz::XMLMutator::read(data2, size2, other)) {
        return 0;
    }
    fuzz::XMLMutator(seed).splice(document, other);
    return fuzz::XMLMutator::write(document, out, max_out_size);
}
