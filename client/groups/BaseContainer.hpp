#pragma once

#include "client/groups/Rows.hpp"
#include "client/readings/BoardModel.hpp"
#include "client/status/StatusRules.hpp"
#include "client/status/StatusWords.hpp"
#include "client/status/TroubleLists.hpp"
#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <span>

/// What the client asks of a group. Results are ClientResult numbers; rows count from 0.
class BaseAccessor {
public:
    /// Reads the group's data once. 0, or a number that only gets the group's message traced.
    virtual int init() { return CLIENT_SUCCESS; }
    virtual int getIntInfo(_SMAttribute attribute, int row, long& out) = 0;
    virtual int getIntData(_SMAttribute attribute, int row, long& out) = 0;
    virtual int getStrInfo(_SMAttribute attribute, int row, char*& out) = 0;
    virtual int getStrData(_SMAttribute attribute, int row, char*& out) = 0;
    virtual int setIntData(_SMAttribute attribute, int row, long value) = 0;
    virtual int getCount() = 0;
    virtual int getIndex(int deviceId) = 0;
    virtual int getGroupStatus() = 0;
    virtual char* getDesc(int row) = 0;
    virtual int seedHealthLists(client::status::TroubleLists* handler) = 0;

    // For groups that are filled while the agent serves. The thread that fills them is the only one that changes them;
    // what others look at meanwhile it changes under a lock of theirs.

    /// Puts what init has read in the place of what an earlier object of the group shows.
    virtual void goLive() {}
    /// Reads bounds and figures of the row, if they are still to be read; what others see changes under `guard`. False
    /// if the controller's interface failed.
    virtual bool readUnread(int, std::mutex&) { return true; }
    /// Reads the row's sensor now, if this thread may ask the controller.
    virtual void readNow(int) {}
    /// The row's bounds are to be read again.
    virtual void outdate(int) {}
    /// What the row's sensor says by its last reading; nothing for rows without a sensor.
    virtual std::optional<client::status::DeviceStatus> presentStatus(int) { return std::nullopt; }

    virtual ~BaseAccessor() = default;
};

/// The rows of a group, and what does not depend on the group.
template<class T>
class BaseContainer : public BaseAccessor {
public:
    int getIntInfo(_SMAttribute, int, long&) override { return CLIENT_ERROR_NOSUCHNAME; }
    int getStrInfo(_SMAttribute, int, char*&) override { return CLIENT_ERROR_NOSUCHNAME; }
    int getIntData(_SMAttribute, int, long&) override { return CLIENT_ERROR_NOT_OFFERED; }
    int getStrData(_SMAttribute, int, char*&) override { return CLIENT_ERROR_NOT_OFFERED; }
    int setIntData(_SMAttribute, int, long) override { return CLIENT_ERROR_NOT_OFFERED; }

    int getCount() override { return m_nCount; }

    /// One-based row of the first with that device id, 0 without one.
    int getIndex(int deviceId) override
    {
        const std::span<T> all = rows();
        const auto found = std::ranges::find(all, deviceId, &T::nDeviceId);
        return found == all.end() ? 0 : static_cast<int>(found - all.begin()) + 1;
    }

    /// Greatest status of all rows, 0 at least.
    int getGroupStatus() override
    {
        int worst = 0;
        for (const T& row : rows())
            worst = std::max(worst, row.nStatus);
        return worst;
    }

    char* getDesc(int row) override
    {
        T* const found = getAddress(row);
        return found ? found->stDescription : nullptr;
    }

    /// Hands every row whose status number is not 3 to the handler. The rows' scale has 3 as its warning and the
    /// handler's has it as healthy; the filter stays as it is for all groups alike.
    int seedHealthLists(client::status::TroubleLists* handler) override
    {
        constexpr int statusNotSeeded = 3;
        client::words::trace("seedHealthLists:m_nCount=%d\n", m_nCount);
        int result = CLIENT_SUCCESS;
        if (!handler)
            return result;
        int number = 0;
        for (const T& row : rows()) {
            client::words::trace("seedHealthLists: status[%d]=%d\n", number++, row.nStatus);
            if (row.nStatus != statusNotSeeded)
                result = handler->insertElementByDeviceId(row.nDeviceId, row.nStatus);
        }
        return result;
    }

