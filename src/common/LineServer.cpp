#include "common/LineServer.hpp"

#include "common/StateFile.hpp"
#include "common/Waits.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace common {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t mostClients = 8;
constexpr std::size_t longestRequest = 255;
constexpr auto patience = 5s;
constexpr auto pauseWithoutDescriptors = 200ms;
constexpr mode_t socketMode = 0600;

/// A name in an open folder, whatever has become of its path; short enough for any folder.
sockaddr_un addressIn(const Descriptor& folder, const std::string& name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder.get(), name.c_str());
    return address;
}

const sockaddr* plain(const sockaddr_un& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

bool isPassing(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

LineServer::~LineServer()
{
    if (listener)
        unlinkat(place.get(), name.c_str(), 0);
}

bool LineServer::open(const char* folder, const char* socketName)
{
    place = openOwnFolder(folder, IfMissing::make);
    if (!place)
        return false;
    name = socketName;
    unlinkat(place.get(), name.c_str(), 0);
    Descriptor fresh(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un address = addressIn(place, name);
    // the socket's own mode is what its file gets: there is no moment in which it is open to others
    if (!fresh || fchmod(fresh.get(), socketMode) != 0 || bind(fresh.get(), plain(address), sizeof address) != 0 ||
        listen(fresh.get(), mostClients) != 0)
        return false;
    listener = std::move(fresh);
    return true;
}

void LineServer::serve(std::chrono::milliseconds duration)
{
    await(duration);
    admit();
    for (Client& client : clients)
        attend(client);
    std::erase_if(clients, [](const Client& client) { return !client.socket; });
}

void LineServer::await(std::chrono::milliseconds duration)
{
    std::vector<pollfd> watched;
    if (clients.size() < mostClients)
        watched.push_back({listener.get(), POLLIN, 0});
    for (const Client& client : clients)
        watched.push_back({client.socket.get(), static_cast<short>(client.reply.empty() ? POLLIN : POLLOUT), 0});
    const Cancellable wait;
    poll(watched.data(), watched.size(), static_cast<int>(duration.count()));
}

void LineServer::admit()
{
    while (clients.size() < mostClients) {
        Descriptor fresh(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!fresh && !isPassing(errno))
            waitInterruptibly(pauseWithoutDescriptors); // who waits to be admitted would make the next wait none
        if (!fresh)
            return;
        clients.push_back({std::move(fresh), current<Clock>().steady() + patience, {}, {}});
    }
}

/// A client without a socket is served.
void LineServer::attend(Client& client)
{
    if (client.reply.empty())
        readRequest(client);
    if (client.socket && !client.reply.empty()) {
        const ssize_t sent = send(client.socket.get(), client.reply.data(), client.reply.size(), MSG_NOSIGNAL);
        client.reply.erase(0, static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
        if (client.reply.empty() || (sent < 0 && !isPassing(errno)))
            client.socket = Descriptor();
    }
    if (current<Clock>().steady() >= client.deadline)
        client.socket = Descriptor();
}

void LineServer::readRequest(Client& client)
{
    char part[longestRequest + 1];
    const ssize_t got = recv(client.socket.get(), part, sizeof part, 0);
    if (got < 0 && isPassing(errno))
        return;
    if (got <= 0) { // gone before the line was whole
        client.socket = Descriptor();
        return;
    }
    client.request.append(part, static_cast<std::size_t>(got));
    const std::size_t end = client.request.find('\n');
    if (std::min(end, client.request.size()) > longestRequest)
        client.reply = "error = the line is too long\n";
    else if (end != std::string::npos)
        client.reply = answer(client.request.substr(0, end));
    else
        return;
    client.reply += endOfAnswer;
}

Descriptor connectTo(const char* folder, const char* name)
{
    const Descriptor place(::open(systemPath(folder).c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!place)
        return Descriptor();
    Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = addressIn(place, name);
    if (connection && connect(connection.get(), plain(address), sizeof address) != 0)
        return Descriptor();
    return connection;
}

} // namespace common
