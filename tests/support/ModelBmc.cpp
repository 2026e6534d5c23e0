#include "tests/support/ModelBmc.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/ipmi.h>
#include <sys/ioctl.h>

namespace {

constexpr int modelFd = 1000;
constexpr std::uint8_t invalidCommand = 0xC1;

std::uint16_t commandKey(std::uint8_t netFn, std::uint8_t cmd)
{
    return static_cast<std::uint16_t>(netFn << 8 | cmd);
}

IpmiRequest readRequest(const ipmi_req& req)
{
    IpmiRequest request;
    const auto* address = reinterpret_cast<const ipmi_addr*>(req.addr);
    request.channel = static_cast<std::uint8_t>(address->channel);
    if (address->addr_type == IPMI_IPMB_ADDR_TYPE) {
        const auto* ipmb = reinterpret_cast<const ipmi_ipmb_addr*>(req.addr);
        request.target = ipmb->slave_addr;
        request.lun = ipmb->lun;
    } else {
        request.lun = reinterpret_cast<const ipmi_system_interface_addr*>(req.addr)->lun;
    }
    request.netFn = req.msg.netfn;
    request.cmd = req.msg.cmd;
    request.data.assign(req.msg.data, req.msg.data + req.msg.data_len);
    return request;
}

} // namespace

void ModelBmc::on(std::uint8_t netFn, std::uint8_t cmd, Handler handler)
{
    handlers[commandKey(netFn, cmd)] = std::move(handler);
}

void ModelBmc::on(std::uint8_t netFn, std::uint8_t cmd, IpmiAnswer answer)
{
    on(netFn, cmd, [answer = std::move(answer)](const IpmiRequest&) { return answer; });
}

int ModelBmc::open(const char*, int)
{
    if (present)
        return modelFd;
    errno = ENOENT;
    return -1;
}

int ModelBmc::ioctl(int, unsigned long request, void* argument)
{
    if (request == IPMICTL_SEND_COMMAND)
        return send(argument);
    if (request == IPMICTL_RECEIVE_MSG_TRUNC)
        return receive(argument);
    errno = EINVAL;
    return -1;
}

int ModelBmc::send(void* argument)
{
    const auto& req = *static_cast<const ipmi_req*>(argument);
    requests.push_back(readRequest(req));
    const IpmiRequest request = requests.back();
    IpmiAnswer answer = answerTo(request);
    if (!answer.empty())
        replies.push_back({req.msgid, static_cast<std::uint8_t>(request.netFn + 1), request.cmd, std::move(answer),
                           clock ? clock->steadyTime + answerTime : Clock::SteadyPoint()});
    return 0;
}

IpmiAnswer ModelBmc::answerTo(const IpmiRequest& request) const
{
    if (const auto found = handlers.find(commandKey(request.netFn, request.cmd)); found != handlers.end())
        return found->second(request);
    return others ? others(request) : IpmiAnswer{invalidCommand};
}

int ModelBmc::receive(void* argument)
{
    if (replies.empty()) {
        errno = EAGAIN;
        return -1;
    }
    auto& recv = *static_cast<ipmi_recv*>(argument);
    const Reply reply = std::move(replies.front());
    replies.pop_front();
    recv.recv_type = IPMI_RESPONSE_RECV_TYPE;
    recv.msgid = reply.msgid;
    recv.msg.netfn = reply.netFn;
    recv.msg.cmd = reply.cmd;
    const std::size_t length = std::min<std::size_t>(recv.msg.data_len, reply.bytes.size());
    std::memcpy(recv.msg.data, reply.bytes.data(), length);
    recv.msg.data_len = static_cast<unsigned short>(length);
    if (length == reply.bytes.size())
        return 0;
    errno = EMSGSIZE; // what the kernel's IPMICTL_RECEIVE_MSG_TRUNC says of an answer that it had to cut
    return -1;
}

int ModelBmc::waitReadable(int, std::chrono::milliseconds limit)
{
    if (!clock)
        return replies.empty() ? 0 : 1;
    const auto end = clock->steadyTime + limit;
    const auto next = replies.empty() ? Clock::SteadyPoint::max() : replies.front().ready;
    clock->advance(std::clamp(next, clock->steadyTime, end) - clock->steadyTime);
    return next <= end ? 1 : 0;
}

int ModelBmc::close(int)
{
    return 0;
}
