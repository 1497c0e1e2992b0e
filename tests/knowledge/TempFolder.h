// A folder of its own for one test, gone with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace vorel {

class TTempFolder {
public:
    TTempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vorel-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        Root = pattern;
    }
    TTempFolder(const TTempFolder&) = delete;
    TTempFolder& operator=(const TTempFolder&) = delete;
    ~TTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(Root, ignored);
    }

    std::string operator/(const std::string& name) const { return (Root / name).string(); }
    std::string Path() const { return Root.string(); }

    std::string Write(const std::string& name, const std::string& text) const {
        const std::filesystem::path path = Root / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }
    std::string Read(const std::string& name) const {
        std::ifstream file(Root / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::ptrdiff_t FileCount() const {
        return std::distance(std::filesystem::directory_iterator(Root), {});
    }

private:
    std::filesystem::path Root;
};

} // namespace vorel
