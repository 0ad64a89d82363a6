// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A node of a tree of files and folders. A folder's children are listed on first use and never
/// again, so later changes on disk are not seen; links are followed only as far as somebody asks.
/// A node keeps its parents alive, and with them all of the tree that was listed: that is taken
/// apart when nobody holds a node of it any more. One thread at a time may use a tree.
class FileSystemItem {
public:
    /// A node named as the last component of `path`, in `parent` or, when that is null, on top of a
    /// tree of its own. It does not become one of the parent's children.
    [[nodiscard]] static std::shared_ptr<FileSystemItem>
    initWithPath_parent(std::string_view path, std::shared_ptr<FileSystemItem> parent);

    /// The one node for "/", kept for the life of the process. Main thread only.
    [[nodiscard]] static std::shared_ptr<FileSystemItem> rootItem();

    FileSystemItem(const FileSystemItem&) = delete;
    FileSystemItem& operator=(const FileSystemItem&) = delete;

    /// In the order in which the system lists them, none for an unreadable folder; nothing for what
    /// is no folder, which is looked at again the next time.
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<FileSystemItem>>> children();
    /// Null for an index outside the children.
    [[nodiscard]] std::shared_ptr<FileSystemItem> childAtIndex(std::int64_t index);
    /// 0 for what is no folder.
    [[nodiscard]] std::int64_t numberOfChildren();

    [[nodiscard]] const std::string& relativePath() const { return relativePath_; }
    /// The names from the topmost parent down.
    /// Kept: a node without a parent has its name alone, so that only below the node for "/" is it
    /// an absolute path; programs put their own folder in front of others.
    [[nodiscard]] std::string fullPath() const;

private:
    using Children = std::vector<std::unique_ptr<FileSystemItem>>;

    FileSystemItem(std::string name, FileSystemItem* parent);
    const Children* listed();
    [[nodiscard]] std::shared_ptr<FileSystemItem> shared(FileSystemItem& item);

    std::string relativePath_;
    FileSystemItem* parent_;
    std::optional<Children> children_;
    /// The node by a factory that this one was listed below, or this one itself. It owns all that
    /// is listed below it, and its count of references stands for all of them.
    FileSystemItem* owner_;
    /// Set in owners only. An owner shares its parent, which does not list it.
    std::weak_ptr<FileSystemItem> self_;
    std::shared_ptr<FileSystemItem> ownersParent_;
};
