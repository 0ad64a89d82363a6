// SPDX-License-Identifier: MIT
#include "platform/host/Files.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

using namespace platform;
namespace fs = std::filesystem;

namespace {

std::optional<std::string> text(const std::optional<Data>& bytes) {
    if (!bytes) {
        return std::nullopt;
    }
    return std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

std::span<const std::byte> bytesOf(std::string_view characters) {
    return std::as_bytes(std::span(characters));
}

TEST(Files, ReadsWholeRegularFilesWithinTheLimit) {
    const support::TemporaryFolder folder;
    const fs::path file = folder.write("five", "12345");
    EXPECT_EQ(text(readFile(file, 5)), "12345");
    EXPECT_EQ(readFile(file, 4), std::nullopt);
    EXPECT_EQ(text(readFile(folder.write("empty", ""), 0)), "");
    EXPECT_EQ(readFile(folder / "missing", 5), std::nullopt);
    EXPECT_EQ(readFile(folder.path(), 5), std::nullopt);
    EXPECT_EQ(readFile("/dev/zero", 5), std::nullopt);

    const fs::path pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(readFile(pipe, 5), std::nullopt);

    // The kernel reports a size of 0 for these files, but they can be read.
    EXPECT_THAT(text(readFile("/proc/self/status", 1 << 20)).value(), testing::StartsWith("Name:"));
}

TEST(Files, ReplacingKeepsPermissionsAndLinks) {
    const support::TemporaryFolder folder;
    const fs::path file = folder.write("old", "old");
    // The usual umask would remove the group's permission to write.
    const auto permissions = fs::perms::owner_read | fs::perms::group_write;
    fs::permissions(file, permissions);
    fs::create_directory(folder / "elsewhere");
    fs::create_symlink("../old", folder / "elsewhere/link");

    EXPECT_FALSE(replaceFile(folder / "elsewhere/link", bytesOf("new")));
    EXPECT_TRUE(fs::is_symlink(folder / "elsewhere/link"));
    EXPECT_EQ(folder.read("old"), "new");
    EXPECT_EQ(fs::status(file).permissions(), permissions);

    fs::create_symlink("fresh", folder / "dangling");
    EXPECT_FALSE(replaceFile(folder / "dangling", bytesOf("made")));
    EXPECT_EQ(folder.read("fresh"), "made");
    EXPECT_THAT(contentsOfDirectory(folder.path()),
                testing::UnorderedElementsAre("old", "elsewhere", "fresh", "dangling"));
}

TEST(Files, AFailedReplacementLeavesEverythingAsItWas) {
    const support::TemporaryFolder folder;
    const fs::path file = folder.write("kept", "kept");
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_TRUE(replaceFile(folder / "a", bytesOf("x")));
    EXPECT_TRUE(replaceFile(folder / "missing/file", bytesOf("x")));
    EXPECT_TRUE(replaceFile(folder.path(), bytesOf("x")));

    // As if the disk filled up midway: no file of this process may grow past 16 bytes.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit tiny{16, before.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tiny), 0);
    const std::error_code error = replaceFile(file, bytesOf(std::string(100, 'x')));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_EQ(error, std::errc::file_too_large);
    EXPECT_EQ(folder.read("kept"), "kept");
    EXPECT_THAT(contentsOfDirectory(folder.path()),
                testing::UnorderedElementsAre("kept", "a", "b"));
}

} // namespace
