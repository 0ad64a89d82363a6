// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QTextEdit>

namespace desktop {

/// Text that the user can read, select and copy, as high as it needs to be: what is around it
/// scrolls, not the text. Hidden while it is empty. A change keeps the user's selection wherever
/// the text itself stays the same.
class ReportText final : public QTextEdit {
public:
    /// A name, and beside or below it what is said of it.
    struct Entry {
        QString name;
        QString text;

        friend bool operator==(const Entry&, const Entry&) = default;
    };
    enum class Layout { beside, below };

    /// `name` is the accessible one.
    explicit ReportText(const QString& name, QWidget* parent = nullptr);

    void showLines(const QString& lines);
    void showEntries(const QList<Entry>& entries, Layout layout);

protected:
    /// Leaves Ctrl+C to what is around it while nothing is selected.
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void write();
    void fit();

    QList<Entry> entries_;
    Layout layout_ = Layout::below;
};

} // namespace desktop
