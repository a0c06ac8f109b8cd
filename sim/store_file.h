#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "sim/clip_store.h"

namespace veltosim
{

// A file that cannot be used as a store: "file: reason".
struct StoreError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A store on the disk. What has been written is there whenever the program or the machine ends.
class StoreFile
{
public:
    // Opens or makes the file, and holds it alone. Throws a StoreError.
    explicit StoreFile(const std::string& file_name);
    ~StoreFile();

    // Whether the file has held no store yet.
    bool is_new() const { return fresh; }
    // Makes the first store of a new file, all of it or nothing. Throws a StoreError.
    void seed(const ClipStore& store);
    // Throws a StoreError for a file that is damaged.
    ClipStore load();
    // Throws a Refusal if it cannot be written; then nothing of it has been.
    void write(const StoreChange& change);

private:
    struct Tables;

    std::string path;
    bool fresh = false;
    std::unique_ptr<Tables> tables;
};

} // namespace veltosim
