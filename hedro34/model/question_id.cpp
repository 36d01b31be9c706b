#include "hedro34/model/question_id.h"

namespace hedro34 {

namespace {
constinit thread_local std::uint64_t changes_of_thread = 0;
}

std::uint64_t QuestionId::changes() noexcept { return changes_of_thread; }

void QuestionId::count_change() noexcept { ++changes_of_thread; }

}  // namespace hedro34
