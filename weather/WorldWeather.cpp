// SPDX-License-Identifier: MIT
#include "weather/WorldWeather.h"

#include "reports/Reader.h"
#include "slib/DataCompression.h"
#include "weather/DataServerRequests.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace weather {
namespace {

using namespace std::chrono_literals;
using reports::Answer;
using Ending = Answer::Ending;

constexpr const char* worldSetting = "worldweather";
/// How often it is looked whether a file is due.
constexpr auto worldStep = 15s;
constexpr double bytesInMegabyte = 1e6;

struct Collector final : reports::Receiver {
    void receive(reports::Metar&& metar) override {
        batch.metars.push_back({std::make_shared<const reports::Metar>(std::move(metar)), false});
    }
    void receive(reports::Taf&& taf) override {
        batch.tafs.push_back(std::make_shared<const reports::Taf>(std::move(taf)));
    }
    [[nodiscard]] bool has(reports::Kind kind) const {
        return kind == reports::Kind::metar ? !batch.metars.empty() : !batch.tafs.empty();
    }

    reports::Batch batch;
};

bool isGzip(const platform::Data& file) {
    return file.size() > 2 && file[0] == std::byte{0x1f} && file[1] == std::byte{0x8b};
}

/// Whether the file is whole and has reports of the kind. What was whole in it counts either way.
bool read(const platform::Data& file, reports::Kind kind, Collector& collector) {
    reports::Reader reader(collector);
    const auto feed = [&](std::span<const std::byte> bytes) { (void)reader.feed(bytes); };
    // A server may also compress it for the way alone, or not at all.
    const bool isUnpacked =
        isGzip(file) ? gzipInflate(file, WorldWeather::mostBytes, feed) : (feed(file), true);
    return reader.finish() == reports::Understanding::whole && isUnpacked && collector.has(kind);
}

/// Unpacks and reads a file, and gives the store what it brings.
class Reading final : public platform::Operation {
public:
    Reading(reports::Store& store, reports::Kind kind, Answer answer, platform::Data file)
        : store_(store), kind_(kind), answer_(std::move(answer)), file_(std::move(file)) {}

    void main() override {
        Collector collector;
        if (!read(file_, kind_, collector)) {
            answer_.ending = Ending::notUnderstood;
        }
        store_.take(told(std::move(collector.batch), kind_, answer_, store_));
    }

    /// The batch with the answer, which keeps what an earlier one knew if it does not renew it.
    static reports::Batch told(reports::Batch batch, reports::Kind kind, Answer answer,
                               const reports::Store& store) {
        const auto all = store.reportsOf(reports::allStations);
        const auto& before = kind == reports::Kind::metar ? all.metarAnswer : all.tafAnswer;
        if (answer.ending == Ending::whole) {
            answer.renewed = answer.asked;
        } else if (before) {
            answer.renewed = before->renewed;
            answer.tag = before->tag;
        }
        batch.answers.push_back({reports::allStations, kind, std::move(answer)});
        return batch;
    }

private:
    reports::Store& store_;
    reports::Kind kind_;
    Answer answer_;
    platform::Data file_;
};

Answer::Ending endingOf(int status, bool hasData) {
    constexpr int firstSuccess = 200;
    constexpr int lastSuccess = 299;
    constexpr int notModified = 304;
    const bool isWell = (status >= firstSuccess && status <= lastSuccess) || status == notModified;
    return !hasData ? Ending::notReached : isWell ? Ending::whole : Ending::refused;
}

std::string timeOf(platform::Date date) {
    return fmt::format("{:%H:%M} UTC", std::chrono::floor<std::chrono::seconds>(date));
}

} // namespace

WorldWeather::WorldWeather(platform::Host& host, reports::Store& store)
    : host_(host),
      store_(store),
      isOn_(platform::integerOf(host.userDefaults.objectForKey(worldSetting)) == 1),
      minutes_(host.timers.scheduleRepeating(worldStep, [this] { fetchWhatIsDue(); })),
      storeChanges_(host.notificationCenter.addObserver(
          reports::Store::didChange,
          [this, &host, alive = std::weak_ptr(queue_)](const platform::Notification&) {
              host.mainThread.perform(alive, [this] { post(); });
          })) {}

WorldWeather::~WorldWeather() = default;

void WorldWeather::setOn(bool on) {
    if (on != isOn_) {
        isOn_ = on;
        host_.userDefaults.setObject(platform::Number(on ? 1 : 0), worldSetting);
        fetchWhatIsDue();
        post();
    }
}

void WorldWeather::setSeen(bool seen) {
    isSeen_ = seen;
    fetchWhatIsDue();
}

