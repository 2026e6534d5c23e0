#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// What a machine's configuration file keeps of the BMC, an area at a time. A GET gives one text, "NAME=VALUE" parted by
// ";" and, where there are several channels or users, "LAN[1]:NAME=VALUE;..." parted by "|". A SET takes the same names
// as parameters, and beside them the number of the channel, user or entry.

namespace Module::BMCConfig {

using namespace steps;

namespace scfConfig {

Steps returnLines()
{
    return script({
        Size("$LINES", "$SIZE"),
        If("$SIZE == 0", {Throw("IPMI_RESPONSE_ERROR")}),
        Join("$LINES", "|", "$RESULT"),
        Return("$RESULT"),
    });
}

/// Adds what `query` answers for the member that `number` names, hexadecimal, and "$PLACE" in decimal.
Steps addLine(const std::string& query, const std::string& name)
{
    return script({
        Template_with_Catch(query),
        If("$RESULT != FAILURE AND $RESULT != NOT_SUPPORTED",
           {FormatString(name + "[", "$PLACE", "]:", "$RESULT", "$LINE"), Append("$LINE", "$LINES")}),
    });
}

/// The channels with media of `table`.
Script channelsScript(const std::string& table, const std::string& name, const std::string& query)
{
    return script({
        findChannels(table, name),
        Copy(":NULL", "$LINES"),
        Size("$CHANNELS", "$LEFT"),
        // a While whose condition fails at once would still run its body once
        If("$LEFT > 0", {While("$LEFT > 0",
                               {
                                   Read("$CHANNELS", "0", "$PLACE"),
                                   Read("$CHANNELS", "1-SIZE", "$CHANNELS"),
                                   Size("$CHANNELS", "$LEFT"),
                                   Map("$PLACE", "DEC2HEX", "$" + name + "_NUMBER"),
                                   addLine(query, name),
                               })}),
        returnLines(),
    });
}

/// Members from 1 on, until one is refused.
Steps addMembers(const std::string& query, const std::string& name)
{
    return script({
        Copy("1", "$PLACE"),
        While("$PLACE < 128",
              {
                  Map("$PLACE", "DEC2HEX", "$" + name + "_NUMBER"),
                  addLine(query, name),
                  Expression("$PLACE", "+", "1", "$PLACE"),
                  If("$RESULT == FAILURE OR $RESULT == NOT_SUPPORTED", {Copy("128", "$PLACE")}),
              }),
    });
}

/// Hands the caller's parameters on to the member that it names by its number.
Steps writeMember(const std::string& name, const std::string& query)
{
    return script({
        require("$" + name),
        Map("$" + name, "DEC2HEX", "$" + name + "_NUMBER"),
        Template(query),
        Return("$RESULT"),
    });
}

constexpr char pefNames[] = "ALERT_STARTUP_DELAY ALERT_STARTUP_DELAY_STATUS EVENT_MESSAGES_STATUS GLOBAL_ACTION GUID "
                            "GUID_STATUS STARTUP_DELAY STARTUP_DELAY_STATUS STATUS";

/// The settings of event filtering, and each filter and alert policy by its bytes (RAW).
void addFilters(Stores& stores)
{
    const auto writeGiven = [](const std::string& name) {
        return script({
            String_Length("$" + name, "$SIZE"),
            If("$SIZE > 0", {writeMember(name, "SET://BMC/PEF/" + name + "[]/RAW")}),
        });
    };
    addTemplate(stores, "GET://BMC/SCF/PEF",
                script({
                    readProfile("PEF", pefNames),
                    Copy(":NULL", "$LINES"),
                    Append("$RESULT", "$LINES"),
                    addMembers("GET://BMC/PEF/FILTER[]/RAW", "FILTER"),
                    addMembers("GET://BMC/PEF/POLICY[]/RAW", "POLICY"),
                    returnLines(),
                }));
    addTemplate(stores, "SET://BMC/SCF/PEF",
                script({writeGiven("FILTER"), writeGiven("POLICY"), writeProfile("PEF", pefNames)}));
}

/// Which machine and firmware a file is of; it is not for others.
void addHeader(Stores& stores)
{
    addTemplate(stores, "GET://BMC/SCF/LAN/HEADER",
                script({
                    Template("GET://BMC/INFO/PRODUCTID"),
                    Copy("$RESULT", "$PRODUCT"),
                    Template("GET://BMC/INFO/VERSION"),
                    FormatString("PRODUCTID=", "$PRODUCT", ";VERSION=", "$RESULT", "$RESULT"),
                    Return("$RESULT"),
                }));
    addTemplate(stores, "SET://BMC/SCF/LAN/HEADER",
                script({
                    require("$HEADER"),
                    Template("GET://BMC/SCF/LAN/HEADER"),
                    If("$RESULT != $HEADER", {refuse("$HEADER")}),
                    returnText("SUCCESS"),
                }));
}

} // namespace scfConfig

ScfConfig::ScfConfig(Stores& stores)
{
    using namespace scfConfig;
    addHeader(stores);
    addFilters(stores);
    addProfile(stores, "CHASSIS/STATUS/POWERSTATE", "SCF/POWER", "RESTOREPOLICY");
    addTemplate(stores, "GET://BMC/SCF/LAN", channelsScript("GET://BMC/LAN/CHANNELS", "LAN", "GET://BMC/LAN[]/SCF"));
    addTemplate(stores, "GET://BMC/SCF/SOL",
                channelsScript("GET://BMC/SOL/CHANNEL", "CHANNEL", "GET://BMC/SOL/CHANNEL[]/SCF"));
    addTemplate(stores, "GET://BMC/SCF/USER",
                script({Copy(":NULL", "$LINES"), addMembers("GET://BMC/USER[]/SCF", "USER"), returnLines()}));
    addTemplate(stores, "SET://BMC/SCF/LAN", writeMember("LAN", "SET://BMC/LAN[]/SCF"));
    addTemplate(stores, "SET://BMC/SCF/SOL", writeMember("CHANNEL", "SET://BMC/SOL/CHANNEL[]/SCF"));
    addTemplate(stores, "SET://BMC/SCF/USER",
                script({String_Length("$CHANNEL", "$SIZE"),
                        If("$SIZE > 0", {Map("$CHANNEL", "DEC2HEX", "$CHANNEL_NUMBER"),
                                         writeMember("USER", "SET://BMC/USER[]/CHANNEL[]/SCF")}),
                        writeMember("USER", "SET://BMC/USER[]/SCF")}));
}

} // namespace Module::BMCConfig
