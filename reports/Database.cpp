// SPDX-License-Identifier: MIT
#include "reports/Database.h"

#include "reports/Codec.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <limits>
#include <span>
#include <system_error>
#include <type_traits>
#include <utility>

namespace reports {
namespace {

constexpr int schema = 2;
constexpr std::size_t pageSize = 4096;
constexpr int patience = 2'000;

constexpr const char* tables =
    "CREATE TABLE metar(station TEXT NOT NULL, observed INTEGER NOT NULL, report BLOB NOT NULL,"
    " PRIMARY KEY(station, observed)) WITHOUT ROWID;"
    "CREATE INDEX metar_observed ON metar(observed);"
    "CREATE TABLE taf(station TEXT PRIMARY KEY, report BLOB NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE answer(station TEXT NOT NULL, kind INTEGER NOT NULL, asked INTEGER NOT NULL,"
    " ending INTEGER NOT NULL, status INTEGER NOT NULL, renewed INTEGER NOT NULL, tag TEXT NOT "
    "NULL,"
    " PRIMARY KEY(station, kind)) WITHOUT ROWID;";

std::int64_t number(Date date) {
    return date.time_since_epoch().count();
}

/// Stands for no time.
constexpr std::int64_t never = std::numeric_limits<std::int64_t>::min();

std::optional<Date> dateOf(std::int64_t number) {
    return number == never ? std::nullopt : std::optional(Date(Date::duration(number)));
}

/// A result code of SQLite on its way to where it is dealt with. It is never thrown out of this
/// file.
struct Failure {
    int code;
};

} // namespace

/// An open file.
struct Database::Connection {
    struct Close {
        void operator()(sqlite3* closed) const { sqlite3_close_v2(closed); }
    };

    void check(int code) const {
        if (code != SQLITE_OK) {
            throw Failure{code & 0xff};
        }
    }

    void run(const std::string& statements) const {
        check(sqlite3_exec(handle.get(), statements.c_str(), nullptr, nullptr, nullptr));
    }

