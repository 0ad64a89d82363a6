// SPDX-License-Identifier: MIT
#include "slib/FileSystemItem.h"

#include "platform/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Item = std::shared_ptr<FileSystemItem>;

/// The node of a folder below "/", by a chain of nodes of their own.
Item itemAt(const fs::path& path) {
    Item item = FileSystemItem::rootItem();
    for (const fs::path& name : path.relative_path()) {
        item = FileSystemItem::initWithPath_parent(name.string(), item);
    }
    return item;
}

std::vector<std::string> names(const Item& item) {
    std::vector<std::string> result;
    for (std::int64_t i = 0; const Item child = item->childAtIndex(i); ++i) {
        EXPECT_EQ(child, item->children()->at(static_cast<std::size_t>(i)));
        result.push_back(child->relativePath());
    }
    EXPECT_EQ(item->numberOfChildren(), static_cast<std::int64_t>(result.size()));
    EXPECT_EQ(item->childAtIndex(-1), nullptr);
    return result;
}

TEST(FileSystemItem, ListsAFolderOnceInTheOrderOfTheSystem) {
    const support::TemporaryFolder folder;
    fs::create_directory(folder / "empty");
    for (const char* name : {"c", "a", ".b"}) {
        folder.write(name, "");
    }
    const Item item = itemAt(folder.path());
    EXPECT_EQ(item->fullPath(), folder.path());
    const std::vector<std::string> listed = names(item);
    EXPECT_EQ(listed.size(), 4U);
    EXPECT_EQ(listed, platform::contentsOfDirectory(folder.path()));
    folder.write("later", "");
    fs::remove(folder / "a");
    EXPECT_EQ(names(item), listed);
    EXPECT_TRUE(names(itemAt(folder / "empty")).empty());
}

TEST(FileSystemItem, WhatIsNoFolderIsLookedAtAgain) {
    const support::TemporaryFolder folder;
    folder.write("thing", "");
    const Item item = itemAt(folder / "thing");
    EXPECT_FALSE(item->children());
    EXPECT_TRUE(names(item).empty());
    fs::remove(folder / "thing");
    fs::create_directory(folder / "thing");
    folder.write("thing/inside", "");
    EXPECT_EQ(names(item), std::vector<std::string>{"inside"});
}

TEST(FileSystemItem, ANodeKeepsItsTree) {
    const support::TemporaryFolder folder;
    fs::create_directories(folder / "a/b");
    folder.write("a/b/c", "");
    Item leaf = itemAt(folder.path())->childAtIndex(0)->childAtIndex(0)->childAtIndex(0);
    ASSERT_TRUE(leaf);
    EXPECT_EQ(leaf->fullPath(), folder / "a/b/c");

    Item below = FileSystemItem::initWithPath_parent("x/y/", leaf);
    leaf = nullptr;
    EXPECT_EQ(below->fullPath(), folder / "a/b/c/y");
}

TEST(FileSystemItem, TheRootIsOneAndANodeAloneHasItsNameOnly) {
    EXPECT_EQ(FileSystemItem::rootItem(), FileSystemItem::rootItem());
    EXPECT_EQ(FileSystemItem::rootItem()->fullPath(), "/");
    EXPECT_GT(FileSystemItem::rootItem()->numberOfChildren(), 0);
    EXPECT_EQ(FileSystemItem::initWithPath_parent("/usr/share", nullptr)->fullPath(), "share");
}

} // namespace
