// Year files made and kept: a fresh year file created from the template, the
// test whether another file belongs to the open chain, the attachment of other
// modules' databases to every file of the chain, and compaction.
//
// A new file is a copy of the template "ldg6f.qdb6f" from the component's
// folder. The copy is opened as soon as the file system lets go of it (a
// fresh copy may stay locked for a moment), stamped, and filled inside one
// transaction with the module row, the two class roots, the search index,
// the year, its first period and budget period, and the first journal. A
// failure inside the transaction rolls it back and leaves the copied file on
// the disk, not yet a valid file of any chain.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/database.hpp"
#include "support/variant.hpp"

namespace ldg {

class Engine;

// The name of the template in the component's folder.
inline constexpr const char* kTemplateFileName = "ldg6f.qdb6f";
// The module this engine registers in every file it creates.
inline constexpr const char* kFinanceModuleName = "Velmora Finance";

// The clock of the wait for a fresh copy: the time of day in whole seconds,
// and the pause between two attempts to open it.
class CreationClock {
 public:
  virtual ~CreationClock() = default;
  // hour * 3600 + minute * 60 + second of the local time.
  virtual int32_t SecondsSinceMidnight() = 0;
  // Waits kOpenAttemptSpacingMs.
  virtual void PauseBetweenAttempts() = 0;
};

// The wait is bounded twice: at most this many attempts, and no new attempt
// once more than this many seconds have passed. The attempts are spaced so
// that all of them span about the same time.
inline constexpr int kOpenAttempts = 1000;
inline constexpr int kOpenWaitSeconds = 120;
inline constexpr int kOpenAttemptSpacingMs = kOpenWaitSeconds * 1000 / kOpenAttempts;

// Hook for tests: replaces the clock of this thread; nullptr restores the real one.
void SetCreationClockForTesting(CreationClock* clock);

// Checks the span and the year id, copies the template from app_path over
// database_name, waits for it to open, stamps it and fills it (see the top of
// the file). The file is closed again at the end. year_id absent: the next
// free id of the file. Checks in this order: 1191 begin no date, 1214 a
// given year id that is no Long, 1192 end no date, 1193 begin not before end.
void CreateYearFile(const std::string& app_path, const Variant& database_name, const Variant& begin,
                    const Variant& end, const std::optional<Variant>& year_id);

// CreateYearFile from the engine's AppPath, then the engine closes its
// database, opens the new one and raises DatabaseCreated unless muted.
void CreateDatabase(Engine& engine, const Variant& database_name, const Variant& begin, const Variant& end,
                    const std::optional<Variant>& year_id = std::nullopt);

// The steps of a new file that the closing repeats for the next year's file.
// The module row: the given instance id when above 0, else the present moment
// as a date number; the value also becomes the thread's last created instance
// id. Returns it.
double AddModuleRegistration(store::Database& database, double instance_id);
// The two class roots "A" (balance sheet, debit) and "B" (income statement).
void AddRootAccounts(store::Database& database);
// The first period and the first budget period, spanning the file's own year;
// 1000 when the file has no year row of its own.
void AddFirstPeriods(store::Database& database);

// Whether the file's module row carries the instance id of the open chain
// (the session's). 1201 when the file has no module row.
bool IsSameInstance(Engine& engine, const Variant& database_name);

// Adds the attachment row (id, module, database) to "sysAttachedDatabases" of
// every year file of the open chain: the open file directly, the others opened
// beside it by their bare names. A missing file stops the walk with the
// store's error, after the files before it were changed.
void AddClientDatabase(double instance_id, const std::string& module_name, const std::string& database_name);

// The attachment of the instance id: fills module_name and database_name and
// gives True; without one the arguments keep their values and the result is
// Empty, not False.
Variant GetClientDatabaseInfo(const Variant& instance_id, Variant& module_name, Variant& database_name);

// Closes the open database, compacts its file through a temporary copy and
// opens it again; always "". When the compaction left no copy the database
// stays closed and the call fails with run-time error 13 (see the source).
std::string Compact(Engine& engine);

}  // namespace ldg
