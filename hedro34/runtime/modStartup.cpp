#include "hedro34/runtime/modStartup.h"

#include <exception>

#include "hedro34/platform/file_error.h"
#include "hedro34/runtime/basError.h"
#include "hedro34/runtime/modvbCodeShieldSupport.h"

namespace hedro34 {

void Main() noexcept {
  static_cast<void>(std::uncaught_exceptions());  // the language's own data of the thread come into being here
  prepare_thread_for_reports();
  prepare_thread_for_file_errors();
  InstallExceptionFilter();
}

}  // namespace hedro34
