#pragma once

#include "common/ResultStatus.hpp"
#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "platform/PlatformImpl.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/ModelBmc.hpp"
#include "transport/TransportState.hpp"

#include <gtest/gtest.h>

#include <memory>

/// An interpreter over stores of the test's own, a BMC that refuses every command until told otherwise, and a clock
/// that only sleeping moves.
class EngineTest : public testing::Test {
protected:
    using Script = Module::BMCConfig::Script;
    using Symbol = Module::BMCConfig::Symbol;

    EngineTest()
    {
        transport::resetTransportForTests();
        bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        Platform::PlatformImpl::CreateInstance()->Reset();
        Platform::PlatformImpl::CreateInstance()->InitPlatform();
        bmc.requests.clear();
    }
    ~EngineTest() override
    {
        Platform::PlatformImpl::CreateInstance()->Reset();
        transport::resetTransportForTests();
    }

    void addScript(const std::string& key, Script script)
    {
        stores->templates[key] = std::make_shared<const Script>(std::move(script));
    }

    /// The interpreter over what the test has put into `stores` by then.
    Module::BMCConfig::Interpreter& machine()
    {
        if (!interpreter) {
            table = Module::BMCConfig::SymbolTable(stores);
            filters = Module::BMCConfig::IPMIFilterDB(stores);
            tables = Module::BMCConfig::TableDB(stores);
            packets = Module::BMCConfig::IPMIPacketDB(stores);
            templates = Module::BMCConfig::TemplateDB(stores);
            interpreter = std::make_unique<Module::BMCConfig::Interpreter>(table, filters, tables, packets, templates,
                                                                           memo, rules);
        }
        return *interpreter;
    }

    Module::BMCConfig::SymbolMap run(const Script& script)
    {
        Module::BMCConfig::SymbolMap symbols;
        machine().run(symbols, "GET://BMC/TEST", std::make_shared<const Script>(script));
        return symbols;
    }

    /// "code detail" of the ResultStatus that `call` throws; empty when it throws none.
    template<class Call>
    static std::string failureOf(Call call)
    {
        try {
            call();
        } catch (const ResultStatus& status) {
            return std::to_string(status.getval()) + " " + status.begin()->mXQuery;
        }
        return {};
    }

    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
    ModelBmc bmc;
    ScopedSeam<transport::DeviceFile> useBmc{bmc};
    std::shared_ptr<Module::BMCConfig::Stores> stores = std::make_shared<Module::BMCConfig::Stores>();
    Module::BMCConfig::SymbolTable table;
    Module::BMCConfig::IPMIFilterDB filters;
    Module::BMCConfig::TableDB tables;
    Module::BMCConfig::IPMIPacketDB packets;
    Module::BMCConfig::TemplateDB templates;
    Module::BMCConfig::HandlerRules rules;
    bool memo = false;

private:
    std::unique_ptr<Module::BMCConfig::Interpreter> interpreter;
};
