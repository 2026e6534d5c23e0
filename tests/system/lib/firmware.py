"""The inventory tables as dmidecode's and ipmitool's view of the same machine says that they have to be."""

import re

OTHER, HEALTHY = 1, 2
UNKNOWN_WORD = 0xFFFF
FAMILIES = {"Other": 1, "Unknown": 2, "Xeon": 0xB3, "Multi-Core Xeon": 0xD6}
UPGRADES = ("Other", "Unknown", "Daughter Board", "ZIF Socket", "Replaceable Piggy Back", "None", "LIF Socket", "Slot 1",
            "Slot 2", "370-pin Socket", "Slot A", "Slot M", "Socket 423", "Socket A (Socket 462)", "Socket 478", "Socket 754",
            "Socket 940", "Socket 939", "Socket mPGA604", "Socket LGA771", "Socket LGA775", "Socket S1", "Socket AM2",
            "Socket F (1207)")
MEMORY_TYPES = ("Other", "Unknown", "DRAM", "EDRAM", "VRAM", "SRAM", "RAM", "ROM", "Flash", "EEPROM", "FEPROM", "EPROM", "CDRAM",
                "3DRAM", "SDRAM", "SGRAM", "RDRAM", "DDR", "DDR2", "DDR2 FB-DIMM", "DDR3", "DDR4")
FORM_FACTORS = ("Other", "Unknown", "SIMM", "SIP", "Chip", "DIP", "ZIP", "Proprietary Card", "DIMM", "TSOP", "Row Of Chips",
                "RIMM", "SODIMM", "SRIMM", "FB-DIMM")
CORRECTIONS = ("Other", "Unknown", "None", "Parity", "Single-bit ECC", "Multi-bit ECC", "CRC")
USES = ("Other", "Unknown", "System Memory", "Video Memory", "Flash Memory", "Non-volatile RAM", "Cache Memory")
DETAILS = {"Fast-paged": 8, "Static Column": 16, "Pseudo-static": 32, "RAMBus": 64, "Synchronous": 128, "CMOS": 256, "EDO": 512,
           "Window DRAM": 1024, "Cache DRAM": 2048, "Non-Volatile": 4096}
ERROR_HANDLES = {"Not Provided": 0xFFFE, "No Error": 0xFFFF}
STATES = {"Unknown": 1, "Safe": 2, "Warning": 3, "Critical": 4, "Non-recoverable": 4}
SECURITY = {"None": 1, "Unknown": 2}
SETTINGS = {"Disabled": 3, "Enabled": 4, "Not Implemented": 5, "Unknown": 2}
CHASSIS_TYPES = {"Main Server Chassis": 17, "Rack Mount Chassis": 23, "Other": 1}
EMPTY = "No Module Installed"


def parse_dmidecode(text):
    """For each type, its structures in order: {label: text}, with the handle under "Handle"."""
    found = {}
    for block in text.split("Handle 0x")[1:]:
        kind = int(re.search(r"DMI type (\d+)", block)[1])
        labels = dict(re.findall(r"^\t([^\t:]+): *(.*)", block, re.M))
        found.setdefault(kind, []).append({"Handle": "0x" + block[:4], **labels})
    return found


def _text(structure, label):
    text = structure.get(label, "")
    return "" if text == "Not Specified" else text


def _number(text):
    return int(text.split()[0]) if text[:1].isdigit() else 0


def _size(text, unit):
    """Bytes of "16 GB" in the unit."""
    number, name = text.split()
    powers = {"bytes": 0, "kB": 10, "MB": 20, "GB": 30, "TB": 40}
    return int(number) << powers[name] >> powers[unit]


def _place(words, word, otherwise=OTHER):
    return words.index(word) + 1 if word in words else otherwise


def processor_rows(firmware, sensors):
    """`sensors`: numbers of the processors' sensors in order."""
    fitted = [p for p in firmware.get(4, []) if p["Status"].startswith("Populated")]
    return [{"processorIndex": place, "processorDeviceId": (sensors[min(place, len(sensors)) - 1] if sensors else 0),
             "processorDescription": _text(p, "Socket Designation"), "processorStatusString": "Healthy",
             "processorStatus": HEALTHY, "processorType": {"Central Processor": 3}[p["Type"]],
             "processorPartNumber": _text(p, "Part Number"), "processorManufacturerName": _text(p, "Manufacturer"),
             "processorFamily": FAMILIES[p["Family"]], "processorVersionName": _text(p, "Version"),
             "processorMaxSpeed": _number(p["Max Speed"]), "processorCurrentSpeed": _number(p["Current Speed"]),
             "processorExternalClockSpeed": _number(p["External Clock"]),
             "processorVoltage": round(float(p["Voltage"].split()[0]) * 1000) if p["Voltage"] != "Unknown" else 0,
             "processorUpgradeMethod": _place(UPGRADES, p["Upgrade"]),
             "processorSocketDesignation": _text(p, "Socket Designation"),
             "processorProcessorId": "0X" + p["ID"].replace(" ", "").lower()} for place, p in enumerate(fitted, 1)]


def _fitted_modules(firmware, array):
    return [m for m in firmware.get(17, []) if m["Array Handle"] == array["Handle"] and m["Size"] != EMPTY]


