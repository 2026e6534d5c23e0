#include "modules/bmc/subjects/SelTranslation.hpp"

#include "common/CMySemLock.hpp"
#include "common/Descriptor.hpp"
#include "common/Logger.hpp"
#include "common/Paths.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "modules/bmc/subjects/Sdr.hpp"
#include "translator/TranslationFile.hpp"
#include "translator/TranslatorImpl.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace Module::BMCConfig {

namespace {

constexpr char directoryVariable[] = "HRS_PATH_QL";
constexpr char alderFile[] = "hrs_alder.ini", defaultFile[] = "hrs_enu.ini";
constexpr char englishLocale[] = "", unknownProduct[] = "UNKNOWN";
constexpr std::string_view familyProducts[] = {"OAKWOOD", "PINEWOOD"};
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

/// Empty if the query fails.
std::string answerOf(Interpreter& interpreter, const char* query)
{
    std::string answer;
    quietly(interpreter, [&] {
        SymbolMap answers;
        interpreter.run(answers, query);
        answer = answers[query].text();
    });
    return answer;
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
    const std::string fixed = systemPath(common::translationFolder + name);
    return canOpen(fixed) ? fixed : name;
}

SelTranslation& SelTranslation::instance()
{
    static SelTranslation translation;
    return translation;
}

void SelTranslation::prepare(Interpreter& interpreter, _BMC_EXEC exec, const std::string& locale)
{
    HW_NAMED_LOCK(named, "INIT_HRS");
    if (std::string now = GetEnvVariable(directoryVariable); english && now != directory)
        startOver(now);
    findProduct(interpreter);
    makeTranslators(locale);
    if (!ofThisMachine)
        return;
    readSensors(interpreter, exec);
    giveSensors(exec);
}

void SelTranslation::makeTranslators(const std::string& locale)
{
    if (english && locale == localeMade)
        return;
    directory = GetEnvVariable(directoryVariable);
    const std::string file = GetHSRFullFileName(IsAlder(productId) ? alderFile : defaultFile);
    const auto make = [&](const std::string& words) {
        translator::TranslatorPointer made = translator::makeTranslator(file.c_str(), words.c_str());
        if (std::ranges::find(familyProducts, product) != std::end(familyProducts))
            made->setPlatformName(product.c_str());
        else
            made->setPlatformID(static_cast<unsigned short>(productId));
        return made;
    };
    if (!english)
        english = make(englishLocale);
    local = TranslationFile::hasLocale(file.c_str(), locale) ? make(locale) : nullptr;
    localeMade = locale;
    sensors.reset();
}

void SelTranslation::startOver(const std::string& newDirectory)
{
    directory = newDirectory;
    english.reset();
    product.clear();
    sensorsAsked = false;
}

/// The family's word counts for products whose events the files hold under the family's own number.
void SelTranslation::findProduct(Interpreter& interpreter)
{
    if (!product.empty())
        return;
    if (ofThisMachine) {
        const std::string number = answerOf(interpreter, "GET://BMC/INFO/ID");
        if (number.empty())
            return;
        productId = static_cast<int>(Util::string_to_long(number, 10));
        product = answerOf(interpreter, "GET://BMC/INFO/PRODUCT");
    } else {
        interpreter.symbolTable()["$/LOCAL_ID"] = std::to_string(productId);
        product = answerOf(interpreter, "GET://BMC/INFO/LOCAL/PRODUCT");
    }
    if (product.empty())
        product = unknownProduct;
    english.reset(); // one made before the product was known may be of the wrong file
}

/// The first use reads them. If that fails, the readers of sensors will have them read in time; asking at every poll
/// would not be worth its exchanges.
void SelTranslation::readSensors(Interpreter& interpreter, _BMC_EXEC exec)
{
    if (!std::exchange(sensorsAsked, true))
        quietly(interpreter, [&] {
            SymbolMap unused;
            Sdr(&interpreter, exec).process(sdrListKey, unused);
        });
}

void SelTranslation::giveSensors(_BMC_EXEC exec)
{
    const std::shared_ptr<const SdrRepository> now = SdrRepository::current(exec);
    if (!now || now == sensors)
        return;
    english->setSDRRepository(bytesOf(*now));
    if (local)
        local->setSDRRepository(bytesOf(*now));
    sensors = now;
}

} // namespace Module::BMCConfig
