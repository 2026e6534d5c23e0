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

/// Whether the script is a list of children and nothing else.
inline bool isBranch(const Script& script)
{
    return script.size() == 1 && static_cast<Opcode>(script.front().opcode) == Opcode::Append;
}

inline std::string withoutSubscripts(std::string query)
{
    for (std::size_t at = 0; (at = query.find('[', at)) != std::string::npos; ++at)
        if (query.compare(at, 2, "[@") != 0)
            query.erase(at + 1, query.find(']', at) - at - 1);
    return query;
}

} // namespace catalogue_data
