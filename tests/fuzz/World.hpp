#pragma once

#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "tests/fuzz/Input.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/ModelBmc.hpp"
#include "transport/TransportState.hpp"

#include <string>

/// No file of the machine, no program of it, and nobody who reads its log.
class Nowhere : public SystemRoot, public CommandRunner, public common::SystemLog {
public:
    std::string resolve(const std::string& absolutePath) override { return "/nowhere" + absolutePath; }
    int run(const std::vector<std::string>&, int) override { return 127; }
    void write(common::Gravity, const std::string&) override {}

private:
    ScopedSeam<SystemRoot> useRoot{*this};
    ScopedSeam<CommandRunner> useRunner{*this};
    ScopedSeam<common::SystemLog> useLog{*this};
};

/// One run's machine: nothing real but a BMC that the target scripts, a clock that nobody waits for, and the engine as
/// a start of the process finds it. The first byte of the input, when odd, puts the practical policy in force.
class World {
public:
    explicit World(Input& input) : usePolicy(input.byte() & 1 ? common::practicalPolicy() : common::Policy())
    {
        clock.perReading = std::chrono::microseconds(20);
        transport::resetTransportForTests();
        Module::BMCConfig::Cache::instance().Clear();
        bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    }
    ~World() { transport::resetTransportForTests(); }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// What the engine answers; nothing where it refuses.
    ResultMap ask(const std::string& query, const std::map<std::string, std::string>& parameters = {})
    {
        ResultMap results;
        try {
            if (parameters.empty())
                Module::BMCConfig::BMCConfigModule().Process(query, results);
            else
                Module::BMCConfig::BMCConfigModule().ProcessXQuery(query, parameters, results, 0);
        } catch (const ResultStatus&) { // a refusal is an answer
            results.clear();
        }
        return results;
    }

    ModelBmc bmc;
    FakeClock clock;

private:
    common::ScopedPolicy usePolicy;
    Nowhere nowhere;
    ScopedSeam<transport::DeviceFile> useBmc{bmc};
    ScopedSeam<Clock> useClock{clock};
};

/// Every command but Get Device ID is answered with a part of the input: completion code first, nothing for no answer.
/// The last answers say that all is told.
inline void answerFrom(Input& input, ModelBmc& bmc)
{
    bmc.onOthers([&input](const IpmiRequest&) {
        return input.empty() ? IpmiAnswer{0, 0xFF, 0xFF} : IpmiAnswer(input.part());
    });
}
