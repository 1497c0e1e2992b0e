#include "platform/EmulatedPod.h"

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace vorel {

namespace {

usbdevfs_urb& UrbOf(UMockdevIoctlData* data) {
    return *reinterpret_cast<usbdevfs_urb*>(data->data);
}

void Put(UMockdevIoctlData* data, std::size_t at, std::string_view bytes) {
    std::string copy(bytes);
    umockdev_ioctl_data_update(data, static_cast<gulong>(at),
                               reinterpret_cast<guint8*>(copy.data()),
                               static_cast<gint>(copy.size()));
}

} // namespace

TEmulatedPod::TEmulatedPod(UMockdevTestbed* testbed, int port, int product, int configuration)
    : Testbed(testbed), Base(umockdev_ioctl_base_new()) {
    const std::string number = std::to_string(port);
    const std::string address = std::to_string(port + 1);
    const std::string name = "bus/usb/001/00" + address;
    const std::string type = std::to_string(product >> 8);
    const std::string ids = "0" + type + "00";
    SysPath = "/sys/devices/usb1/1-" + number;
    DevNode = "/dev/" + name;
    // Device, one configuration, one interface, bulk OUT 0x02 and bulk IN 0x86.
    const std::string descriptors = "12010002000000408C1B000" + type + "000101020301" +
                                    "0902200001010080320904000002FF000000"
                                    "07050202000200"
                                    "07058602000200";
    for (std::size_t at = 0; at < 36; at += 2) {
        DeviceDescriptor += static_cast<char>(std::stoi(descriptors.substr(at, 2), nullptr, 16));
    }
    const std::string text =
        "P: /devices/usb1/1-" + number + "\nN: " + name + "\nE: DEVNAME=/dev/" + name +
        "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: BUSNUM=001\nE: DEVNUM=00" + address +
        "\nE: PRODUCT=1b8c/" + ids + "/100\nA: busnum=1\nA: devnum=" + address +
        "\nA: speed=480\nA: bConfigurationValue=" + (configuration == 0 ? "" : "1") +
        "\nA: idVendor=1b8c\nA: idProduct=" + ids + "\nH: descriptors=" + descriptors + "\n";
    GError* error = nullptr;
    umockdev_testbed_add_from_string(Testbed, text.c_str(), &error);
    g_assert_no_error(error);
    g_signal_connect(Base, "handle-ioctl", G_CALLBACK(&TEmulatedPod::OnIoctl), this);
    umockdev_testbed_attach_ioctl(Testbed, DevNode.c_str(), Base, &error);
    g_assert_no_error(error);
}

TEmulatedPod::~TEmulatedPod() {
    umockdev_testbed_detach_ioctl(Testbed, DevNode.c_str(), nullptr);
    g_signal_handlers_disconnect_by_data(Base, this);
    g_object_unref(Base);
    for (std::deque<TUrb>* urbs : {&Waiting, &Done}) {
        for (const TUrb& urb : *urbs) {
            umockdev_ioctl_data_unref(urb.Buffer);
            umockdev_ioctl_data_unref(urb.Data);
        }
    }
}

void TEmulatedPod::Unplug() {
    const std::lock_guard<std::recursive_mutex> lock(Mutex);
    Gone = true;
    while (!Waiting.empty()) {
        Discard(Waiting.front().Data->client_addr);
    }
    umockdev_testbed_uevent(Testbed, SysPath.c_str(), "remove");
    umockdev_testbed_remove_device(Testbed, SysPath.c_str());
}

std::vector<std::string> TEmulatedPod::TakeEvents() {
    const std::lock_guard<std::recursive_mutex> lock(Mutex);
    return std::exchange(Events, {});
}

void TEmulatedPod::Note(const char* what, unsigned number) {
    Events.push_back(std::string(what) + " " + std::to_string(number));
}

gboolean TEmulatedPod::OnIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self) {
    auto& pod = *static_cast<TEmulatedPod*>(self);
    const std::lock_guard<std::recursive_mutex> lock(pod.Mutex);
    pod.Handle(client);
    return TRUE;
}

void TEmulatedPod::Handle(UMockdevIoctlClient* client) {
    UMockdevIoctlData* arg = umockdev_ioctl_client_get_arg(client);
    const gulong request = umockdev_ioctl_client_get_request(client);
    int result = 0;
    int error = 0;
    if (request == USBDEVFS_REAPURBNDELAY) {
        result = Reap(arg, error);
    } else if (Gone) {
        result = -1;
        error = ENODEV;
    } else if (request == USBDEVFS_SUBMITURB) {
        Submit(arg);
    } else if (request == USBDEVFS_DISCARDURB) {
        result = Discard(*reinterpret_cast<gulong*>(arg->data)) ? 0 : -1;
        error = EINVAL;
    } else if (request == USBDEVFS_GETDRIVER) {
        result = -1;
        error = ENODATA;
    } else {
        UMockdevIoctlData* word = umockdev_ioctl_data_resolve(arg, 0, 4, nullptr);
        const unsigned value = *reinterpret_cast<guint32*>(word->data);
        if (request == USBDEVFS_GET_CAPABILITIES) {
            const guint32 capabilities = USBDEVFS_CAP_NO_PACKET_SIZE_LIM;
            Put(word, 0, {reinterpret_cast<const char*>(&capabilities), 4});
        } else if (request == USBDEVFS_SETCONFIGURATION) {
            Note("config", value);
        } else if (request == USBDEVFS_DISCONNECT_CLAIM) {
            Note("claim", value);
        } else if (request == USBDEVFS_RELEASEINTERFACE) {
            Note("release", value);
        } else {
            result = -1;
            error = ENOTTY;
        }
        umockdev_ioctl_data_unref(word);
    }
    umockdev_ioctl_client_complete(client, result, error);
}

