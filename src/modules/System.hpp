#pragma once

#include "common/ResultStatus.hpp"
#include "common/XNode.hpp"
#include "platform/SameAnswers.hpp"

#include <chrono>
#include <map>
#include <string>

namespace SDK {

/// Named parameters of a query.
using Parameters = std::map<std::string, std::string>;
/// Queries with their parameters.
using QueryMap = std::map<std::string, Parameters>;

/// A scope of its caller's thread in which the queries share the answers to equal requests.
using Platform::SameAnswers;

/// The SDK `Morvandale` as its callers hold it. Every failure is a thrown ResultStatus.
class System {
public:
    /// One local GET. `results` is emptied first.
    void Get(std::string query, ResultMap& results);
    /// GET of each query with its parameters.
    void Get(QueryMap& queries, ResultMap& results);
    /// SET of each query to its value.
    void Set(std::map<std::string, std::string>& values);
    /// SET of each query with named parameters.
    void Set(QueryMap& queries);
    /// Whether the BMC has other sensor data records than those that queries are answered from, or the rest of them can
    /// be had by now. The next query reads them anew. One exchange; false without Policy::followsRepository.
    bool repositoryChanged();
    /// Reads the BMC's sensor data records for about `time`, if they are to be read (anew), and says whether there are
    /// more: the next call goes on. Queries have meanwhile what was read so far, or the earlier records until the end.
    bool readRepository(std::chrono::nanoseconds time);
    /// How many exchanges with a controller this process has begun.
    static unsigned long long exchanges();
    /// Start-up word: bit 0 locks, bits 1, 2, 3 log categories, bit 5 logging off.
    void SetFlags(unsigned char flags);
};

} // namespace SDK
