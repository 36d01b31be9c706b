#include "hedro34/runtime/modStartup.h"

#include "hedro34/runtime/modvbCodeShieldSupport.h"

namespace hedro34 {

void Main() noexcept { InstallExceptionFilter(); }

}  // namespace hedro34
