"""The private MIB as data: eighteen objects with their columns, and the traps with what they carry. The module file, the
table printer and the system tests are made from these tables."""

from dataclasses import dataclass, field

ENTERPRISE = (1, 3, 6, 1, 4, 1, 44444)
BASE = ENTERPRISE + (2, 10, 3, 5)

# value sets: SMIv2 labels by number
STATUS = {1: "unavailable", 2: "healthy", 3: "warning", 4: "critical"}
SETTING = {3: "disabled", 4: "enabled", 5: "notImplemented", 2: "unknown"}
PERFORMANCE = {1: "met", 2: "lagging"}
REDUNDANCY = {2: "unknown", 3: "full", 4: "degraded", 5: "lost", 6: "nonRedundant", 8: "allDeasserted"}
SECURITY = {0: "notRead", 1: "none", 2: "unknown", 3: "safe"}
SWITCH = {0: "no", 1: "yes"}
POWER = {0: "off", 1: "on", 2: "unknown"}
LOCK = {0: "notPresent", 1: "present", 2: "unknown"}
NO_VALUE = 0x7FFFFFFF


@dataclass
class Column:
    suffix: int
    name: str
    attribute: str
    text: str
    kind: str = "number"  # "number", "text", "event" (text of an event) or "index"
    writable: bool = False
    units: str = ""
    values: dict = field(default_factory=dict)


@dataclass
class MibObject:
    name: str
    entity: str
    arc: tuple
    title: str
    columns: list
    scalar: bool = False
    entry: str = ""

    @property
    def oid(self):
        return BASE + self.arc

    def column_oid(self, column):
        return self.oid + ((column.suffix,) if self.scalar else (1, column.suffix))


@dataclass
class Trap:
    """`constant`: its name in the agent's sources; `severity`: the words of STATUS that it carries as a rule, "warning or
    critical"; `carries`: names of its objects, in the order of the message."""
    constant: str
    arc: tuple
    severity: str
    text: str
    carries: tuple

    @property
    def name(self):
        return "trap" + self.constant.removesuffix("EventOid")

    @property
    def oid(self):
        return BASE + self.arc


def dotted(oid):
    return ".".join(map(str, oid))


def _number(name, attribute, text, units="", values=None):
    return dict(name=name, attribute=attribute, text=text, units=units, values=values or {})


def _text(name, attribute, text):
    return dict(name=name, attribute=attribute, text=text, kind="text")


def _scalars(name, entity, arc, title, prefix, columns):
    made = [Column(suffix=i, **{**c, "name": prefix + c["name"], "attribute": f"{entity}_{c['attribute']}"})
            for i, c in enumerate(columns, 1)]
    return MibObject(name, entity, arc, title, made, scalar=True)


def _table(name, entity, attributes, arc, title, prefix, columns):
    made = [Column(1, prefix + "Index", "index", "The row's place in its table, from 1 without gaps. It is "
                   "given when the agent starts, and may be another after the next start.", kind="index")]
    made += [Column(suffix=i, **{**c, "name": prefix + c["name"], "attribute": f"{attributes}_{c['attribute']}"})
             for i, c in enumerate(columns, 2)]
    return MibObject(name, entity, arc, title, made, entry=name.removesuffix("Table") + "Entry")


SENSOR_ID = "its number times 65536, plus its owner's address times 256, plus its LUN"


def _head(thing, device_id=SENSOR_ID):
    """The first columns of every table."""
    return [_number("DeviceId", "DEVICEID", f"Identifies the {thing}: {device_id}. It stays when rows move, so it is the "
                    "key to keep; traps carry it."),
            _text("Description", "DESCRIPTION", f"Name of the {thing}."),
            _text("StatusString", "STATUSSTRING", f"State of the {thing} in a word: Unavailable, Healthy, Warning or "
                  "Critical."),
            _number("Status", "STATUS", f"State of the {thing}.", values=STATUS)]


