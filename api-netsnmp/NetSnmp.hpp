#pragma once

// The library's headers want this one first and lean on each other's order.
// clang-format off
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <net-snmp/agent/net-snmp-agent-includes.h>
#include <net-snmp/agent/util_funcs/header_generic.h>
#include <net-snmp/agent/util_funcs/header_simple_table.h>
// clang-format on
