#pragma once

#include "modules/System.hpp"

namespace client::query {

/// What the query client asks of the SDK; replaceable with ScopedSeam. Failures are thrown as ResultStatus.
struct QueryBackend {
    virtual ~QueryBackend() = default;
    virtual void get(const std::string& query, ResultMap& results) = 0;
    virtual void get(SDK::QueryMap queries, ResultMap& results) = 0;
    virtual void setFlags(unsigned char flags) = 0;
    /// See SDK::System.
    virtual bool repositoryChanged() = 0;
    virtual bool readRepository(std::chrono::nanoseconds time) = 0;
    static QueryBackend& real();
};

} // namespace client::query
