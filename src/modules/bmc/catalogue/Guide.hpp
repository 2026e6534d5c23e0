#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What people and tools need to know of the catalogue's queries, which the scripts cannot say themselves: what a
/// caller gives beside a value, and what he should think of first. A query here is a key or has its subscripts filled
/// in.
namespace Module::BMCConfig {

/// Parameters of a query that its caller gives by name, beside a write's own value and the subscripts.
struct ParameterRow {
    const char* key;
    const char* names; ///< separated by blanks
};
std::span<const ParameterRow> parameterRows();

/// What a use of a query calls for.
enum class Need {
    nothing,
    consent, ///< the caller's word: it can cut someone off, or lose data
    force,   ///< a stronger one: only the manufacturer knows the effect
};

/// Queries with a price, by the beginning of their keys; of several rows the longest counts.
struct CautionRow {
    const char* key;
    Need need;
    const char* effect; ///< "the server loses its power or is reset"
};
std::span<const CautionRow> cautionRows();

/// Answers of the code beside the catalogue: a path and what it gives.
struct SubjectRow {
    const char* path;
    const char* gives;
    const char* parameters = ""; ///< separated by blanks
};
std::span<const SubjectRow> subjectRows();

/// What to do before a query.
struct Advice {
    Need need = Need::nothing;
    std::string effect;
};
/// By the script, which may begin with `requireForce`, and by the rows.
Advice adviceFor(const std::string& query);
/// For a request of a network function and a command, both two hexadecimal digits: what the writes that send it call
/// for, and force for what is a manufacturer's own and does not only read.
Advice adviceForRaw(const std::string& netFunction, const std::string& command);

/// The names of the values that a query takes; a write's own value, which goes by the last token of its path, is the
/// first.
std::vector<std::string> parameterNames(const std::string& query);

/// A value that a query takes.
struct Takes {
    std::string name;
    std::string form; ///< "DISABLE or ENABLE"; empty if the value does not count
};
std::vector<Takes> takenBy(const std::string& query);

/// One key of the catalogue in words.
struct Entry {
    std::string key;
    std::string path; ///< without the scheme
    bool writes = false;
    std::vector<std::string> children;   ///< of a branch
    std::vector<std::string> subscripts; ///< "LAN 1 to 14"
    std::string gives;                   ///< of a read
    std::vector<Takes> takes;
    Advice advice;
};
/// All of them and the subjects, by path, reads before writes.
std::vector<Entry> entries();

} // namespace Module::BMCConfig
