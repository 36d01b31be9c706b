// The values of options: each function gives what the text means or throws a `Stop` with `WrongUsage` that names the option.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/arguments.h"
#include "host/stop.h"

namespace host {

// A decimal number of 32 bits, not below `least`.
std::int32_t number_of(std::string_view option, std::string_view text, std::int32_t least);

// The words that `objectives_of` and `partial_credit_of` take.
std::vector<std::string_view> objective_names();
std::vector<std::string_view> partial_credit_names();

// The flags of the names between commas.
hedro34::HEDROTestImportObjectives objectives_of(std::string_view text);

// A state's abbreviation, at most two characters.
hedro34::String state_of(std::string_view text);

PartialCredit partial_credit_of(std::string_view text);

// The identifiers between commas, none of them empty and no two the same in any case of their letters.
std::vector<hedro34::String> versions_of(std::string_view text);

// Holds a form against the most choices that have a letter and the most fields and pages that a form can count.
void check_size(const FormCommand& form);

}  // namespace host
