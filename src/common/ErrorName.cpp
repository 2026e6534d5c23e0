#include "common/ErrorName.hpp"

namespace common {

namespace {

constexpr ErrorRow rows[] = {
#define HW_ERROR(name, code, text) {name, #name, text, false},
#define HW_THROWN(name, code, text) {name, #name, text, true},
#include "common/Errors.def"
#undef HW_ERROR
#undef HW_THROWN
};

} // namespace

std::span<const ErrorRow> errorRows()
{
    return rows;
}

} // namespace common
