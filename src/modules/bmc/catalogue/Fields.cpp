#include "modules/bmc/catalogue/Fields.hpp"

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

#include <algorithm>
#include <utility>

namespace Module::BMCConfig {

namespace {

std::string getKey(const std::string& path)
{
    return "GET://BMC/" + path;
}

std::string setKey(const std::string& path)
{
    return "SET://BMC/" + path;
}

std::string pathOf(const Record& record, const Field& field)
{
    return std::string(record.path) + "/" + field.name;
}

std::string symbolOf(const Field& field)
{
    const std::string name = field.parameter ? field.parameter : field.name;
    return "$" + name.substr(name.rfind('/') + 1);
}

std::string lastToken(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

bool fills(const Record& record, const Field& field)
{
    return field.count == record.size && field.mask == wholeByte;
}

/// The reply's field numbers of `count` bytes from `first` on; of a number the high byte comes first.
std::string places(unsigned first, unsigned count, bool highFirst)
{
    std::string text;
    for (unsigned at = 0; at < count; ++at)
        text += (at ? " " : "") + std::to_string(highFirst ? first + count - 1 - at : first + at);
    return text;
}

} // namespace

namespace steps {

Steps prepare(const Record& record)
{
    Steps all = record.assertion ? Template(getKey(record.assertion)) : Steps{};
    for (const std::string& text : Util::split(record.subscripts, ",")) {
        const std::vector<std::string> words = Util::split(text, " ");
        all = script({std::move(all), assertSubscript(words.at(0), static_cast<unsigned>(std::stoul(words.at(1))),
                                                      static_cast<unsigned>(std::stoul(words.at(2))))});
    }
    for (const std::string& text : Util::split(record.given, ",")) {
        const std::vector<std::string> words = Util::split(text, " ");
        all = script({std::move(all),
                      words.size() > 3 ? Map(words[1], words[2], words[3], words[0]) : Copy(words.at(1), words[0])});
    }
    return all;
}

namespace {

/// Ends the script with "NOT_SUPPORTED" after an answer that says so.
Steps returnIfAbsent(const Record& record)
{
    if (!record.absentCode)
        return {};
    return script({
        If(std::string("$BMC_COMPLETION_CODE == ") + record.absentCode, {returnText("NOT_SUPPORTED")}),
        answerIfAbsent("NOT_SUPPORTED"),
    });
}

Steps pick(const Record& record, const std::string& filter, const char* error)
{
    if (!record.mayEndEarly)
        return readField(filter, "$FIELD", error);
    return script({
        IPMIResponse("$BUFFER", filter, "$FIELD"),
        If("$FIELD == ERROR", {returnText("NOT_SUPPORTED")}),
    });
}

/// Runs `other` if $BUFFER holds a record of another layout.
Steps checkKind(const Record& record, const char* error, const Steps& other)
{
    if (!record.kind)
        return {};
    const std::vector<std::string> words = Util::split(record.kind, " ");
    return script({
        readField(getKey(record.get) + "/KIND", "$KIND", error),
        Map("$KIND", "MASK", words.at(1), "$KIND"),
        If("$KIND != " + words.at(2), {other}),
    });
}

Script readScript(const Record& record, const Field& field)
{
    return script({
        prepare(record),
        send(getKey(record.get)),
        If("$COMPLETION_CODE == 0",
           {checkKind(record, field.getError, returnText("NONE")),
            pick(record, getKey(pathOf(record, field)), field.getError), decode(field), Return("$RESULT")}),
        returnIfAbsent(record),
        Throw(field.getError),
    });
}

/// Records of several sizes may share a packet.
std::string recordFilter(const Record& record)
{
    return setKey(record.set) + "/" + std::to_string(record.size);
}

/// The record as the BMC has it, in $RECORD.
Steps readRecord(const Record& record, const char* error)
{
    return script({
        send(getKey(record.get)),
        If("$COMPLETION_CODE != 0", {Throw(error)}),
        checkKind(record, error, Throw(error)),
        readField(recordFilter(record), "$RECORD", error),
    });
}

/// The field's bytes as they are to be, in $BYTES: its value among the bits beside it.
Steps blend(const Field& field)
{
    const std::string symbol = symbolOf(field);
    const auto hex = [](unsigned bits) { return ipmi::hexByte(static_cast<std::uint8_t>(bits)); };
    if (field.mask == wholeByte)
        return Copy(symbol, "$BYTES");
    return script({
        Read("$RECORD", std::to_string(field.byte), "$BYTES"),
        Map("$BYTES", "MASK", hex(~field.mask), "$BYTES"),
        Map("$BYTES", "BIT_OR", symbol, "$BYTES"),
        field.marks ? Map("$BYTES", "BIT_OR", hex(field.marks), "$BYTES") : Steps{},
    });
}

/// Puts the field's bytes into $RECORD. A list is taken apart and put together as text.
Steps replace(const Field& field)
{
    const std::string from = std::to_string(field.byte), to = std::to_string(field.byte + field.count);
    return script({
        blend(field),
        Read("$RECORD", "0-" + from, "$BEFORE"),
        Read("$RECORD", to + "-SIZE", "$BEHIND"),
        Join("$BEFORE", ":SPACE", "$BEFORE"),
        Join("$BYTES", ":SPACE", "$BYTES"),
        Join("$BEHIND", ":SPACE", "$BEHIND"),
        FormatString("$BEFORE", " ", "$BYTES", " ", "$BEHIND", "$RECORD"),
        Split("$RECORD", ":SPACE", "$RECORD"),
    });
}

Script writeScript(const Stores& stores, const Record& record, const Field& field)
{
    const std::vector<std::string>& data = stores.packets.at(setKey(record.set)).values;
    Steps begin = script({prepare(record), encode(symbolOf(field), field)});
    if (fills(record, field))
        return script({
            std::move(begin),
            std::ranges::find(data, "$RECORD") == data.end() ? Steps{} : Copy(symbolOf(field), "$RECORD"),
            sendOrThrow(setKey(record.set), field.setError),
        });
    return script({
        std::move(begin),
        readRecord(record, field.setError),
        replace(field),
        record.finish ? record.finish() : Steps{},
        sendOrThrow(setKey(record.set), field.setError),
    });
}

void addFilterOnce(Stores& stores, const std::string& key, const std::string& fields)
{
    if (!stores.filters.contains(key))
        addFilter(stores, key, fields);
}

/// What a write sends back of a record that it has read.
void addRecordFilter(Stores& stores, const Record& record)
{
    addFilterOnce(stores, recordFilter(record), places(record.first, record.size, false));
}

void addKindFilter(Stores& stores, const Record& record)
{
    if (record.kind)
        addFilterOnce(stores, getKey(record.get) + "/KIND",
                      std::to_string(record.first + std::stoul(Util::split(record.kind, " ").at(0))));
}

} // namespace

} // namespace steps

void addFields(Stores& stores, const Record& record, std::span<const Field> fields)
{
    steps::addKindFilter(stores, record);
    for (const Field& field : fields) {
        const std::string path = pathOf(record, field);
        if (field.access != Access::write) {
            addFilter(stores, getKey(path),
                      places(record.first + field.byte, field.count, field.codec == Codec::number));
            addTemplate(stores, getKey(path), steps::readScript(record, field));
        }
        if (field.access == Access::read || !record.set)
            continue;
        if (!fills(record, field))
            steps::addRecordFilter(stores, record);
        addTemplate(stores, setKey(path), steps::writeScript(stores, record, field));
    }
}

void addFieldBranch(Stores& stores, const Record& record, std::span<const Field> fields)
{
    std::string children;
    for (const Field& field : fields)
        if (field.access != Access::write)
            children += std::string(field.name) + " ";
    const std::string key = getKey(record.path);
    const BranchRow branch{key.c_str(), children.c_str()};
    addBranches(stores, {&branch, 1});
    addFields(stores, record, fields);
}

void addUpdate(Stores& stores, const Record& record, std::span<const Field> fields, const char* error)
{
    using namespace steps;
    std::vector<std::string> all;
    Steps encoded, replaced;
    for (const Field& field : fields) {
        const std::string symbol = symbolOf(field);
        all.push_back(symbol);
        encoded =
            script({std::move(encoded), String_Length(symbol, "$LENGTH"), If("$LENGTH > 0", {encode(symbol, field)})});
        replaced = script({std::move(replaced), String_Length(symbol, "$LENGTH"), If("$LENGTH > 0", {replace(field)})});
    }
    all.emplace_back("$GIVEN");
    addRecordFilter(stores, record);
    addTemplate(stores, setKey(record.path),
                script({prepare(record), makeStep(Opcode::FormatString, all), require("$GIVEN"), encoded,
                        readRecord(record, error), replaced, sendOrThrow(setKey(record.set), error)}));
}

void addParameterPackets(Stores& stores, const ParameterFamily& family, const char* path, const char* selector,
                         const char* set)
{
    const std::string head = std::string(family.subject) + " " + selector;
    addPacket(stores, getKey(path), family.getCommand, head + " 00 00");
    if (set)
        addPacket(stores, setKey(path), family.setCommand, head + " " + set);
}

void addParameters(Stores& stores, const ParameterFamily& family, std::span<const Parameter> parameters)
{
    for (const Parameter& row : parameters) {
        const std::string packet = std::string(family.path) + "/" + (row.packet ? row.packet : row.name);
        const std::string value = std::string("$") + row.name;
        addParameterPackets(stores, family, packet.c_str(), row.selector, row.setError ? value.c_str() : nullptr);
        const Record record{.path = family.path,
                            .get = packet.c_str(),
                            .size = row.size,
                            .set = row.setError ? packet.c_str() : nullptr,
                            .first = 2,
                            .subscripts = family.subscripts,
                            .assertion = family.assertion,
                            .absentCode = "128"};
        const Field field{.name = row.name,
                          .count = row.size,
                          .codec = row.codec,
                          .table = row.table,
                          .low = row.low,
                          .high = row.high,
                          .getError = row.getError,
                          .setError = row.setError};
        addFields(stores, record, {&field, 1});
    }
}

namespace steps {

Steps readProfile(const std::string& parent, const std::string& names)
{
    Steps read = Copy(":NULL", "$ITEMS");
    for (const std::string& name : Util::split(names, " "))
        read = script({std::move(read), Template_with_Catch(getKey(parent + "/" + name)),
                       If("$RESULT != FAILURE AND $RESULT != NOT_SUPPORTED",
                          {FormatString(lastToken(name) + "=", "$RESULT", "$ITEM"), Append("$ITEM", "$ITEMS")})});
    return script({read, Size("$ITEMS", "$SIZE"), If("$SIZE == 0", {Throw("IPMI_RESPONSE_ERROR")}),
                   Join("$ITEMS", ";", "$RESULT")});
}

Steps writeProfile(const std::string& parent, const std::string& names)
{
    std::vector<std::string> all;
    Steps write;
    for (const std::string& name : Util::split(names, " ")) {
        const std::string symbol = "$" + lastToken(name);
        all.push_back(symbol);
        write = script(
            {write, String_Length(symbol, "$LENGTH"), If("$LENGTH > 0", {Template(setKey(parent + "/" + name))})});
    }
    all.emplace_back("$GIVEN");
    return script({makeStep(Opcode::FormatString, all), require("$GIVEN"), write, returnText("SUCCESS")});
}

} // namespace steps

void addConfigure(Stores& stores, const char* parent, const char* path, const char* names)
{
    addTemplate(stores, setKey(path), steps::writeProfile(parent, names));
}

void addProfile(Stores& stores, const char* parent, const char* path, const char* names)
{
    addTemplate(stores, getKey(path), steps::script({steps::readProfile(parent, names), steps::Return("$RESULT")}));
    addConfigure(stores, parent, path, names);
}

} // namespace Module::BMCConfig
