#pragma once

#include <functional>
#include <string>
#include <thread>

#include <asio.hpp>

namespace veltosim
{

// Reads lines from a descriptor for as long as there are any, on a thread of its own, since not
// everything that can be an input can be waited for otherwise. Each is given to `obey` on the
// thread of `context`. The end of the input ends nothing else.
class Control
{
public:
    using Obey = std::function<void(const std::string& line)>;

    Control(asio::io_context& used_context, int used_input, Obey obey_line);
    ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

private:
    void read();
    bool wait() const;

    asio::io_context& context;
    int input;
    int stop_reader = -1; // readable when the thread is to end
    int stop_writer = -1;
    Obey obey;
    std::thread thread;
};

} // namespace veltosim
