#pragma once

#include "modules/bmc/engine/Databases.hpp"
#include "modules/bmc/engine/Interpreter.hpp"

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// What the director sees of the BMC engine. Built for one query and destroyed after it.
class BMCConfigModule {
public:
    /// `mask`: which Config classes to load, 0 for all.
    explicit BMCConfigModule(unsigned long mask = 0);

    void LoadDB();
    /// The whole catalogue, for other users.
    static void LoadTables(SymbolTable& symbols, IPMIFilterDB& filters, TableDB& tables, IPMIPacketDB& packets,
                           TemplateDB& templates);

    /// GET of `query`, a path without scheme. Throws ResultStatus.
    void Process(const std::string& query, ResultMap& results);
    void ProcessXQuery(const std::string& query, ResultMap& results) { Process(query, results); }
    /// SET of one value; `flag` is taken and not used by the BMC road.
    void ProcessXQuery(const std::string& query, const std::string& value, bool flag);
    /// SET with named parameters.
    void ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters);
    /// GET with named parameters.
    void ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters,
                       ResultMap& results, unsigned flags);

    /// Whether the BMC's sensor data records are to be read anew, which the next query does; see
    /// SdrRepository::changed.
    static bool repositoryChanged();
    /// Reads the sensor data records for about `time`; see Sdr::readPiece.
    static bool readRepository(std::chrono::nanoseconds time);

    void GetIPMI(const std::string& request, std::vector<std::string>& reply);
    bool SelectIPMIInterface(int interface);
    int Reinit_OpenIPMI();

private:
    void loadFor(const std::string& query);
    Interpreter makeInterpreter();
    void retryFru(SymbolMap& answers, const std::string& key, const std::map<std::string, std::string>& parameters);

    SymbolTable symbols;
    SymbolTable pristine;
    IPMIFilterDB filters;
    TableDB tables;
    IPMIPacketDB packets;
    TemplateDB templates;
    unsigned long mask;
    bool lanWanted = false;
    bool loaded = false;
};

} // namespace Module::BMCConfig
