#include "text/system_files.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace halvane {
namespace {

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

}  // namespace

FileBytes loadFile(const std::filesystem::path& file) {
    FileBytes f;
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        f.state = errno == ENOENT ? FileBytes::State::Missing : FileBytes::State::Unreadable;
        return f;
    }
    struct stat st {};
    f.state = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) ? FileBytes::State::Present
                                                           : FileBytes::State::Unreadable;
    f.mode = st.st_mode & 07777;
    char buf[8192];
    while (f.state == FileBytes::State::Present) {
        const ssize_t n = ::read(fd, buf, sizeof buf);
        if (n > 0) {
            f.bytes.append(buf, static_cast<std::size_t>(n));
        } else if (n == 0) {
            break;
        } else if (errno != EINTR) {
            f.state = FileBytes::State::Unreadable;
        }
    }
    ::close(fd);
    if (f.state != FileBytes::State::Present) f.bytes.clear();
    return f;
}

bool replaceFile(const std::filesystem::path& file, std::string_view bytes, std::optional<unsigned> mode) {
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::filesystem::path temp = file;
        temp += ".tmp" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
        const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0) {
            if (errno == EEXIST) continue;
            return false;
        }
        bool ok = (!mode || ::fchmod(fd, static_cast<mode_t>(*mode)) == 0) && writeAll(fd, bytes) &&
                  ::fsync(fd) == 0;
        ok = ::close(fd) == 0 && ok;
        if (ok && ::rename(temp.c_str(), file.c_str()) == 0) return true;
        ::unlink(temp.c_str());
        return false;
    }
    return false;
}

bool folderWritable(const std::filesystem::path& dir) {
    return ::access(dir.c_str(), W_OK) == 0;
}

std::string homeFolder() {
    const char* home = std::getenv("HOME");
    if (home && home[0]) return home;
    const passwd* pw = ::getpwuid(::getuid());
    return pw && pw->pw_dir ? pw->pw_dir : "";
}

}  // namespace halvane
