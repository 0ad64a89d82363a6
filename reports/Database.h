// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Report.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace reports {

enum class Kind : std::uint8_t { metar, taf };

/// What a data server is asked for: the reports of one station, or of several at once.
struct Question {
    Kind kind = Kind::metar;
    /// Their identifiers.
    std::vector<std::string> stations;
};

/// How the last request for a station's METAR or TAF ended.
struct Answer {
    enum class Ending : std::uint8_t {
        notReached,
        refused,       ///< answered with a status that does not mean success
        notUnderstood, ///< what came is not a reply of the service
        nothing,       ///< a reply without a report of that station
        whole,
    };

    Date asked;
    Ending ending = Ending::notReached;
    /// The status of the HTTP reply; 0 if none came.
    int status = 0;
    /// When the server last sent a whole reply, or said that it had not changed; absent if it never
    /// did. Known of the whole world's reports alone, and so is the next.
    std::optional<Date> renewed = std::nullopt;
    /// The entity tag of that reply.
    std::string tag = {};

    friend bool operator==(const Answer&, const Answer&) = default;
};

/// What is written together.
struct Batch {
    struct Entry {
        std::shared_ptr<const Metar> report;
        /// Whether the station's earlier METARs stay as its history, until they are pruned.
        bool keepsHistory = false;
    };
    struct Asked {
        std::string station;
        Kind kind = Kind::metar;
        Answer answer;
    };

    std::vector<Entry> metars;
    std::vector<std::shared_ptr<const Taf>> tafs;
    std::vector<Asked> answers;
};

/// The reports on the disk: every station's last METAR and TAF, how the last requests for them
/// ended, and the METARs kept as history. A file that is damaged, or that another program wrote, is
/// renamed and a new one begun, with one line in the log. If nothing can be written, the database
/// is empty and stays so, also with one line. Used by one thread at a time.
class Database {
public:
    /// The log is borrowed and must outlive the database. The file never grows beyond `mostBytes`.
    /// With an empty path nothing is kept.
    Database(std::filesystem::path path, platform::Log& log,
             std::size_t mostBytes = std::size_t{64} << 20);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Every station's last METAR and TAF, and all answers, in no particular order.
    [[nodiscard]] Batch latest();
    /// A station's stored METARs observed at `since` or later, the oldest first.
    [[nodiscard]] std::vector<Metar> history(const std::string& station, Date since);

    /// Writes all of it or nothing; false if it was not written. If the file is full, all history
    /// is deleted to make room.
    bool write(const Batch& batch);
    /// Deletes METARs observed before `before`, but never a station's last one.
    void prune(Date before);

private:
    struct Connection;
    /// Connects, and says whether that worked.
    bool open();
    void connect();
    void tryWrite(const Batch& batch);
    void setAside();
    /// Does what can be done after a failure, and says whether it is worth trying once more.
    bool recover(int code);
    void complain(const std::string& what);

    std::filesystem::path path_;
    platform::Log& log_;
    std::size_t mostBytes_;
    std::unique_ptr<Connection> connection_;
    bool hasComplained_ = false;
};

} // namespace reports
