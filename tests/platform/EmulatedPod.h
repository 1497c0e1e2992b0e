// Pods on an emulated USB: unmodified libusb sees them in /sys and /dev, and their model answers
// what the kernel's usbfs would.
#pragma once

#include <umockdev.h>

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace vorel {

// A pod answers an identify item with "11" and every capture item with two bytes, the second one
// 0xA0. The switches are read by the emulation's own thread; set them between transfers.
class TEmulatedPod {
public:
    struct TBehaviour {
        bool Silent = false;        // the answers never come
        bool StallsAnswers = false; // reads are stalled
        bool WantsLanguage = false; // strings without a language are stalled
        bool StallsStrings = false; // all strings are stalled
    } Behaviour;

    // On port `port` (1 to 9) of bus 1, in configuration `configuration` (0: none yet).
    TEmulatedPod(UMockdevTestbed* testbed, int port, int product, int configuration = 1);
    TEmulatedPod(const TEmulatedPod&) = delete;
    TEmulatedPod& operator=(const TEmulatedPod&) = delete;
    ~TEmulatedPod();

    std::string Node() const { return DevNode; }
    void Unplug();
    // What came over the wire, in order: "config 1", "claim 0", "release 0", "out <n bytes>".
    std::vector<std::string> TakeEvents();

private:
    struct TUrb {
        UMockdevIoctlData* Data = nullptr;
        UMockdevIoctlData* Buffer = nullptr;
    };

    static gboolean OnIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    void Handle(UMockdevIoctlClient* client);
    void Submit(UMockdevIoctlData* arg);
    void Control(TUrb urb);
    std::string StringDescriptor(int index, int language) const;
    void Command(const std::uint8_t* data, int size);
    void AnswerReads();
    void Finish(TUrb urb, int status, int length);
    bool Discard(gulong address);
    int Reap(UMockdevIoctlData* arg, int& error);
    void Note(const char* what, unsigned number);

    UMockdevTestbed* Testbed;
    std::string SysPath, DevNode, DeviceDescriptor;
    UMockdevIoctlBase* Base;
    std::recursive_mutex Mutex;
    bool Gone = false;
    std::string Answers;
    std::deque<TUrb> Waiting, Done;
    std::vector<std::string> Events;
};

} // namespace vorel
