#include "common/Util.hpp"
#include "tools/hwquery/Consent.hpp"
#include "tools/hwquery/Progress.hpp"
#include "tools/hwquery/Session.hpp"

#include <algorithm>
#include <span>

// What an administrator asks for most, as tables: each is a handful of queries.

namespace hwquery {

namespace {

/// A column of a table and where its value stands below a row's path.
struct Column {
    const char* name;
    const char* leaf;
};

std::vector<std::string> namesOf(std::span<const Column> columns)
{
    std::vector<std::string> names;
    for (const Column& column : columns)
        names.emplace_back(column.name);
    return names;
}

std::vector<std::string> rowOf(const ResultMap& nodes, const std::string& path, std::span<const Column> columns)
{
    std::vector<std::string> row;
    for (const Column& column : columns)
        row.push_back(valueOf(nodes, path + column.leaf));
    return row;
}

/// "23.000000" as "23".
std::string shortened(std::string number)
{
    if (number.find('.') == std::string::npos || number.find_first_not_of("-.0123456789") != std::string::npos)
        return number;
    number.erase(number.find_last_not_of('0') + 1);
    return number.ends_with('.') ? number.substr(0, number.size() - 1) : number;
}

constexpr Column sensorColumns[] = {{"number", "/NUMBER"},
                                    {"owner", "/OWNER"},
                                    {"name", "/NAME"},
                                    {"value", "/VALUE"},
                                    {"units", "/UNITS"},
                                    {"lowerCritical", "/THRESHOLD/LOWER_CRITICAL"},
                                    {"lowerNonCritical", "/THRESHOLD/LOWER_NONCRITICAL"},
                                    {"upperNonCritical", "/THRESHOLD/UPPER_NONCRITICAL"},
                                    {"upperCritical", "/THRESHOLD/UPPER_CRITICAL"}};
constexpr std::size_t valueColumn = 3, unitsColumn = 4, firstThreshold = 5;
constexpr char noUnits[] = "Unspecified Units";

/// A threshold's byte in the sensor's units; empty where it has none.
std::string inUnits(Session& session, const ResultMap& nodes, const std::string& path, const std::string& byte)
{
    if (byte.empty() || byte.find_first_not_of("0123456789") != std::string::npos)
        return {};
    const std::string query = "/BMC/SENSOR[" + valueOf(nodes, path + "/NUMBER") + "]/OWNER[" +
                              valueOf(nodes, path + "/OWNER") + "]/LUN[" + valueOf(nodes, path + "/LUN") +
                              "]/INTERPRET_SENSOR_VALUE[" + byte + "]";
    return shortened(valueOf(session.ask(query), query));
}

constexpr Column eventColumns[] = {{"record", "/RAW"},         {"time", "/TIMESTAMP"},   {"severity", "/SEVERITY"},
                                   {"sensor", "/SENSOR_NAME"}, {"type", "/SENSOR_TYPE"}, {"event", "/DESCR"}};

/// A record's id, which are its first two bytes, low one first.
std::string idOf(const std::string& raw)
{
    const std::vector<std::string> bytes = Util::split(raw, " ");
    return bytes.size() < 2 ? std::string() : bytes[1] + bytes[0];
}

void addEvents(Table& table, const ResultMap& nodes, const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        table.rows.push_back(rowOf(nodes, path, eventColumns));
        table.rows.back().front() = idOf(table.rows.back().front());
    }
}

constexpr const char* systemParts[] = {"/SMBIOS/Type0", "/SMBIOS/Type1",     "/SMBIOS/Type2",
                                       "/SMBIOS/Type3", "/BMC/INFO/VERSION", "/BMC/INFO/IPMIVERSION"};
constexpr Column systemRows[] = {{"manufacturer", "/SMBIOS/Type1/Manufacturer"},
                                 {"product", "/SMBIOS/Type1/ProductName"},
                                 {"serial", "/SMBIOS/Type1/SerialNo"},
                                 {"uuid", "/SMBIOS/Type1/UUID"},
                                 {"board", "/SMBIOS/Type2/Product"},
                                 {"boardSerial", "/SMBIOS/Type2/SerialNo"},
                                 {"chassis", "/SMBIOS/Type3/ChassisType"},
                                 {"assetTag", "/SMBIOS/Type3/AssetTagNo"},
                                 {"biosVersion", "/SMBIOS/Type0/BIOSVersion"},
                                 {"biosDate", "/SMBIOS/Type0/BIOSReleaseDate"},
                                 {"controllerFirmware", "/BMC/INFO/VERSION"},
                                 {"ipmi", "/BMC/INFO/IPMIVERSION"}};

constexpr Column processorColumns[] = {{"socket", "/SocketDesignation"}, {"version", "/ProcessorVersion"},
                                       {"cores", "/CoreCount"},          {"threads", "/ThreadCount"},
                                       {"megahertz", "/CurrentSpeed"},   {"status", "/Status"}};

constexpr Column memoryColumns[] = {
    {"slot", "/DeviceLocator"},        {"size", "/Size"},       {"type", "/MemoryType"}, {"megahertz", "/Speed"},
    {"manufacturer", "/Manufacturer"}, {"part", "/PartNumber"}, {"serial", "/SerialNo"}};

/// The members of an array below `path`, "/SMBIOS/ProcessorInfo[1]".
std::vector<std::string> membersOf(Session& session, const std::string& path, const std::string& end)
{
    std::vector<std::string> members = childrenOf(session.ask(path + "/@children"), path);
    std::erase_if(members, [&](const std::string& member) { return !member.starts_with(end + "["); });
    return members;
}

Table tableOf(Session& session, const char* name, std::span<const Column> columns,
              const std::vector<std::string>& members)
{
    Table table{name, namesOf(columns), {}};
    for (const std::string& member : members)
        table.rows.push_back(rowOf(session.ask(member), member, columns));
    return table;
}

Table systemTable(Session& session)
{
    Table table{"system", {"field", "value"}, {}};
    ResultMap nodes;
    for (const char* part : systemParts)
        nodes.merge(session.ask(part));
    for (const Column& row : systemRows)
        table.rows.push_back({row.name, valueOf(nodes, row.leaf)});
    return table;
}

std::vector<std::string> memoryDevices(Session& session)
{
    const std::string arrays = "/SMBIOS/MemoryArray";
    std::vector<std::string> devices;
    for (const std::string& array : membersOf(session, arrays, arrays)) {
        const std::string path = array + "/MemoryDevice";
        const std::vector<std::string> found = membersOf(session, path, path);
        devices.insert(devices.end(), found.begin(), found.end());
    }
    return devices;
}

} // namespace

