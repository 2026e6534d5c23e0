#include "common/ConfigCheck.hpp"
#include "common/Descriptor.hpp"
#include "common/Paths.hpp"
#include "common/Seams.hpp"
#include "tools/hwquery/Session.hpp"

#include <fcntl.h>

namespace hwquery {

int runCheckConfig(const Options& options)
{
    Session session(options);
    session.needsRoot = false;
    const std::string shown = options.words.empty() ? common::configPath : options.words.front();
    const std::string path = options.words.empty() ? systemPath(shown) : shown;
    if (!common::Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)).isRegularFile())
        session.fail({shown, 0, "no file that can be read", ""});
    for (const common::ConfigRemark& remark : common::checkConfigFile(path))
        session.fail({shown + ":" + std::to_string(remark.line), 0, remark.text, ""});
    return session.finish();
}

} // namespace hwquery
