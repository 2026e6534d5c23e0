#pragma once

#include "ipmi-preload/VmLine.hpp"

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace preload {

/// The controller at the other end of a simulator's VM line, as the kernel's driver would drive it: many requests under
/// way, bridging over IPMB with Send Message and Get Message, events on attention. Not thread-safe; nothing here waits
/// but for the connection on loopback.
class Controller {
public:
    using Bytes = vmline::Bytes;
    using Time = std::chrono::steady_clock::time_point;
    /// Gets the data of an answer, completion code first. Called once for each request.
    using Done = std::function<void(Bytes)>;

    struct Request {
        std::uint8_t netFn;
        std::uint8_t lun;
        std::uint8_t command;
        Bytes data;
    };
    struct Route {
        std::uint8_t channel;
        std::uint8_t target;
        std::uint8_t requester; ///< own IPMB address
    };

    /// `address`: "host:port" in numbers. `onEvent` gets the 16 bytes of each record of the event message buffer.
    Controller(std::string address, std::function<void(Bytes)> onEvent);
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    /// Sends a request to the BMC itself. Without a connection it is answered at once: BMC initialisation in progress.
    void submit(Request request, Done done);

    /// Sends a request to a controller behind the BMC.
    void bridge(const Route& route, Request request, Done done);

    /// Descriptor to wait on for reading, or -1 while there is no connection.
    int socket() const { return line; }

    /// Takes in what the simulator sent.
    void receive();

    /// Ends what has waited too long, and sends bridged requests again.
    void expire(Time now);

    /// Drops the connection and all that is under way, without an answer to anybody.
    void forget();

private:
    struct Pending {
        Request request;
        Time deadline;
        Done done;
    };
    struct Bridged {
        Route route;
        Request request;
        Time nextTry;
        int triesLeft;
        Done done;
    };

    bool connect();
    void disconnect();
    std::uint8_t nextSequence();
    void write(const Bytes& frame);
    void finish(const vmline::Answer& answer);
    void sendBridged(std::uint8_t sequence);
    void endBridged(std::uint8_t sequence, Bytes data);
    void askFlags();
    void takeMessages();
    void takeEvents();
    void deliverMessage(const Bytes& data);

    std::string address;
    std::function<void(Bytes)> onEvent;
    int line = -1;
    vmline::Decoder decoder;
    std::uint8_t lastSequence = 0;
    std::uint8_t lastBridged = 0;
    std::map<std::uint8_t, Pending> pending;
    std::map<std::uint8_t, Bridged> bridged;
};

} // namespace preload
