#pragma once

#include "client/door/smClient.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/traps/TrapQueue.hpp"
#include "tests/client/ClientFixture.hpp"

using namespace client::events;
using namespace client::traps;

/// Keeps what passes it, and the text of the last trap.
class WatchingHandler : public eventHandler {
public:
    using eventHandler::eventHandler;
    int processEvent() override
    {
        kept.insert(kept.end(), mEventQueue.begin(), mEventQueue.end());
        for (const std::string& text : mShownTexts)
            shown = text;
        return eventHandler::processEvent();
    }
    std::vector<eventData> kept;
    std::string shown;
};

/// A client whose groups are filled, with traps on and an empty event road.
class EventFixture : public ClientFixture {
protected:
    EventFixture()
    {
        emptyTrapQueue();
        resetWatcher();
        gSubagent = &client;
        client.mSystemManagement = std::make_unique<systemManagement>();
        client.mSystemManagement->m_nTrapsEnabled = 1;
        client.mEventHandler = std::make_unique<eventHandler>(client);
        client.mEventHandler->m_nHealthStatus = ENUM_STATUS_OK;
        client.m_bInitComplete = 1;
    }
    ~EventFixture() override { gSubagent = nullptr; }

    static void resetWatcher()
    {
        m_iLastRecordID = lastRecordOfLog;
        sSelEntry.clear();
        sLastSelEntry.clear();
        sDiscription.clear();
        sTimeStamp.clear();
        sSeverity.clear();
        t_SelData = {};
        t_LastSelData = {};
        aSelWrapper = {};
    }

    eventHandler& handler() { return *client.mEventHandler; }
    WatchingHandler& watchEvents()
    {
        auto watching = std::make_unique<WatchingHandler>(client);
        WatchingHandler& handler = *watching;
        client.mEventHandler = std::move(watching);
        return handler;
    }

    /// The queued traps as "group.number text"; emptied.
    static std::vector<std::string> trapsSent()
    {
        std::vector<std::string> sent;
        for (const Trap& trap : takeTraps()) {
            const auto& oid = std::get<std::vector<SubId>>(trap[0].value);
            sent.push_back(std::to_string(oid[12]) + "." + std::to_string(oid[13]) + " " +
                           std::get<std::string>(trap[1].value));
        }
        return sent;
    }

    /// Only their names, each with a space behind it.
    static std::string trapNames()
    {
        std::string names;
        for (const std::string& trap : trapsSent())
            names += trap.substr(0, trap.find(' ') + 1);
        return names;
    }

    /// What the code under test writes to its diagnostics.
    template<class Action>
    static std::string diagnosticsOf(Action action)
    {
        traceWanted = true;
        testing::internal::CaptureStderr();
        action();
        traceWanted = false;
        return testing::internal::GetCapturedStderr();
    }

    smClient client;
};
