// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace map {

namespace {

constexpr std::string_view signature = "nosigmap1";

/// Levels 0 to 9; the last is as fine as the outlines themselves.
constexpr int levelCount = 10;

/// Reads the numbers of the resource; see resources/map/README.md. Reading past the end, or an
/// impossible number, makes the reader unsound for good.
class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    [[nodiscard]] bool isSound() const { return sound_; }
    [[nodiscard]] bool atEnd() const { return sound_ && rest_.empty(); }

    std::string_view text(std::size_t length) {
        if (length > rest_.size()) {
            spoil();
            return {};
        }
        const std::string_view text = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return text;
    }

    std::uint32_t whole() {
        std::uint32_t number = 0;
        for (unsigned shift = 0; shift < 28; shift += 7) {
            const std::string_view next = text(1);
            const auto byte = next.empty() ? 0U : static_cast<unsigned char>(next.front());
            number |= (byte & 127U) << shift;
            if (byte < 128) {
                return number;
            }
        }
        spoil();
        return 0;
    }

    /// Reads how many items follow, each of which takes at least `leastBytes`.
    std::size_t count(std::size_t leastBytes) {
        const std::size_t number = whole();
        if (number > rest_.size() / leastBytes) {
            spoil();
            return 0;
        }
        return number;
    }

    std::int64_t step() {
        const std::int64_t number = whole();
        return number % 2 == 0 ? number / 2 : -(number + 1) / 2;
    }

private:
    void spoil() {
        sound_ = false;
        rest_ = {};
    }

    std::string_view rest_;
    bool sound_ = true;
};

/// A point on the resource's grid; each is stored as the steps from the one before.
struct Position {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

/// Converts grid points to world points.
class Grid {
public:
    explicit Grid(std::uint32_t stepsByDegree) : steps_(stepsByDegree) {}

    [[nodiscard]] bool holds(const Position& at) const {
        return std::abs(at.x) <= 180 * steps_ && std::abs(at.y) <= 90 * steps_;
    }
    /// Goes beyond the map's edges, so that a polygon's edge there stays out of sight.
    [[nodiscard]] WorldPoint point(const Position& at) const {
        const auto steps = static_cast<double>(steps_);
        return {0.5 + static_cast<double>(at.x) / (360 * steps),
                projectedLatitude(static_cast<double>(at.y) / steps)};
    }
    [[nodiscard]] double width(std::uint32_t steps) const {
        return steps / (360 * static_cast<double>(steps_));
    }

private:
    std::int64_t steps_;
};

/// Rings are closed by repeating their first point. Returns false if the section is unsound.
bool readLines(Reader& reader, const Grid& grid, Position& at, bool areRings, Lines& lines) {
    for (std::size_t left = reader.count(1); left > 0; --left) {
        const std::size_t begin = lines.points.size();
        for (std::size_t points = reader.count(2); points > 0; --points) {
            at.x += reader.step();
            at.y += reader.step();
            if (!reader.isSound() || !grid.holds(at)) {
                return false;
            }
            lines.points.push_back(grid.point(at));
        }
        if (areRings && lines.points.size() > begin) {
            lines.points.push_back(lines.points[begin]);
        }
        lines.endLine();
    }
    return reader.isSound();
}

bool readNames(Reader& reader, const Grid& grid, std::vector<CountryName>& names) {
    for (std::size_t left = reader.count(4); left > 0; --left) {
        const std::string_view text = reader.text(reader.count(1));
        const std::int64_t x = reader.step();
        const Position middle{x, reader.step()};
        const std::uint32_t width = reader.whole();
        if (!reader.isSound() || !grid.holds(middle) || !platform::isValidUtf8(text)) {
            return false;
        }
        names.push_back(CountryName{std::string(text), grid.point(middle), grid.width(width)});
    }
    return reader.isSound();
}

/// Calls `add(turn)` for each turn of the earth on which a shape overlaps the rectangle.
template <typename Add>
void onEachTurn(const WorldRect& shape, const WorldRect& rect, Add add) {
    const auto first = static_cast<int>(std::ceil(rect.left - shape.right));
    for (int turn = first; turn <= rect.right - shape.left; ++turn) {
        if (shape.movedEast(turn).overlaps(rect)) {
            add(turn);
        }
    }
}

/// Moves the points of `lines` from index `from` on.
void moveEast(Lines& lines, std::size_t from, double turns) {
    for (std::size_t i = from; i < lines.points.size(); ++i) {
        lines.points[i].x += turns;
    }
}

void addLine(std::span<const WorldPoint> line, const WorldRect& bounds, const WorldRect& rect,
             Lines& to) {
    if (rect.holds(bounds)) {
        to.points.insert(to.points.end(), line.begin(), line.end());
        to.endLine();
    } else {
        addClippedLine(line, rect, to);
    }
}

/// Adds the outline of a closed ring, except for the sides along the date line, where it was cut.
void addOutline(std::span<const WorldPoint> ring, const WorldRect& bounds, const WorldRect& rect,
                Lines& to) {
    const auto isCut = [](const WorldPoint& a, const WorldPoint& b) {
        return a.x == b.x && (a.x == 0 || a.x == 1);
    };
    std::size_t begin = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        if (isCut(ring[i - 1], ring[i])) {
            addLine(ring.subspan(begin, i - begin), bounds, rect, to);
            begin = i;
        }
    }
    addLine(ring.subspan(begin), bounds, rect, to);
}

} // namespace

