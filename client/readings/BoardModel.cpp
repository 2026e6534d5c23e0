#include "client/readings/BoardModel.hpp"

#include "client/query/Answers.hpp"
#include "client/query/QLInterface.hpp"

namespace client::readings {

std::string readBoardModel()
{
    static const std::string path = "/BIOS/PlatformID";
    const auto answers = query::tryQuery(path, "");
    const std::string* const model = answers ? query::findAnswer(*answers, path) : nullptr;
    return model ? *model : std::string();
}

} // namespace client::readings
