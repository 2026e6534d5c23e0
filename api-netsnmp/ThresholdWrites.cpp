#include "api-netsnmp/ThresholdWrites.hpp"

#include "client/door/Functions.hpp"
#include "client/words/Trace.hpp"

#include <cstring>
#include <limits>

namespace mib {

namespace {
/// Zero-based row of an instance name; what no table can have becomes -1, which every group refuses.
int rowOf(const WriteRequest& request)
{
    const oid last = request.nameLength ? request.name[request.nameLength - 1] : 0;
    return last <= std::numeric_limits<int>::max() ? static_cast<int>(last) - 1 : -1;
}

int checkValue(const ThresholdColumn& column, const WriteRequest& request)
{
    if (request.type != ASN_INTEGER) {
        client::words::trace("write to %s not ASN_INTEGER\n", column.name);
        return SNMP_ERR_WRONGTYPE;
    }
    if (request.length > sizeof(long)) {
        client::words::trace("write to %s: bad length\n", column.name);
        return SNMP_ERR_WRONGLENGTH;
    }
    return SNMP_ERR_NOERROR;
}

int rememberOldValue(const ThresholdColumn& column, ThresholdWrite& write, const WriteRequest& request)
{
    write.place = request.value;
    const int result = getIntData(column.entity, column.attribute, rowOf(request), write.oldValue);
    return result == CLIENT_SUCCESS ? SNMP_ERR_NOERROR : SNMP_ERR_INCONSISTENTVALUE;
}

int writeValue(const ThresholdColumn& column, const ThresholdWrite& write, const WriteRequest& request)
{
    long value = 0;
    if (write.place)
        std::memcpy(&value, write.place, sizeof(value));
    const int result = setIntData(column.entity, column.attribute, rowOf(request), value);
    return result == CLIENT_SUCCESS ? SNMP_ERR_NOERROR : SNMP_ERR_INCONSISTENTVALUE;
}
} // namespace

int answerWrite(const ThresholdColumn& column, ThresholdWrite& write, const WriteRequest& request)
{
    if (isSetEnabled() == 0)
        return SNMP_ERR_NOTWRITABLE;
    switch (request.action) {
    case RESERVE1:
        return checkValue(column, request);
    case RESERVE2:
        return rememberOldValue(column, write, request);
    case ACTION:
        return writeValue(column, write, request);
    case UNDO:
        setIntData(column.entity, column.attribute, rowOf(request), write.oldValue);
        break;
    }
    return SNMP_ERR_NOERROR;
}

} // namespace mib