def _probe(thing, units, tolerance_units, resolution_units, resolution_note=""):
    """Columns of a sensor with a reading and six thresholds."""
    bounds = (("UpperNonRecoverable", "UPPERNONREC", "Upper non-recoverable"),
              ("UpperCritical", "UPPERCRITICAL", "Upper critical"),
              ("UpperNonCritical", "UPPERNONCRI", "Upper non-critical"),
              ("LowerNonCritical", "LOWERNONCRI", "Lower non-critical"),
              ("LowerCritical", "LOWERCRITICAL", "Lower critical"),
              ("LowerNonRecoverable", "LOWERNONREC", "Lower non-recoverable"))
    columns = _head(thing) + [_number("Reading", "READING", f"Latest reading; {NO_VALUE} when there is none. It is "
                                      "some seconds old while the agent is being asked; the first request after a pause "
                                      "may get an older one. When a read fails, the reading of before stays.", units)]
    columns += [{**_number(f"{name}Threshold", f"{attribute}THRESHOLD",
                           f"{words} threshold; {NO_VALUE} when there is none. Sets are refused.", units),
                 "writable": True} for name, attribute, words in bounds]
    return columns + [
        _number("Resolution", "RESOLUTION", "Step between two neighbouring readings; 0 for a sensor that is not linear."
                f"{resolution_note} The unit is not the reading's.", resolution_units),
        _number("Tolerance", "TOLERANCE", "How far a reading may be off by its conversion: twice the step times the sensor "
                "record's tolerance, cut to whole units, which is four times what IPMI has it be; negative when the record's "
                f"number is 32 or more. 0 when the record tells none; {NO_VALUE} when it could not be read.", tolerance_units),
        _number("Accuracy", "ACCURACY", "How far the sensor itself may be off, of its full scale. The sensor record's exponent "
                f"is not applied, so each of its units makes this ten times too small. {NO_VALUE} when it could not be read.",
                "0.01 percent")]


BELOW_ONE = " A step below a whole unit shows as 0, so nearly all do."

CONTAINER_TYPES = {i: label for i, label in enumerate((
    "other", "unknown", "desktop", "lowProfileDesktop", "pizzaBox", "miniTower", "tower", "portable", "laptop", "notebook",
    "handHeld", "dockingStation", "allInOne", "subNotebook", "spaceSaving", "lunchBox", "mainSystemChassis",
    "expansionChassis", "subChassis", "busExpansionChassis", "peripheralChassis", "raidChassis", "rackMountChassis"), 1)}
ARRAY_LOCATIONS = {0: "notRead", 3: "systemBoard"}
ARRAY_USES = {i: label for i, label in enumerate((
    "notRead", "other", "unknown", "systemMemory", "videoMemory", "flashMemory", "nonVolatileMemory", "cacheMemory"))}
CORRECTIONS = {i: label for i, label in enumerate((
    "notRead", "other", "unknown", "none", "parity", "singleBitEcc", "multiBitEcc", "crc"))}
UPGRADES = {i: label for i, label in enumerate((
    "notRead", "other", "unknown", "daughterBoard", "zifSocket", "replaceablePiggyBack", "none", "lifSocket", "slot1", "slot2",
    "socket370", "slotA", "slotM", "socket423", "socketA", "socket478", "socket754", "socket940", "socket939", "socketMPGA604",
    "socketLGA771", "socketLGA775", "socketS1", "socketAM2", "socketF"))}
MEMORY_TYPES = {i: label for i, label in enumerate((
    "notRead", "other", "unknown", "dram", "edram", "vram", "sram", "ram", "rom", "flash", "eeprom", "feprom", "eprom", "cdram",
    "threeDram", "sdram", "sgram", "rdram", "ddr", "ddr2", "ddr2FbDimm", "ddr3", "ddr4"))}
FORM_FACTORS = {i: label for i, label in enumerate((
    "notRead", "other", "unknown", "simm", "sip", "chip", "dip", "zip", "proprietaryCard", "dimm", "tsop", "rowOfChips", "rimm",
    "sodimm", "srimm", "fbDimm", "reserved"))}
PROCESSOR_TYPES = {0: "notRead", 1: "other", 2: "unknown", 3: "centralProcessor", 4: "mathProcessor", 5: "dspProcessor",
                   6: "videoProcessor"}

