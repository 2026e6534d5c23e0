#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/ThresholdWrites.hpp"
#include "client/door/Filling.hpp"
#include "client/door/Functions.hpp"
#include "client/door/Standing.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/reader/Reader.hpp"
#include "tests/api-netsnmp/FakeClient.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

FakeClient theClient;
std::atomic<int> eventDrains = 0;

namespace {
int answerNumber(Through through, int entity, int attribute, int row, long& out)
{
    theClient.calls.push_back({through, entity, attribute, row});
    if (theClient.result == 0)
        out = theClient.number;
    return theClient.result;
}

int answerText(Through through, int entity, int attribute, int row, char*& out)
{
    theClient.calls.push_back({through, entity, attribute, row});
    out = theClient.text ? strdup(theClient.text->c_str()) : nullptr;
    return theClient.result;
}
} // namespace

int getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return answerNumber(Through::intInfo, entity, attribute, row, out);
}
int getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return answerNumber(Through::intData, entity, attribute, row, out);
}
int getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return answerText(Through::strInfo, entity, attribute, row, out);
}
int getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return answerText(Through::strData, entity, attribute, row, out);
}
int setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value)
{
    theClient.calls.push_back({Through::setInt, entity, attribute, row});
    theClient.written = value;
    return theClient.result;
}
int getCount(_SMEntity)
{
    return theClient.rows;
}
int isSetEnabled()
{
    return theClient.setsEnabled;
}
int processEvent()
{
    ++eventDrains;
    return 0;
}
int CheckForNewSELEntry()
{
    return 0;
}
void client::reader::Reader::turn() {}

void client::door::followReadings() {}

void client::events::keepMark() {}
std::chrono::milliseconds client::door::pauseBeforeTraps()
{
    return std::chrono::seconds(10);
}
std::vector<client::door::GroupStanding> client::door::standingOfGroups()
{
    return {{"temperatureProbe", 2, {"Inlet\nair"}}};
}
int isTrapEnabled()
{
    return theClient.trapsEnabled;
}
int getHealthStatus()
{
    return 3;
}
int initSMClient()
{
    return 0;
}
void shutdownSMClient() {}

namespace {
struct Object {
    std::span<const oid> place;
    std::span<const variable2> rows;
    bool isTable = place.size() == std::tuple_size_v<mib::TableOid>;
};

/// In the order of their entities.
const std::vector<Object>& objects()
{
#define OBJECT(name)                                                                                                   \
    Object                                                                                                             \
    {                                                                                                                  \
        name##_variables_oid, name##_variables                                                                         \
    }
    static const std::vector<Object> all = {OBJECT(systemManagementSoftwareGroup),
                                            OBJECT(chassisInformationGroup),
                                            OBJECT(processorDeviceTable),
                                            OBJECT(discreteProcessorTable),
                                            OBJECT(powerUnitTable),
                                            OBJECT(powerSupplyTable),
                                            OBJECT(voltageProbeTable),
                                            OBJECT(discreteVoltageProbeTable),
                                            OBJECT(currentProbeTable),
                                            OBJECT(physicalMemoryArrayTable),
                                            OBJECT(physicalMemoryDeviceTable),
                                            OBJECT(discreteMemoryTable),
                                            OBJECT(coolingUnitTable),
                                            OBJECT(coolingDeviceTable),
                                            OBJECT(discreteCoolingDeviceTable),
                                            OBJECT(temperatureProbeTable),
                                            OBJECT(driveSlotPresenceSensorTable),
                                            OBJECT(miscellaneousSensorTable)};
#undef OBJECT
    return all;
}

std::vector<oid> columnName(const Object& object, const variable2& row)
{
    std::vector<oid> name(object.place.begin(), object.place.end());
    name.insert(name.end(), row.name, row.name + row.namelen);
    return name;
}

struct Answer {
    u_char* value;
    std::size_t length = 99;
    std::vector<oid> name;
    WriteMethod* write = nullptr;