def array_rows(firmware):
    numbered = [(number, a, _fitted_modules(firmware, a)) for number, a in enumerate(firmware.get(16, []), 1)]
    filled = [each for each in numbered if each[2]]
    return [{"memoryArrayIndex": place, "memoryArrayDeviceId": number, "memoryArrayDescription": f"Memory Array {number}",
             "memoryArrayStatusString": "Healthy", "memoryArrayStatus": HEALTHY, "memoryArrayTag": "",
             "memoryArrayLocation": 3 if a["Location"] == "System Board Or Motherboard" else 0,
             "memoryArrayMaxCapacity": _size(a["Maximum Capacity"], "kB"),
             "memoryArrayNumberOfDevices": _number(a["Number Of Devices"]),
             "memoryArrayErrorCorrection": _place(CORRECTIONS, a["Error Correction Type"]),
             "memoryArrayHandle": ERROR_HANDLES[a["Error Information Handle"]],
             "memoryArrayUsageCode": _place(USES, a["Use"]), "memoryArrayUsedSlots": len(modules)}
            for place, (number, a, modules) in enumerate(filled, 1)]


def device_rows(firmware):
    modules = [(number, m) for number, a in enumerate(firmware.get(16, []), 1) for m in _fitted_modules(firmware, a)]

    def width(text):
        return UNKNOWN_WORD if text == "Unknown" else _number(text)

    return [{"memoryDeviceIndex": place, "memoryDeviceDeviceId": place, "memoryDeviceDescription": _text(m, "Locator"),
             "memoryDeviceStatusString": "Healthy", "memoryDeviceStatus": HEALTHY, "memoryDeviceTag": "",
             "memoryDeviceHandle": 0, "memoryDeviceAssociatedArray": number,
             "memoryDeviceTotalWidth": width(m["Total Width"]), "memoryDeviceDataWidth": width(m["Data Width"]),
             "memoryDeviceSize": _size(m["Size"], "MB"), "memoryDeviceFormFactor": _place(FORM_FACTORS, m["Form Factor"]),
             "memoryDeviceLocator": _text(m, "Locator"), "memoryDeviceBankLabel": _text(m, "Bank Locator"),
             "memoryDeviceMemoryType": _place(MEMORY_TYPES, m["Type"]),
             "memoryDeviceTypeDetail": sum(bit for word, bit in DETAILS.items() if word in m["Type Detail"]),
             "memoryDeviceSpeed": _number(m.get("Speed", "")), "memoryDeviceManufacturer": _text(m, "Manufacturer"),
             "memoryDeviceSerialNumber": _text(m, "Serial Number"), "memoryDeviceAssetTag": _text(m, "Asset Tag"),
             "memoryDevicePartNumber": _text(m, "Part Number")} for place, (number, m) in enumerate(modules, 1)]


def chassis_row(firmware, fru_text, status, practical):
    """`fru_text`: what `ipmitool fru print 0` says; `status`: that of the intrusion sensor. In the practical mode the firmware
    tells what the inventory does not."""
    fru = dict(re.findall(r"^ (\S.*?) +: (.*)", fru_text, re.M))
    enclosure = firmware[3][0]
    settings = firmware.get(24, [{}])[0]
    row = {"Status": status, "SecurityState": SECURITY.get(enclosure["Security Status"], 0),
           "BootState": STATES[enclosure["Boot-up State"]], "ThermalState": STATES[enclosure["Thermal State"]],
           "PowerState": 1, "LockState": {"Present": 1, "Not Present": 0}[enclosure["Lock"]], "Name": "",
           "ContainerType": CHASSIS_TYPES[fru["Chassis Type"]], "PartNumber": fru["Chassis Part Number"],
           "SerialNumber": fru["Chassis Serial"].rstrip(),  # six-bit texts are filled up with blanks
           "AssetTag": fru.get("Product Asset Tag", "").rstrip() or (_text(enclosure, "Asset Tag") if practical else "")}
    for name, label in (("KeyboardPassword", "Keyboard Password"), ("PowerOnPassword", "Power-On Password"),
                        ("AdministratorPassword", "Administrator Password"), ("FrontPanelReset", "Front Panel Reset")):
        row[name + "Status"] = SETTINGS[settings.get(label + " Status", "Unknown")]
    return {"chassis" + column: value for column, value in row.items()}


def described(name, notes):
    return f"{name} ({', '.join(notes)})" if notes else name


def add_notes(firmware, processors, modules):
    """What the names of the rows say besides in the practical mode."""
    for row, p in zip(processors, (p for p in firmware[4] if p["Status"].startswith("Populated"))):
        row["processorDescription"] = described(row["processorDescription"], [p["Upgrade"]] * (p["Upgrade"] not in UPGRADES) + [
            f"{p[label]} {what}" for label, what in (("Core Count", "cores"), ("Thread Count", "threads")) if label in p])
    for row, m in zip(modules, (m for a in firmware[16] for m in _fitted_modules(firmware, a))):
        row["memoryDeviceDescription"] = described(row["memoryDeviceDescription"], [
            word for word in (m["Type"], m.get("Memory Technology", "DRAM")) if word not in MEMORY_TYPES])


def compare_inventory(test, firmware, fru_text, status, sensors, read_rows, practical):
    """Fails `test` for each row that is not as dmidecode and ipmitool have it. `read_rows` gives the rows of an object."""
    processors, modules = processor_rows(firmware, sensors), device_rows(firmware)
    if practical:
        add_notes(firmware, processors, modules)
    for table, expected in (("processorDeviceTable", processors),
                            ("physicalMemoryArrayTable", array_rows(firmware)),
                            ("physicalMemoryDeviceTable", modules),
                            ("chassisInformationGroup", [chassis_row(firmware, fru_text, status, practical)])):
        found = read_rows(table)
        test.assertGreater(len(expected), 0, table)
        test.assertEqual(len(found), len(expected), table)
        for want, got in zip(expected, found):
            with test.subTest(table=table, row=want):
                test.assertEqual(got, want)
