#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include <stdlib.h>

namespace corvane::server::testing {

/// An empty folder that goes, with all that was put into it, when this object does.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "corvane-server-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    const std::filesystem::path& path() const { return path_; }

    void write(const std::filesystem::path& name, std::string_view text) const
    {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << text;
    }

    /// Every file with its content and every folder with none, by its path inside.
    std::map<std::string, std::string> snapshot() const
    {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
            std::ifstream file(entry.path(), std::ios::binary);
            all[entry.path().lexically_relative(path_).string()] =
                entry.is_directory() ? "" : std::string(std::istreambuf_iterator<char>(file), {});
        }
        return all;
    }

private:
    std::filesystem::path path_;
};

} // namespace corvane::server::testing
