#pragma once
// A private folder under the system's temporary folder, removed with everything in it at the end of a
// test; file helpers; an environment variable set for one scope.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::testing {

class TempDir {
  public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "halvane-test-XXXXXX").string();
        if (::mkdtemp(pattern.data())) m_path = pattern;
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(m_path, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }
    std::string file(std::string_view name) const { return (m_path / name).string(); }

  private:
    std::filesystem::path m_path;
};

inline void writeBytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string readBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Sets (or, with nullptr, unsets) an environment variable until the end of the scope.
class EnvVar {
  public:
    EnvVar(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) m_old = old;
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~EnvVar() { m_old ? ::setenv(m_name, m_old->c_str(), 1) : ::unsetenv(m_name); }
    EnvVar(const EnvVar&) = delete;
    EnvVar& operator=(const EnvVar&) = delete;

  private:
    const char* m_name;
    std::optional<std::string> m_old;
};

}  // namespace halvane::testing