    std::string text() const { return {reinterpret_cast<const char*>(value), length}; }
    long number() const { return *reinterpret_cast<const long*>(value); }
};

/// Asks as the agent library does: the full column name in `vp`, a name buffer of the greatest length.
Answer ask(const std::vector<oid>& column, const variable2& row, std::vector<oid> name, bool exact)
{
    variable vp{};
    vp.magic = row.magic;
    vp.type = row.type;
    vp.namelen = static_cast<u_char>(column.size());
    std::copy(column.begin(), column.end(), vp.name);
    std::size_t nameLength = name.size();
    name.resize(MAX_OID_LEN);
    Answer answer{};
    answer.value = row.findVar(&vp, name.data(), &nameLength, exact, &answer.length, &answer.write);
    name.resize(nameLength);
    answer.name = name;
    return answer;
}

Answer getInstance(const Object& object, const variable2& row, oid instance)
{
    const auto column = columnName(object, row);
    auto name = column;
    name.push_back(instance);
    return ask(column, row, name, true);
}

const Object& objectOf(_SMEntity entity)
{
    return objects()[static_cast<std::size_t>(entity - 1)];
}

class MibHandlers : public testing::Test {
protected:
    void SetUp() override { theClient = {}; }
};
} // namespace

TEST_F(MibHandlers, AllColumnsInOrderAskForTheAttributesInTheirRunningOrder)
{
    std::vector<int> attributes;
    for (const Object& object : objects())
        for (const variable2& row : object.rows) {
            theClient.calls.clear();
            const Answer answer = getInstance(object, row, object.isTable ? 2 : 0);
            bool isText = false;
            for (const Call& call : theClient.calls) {
                EXPECT_EQ(call.entity, &object - objects().data() + SMINFO);
                EXPECT_EQ(call.row, object.isTable ? 1 : 0);
                attributes.push_back(call.attribute);
                isText = call.through == Through::strInfo || call.through == Through::strData;
            }
            EXPECT_EQ(row.type, isText ? ASN_OCTET_STR : ASN_INTEGER);
            EXPECT_EQ(answer.length, isText ? theClient.text->size() : sizeof(long));
            EXPECT_EQ(row.acl == NETSNMP_OLDAPI_RWRITE, answer.write != nullptr);
        }
    std::vector<int> expected(MISCELLANEOUS_SENSOR_STATUS - SMINFO_HEALTHSTATUS + 1);
    std::iota(expected.begin(), expected.end(), static_cast<int>(SMINFO_HEALTHSTATUS));
    EXPECT_EQ(attributes, expected);
}

TEST_F(MibHandlers, NextRowIsTheOneAfterTheNameAndARowThatDoesNotExistIsMissed)
{
    const Object& object = objectOf(TEMPERATURE);
    const auto column = columnName(object, object.rows[1]);
    const auto with = [&](std::vector<oid> tail) {
        auto name = column;
        name.insert(name.end(), tail.begin(), tail.end());
        return name;
    };
    const std::pair<std::vector<oid>, std::optional<oid>> cases[] = {
        {{1, 3}, 1},          {column, 1},     {with({0}), 1},           {with({1}), 2},
        {with({2, 9, 9}), 3}, {with({3}), {}}, {with({0xffffffff}), {}}, {with(std::vector<oid>(113, 0)), 1}};
    for (const auto& [asked, found] : cases) {
        const Answer answer = ask(column, object.rows[1], asked, false);
        SCOPED_TRACE(testing::PrintToString(asked));
        EXPECT_EQ(answer.value != nullptr, found.has_value());
        if (found) {
            EXPECT_EQ(answer.name, with({*found}));
        }
    }
    for (const oid instance : {0ul, 4ul, 0x80000000UL, 0xffffffffUL})
        EXPECT_EQ(getInstance(object, object.rows[1], instance).value, nullptr) << instance;
    auto tooLong = column;
    tooLong.resize(MAX_OID_LEN, 1);
    EXPECT_EQ(ask(column, object.rows[1], tooLong, true).value, nullptr);
    EXPECT_EQ(ask(column, object.rows[1], column, true).value, nullptr);
    theClient.rows = 0;
    EXPECT_EQ(ask(column, object.rows[1], column, false).value, nullptr);
}

