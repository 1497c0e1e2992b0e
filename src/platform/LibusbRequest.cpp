#include "platform/LibusbRequest.h"

#include "platform/LibusbErrors.h"

#include <algorithm>
#include <chrono>

namespace vorel {

namespace {

constexpr unsigned DescriptorTimeoutMs = 5000;
constexpr std::uint32_t SliceMs = 100; // of a long wait
constexpr int DrainSlices = 50;
constexpr std::uint16_t LongestDescriptor = 0xFFFF;
constexpr std::size_t LanguageTableSize = 255;

using TClock = std::chrono::steady_clock;

} // namespace

std::uint32_t TLibusbRequest::Prepare(libusb_context* context, libusb_device_handle* device,
                                      void* buffer, std::uint32_t size, std::size_t headerSize) {
    if (size > MaxBytes || (buffer == nullptr && size != 0)) {
        return End(UsbError::InvalidParameter);
    }
    if (Flight == nullptr) {
        auto flight = std::make_unique<TFlight>();
        flight->Transfer.reset(libusb_alloc_transfer(0));
        flight->Owner = this;
        if (flight->Transfer == nullptr) {
            return End(UsbError::NotEnoughMemory);
        }
        Flight = std::move(flight);
    }
    Flight->Data.assign(headerSize + size, 0);
    Context = context;
    Device = device;
    Target = buffer;
    Size = size;
    HeaderSize = headerSize;
    Stage = TStage::Plain;
    return UsbError::None;
}

std::uint32_t TLibusbRequest::StartBulk(libusb_context* context, libusb_device_handle* device,
                                        std::uint8_t endpoint, void* buffer, std::uint32_t size) {
    const std::uint32_t error = Prepare(context, device, buffer, size, 0);
    if (error != UsbError::None) {
        return error;
    }
    if ((endpoint & LIBUSB_ENDPOINT_IN) == 0) {
        std::copy_n(static_cast<const std::uint8_t*>(buffer), size, Flight->Data.data());
        Target = nullptr;
    }
    libusb_fill_bulk_transfer(Flight->Transfer.get(), device, endpoint, Flight->Data.data(),
                              static_cast<int>(size), &OnTransferEnd, Flight.get(), 0);
    return Submit();
}

std::uint32_t TLibusbRequest::StartDescriptor(libusb_context* context, libusb_device_handle* device,
                                              const TDescriptorQuery& query, void* buffer,
                                              std::uint32_t size) {
    const std::uint32_t asked = std::min<std::uint32_t>(size, LongestDescriptor);
    const std::uint32_t error = Prepare(context, device, buffer, asked, LIBUSB_CONTROL_SETUP_SIZE);
    if (error != UsbError::None) {
        return error;
    }
    Query = query;
    const bool withoutLanguage =
        query.Type == LIBUSB_DT_STRING && query.Index != 0 && query.Language == 0;
    Stage = withoutLanguage ? TStage::FirstTry : TStage::Plain;
    FillDescriptor(query);
    return Submit();
}

void TLibusbRequest::FillDescriptor(const TDescriptorQuery& query) {
    std::uint8_t* data = Flight->Data.data();
    const auto size = static_cast<std::uint16_t>(Flight->Data.size() - LIBUSB_CONTROL_SETUP_SIZE);
    libusb_fill_control_setup(
        data, static_cast<std::uint8_t>(LIBUSB_ENDPOINT_IN | (query.Recipient & 0x1FU)),
        LIBUSB_REQUEST_GET_DESCRIPTOR, static_cast<std::uint16_t>((query.Type << 8) | query.Index),
        query.Language, size);
    libusb_fill_control_transfer(Flight->Transfer.get(), Device, data, &OnTransferEnd, Flight.get(),
                                 DescriptorTimeoutMs);
}

std::uint32_t TLibusbRequest::Submit() noexcept {
    Ended = 0;
    const int result = libusb_submit_transfer(Flight->Transfer.get());
    return result == LIBUSB_SUCCESS ? UsbError::Pending : End(UsbErrorOfCall(result));
}

std::uint32_t TLibusbRequest::End(std::uint32_t error, std::uint32_t byteCount) noexcept {
    Error = error;
    ByteCount = byteCount;
    Ended = 1;
    return error;
}

void LIBUSB_CALL TLibusbRequest::OnTransferEnd(libusb_transfer* transfer) noexcept {
    auto* flight = static_cast<TFlight*>(transfer->user_data);
    if (flight->Owner == nullptr) {
        delete flight;
        return;
    }
    try {
        flight->Owner->OnEnd();
    } catch (...) {
        flight->Owner->End(UsbError::NotEnoughMemory);
    }
}

void TLibusbRequest::OnEnd() {
    const libusb_transfer_status status = Flight->Transfer->status;
    if (Stage == TStage::FirstTry && status == LIBUSB_TRANSFER_STALL) {
        AskForLanguages();
    } else if (Stage != TStage::Languages) {
        Deliver();
    } else if (status == LIBUSB_TRANSFER_COMPLETED) {
        AskInItsLanguage();
    } else {
        End(UsbErrorOfTransfer(status));
    }
}

void TLibusbRequest::AskForLanguages() {
    Stage = TStage::Languages;
    Flight->Data.assign(LIBUSB_CONTROL_SETUP_SIZE + LanguageTableSize, 0);
    FillDescriptor({Query.Recipient, Query.Type, 0, 0});
    Submit();
}

void TLibusbRequest::AskInItsLanguage() {
    // The first language stands behind the table's length and type.
    if (Flight->Transfer->actual_length < 4) {
        End(UsbError::DeviceFailed);
        return;
    }
    const std::uint8_t* table = Flight->Data.data() + LIBUSB_CONTROL_SETUP_SIZE;
    Query.Language = static_cast<std::uint16_t>(table[2] | (table[3] << 8));
    Stage = TStage::Plain;
    Flight->Data.assign(HeaderSize + Size, 0);
    FillDescriptor(Query);
    Submit();
}

void TLibusbRequest::Deliver() noexcept {
    const libusb_transfer& transfer = *Flight->Transfer;
    const auto moved =
        std::min(static_cast<std::uint32_t>(std::max(transfer.actual_length, 0)), Size);
    if (Target != nullptr) {
        std::copy_n(Flight->Data.data() + HeaderSize, moved, static_cast<std::uint8_t*>(Target));
    }
    End(UsbErrorOfTransfer(transfer.status), moved);
}

int TLibusbRequest::HandleEvents(std::uint32_t milliseconds) noexcept {
    timeval limit{};
    limit.tv_sec = static_cast<decltype(limit.tv_sec)>(milliseconds / 1000);
    limit.tv_usec = static_cast<decltype(limit.tv_usec)>(milliseconds % 1000) * 1000;
    const int result = libusb_handle_events_timeout_completed(Context, &limit, &Ended);
    return result == LIBUSB_ERROR_INTERRUPTED ? LIBUSB_SUCCESS : result;
}

std::uint32_t TLibusbRequest::Wait(std::uint32_t timeoutMs) noexcept {
    const auto end = TClock::now() + std::chrono::milliseconds(timeoutMs);
    while (IsUnderWay()) {
        std::uint32_t slice = SliceMs;
        if (timeoutMs != NoLimit) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(end - TClock::now()).count();
            if (left <= 0) {
                return UsbError::WaitTimeout;
            }
            slice = static_cast<std::uint32_t>(std::min<std::int64_t>(left, SliceMs));
        }
        const int result = HandleEvents(slice);
        if (result != LIBUSB_SUCCESS) {
            return UsbErrorOfCall(result);
        }
    }
    return UsbError::None;
}

std::uint32_t TLibusbRequest::GetResult(std::uint32_t& byteCount) const noexcept {
    byteCount = IsUnderWay() ? 0 : ByteCount;
    return IsUnderWay() ? UsbError::Pending : Error;
}

void TLibusbRequest::Cancel() noexcept {
    if (IsUnderWay()) {
        libusb_cancel_transfer(Flight->Transfer.get());
    }
}

void TLibusbRequest::Drain() noexcept {
    Cancel();
    for (int i = 0; i < DrainSlices && IsUnderWay(); ++i) {
        HandleEvents(SliceMs);
    }
    if (IsUnderWay()) {
        Flight->Owner = nullptr;
        static_cast<void>(Flight.release());
        End(UsbError::Aborted);
    }
}

} // namespace vorel
