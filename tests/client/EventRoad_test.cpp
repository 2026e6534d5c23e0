#include "client/events/SNMP_RouteEvent.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/SensorReading.hpp"
#include "tests/client/EventFixture.hpp"
#include "tests/client/EventRoadFile.hpp"
#include "tests/client/ModelLog.hpp"
#include "tests/support/TempRoot.hpp"
#include "translator/TranslatorImpl.hpp"
#include "translator/WideText.hpp"

#include <gmock/gmock.h>
#include <sstream>

// The whole road of an event: bytes of the log, translator with the shipped English file, watcher, route, classifier,
// clone, trap. What has to come out stands in event-road.txt.

namespace {

/// Where the words of the decimal reading of event data 1 are given: thresholds of temperatures, voltages and fans,
/// processors, and states above 9; an uncorrectable error of the processor complex is given as non-critical.
bool hasGivenGravity(const EventKind& kind)
{
    if (kind.eventType == ipmi::eventtype::sensorSpecific)
        return kind.data1 > 9 || (kind.sensorType == 7 && kind.data1 == 6);
    return kind.eventType <= ipmi::eventtype::threshold &&
           (kind.sensorType == 1 || kind.sensorType == 2 || kind.sensorType == 4 || kind.sensorType == 7);
}

/// The full record of a type's one sensor, on channel 3 and LUN 1 of a satellite. Its name holds words that choose
/// traps.
ipmi::Bytes sensorRecord(int sensorType)
{
    const std::string name = nameOf(sensorType);
    ipmi::Bytes record(64);
    record[ipmi::sdr::type] = ipmi::sdrtype::full;
    record[ipmi::sdr::owner] = 0x22;
    record[ipmi::sdr::lun] = 0x31;
    record[ipmi::sdr::number] = static_cast<std::uint8_t>(sensorType + 1);
    record[ipmi::sdr::sensorType] = static_cast<std::uint8_t>(sensorType);
    record[ipmi::sdr::eventType] = ipmi::eventtype::sensorSpecific;
    record[47] = static_cast<std::uint8_t>(0xC0 | name.size());
    std::ranges::copy(name, record.begin() + 48);
    return record;
}

ipmi::Bytes logRecord(const EventKind& kind, unsigned id)
{
    ipmi::Bytes record{0, 0, 0x02, 0x0D, 0x0C, 0x0B, 0x4A, 0x22, 0x31, 0x04, 0, 0, 0, 0, 0xFF, 0xFF};
    record[0] = static_cast<std::uint8_t>(id);
    record[1] = static_cast<std::uint8_t>(id >> 8);
    record[10] = static_cast<std::uint8_t>(kind.sensorType);
    record[11] = static_cast<std::uint8_t>(kind.sensorType + 1);
    record[12] = static_cast<std::uint8_t>(kind.eventType | (kind.isOver ? 0x80 : 0));
    record[13] = static_cast<std::uint8_t>(kind.data1);
    return record;
}

/// Translates its two records, of which the first is the mark.
class TranslatingLog : public ModelLog {
public:
    void put(const EventKind& kind)
    {
        records.clear();
        for (const unsigned id : {1U, 2U}) {
            const ipmi::Bytes record = logRecord(kind, id);
            records.push_back({id, ipmi::hexBytes(record), translate(record)});
        }
        m_iLastRecordID = 1;
        sLastSelEntry = "another";
    }

    std::string translate(const ipmi::Bytes& record)
    {
        try {
            return translator::narrowText(words.translate(record.data(), record.size()));
        } catch (const ResultStatus&) {
            return "Unknown Event.";
        }
    }

    TranslatorImpl words{HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true};
};

class EventRoad : public EventFixture {
protected:
    EventRoad()
    {
        describeSensors();
        testing::internal::CaptureStderr();
        client.init();
        testing::internal::GetCapturedStderr();
        client.mSystemManagement->m_nTrapsEnabled = 1;
        watching = &watchEvents();
    }

    void describeSensors()
    {
        log.answers = {};
        std::vector<std::vector<std::uint8_t>> all;
        for (int type = 0; type < 256; ++type) {
            const ipmi::Bytes record = sensorRecord(type);
            if (type <= 0xDC)
                all.push_back(record);
            const _XNode text = ScriptedBackend::leaf({ipmi::hexBytes(record)});
            const std::string key = "/BMC/SDR[" + std::to_string(type) + "]";
            log.answers["/BMC/SDR/SENSOR_TYPE[" + std::to_string(type) + "]"][key] = text;
            log.answers["/BMC/SDR/RECORD_TYPE[1]"][key] = text;
            const std::string path = "/BMC/SENSOR[" + std::to_string((type + 1) & 0xFF) + "]";
            log.answer(path + "/NAME", nameOf(type));
            log.answer(path + "/OWNER[34]/LUN[49]/NAME", nameOf(type));
        }
        log.words.setSDRRepository(all);
        describeInventory();
    }

