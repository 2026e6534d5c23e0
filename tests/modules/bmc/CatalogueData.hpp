#pragma once

#include "modules/bmc/catalogue/Catalogue.hpp"
#include "modules/bmc/catalogue/Guide.hpp"
#include "modules/bmc/engine/Opcodes.hpp"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// The whole catalogue read as data. Each test collects its findings, so that one run shows them all.
namespace catalogue_data {

using namespace Module::BMCConfig;
using testing::IsEmpty;

using Names = std::set<std::string>;

inline const Stores& stores()
{
    static const std::shared_ptr<const Stores> all = catalogue(wholeCatalogue, true);
    return *all;
}

using Visit = std::function<void(const std::string& key, Opcode opcode, const std::vector<std::string>& operands)>;

inline void forEachStep(const Visit& visit)
{
    for (const auto& [key, program] : stores().templates)
        for (const Function& step : *program)
            visit(key, static_cast<Opcode>(step.opcode), step.arguments.values);
}

} // namespace catalogue_data
