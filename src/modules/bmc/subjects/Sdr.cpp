#include "modules/bmc/subjects/Sdr.hpp"

#include "common/Logger.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/subjects/Cache.hpp"

#include <algorithm>
#include <string_view>

namespace Module::BMCConfig {

namespace {

using Operation = void (Sdr::*)(const std::string& query, SymbolMap& result);

/// Queries that speak of the repository and not of its records: the template alone answers.
constexpr std::string_view templateQueries[] = {
    "GET://BMC/SDR/INFO",
    "GET://BMC/SDR/INFO/NUMBER",
    "GET://BMC/SDR/INFO/OP",
    "SET://BMC/SDR/CLEAR",
    "GET://BMC/SDR/RESERVE",
    "GET://BMC/SDR/INFO/RECENT_ADD_TIME",
    "GET://BMC/SDR/INFO/RECENT_ERASE_TIME",
    "GET://BMC/SDR/INFO/FREESPACE",
    "GET://BMC/SDR/INFO/VERSION",
    "SET://BMC/SDR/ADD_PARTIAL",
};

struct ListQuery {
    std::string_view query;
    Operation answer;
};

constexpr ListQuery listQueries[] = {
    {"GET://BMC/SDR/SENSOR_TYPE[]", &Sdr::sensor_type},
    {"GET://BMC/SDR/RECORD_TYPE[]", &Sdr::record_type},
    {"GET://BMC/SDR/ENTITY_ID[]", &Sdr::entity_id},
    {"GET://BMC/SDR/ENTITY_ID[]/ENTITY_INSTANCE[]", &Sdr::entity_id_instance},
    {"GET://BMC/SDR/SENSOR_NUMBER[]", &Sdr::sensor_number},
    {"GET://BMC/SDR/SENSOR_NUMBER[]/OWNER[]/LUN[]", &Sdr::sensor_number_owner},
};

constexpr std::string_view decodedQuery = "GET://BMC/SDR[]/DECODED";

struct DecodedField {
    std::string_view query;
    const char* (*filter)(const SdrRecord& record); ///< the filter that names the field's place, null without one
};

template<const char* Name>
const char* ofSensor(const SdrRecord& record)
{
    return record.view().isSensor() ? Name : nullptr;
}

const char* sensorTypeFilter(const SdrRecord& record)
{
    if (!record.view().isSensor())
        return nullptr;
    return record.view().type() == ipmi::sdrtype::eventOnly ? "GET://BMC/SENSOR_TYPE_INDEX_RECORD_THREE"
                                                            : "GET://BMC/SENSOR_TYPE_INDEX";
}

constexpr char ownerFilter[] = "GET://BMC/SENSOR_OWNER", lunFilter[] = "GET://BMC/SENSOR_LUN",
               numberFilter[] = "GET://BMC/SENSOR_NUMBER_INDEX";

constexpr DecodedField decodedFields[] = {
    {"GET://BMC/SDR[]/DECODED/RECORD_TYPE", [](const SdrRecord&) { return "GET://BMC/SENSOR_TYPE_RECORD"; }},
    {"GET://BMC/SDR[]/DECODED/OWNER", ofSensor<ownerFilter>},
    {"GET://BMC/SDR[]/DECODED/LUN", ofSensor<lunFilter>},
    {"GET://BMC/SDR[]/DECODED/SENSOR_NUMBER", ofSensor<numberFilter>},
    {"GET://BMC/SDR[]/DECODED/SENSOR_TYPE", sensorTypeFilter},
};

/// Whether `record` is a sensor's and has `value` at `place`; records of other kinds have other fields there.
bool hasByte(const SdrRecord& record, std::size_t place, int value)
{
    const ipmi::SdrView view = record.view();
    return view.isSensor() && view.has(place) && view.at(place) == value;
}

int hexToInt(const std::string& text)
{
    return static_cast<int>(Util::string_to_long(text, 16));
}

} // namespace

Sdr::Sdr(Interpreter* interpreter_, _BMC_EXEC exec_) : interpreter(interpreter_), exec(exec_) {}

void Sdr::process(const std::string& query, SymbolMap& result)
{
    handle(query, result);
}

void Sdr::router(const std::string& query, SymbolMap& result)
{
    interpreter->extract_and_inject(query);
    process(query, result);
}

void Sdr::handle(const std::string& query, SymbolMap& result)
{
    const std::string plain = Interpreter::handleIndexes(query);
    if (std::ranges::find(templateQueries, plain) != std::end(templateQueries))
        return run(query, result);

    const std::shared_ptr<const SdrRepository> repository = fill();
    if (const auto list = std::ranges::find(listQueries, plain, &ListQuery::query); list != std::end(listQueries))
        return (this->*list->answer)(query, result);
    if (plain.find(decodedQuery) != std::string::npos)
        return decode(query, result);
    answerCached(query, plain, repository.get(), result);
}

void Sdr::answerCached(const std::string& query, const std::string& plain, const SdrRepository* repository,
                       SymbolMap& result)
{
    const std::size_t count = repository ? repository->records.size() : 0;
    if (plain == "GET://BMC/SDR[]") {
        const int number = parameter("SDR_NUMBER");
        const SdrRecord* record = repository && number > 0 ? repository->record(number) : nullptr;
        result[query] = record ? Symbol(record->text) : Symbol();
    } else if (plain == sdrCountKey) {
        result[query] = Symbol(std::to_string(count));
    } else if (plain == sdrListKey) {
        std::vector<std::string> names;
        for (std::size_t number = 1; number <= count; ++number)
            names.push_back(sdrPath(number));
        answerList(query, std::move(names), result);
    } else {
        run(query, result);
    }
}

void Sdr::run(const std::string& query, SymbolMap& result, const std::map<std::string, std::string>& parameters)
{
    for (const auto& [name, value] : parameters)
        interpreter->symbolTable()[$(name)] = value;
    interpreter->run(result, query);
}

void Sdr::ipmi(const std::string& query, std::vector<std::string>& items)
{
    SymbolMap local;
    run(query, local);
    items = Util::split(local[query].text(), " ");
}

void Sdr::filter(const std::string& record, const std::string& filterName, std::vector<std::string>& out)
{
    applyFilter(steps::Filter("$RECORD", filterName, "$RESULT").front(), "GET://BMC/TMP/FILTER", record, out);
}

void Sdr::exclude(const std::string& record, const std::string& filterName, std::vector<std::string>& out)
{
    applyFilter(steps::Exclude("$RECORD", filterName, "$RESULT").front(), "GET://BMC/TMP/EXCLUDE", record, out);
}

void Sdr::applyFilter(const Function& step, const std::string& key, const std::string& record,
                      std::vector<std::string>& out)
{
    using namespace steps;
    const bool wantsList = step.opcode == static_cast<std::uint32_t>(Opcode::Exclude);
    const Steps cut = wantsList ? Split("$RECORD", ":SPACE", "$RECORD") : Steps{};
    interpreter->symbolTable()["$RECORD"] = record;
    SymbolMap local;
    interpreter->run(local, key, std::make_shared<const Script>(script({cut, Steps{step}})));
    out.insert(out.end(), local[key].values.begin(), local[key].values.end());
}

void Sdr::decode(const std::string& query, SymbolMap& result)
{
    const std::string plain = Interpreter::handleIndexes(query);
    if (plain == decodedQuery) {
        result[query] = interpreter->prepend(
            query, Symbol(NODE_NONLEAF, {"RECORD_TYPE", "OWNER", "LUN", "SENSOR_NUMBER", "SENSOR_TYPE"}));
        return;
    }
    const auto field = std::ranges::find(decodedFields, plain, &DecodedField::query);
    if (field == std::end(decodedFields))
        return run(query, result);

    const auto repository = fill();
    const int number = parameter("SDR_NUMBER");
    const SdrRecord* record = repository && number > 0 ? repository->record(number) : nullptr;
    const char* place = record ? field->filter(*record) : nullptr;
    Items items;
    if (place)
        filter(record->text, place, items);
    const bool there = !items.empty() && items.front() != "ERROR"; // the filter's word for a record that is too short
    result[query] = there ? Symbol(std::to_string(hexToInt(items.front()))) : Symbol();
}

void Sdr::version(const std::string& query, SymbolMap& result)
{
    std::vector<std::string> versions;
    const auto repository = fill();
    const std::size_t count = repository ? std::min(repository->records.size(), walkLimit) : 0;
    for (std::size_t number = 1; number <= count; ++number) {
        Items head;
        filter(repository->record(number)->text, "GET://BMC/SDR_RECORD", head);
        if (head.size() > ipmi::sdr::version)
            versions.push_back(head[ipmi::sdr::version]);
    }
    answerList(query, std::move(versions), result);
}

void Sdr::record_type(const std::string& query, SymbolMap& result)
{
    const int type = parameter("RECORD_TYPE_NUMBER");
    answerList(query, find([=](const SdrRecord& record) { return record.view().type() == type; }), result);
}

void Sdr::sensor_type(const std::string& query, SymbolMap& result)
{
    const int type = parameter("SENSOR_TYPE_NUMBER");
    answerList(query, find([=](const SdrRecord& record) { return record.view().sensorType() == type; }), result);
}

void Sdr::entity_id(const std::string& query, SymbolMap& result)
{
    const int entity = parameter("ENTITY_ID_NUMBER");
    answerList(query, find([=](const SdrRecord& record) { return hasByte(record, ipmi::sdr::entityId, entity); }),
               result);
}

void Sdr::entity_id_instance(const std::string& query, SymbolMap& result)
{
    const int entity = parameter("ENTITY_ID_NUMBER");
    const int instance = parameter("ENTITY_INSTANCE_NUMBER");
    const auto matches = [=](const SdrRecord& record) {
        return hasByte(record, ipmi::sdr::entityId, entity) && hasByte(record, ipmi::sdr::entityInstance, instance);
    };
    answerList(query, find(matches), result);
}

void Sdr::sensor_number(const std::string& query, SymbolMap& result)
{
    constexpr std::uint8_t bmcLun = 0;
    const int sensor = parameter("SENSOR_NUMBER_NUMBER");
    const auto hasNumber = [=](const SdrRecord& record) { return hasByte(record, ipmi::sdr::number, sensor); };
    std::vector<std::string> names = find(hasNumber);
    if (names.size() > 1) {
        const std::vector<std::string> own = find([=](const SdrRecord& record) {
            return hasNumber(record) && record.view().owner() == ipmi::address::bmc &&
                   record.view().lunByte() == bmcLun;
        });
        names.assign(1, own.empty() ? names.front() : own.front());
    }
    answerList(query, std::move(names), result);
}

void Sdr::sensor_number_owner(const std::string& query, SymbolMap& result)
{
    const int sensor = parameter("SENSOR_NUMBER_NUMBER");
    const int owner = parameter("OWNER_NUMBER");
    const int lun = parameter("LUN_NUMBER");
    const auto matches = [=](const SdrRecord& record) {
        return hasByte(record, ipmi::sdr::number, sensor) && record.view().owner() == owner &&
               record.view().lunByte() == lun;
    };
    answerList(query, find(matches), result);
}

int Sdr::parameter(const std::string& name)
{
    constexpr int noValue = -2; // not -1, which a record without the field has
    const std::string text = interpreter->getText($(name));
    return text.empty() ? noValue : hexToInt(text);
}

std::vector<std::string> Sdr::find(const Condition& condition)
{
    std::vector<std::string> names;
    const auto repository = fill();
    const std::size_t count = repository ? std::min(repository->records.size(), walkLimit) : 0;
    for (std::size_t number = 1; number <= count; ++number)
        if (condition(*repository->record(number)))
            names.push_back(sdrPath(number));
    return names;
}

void Sdr::answerList(const std::string& query, std::vector<std::string> names, SymbolMap& result)
{
    const Symbol list(NODE_NONLEAF, std::move(names));
    result[query] = list;
    interpreter->symbolTable()["$RESULT"] = list;
    interpreter->symbolTable().mark_as_stinking_garbage("$RESULT");
}

} // namespace Module::BMCConfig
