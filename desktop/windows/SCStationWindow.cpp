// SPDX-License-Identifier: MIT
#include "desktop/windows/SCStationWindow.h"

#include "browser/SCStationWindowController.h"
#include "browser/SCWebView.h"
#include "desktop/chart/ChartView.h"
#include "desktop/controls/Controls.h"
#include "desktop/controls/FadingLabel.h"
#include "desktop/controls/WrappingRow.h"
#include "desktop/report/ReportTabs.h"
#include "desktop/text/Text.h"
#include "desktop/windows/FavoriteNotices.h"
#include "desktop/windows/NearestLinks.h"
#include "desktop/windows/ProgramMenus.h"
#include "desktop/windows/SearchSuggestions.h"
#include "desktop/windows/TableWithMap.h"
#include "desktop/windows/WorldSwitch.h"
#include "mystations/aiiFlashingText.h"
#include "platform/text/Text.h"
#include "platform/views/MapType.h"
#include "ui_SCStationWindowController.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <chrono>

namespace desktop {

namespace {

const QString reportTabKey = QStringLiteral("reportTab");

/// The hint's slowest speed.
constexpr int slowly = 2;
/// Long enough to be noticed, too short to annoy.
constexpr std::chrono::seconds hintBlinksFor{5};

/// As reports name the station; empty for one without an identifier.
std::string identifierOf(const AviationWeatherStation& station) {
    return std::string(platform::trimmed(station.ICAO.value_or("")));
}

} // namespace

struct SCStationWindow::Views {
    struct Interface : Ui::SCStationWindowController {
        explicit Interface(QMainWindow& window) {
            setupUi(&window);
            for (QHBoxLayout* row : {filterLayout, mapTypesLayout, footerLayout}) {
                WrappingRow::replace(row);
            }
            switchie->setId(searchICAO, 0);
            switchie->setId(searchName, 1);
            switchie->setId(searchState, 2);
            switchieDu->setId(mapStandard, platform::standardMap);
            switchieDu->setId(mapSatellite, platform::satelliteMap);
            switchieDu->setId(mapHybrid, platform::hybridMap);
            switchieDu->setId(mapFlyover, platform::flyoverMap);
            switchieDu->setId(mapChart, platform::chartMap);
        }
    };

    Views(QMainWindow& window, const catalogue::StationRows& rows, platform::Host& host,
          const MapSetup& map)
        : ui(window),
          stations(rows, {*ui.table, *ui.tablePlace, *ui.emptyPlace}, map, *ui.mapPlace),
          chart(*new ChartView(host, {}, ui.mapPlace)),
          secView(host, chart),
          dLcikWords(aiiFlashingText::initWithFrame(host, hint)) {
        MapView& mapV = stations.mapView;
        // Both go below the buttons; the hidden one takes up no room.
        ui.mapLayout->insertWidget(1, &mapV, 1);
        ui.mapLayout->insertWidget(2, &chart, 1);
        mapV.setObjectName(QStringLiteral("mapV"));
        chart.setObjectName(QStringLiteral("secView"));
        QWidget::setTabOrder(ui.mapChart, &mapV);
        QWidget::setTabOrder(&mapV, ui.nearestMetar);
        // A widget gets a place in the tab order only while it accepts the focus. The view itself
        // never takes it: its page will come right after it.
        chart.setFocusPolicy(Qt::StrongFocus);
        QWidget::setTabOrder(&mapV, &chart);
        chart.setFocusPolicy(Qt::NoFocus);
        secView.awakeFromNib();
        dLcikWords->awakeFromNib();
        // The hint is still hidden, but remembers this and blinks when it is first shown.
        dLcikWords->setFlashSpeed(slowly);
        hintStandsStill.setSingleShot(true);
        QObject::connect(&hintStandsStill, &QTimer::timeout, &hintStandsStill,
                         [this] { dLcikWords->flash(false); });
    }

