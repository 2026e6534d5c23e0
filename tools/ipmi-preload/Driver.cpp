#include "ipmi-preload/Driver.hpp"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace preload {

namespace {

constexpr std::uint8_t netFnApp = 0x06;
constexpr std::uint8_t netFnEvent = 0x04;
constexpr std::uint8_t platformEvent = 0x02;
constexpr std::size_t longestMessage = 272;
constexpr int pollMilliseconds = 200; ///< how late a time-out may be noticed
constexpr int idleMilliseconds = 10;  ///< how late a new connection may be noticed

int fail(int error)
{
    errno = error;
    return -1;
}

std::string controllerAddress()
{
    const char* text = std::getenv("HWAGENT_PRELOAD_BMC");
    return text ? text : "";
}

/// The driver does these itself; programs may not.
bool isReserved(const ipmi_req& request)
{
    return request.msg.netfn == netFnApp && request.msg.cmd >= 0x33 && request.msg.cmd <= 0x35;
}

int addressLength(int type)
{
    return type == IPMI_SYSTEM_INTERFACE_ADDR_TYPE ? static_cast<int>(sizeof(ipmi_system_interface_addr))
                                                   : static_cast<int>(sizeof(ipmi_ipmb_addr));
}

} // namespace

Driver& Driver::instance()
{
    static Driver* const driver = new Driver; // lives as long as the process: its thread may run to the end
    return *driver;
}

Driver::Driver() : controller(controllerAddress(), [this](const vmline::Bytes& record) { deliverEvent(record); })
{
    pthread_atfork([] { instance().mutex.lock(); }, [] { instance().mutex.unlock(); },
                   [] {
                       instance().startAfresh();
                       instance().mutex.unlock();
                   });
}

int Driver::open(int flags)
{
    const std::lock_guard lock(mutex);
    const int fd = eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | ((flags & O_CLOEXEC) ? EFD_CLOEXEC : 0));
    if (fd < 0)
        return -1;
    if (fd >= mostDescriptors) {
        ::close(fd);
        return fail(EMFILE);
    }
    files[fd] = {};
    generations[static_cast<std::size_t>(fd)] = ++lastGeneration;
    return fd;
}

bool Driver::owns(int fd) const
{
    return fd >= 0 && fd < mostDescriptors && generations[static_cast<std::size_t>(fd)] != 0;
}

void Driver::release(int fd)
{
    const std::lock_guard lock(mutex);
    files.erase(fd);
    generations[static_cast<std::size_t>(fd)] = 0;
}

int Driver::ioctl(int fd, unsigned long request, void* argument)
{
    const std::lock_guard lock(mutex);
    if (!files.contains(fd))
        return fail(EBADF);
    if (!argument)
        return fail(EFAULT);
    switch (request) {
    case IPMICTL_SEND_COMMAND:
        return send(fd, *static_cast<const ipmi_req*>(argument));
    case IPMICTL_SEND_COMMAND_SETTIME:
        return send(fd, static_cast<const ipmi_req_settime*>(argument)->req);
    case IPMICTL_RECEIVE_MSG:
    case IPMICTL_RECEIVE_MSG_TRUNC:
        return receive(fd, *static_cast<ipmi_recv*>(argument), request == IPMICTL_RECEIVE_MSG_TRUNC);
    default:
        return setOption(fd, request, argument);
    }
}

int Driver::setOption(int fd, unsigned long request, void* argument)
{
    OpenFile& file = files.at(fd);
    switch (request) {
    case IPMICTL_SET_GETS_EVENTS_CMD:
        file.getsEvents = *static_cast<const int*>(argument) != 0;
        return 0;
    case IPMICTL_SET_MY_ADDRESS_CMD:
        file.address = static_cast<std::uint8_t>(*static_cast<const unsigned*>(argument));
        return 0;
    case IPMICTL_GET_MY_ADDRESS_CMD:
        *static_cast<unsigned*>(argument) = file.address;
        return 0;
    case IPMICTL_SET_MY_LUN_CMD:
        file.lun = static_cast<std::uint8_t>(*static_cast<const unsigned*>(argument));
        return 0;
    case IPMICTL_GET_MY_LUN_CMD:
        *static_cast<unsigned*>(argument) = file.lun;
        return 0;
    case IPMICTL_REGISTER_FOR_CMD:
    case IPMICTL_UNREGISTER_FOR_CMD:
        return 0; // nobody sends commands to this host
    default:
        return fail(ENOTTY);
    }
}

