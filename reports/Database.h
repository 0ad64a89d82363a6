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

/// What a data server is asked for.
struct Question {
    Kind kind = Kind::metar;
    std::string station;
};

/// How the last question for a station's report of one kind ended.
struct Answer {
    enum class Ending : std::uint8_t {
        notReached,
        refused,       ///< with a status that is no success
        notUnderstood, ///< something came that is no reply of the service
        nothing,       ///< a reply without a report of that station
        whole,
    };

    Date asked;
    Ending ending = Ending::notReached;
    /// Of the HTTP reply; 0 where none came.
    int status = 0;

    friend bool operator==(const Answer&, const Answer&) = default;
};

/// What is to be kept at once.
struct Batch {
    struct Entry {
        std::shared_ptr<const Metar> report;
        /// Earlier ones of the station stay, for as long as history is kept.
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

/// The reports on the disk: the last METAR and TAF of every station, and what more of METARs is
/// kept. A file that is damaged, or of another program, is renamed, with one line in the log, and
/// begun anew; where nothing can be written the database is empty and stays so, with one line too.
/// One thread at a time.
class Database {
public:
    /// The log is borrowed and outlives it. The file grows to that size at most.
    Database(std::filesystem::path path, platform::Log& log,
             std::size_t mostBytes = std::size_t{64} << 20);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Everything's last, in no order.
    [[nodiscard]] Batch latest();
    /// A station's METARs that are kept and not older than `since`, the oldest first.
    [[nodiscard]] std::vector<Metar> history(const std::string& station, Date since);

    /// All of it or nothing; false when it was not written. Where the file has no more room,
    /// history goes first.
    bool write(const Batch& batch);
    /// Removes METARs observed before `before`, but no station's last one.
    void prune(Date before);

private:
    struct Connection;
    /// Whether there is a connection now.
    bool open();
    void connect();
    void tryWrite(const Batch& batch);
    void setAside();
    /// After a failure: whether it is worth trying once more.
    bool recover(int code);
    void complain(const std::string& what);

    std::filesystem::path path_;
    platform::Log& log_;
    std::size_t mostBytes_;
    std::unique_ptr<Connection> connection_;
    bool hasComplained_ = false;
};

} // namespace reports
