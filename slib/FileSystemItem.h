// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A node of a tree of files and folders. A folder's children are listed on first use and never
/// again, so later changes on disk are not seen; links are followed only as far as a caller
/// descends. A node keeps its parents alive, and with them the whole tree listed so far, which is
/// destroyed once nobody holds a node of it. One thread at a time may use a tree.
class FileSystemItem {
public:
    /// A node named after the last component of `path`, below `parent` or, if that is null, at the
    /// top of its own tree. It does not become one of the parent's children.
    [[nodiscard]] static std::shared_ptr<FileSystemItem>
    initWithPath_parent(std::string_view path, std::shared_ptr<FileSystemItem> parent);

    /// The one node for "/", kept for the life of the process. Main thread only.
    [[nodiscard]] static std::shared_ptr<FileSystemItem> rootItem();

    FileSystemItem(const FileSystemItem&) = delete;
    FileSystemItem& operator=(const FileSystemItem&) = delete;

    /// The children in the order in which the system lists them; empty for a folder that cannot be
    /// read. Absent for anything but a folder, which is checked again next time.
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<FileSystemItem>>> children();
    /// Null for an index out of range.
    [[nodiscard]] std::shared_ptr<FileSystemItem> childAtIndex(std::int64_t index);
    /// 0 for anything but a folder.
    [[nodiscard]] std::int64_t numberOfChildren();

    [[nodiscard]] const std::string& relativePath() const { return relativePath_; }
    /// The names from the topmost parent down.
    /// Kept: a node without a parent has only its name, so the path is absolute only below the node
    /// for "/". Programs put their own folder in front of any other path.
    [[nodiscard]] std::string fullPath() const;

private:
    using Children = std::vector<std::unique_ptr<FileSystemItem>>;

    FileSystemItem(std::string name, FileSystemItem* parent);
    const Children* listed();
    [[nodiscard]] std::shared_ptr<FileSystemItem> shared(FileSystemItem& item);

    std::string relativePath_;
    FileSystemItem* parent_;
    std::optional<Children> children_;
    /// The node, made by a factory, at the top of the listing that includes this one; this one
    /// itself if it is at the top. It owns everything listed below it, and its reference count
    /// covers all of it.
    FileSystemItem* owner_;
    /// Set in owners only. An owner shares ownership of its parent, which does not list it.
    std::weak_ptr<FileSystemItem> self_;
    std::shared_ptr<FileSystemItem> ownersParent_;
};