OBJECTS = (
    _scalars("systemManagementSoftwareGroup", "SMINFO", (100,), "Agent and health of the whole system.", "system", [
        _number("HealthStatus", "HEALTHSTATUS", "Health of the whole system. In the practical mode it is "
                "the worst present status of all rows of sensors, at the start and after each reading and event; rows that are "
                "unavailable do not count, and it is unavailable as long as no row has a status. In the plain mode it is, when "
                "the agent starts, the worst status of the rows of processors, memory, voltages, currents, fans and "
                "temperatures; rows of sensors that report states do not count, nor does the chassis. From then on events of "
                "processors, supplies, power units, memory, voltages, fan speeds and temperatures move it, not readings: watch "
                "the status columns too. It is healthy there when no management controller answers and all tables but the "
                "firmware's are empty.", values=STATUS),
        _text("PlatformDescription", "PLATFORMDESC", "Description of the platform, from the configuration file."),
        _number("PlatformId", "PLATFORMID", "Number of the platform, from the configuration file."),
        _number("TrapsEnabled", "TRAPSENABLED", "Whether events become traps.", values=SWITCH),
        _number("SetsEnabled", "SETSENABLED", "Whether sets are accepted; always no.", values=SWITCH),
        _text("Manufacturer", "MANUFACTURER", "Maker of the product, from the configuration file."),
        _text("ProductName", "PRODUCTNAME", "Name of the product, from the configuration file."),
        _text("ProductVersion", "PRODUCTVERSION", "Version of the product, from the configuration file."),
        _text("ProductBuildNumber", "PRODUCTBUILDNUM", "Build of the product, from the configuration file."),
        _text("ProductDescription", "PRODUCTDESC", "Description of the product, from the configuration file.")]),
    _scalars("chassisInformationGroup", "CHASSIS", (200,), "The enclosure.", "chassis", [
        _number("Status", "STATUS", "State of the chassis by its intrusion sensor.", values=STATUS),
        _number("SecurityState", "SECURITYSTATE", "Security state that the firmware reports.", values=SECURITY),
        _number("BootState", "BOOTSTATE", "State at the last boot.", values=STATUS),
        _number("ThermalState", "THERMALSTATE", "Thermal state that the firmware reports.", values=STATUS),
        _number("PowerState", "POWERSTATE", "Power state.", values=POWER),
        _number("LockState", "LOCKSTATE", "Lock of the chassis.", values=LOCK),
        _number("KeyboardPasswordStatus", "KBDPWDSTATUS", "Keyboard password.", values={0: "notRead", **SETTING}),
        _number("PowerOnPasswordStatus", "POPWDSTATUS", "Power-on password.", values={0: "notRead", **SETTING}),
        _number("AdministratorPasswordStatus", "ADMINPWDSTATUS", "Administrator password.",
                values={0: "notRead", **SETTING}),
        _number("FrontPanelResetStatus", "FPRESETSTATUS", "Front panel reset.", values={0: "notRead", **SETTING}),
        _number("ContainerType", "CONTAINERTYPE", "Kind of enclosure.", values={0: "notRead", **CONTAINER_TYPES}),
        _text("PartNumber", "PARTNUMBER", "Part number of the chassis."),
        _text("SerialNumber", "SERIALNUMBER", "Serial number of the chassis."),
        _text("Name", "NAME", "Name of the chassis."),
        _text("AssetTag", "ASSETTAG", "Asset tag of the product.")]),
    _table("processorDeviceTable", "PROCESSOR", "PROC", (300, 10), "Processors that are fitted.", "processor",
           _head("processor", "the number of its sensor") + [
        _number("Type", "TYPE", "Kind of processor.", values=PROCESSOR_TYPES),
        _text("PartNumber", "PARTNUMBER", "Part number."),
        _text("ManufacturerName", "MANUFACTURERNAME", "Maker."),
        _number("Family", "FAMILY", "Family, by the SMBIOS processor family table."),
        _text("VersionName", "VERSIONNAME", "Version."),
        _number("MaxSpeed", "MAXSPEED", "Highest speed; 0 when unknown.", "MHz"),
        _number("CurrentSpeed", "CURRENTSPEED", "Speed at boot; 0 when unknown.", "MHz"),
        _number("ExternalClockSpeed", "EXTCLOCKSPEED", "External clock; 0 when unknown.", "MHz"),
        _number("Voltage", "VOLTAGE", "Core voltage; 0 when SMBIOS does not tell it.", "mV"),
        _number("UpgradeMethod", "UPGRADEMETHOD", "Kind of socket; a newer one is other.", values=UPGRADES),
        _text("SocketDesignation", "SOCKETDESIGNATION", "Name of the socket."),
        _text("ProcessorId", "PROCESSORID", "Identification bytes of the processor.")]),
    _table("discreteProcessorTable", "DISCRETE_PROCESSOR", "DISCRETE_PROCESSOR", (300, 20),
           "Sensors of processors that report states.", "discreteProcessor", _head("processor sensor")),
    _table("powerUnitTable", "POWERUNIT", "POWERUNIT", (400, 10), "Groups of power supplies.", "powerUnit",
           _head("power unit") + [
        _number("RedundancyStatus", "REDUNDANCYSTATUS", "Redundancy of the supplies.", values=REDUNDANCY)]),
    _table("powerSupplyTable", "POWERSUPPLY", "POWERSUPPLY", (400, 20), "Power supplies.", "powerSupply",
           _head("power supply")),
    _table("voltageProbeTable", "VOLTAGE", "VOLTAGE", (400, 30), "Voltages.", "voltage",
           _probe("voltage sensor", "mV", "V", "V", BELOW_ONE)),
    _table("discreteVoltageProbeTable", "DISCRETEVOLTAGE", "DISCRETEVOLTAGE", (400, 40), "Voltage sensors that report states.",
           "discreteVoltage", _head("voltage sensor") + [
        _number("Performance", "PERFORMANCE", "Whether the voltage is as it should be.", values=PERFORMANCE)]),
    _table("currentProbeTable", "CURRENT", "CURRENT", (400, 50), "Currents.", "current",
           _probe("current sensor", "mA", "A", "A", BELOW_ONE)),
    _table("physicalMemoryArrayTable", "MEMORYARRAY", "MEMORYARRAY", (500, 10), "Memory arrays that hold modules.",
           "memoryArray", _head("memory array", "its number among the arrays") + [
        _number("Location", "LOCATION", "Where the array is.", values=ARRAY_LOCATIONS),
        _number("MaxCapacity", "MAXCAPACITY", "Most that the array can hold.", "kB"),
        _number("NumberOfDevices", "NUMOFDEVICE", "Places for modules."),
        _number("ErrorCorrection", "ERRORCORRECTION", "Error correction.", values=CORRECTIONS),
        _number("Handle", "HANDLE", "SMBIOS handle of the error information; 65534 when there is none, 65535 when it told of no error."),
        _number("UsageCode", "USAGECODE", "What the array is used for.", values=ARRAY_USES),
        _text("Tag", "TAG", "Tag of the array."),
        _number("UsedSlots", "USEDSLOT", "Places that hold a module.")]),
    _table("physicalMemoryDeviceTable", "MEMORYDEVICE", "MEMORYDEVICE", (500, 20), "Memory modules that are fitted.",
           "memoryDevice", _head("memory module", "its number among the modules of its table") + [
        _text("Tag", "TAG", "Tag of the module."),
        _number("Handle", "HANDLE", "SMBIOS handle."),
        _number("AssociatedArray", "ASSOCIATEDARRAY", "Number of the memory array that holds the module."),
        _number("TotalWidth", "TOTALWIDTH", "Width with check bits; 0 or 65535 when unknown.", "bits"),
        _number("DataWidth", "DATAWIDTH", "Width without check bits; 0 or 65535 when unknown.", "bits"),
        _number("Size", "SIZE", "Size; 0 when unknown.", "MB"),
        _number("FormFactor", "FORMFACTOR", "Form factor.", values=FORM_FACTORS),
        _text("Locator", "LOCATOR", "Name of the place on the board."),
        _text("BankLabel", "BANKLABEL", "Name of the bank."),
        _number("MemoryType", "MEMORYTYPE", "Kind of memory; a newer one is other.", values=MEMORY_TYPES),
        _number("TypeDetail", "TYPEDETAIL", "Sum of 8 fast-paged, 16 static column, 32 pseudo-static, 64 Rambus, 128 synchronous, "
                "256 CMOS, 512 EDO, 1024 window DRAM, 2048 cache DRAM, 4096 non-volatile."),
        _number("Speed", "SPEED", "Highest speed; 0 or 65535 when unknown.", "MHz"),
        _text("Manufacturer", "MANUFACTURER", "Maker."),
        _text("SerialNumber", "SERIALNUMBER", "Serial number."),
        _text("AssetTag", "ASSETTAG", "Asset tag."),
        _text("PartNumber", "PARTNUMBER", "Part number.")]),
    _table("discreteMemoryTable", "DISCRETE_MEMORY", "DISCRETE_MEMORY", (500, 30), "Sensors of memory that report states.",
           "discreteMemory", _head("memory sensor")),
    _table("coolingUnitTable", "COOLINGUNIT", "COOLINGUNIT", (600, 10), "Groups of fans.", "coolingUnit",
           _head("cooling unit") + [
        _number("RedundancyStatus", "REDUNDANCYSTATUS", "Redundancy of the fans.", values=REDUNDANCY),
        _text("Caption", "CAPTION", "Caption of the row.")]),
    _table("coolingDeviceTable", "COOLINGDEVICE", "COOLINGDEVICE", (600, 20), "Fans.", "coolingDevice",
           _probe("fan", "rpm", "rpm", "0.1 rpm")),
    _table("discreteCoolingDeviceTable", "DISCRETECOOLING", "DISCRETECOOLING", (600, 30), "Fan sensors that report states.",
           "discreteCooling", _head("fan sensor") + [
        _number("Performance", "PERFORMANCE", "Whether the fan is as it should be.", values=PERFORMANCE)]),
    _table("temperatureProbeTable", "TEMPERATURE", "TEMPERATURE", (600, 40), "Temperatures.", "temperature",
           _probe("temperature sensor", "0.1 degrees C", "0.1 degrees C", "0.01 degrees C")),
    _table("driveSlotPresenceSensorTable", "DRIVESLOT", "DRIVESLOT_PRESENCE_SENSOR", (700, 10), "Drive slots.", "driveSlot",
           _head("drive slot") + [
        _text("PresenceStatusString", "PRESENCESTATUSSTRING", "Whether a drive is in the slot.")]),
    _table("miscellaneousSensorTable", "MISCELLANEOUS", "MISCELLANEOUS_SENSOR", (800, 10),
           "All other sensors that report states.", "miscellaneousSensor", _head("sensor")),
)


