// A scripted machine: lists devices, writes down every call that reaches the driver and answers
// transfers from a script.
#pragma once

#include "vorel/UsbServices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace vorel {

// Bytes as "1B 64".
inline std::string Bytes(const void* data, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02X ", static_cast<const unsigned char*>(data)[i]);
        text += hex;
    }
    return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

class TFakeUsb final : public IUsbServices {
public:
    struct TDevice {
        std::uint16_t Vendor = 0x1B8C;
        std::uint16_t Product = 0x0100;
        WideText Name = u"Vorel Pod-2.1 \u20AC";
        std::uint32_t OpenError = 0;
    };
    // How a transfer goes: `Error` is its end, `Count` its bytes (All: what was asked).
    struct TReply {
        static constexpr std::uint32_t All = 0x7FFFFFFF;
        std::uint32_t Error = 0;
        std::uint32_t Count = All;
        std::string Data{};
        enum { AtOnce, Later, NotAtAll, Refused } When = Later;
    };

    std::vector<TDevice> Devices{TDevice{}};
    std::vector<std::string> Log;     // every call but waits, results and look-ups
    std::deque<TReply> Writes, Reads; // the next transfers; the Default ones follow
    TReply DefaultWrite, DefaultRead;
    std::uint16_t Version = UsbDriverVersion;
    std::uint32_t FailingControl = 0; // this code fails with DeviceFailed
    std::uint32_t DetailSize = 4 + 7;
    bool HasList = true, HasRequests = true, ControlLater = false;
    std::uint32_t EnumError = UsbError::NoMoreItems;
    int Alive = 0; // lists, devices and requests not given back

    ~TFakeUsb() { EXPECT_EQ(Alive, 0) << "lists, devices or requests were not given back"; }

    // The data of all writes since the last call.
    std::vector<std::string> TakeWrites() {
        std::vector<std::string> writes;
        for (const std::string& line : std::exchange(Log, {})) {
            if (line.rfind("write ", 0) == 0) {
                writes.push_back(line.substr(6));
            }
        }
        return writes;
    }

