#pragma once

#include <string>
#include <vector>

namespace hwquery {

/// What the command line asks for, whatever the command.
struct Options {
    bool json = false;
    bool yes = false;                       ///< do what can cut someone off without asking
    bool force = false;                     ///< send what only the manufacturer knows the effect of
    bool markdown = false;                  ///< list as a page of documentation
    std::string locale;                     ///< of the event log's words, "de_DE"; English if empty
    std::string passwordFile;               ///< where a secret stands; "-" is standard input
    std::string target = "0x20", lun = "0"; ///< of a raw request
    std::string community = "public";       ///< of the SNMP request that looks at the tree
    std::string snmp;                       ///< options of that request in the place of the community
    std::string agent = "127.0.0.1";        ///< its address
    std::vector<std::string> words;         ///< the command's own, in their order
};

/// Of the process.
enum Exit : int { succeeded = 0, failed = 1, wrongUsage = 2, refused = 3 };

// The commands. Each returns the exit status.
int runGet(const Options& options);
int runSet(const Options& options);
int runRaw(const Options& options);
int runList(const Options& options);
/// The words: "get" or "set", and the beginning of a path.
int runComplete(const Options& options);
int runSensors(const Options& options);
int runSelList(const Options& options);
int runSelInfo(const Options& options);
int runSelClear(const Options& options);
int runFru(const Options& options);
int runInventory(const Options& options);
int runStatus(const Options& options);
int runTestTrap(const Options& options);
int runCheckConfig(const Options& options);

} // namespace hwquery
