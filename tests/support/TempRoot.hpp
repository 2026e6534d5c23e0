#pragma once

#include "common/Seams.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

/// A temporary directory that stands for "/": while one lives, systemPath() leads into it. Gone with its contents at
/// the end of the scope.
class TempRoot : public SystemRoot {
public:
    TempRoot() : use(*this) {}
    ~TempRoot() override { std::filesystem::remove_all(root); }
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    std::string resolve(const std::string& absolutePath) override { return root.string() + absolutePath; }

    /// Writes a file at its absolute path, with the folders above it.
    std::filesystem::path write(const std::string& absolutePath, std::string_view text)
    {
        const std::filesystem::path path = resolve(absolutePath);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    /// Writes `bytes` at `offset` of a file that may have holes, such as an image of physical memory.
    void writeAt(const std::string& absolutePath, std::uint64_t offset, std::string_view bytes)
    {
        const std::filesystem::path path = resolve(absolutePath);
        if (!std::filesystem::exists(path))
            write(absolutePath, "");
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(offset));
        file << bytes;
    }

private:
    static std::filesystem::path makeDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "hwagent-test-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary directory");
        return name;
    }

    std::filesystem::path root = makeDirectory();
    ScopedSeam<SystemRoot> use;
};
