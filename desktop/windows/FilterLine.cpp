// SPDX-License-Identifier: MIT
#include "desktop/windows/FilterLine.h"

#include "desktop/controls/WrappingRow.h"
#include "desktop/text/Text.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <tuple>

namespace desktop {

namespace {

/// A text on one line, cut off where there is no room for it.
class CutLabel final : public QLabel {
public:
    explicit CutLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    [[nodiscard]] QSize minimumSizeHint() const override {
        const QSize least(fontMetrics().averageCharWidth() * 8, QLabel::minimumSizeHint().height());
        return least.boundedTo(sizeHint());
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
    }
};

} // namespace

/// A reason in a frame, with the button that ends it.
class FilterLine::Part final : public QFrame {
public:
    Part(Kind kindOfReason, const QString& name, QWidget* parent)
        : QFrame(parent),
          kind(kindOfReason),
          words(*new CutLabel(this)),
          wayOut(*new QToolButton(this)) {
        setObjectName(name);
        wayOut.setObjectName(name + QStringLiteral("End"));
        setFrameShape(QFrame::StyledPanel);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(8, 1, 1, 1);
        row->setSpacing(4);
        row->addWidget(&words);
        row->addWidget(&wayOut);
        wayOut.setText(QStringLiteral("×"));
        wayOut.setAutoRaise(true);
        wayOut.setFocusPolicy(Qt::StrongFocus);
        hide();
    }

    void setReason(const browser::FilterReason& reason) {
        const QString text = shownText(reason.words);
        words.setText(text);
        words.setToolTip(toolTipOf(text));
        const QString end = shownText(reason.wayOut);
        wayOut.setAccessibleName(end);
        wayOut.setToolTip(toolTipOf(end));
        show();
    }

    const Kind kind;
    CutLabel& words;
    QToolButton& wayOut;
};

FilterLine::FilterLine(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 0, 12, 6);
    row->setSpacing(6);
    for (const auto& [kind, name] :
         {std::tuple(Kind::search, "filterSearch"), std::tuple(Kind::distance, "filterDistance"),
          std::tuple(Kind::favorites, "filterFavorites")}) {
        auto* part = new Part(kind, QString::fromLatin1(name), this);
        connect(&part->wayOut, &QToolButton::clicked, this, [this, part] { ended(part->kind); });
        row->addWidget(part);
        parts_.push_back(part);
    }
    WrappingRow::replace(row);
    hide();
}

void FilterLine::setReasons(const std::vector<browser::FilterReason>& reasons) {
    for (Part* part : parts_) {
        const auto reason = std::ranges::find(reasons, part->kind, &browser::FilterReason::kind);
        if (reason == reasons.end()) {
            part->hide();
        } else {
            part->setReason(*reason);
        }
    }
    setVisible(!reasons.empty());
    updateGeometry();
}

} // namespace desktop
