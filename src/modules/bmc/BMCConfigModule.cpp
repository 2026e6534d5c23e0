#include "modules/bmc/BMCConfigModule.hpp"

#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "modules/bmc/HandlerTable.hpp"
#include "modules/bmc/catalogue/Catalogue.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/subjects/Sdr.hpp"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <utility>

namespace Module::BMCConfig {

namespace {

constexpr char fruQuery[] = "/BMC/FRU";
/// Of a FRU read (IPMI 2.0, 34.2), 81h in the decimal text of replies: the device is busy.
constexpr char fruBusy[] = "129";

/// Queries about parts that may be absent: whatever fails, the absence is reported.
struct OptionalPart {
    const char* query;
    _ERROR_NAME error;
};

constexpr OptionalPart optionalParts[] = {
    {"/BMC/INFO/HSCVERSION", ERROR_HSC_NOT_PRESENT},
    {"/BMC/INFO/HSC_OP_AREA_VERSION", ERROR_HSC_NOT_PRESENT},
    {"/BMC/INFO/HSC_BOOT_AREA_VERSION", ERROR_HSC_NOT_PRESENT},
    {"/BMC/INFO/LCPVERSION", ERROR_LCP_NOT_PRESENT},
    {"/BMC/INFO/LCP_OP_AREA_VERSION", ERROR_LCP_NOT_PRESENT},
    {"/BMC/INFO/LCP_BOOT_AREA_VERSION", ERROR_LCP_NOT_PRESENT},
    {"/BMC/INFO/PX_BOOT_AREA_VERSION", ERROR_PX_NOT_PRESENT},
};

bool wantsLan(const std::string& query)
{
    return query.find("/LAN") != std::string::npos || query == "/BMC" ||
           query.find("/BMC/CHANNEL") != std::string::npos;
}

void reportAbsence(const std::string& query)
{
    const auto* part = std::find_if(std::begin(optionalParts), std::end(optionalParts),
                                    [&](const OptionalPart& row) { return query == row.query; });
    if (part != std::end(optionalParts))
        throwError(part->error, query, COMMAND_GET);
}

/// Runs `work`, whose failures other than ResultStatus become error 1184.
template<class Work>
void withOneErrorType(const std::string& query, _XCOMMAND command, Work work)
{
    try {
        work();
    } catch (const std::exception&) {
        throwError(ERROR_UNKNOWN, query, command);
    }
}

/// Scripts report the failure of a SET, or of a GET with parameters, as a word.
void refuseFailureWords(const SymbolMap& answers, const std::string& key, const std::string& query, _XCOMMAND command)
{
    const auto answer = answers.find(key);
    if (answer != answers.end() && (answer->second.text() == "FAILURE" || answer->second.text() == "ERROR"))
        throwError(ERROR_OPERATION_FAILED, query, command);
}

} // namespace

BMCConfigModule::BMCConfigModule(unsigned long mask_) : mask(mask_) {}

void BMCConfigModule::LoadDB()
{
    if (loaded) {
        symbols = pristine;
        return;
    }
    const std::shared_ptr<const Stores> stores = catalogue(mask, lanWanted);
    symbols = SymbolTable(stores);
    filters = IPMIFilterDB(stores);
    tables = TableDB(stores);
    packets = IPMIPacketDB(stores);
    templates = TemplateDB(stores);
    loaded = true;
    pristine = symbols;
}

void BMCConfigModule::LoadTables(SymbolTable& symbols, IPMIFilterDB& filters, TableDB& tables, IPMIPacketDB& packets,
                                 TemplateDB& templates)
{
    constexpr bool withLan = true;
    const std::shared_ptr<const Stores> stores = catalogue(0, withLan);
    symbols = SymbolTable(stores);
    filters = IPMIFilterDB(stores);
    tables = TableDB(stores);
    packets = IPMIPacketDB(stores);
    templates = TemplateDB(stores);
}

void BMCConfigModule::loadFor(const std::string& query)
{
    if (!lanWanted && wantsLan(query)) {
        lanWanted = true;
        loaded = false;
    }
    LoadDB();
}

Interpreter BMCConfigModule::makeInterpreter()
{
    constexpr bool memo = false;
    return {symbols, filters, tables, packets, templates, memo, handlerRules()};
}

void BMCConfigModule::Process(const std::string& query, ResultMap& results)
{
    results.clear();
    withOneErrorType(query, COMMAND_GET, [&] {
        try {
            loadFor(query);
            makeInterpreter().router(getScheme + query, results);
        } catch (const ResultStatus&) {
            reportAbsence(query);
            throw;
        }
    });
}

void BMCConfigModule::ProcessXQuery(const std::string& query, const std::string& value, bool)
{
    withOneErrorType(query, COMMAND_SET, [&] {
        const std::string key = setScheme + query;
        loadFor(query);
        SymbolMap answers;
        makeInterpreter().set(answers, key, value);
        refuseFailureWords(answers, key, query, COMMAND_SET);
    });
}

void BMCConfigModule::ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters)
{
    withOneErrorType(query, COMMAND_SET, [&] {
        const std::string key = setScheme + query;
        loadFor(query);
        SymbolMap answers;
        makeInterpreter().set(answers, key, parameters);
        refuseFailureWords(answers, key, query, COMMAND_SET);
    });
}

void BMCConfigModule::ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters,
                                    ResultMap& results, unsigned)
{
    results.clear();
    withOneErrorType(query, COMMAND_GET, [&] {
        const std::string key = getScheme + query;
        loadFor(query);
        Interpreter interpreter = makeInterpreter();
        SymbolMap answers;
        try {
            interpreter.set(answers, key, parameters);
        } catch (const ResultStatus&) {
            if (query != fruQuery)
                throw;
            answers.clear();
            retryFru(answers, key, parameters);
        }
        refuseFailureWords(answers, key, query, COMMAND_GET);
        interpreter.swap(std::move(answers), results);
    });
}

void BMCConfigModule::retryFru(SymbolMap& answers, const std::string& key,
                               const std::map<std::string, std::string>& parameters)
{
    const std::string code = symbols.read("$BMC_COMPLETION_CODE").text();
    HW_LOG(LOGGER::Category::First, "/BMC/FRU query failed with completion code = %s", code.c_str());
    if (code != fruBusy)
        throwError(ERROR_READING_SYSTEM_FRU, fruQuery, COMMAND_GET);
    current<Clock>().sleepFor(std::chrono::seconds(1));
    try {
        makeInterpreter().set(answers, key, parameters);
    } catch (const ResultStatus&) {
        throwError(ERROR_READING_SYSTEM_FRU, fruQuery, COMMAND_GET);
    }
}

bool BMCConfigModule::repositoryChanged()
{
    return SdrRepository::changed(BMC_EXEC_LOCAL);
}

bool BMCConfigModule::readRepository(std::chrono::nanoseconds time)
{
    bool more = false;
    withOneErrorType(sdrPath(1), COMMAND_GET, [&] {
        BMCConfigModule module;
        module.LoadDB();
        Interpreter interpreter = module.makeInterpreter();
        more = Sdr(&interpreter, BMC_EXEC_LOCAL).readPiece(time);
    });
    return more;
}

void BMCConfigModule::GetIPMI(const std::string& request, std::vector<std::string>& reply)
{
    makeInterpreter().GetIPMI(request, reply);
}

bool BMCConfigModule::SelectIPMIInterface(int interface)
{
    return makeInterpreter().SelectIPMIInterface(interface);
}

int BMCConfigModule::Reinit_OpenIPMI()
{
    return makeInterpreter().Reinit_OpenIPMI();
}

} // namespace Module::BMCConfig
