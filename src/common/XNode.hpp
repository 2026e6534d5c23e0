#pragma once

#include <map>
#include <string>
#include <vector>

/// Kind of a node: a leaf holds values, a non-leaf the paths of its children.
enum _NODE_TYPE : int { NODE_LEAF = 0, NODE_NONLEAF = 1 };

/// Kind of a query, as failures report it.
enum _XCOMMAND : int { COMMAND_GET = 0, COMMAND_SET = 1, COMMAND_UNKNOWN = 2 };

/// One node of a query's result.
struct _XNode {
    int mType = NODE_LEAF;
    std::vector<std::string> mXNodeList;           ///< values of a leaf, child paths of a non-leaf, in script order
    std::map<std::string, std::string> mOptionMap; ///< options of a BIOS setting; empty elsewhere
    unsigned char bReadOnly = 0;
};

/// A query's answer: nodes by path without scheme, "/BMC/INFO/VERSION".
using ResultMap = std::map<std::string, _XNode>;
