#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace veltosim
{

// A veltosim of its own process. It is killed at the end, if it still runs.
class Program
{
public:
    // Starts it, and waits until it listens.
    explicit Program(const std::vector<std::string>& arguments);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The next line that it writes, without its end; "(end)" behind the last one.
    std::string line();
    void write(const std::string& text);
    void close_input();
    // Sends the signal, waits for the end, and gives the exit code, or 128 and the signal.
    int end(int signal);

private:
    pid_t process = -1;
    int input = -1;
    int output = -1;
    std::string buffer;
};

// The output and the exit code of one that ends by itself.
struct Ended {
    std::string text;
    int code = -1;
};
Ended run_to_end(const std::vector<std::string>& arguments);

} // namespace veltosim
