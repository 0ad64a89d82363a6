// SPDX-License-Identifier: MIT
#pragma once

#include "browser/TableFilter.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace desktop {

/// A line that says why a table does not list every station. Each reason has a button that ends
/// just that one. Takes up no room while there is none.
class FilterLine final : public QWidget {
public:
    using Kind = browser::FilterReason::Kind;

    explicit FilterLine(QWidget* parent = nullptr);

    void setReasons(const std::vector<browser::FilterReason>& reasons);

    /// Called when the user ends a reason.
    std::function<void(Kind)> ended = [](Kind) {};

private:
    class Part;

    /// One of each kind, in the order in which they are read, hidden where there is no such reason.
    std::vector<Part*> parts_;
};

} // namespace desktop
