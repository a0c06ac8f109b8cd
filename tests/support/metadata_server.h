#pragma once

#include "support/script_server.h"

#include <map>
#include <set>

// A server that keeps metadata databases as a real one does, for tests that are not scripts: it
// answers on a thread of its own, and tells every watcher of every change, the writer included.
// What it sends before it takes a link away is always received.
//
// Its doors are addresses of their own to the same databases, so that connections can be told
// apart: what befalls the link of one does not befall the others.
class MetadataServer
{
public:
    using Table = std::map<std::string, std::string>;

    explicit MetadataServer(std::size_t door_count = 1);
    MetadataServer(const MetadataServer&) = delete;
    MetadataServer& operator=(const MetadataServer&) = delete;
    ~MetadataServer();

    std::uint32_t address(std::size_t door) const;

    // Changes by somebody else.
    void set(const std::string& folder, const std::string& key, const std::string& value);
    void erase(const std::string& folder, const std::string& key);

    Table table(const std::string& folder);
    // Keys that a client behind this door may still believe in: erased while it did not watch.
    std::set<std::string> missed(std::size_t door, const std::string& folder);
    // Waits until a client behind this door watches the folder and has been sent all of it.
    void await_scan(std::size_t door, const std::string& folder);
    std::uint64_t writes(); // that came, refused ones included

    // The next `count` writes are refused.
    void refuse(int count);
    enum class Loss { now, before_next_write, behind_next_write };
    // Ends the links of a door. Behind a write: it is carried out, but not answered.
    void lose_links(std::size_t door, Loss loss);
    // Closed, a door lets nobody in; its links are lost.
    void close_door(std::size_t door);
    void open_door(std::size_t door);

private:
    struct Inside;

    std::unique_ptr<Inside> inside;
};
