#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// A new empty folder, removed with all its content at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& inside = std::filesystem::temp_directory_path()) {
        std::string name = (inside / "tessaro-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder " << name;
        path_ = std::filesystem::canonical(name).string();
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string path(const std::string& entry) const { return path_ + "/" + entry; }

    std::string read(const std::string& entry) const {
        std::ifstream file(path(entry), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void write(const std::string& entry, const std::string& bytes) const {
        std::filesystem::create_directories(std::filesystem::path(path(entry)).parent_path());
        std::ofstream(path(entry), std::ios::binary) << bytes;
    }
    void makeFolder(const std::string& entry) const { std::filesystem::create_directories(path(entry)); }
    bool has(const std::string& entry) const { return std::filesystem::exists(path(entry)); }
    /// Entries of all kinds, hidden ones too.
    long count() const {
        return std::distance(std::filesystem::directory_iterator(path_),
                             std::filesystem::directory_iterator());
    }

private:
    std::string path_;
};
