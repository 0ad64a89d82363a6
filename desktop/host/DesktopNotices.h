// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <deque>
#include <memory>

namespace desktop {

/// Notices through freedesktop's Desktop Notifications, the service org.freedesktop.Notifications
/// on the user's session bus (https://specifications.freedesktop.org/notification-spec/). The bus
/// is not touched before the first call. Where none is named by the environment or stands at its
/// usual place, none is started.
class DesktopNotices final : public platform::Notices {
public:
    /// The services are borrowed.
    DesktopNotices(platform::NotificationCenter& center, platform::MainThread& mainThread,
                   platform::Log& log);
    ~DesktopNotices() override;

    void prepare() override;
    [[nodiscard]] std::optional<bool> canShow() const override { return canShow_; }
    void show(const Notice& notice) override;

private:
    class Service;

    void connect();
    void settle(bool canShow, const std::string& why);

    platform::NotificationCenter& center_;
    platform::MainThread& mainThread_;
    platform::Log& log_;
    std::optional<bool> canShow_;
    bool isPreparing_ = false;
    /// Those that wait until it is known whether there is a service.
    std::deque<Notice> waiting_;
    std::shared_ptr<Service> service_;
    /// Connecting to a bus waits for it, which the main thread must not. Declared last, so that it
    /// ends before what its work uses.
    platform::OperationQueue queue_;
};

} // namespace desktop
