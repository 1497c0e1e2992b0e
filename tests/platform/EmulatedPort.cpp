#include "platform/EmulatedPort.h"

#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>

namespace vorel {

namespace {

constexpr const char* Node = "/dev/parport0";
// The program ended within a request: its memory cannot be reached any more.
constexpr int ProgramIsGone = -1;

} // namespace

TEmulatedPort::TEmulatedPort(IParallelPort& hardware)
    : Testbed(umockdev_testbed_new()), Handler(umockdev_ioctl_base_new()), Hardware(hardware) {
    GError* error = nullptr;
    umockdev_testbed_add_from_string(Testbed,
                                     "P: /devices/pnp0/00:05/ppdev/parport0\nN: parport0\n"
                                     "E: SUBSYSTEM=ppdev\nE: DEVNAME=/dev/parport0\n",
                                     &error);
    g_assert_no_error(error);
    g_signal_connect(Handler, "handle-ioctl", G_CALLBACK(&TEmulatedPort::OnIoctl), this);
    g_signal_connect(Handler, "client-connected", G_CALLBACK(&TEmulatedPort::OnOpened), this);
    umockdev_testbed_attach_ioctl(Testbed, Node, Handler, &error);
    g_assert_no_error(error);
}

TEmulatedPort::~TEmulatedPort() {
    HoldRequests(false);
    umockdev_testbed_detach_ioctl(Testbed, Node, nullptr);
    g_signal_handlers_disconnect_by_data(Handler, this);
    for (const auto& [client, user] : Users) {
        g_object_unref(client);
    }
    g_object_unref(Handler);
    g_object_unref(Testbed);
}

bool TEmulatedPort::IsClaimed() {
    const std::lock_guard lock(Mutex);
    DropClosedFiles();
    return AnyClaims();
}

bool TEmulatedPort::AnyClaims() const {
    return std::any_of(Users.begin(), Users.end(), [](const auto& u) { return u.second.Claimed; });
}

int TEmulatedPort::OpenFiles() {
    const std::lock_guard lock(Mutex);
    DropClosedFiles();
    return static_cast<int>(Users.size());
}

void TEmulatedPort::HoldRequests(bool hold) {
    const std::lock_guard lock(Mutex);
    Holding = hold;
    Resumed.notify_all();
}

// Nobody tells of a closing.
void TEmulatedPort::DropClosedFiles() {
    std::erase_if(Users, [](const auto& entry) {
        const bool closed =
            entry.second.Gone || umockdev_ioctl_client_get_connected(entry.first) == FALSE;
        if (closed) {
            g_object_unref(entry.first);
        }
        return closed;
    });
}

void TEmulatedPort::OnOpened(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, void* self) {
    auto& port = *static_cast<TEmulatedPort*>(self);
    const std::lock_guard lock(port.Mutex);
    port.Users[static_cast<UMockdevIoctlClient*>(g_object_ref(client))] = {};
}

gboolean TEmulatedPort::OnIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client,
                                void* self) {
    auto& port = *static_cast<TEmulatedPort*>(self);
    std::unique_lock lock(port.Mutex);
    port.HasHeldRequest = port.Holding;
    port.Resumed.wait(lock, [&] { return !port.Holding; });
    port.HasHeldRequest = false;
    TUser& user = port.Users.at(client);
    const int error = port.Answer(user, umockdev_ioctl_client_get_request(client),
                                  umockdev_ioctl_client_get_arg(client));
    user.Gone = error == ProgramIsGone;
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

int TEmulatedPort::Answer(TUser& user, unsigned long request, UMockdevIoctlData* argument) {
    const bool wantsClaim = request != PPEXCL && request != PPCLAIM;
    if (user.Claimed != wantsClaim) {
        return EINVAL;
    }
    switch (request) {
    case PPEXCL:
        user.Exclusive = true;
        return 0;
    case PPCLAIM:
        return Claim(user);
    case PPRELEASE:
        user.Claimed = false;
        ++Releases;
        return 0;
    default:
        return Transfer(request, argument);
    }
}

int TEmulatedPort::Claim(TUser& user) {
    DropClosedFiles();
    if (HasOtherDriver || AnyClaims()) {
        return user.Exclusive ? ENXIO : EDEADLK; // who does not ask to be alone would wait
    }
    user.Claimed = true;
    return 0;
}

int TEmulatedPort::Transfer(unsigned long request, UMockdevIoctlData* argument) {
    const std::size_t size = request == PPFCONTROL ? 2 : 1;
    UMockdevIoctlData* data = umockdev_ioctl_data_resolve(argument, 0, size, nullptr);
    if (data == nullptr) {
        return ProgramIsGone;
    }
    std::uint8_t value = 0;
    if (request == PPWDATA) {
        Hardware.WriteData(data->data[0]);
    } else if (request == PPFCONTROL) {
        Hardware.WriteControl(data->data[1], data->data[0]);
    } else {
        request == PPRDATA ? Hardware.ReadData(value) : Hardware.ReadStatus(value);
        umockdev_ioctl_data_update(data, 0, &value, 1);
    }
    g_object_unref(data);
    ++Transfers;
    return 0;
}

} // namespace vorel
