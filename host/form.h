// The command `form`: writes a new form template.
#pragma once

#include "host/arguments.h"

namespace host {

// Throws a `Stop` when the form cannot be written.
void form(const FormCommand& command);

}  // namespace host
