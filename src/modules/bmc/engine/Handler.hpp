#pragma once

#include "modules/bmc/engine/SymbolTable.hpp"

#include <memory>
#include <string>
#include <vector>

namespace Module::BMCConfig {

class Interpreter;

/// How the engine reaches the BMC.
enum _BMC_EXEC : int { BMC_EXEC_LOCAL = 0, BMC_EXEC_OUT_OF_BAND = 2 };

/// Code beside the scripts for a subject that needs more than a script.
class Handler {
public:
    virtual ~Handler() = default;
    /// Leaves the answer in `symbols[query]`. Errors are thrown as ResultStatus.
    virtual void process(const std::string& query, SymbolMap& symbols) = 0;
};

/// Which queries go to a handler: the first rule whose predicate holds for the query and its form with emptied
/// subscripts. A rule without `make` sends its queries to the plain script.
struct HandlerRule {
    bool (*matches)(const std::string& query, const std::string& withoutIndexes);
    std::unique_ptr<Handler> (*make)(Interpreter* interpreter, _BMC_EXEC exec);
};

using HandlerRules = std::vector<HandlerRule>;

} // namespace Module::BMCConfig
