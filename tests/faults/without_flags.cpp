// A host's code that was compiled without the flags of the library: its table of call sites does not list the fault.
#include "tests/faults/provoke.h"

namespace hedro34::testing {

void fault_without_the_flags() {
  const Counted counted;
  *null = 1;
  may_throw();  // so that there is a table
}

}  // namespace hedro34::testing
