// SPDX-License-Identifier: MIT
#include "catalogue/table/ServiceTable.h"

#include "catalogue/NamedStations.h"
#include "platform/text/Text.h"
#include "platform/values/Geodesy.h"
#include "slib/DataCompression.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace catalogue {

namespace {

using nlohmann::json;

constexpr std::size_t longestTable = std::size_t{32} << 20;
constexpr std::size_t mostRows = 100'000;
/// Longer texts are no names; the table's longest has 36 bytes.
constexpr std::size_t longestText = 200;

template <typename Is>
std::string textThat(std::string text, std::size_t length, Is is) {
    if (text.size() != length || !std::ranges::all_of(text, is)) {
        text.clear();
    }
    return text;
}

/// Takes the table's values as they are read, so that it never exists as a tree.
class RowReader final : public nlohmann::json_sax<json> {
public:
    explicit RowReader(ServiceTable& table) : table_(table) {}

    bool null() override { return depth_ > 0; }
    bool boolean(bool) override { return depth_ > 0; }
    bool number_integer(std::int64_t value) override { return take(static_cast<double>(value)); }
    bool number_unsigned(std::uint64_t value) override { return take(static_cast<double>(value)); }
    bool number_float(double value, const std::string&) override { return take(value); }
    bool binary(json::binary_t&) override { return false; }

    bool string(std::string& value) override {
        if (depth_ == inRow && value.size() <= longestText) {
            if (std::string* text = textOf(key_)) {
                *text = std::move(value);
            }
        } else if (depth_ == inRow + 1 && key_ == "siteType") {
            row_.reportsMetars |= value == "METAR";
            row_.issuesTafs |= value == "TAF";
        }
        return depth_ > 0;
    }

    bool start_object(std::size_t) override {
        ++depth_;
        if (depth_ == inRow) {
            row_ = {};
            latitude_.reset();
            longitude_.reset();
        }
        return depth_ > 1;
    }
    bool start_array(std::size_t) override { return ++depth_ > 0; }
    bool end_array() override { return --depth_ >= 0; }
    bool key(std::string& value) override {
        if (depth_ == inRow) {
            key_ = std::move(value);
            // Of a key that is given twice the later value counts, also if it is none.
            if (std::string* text = textOf(key_)) {
                text->clear();
            } else if (key_ == "siteType") {
                row_.reportsMetars = row_.issuesTafs = false;
            } else {
                take(std::nullopt);
            }
        }
        return true;
    }

    bool end_object() override {
        if (depth_-- != inRow) {
            return true;
        }
        if (++read_ > mostRows) {
            table_.fault = "holds too many rows";
            return false;
        }
        keepRow();
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const json::exception&) override {
        return false;
    }

private:
    /// Rows are the objects of the outermost array.
    static constexpr int inRow = 2;

    bool take(std::optional<double> value) {
        if (depth_ == inRow) {
            if (key_ == "lat") {
                latitude_ = value;
            } else if (key_ == "lon") {
                longitude_ = value;
            } else if (key_ == "elev") {
                const bool isHeight = value && *value > -500 && *value < 6000;
                row_.elevation = isHeight ? std::optional(int(std::lround(*value))) : std::nullopt;
            } else if (key_ == "priority") {
                const bool isPriority = value && *value >= 0 && *value <= 9;
                row_.priority = isPriority ? std::optional(int(*value)) : std::nullopt;
            }
        }
        return depth_ > 0;
    }

    std::string* textOf(std::string_view key) {
        return key == "icaoId"    ? &row_.icao
               : key == "iataId"  ? &row_.iata
               : key == "wmoId"   ? &row_.wmo
               : key == "site"    ? &row_.site
               : key == "state"   ? &row_.state
               : key == "country" ? &row_.country
                                  : nullptr;
    }

    void keepRow() {
        const bool hasPosition = latitude_ && longitude_ &&
                                 platform::Location{*latitude_, *longitude_}.isValid() &&
                                 (*latitude_ != 0 || *longitude_ != 0);
        if (!isIdentifier(row_.icao)) {
            ++table_.withoutIdentifier;
        } else if (!hasPosition) {
            ++table_.withoutPosition;
        } else if (!identifiers_.insert(row_.icao).second) {
            ++table_.repeated;
        } else {
            row_.latitude = *latitude_;
            row_.longitude = *longitude_;
            row_.iata = textThat(std::move(row_.iata), 3, platform::isCapital);
            row_.wmo = textThat(std::move(row_.wmo), 5, platform::isDigit);
            table_.withoutElevation += row_.elevation ? 0 : 1;
            table_.rows.push_back(std::move(row_));
        }
    }

    ServiceTable& table_;
    int depth_ = 0;
    std::size_t read_ = 0;
    std::string key_;
    TableRow row_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
    std::unordered_set<std::string> identifiers_;
};

ServiceTable faulty(const char* fault) {
    ServiceTable table;
    table.fault = fault;
    return table;
}

} // namespace

ServiceTable readTable(const platform::Data& bytes) try {
    std::shared_ptr<const platform::Data> plain(std::shared_ptr<void>(), &bytes);
    if (bytes.size() >= 2 && bytes[0] == std::byte{0x1F} && bytes[1] == std::byte{0x8B}) {
        plain = gzipInflate(plain, longestTable);
        if (!plain) {
            return faulty("is cut short, damaged or too large");
        }
    } else if (bytes.size() > longestTable) {
        return faulty("is too large");
    }
    ServiceTable table;
    RowReader reader(table);
    const auto* text = reinterpret_cast<const char*>(plain->data());
    if (!json::sax_parse(text, text + plain->size(), &reader)) {
        return faulty(table.fault.empty() ? "is no table of stations" : table.fault.c_str());
    }
    if (table.rows.empty()) {
        return faulty("holds no station");
    }
    return table;
} catch (const std::bad_alloc&) {
    return faulty("does not fit into memory");
}

} // namespace catalogue