void WorldWeather::setFollowed(bool followed) {
    isFollowed_ = followed;
    fetchWhatIsDue();
}

std::optional<Answer> WorldWeather::answer(reports::Kind kind) const {
    const auto all = store_.reportsOf(reports::allStations);
    return kind == reports::Kind::metar ? all.metarAnswer : all.tafAnswer;
}

bool WorldWeather::isDue(const File& file) const {
    const auto last = answer(file.kind);
    const platform::Date now = host_.clock.now();
    // A request that is ahead of the clock was made before the clock was set back.
    return !last || now - last->asked >= file.interval || last->asked > now + file.interval;
}

void WorldWeather::fetchWhatIsDue() {
    if (!isOn_ || !(isSeen_ || isFollowed_)) {
        return;
    }
    for (File& file : files_) {
        if (!file.arrived && isDue(file)) {
            fetch(file);
        }
    }
}

void WorldWeather::fetch(File& file) {
    file.arrived = 0;
    const std::weak_ptr<platform::OperationQueue> alive = queue_;
    const auto onMain = [this, &host = host_, alive](std::function<void()> work) {
        host.mainThread.perform(alive, [this, work = std::move(work)] {
            work();
            post();
        });
    };
    const auto last = answer(file.kind);
    const std::string tag = last ? last->tag : std::string();
    auto answer = std::make_shared<Answer>();
    host_.urlSessions.startDataTask(
        {.address = worldRequest(host_, file.kind),
         .ended =
             [answer, tag](const platform::URLSessions::Ending& ending) {
                 answer->asked = ending.asked;
                 answer->status = ending.status;
                 answer->ending = endingOf(ending.status, ending.data.has_value());
                 answer->tag = ending.version.tag.empty() ? tag : ending.version.tag;
             },
         .known = platform::URLSessions::Version{{}, tag},
         .arrived = [onMain, &file](
                        std::size_t bytes) { onMain([&file, bytes] { file.arrived = bytes; }); }},
        [&store = store_, onMain, answer, tag, &file,
         alive](const std::optional<platform::Data>& data) {
            const auto queue = alive.lock();
            if (!queue) {
                return;
            }
            constexpr int notModified = 304;
            const bool isNew = answer->ending == Ending::whole && answer->status != notModified &&
                               (answer->tag.empty() || answer->tag != tag);
            // Until the store has the answer, the file still seems due.
            const auto end = [onMain, &file] { onMain([&file] { file.arrived.reset(); }); };
            if (isNew) {
                const auto reading = std::make_shared<Reading>(store, file.kind, *answer, *data);
                reading->completionBlock = end;
                queue->addOperation(reading);
            } else {
                store.take(Reading::told({}, file.kind, *answer, store));
                end();
            }
        });
    post();
}

void WorldWeather::post() {
    host_.notificationCenter.post({didChange, {}, nullptr});
}

std::optional<std::size_t> WorldWeather::arrived() const {
    std::optional<std::size_t> bytes;
    for (const File& file : files_) {
        if (file.arrived) {
            bytes = bytes.value_or(0) + *file.arrived;
        }
    }
    return bytes;
}

std::optional<platform::Date> WorldWeather::renewed(reports::Kind kind) const {
    const auto last = answer(kind);
    return last ? last->renewed : std::nullopt;
}

std::optional<platform::Date> WorldWeather::asked() const {
    const auto last = answer(reports::Kind::metar);
    return last ? std::optional(last->asked) : std::nullopt;
}

std::string WorldWeather::status() const {
    if (!isOn_) {
        return {};
    }
    if (const auto bytes = arrived()) {
        return fmt::format("Fetching the weather of the world, {:.1f} MB so far…",
                           static_cast<double>(*bytes) / bytesInMegabyte);
    }
    const auto last = answer(reports::Kind::metar);
    if (!last) {
        return "The weather of the world has not been fetched yet.";
    }
    if (last->ending == Ending::whole) {
        return fmt::format("Weather of the world, as of {}.", timeOf(last->asked));
    }
    const std::string server = dataServer(host_);
    const std::string why =
        last->ending == Ending::refused
            ? fmt::format("{} refused at {} ({})", server, timeOf(last->asked), last->status)
        : last->ending == Ending::notReached
            ? fmt::format("{} could not be reached at {}", server, timeOf(last->asked))
            : fmt::format("{} sent something else at {}", server, timeOf(last->asked));
    return last->renewed ? fmt::format("Weather of the world, not renewed since {}: {}.",
                                       timeOf(*last->renewed), why)
                         : fmt::format("No weather of the world: {}.", why);
}

} // namespace weather