def find_object(name):
    return next(o for o in OBJECTS if o.name == name)


# What traps carry besides columns of tables. The two of slots come with two zeros behind their names.
TRAP_ARC, TRAP_OBJECT_ARC = 1000, 10
TRAP_OBJECTS = (
    Column(1, "trapDescription", "", "What has happened, in the words that the translation files give or with the new state at "
           "its end.", kind="event"),
    Column(2, "trapSeverity", "", "State that the event stands for. The traps' descriptions say what it is as a rule.",
           values=STATUS),
    Column(3, "trapSlotDescription", "", "Name of the slot.", kind="text"),
    Column(4, "trapSlotDeviceId", "", "Identifies the slot's sensor as device ids of rows do."))
TRAP_AREAS = {TRAP_OBJECT_ARC: "trapObjects", 20: "healthTraps", 30: "chassisTraps", 40: "processorTraps", 50: "powerTraps",
              60: "memoryTraps", 70: "coolingTraps", 80: "slotTraps", 90: "systemTraps", 100: "driveTraps", 110: "surgeTraps"}

PLAIN = ("trapDescription", "trapSeverity")
HEALTH = ("trapDescription", "systemHealthStatus")
SLOT = (*PLAIN, "trapSlotDescription", "trapSlotDeviceId")


def _row(prefix):
    """A row of the table whose columns begin with `prefix`: its state, its name, its number."""
    return ("trapDescription", prefix + "Status", prefix + "Description", prefix + "DeviceId")