TEST_F(MibHandlers, WhatCannotBeReadIsZeroOrEmptyAndATextIsCutAtTheBuffer)
{
    const Object& object = objectOf(DRIVESLOT);
    getInstance(object, object.rows[1], 1);
    getInstance(object, object.rows[2], 1);
    theClient.result = CLIENT_ERROR_NOSUCHNAME;
    EXPECT_EQ(getInstance(object, object.rows[1], 1).number(), 0);
    EXPECT_EQ(getInstance(object, object.rows[2], 1).text(), "");
    theClient.result = 0;
    theClient.text.reset();
    EXPECT_EQ(getInstance(object, object.rows[3], 1).text(), "");
    theClient.text = std::string(3000, 'x');
    const Answer answer = getInstance(object, object.rows[2], 1);
    EXPECT_EQ(answer.text(), std::string(2559, 'x'));
    EXPECT_EQ(answer.value[2559], '\0');
}

namespace {
/// One phase of a SET of `value` on row 2 of the column.
int setPhase(WriteMethod* write, int phase, long value = 77, u_char type = ASN_INTEGER, std::size_t length = 8,
             oid row = 2)
{
    oid name[] = {1, 3, 6, row};
    static long place;
    place = value;
    return write(phase, reinterpret_cast<u_char*>(&place), type, length, nullptr, name, 4);
}
} // namespace

TEST_F(MibHandlers, SetWritesTheAttributeThatTheColumnReadsUnlessSetsAreDisabled)
{
    int columns = 0;
    for (const Object& object : objects())
        for (const variable2& row : object.rows) {
            if (row.acl != NETSNMP_OLDAPI_RWRITE)
                continue;
            ++columns;
            theClient = {};
            WriteMethod* write = getInstance(object, row, 2).write;
            const Call read = theClient.calls.back();
            for (int phase = SNMP_MSG_INTERNAL_SET_RESERVE1; phase <= SNMP_MSG_INTERNAL_SET_UNDO; ++phase)
                EXPECT_EQ(setPhase(write, phase, 1, ASN_OCTET_STR, 100), SNMP_ERR_NOTWRITABLE);
            EXPECT_EQ(theClient.calls.size(), 1U);
            theClient.setsEnabled = 1;
            for (int phase = SNMP_MSG_INTERNAL_SET_RESERVE1; phase <= SNMP_MSG_INTERNAL_SET_COMMIT; ++phase)
                EXPECT_EQ(setPhase(write, phase), SNMP_ERR_NOERROR);
            EXPECT_EQ(theClient.calls.back(), (Call{Through::setInt, read.entity, read.attribute, 1}));
            EXPECT_EQ(theClient.written, 77);
        }
    EXPECT_EQ(columns, 24);
}

TEST_F(MibHandlers, UndoWritesTheValueReadBeforeAndBadValuesAndFailuresHaveTheirErrors)
{
    theClient.setsEnabled = 1;
    theClient.number = -5;
    WriteMethod* write = write_voltageLowerNonRecoverableThreshold;
    for (int phase = SNMP_MSG_INTERNAL_SET_RESERVE1; phase <= SNMP_MSG_INTERNAL_SET_ACTION; ++phase)
        EXPECT_EQ(setPhase(write, phase), SNMP_ERR_NOERROR);
    theClient.result = CLIENT_ERROR_NO_ROW;
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_UNDO), SNMP_ERR_NOERROR);
    EXPECT_EQ(theClient.written, -5);
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_RESERVE2), SNMP_ERR_INCONSISTENTVALUE);
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_ACTION), SNMP_ERR_INCONSISTENTVALUE);
    theClient = {};
    theClient.setsEnabled = 1;
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_FREE), SNMP_ERR_NOERROR);
    testing::internal::CaptureStderr();
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_RESERVE1, 1, ASN_OCTET_STR), SNMP_ERR_WRONGTYPE);
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_RESERVE1, 1, ASN_INTEGER, 9), SNMP_ERR_WRONGLENGTH);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "write to voltageLowerNonRecoverableThreshold not ASN_INTEGER\n"
                                                      "write to voltageLowerNonRecoverableThreshold: bad length\n");
    EXPECT_TRUE(theClient.calls.empty());
    EXPECT_EQ(setPhase(write, SNMP_MSG_INTERNAL_SET_RESERVE2, 1, ASN_INTEGER, 8, 0xffffffff), SNMP_ERR_NOERROR);
    EXPECT_EQ(theClient.calls.back().row, -1);
}