    /// The row, null if there is none of that number.
    virtual T* getAddress(int row)
    {
        const std::span<T> all = rows();
        return row >= 0 && static_cast<std::size_t>(row) < all.size() ? &all[static_cast<std::size_t>(row)] : nullptr;
    }

    /// Makes `count` zeroed rows; 0, or 2 if memory runs out, and then there are none.
    virtual int allocTable(int count)
    try {
        m_nCount = std::max(count, 0);
        mElementArray = std::make_unique<T[]>(static_cast<std::size_t>(m_nCount));
        return CLIENT_SUCCESS;
    } catch (const std::bad_alloc&) {
        m_nCount = 0;
        return CLIENT_ERROR_MEMORY;
    }

    /// The rules of the status room, with their bounds one by one.
    virtual const char* calStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri, int upperCritical,
                                  int upperNonRec, int upperNonCri)
    {
        return client::status::statusOf(
            reading, {upperNonRec, upperCritical, upperNonCri, lowerNonCri, lowerCritical, lowerNonRec});
    }

    /// Asks for the board's model at each call.
    virtual const char* coolingcalStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri,
                                         int upperCritical, int upperNonRec, int upperNonCri)
    {
        return client::status::fanStatusOf(
            reading, {upperNonRec, upperCritical, upperNonCri, lowerNonCri, lowerCritical, lowerNonRec},
            client::readings::readBoardModel());
    }

    virtual int getStatusEnum(const char* word) { return client::status::rowStatusOf(word); }

    /// Writes the MIB's word for a HEALTH_STATUS; `out` has room for 12 bytes. Always 0.
    virtual int getStatusString(int status, char* out)
    {
        std::strcpy(out, client::status::healthWord(status));
        return CLIENT_SUCCESS;
    }

protected:
    std::span<T> rows()
    {
        return mElementArray ? std::span<T>(mElementArray.get(), static_cast<std::size_t>(m_nCount)) : std::span<T>();
    }

    std::unique_ptr<T[]> mElementArray;
    int m_nCount = 0;
};

namespace client::groups {

/// A stored number or text of a row, by the attribute that shows it.
template<class T>
struct IntField {
    _SMAttribute attribute;
    int T::*member;
};

template<class T>
struct TextField {
    _SMAttribute attribute;
    RowText T::*member;
};

/// Answers a stored number; 9 for an attribute that is not in the table.
template<class T, std::size_t Size>
int answerInt(const IntField<T> (&fields)[Size], const T& row, _SMAttribute attribute, long& out)
{
    const auto* const field = std::ranges::find(fields, attribute, &IntField<T>::attribute);
    if (field == std::end(fields))
        return CLIENT_ERROR_NOSUCHNAME;
    out = row.*field->member;
    return CLIENT_SUCCESS;
}

/// Answers `text` as a block for the caller to free; 2 if memory runs out.
inline int answerText(std::string_view text, char*& out)
{
    out = words::newTextBlock(text);
    return out ? CLIENT_SUCCESS : CLIENT_ERROR_MEMORY;
}

/// Answers a copy of a stored text; 9 for an attribute that is not in the table, 2 if memory runs out.
template<class T, std::size_t Size>
int answerText(const TextField<T> (&fields)[Size], const T& row, _SMAttribute attribute, char*& out)
{
    const auto* const field = std::ranges::find(fields, attribute, &TextField<T>::attribute);
    return field == std::end(fields) ? CLIENT_ERROR_NOSUCHNAME : answerText(row.*field->member, out);
}

} // namespace client::groups
