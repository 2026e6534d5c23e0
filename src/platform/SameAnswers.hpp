#pragma once

#include <map>
#include <string>
#include <vector>

namespace Platform {

/// While one lives, this thread's requests that only read what does not change by itself (a sensor's thresholds, IPMI
/// 2.0, 35.9) are exchanged once: an equal request gets the first one's answer. An answer of a busy controller is not
/// kept. Scopes may nest; the outermost counts. For a thread that changes nothing meanwhile.
class SameAnswers {
public:
    SameAnswers();
    ~SameAnswers();
    SameAnswers(const SameAnswers&) = delete;
    SameAnswers& operator=(const SameAnswers&) = delete;

    using Texts = std::vector<std::string>;
    /// Takes an earlier answer to `tokens`; false if there is none.
    static bool recall(const Texts& tokens, Texts& reply);
    /// Keeps `reply` where the command and the reply's code allow it.
    static void keep(const Texts& tokens, const Texts& reply);

private:
    bool outermost;
    std::map<Texts, Texts> known;
};

} // namespace Platform
