// SPDX-License-Identifier: MIT
#include "slib/FileSystemItem.h"

#include "platform/host/Files.h"

#include <utility>

FileSystemItem::FileSystemItem(std::string name, FileSystemItem* parent)
    : relativePath_(std::move(name)), parent_(parent), owner_(this) {}

std::shared_ptr<FileSystemItem>
FileSystemItem::initWithPath_parent(std::string_view path, std::shared_ptr<FileSystemItem> parent) {
    std::shared_ptr<FileSystemItem> item(
        new FileSystemItem(platform::lastPathComponent(path), parent.get()));
    item->self_ = item;
    item->ownersParent_ = std::move(parent);
    return item;
}

std::shared_ptr<FileSystemItem> FileSystemItem::rootItem() {
    static const std::shared_ptr<FileSystemItem> root = initWithPath_parent("/", nullptr);
    return root;
}

std::shared_ptr<FileSystemItem> FileSystemItem::shared(FileSystemItem& item) {
    // Children hold no counted reference to their parents, so no cycle keeps an unused tree alive.
    return {owner_->self_.lock(), &item};
}

const FileSystemItem::Children* FileSystemItem::listed() {
    if (!children_) {
        const std::string path = fullPath();
        if (!platform::isDirectory(path)) {
            // Nothing is stored, so that a folder that appears here later is seen.
            return nullptr;
        }
        children_.emplace();
        for (std::string& name : platform::contentsOfDirectory(path)) {
            auto child = std::unique_ptr<FileSystemItem>(new FileSystemItem(std::move(name), this));
            child->owner_ = owner_;
            children_->push_back(std::move(child));
        }
    }
    return &*children_;
}

std::optional<std::vector<std::shared_ptr<FileSystemItem>>> FileSystemItem::children() {
    const Children* const nodes = listed();
    if (nodes == nullptr) {
        return std::nullopt;
    }
    std::vector<std::shared_ptr<FileSystemItem>> handles;
    handles.reserve(nodes->size());
    for (const auto& node : *nodes) {
        handles.push_back(shared(*node));
    }
    return handles;
}

std::shared_ptr<FileSystemItem> FileSystemItem::childAtIndex(std::int64_t index) {
    return index >= 0 && index < numberOfChildren()
               ? shared(*(*children_)[static_cast<std::size_t>(index)])
               : nullptr;
}

std::int64_t FileSystemItem::numberOfChildren() {
    const Children* const nodes = listed();
    return nodes == nullptr ? 0 : static_cast<std::int64_t>(nodes->size());
}

std::string FileSystemItem::fullPath() const {
    std::string path;
    for (const FileSystemItem* item = this; item != nullptr; item = item->parent_) {
        path = platform::joinedPath(item->relativePath_, path);
    }
    return path;
}