int runSensors(const Options& options)
{
    Session session(options);
    const std::string path = "/BMC/SENSOR/DISPLAY";
    Table table{"sensors", namesOf(sensorColumns), {}};
    {
        const Progress progress("sensors");
        const ResultMap nodes = session.ask(path);
        for (const std::string& sensor : childrenOf(nodes, path)) {
            std::vector<std::string> row = rowOf(nodes, sensor, sensorColumns);
            row[valueColumn] = shortened(row[valueColumn]);
            if (row[unitsColumn] == noUnits)
                row[unitsColumn].clear();
            for (std::size_t at = firstThreshold; at < row.size(); ++at)
                row[at] = inUnits(session, nodes, sensor, row[at]);
            table.rows.push_back(std::move(row));
        }
    }
    session.answer.tables.push_back(std::move(table));
    return session.finish();
}

int runSelList(const Options& options)
{
    constexpr const char* piece = "64";
    const std::string path = "/BMC/SEL/TRANSLATED", size = "/BMC/SEL/INFO/NUM_LOGENTRIES";
    Session session(options);
    Table table{"events", namesOf(eventColumns), {}};
    {
        Progress progress("event log");
        const std::string total = valueOf(session.ask(size), size);
        SDK::Parameters parameters{{"RECORD_ID", "0000"}, {"RANGE", piece}};
        if (!options.locale.empty())
            parameters["LOCALE"] = options.locale;
        for (bool more = !total.empty() && total != "0"; more;) {
            const ResultMap nodes = session.ask(path, parameters);
            const std::vector<std::string> paths = childrenOf(nodes, path);
            if (paths.empty())
                break;
            addEvents(table, nodes, paths);
            progress.note(std::to_string(table.rows.size()) + " of " + total + " records");
            std::string& next = parameters["RECORD_ID"];
            const std::string asked = next;
            next = valueOf(nodes, paths.back() + "/NEXT_SEL_RECORD_ID");
            more = next != "FFFF" && next != asked;
        }
    }
    session.answer.tables.push_back(std::move(table));
    return session.finish();
}

int runSelInfo(const Options& options)
{
    Session session(options);
    session.answer.nodes.emplace();
    if (auto nodes = session.get("/BMC/SEL/INFO"))
        session.answer.nodes->push_back(std::move(*nodes));
    return session.finish();
}

int runSelClear(const Options& options)
{
    const std::string path = "/BMC/SEL/CLEAR";
    if (!mayGoOn("SET:/" + path, path, options))
        return refused;
    Session session(options);
    session.answer.nodes.emplace();
    const Progress progress(path);
    session.set(path, {});
    return session.finish();
}

int runFru(const Options& options)
{
    Session session(options);
    const std::string id = options.words.empty() ? "0" : options.words.front();
    const std::string path = "/BMC/FRU[" + id + "]/RECORD/DECODED";
    Table table{"fields", {"area", "field", "value"}, {}};
    {
        const Progress progress("inventory of device " + id);
        const ResultMap nodes = session.ask(path);
        for (const std::string& area : childrenOf(nodes, path))
            for (const std::string& field : childrenOf(nodes, area))
                if (const std::string value = valueOf(nodes, field); !value.empty())
                    table.rows.push_back({area.substr(path.size() + 1), field.substr(area.size() + 1), value});
    }
    session.answer.tables.push_back(std::move(table));
    return session.finish();
}

int runInventory(const Options& options)
{
    Session session(options);
    const std::string processors = "/SMBIOS/ProcessorInfo";
    {
        const Progress progress("inventory");
        session.answer.tables = {
            systemTable(session),
            tableOf(session, "processors", processorColumns, membersOf(session, processors, processors)),
            tableOf(session, "memory", memoryColumns, memoryDevices(session))};
    }
    return session.finish();
}

} // namespace hwquery
