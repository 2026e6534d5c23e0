#include "modules/bmc/subjects/SelTranslation.hpp"

#include "common/CMySemLock.hpp"
#include "common/Descriptor.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "modules/bmc/subjects/Sdr.hpp"
#include "translator/TranslatorImpl.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace Module::BMCConfig {

namespace {

constexpr char directoryVariable[] = "HRS_PATH_QL";
constexpr char fixedDirectory[] = "/usr/local/share/morvandale/";
constexpr char alderFile[] = "hrs_alder.ini", defaultFile[] = "hrs_enu.ini", defaultLocale[] = "";
constexpr int alderProducts[] = {40, 41, 43, 44, 58, 59, 61};
constexpr std::size_t longestVariable = 4096;

/// Runs `call`; a failure leaves the machine as it was.
template<class Call>
void quietly(Interpreter& interpreter, Call call)
{
    const _INTERPRETER_STATE before = interpreter.get_state();
    try {
        call();
    } catch (const ResultStatus& failure) {
        interpreter.restore_state(before);
        HW_LOG(LOGGER::Category::First, "SEL translation does without what failed with %d", int{failure.getval()});
    }
}

bool canOpen(const std::string& name)
{
    return common::openToRead(name) != nullptr;
}

std::vector<std::vector<std::uint8_t>> bytesOf(const SdrRepository& repository)
{
    std::vector<std::vector<std::uint8_t>> records;
    for (const SdrRecord& record : repository.records)
        records.push_back(record.bytes);
    return records;
}

} // namespace

bool IsAlder(int productId)
{
    return std::ranges::find(alderProducts, productId) != std::end(alderProducts);
}

std::string GetEnvVariable(const char* name)
{
    const char* value = std::getenv(name);
    return value && std::strlen(value) <= longestVariable ? value : "";
}

std::string GetHSRFullFileName(const std::string& name)
{
    const std::string given = GetEnvVariable(directoryVariable);
    if (!given.empty())
        return given + (given.ends_with('/') ? "" : "/") + name;
    const std::string fixed = systemPath(fixedDirectory + name);
    return canOpen(fixed) ? fixed : name;
}

SelTranslation& SelTranslation::instance()
{
    static SelTranslation translation;
    return translation;
}

void SelTranslation::prepare(Interpreter& interpreter, _BMC_EXEC exec)
{
    HW_NAMED_LOCK(named, "INIT_HRS");
    if (std::string now = GetEnvVariable(directoryVariable); made && now != directory)
        startOver(now);
    findProduct(interpreter);
    if (!made) {
        directory = GetEnvVariable(directoryVariable);
        const std::string file = GetHSRFullFileName(IsAlder(productId.value_or(0)) ? alderFile : defaultFile);
        made = translator::makeTranslator(file.c_str(), defaultLocale);
        made->setPlatformID(static_cast<unsigned short>(productId.value_or(0)));
    }
    giveSensors(interpreter, exec);
}

void SelTranslation::startOver(const std::string& newDirectory)
{
    directory = newDirectory;
    made.reset();
    productId.reset();
    sensors.reset();
    sensorsAsked = false;
}

void SelTranslation::findProduct(Interpreter& interpreter)
{
    if (productId)
        return;
    std::string number;
    quietly(interpreter, [&] {
        SymbolMap local;
        interpreter.run(local, "GET://BMC/INFO/ID");
        number = local["GET://BMC/INFO/ID"].text();
    });
    if (number.empty())
        return;
    productId = static_cast<int>(Util::string_to_long(number, 10));
    made.reset(); // one made before the product was known may be of the wrong file
    sensors.reset();
}

void SelTranslation::giveSensors(Interpreter& interpreter, _BMC_EXEC exec)
{
    if (!ofThisMachine)
        return;
    // The first use reads them. If that fails, the readers of sensors will have them read in time; asking at every
    // poll would not be worth its exchanges.
    if (!std::exchange(sensorsAsked, true))
        quietly(interpreter, [&] {
            SymbolMap local;
            Sdr(&interpreter, exec).process(sdrListKey, local);
        });
    const std::shared_ptr<const SdrRepository> now = SdrRepository::current(exec);
    if (!now || now == sensors)
        return;
    made->setSDRRepository(bytesOf(*now));
    sensors = now;
}

} // namespace Module::BMCConfig
