#include "client/query/QueryBackend.hpp"

namespace client::query {

namespace {

/// The one SDK object of the agent.
SDK::System bios;

struct SdkBackend final : QueryBackend {
    void get(const std::string& query, ResultMap& results) override { bios.Get(query, results); }
    void get(SDK::QueryMap queries, ResultMap& results) override { bios.Get(queries, results); }
    void setFlags(unsigned char flags) override { bios.SetFlags(flags); }
    bool repositoryChanged() override { return bios.repositoryChanged(); }
    bool readRepository(std::chrono::nanoseconds time) override { return bios.readRepository(time); }
};

} // namespace

QueryBackend& QueryBackend::real()
{
    static SdkBackend backend;
    return backend;
}

} // namespace client::query
