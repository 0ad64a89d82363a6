// SPDX-License-Identifier: MIT
#include "platform/host/Files.h"

#include "platform/host/Host.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <utility>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Owns an open file and closes it.
class OpenFile {
public:
    OpenFile(const fs::path& path, int flags, mode_t mode = 0)
        : descriptor_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {}
    ~OpenFile() { static_cast<void>(close()); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// False if the system reports a late write error.
    bool close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int descriptor_;
};

/// Reads once and returns the number of bytes; 0 at the end of the file, negative on an error.
ssize_t readSome(int file, std::span<std::byte> room) {
    ssize_t got = 0;
    do {
        got = ::read(file, room.data(), room.size());
    } while (got < 0 && errno == EINTR);
    return got;
}

bool writeAll(int file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

/// Where writing to `path` really goes: a link stays and its target is replaced. Absent after too
/// many links.
std::optional<fs::path> linkTarget(fs::path path) {
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code error;
        if (!fs::is_symlink(path, error)) {
            return path;
        }
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return std::nullopt;
}

/// A new file, removed on destruction unless it has been moved to its target.
class TemporaryFile {
public:
    TemporaryFile(fs::path path, mode_t mode)
        : path_(std::move(path)), file_(path_, O_WRONLY | O_CREAT | O_EXCL, mode) {}
    ~TemporaryFile() {
        if (isCreated_) {
            ::unlink(path_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }

    bool fill(std::span<const std::byte> bytes, std::optional<mode_t> mode) {
        const int file = file_.descriptor();
        return writeAll(file, bytes) && (!mode || ::fchmod(file, *mode) == 0) &&
               ::fsync(file) == 0 && file_.close();
    }
    bool moveTo(const fs::path& target) {
        isCreated_ = std::rename(path_.c_str(), target.c_str()) != 0;
        return !isCreated_;
    }

private:
    fs::path path_;
    OpenFile file_;
    bool isCreated_ = file_.isOpen();
};

std::string unusedName() {
    std::uint64_t number = 0;
    [[maybe_unused]] const ssize_t got = ::getrandom(&number, sizeof number, 0);
    return fmt::format(".{:016x}.new", number);
}

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

} // namespace

bool fileExists(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool isDirectory(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

std::vector<std::string> contentsOfDirectory(const fs::path& path) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    return names;
}

std::error_code createDirectory(const fs::path& path, bool withIntermediates) {
    std::error_code error;
    if (withIntermediates) {
        fs::create_directories(path, error);
    } else if (::mkdir(path.c_str(), permissionBits) != 0) {
        error = lastError();
    }
    return error;
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    while (name.starts_with('/')) {
        name.remove_prefix(1);
    }
    name = withoutTrailingSlashes(name);
    std::string path(withoutTrailingSlashes(folder));
    if (!path.empty() && !name.empty() && !path.ends_with('/')) {
        path += '/';
    }
    return path.append(name);
}

std::string lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    return std::string(path.size() > 1 && slash != path.npos ? path.substr(slash + 1) : path);
}

std::optional<Data> readFile(const fs::path& path, std::uint64_t limit) try {
    // Without O_NONBLOCK, opening a named pipe would wait for its writer.
    const OpenFile file(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat facts {};
    if (!file.isOpen() || ::fstat(file.descriptor(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    Data bytes;
    // One spare byte of room reveals the end of the file, or that it exceeds the limit.
    const std::uint64_t mostRoom = std::min<std::uint64_t>(limit, bytes.max_size() - 1) + 1;
    const auto expected = static_cast<std::uint64_t>(facts.st_size);
    if (expected >= mostRoom) {
        return std::nullopt;
    }
    bytes.resize(expected + 1);
    for (std::size_t used = 0;;) {
        const ssize_t got = readSome(file.descriptor(), std::span(bytes).subspan(used));
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            bytes.resize(used);
            return bytes;
        }
        used += static_cast<std::size_t>(got);
        if (used == mostRoom) {
            return std::nullopt;
        }
        if (used == bytes.size()) {
            constexpr std::uint64_t leastGrowth = 4096;
            bytes.resize(std::min(mostRoom, used + std::max<std::uint64_t>(used, leastGrowth)));
        }
    }
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

bool setAside(const std::string& path, Log& log) {
    std::string aside = path + ".unreadable";
    for (int i = 2; std::filesystem::exists(std::filesystem::symlink_status(aside)); ++i) {
        aside = fmt::format("{}.unreadable.{}", path, i);
    }
    std::error_code error;
    std::filesystem::rename(path, aside, error);
    log.line(error ? fmt::format("{} can be neither read nor renamed and is unchanged", path)
                   : fmt::format("{} cannot be read and is now called {}", path, aside));
    return !error;
}

std::error_code replaceFile(const fs::path& path, std::span<const std::byte> bytes) {
    const std::optional<fs::path> target = linkTarget(path);
    if (!target) {
        return std::make_error_code(std::errc::too_many_symbolic_link_levels);
    }
    std::optional<mode_t> oldMode;
    struct stat old {};
    if (::stat(target->c_str(), &old) == 0) {
        if (!S_ISREG(old.st_mode)) {
            return std::make_error_code(std::errc::invalid_argument);
        }
        oldMode = old.st_mode & permissionBits;
    }
    const fs::path folder = target->has_parent_path() ? target->parent_path() : ".";
    TemporaryFile fresh(folder / unusedName(), oldMode.value_or(0666));
    if (!fresh.isOpen() || !fresh.fill(bytes, oldMode) || !fresh.moveTo(*target)) {
        return lastError();
    }
    // The file is in place already; if its folder cannot be flushed, the system will do so in its
    // own time.
    const OpenFile flushed(folder, O_RDONLY | O_DIRECTORY);
    static_cast<void>(::fsync(flushed.descriptor()));
    return {};
}

} // namespace platform
