// An emulated parallel port of the kernel: programs see /dev/parport0, and a model of the kernel's
// ppdev answers their requests. Processes that this one starts see it too.
#pragma once

#include "vorel/ParallelPort.h"

#include <umockdev.h>

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>

namespace vorel {

// Claims belong to open files, as ppdev has them: what a file claims is given up when it is closed,
// whoever closes it. Only the kernel counts a file as a user of the port until it is closed; here
// it is one while it claims, since the emulation hears of a closing a little later.
class TEmulatedPort {
public:
    // The registers are those of `hardware`, not owned. It is used on the emulation's own thread.
    explicit TEmulatedPort(IParallelPort& hardware);
    TEmulatedPort(const TEmulatedPort&) = delete;
    TEmulatedPort& operator=(const TEmulatedPort&) = delete;
    ~TEmulatedPort();

    UMockdevTestbed* GetTestbed() const noexcept { return Testbed; }
    // Requests wait for their answer from now on, until they may go on.
    void HoldRequests(bool hold);

    bool IsClaimed();
    int OpenFiles();

    std::atomic<bool> HasOtherDriver = false; // of the kernel, as for printers, on the port
    std::atomic<bool> HasHeldRequest = false;
    std::atomic<int> Releases = 0; // that a program asked for
    std::atomic<int> Transfers = 0;

private:
    struct TUser {
        bool Exclusive = false;
        bool Claimed = false;
        bool Gone = false; // the program, within a request
    };

    static gboolean OnIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static void OnOpened(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    void DropClosedFiles();
    bool AnyClaims() const;
    int Answer(TUser& user, unsigned long request, UMockdevIoctlData* argument);
    int Claim(TUser& user);
    int Transfer(unsigned long request, UMockdevIoctlData* argument);

    UMockdevTestbed* Testbed;
    UMockdevIoctlBase* Handler;
    IParallelPort& Hardware;
    std::mutex Mutex;
    std::map<UMockdevIoctlClient*, TUser> Users; // by open file
    std::condition_variable Resumed;
    bool Holding = false;
};

} // namespace vorel
