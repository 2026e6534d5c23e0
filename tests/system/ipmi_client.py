"""A program that uses /dev/ipmi0 by its ioctls: one order a line on standard input, one JSON answer a line."""

import ctypes
import errno
import fcntl
import json
import os
import select
import sys

SEND_COMMAND, RECEIVE_MSG_TRUNC = 0x8028690D, 0xC030690B
SYSTEM_INTERFACE, BMC_CHANNEL = 0x0C, 0x0F


class SystemAddress(ctypes.Structure):
    _fields_ = [("kind", ctypes.c_int), ("channel", ctypes.c_short), ("lun", ctypes.c_ubyte)]


class Message(ctypes.Structure):
    _fields_ = [("net_fn", ctypes.c_ubyte), ("command", ctypes.c_ubyte), ("length", ctypes.c_ushort), ("data", ctypes.c_void_p)]


class Request(ctypes.Structure):
    _fields_ = [("address", ctypes.c_void_p), ("address_length", ctypes.c_uint), ("id", ctypes.c_long), ("message", Message)]


class Received(ctypes.Structure):
    _fields_ = [("kind", ctypes.c_int), ("address", ctypes.c_void_p), ("address_length", ctypes.c_uint), ("id", ctypes.c_long),
                ("message", Message)]


class Device:
    def __init__(self):
        self.fd = os.open("/dev/ipmi0", os.O_RDWR)

    def send(self, number, net_fn, command, data=()):
        address = SystemAddress(SYSTEM_INTERFACE, BMC_CHANNEL, 0)
        body = (ctypes.c_ubyte * max(len(data), 1))(*data)
        request = Request(ctypes.addressof(address), ctypes.sizeof(address), number,
                          Message(net_fn, command, len(data), ctypes.addressof(body)))
        fcntl.ioctl(self.fd, SEND_COMMAND, request)

    def receive(self):
        """Message id and data of the next answer."""
        address, body = (ctypes.c_ubyte * 40)(), (ctypes.c_ubyte * 272)()
        out = Received(0, ctypes.addressof(address), 40, 0, Message(0, 0, 272, ctypes.addressof(body)))
        fcntl.ioctl(self.fd, RECEIVE_MSG_TRUNC, out)
        return out.id, list(body[:out.message.length])

    def exchange(self, net_fn, command, data=(), number=1):
        self.send(number, net_fn, command, data)
        if not select.select([self.fd], [], [], 10)[0]:
            raise TimeoutError(errno.ETIMEDOUT, "no answer")
        return self.receive()


def obey(device, order, *words):
    numbers = [int(word, 0) for word in words] if order != "read" else []
    if order == "exchange":
        return device.exchange(numbers[0], numbers[1], numbers[2:])[1]
    if order == "burst":
        for number in range(numbers[0]):
            device.send(number, 6, 1)
        found = []
        while len(found) < numbers[0] and select.select([device.fd], [], [], 10)[0]:
            found.append(device.receive()[0])
        return found
    if order == "receive":
        return device.receive()
    if order == "option":
        return fcntl.ioctl(device.fd, numbers[0], bytearray(8))
    if order == "read":
        with open(words[0]) as file:
            return file.read()
    raise ValueError(order)


def main():
    device = Device()
    for _ in range(int(sys.argv[2]) if sys.argv[1:2] == ["--forks"] else 0):
        if os.fork():
            os.wait()
            return
    for line in sys.stdin:
        try:
            answer = obey(device, *line.split())
        except OSError as error:
            answer = errno.errorcode[error.errno]
        print(json.dumps(answer), flush=True)


if __name__ == "__main__":
    main()
