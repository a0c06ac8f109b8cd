#include "stress/figures.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <arpa/inet.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace stress
{

namespace
{

std::vector<int> descriptors()
{
    std::vector<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        numbers.push_back(std::atoi(entry.path().filename().c_str()));
    }
    return numbers;
}

bool is_link(int descriptor, const Doors& doors)
{
    int type = 0;
    int listens = 0;
    socklen_t size = sizeof(int);
    if (getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) != 0 || type != SOCK_STREAM ||
        getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) != 0 || listens != 0) {
        return false;
    }
    sockaddr_in peer{};
    socklen_t peer_size = sizeof(peer);
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &peer_size) != 0) {
        return true;
    }
    return peer.sin_family == AF_INET && doors.is_door(ntohl(peer.sin_addr.s_addr));
}

} // namespace

Figures figures()
{
    Figures now;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            status >> now.resident_kb;
        } else if (word == "Threads:") {
            status >> now.threads;
        }
    }
    const struct mallinfo2 heap = mallinfo2();
    now.heap_kb = (heap.uordblks + heap.hblkhd) / 1024;
    now.descriptors = descriptors().size();
    return now;
}

std::vector<int> link_descriptors(const Doors& doors)
{
    std::vector<int> links;
    for (const int descriptor : descriptors()) {
        if (is_link(descriptor, doors)) {
            links.push_back(descriptor);
        }
    }
    return links;
}

void raise_descriptor_limit()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace stress
