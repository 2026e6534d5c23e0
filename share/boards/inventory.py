"""What firmware tables and inventory data tell of a server: three sockets of which one is empty, three memory arrays of
which one is empty, an enclosure with a lid that is open. All readings are well."""

from hwtools.board import TEMPERATURE, Board

INTRUSION, PROCESSOR = 5, 7

board = Board("inventory")
board.analog(0x01, TEMPERATURE, "Inlet Air", 23, "degrees C", thresholds=dict(unc=38, uc=43))
board.discrete(0x91, PROCESSOR, "Socket 1", [7], entity=(3, 1))
board.discrete(0x92, PROCESSOR, "Socket 3", [7], entity=(3, 3))
board.discrete(0x73, INTRUSION, "Lid", [0])
board.fru(0, chassis=(0x17, "EG-CH-1", ("EG-C-0042", "6bit")),
          board=(13140000, "Lakeside Works", "EG-MB", "EG-B-1", "EG-B-2", ""),
          product=("Lakeside Works", "Egret", "EG-1", "B2", "EG-P-9", "ROOM-3", ""))

firmware = board.smbios
firmware.firmware("Lakeside Works", "EG.1.07.3", "11/02/2024")
firmware.system("Lakeside Works", "Egret", "B2", "EG-P-9")
firmware.board("Lakeside Works", "Larch-2", "B", "EG-B-1")
firmware.chassis(0x97, "Lakeside Works", "B2", "EG-C-0042", "ROOM-3", boot=5, thermal=4, security=2)  # with a lock
firmware.processor("Socket 1", "Lakeside Silicon", "Lakeside K9 2.4GHz", 0xBFEBFBFF000306F2, family=0xB3, max_mhz=3600,
                   mhz=2400, clock_mhz=133, decivolts=12, upgrade=0x14, part="LK9-2400")
firmware.processor("Socket 2", "", "", 0, present=False)
firmware.processor("Socket 3", "Lakeside Silicon", "Lakeside K9 2.8GHz", 0x178BFBFF00100F42, family=0xD6, max_mhz=3800,
                   mhz=2800, clock_mhz=200, decivolts=9, upgrade=0x26, part="LK9-2800")  # a socket newer than the numbers

boot_array = firmware.memory_array(kilobytes=16 << 10, devices=1, correction=3, location=6, use=5)
firmware.memory_module(boot_array, "Flash 0", "", 16, "Lakeside Memory", kind=0x09, mhz=0, form=5, detail=0x1000)
spare_array = firmware.memory_array(kilobytes=128 << 20, devices=2)
for place in (0, 1):
    firmware.memory_module(spare_array, f"Riser {place}", "Riser", 0)
main_array = firmware.memory_array(kilobytes=256 << 20, devices=6, correction=5)
for place, megabytes, kind, mhz, detail in ((0, 32768, 0x1A, 2400, 0x80), (1, 0, 2, 0, 4), (2, 16384, 0x18, 1600, 0x280),
                                            (3, 512, 0x13, 667, 0x98), (4, 0, 2, 0, 4), (5, 65536, 0x22, 4800, 0x80)):
    firmware.memory_module(main_array, f"DIMM {place}", f"Channel {place // 2}", megabytes, "Lakeside Memory",
                           f"LM-{place:04}", f"ASSET-{place}", f"LM-{megabytes}-{mhz}", kind, mhz, form=13 if place == 3 else 9,
                           detail=detail)
firmware.hardware_security(0b01_00_10_11)
