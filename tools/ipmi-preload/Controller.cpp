#include "ipmi-preload/Controller.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <utility>

namespace preload {

using namespace std::chrono_literals;
using vmline::Bytes;

namespace {

constexpr std::uint8_t netFnApp = 0x06;
constexpr std::uint8_t getMessageFlags = 0x31;
constexpr std::uint8_t getMessage = 0x33;
constexpr std::uint8_t sendMessage = 0x34;
constexpr std::uint8_t readEventMessageBuffer = 0x35;
constexpr std::uint8_t flagMessageAvailable = 0x01;
constexpr std::uint8_t flagEventBufferFull = 0x02;

constexpr std::uint8_t ccOk = 0x00;
constexpr std::uint8_t ccLostArbitration = 0x81;
constexpr std::uint8_t ccBusError = 0x83;
constexpr std::uint8_t ccNodeBusy = 0xC0;
constexpr std::uint8_t ccTimeout = 0xC3;
constexpr std::uint8_t ccInitialising = 0xD2;

constexpr auto answerTime = 4s; ///< what a virtual KCS port gives an external controller
constexpr auto bridgedTime = 1s;
constexpr int bridgedTries = 5;
constexpr std::size_t bridgedSequences = 64;
constexpr std::uint8_t bridgedLun = 2; ///< answers to this LUN go to the receive message queue
constexpr std::size_t eventBytes = 16;

std::optional<sockaddr_in> parseAddress(const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    sockaddr_in address{};
    address.sin_family = AF_INET;
    if (colon == std::string::npos || inet_pton(AF_INET, text.substr(0, colon).c_str(), &address.sin_addr) != 1)
        return std::nullopt;
    address.sin_port = htons(static_cast<std::uint16_t>(std::strtoul(text.c_str() + colon + 1, nullptr, 10)));
    return address;
}

/// Send Message data: channel, then an IPMB message with its two checksums (IPMI 2.0, 22.7).
Bytes encodeBridged(const Controller::Route& route, const Controller::Request& request, std::uint8_t sequence)
{
    Bytes head = {route.target, static_cast<std::uint8_t>(request.netFn << 2 | request.lun)};
    head.push_back(vmline::checksum(head));
    Bytes tail = {route.requester, static_cast<std::uint8_t>(sequence << 2 | bridgedLun), request.command};
    tail.insert(tail.end(), request.data.begin(), request.data.end());
    tail.push_back(vmline::checksum(tail));
    Bytes out = {route.channel};
    out.insert(out.end(), head.begin(), head.end());
    out.insert(out.end(), tail.begin(), tail.end());
    return out;
}

} // namespace

Controller::Controller(std::string where, std::function<void(Bytes)> eventSink)
    : address(std::move(where)), onEvent(std::move(eventSink))
{
}

Controller::~Controller()
{
    forget();
}

void Controller::submit(Request request, Done done)
{
    if (line < 0 && !connect())
        return done({ccInitialising});
    const std::uint8_t sequence = nextSequence();
    const Bytes frame = vmline::encodeRequest(sequence, request.netFn, request.lun, request.command, request.data);
    pending[sequence] = {std::move(request), std::chrono::steady_clock::now() + answerTime, std::move(done)};
    write(frame);
}

void Controller::bridge(const Route& route, Request request, Done done)
{
    if (bridged.size() == bridgedSequences)
        return done({ccNodeBusy});
    do
        lastBridged = static_cast<std::uint8_t>((lastBridged + 1) % bridgedSequences);
    while (bridged.contains(lastBridged));
    bridged[lastBridged] = {route, std::move(request), {}, bridgedTries, std::move(done)};
    sendBridged(lastBridged);
}

void Controller::receive()
{
    std::array<std::uint8_t, 4096> buffer{};
    const ssize_t count = recv(line, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        return disconnect();
    for (const auto& frame : decoder.feed({buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))})) {
        if (frame.kind == vmline::Kind::message) {
            if (const auto answer = vmline::decodeAnswer(frame.body))
                finish(*answer);
        } else if (!frame.body.empty() &&
                   (frame.body[0] == vmline::attention || frame.body[0] == vmline::attentionWithInterrupt)) {
            askFlags();
        }
    }
}