int Driver::send(int fd, const ipmi_req& request)
{
    if (!request.addr || request.addr_len > sizeof(ipmi_addr) || request.addr_len < sizeof(int) + sizeof(short))
        return fail(EINVAL);
    if (request.msg.data_len > longestMessage)
        return fail(EMSGSIZE);
    ipmi_addr address{};
    std::memcpy(&address, request.addr, request.addr_len);
    const bool direct = address.addr_type == IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
    if ((!direct && address.addr_type != IPMI_IPMB_ADDR_TYPE) || (request.msg.netfn & 1) ||
        (direct && isReserved(request)))
        return fail(EINVAL);
    startThread();

    const auto& msg = request.msg;
    const std::uint64_t generation = generations[static_cast<std::size_t>(fd)];
    auto done = [this, fd, generation, id = request.msgid, address, netFn = msg.netfn,
                 command = msg.cmd](vmline::Bytes data) {
        deliver(fd, generation,
                {IPMI_RESPONSE_RECV_TYPE, id, address, static_cast<std::uint8_t>(netFn | 1), command, std::move(data)});
    };
    Controller::Request message{msg.netfn, 0, msg.cmd, {msg.data, msg.data + msg.data_len}};
    if (direct) {
        message.lun = reinterpret_cast<const ipmi_system_interface_addr&>(address).lun;
        controller.submit(std::move(message), std::move(done));
    } else {
        const auto& to = reinterpret_cast<const ipmi_ipmb_addr&>(address);
        message.lun = to.lun;
        controller.bridge({static_cast<std::uint8_t>(to.channel), to.slave_addr, files.at(fd).address},
                          std::move(message), std::move(done));
    }
    return 0;
}

int Driver::receive(int fd, ipmi_recv& out, bool truncate)
{
    auto& queue = files.at(fd).queue;
    if (queue.empty())
        return fail(EAGAIN);
    const Received& message = queue.front();
    const int length = addressLength(message.address.addr_type);
    if (out.addr_len < static_cast<unsigned>(length))
        return fail(EINVAL);
    const bool tooLong = message.data.size() > out.msg.data_len;
    if (tooLong && !truncate)
        return fail(EMSGSIZE);
    out.recv_type = message.type;
    out.msgid = message.id;
    out.addr_len = static_cast<unsigned>(length);
    std::memcpy(out.addr, &message.address, static_cast<std::size_t>(length));
    out.msg.netfn = message.netFn;
    out.msg.cmd = message.command;
    out.msg.data_len = static_cast<unsigned short>(std::min<std::size_t>(message.data.size(), out.msg.data_len));
    std::memcpy(out.msg.data, message.data.data(), out.msg.data_len);
    queue.pop_front();
    eventfd_t one = 0;
    eventfd_read(fd, &one);
    return tooLong ? fail(EMSGSIZE) : 0;
}

void Driver::deliver(int fd, std::uint64_t generation, Received message)
{
    const auto file = files.find(fd);
    if (file == files.end() || generations[static_cast<std::size_t>(fd)] != generation)
        return; // closed in the meantime
    file->second.queue.push_back(std::move(message));
    eventfd_write(fd, 1);
}

void Driver::deliverEvent(const vmline::Bytes& record)
{
    ipmi_addr address{};
    address.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
    address.channel = IPMI_BMC_CHANNEL;
    for (auto& [fd, file] : files)
        if (file.getsEvents)
            deliver(fd, generations[static_cast<std::size_t>(fd)],
                    {IPMI_ASYNC_EVENT_RECV_TYPE, 0, address, netFnEvent, platformEvent, record});
}

/// All signals stay with the program's own threads.
void Driver::startThread()
{
    if (threadRuns)
        return;
    threadRuns = true;
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread(&Driver::run, this).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void Driver::run()
{
    std::unique_lock lock(mutex);
    while (true) {
        pollfd watched[] = {{controller.socket(), POLLIN, 0}};
        lock.unlock();
        const int ready = poll(watched, 1, watched[0].fd < 0 ? idleMilliseconds : pollMilliseconds);
        lock.lock();
        if (ready > 0 && controller.socket() == watched[0].fd)
            controller.receive();
        controller.expire(std::chrono::steady_clock::now());
    }
}

/// In the child of a fork: the line and the thread stay with the parent.
void Driver::startAfresh()
{
    controller.forget();
    threadRuns = false;
    for (auto& [fd, file] : files) {
        file.queue.clear();
        const int fresh = eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK);
        dup2(fresh, fd);
        ::close(fresh);
    }
}

} // namespace preload