    /// One processor and one memory module, which is called as its sensor but for the spelling.
    void describeInventory()
    {
        ipmi::Bytes processor = sensorRecord(ipmi::sensortype::processor);
        processor[ipmi::sdr::type] = ipmi::sdrtype::compact;
        log.answers["/BMC/SDR/RECORD_TYPE[2]"]["/BMC/SDR[7]"] = ScriptedBackend::leaf({ipmi::hexBytes(processor)});
        log.answer("/SMBIOS/ProcessorInfo/TotalNoOfProcessorPresent", "1");
        const std::string array = "/SMBIOS/MemoryArray[1]";
        const std::string module = array + "/MemoryDevice[1]";
        log.answers["/SMBIOS/MemoryArray"][array] = ScriptedBackend::leaf({});
        log.answer(array + "/TotalNoOfDevicePresent", "1");
        log.answers[array + "/MemoryDevice"][module] = ScriptedBackend::leaf({});
        log.answer(module + "/DevicePresent", "True");
        log.answers[module][module + "/DeviceLocator"] = ScriptedBackend::leaf({"slower_on-0c"});
    }

    /// "trap severity row health text" of one record: health from ok for an assertion, from critical for the end of a
    /// state that the device is listed for.
    std::string outcomeOf(const EventKind& kind)
    {
        watching->kept.clear();
        watching->mNonCriList.clear();
        watching->mNonRecList.clear();
        watching->mCriticalList =
            kind.isOver ? std::list<int>{ipmi::SdrView(sensorRecord(kind.sensorType)).packedId()} : std::list<int>();
        watching->m_nHealthStatus = kind.isOver ? ENUM_STATUS_CRITICAL : ENUM_STATUS_OK;
        log.put(kind);
        CheckForNewSELEntry();
        const std::vector<std::string> traps = trapsSent();
        return watching->kept.empty() ? "-" : describe(watching->kept.back(), traps);
    }

    std::string describe(const eventData& event, const std::vector<std::string>& traps)
    {
        shown = watching->shown.empty() ? event.stEventDesc : watching->shown;
        const bool hasOwn = !traps.empty() && !traps.front().starts_with("20.");
        std::ostringstream line;
        line << (hasOwn ? traps.front().substr(0, traps.front().find(' ')) : "none") << ' ' << event.nSeverity << ' '
             << event.nInstIndex << ' ' << watching->m_nHealthStatus << ' ' << (shown.empty() ? "-" : shown);
        EXPECT_TRUE(!hasOwn || traps.front().ends_with(" " + shown));
        return line.str();
    }

    /// Whether log and trap call the record equally grave, if both say how grave it is.
    bool isAsGraveInTheLog()
    {
        static const std::pair<std::string_view, int> tails[] = {
            {"OK", 3}, {"Non-Critical", 4}, {"Critical", 5}, {"Non-Recoverable", 6}};
        const std::string& inLog = log.records.back().text;
        const auto* const tail =
            std::ranges::find_if(tails, [&](const auto& row) { return inLog.ends_with(row.first); });
        return tail == std::end(tails) || watching->kept.empty() || watching->kept.back().nSeverity < 3 ||
               watching->kept.back().nSeverity == tail->second;
    }

    const Expectations expected{HWAGENT_EVENT_ROAD};
    TempRoot root;
    TranslatingLog log;
    ScopedSeam<QueryBackend> useLog{log};
    WatchingHandler* watching = nullptr;
    std::string shown; ///< the trap's words
};

/// A trap that stands for a failure, with severity 3.
constexpr char failureTrapOfARecovery[] = "^(40\\.[1-68]|40\\.10|50\\.[5-8]|60\\.[1-4]|80\\.2|100\\.1|110\\.1) 3 ";

TEST_F(EventRoad, EveryKindOfEventEndsInItsTrap)
{
    for (const auto& [kind, side] : expected.sides) {
        SCOPED_TRACE(testing::PrintToString(kind));
        const std::string outcome = outcomeOf(kind);
        EXPECT_EQ(outcome, Expectations::outcome(kind, side, log.records.back().text, shown));
        EXPECT_THAT(outcome, testing::Not(testing::ContainsRegex(failureTrapOfARecovery)));
        EXPECT_TRUE(isAsGraveInTheLog() || hasGivenGravity(kind)) << log.records.back().text;
    }
}

TEST_F(EventRoad, ByOneListOfStatesTrapAndLogAgreeOnEveryKind)
{
    const common::ScopedPolicy practical({.readsTrueOffsets = true, .agreesOnGravity = true});
    for (const auto& [kind, side] : expected.sides) {
        const std::string outcome = outcomeOf(kind);
        EXPECT_TRUE(isAsGraveInTheLog()) << testing::PrintToString(kind) << outcome << log.records.back().text;
    }
}

} // namespace
