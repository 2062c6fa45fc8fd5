#pragma once
// A fresh folder for one test, removed afterwards.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace halvane::testing {

class TempDir {
public:
    TempDir() {
        std::random_device rd;
        m_path = std::filesystem::temp_directory_path() / ("halvane-test-" + std::to_string(rd()) + std::to_string(rd()));
        std::filesystem::create_directories(m_path);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(m_path, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::string file(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

inline std::string readBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

}  // namespace halvane::testing
