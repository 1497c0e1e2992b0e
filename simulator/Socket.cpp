#include "simulator/Socket.h"

#include "support/Errors.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vorel::sim {

namespace {

std::string TextOf(int error) {
    return std::generic_category().message(error);
}

EVorelError Failed(const std::string& name, const std::string& reason) {
    return EVorelError(StatusError, name + ": " + reason);
}

// Small writes are what the protocol is made of, so they must not wait for each other.
void DisableDelay(int descriptor) noexcept {
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressList LookUp(const std::string& host, std::uint16_t port, const std::string& name) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0) {
        throw Failed(name, gai_strerror(error));
    }
    return {found, &freeaddrinfo};
}

// 0, or the error number.
int ConnectTo(const TSocket& socket, int descriptor, const addrinfo& address, int timeoutMs) {
    if (connect(descriptor, address.ai_addr, address.ai_addrlen) == 0) {
        return 0;
    }
    if (errno != EINPROGRESS) {
        return errno;
    }
    if (!socket.Wait(false, true, timeoutMs)) {
        return ETIMEDOUT;
    }
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

} // namespace

TSocket::TSocket(int descriptor) : Descriptor(descriptor) {
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

TSocket::TSocket(TSocket&& other) noexcept
    : Descriptor(std::exchange(other.Descriptor, -1)), ReasonText(std::move(other.ReasonText)) {}

TSocket& TSocket::operator=(TSocket&& other) noexcept {
    if (this != &other) {
        Close();
        Descriptor = std::exchange(other.Descriptor, -1);
        ReasonText = std::move(other.ReasonText);
    }
    return *this;
}

TSocket::~TSocket() {
    Close();
}

TSocket TSocket::Connect(const std::string& host, std::uint16_t port, int timeoutMs) {
    const std::string name = host + ":" + std::to_string(port);
    const AddressList addresses = LookUp(host, port, name);
    int error = EADDRNOTAVAIL;
    for (const addrinfo* address = addresses.get(); address != nullptr;
         address = address->ai_next) {
        const int descriptor = socket(address->ai_family, SOCK_STREAM, 0);
        if (descriptor < 0) {
            error = errno;
            continue;
        }
        TSocket result(descriptor);
        error = ConnectTo(result, descriptor, *address, timeoutMs);
        if (error == 0) {
            DisableDelay(descriptor);
            return result;
        }
    }
    throw Failed(name, TextOf(error));
}

TSocket TSocket::Listen(std::uint16_t port) {
    const std::string name = "127.0.0.1:" + std::to_string(port);
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor < 0) {
        throw Failed(name, TextOf(errno));
    }
    TSocket result(descriptor);
    const int on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(descriptor, 8) != 0) {
        throw Failed(name, TextOf(errno));
    }
    return result;
}

void TSocket::Close() noexcept {
    if (Descriptor >= 0) {
        close(std::exchange(Descriptor, -1));
    }
}

std::uint16_t TSocket::LocalPort() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(Descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw Failed("socket", TextOf(errno));
    }
    return ntohs(address.sin_port);
}

TSocket TSocket::Accept() {
    const int descriptor = accept(Descriptor, nullptr, nullptr);
    if (descriptor < 0) {
        return {};
    }
    DisableDelay(descriptor);
    return TSocket(descriptor);
}

TSocket::Result TSocket::Send(const char* data, std::size_t size, std::size_t& count) noexcept {
    return Conclude(send(Descriptor, data, size, MSG_NOSIGNAL), count);
}

TSocket::Result TSocket::Receive(char* data, std::size_t size, std::size_t& count) noexcept {
    return Conclude(recv(Descriptor, data, size, 0), count);
}

TSocket::Result TSocket::Conclude(long result, std::size_t& count) noexcept {
    count = result > 0 ? static_cast<std::size_t>(result) : 0;
    if (result > 0) {
        return Result::Done;
    }
    if (result < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) {
        return Result::NotNow;
    }
    ReasonText = result == 0 ? "the connection was closed" : TextOf(errno);
    return Result::Finished;
}

bool TSocket::Wait(bool toRead, bool toSend, int timeoutMs) const {
    pollfd item{};
    item.fd = Descriptor;
    item.events = static_cast<short>((toRead ? POLLIN : 0) | (toSend ? POLLOUT : 0));
    int ready = 0;
    do {
        ready = poll(&item, 1, timeoutMs);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace vorel::sim