    std::unique_ptr<sqlite3, Close> handle;
};

namespace {

using Bytes = std::span<const std::byte>;

/// One statement: bind its values in order, then step through its rows.
class Statement {
public:
    Statement(sqlite3* handle, const char* text) {
        const int code = sqlite3_prepare_v2(handle, text, -1, &statement_, nullptr);
        if (code != SQLITE_OK) {
            throw Failure{code & 0xff};
        }
    }
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& operator<<(std::int64_t value) {
        sqlite3_bind_int64(statement_, ++bound_, value);
        return *this;
    }
    /// Texts and bytes must stay valid until the statement has run.
    Statement& operator<<(const std::string& text) {
        sqlite3_bind_text(statement_, ++bound_, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
        return *this;
    }
    Statement& operator<<(Bytes bytes) {
        sqlite3_bind_blob(statement_, ++bound_, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_STATIC);
        return *this;
    }

    /// Whether there is another row.
    bool step() {
        const int code = sqlite3_step(statement_);
        if (code != SQLITE_ROW && code != SQLITE_DONE) {
            throw Failure{code & 0xff};
        }
        return code == SQLITE_ROW;
    }
    /// Runs the statement and makes it ready for other values.
    void run() {
        step();
        sqlite3_reset(statement_);
        bound_ = 0;
    }

    [[nodiscard]] std::int64_t number(int column) const {
        return sqlite3_column_int64(statement_, column);
    }
    [[nodiscard]] std::string text(int column) const {
        const auto bytes = blob(column);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    [[nodiscard]] Bytes blob(int column) const {
        const auto* first = static_cast<const std::byte*>(sqlite3_column_blob(statement_, column));
        return {first, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
    }

private:
    sqlite3_stmt* statement_ = nullptr;
    int bound_ = 0;
};

} // namespace

Database::Database(std::filesystem::path path, platform::Log& log, std::size_t mostBytes)
    : path_(std::move(path)), log_(log), mostBytes_(mostBytes) {
    open();
}

Database::~Database() = default;

bool Database::open() {
    if (path_.empty()) {
        return false;
    }
    try {
        connect();
    } catch (const Failure& failure) {
        connection_.reset();
        recover(failure.code);
    }
    return connection_ != nullptr;
}

void Database::connect() {
    std::error_code ignored;
    std::filesystem::create_directories(path_.parent_path(), ignored);
    connection_ = std::make_unique<Connection>();
    sqlite3* handle = nullptr;
    const int code =
        sqlite3_open_v2(path_.c_str(), &handle,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_->handle.reset(handle);
    connection_->check(code);
    sqlite3_busy_timeout(handle, patience);
    // Reports can be fetched again: with these settings a power cut may lose the latest, but cannot
    // damage the file.
    connection_->run(fmt::format(
        "PRAGMA page_size={}; PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", pageSize));
    connection_->run(fmt::format("PRAGMA max_page_count={};", mostBytes_ / pageSize));
    Statement version(handle, "PRAGMA user_version");
    const std::int64_t found = version.step() ? version.number(0) : 0;
    if (found == 0) {
        connection_->run(
            fmt::format("BEGIN IMMEDIATE;{}PRAGMA user_version={};COMMIT;", tables, schema));
    } else if (found != schema) {
        throw Failure{SQLITE_NOTADB};
    }
}

Batch Database::latest() {
    Batch all;
    if (!connection_) {
        return all;
    }
    try {
        sqlite3* handle = connection_->handle.get();
        // With max(), SQLite takes the other columns from the row that has the maximum.
        Statement metars(handle, "SELECT report, max(observed) FROM metar GROUP BY station");
        while (metars.step()) {
            if (auto metar = decodedMetar(metars.blob(0))) {
                all.metars.push_back({std::make_shared<const Metar>(std::move(*metar))});
            }
        }
        Statement tafs(handle, "SELECT report FROM taf");
        while (tafs.step()) {
            if (auto taf = decodedTaf(tafs.blob(0))) {
                all.tafs.push_back(std::make_shared<const Taf>(std::move(*taf)));
            }
        }
        Statement answers(handle,
                          "SELECT station, kind, asked, ending, status, renewed, tag FROM answer");
        while (answers.step()) {
            const std::int64_t ending = answers.number(3);
            if (ending >= 0 && ending <= static_cast<std::int64_t>(Answer::Ending::whole)) {
                all.answers.push_back(
                    {answers.text(0),
                     answers.number(1) == 0 ? Kind::metar : Kind::taf,
                     {Date(Date::duration(answers.number(2))), static_cast<Answer::Ending>(ending),
                      static_cast<int>(answers.number(4)), dateOf(answers.number(5)),
                      answers.text(6)}});
            }
        }
    } catch (const Failure& failure) {
        recover(failure.code);
    }
    return all;
}

std::vector<Metar> Database::history(const std::string& station, Date since) {
    std::vector<Metar> found;
    if (!connection_) {
        return found;
    }
    try {
        Statement metars(connection_->handle.get(), "SELECT report FROM metar WHERE station = ?"
                                                    " AND observed >= ? ORDER BY observed");
        metars << station << number(since);
        while (metars.step()) {
            if (auto metar = decodedMetar(metars.blob(0))) {
                found.push_back(std::move(*metar));
            }
        }
    } catch (const Failure& failure) {
        recover(failure.code);
    }
    return found;
}

bool Database::write(const Batch& batch) {
    for (int attempt = 0; attempt < 2 && (connection_ || open()); ++attempt) {
        try {
            tryWrite(batch);
            return true;
        } catch (const Failure& failure) {
            if (!recover(failure.code)) {
                break;
            }
        }
    }
    return false;
}

void Database::tryWrite(const Batch& batch) {
    sqlite3* handle = connection_->handle.get();
    connection_->run("BEGIN IMMEDIATE");
    try {
        Statement keep(handle, "INSERT OR REPLACE INTO metar VALUES(?, ?, ?)");
        Statement forget(handle, "DELETE FROM metar WHERE station = ? AND observed <> ?");
        for (const auto& [metar, keepsHistory] : batch.metars) {
            const platform::Data bytes = encoded(*metar);
            (keep << metar->station << number(metar->observed) << Bytes(bytes)).run();
            if (!keepsHistory) {
                (forget << metar->station << number(metar->observed)).run();
            }
        }
        Statement keepTaf(handle, "INSERT OR REPLACE INTO taf VALUES(?, ?)");
        for (const auto& taf : batch.tafs) {
            const platform::Data bytes = encoded(*taf);
            (keepTaf << taf->station << Bytes(bytes)).run();
        }
        Statement keepAnswer(handle, "INSERT OR REPLACE INTO answer VALUES(?, ?, ?, ?, ?, ?, ?)");
        for (const auto& [station, kind, answer] : batch.answers) {
            (keepAnswer << station << static_cast<std::int64_t>(kind) << number(answer.asked)
                        << static_cast<std::int64_t>(answer.ending) << std::int64_t{answer.status}
                        << (answer.renewed ? number(*answer.renewed) : never) << answer.tag)
                .run();
        }
        connection_->run("COMMIT");
    } catch (const Failure&) {
        sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void Database::prune(Date before) {
    if (!connection_) {
        return;
    }
    try {
        Statement old(connection_->handle.get(),
                      "DELETE FROM metar WHERE observed < ?1 AND EXISTS (SELECT 1 FROM metar later"
                      " WHERE later.station = metar.station AND later.observed > metar.observed)");
        (old << number(before)).run();
    } catch (const Failure& failure) {
        recover(failure.code);
    }
}

bool Database::recover(int code) {
    switch (code) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        setAside();
        return connection_ != nullptr;
    case SQLITE_FULL:
        complain("is full, so the history in it is deleted");
        try {
            if (!connection_) {
                return false;
            }
            connection_->run("DELETE FROM metar WHERE EXISTS (SELECT 1 FROM metar later WHERE"
                             " later.station = metar.station AND later.observed > metar.observed)");
        } catch (const Failure&) {
            return false;
        }
        return true;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        // Another program is using the file; a later write may succeed.
        return false;
    default:
        complain("cannot be used: " + std::string(sqlite3_errstr(code)));
        return false;
    }
}

void Database::setAside() {
    connection_.reset();
    const std::filesystem::path aside = path_.string() + ".damaged";
    std::error_code error;
    std::filesystem::rename(path_, aside, error);
    for (const char* companion : {"-wal", "-shm"}) {
        std::error_code ignored;
        std::filesystem::remove(path_.string() + companion, ignored);
    }
    log_.line(error ? fmt::format("{} is damaged, and cannot be renamed", path_.string())
                    : fmt::format("{} is damaged, and is now {}", path_.string(), aside.string()));
    if (error) {
        return;
    }
    try {
        connect();
    } catch (const Failure&) {
        connection_.reset();
    }
}

void Database::complain(const std::string& what) {
    if (!std::exchange(hasComplained_, true)) {
        log_.line(path_.string() + " " + what);
    }
}

} // namespace reports
