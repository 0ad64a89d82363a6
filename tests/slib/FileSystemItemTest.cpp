// SPDX-License-Identifier: MIT
#include "slib/FileSystemItem.h"

#include "platform/host/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

/// The node of an absolute path, at the end of a new chain of nodes below the root's.
std::shared_ptr<FileSystemItem> itemAt(const fs::path& path) {
    auto item = FileSystemItem::rootItem();
    for (const fs::path& name : path.relative_path()) {
        item = FileSystemItem::initWithPath_parent(name.string(), item);
    }
    return item;
}

TEST(FileSystemItem, ListsAFolderOnceInTheSystemsOrder) {
    const support::TemporaryFolder folder;
    for (const char* name : {"c", "a", ".b"}) {
        folder.write(name, "");
    }
    const auto item = itemAt(folder.path());
    ASSERT_EQ(item->numberOfChildren(), 3);
    std::int64_t index = 0;
    for (const std::string& name : platform::contentsOfDirectory(folder.path())) {
        EXPECT_EQ(item->children()->at(std::size_t(index)), item->childAtIndex(index));
        EXPECT_EQ(item->childAtIndex(index++)->relativePath(), name);
    }
    folder.write("later", "");
    EXPECT_EQ(item->numberOfChildren(), 3);
    EXPECT_FALSE(item->childAtIndex(-1) || item->childAtIndex(3));
}

TEST(FileSystemItem, WhatIsNotAFolderIsCheckedAgain) {
    const support::TemporaryFolder folder;
    folder.write("thing", "");
    const auto item = itemAt(folder / "thing");
    EXPECT_FALSE(item->children());
    EXPECT_EQ(item->numberOfChildren(), 0);
    fs::remove(folder / "thing");
    fs::create_directory(folder / "thing");
    folder.write("thing/inside", "");
    EXPECT_EQ(item->childAtIndex(0)->relativePath(), "inside");
}

TEST(FileSystemItem, ANodeKeepsItsTreeAlive) {
    const support::TemporaryFolder folder;
    fs::create_directories(folder / "a/b");
    auto leaf = itemAt(folder.path())->childAtIndex(0)->childAtIndex(0);
    ASSERT_TRUE(leaf);
    EXPECT_FALSE(leaf->childAtIndex(0));
    auto below = FileSystemItem::initWithPath_parent("x/y/", leaf);
    leaf = nullptr;
    EXPECT_EQ(below->fullPath(), folder / "a/b/y");
    EXPECT_EQ(FileSystemItem::initWithPath_parent("/usr/share", nullptr)->fullPath(), "share");
    EXPECT_EQ(FileSystemItem::rootItem(), FileSystemItem::rootItem());
}

} // namespace
