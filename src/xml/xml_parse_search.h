#pragma once

#include <cstdint>
#include <string_view>

// Finds the first open or close tag of one name in bytes that grow at their end. A search that ran
// out of bytes goes on where it stopped.
//
// Such a tag is `<`, the name and `>`, with a `/` before the name in a close tag, and white space
// anywhere but within the name: no attributes, and no form that ends in `/>`.
class XMLTagSearch
{
public:
    explicit XMLTagSearch(bool close_tag) : closing(close_tag) {}

    void restart(std::uint64_t from);
    // Looks for tags that start before `limit`; true when one is found.
    bool find(std::string_view name, const unsigned char* bytes, std::uint64_t count,
              std::uint64_t limit);
    bool is_found() const { return expected == Expected::nothing; }
    // The first `count` bytes are gone. What was known of them is void.
    void drop_front(std::uint64_t count);

    std::uint64_t get_start() const { return start; }
    std::uint64_t get_end() const { return end; } // behind the `>`

private:
    enum class Expected { angle, slash, name, close_angle, nothing };

    bool find_candidate(std::string_view name, const unsigned char* bytes, std::uint64_t count,
                        std::uint64_t limit);
    bool take(std::string_view name, unsigned char byte);

    bool closing;
    Expected expected = Expected::angle;
    std::uint64_t start = 0;   // no tag starts before it
    std::uint64_t end = 0;     // next byte to take, once the angle is found
    std::uint64_t matched = 0; // bytes of the name
};