std::optional<BaseMap> BaseMap::read(std::span<const std::byte> bytes) {
    Reader reader({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (reader.text(signature.size()) != signature) {
        return std::nullopt;
    }
    const std::uint32_t steps = reader.whole();
    if (steps == 0 || steps > 100'000) {
        return std::nullopt;
    }
    const Grid grid(steps);
    Position at;
    Lines rings;
    Lines borders;
    BaseMap result;
    if (!readLines(reader, grid, at, true, rings) || !readLines(reader, grid, at, false, borders) ||
        !readNames(reader, grid, result.names_) || !reader.atEnd()) {
        return std::nullopt;
    }

    result.levels_.resize(levelCount);
    for (int number = 0; number < levelCount; ++number) {
        Level& level = result.levels_[static_cast<std::size_t>(number)];
        const double distance = 0.7 / 256 / (1 << number);
        const auto fill = [distance](const Lines& from, std::size_t least, Shapes& shapes) {
            std::size_t begin = 0;
            for (const std::size_t end : from.ends) {
                if (end - begin >= least) {
                    shapes.add(std::span(from.points).subspan(begin, end - begin), distance);
                }
                begin = end;
            }
        };
        fill(rings, 4, level.land);
        fill(borders, 2, level.borders);
    }
    return result;
}

void BaseMap::Shapes::add(std::span<const WorldPoint> line, double distance) {
    WorldRect box{line.front().x, line.front().y, line.front().x, line.front().y};
    for (const WorldPoint& point : line) {
        box = box.with(point);
    }
    if (box.right - box.left < distance && box.bottom - box.top < distance) {
        return;
    }
    addThinnedLine(line, distance, lines);
    bounds.push_back(box);
}

std::span<const WorldPoint> BaseMap::Shapes::line(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : lines.ends[index - 1];
    return std::span(lines.points).subspan(begin, lines.ends[index] - begin);
}

const BaseMap::Level& BaseMap::levelFor(double scale) const {
    const double level = std::round(std::log2(std::max(scale, 256.0) / 256));
    return levels_[static_cast<std::size_t>(std::min(level, levelCount - 1.0))];
}

void BaseMap::addLand(const WorldRect& rect, double scale, Lines& polygons) const {
    const Shapes& land = levelFor(scale).land;
    for (std::size_t i = 0; i < land.bounds.size(); ++i) {
        onEachTurn(land.bounds[i], rect, [&](double turn) {
            const std::size_t from = polygons.points.size();
            const WorldRect there = rect.movedEast(-turn);
            if (there.holds(land.bounds[i])) {
                addLine(land.line(i), land.bounds[i], there, polygons);
            } else {
                addClippedPolygon(land.line(i), there, polygons);
            }
            moveEast(polygons, from, turn);
        });
    }
}

void BaseMap::addCoasts(const WorldRect& rect, double scale, Lines& lines) const {
    const Shapes& land = levelFor(scale).land;
    for (std::size_t i = 0; i < land.bounds.size(); ++i) {
        onEachTurn(land.bounds[i], rect, [&](double turn) {
            const std::size_t from = lines.points.size();
            addOutline(land.line(i), land.bounds[i], rect.movedEast(-turn), lines);
            moveEast(lines, from, turn);
        });
    }
}

void BaseMap::addBorders(const WorldRect& rect, double scale, Lines& lines) const {
    const Shapes& borders = levelFor(scale).borders;
    for (std::size_t i = 0; i < borders.bounds.size(); ++i) {
        onEachTurn(borders.bounds[i], rect, [&](double turn) {
            const std::size_t from = lines.points.size();
            addLine(borders.line(i), borders.bounds[i], rect.movedEast(-turn), lines);
            moveEast(lines, from, turn);
        });
    }
}

} // namespace map
