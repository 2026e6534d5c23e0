#pragma once

#include "modules/System.hpp"
#include "tools/hwquery/Answer.hpp"
#include "tools/hwquery/Options.hpp"

#include <optional>
#include <string>

namespace hwquery {

/// One run of the tool: the SDK, and what it answers. Standard output is kept for that alone: what else prints there
/// goes to standard error from here on.
class Session {
public:
    explicit Session(const Options& options);

    /// GET. Nothing for a failure or an empty answer, which are noted.
    std::optional<ResultMap> get(const std::string& path, const SDK::Parameters& parameters = {});
    /// GET of what may well have nothing in it. Empty for a failure, which is noted.
    ResultMap ask(const std::string& path, const SDK::Parameters& parameters = {});
    /// SET with the parameters of the path. False for a failure, which is noted.
    bool set(const std::string& path, const SDK::Parameters& parameters);
    void fail(Failure failure);
    /// Prints to standard output.
    void say(const std::string& text);

    /// Prints the answer and tells the failures. Returns the exit status.
    int finish();

    Answer answer;
    bool needsRoot = true; ///< so that a failure may come of not being root

private:
    bool query(const std::string& path, const SDK::Parameters& parameters, ResultMap& results);
    template<class Work>
    bool attempt(const std::string& path, Work work);

    const Options& options;
    std::FILE* output;
    SDK::System system;
};

/// The value of a leaf; empty if there is none.
std::string valueOf(const ResultMap& nodes, const std::string& path);
/// The children of a branch; none if there is none.
std::vector<std::string> childrenOf(const ResultMap& nodes, const std::string& path);

} // namespace hwquery