    UsbList* CreateInterfaceList(const Guid& id) noexcept override {
        EXPECT_EQ(id, UsbIoInterfaceClass);
        return HasList ? New<UsbList>() : nullptr;
    }
    void DestroyInterfaceList(UsbList* list) noexcept override { Delete(list); }
    std::uint32_t EnumInterface(UsbList*, const Guid&, std::uint32_t index) noexcept override {
        return index < Devices.size() ? 0 : EnumError;
    }
    std::uint32_t GetInterfaceDetail(UsbList*, const Guid&, std::uint32_t index, void* record,
                                     std::uint32_t capacity,
                                     std::uint32_t& needed) noexcept override {
        needed = DetailSize;
        if (record == nullptr || capacity < 4 + 7) {
            return UsbError::InsufficientBuffer;
        }
        EXPECT_EQ(Bytes(record, 4), "05 00 00 00");
        std::memcpy(static_cast<char*>(record) + 4, ("path-" + std::to_string(index)).c_str(), 7);
        return 0;
    }
    std::uint32_t OpenDevice(const char* path, UsbDevice*& device) noexcept override {
        Log.push_back(std::string("open ") + path);
        Current = static_cast<std::size_t>(path[std::strlen(path) - 1] - '0');
        const std::uint32_t error =
            Current < Devices.size() ? Devices[Current].OpenError : UsbError::FileNotFound;
        device = error == 0 ? New<UsbDevice>() : nullptr;
        return error;
    }
    void CloseDevice(UsbDevice* device) noexcept override {
        Log.emplace_back("close");
        Delete(device);
    }
    UsbRequest* CreateRequest() noexcept override {
        return HasRequests ? New<UsbRequest>() : nullptr;
    }
    void DestroyRequest(UsbRequest* request) noexcept override {
        EXPECT_FALSE(At(request).Busy) << "given back while under way";
        Delete(request);
    }
    std::uint32_t Control(UsbDevice*, std::uint32_t code, const void* input,
                          std::uint32_t inputSize, void* output, std::uint32_t outputSize,
                          UsbRequest* request) noexcept override {
        Log.push_back("control " + std::to_string(code & 0xFF) + ": " + Bytes(input, inputSize));
        if (code == FailingControl) {
            return UsbError::DeviceFailed;
        }
        const std::string answer = ControlAnswer(code, static_cast<const unsigned char*>(input));
        std::copy_n(answer.data(), std::min<std::size_t>(answer.size(), outputSize),
                    static_cast<char*>(output));
        At(request) = {0, static_cast<std::uint32_t>(answer.size()), false};
        return ControlLater ? UsbError::Pending : 0;
    }
    std::uint32_t Read(UsbDevice*, void* buffer, std::uint32_t size,
                       UsbRequest* request) noexcept override {
        Log.push_back("read " + std::to_string(size));
        const TReply reply = Next(Reads, DefaultRead);
        std::memcpy(buffer, reply.Data.data(), std::min<std::size_t>(reply.Data.size(), size));
        return Start(reply, size, request);
    }
    std::uint32_t Write(UsbDevice*, const void* buffer, std::uint32_t size,
                        UsbRequest* request) noexcept override {
        Log.push_back("write " + Bytes(buffer, size));
        return Start(Next(Writes, DefaultWrite), size, request);
    }
    std::uint32_t WaitForRequest(UsbRequest* request, std::uint32_t timeoutMs) noexcept override {
        if (At(request).Busy) {
            EXPECT_NE(timeoutMs, 0xFFFFFFFF) << "nothing would end this wait";
            Log.push_back("waited " + std::to_string(timeoutMs));
            return UsbError::WaitTimeout;
        }
        return 0;
    }
    std::uint32_t GetResult(UsbDevice*, UsbRequest* request, std::uint32_t& byteCount,
                            bool) noexcept override {
        byteCount = At(request).Count;
        return At(request).Error;
    }
    void CancelIo(UsbDevice*) noexcept override {
        Log.emplace_back("cancel");
        Hanging->Busy = false;
    }

private:
    struct TRequest {
        std::uint32_t Error = 0;
        std::uint32_t Count = 0;
        bool Busy = false;
    };
    template<class T>
    T* New() {
        ++Alive;
        return reinterpret_cast<T*>(new TRequest);
    }
    template<class T>
    void Delete(T* object) {
        --Alive;
        delete reinterpret_cast<TRequest*>(object);
    }
    static TRequest& At(UsbRequest* request) { return *reinterpret_cast<TRequest*>(request); }

    static TReply Next(std::deque<TReply>& script, const TReply& otherwise) {
        if (script.empty()) {
            return otherwise;
        }
        const TReply reply = script.front();
        script.pop_front();
        return reply;
    }
    std::uint32_t Start(const TReply& reply, std::uint32_t size, UsbRequest* request) {
        const std::uint32_t count = reply.Count == TReply::All ? size : reply.Count;
        At(request) = {reply.Error, count, reply.When == TReply::NotAtAll};
        Hanging = &At(request);
        if (reply.When == TReply::Refused) {
            return reply.Error;
        }
        return reply.When == TReply::AtOnce ? 0 : UsbError::Pending;
    }
    std::string ControlAnswer(std::uint32_t code, const unsigned char* input) const {
        const TDevice& device = Devices[Current];
        if (code == UsbControl::GetDriverInfo) {
            std::string info(12, '\0');
            info[0] = static_cast<char>(Version);
            info[1] = static_cast<char>(Version >> 8);
            info[8] = 0x20;
            return info;
        }
        if (code != UsbControl::GetDescriptor) {
            return {};
        }
        std::string answer(18, '\0');
        if (input[4] == 1) {
            std::memcpy(&answer[8], &device.Vendor, 2);
            std::memcpy(&answer[10], &device.Product, 2);
            answer[15] = 2;
            answer[16] = 3;
            return answer;
        }
        const WideText text = input[5] == 2 ? device.Name : u"47.11 B";
        answer.assign("\x03\x03", 2);
        answer.append(reinterpret_cast<const char*>(text.data()), 2 * text.size());
        return answer;
    }

    std::size_t Current = 0;
    TRequest* Hanging = nullptr;
};

} // namespace vorel