def _traps(area, carries, rows, first=1):
    return [Trap(constant, (TRAP_ARC, area, number), severity, text, carries)
            for number, (constant, severity, text) in enumerate(rows, first)]


def _redundancy(prefix, things):
    return ((prefix + "FullRedund", "healthy", f"The {things} are fully redundant."),
            (prefix + "RedundDegraded", "warning", f"The redundancy of the {things} is degraded."),
            (prefix + "RedundLost", "critical", f"The redundancy of the {things} is lost."))


def _bounds(prefix, thing):
    """The seven of a sensor with thresholds, from the lowest bound to the highest."""
    return ((prefix + "LowNonRec", "critical", f"A {thing} is below its lower non-recoverable bound."),
            (prefix + "LowCri", "critical", f"A {thing} is below its lower critical bound."),
            (prefix + "LowNonCri", "warning", f"A {thing} is below its lower non-critical bound."),
            (prefix + "EventOk", "healthy", f"A {thing} is back within its bounds."),
            (prefix + "UpNonCri", "warning", f"A {thing} is above its upper non-critical bound."),
            (prefix + "UpCri", "critical", f"A {thing} is above its upper critical bound."),
            (prefix + "UpNonRec", "critical", f"A {thing} is above its upper non-recoverable bound."))


def _performance(prefix, thing):
    return ((prefix + "PerformMet", "healthy", f"A {thing} works as it should."),
            (prefix + "PerformLags", "warning", f"A {thing} does not work as it should."))


