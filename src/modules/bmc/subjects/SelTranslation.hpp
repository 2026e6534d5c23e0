#pragma once

#include "modules/bmc/subjects/SdrRepository.hpp"
#include "translator/Translator.hpp"

#include <memory>
#include <mutex>
#include <string>

namespace Module::BMCConfig {

class Interpreter;

/// The translator with what it was made of: the file, the product, the sensors' records. Loading costs a parse and a
/// reading of the repository, so the process keeps one; `guard` is held by whoever uses it.
class SelTranslation {
public:
    SelTranslation() = default;
    /// For records of another machine: its product id, and none of this machine's sensors.
    explicit SelTranslation(int writer) : ofThisMachine(false), productId(writer) {}

    /// That of this process.
    static SelTranslation& instance();

    /// Makes the translator ready, and costs nothing when it is: after the first time the file is parsed again only if
    /// the directory of HRS_PATH_QL has changed, and the sensors are given again only if the engine's cache of them
    /// has. Throws 1183 without a translation file, and tries again at the next call. `locale` is that of the words to
    /// show, empty for English.
    void prepare(Interpreter& interpreter, _BMC_EXEC exec, const std::string& locale);

    /// The English words, by which programs choose. Null until prepare has succeeded.
    Translator* translator() const { return english.get(); }
    /// The words of the locale; null for English and for a locale without a file.
    Translator* localTranslator() const { return local.get(); }

    std::mutex guard;

private:
    void startOver(const std::string& newDirectory);
    void findProduct(Interpreter& interpreter);
    void makeTranslators(const std::string& locale);
    void readSensors(Interpreter& interpreter, _BMC_EXEC exec);
    void giveSensors(_BMC_EXEC exec);

    bool ofThisMachine = true;
    std::string directory; ///< as the environment named it, empty without
    translator::TranslatorPointer english;
    std::string localeMade; ///< that of `local`
    translator::TranslatorPointer local;
    int productId = 0;
    std::string product; ///< the word for it, empty before it is known
    bool sensorsAsked = false;
    std::shared_ptr<const SdrRepository> sensors; ///< those that the translators have
};

/// True for the products whose events the Alder file describes.
bool IsAlder(int productId);
/// The value of an environment variable; empty if it is not set or has more than 4,096 bytes.
std::string GetEnvVariable(const char* name);
/// Where the translation file `name` is: in the directory of HRS_PATH_QL if that is set, otherwise in the fixed one, or
/// in the working directory when it is not there.
std::string GetHSRFullFileName(const std::string& name);

} // namespace Module::BMCConfig
