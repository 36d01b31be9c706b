#include "host/suggestion.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

constexpr std::size_t longest = 40;  // of what can be close to any name

std::string folded(std::string_view word) {
  std::string result(word.substr(std::min(word.find_first_not_of('-'), word.size())));
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c == '_') c = '-';
  }
  return result;
}

// The fewest letters to change, insert, drop or swap with the next that make one word of the other. Neither is longer than
// `longest`.
std::size_t distance(std::string_view a, std::string_view b) {
  std::array<std::array<std::size_t, longest + 1>, longest + 1> cost{};
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t k = 0; k <= b.size(); ++k) {
      if (i == 0 || k == 0) {
        cost[i][k] = i + k;
        continue;
      }
      const std::size_t changed = cost[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1);
      cost[i][k] = std::min({cost[i - 1][k] + 1, cost[i][k - 1] + 1, changed});
      if (i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1]) {
        cost[i][k] = std::min(cost[i][k], cost[i - 2][k - 2] + 1);
      }
    }
  }
  return cost[a.size()][b.size()];
}

}  // namespace

std::string closest(std::string_view word, const std::vector<std::string>& names) {
  const std::string given = folded(word);
  if (given.empty() || given.size() > longest) return {};
  std::string best;
  std::size_t least = longest;
  for (const std::string& name : names) {
    const std::string expected = folded(name);
    if (expected.size() > longest) continue;
    const std::size_t wrong = distance(given, expected);
    if (wrong >= least || wrong > std::max(given.size(), expected.size()) / 3) continue;
    least = wrong;
    best = name;
  }
  return best;
}

}  // namespace host