    Interface ui;
    TableWithMap stations;
    Segments switchie{*ui.switchie};
    Segments switchieDu{*ui.switchieDu};
    SearchLine sf{*ui.sf};
    PushButton saver{*ui.saver};
    PushButton parserIt{*ui.parserIt};
    PushButton metarB{*ui.metarB};
    PopUp distButton{*ui.distButton};
    Label words{*ui.words};
    Label stationLine{*ui.stationLine};
    TextPane metarBackField{*ui.metarBackField};
    TextPane tafBackFiled{*ui.tafBackFiled};
    ChartView& chart;
    SCWebView secView;
    FadingLabel hint{*ui.dLcikWords};
    std::shared_ptr<aiiFlashingText> dLcikWords;
    QTimer hintStandsStill;
    /// Says what a filter that finds nothing has looked for, in the middle of the table's place.
    QLabel* emptyWords = nullptr;
    /// Owned by the tabs.
    ReportTabs* reports = nullptr;
    /// Owned by a link.
    NearestLinks* nearest = nullptr;
    /// Owned by the window.
    FavoriteNotices* notices = nullptr;
    /// Shows the progress bar while requests are open; dropped first.
    std::shared_ptr<QProgressBar*> working;
    platform::NotificationCenter::Token openRequests;
};

SCStationWindow::SCStationWindow(SCStationWindowController& controller, platform::Host& host,
                                 reports::Store& reports, weather::WorldWeather& world,
                                 const MapSetup& map, ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory),
      controller_(controller),
      menus_(menus),
      views_(std::make_unique<Views>(*this, controller, host, map)) {
    Ui::SCStationWindowController& ui = views_->ui;
    menus_.setStationWindowActions(
        {.find =
             [&ui] {
                 ui.sf->setFocus(Qt::ShortcutFocusReason);
                 ui.sf->selectAll();
             },
         .favoritesChanged = [this] { favoritesChanged(); },
         .hasLargerChart = [this] { return views_->secView.hasLargerChart(); },
         .openLargerChart = [this] { views_->secView.openLargerChart(); }});
    controller_.outlets = {.table = &views_->stations.table,
                           .switchie = &views_->switchie,
                           .switchieDu = &views_->switchieDu,
                           .sf = &views_->sf,
                           .saver = &views_->saver,
                           .parserIt = &views_->parserIt,
                           .metarB = &views_->metarB,
                           .distButton = &views_->distButton,
                           .words = &views_->words,
                           .mapV = &views_->stations.mapView,
                           .secView = &views_->secView,
                           .dLcikWords = views_->dLcikWords.get(),
                           .metarBackField = &views_->metarBackField,
                           .tafBackFiled = &views_->tafBackFiled,
                           .stationLine = &views_->stationLine,
                           .showSelected = [this](const AviationWeatherStation* station) {
                               views_->stations.mark(station);
                               showReportsOf(station);
                           }};

    views_->stations.table.setMarked([this](int row) {
        const auto station = controller_.stationInRow(row);
        return station && station->isFavorite();
    });
    ui.emptyPlace->setBackgroundRole(QPalette::Base);
    ui.emptyHint->setForegroundRole(QPalette::Text);
    connect(ui.saver, &QPushButton::clicked, this, [this] { controller_.saveCatalogue(); });
    connect(ui.parserIt, &QPushButton::clicked, this, [this] { controller_.parseit(); });
    connect(ui.table->model(), &QAbstractItemModel::modelReset, this, [this] {
        showTableOrHint();
        views_->reports->refreshSoon();
        views_->nearest->refreshSoon();
        views_->notices->refreshSoon();
    });
    ui.favoriteFault->hide();
    bindFilterLine();
    bindSearch(host);
    bindMap(host);
    bindWeather(host);
    bindReports(host, reports);
    bindRowMenu(reports);
    views_->nearest =
        new NearestLinks({host, reports, world, controller_}, {*ui.nearestMetar, *ui.nearestTaf});
    new WorldSwitch({host, reports, world}, {*this, menus.worldWeather(), *ui.worldWeather,
                                             *ui.worldStatus, *ui.worldWorking, views_->stations});
    views_->notices = new FavoriteNotices({host, reports, world, controller_},
                                          {*this, menus.favoriteNotices(), *ui.favoriteStatus});
    showTableOrHint();
}

SCStationWindow::~SCStationWindow() {
    controller_.outlets = {};
    menus_.setStationWindowActions({});
}

void SCStationWindow::bindFilterLine() {
    Ui::SCStationWindowController& ui = views_->ui;
    views_->emptyWords = new QLabel(ui.table->viewport());
    views_->emptyWords->setTextFormat(Qt::PlainText);
    views_->emptyWords->setAlignment(Qt::AlignCenter);
    views_->emptyWords->setWordWrap(true);
    views_->emptyWords->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* middle = new QVBoxLayout(ui.table->viewport());
    // However long a word, the table keeps its size.
    middle->setSizeConstraint(QLayout::SetNoConstraint);
    middle->addWidget(views_->emptyWords);
    ui.filterLine->ended = [this](FilterLine::Kind kind) {
        switch (kind) {
        case FilterLine::Kind::search:
            controller_.leaveSearch();
            break;
        case FilterLine::Kind::distance:
            controller_.leaveDistance();
            break;
        case FilterLine::Kind::favorites:
            controller_.leaveFavorites();
            break;
        }
        // The button has gone.
        views_->ui.table->setFocus(Qt::TabFocusReason);
    };
    QWidget* before = ui.showAll;
    for (auto* button : ui.filterLine->findChildren<QToolButton*>()) {
        QWidget::setTabOrder(before, button);
        before = button;
    }
}

void SCStationWindow::bindSearch(platform::Host& host) {
    Ui::SCStationWindowController& ui = views_->ui;
    ui.sf->installEventFilter(this);
    // Sees the field's keys first.
    auto* suggestions = new SearchSuggestions(
        *ui.sf, host.mainThread,
        {.catalogue = [this] { return controller_.masterCollection(); },
         .choose = [this](const auto& suggestion) { controller_.chooseSuggestion(suggestion); },
         .goToTable = [this] { goToTable(); }});
    connect(ui.sf, &QLineEdit::textChanged, this, [this, suggestions] {
        if (!views_->sf.isSetByLogic()) {
            controller_.searchTextDidChange();
            suggestions->textEdited();
        }
    });
    connect(ui.switchie, &QButtonGroup::idClicked, this, [this] { controller_.switchieswitche(); });
    connect(ui.distButton, &QComboBox::activated, this,
            [this] { controller_.geMeterDistChanged(); });
    connect(ui.showAll, &QPushButton::clicked, this, [this] { controller_.showAll(); });
}

void SCStationWindow::bindMap(platform::Host& host) {
    Ui::SCStationWindowController& ui = views_->ui;
    connect(ui.switchieDu, &QButtonGroup::idClicked, this, [this](int type) {
        if (type == platform::chartMap) {
            // The hint would blink twice over if it were shown again while it blinks.
            views_->dLcikWords->flash(false);
        }
        controller_.switchieswitcheDu();
        if (type == platform::chartMap) {
            // Started only now, since loading the engine may take as long as the hint is to blink.
            views_->hintStandsStill.start(hintBlinksFor);
        }
    });
    views_->stations.mapView.creditClicked = [&host](const std::string& page) {
        host.workspace.openURL({page});
    };
}

void SCStationWindow::bindWeather(platform::Host& host) {
    Ui::SCStationWindowController& ui = views_->ui;
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    ui.metarBackField->setFont(fixed);
    ui.tafBackFiled->setFont(fixed);
    ui.reports->setSizes({1, 1});
    connect(ui.metarB, &QPushButton::clicked, this,
            [this] { controller_.requestSelectedWeather(); });

    QSizePolicy keepsItsPlace = ui.working->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    ui.working->setSizePolicy(keepsItsPlace);
    ui.working->hide();
    views_->working = std::make_shared<QProgressBar*>(ui.working);
    views_->openRequests = host.notificationCenter.addObserver(
        platform::URLSessions::openRequestsDidChange,
        [&host, working = views_->working](const platform::Notification&) {
            host.mainThread.perform(working, [&host, bar = *working] {
                bar->setVisible(host.urlSessions.openRequests() > 0);
            });
        });
}

void SCStationWindow::bindReports(platform::Host& host, reports::Store& reports) {
    views_->reports = new ReportTabs(
        *views_->ui.reportTabs,
        {.host = host,
         .store = reports,
         .favorites =
             [this] {
                 std::vector<std::string> identifiers;
                 for (const auto& station : controller_.allFavorites()) {
                     identifiers.push_back(identifierOf(*station));
                 }
                 return identifiers;
             },
         .select =
             [this](const std::string& identifier) { controller_.selectStation(identifier); }});
    connect(views_->ui.metarB, &QPushButton::clicked, views_->reports,
            [tabs = views_->reports] { tabs->askAgain(); });
}

void SCStationWindow::bindRowMenu(reports::Store& reports) {
    // A row's menu opens on the selected row, to which the controller's commands apply.
    views_->stations.table.addToRowMenu = [this, &reports](QMenu& menu, std::int64_t row) {
        const auto station = controller_.stationInRow(row);
        if (!station) {
            return;
        }
        if (const auto metar = reports.reportsOf(identifierOf(*station)).metar) {
            menu.addAction(QStringLiteral("Copy &METAR"), this, [metar] {
                QGuiApplication::clipboard()->setText(shownText(metar->raw));
            });
        }
        menu.addSeparator();
        menu.addAction(station->isFavorite() ? QStringLiteral("Remove &Favorite")
                                             : QStringLiteral("Make &Favorite"),
                       this, [this] {
                           controller_.favMenuItem();
                           favoritesChanged();
                       });
        QMenu* near = menu.addMenu(QStringLiteral("&Near This"));
        const QComboBox& distances = *views_->ui.distButton;
        for (int i = 0; i < distances.count(); ++i) {
            near->addAction(distances.itemText(i), this, [this, i] {
                views_->distButton.selectItem(i);
                controller_.geMeterDistChanged();
            });
        }
        views_->nearest->addTo(menu, *station);
        menu.addAction(QStringLiteral("&Show on Map"), this, [this, station] {
            views_->switchieDu.setSelectedSegment(
                static_cast<int>(platform::drawnType(controller_.currentMapType)));
            controller_.switchieswitcheDu();
            controller_.mapStiation(*station);
        });
    };
}

void SCStationWindow::favoritesChanged() {
    for (const std::int64_t row : controller_.rowsMarkedWithSelected()) {
        views_->stations.table.markChanged(static_cast<int>(row));
    }
    views_->reports->refreshSoon();
    views_->notices->favoritesChanged();
    views_->ui.favoriteFault->setVisible(!controller_.keepsFavorites());
}

void SCStationWindow::showReportsOf(const AviationWeatherStation* station) {
    views_->reports->showStation(
        station
            ? ReportTabs::Station{identifierOf(*station), catalogue::stationDescription(*station)}
            : ReportTabs::Station());
    views_->nearest->refresh();
}

bool SCStationWindow::eventFilter(QObject* watched, QEvent* event) {
    Ui::SCStationWindowController& ui = views_->ui;
    if (watched == ui.sf && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Escape:
            ui.sf->clear();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Down:
            goToTable();
            return true;
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void SCStationWindow::goToTable() {
    views_->ui.table->setFocus(Qt::TabFocusReason);
    // A search may have lost the selection, and the arrow keys need a row to start from.
    if (views_->stations.table.selectedRow() < 0) {
        views_->stations.table.selectRow(0);
    }
}

void SCStationWindow::arrange() {
    // The table gets what its columns need, but leaves a third to the reports, and up to half of a
    // narrow window to a row of map types.
    const int forTypes = std::min(width() / 2, views_->ui.mapTypes->sizeHint().width());
    const int forTable = std::min(views_->stations.table.widthOfColumns(),
                                  width() - std::max(width() / 3, forTypes));
    views_->ui.tableAndDetails->setSizes({forTable, width() - forTable});
    views_->ui.details->setSizes({height(), height()});
    // The controller keeps the map's type but leaves showing it to the window. A chart that was on
    // show comes back as the map that stands in for it.
    views_->switchieDu.setSelectedSegment(
        static_cast<int>(platform::drawnType(controller_.currentMapType)));
}

void SCStationWindow::recall(const QSettings& memory) {
    views_->stations.table.recall(memory);
    views_->reports->choose(memory.value(reportTabKey).toString());
}

void SCStationWindow::remember(QSettings& memory) const {
    views_->stations.table.remember(memory);
    memory.setValue(reportTabKey, views_->reports->chosen());
}

void SCStationWindow::showTableOrHint() {
    // A search that finds nothing shows an empty table, not the hint.
    const bool hasCatalogue =
        views_->stations.table.model().rowCount() > 0 || controller_.hasCatalogue();
    views_->stations.showTable(hasCatalogue);
    const browser::TableFilter& filter = controller_.filter();
    views_->ui.filterLine->setReasons(browser::reasonsOf(filter));
    const bool isEmpty = views_->stations.table.model().rowCount() == 0;
    views_->emptyWords->setText(isEmpty ? shownText(browser::emptyTableWords(filter)) : QString());
    views_->emptyWords->setVisible(isEmpty);
    if (hasCatalogue && !focusWidget()) {
        views_->ui.table->setFocus();
    }
}

} // namespace desktop
