// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Outlet.h"

/// The logic of a sheet that asks how to save; nothing shows the sheet. Main thread only.
class SCSaveOptionsSheetController {
public:
    struct Outlets {
        platform::Outlet<platform::Sheet> window{};
    };

    Outlets outlets;
    bool usOnly = false;
    bool noNames = false;

    void usonlyclicked(const platform::CheckBox& sender) { usOnly = sender.state(); }
    void nonamesclicked(const platform::CheckBox& sender) { noNames = sender.state(); }
    /// Ends the sheet with code 1.
    void saveCliked() { end(1); }
    /// Ends the sheet with code 0.
    void cancelClicked() { end(0); }

private:
    void end(int returnCode) {
        outlets.window->orderOut();
        outlets.window->endSheet(returnCode);
    }
};