void TEmulatedPod::Submit(UMockdevIoctlData* arg) {
    TUrb urb;
    urb.Data = umockdev_ioctl_data_resolve(arg, 0, sizeof(usbdevfs_urb), nullptr);
    const auto size = static_cast<gulong>(UrbOf(urb.Data).buffer_length);
    urb.Buffer =
        umockdev_ioctl_data_resolve(urb.Data, offsetof(usbdevfs_urb, buffer), size, nullptr);
    if (UrbOf(urb.Data).type == USBDEVFS_URB_TYPE_CONTROL) {
        Control(urb);
    } else if (UrbOf(urb.Data).endpoint == 0x02) {
        Note("out", static_cast<unsigned>(size));
        Command(urb.Buffer->data, static_cast<int>(size));
        Finish(urb, 0, static_cast<int>(size));
    } else {
        Waiting.push_back(urb);
        AnswerReads();
    }
}

void TEmulatedPod::Control(TUrb urb) {
    const std::uint8_t* setup = urb.Buffer->data;
    const int index = setup[2];
    const int language = setup[4] | (setup[5] << 8);
    std::string answer;
    if (setup[1] == 6 && setup[3] == 1) {
        answer = DeviceDescriptor;
    } else if (setup[1] == 6 && setup[3] == 3 && !Behaviour.StallsStrings) {
        answer = StringDescriptor(index, language);
    }
    const auto room = static_cast<std::size_t>(setup[6] | (setup[7] << 8));
    const std::string part = answer.substr(0, room);
    Put(urb.Buffer, 8, part);
    Finish(urb, part.empty() ? -EPIPE : 0, static_cast<int>(part.size()));
}

std::string TEmulatedPod::StringDescriptor(int index, int language) const {
    if (index == 0) {
        return {"\x04\x03\x07\x04", 4};
    }
    if (Behaviour.WantsLanguage && language != 0x0407) {
        return {};
    }
    std::string answer("\x00\x03", 2);
    for (const char c : std::string(index == 2 ? "Pod" : "0815")) {
        answer += {c, '\0'};
    }
    answer[0] = static_cast<char>(answer.size());
    return answer;
}

void TEmulatedPod::Command(const std::uint8_t* data, int size) {
    for (int at = 0; at + 1 < size; at += 2) {
        if ((data[at + 1] & 0xF0) == 0) {
            Answers += "11";
        } else if ((data[at + 1] & 0x80) != 0) {
            Answers += {'\x5A', '\xA0'};
        }
    }
    AnswerReads();
}

void TEmulatedPod::AnswerReads() {
    while (!Waiting.empty() && !Behaviour.Silent && (!Answers.empty() || Behaviour.StallsAnswers)) {
        const TUrb urb = Waiting.front();
        Waiting.pop_front();
        const auto room = static_cast<std::size_t>(UrbOf(urb.Data).buffer_length);
        const std::string part = Behaviour.StallsAnswers ? "" : Answers.substr(0, room);
        Answers.erase(0, part.size());
        Put(urb.Buffer, 0, part);
        Finish(urb, Behaviour.StallsAnswers ? -EPIPE : 0, static_cast<int>(part.size()));
    }
}

void TEmulatedPod::Finish(TUrb urb, int status, int length) {
    UrbOf(urb.Data).status = status;
    UrbOf(urb.Data).actual_length = length;
    Done.push_back(urb);
}

bool TEmulatedPod::Discard(gulong address) {
    const auto found = std::find_if(Waiting.begin(), Waiting.end(), [address](const TUrb& urb) {
        return urb.Data->client_addr == address;
    });
    if (found == Waiting.end()) {
        return false;
    }
    const TUrb urb = *found;
    Waiting.erase(found);
    Finish(urb, Gone ? -ESHUTDOWN : -ENOENT, 0);
    return true;
}

int TEmulatedPod::Reap(UMockdevIoctlData* arg, int& error) {
    if (Done.empty()) {
        error = Gone ? ENODEV : EAGAIN;
        return -1;
    }
    const TUrb urb = Done.front();
    Done.pop_front();
    Put(urb.Data, 0, {reinterpret_cast<const char*>(urb.Data->data), sizeof(usbdevfs_urb)});
    UMockdevIoctlData* place = umockdev_ioctl_data_resolve(arg, 0, sizeof(void*), nullptr);
    umockdev_ioctl_data_set_ptr(place, 0, urb.Data);
    umockdev_ioctl_data_unref(place);
    umockdev_ioctl_data_unref(urb.Buffer);
    umockdev_ioctl_data_unref(urb.Data);
    return 0;
}

} // namespace vorel
