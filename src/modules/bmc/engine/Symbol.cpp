#include "modules/bmc/engine/Symbol.hpp"

namespace Module::BMCConfig {

Symbol& Symbol::operator=(std::string text)
{
    type = NODE_LEAF;
    values.clear();
    values.push_back(std::move(text));
    return *this;
}

Symbol& Symbol::operator=(std::vector<std::string> list)
{
    type = NODE_NONLEAF;
    values = std::move(list);
    return *this;
}

Symbol &Symbol::operator,(std::string text)
{
    values.push_back(std::move(text));
    return *this;
}

const std::string& Symbol::text() const
{
    static const std::string empty;
    return values.empty() ? empty : values.front();
}

Symbol Symbol::ofList(std::vector<std::string> list)
{
    const int type = list.size() < 2 ? NODE_LEAF : NODE_NONLEAF;
    return {type, std::move(list)};
}

} // namespace Module::BMCConfig
