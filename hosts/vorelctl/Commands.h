// The commands of vorelctl. Each knows its help, reads its arguments and does its work.
#pragma once

#include "hosts/kit/PlainHost.h"
#include "hosts/vorelctl/CommandLine.h"

#include <string>
#include <string_view>
#include <vector>

namespace vorel::host {

class ICommand {
public:
    ICommand() = default;
    ICommand(const ICommand&) = delete;
    ICommand& operator=(const ICommand&) = delete;
    virtual ~ICommand() = default;

    virtual std::string_view Name() const = 0;
    virtual std::string_view Usage() const = 0;   // what stands behind the name
    virtual std::string_view Summary() const = 0; // one line
    virtual std::string_view Details() const { return {}; }
    virtual std::vector<TOption> Options() const = 0;
    // Failures are ECommandFailure or EVorelError.
    virtual ExitStatus Run(const TArguments& arguments) const = 0;
};

// All commands in the order of the help.
const std::vector<const ICommand*>& AllCommands();

const ICommand& DebugCommand();
// load, run, regs and their like: one command of a debugging session each.
std::vector<const ICommand*> SingleDebugCommands();
const ICommand& ScanCommand();
const ICommand& ServeCommand();
const ICommand& BsdlCommand();
const ICommand& ObjectCommand();
const ICommand& PinsCommand();
const ICommand& VendorsCommand();
const ICommand& FamiliesCommand();
const ICommand& DevicesCommand();
const ICommand& DeviceCommand();
const ICommand& IdCommand();
const ICommand& CacheCommand();
const ICommand& MappingCommand();

} // namespace vorel::host
