// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "mystations/SCWetherSheetController.h"
#include "platform/views/Views.h"

#include <QDialog>

#include <memory>

namespace desktop {

/// The station sheet with its controller. Deletes itself once it has been dismissed.
class SCWetherSheet final : public QDialog, public platform::Sheet {
public:
    SCWetherSheet(QWidget& window, const MapSetup& map);
    ~SCWetherSheet() override;

    /// Shows a station over the window, which is blocked until the user dismisses it.
    void begin(const std::shared_ptr<AviationWeatherStation>& station);

    void orderOut() override;
    void endSheet(int returnCode) override;
    /// Escape dismisses the sheet as its button does.
    void reject() override;

private:
    struct Views;

    SCWetherSheetController controller_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
