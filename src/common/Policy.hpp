#pragma once

#include <chrono>

namespace common {

/// What the agent does where its plain behaviour costs service or hides the truth. One decision a member, asked at the
/// one place that it names; `docs/practical-mode.md` has a row for each. Without the key `practical` in hwagent.conf
/// every member has the value that stands here, and the agent behaves plainly.
struct Policy {
    bool practical = false; ///< the key itself: for messages and reports, never for a decision

    // The road to the controller.
    bool limitsExchanges = false;        ///< sendRequest: all tries, bridging and waits end within exchangeBudget
    bool retriesBusyController = false;  ///< sendRequest: C0h, C3h, D2h are asked again, with growing pauses
    bool sleepsInPortWaits = false;      ///< Kcs: a wait for the port sleeps after its first hundred microseconds
    bool recoversFailedSends = false;    ///< Kcs: a wrong state while sending is left by an abort, as while reading
    bool keepsUndummiedFrames = false;   ///< Kcs: a frame is whole without the dummy byte that should follow it
    bool checksDriverAnswers = false;    ///< OpenIpmi: each message has its own number, and answers are compared
    bool reportsDriverErrors = false;    ///< ProcessMessage: an error of the driver is one, not an empty answer
    bool carriesLun = false;             ///< carriedLun: a request's LUN reaches the controller
    bool reopensDevice = false;          ///< OpenIpmi: a device node that came back is opened anew
    bool sparesSilentController = false; ///< IpmiExchange: after three failures in a row only a probe now and then
    bool locksWithinProcess = false;     ///< CMySemLock, HWAGENTLock: mutexes instead of named semaphores
    bool probesByKernelTables = false; ///< MainInit: where the ports are, by the kernel's copy of the firmware's tables
    // The repository of sensor data records.
    bool readsLargePieces = false;          ///< SdrRead: pieces as large as the controller takes
    bool limitsSdrRepeats = false;          ///< SdrRead: a hundred repeats a reading, none of a refusal that will last
    bool keepsPartialRepository = false;    ///< SdrRead: the records that could be read stand until the rest can be
    bool remembersUnreadRepository = false; ///< SdrRead: one that could not be read is left alone for a while
    bool keepsRepositoryOnDisk = false;     ///< SdrRead: a copy between starts, checked against time stamps and id
    bool followsRepository = false;         ///< Sdr: read again when its time stamps change
    // Readings and tables.
    bool refusesShortReadings = false;    ///< Sensor: an answer without its flags is no reading
    bool answersFromPublished = false;    ///< QLInterface: only the reading thread asks, all others look up
    bool expiresReadings = false;         ///< QLInterface: an answer of more than three refresh periods is none
    bool fillsBehindRegistration = false; ///< smClient: the groups appear as they are read, behind the registration
    // The firmware's tables.
    bool readsKernelTables = false;      ///< SmbiosLocate: the kernel's copies first, memory where it offers none
    bool takesWideEntries = false;       ///< SmbiosLocate: entry points of 64 bits as well
    bool knowsNewerFirmware = false;     ///< SMBIOSProtocolImpl: words and fields up to SMBIOS 3.7, from 2.6 on
    bool keepsFirmwareWords = false;     ///< SMBIOSConfigMgr: no word is replaced, so no controller is asked
    bool asksFirmwareForChassis = false; ///< clChassisInfo: what the FRU inventory does not tell of the enclosure
    bool describesInventory = false; ///< clInventory: names of processors and modules say what has no column or number
    bool showsFullNames = false;     ///< clThresholdProbes: names of voltages are not cut at nine characters
    bool tellsRowsApart = false;     ///< RowNames: equal names of a table get what tells them apart
    // States.
    bool convertsByStandard = false; ///< Sensor: curves by the standard's formula, and no reading without one
    bool heedsScanning = false;      ///< Sensor: what nobody scans has no reading
    bool namesDeasserted = false;    ///< Sensor: a reading without a state is one, where nothing needs to be there
    bool judgesEachState = false; ///< SensorAcquisition: readings by their limits, states by one list; the worst counts
    bool listsEverySensor = false; ///< DiscreteGroup: a row for sensors of types without a group, too
    // Events.
    bool keepsMark = false;            ///< SelWatcher: the place in the log outlives restarts, clears and wraps
    bool pacesTrapsApart = false;      ///< eventHandler: health at once; traps leave in bursts, from a bounded queue
    bool cutsLongTexts = false;        ///< CheckedCopy: a text that does not fit is cut
    bool readsTrueOffsets = false;     ///< offsetOf: the record's own offset, not what its text reads as
    bool agreesOnGravity = false;      ///< Classifiers: how grave an event is the one list of states says
    bool tellsWhatHolds = false;       ///< SNMP_EventClones: a recovery tells the state that still holds
    bool tellsHealthOfRows = false;    ///< eventHandler: devices without a row, or without a status yet, have no part
    bool neverWaitsForRecords = false; ///< Classifiers: no record of any kind makes the event thread wait
    bool givesUpUnreadRecords = false; ///< Sel: a record of the log is asked for 3 times, not 1,000
    // The process.
    bool stopsDuringStart = false;     ///< Process: a stop signal ends a start that is under way
    bool refusesSecondAgent = false;   ///< Process: a lock that only root can take is held for the daemon's life
    bool refusesArguments = false;     ///< Process: any argument gives lines of usage, as nothing takes one
    bool backsOffCrashes = false;      ///< Process: growing pauses between starts after crashes; also after SIGKILL
    bool endsWithoutResources = false; ///< Process: too few descriptors or semaphores end the start with a message
    bool tellsServiceManager = false;  ///< StatusService: a line of state for systemctl, where there is a socket for it
    bool answersStatus = false;        ///< BackgroundThreads: a socket below /run at which root asks how the agent is

    // Figures of the mode, each a key of hwagent.conf in lower case.
    std::chrono::milliseconds exchangeBudget{5'000};
    std::chrono::seconds refreshPeriod{10};
    int trapBurst = 20;     ///< traps that leave at once
    int trapsPerSecond = 1; ///< after those
    int trapQueue = 10'000; ///< waiting traps; the newest beyond that are dropped, and said to be
};

/// Every decision for service.
Policy practicalPolicy();

/// The policy in force.
const Policy& policy();

/// Reads the keys of the policy from hwagent.conf, at the start of a program and before its threads. Plain behaviour
/// without the file or the key; a figure that is no number from 1 on is left as it was.
void loadPolicy();

/// Puts a policy in force for the life of a scope. For tests.
class ScopedPolicy {
public:
    explicit ScopedPolicy(const Policy& replacement);
    ~ScopedPolicy();
    ScopedPolicy(const ScopedPolicy&) = delete;
    ScopedPolicy& operator=(const ScopedPolicy&) = delete;

private:
    Policy before;
};

} // namespace common
