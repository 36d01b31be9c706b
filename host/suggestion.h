// What a misspelt word of the command line may have been meant for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

// The name closest to the word, the first of several: one letter in three may be wrong, missing, too many or have changed places
// with the next; small and capital letters and dashes in front are no difference. Empty when none is that close.
std::string closest(std::string_view word, const std::vector<std::string>& names);

}  // namespace host
