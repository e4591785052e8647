// The resource of the contract test in the native build; contract.rc holds the same.
#include "win32_double/control.h"

namespace {

const bool registered = [] {
    win32_double_register_resource(nullptr, "contract_raw", 101, "Contract", 8);
    return true;
}();

}  // namespace
