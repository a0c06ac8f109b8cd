#include "stress/watchdog.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include <execinfo.h>
#include <fmt/format.h>
#include <sys/syscall.h>
#include <unistd.h>

// There with a sanitizer only.
extern "C" void __sanitizer_print_stack_trace() __attribute__((weak));
extern "C" void __sanitizer_symbolize_pc(void* address, const char* format, char* text,
                                         std::size_t size) __attribute__((weak));
// What is printed in a signal handler is the end of the process.
extern "C" const char* __tsan_default_options();
const char* __tsan_default_options()
{
    return "report_signal_unsafe=0";
}

namespace stress
{

using namespace std::chrono_literals;

namespace
{

constexpr int stack_signal = SIGUSR2;
std::atomic<bool> is_printed{false};

// On the thread whose stack it is. With a sanitizer there are names of functions, without it those
// that the binaries export, and addresses for addr2line.
void print_own_stack(int)
{
    if (__sanitizer_print_stack_trace != nullptr) {
        __sanitizer_print_stack_trace();
    } else {
        void* frames[64];
        backtrace_symbols_fd(frames, backtrace(frames, 64), STDOUT_FILENO);
    }
    is_printed = true;
}

std::filesystem::path file_of(pid_t thread, const char* name)
{
    return std::filesystem::path("/proc/self/task") / std::to_string(thread) / name;
}

// Another thread's stack, which no sanitizer takes for readable.
__attribute__((no_sanitize("address", "thread", "undefined"))) std::uintptr_t
read_word(std::uintptr_t address)
{
    return *reinterpret_cast<const volatile std::uintptr_t*>(address);
}

// The workers of the library do.
bool blocks_signals(pid_t thread)
{
    std::ifstream status(file_of(thread, "status"));
    for (std::string word; status >> word;) {
        if (word == "SigBlk:") {
            std::uint64_t mask = 0;
            status >> std::hex >> mask;
            return (mask >> (stack_signal - 1) & 1) != 0;
        }
    }
    return true;
}

struct Mapping {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    bool is_code = false;

    bool holds(std::uintptr_t address) const { return begin <= address && address < end; }
};

std::vector<Mapping> mappings()
{
    std::vector<Mapping> all;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        Mapping mapping;
        char dash = 0;
        std::string access;
        fields >> std::hex >> mapping.begin >> dash >> mapping.end >> access;
        mapping.is_code = access.find('x') != access.npos;
        all.push_back(mapping);
    }
    return all;
}

void print_address(std::uintptr_t address)
{
    void* const code = reinterpret_cast<void*>(address);
    if (__sanitizer_symbolize_pc != nullptr) {
        std::array<char, 1024> text{};
        __sanitizer_symbolize_pc(code, "    %p in %f %s:%l", text.data(), text.size());
        fmt::print("{}\n", text.data());
        std::fflush(stdout);
    } else {
        backtrace_symbols_fd(&code, 1, STDOUT_FILENO);
    }
}

// Of a thread that waits in the system: what on its stack looks like a return address. Some of it
// is left from calls that have ended.
void print_likely_stack(pid_t thread)
{
    std::ifstream waiting(file_of(thread, "syscall"));
    std::vector<std::string> words(std::istream_iterator<std::string>(waiting), {});
    if (words.size() < 2) {
        fmt::print("    it runs, and takes no signal\n");
        return;
    }
    const std::uintptr_t top = std::stoull(words[words.size() - 2], nullptr, 16);
    print_address(std::stoull(words.back(), nullptr, 16));
    const auto all = mappings();
    const auto stack = std::find_if(all.begin(), all.end(),
                                    [=](const Mapping& mapping) { return mapping.holds(top); });
    if (stack == all.end()) {
        return;
    }
    int left = 24;
    for (std::uintptr_t at = top; at + sizeof(at) <= stack->end && left != 0; at += sizeof(at)) {
        const std::uintptr_t word = read_word(at);
        const auto code = std::find_if(all.begin(), all.end(), [=](const Mapping& mapping) {
            return mapping.is_code && mapping.holds(word);
        });
        if (code != all.end()) {
            print_address(word);
            --left;
        }
    }
}

void print_stack_of(pid_t thread)
{
    fmt::print("-- stack of thread {}\n", thread);
    std::fflush(stdout);
    if (blocks_signals(thread)) {
        return print_likely_stack(thread);
    }
    is_printed = false;
    syscall(SYS_tgkill, getpid(), thread, stack_signal);
    for (int waits = 0; waits < 200 && !is_printed; ++waits) {
        std::this_thread::sleep_for(10ms);
    }
}

void print_all_stacks()
{
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        const pid_t thread = std::atoi(task.path().filename().c_str());
        if (thread != gettid()) {
            print_stack_of(thread);
        }
    }
}

} // namespace

Watchdog::Watchdog(std::chrono::seconds longest, std::string farewell,
                   std::function<void()> clean_up)
    : patience(longest), last_words(std::move(farewell)), last_act(std::move(clean_up))
{
    void* frame = nullptr;
    backtrace(&frame, 1); // loads what it needs: a signal handler must not
    struct sigaction action = {};
    action.sa_handler = print_own_stack;
    action.sa_flags = SA_RESTART;
    sigaction(stack_signal, &action, nullptr);
    thread = std::thread([this] { run(); });
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard guard(lock);
        is_ending = true;
    }
    ending.notify_all();
    thread.join();
}

Progress& Watchdog::watch(const std::string& name)
{
    const std::lock_guard guard(lock);
    return watched.emplace_back(name).progress;
}

void Watchdog::run()
{
    std::unique_lock guard(lock);
    while (!ending.wait_for(guard, 250ms, [this] { return is_ending; })) {
        look();
    }
}

void Watchdog::look()
{
    const auto now = Clock::now();
    for (Watched& one : watched) {
        const std::uint64_t steps = one.progress.steps;
        if (steps != one.seen || one.progress.is_idle) {
            one.seen = steps;
            one.moved = now;
        } else if (now - one.moved > patience) {
            bite(one);
        }
    }
}

void Watchdog::bite(const Watched& stuck)
{
    fmt::print("FINDING: {} has not moved for {} s, in {} of '{}'\n", stuck.progress.thread,
               patience.count(), stuck.progress.call.load(), stuck.progress.action.load());
    for (const Watched& one : watched) {
        if (!one.progress.is_idle) {
            fmt::print("  {}: {} of '{}'\n", one.progress.thread, one.progress.call.load(),
                       one.progress.action.load());
        }
    }
    print_all_stacks();
    fmt::print("{}\n", last_words);
    std::fflush(stdout);
    last_act();
    std::_Exit(1);
}

} // namespace stress
