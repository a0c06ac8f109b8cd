#pragma once

#include <cstdint>

// Memory that runs out: for the whole program, one allocation after so many others fails. Its
// program brings the operators new and delete with it.
class Exhaustion
{
public:
    enum class Of { caller, library };
    // `once`: one allocation fails; otherwise all do from there on.
    enum class Lasting { once, on };

    // The allocation that comes behind `behind` others fails: on this thread, or on those of the
    // library.
    Exhaustion(Of threads, std::uint64_t behind, Lasting lasting);
    Exhaustion(const Exhaustion&) = delete;
    Exhaustion& operator=(const Exhaustion&) = delete;
    ~Exhaustion() { end(); }

    // There is memory again.
    void end();
    bool has_struck() const;

    // This thread belongs to the test.
    static void spare_this_thread();
};
