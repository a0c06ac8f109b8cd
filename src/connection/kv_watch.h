#pragma once

#include <set>
#include <string>
#include <unordered_map>

class KVStore;

// Which stores of a connection read which folder. A store is in byStore exactly when it is in the
// set of its folder, and no set is empty. The pointers do not own: a store leaves the tables when
// it is closed, before it dies.
struct KVWatch {
    std::unordered_map<std::u16string, std::set<KVStore*>> byFolder;
    std::unordered_map<KVStore*, std::u16string> byStore;
};
