#pragma once

#include "api-netsnmp/MibObject.hpp"

// The objects of the MIB, one file each: registered name, rows of columns, find-variable method, and the function that
// registers the object with the agent library.

extern const GroupOid systemManagementSoftwareGroup_variables_oid;
extern Variables<10> systemManagementSoftwareGroup_variables;
FindVarMethod var_systemManagementSoftwareGroup;
void init_systemManagementSoftwareGroup();

extern const GroupOid chassisInformationGroup_variables_oid;
extern Variables<15> chassisInformationGroup_variables;
FindVarMethod var_chassisInformationGroup;
void init_chassisInformationGroup();

extern const TableOid processorDeviceTable_variables_oid;
extern Variables<17> processorDeviceTable_variables;
FindVarMethod var_processorDeviceTable;
void init_processorDeviceTable();

extern const TableOid discreteProcessorTable_variables_oid;
extern Variables<5> discreteProcessorTable_variables;
FindVarMethod var_discreteProcessorTable;
void init_discreteProcessorTable();

extern const TableOid powerUnitTable_variables_oid;
extern Variables<6> powerUnitTable_variables;
FindVarMethod var_powerUnitTable;
void init_powerUnitTable();

extern const TableOid powerSupplyTable_variables_oid;
extern Variables<5> powerSupplyTable_variables;
FindVarMethod var_powerSupplyTable;
void init_powerSupplyTable();

extern const TableOid voltageProbeTable_variables_oid;
extern Variables<15> voltageProbeTable_variables;
FindVarMethod var_voltageProbeTable;
void init_voltageProbeTable();

extern const TableOid discreteVoltageProbeTable_variables_oid;
extern Variables<6> discreteVoltageProbeTable_variables;
FindVarMethod var_discreteVoltageProbeTable;
void init_discreteVoltageProbeTable();

extern const TableOid currentProbeTable_variables_oid;
extern Variables<15> currentProbeTable_variables;
FindVarMethod var_currentProbeTable;
void init_currentProbeTable();

extern const TableOid physicalMemoryArrayTable_variables_oid;
extern Variables<13> physicalMemoryArrayTable_variables;
FindVarMethod var_physicalMemoryArrayTable;
void init_physicalMemoryArrayTable();

extern const TableOid physicalMemoryDeviceTable_variables_oid;
extern Variables<21> physicalMemoryDeviceTable_variables;
FindVarMethod var_physicalMemoryDeviceTable;
void init_physicalMemoryDeviceTable();

extern const TableOid discreteMemoryTable_variables_oid;
extern Variables<5> discreteMemoryTable_variables;
FindVarMethod var_discreteMemoryTable;
void init_discreteMemoryTable();

extern const TableOid coolingUnitTable_variables_oid;
extern Variables<7> coolingUnitTable_variables;
FindVarMethod var_coolingUnitTable;
void init_coolingUnitTable();

extern const TableOid coolingDeviceTable_variables_oid;
extern Variables<15> coolingDeviceTable_variables;
FindVarMethod var_coolingDeviceTable;
void init_coolingDeviceTable();

extern const TableOid discreteCoolingDeviceTable_variables_oid;
extern Variables<6> discreteCoolingDeviceTable_variables;
FindVarMethod var_discreteCoolingDeviceTable;
void init_discreteCoolingDeviceTable();

extern const TableOid temperatureProbeTable_variables_oid;
extern Variables<15> temperatureProbeTable_variables;
FindVarMethod var_temperatureProbeTable;
void init_temperatureProbeTable();

extern const TableOid driveSlotPresenceSensorTable_variables_oid;
extern Variables<6> driveSlotPresenceSensorTable_variables;
FindVarMethod var_driveSlotPresenceSensorTable;
void init_driveSlotPresenceSensorTable();

extern const TableOid miscellaneousSensorTable_variables_oid;
extern Variables<5> miscellaneousSensorTable_variables;
FindVarMethod var_miscellaneousSensorTable;
void init_miscellaneousSensorTable();