TRAPS = (
    *_traps(20, HEALTH, [("Health" + word, severity, f"The health of the whole system is now {state}.")
                        for word, severity, state in (
        ("Other", "unavailable", "of another kind"), ("Unknown", "unavailable", "unknown"), ("Ok", "healthy", "good"),
        ("NonCri", "warning", "impaired, but not critical"),
        ("Critical", "critical", "critical"),
        ("NonRec", "critical", "beyond recovery"))]),
    *_traps(30, PLAIN, (
        ("IntrusionDetected", "healthy", "The chassis is reported closed without a word of an intrusion."),
        ("IntrusionCleared", "any", "Any other record of the chassis sensor, an intrusion among them: the "
         "description tells which."),
        ("LanLeashLost", "warning", "The server was unplugged from its network."))),
    *_traps(40, _row("processor"), (
        ("ProcIERR", "critical", "A processor reports an internal error."),
        ("ProcThermal", "critical", "A processor stopped because it was too hot."),
        ("ProcFRB1", "critical", "A processor failed its self-test."),
        ("ProcFRB2", "critical", "A processor hung in the power-on self-test."),
        ("ProcFRB3", "critical", "A processor did not start."),
        ("ProcConfigErr", "warning", "Processors are not configured as they have to be."),
        ("ProcPresence", "healthy", "A processor was found."),
        ("ProcDisabled", "critical", "A processor was disabled."),
        ("ProcEnabled", "healthy", "A terminator was found in a processor's place."),
        ("ProcSMBIOS", "warning or critical", "The firmware reports an error of a processor that cannot be corrected."))),
    *_traps(50, _row("powerUnit"), _redundancy("PU", "power supplies")),
    *_traps(50, _row("powerSupply"), (
        ("PSPresent", "healthy", "A power supply was found."),
        ("PSRemoval", "warning", "A power supply was removed."),
        ("PSFailure", "critical", "A power supply failed."),
        ("PSPredFailure", "warning", "A power supply is about to fail."),
        ("PSACLost", "critical", "A power supply lost its input."),
        ("PSACOK", "healthy", "A power supply has its input again.")), first=4),
    *_traps(50, _row("voltage"), _bounds("V", "voltage"), first=10),
    *_traps(50, _row("discreteVoltage"), _performance("DV", "voltage regulator"), first=17),
    *_traps(60, _row("memoryDevice"), (
        ("MemSingleBit", "warning or critical", "A memory module had an error of a single bit, or one that could "
         "not be corrected: the description tells which."),
        ("MemMultiBit", "critical", "A memory module had an error of several bits."),
        ("MemParity", "critical", "A memory module had a parity error."),
        ("MemScrubFail", "critical", "Scrubbing a memory module failed."))),
    *_traps(70, _row("coolingUnit"), _redundancy("CU", "fans")),
    *_traps(70, _row("coolingDevice"), _bounds("C", "fan's speed"), first=4),
    *_traps(70, _row("discreteCooling"), _performance("DC", "fan"), first=11),
    *_traps(70, _row("temperature"), _bounds("T", "temperature"), first=13),
    *_traps(80, SLOT, (
        ("SlotOk", "healthy", "A slot works as it should."),
        ("SlotFault", "warning or critical", "A slot has a fault."),
        ("SlotPowerOff", "healthy", "A slot's power is off."),
        ("SlotPowerOn", "healthy", "A slot's power is on."))),
    *_traps(90, PLAIN, (
        ("SysReconfig", "healthy", "The system has been reconfigured."),
        ("SysBoot", "healthy", "The system booted."),
        ("HardwareFail", "critical", "Hardware failed, and it is not known which."))),
    *_traps(100, _row("driveSlot"), (
        ("DriveSlotDeviceRemovedEventOid", "warning", "A drive was removed from its slot."),
        ("DriveSlotDeviceInsertedEventOid", "healthy", "A drive was inserted in a slot."))),
    *_traps(110, PLAIN, (
        ("PGSurgeLoopEvtAsserted", "critical", "The surge of the power good signal began."),
        ("PGSurgeLoopEvtDeasserted", "healthy", "The surge of the power good signal is over."))))
