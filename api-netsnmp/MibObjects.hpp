#pragma once

#include "api-netsnmp/MibObject.hpp"

// The objects of the MIB, one file each: registered name, rows of columns, find-variable method, and the function that
// registers the object with the agent library.

extern const mib::GroupOid systemManagementSoftwareGroup_variables_oid;
extern mib::Variables<10> systemManagementSoftwareGroup_variables;
FindVarMethod var_systemManagementSoftwareGroup;
void init_systemManagementSoftwareGroup();

extern const mib::GroupOid chassisInformationGroup_variables_oid;
extern mib::Variables<15> chassisInformationGroup_variables;
FindVarMethod var_chassisInformationGroup;
void init_chassisInformationGroup();

extern const mib::TableOid processorDeviceTable_variables_oid;
extern mib::Variables<17> processorDeviceTable_variables;
FindVarMethod var_processorDeviceTable;
void init_processorDeviceTable();

extern const mib::TableOid discreteProcessorTable_variables_oid;
extern mib::Variables<5> discreteProcessorTable_variables;
FindVarMethod var_discreteProcessorTable;
void init_discreteProcessorTable();

extern const mib::TableOid powerUnitTable_variables_oid;
extern mib::Variables<6> powerUnitTable_variables;
FindVarMethod var_powerUnitTable;
void init_powerUnitTable();

extern const mib::TableOid powerSupplyTable_variables_oid;
extern mib::Variables<5> powerSupplyTable_variables;
FindVarMethod var_powerSupplyTable;
void init_powerSupplyTable();

extern const mib::TableOid voltageProbeTable_variables_oid;
extern mib::Variables<15> voltageProbeTable_variables;
FindVarMethod var_voltageProbeTable;
void init_voltageProbeTable();

extern const mib::TableOid discreteVoltageProbeTable_variables_oid;
extern mib::Variables<6> discreteVoltageProbeTable_variables;
FindVarMethod var_discreteVoltageProbeTable;
void init_discreteVoltageProbeTable();

extern const mib::TableOid currentProbeTable_variables_oid;
extern mib::Variables<15> currentProbeTable_variables;
FindVarMethod var_currentProbeTable;
void init_currentProbeTable();

extern const mib::TableOid physicalMemoryArrayTable_variables_oid;
extern mib::Variables<13> physicalMemoryArrayTable_variables;
FindVarMethod var_physicalMemoryArrayTable;
void init_physicalMemoryArrayTable();

extern const mib::TableOid physicalMemoryDeviceTable_variables_oid;
extern mib::Variables<21> physicalMemoryDeviceTable_variables;
FindVarMethod var_physicalMemoryDeviceTable;
void init_physicalMemoryDeviceTable();

extern const mib::TableOid discreteMemoryTable_variables_oid;
extern mib::Variables<5> discreteMemoryTable_variables;
FindVarMethod var_discreteMemoryTable;
void init_discreteMemoryTable();

extern const mib::TableOid coolingUnitTable_variables_oid;
extern mib::Variables<7> coolingUnitTable_variables;
FindVarMethod var_coolingUnitTable;
void init_coolingUnitTable();

extern const mib::TableOid coolingDeviceTable_variables_oid;
extern mib::Variables<15> coolingDeviceTable_variables;
FindVarMethod var_coolingDeviceTable;
void init_coolingDeviceTable();

extern const mib::TableOid discreteCoolingDeviceTable_variables_oid;
extern mib::Variables<6> discreteCoolingDeviceTable_variables;
FindVarMethod var_discreteCoolingDeviceTable;
void init_discreteCoolingDeviceTable();

extern const mib::TableOid temperatureProbeTable_variables_oid;
extern mib::Variables<15> temperatureProbeTable_variables;
FindVarMethod var_temperatureProbeTable;
void init_temperatureProbeTable();

extern const mib::TableOid driveSlotPresenceSensorTable_variables_oid;
extern mib::Variables<6> driveSlotPresenceSensorTable_variables;
FindVarMethod var_driveSlotPresenceSensorTable;
void init_driveSlotPresenceSensorTable();

extern const mib::TableOid miscellaneousSensorTable_variables_oid;
extern mib::Variables<5> miscellaneousSensorTable_variables;
FindVarMethod var_miscellaneousSensorTable;
void init_miscellaneousSensorTable();
