// SPDX-License-Identifier: MIT
#include "desktop/windows/SCWetherSheet.h"

#include "catalogue/StationCells.h"
#include "desktop/controls/Controls.h"
#include "desktop/windows/ScreenFit.h"
#include "desktop/windows/StationsOnMap.h"
#include "ui_SCWetherSheetController.h"

namespace desktop {

struct SCWetherSheet::Views {
    struct Interface : Ui::SCWetherSheetController {
        explicit Interface(QDialog& dialog) { setupUi(&dialog); }
    };

    Views(QDialog& dialog, const MapSetup& map) : ui(dialog), mapV(*new MapView(map, &dialog)) {
        mapV.setObjectName(QStringLiteral("mapV"));
        ui.mapLayout->addWidget(&mapV);
    }

    Interface ui;
    PushButton okB{*ui.okB};
    MapView& mapV;
};

SCWetherSheet::SCWetherSheet(QWidget& window, const MapSetup& map)
    : QDialog(&window), views_(std::make_unique<Views>(*this, map)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    controller_.outlets = {.mapV = &views_->mapV, .okB = &views_->okB, .window = this};
    connect(views_->ui.okB, &QPushButton::clicked, this, [this] { controller_.doneClicked(); });
}

SCWetherSheet::~SCWetherSheet() = default;

void SCWetherSheet::begin(const std::shared_ptr<AviationWeatherStation>& station) {
    setWindowTitle(shownText(station->ICAO.value_or("")).trimmed());
    views_->ui.stationLine->setText(
        isolatedParts(shownText(catalogue::stationDescription(*station))));
    views_->mapV.setStations({onMap(*station)});
    views_->mapV.setMarker(onMap(*station));
    controller_.addStiation(station);
    new ScreenFit(*this);
    open();
}

void SCWetherSheet::orderOut() {
    hide();
}

void SCWetherSheet::endSheet(int returnCode) {
    done(returnCode);
}

void SCWetherSheet::reject() {
    controller_.doneClicked();
}

} // namespace desktop
