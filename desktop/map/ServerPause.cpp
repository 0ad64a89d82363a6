// SPDX-License-Identifier: MIT
#include "desktop/map/ServerPause.h"

#include <QLocale>

#include <algorithm>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds longestRetryAfter = 24h;

QDateTime dated(const QByteArray& text) {
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(text),
                                             QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

} // namespace

void ServerPause::refused(Time now, std::chrono::milliseconds retryAfter) {
    // Requests under way together are refused together, which counts as one refusal.
    if (end_ <= now) {
        last_ = std::clamp(last_ * 2, first_, longest_);
    }
    extend(now + std::max(last_, retryAfter));
}

std::chrono::milliseconds retryAfter(const QByteArray& value, const QByteArray& date,
                                     const QDateTime& now) {
    const QByteArray text = value.trimmed();
    if (!text.isEmpty() &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        // Nine digits fit an int, and are far beyond the limit already.
        return std::min<std::chrono::milliseconds>(std::chrono::seconds(text.left(9).toInt()),
                                                   longestRetryAfter);
    }
    const QDateTime end = dated(text);
    const QDateTime theirs = dated(date);
    return end.isValid() ? std::clamp(std::chrono::milliseconds(
                                          (theirs.isValid() ? theirs : now).msecsTo(end)),
                                      std::chrono::milliseconds(0), longestRetryAfter)
                         : std::chrono::milliseconds(0);
}

} // namespace desktop