void Controller::expire(Time now)
{
    std::vector<Done> late;
    std::erase_if(pending, [&](auto& entry) {
        if (entry.second.deadline > now)
            return false;
        late.push_back(std::move(entry.second.done));
        return true;
    });
    for (const Done& done : late)
        done({ccTimeout});
    std::vector<std::uint8_t> due;
    for (const auto& [sequence, message] : bridged)
        if (message.nextTry <= now)
            due.push_back(sequence);
    for (const std::uint8_t sequence : due)
        sendBridged(sequence);
}

void Controller::forget()
{
    pending.clear();
    bridged.clear();
    disconnect();
}

bool Controller::connect()
{
    const auto where = parseAddress(address);
    const int fd = where ? ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) : -1;
    if (fd < 0)
        return false;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&*where), sizeof *where) != 0) {
        ::close(fd);
        return false;
    }
    const int on = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    line = fd;
    decoder = {};
    write(vmline::encodeGreeting());
    return line >= 0;
}

/// What was under way is answered as by a controller that starts again.
void Controller::disconnect()
{
    if (line >= 0)
        ::close(line);
    line = -1;
    for (auto& [sequence, lost] : std::exchange(pending, {}))
        lost.done({ccInitialising});
}

std::uint8_t Controller::nextSequence()
{
    for (std::size_t i = 0; i < 256 && pending.contains(++lastSequence);)
        ++i;
    return lastSequence;
}

void Controller::write(const Bytes& frame)
{
    if (send(line, frame.data(), frame.size(), MSG_NOSIGNAL | MSG_DONTWAIT) != static_cast<ssize_t>(frame.size()))
        disconnect();
}

void Controller::finish(const vmline::Answer& answer)
{
    const auto found = pending.find(answer.sequence);
    if (found == pending.end() || found->second.request.command != answer.command ||
        (found->second.request.netFn | 1) != answer.netFn)
        return; // the answer to a request that was given up
    const Done done = std::move(found->second.done);
    pending.erase(found);
    done(answer.data);
}

void Controller::sendBridged(std::uint8_t sequence)
{
    Bridged& message = bridged.at(sequence);
    if (message.triesLeft-- == 0)
        return endBridged(sequence, {ccTimeout});
    message.nextTry = std::chrono::steady_clock::now() + bridgedTime;
    submit({netFnApp, 0, sendMessage, encodeBridged(message.route, message.request, sequence)},
           [this, sequence](const Bytes& data) {
               const bool tryAgain = data[0] == ccLostArbitration || data[0] == ccBusError || data[0] == ccNodeBusy;
               if (data[0] != ccOk && !tryAgain)
                   endBridged(sequence, {data[0]});
           });
}

void Controller::endBridged(std::uint8_t sequence, Bytes data)
{
    const auto found = bridged.find(sequence);
    if (found == bridged.end())
        return;
    const Done done = std::move(found->second.done);
    bridged.erase(found);
    done(std::move(data));
}

void Controller::askFlags()
{
    submit({netFnApp, 0, getMessageFlags, {}}, [this](const Bytes& data) {
        if (data.size() < 2 || data[0] != ccOk)
            return;
        if (data[1] & flagMessageAvailable)
            takeMessages();
        if (data[1] & flagEventBufferFull)
            takeEvents();
    });
}

void Controller::takeMessages()
{
    submit({netFnApp, 0, getMessage, {}}, [this](const Bytes& data) {
        if (data[0] != ccOk)
            return; // the queue is empty
        deliverMessage(data);
        takeMessages();
    });
}

void Controller::takeEvents()
{
    submit({netFnApp, 0, readEventMessageBuffer, {}}, [this](const Bytes& data) {
        if (data[0] != ccOk || data.size() != 1 + eventBytes)
            return;
        onEvent(Bytes(data.begin() + 1, data.end()));
        takeEvents();
    });
}

/// Get Message: completion code, channel, network function and LUN, checksum, responder, sequence and LUN, command,
/// data, checksum (IPMI 2.0, 22.6).
void Controller::deliverMessage(const Bytes& data)
{
    constexpr std::size_t shortest = 9;
    if (data.size() < shortest)
        return;
    const auto sequence = static_cast<std::uint8_t>(data[5] >> 2);
    const auto found = bridged.find(sequence);
    if (found == bridged.end() || found->second.request.command != data[6] || found->second.route.target != data[4])
        return;
    endBridged(sequence, Bytes(data.begin() + 7, data.end() - 1));
}

} // namespace preload
