#pragma once

#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "tests/support/BmcTest.hpp"

#include <memory>

/// An interpreter over stores of the test's own.
class EngineTest : public BmcTest {
protected:
    using Script = Module::BMCConfig::Script;
    using Symbol = Module::BMCConfig::Symbol;

    EngineTest()
    {
        Platform::PlatformImpl::CreateInstance()->InitPlatform();
        bmc.requests.clear();
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
