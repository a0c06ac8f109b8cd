#include "sim/posix/program.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace veltosim
{

namespace
{

struct Pipe {
    std::array<int, 2> ends{-1, -1};
    Pipe()
    {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
    }
};

pid_t start(const std::vector<std::string>& arguments, int input, int output)
{
    std::vector<char*> words;
    static std::string program = VELTOSIM_PROGRAM;
    words.push_back(program.data());
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
    // Sockets of this process would stay open there.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    pid_t process = -1;
    const int error =
        posix_spawn(&process, program.c_str(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("the program does not start");
    }
    return process;
}

int code_of(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

Program::Program(const std::vector<std::string>& arguments)
{
    const Pipe to_program;
    const Pipe from_program;
    process = start(arguments, to_program.ends[0], from_program.ends[1]);
    close(to_program.ends[0]);
    close(from_program.ends[1]);
    input = to_program.ends[1];
    output = from_program.ends[0];
    for (std::string said = line(); said.rfind("listening on ", 0) != 0; said = line()) {
        if (said == "(end)") {
            throw std::runtime_error("the program does not listen");
        }
    }
}

Program::~Program()
{
    if (process >= 0) {
        end(SIGKILL);
    }
    close_input();
    close(output);
}

std::string Program::line()
{
    std::size_t end = buffer.find('\n');
    while (end == buffer.npos) {
        std::array<char, 4096> block;
        const ssize_t count = read(output, block.data(), block.size());
        if (count <= 0) {
            return "(end)";
        }
        buffer.append(block.data(), static_cast<std::size_t>(count));
        end = buffer.find('\n');
    }
    std::string found = buffer.substr(0, end);
    buffer.erase(0, end + 1);
    return found;
}

void Program::write(const std::string& text)
{
    if (::write(input, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the program does not read");
    }
}

void Program::close_input()
{
    if (input >= 0) {
        close(input);
        input = -1;
    }
}

int Program::end(int signal)
{
    kill(process, signal);
    const int code = code_of(process);
    process = -1;
    return code;
}

Ended run_to_end(const std::vector<std::string>& arguments)
{
    const Pipe from_program;
    const Pipe nothing;
    const pid_t process = start(arguments, nothing.ends[0], from_program.ends[1]);
    close(nothing.ends[0]);
    close(nothing.ends[1]);
    close(from_program.ends[1]);
    Ended ended;
    std::array<char, 4096> block;
    for (ssize_t count = 0; (count = read(from_program.ends[0], block.data(), block.size())) > 0;) {
        ended.text.append(block.data(), static_cast<std::size_t>(count));
    }
    close(from_program.ends[0]);
    ended.code = code_of(process);
    return ended;
}

} // namespace veltosim
