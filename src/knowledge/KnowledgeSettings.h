// What the driver cache and the driver manager need from outside. All that is pointed to belongs to
// the caller and outlives them.
#pragma once

#include "knowledge/RebuildProgress.h"
#include "knowledge/SQLiteDatabase.h"
#include "platform/DynamicLibrary.h"
#include "platform/FileTimes.h"

#include <string>

namespace vorel {

class IHostClient;

struct TKnowledgeSettings {
    // Null in a process without a host: modules then lie in ModuleDirectory, and the database is
    // made in the current folder.
    IHostClient* Host = nullptr;
    // The folder of the library itself, in which modules are looked for; empty stands for the
    // host's System folder.
    std::string ModuleDirectory;
    IModuleLoader* Loader = nullptr;
    IFileTimes* FileTimes = nullptr;
    IRebuildProgress* Progress = nullptr; // may be null
    // What to do while another process writes the database.
    TSQLiteDatabase::BusyHandler OnBusy = TSQLiteDatabase::WaitAWhile;
};

} // namespace vorel
