#include "host/show.h"

#include "host/load.h"
#include "host/stop.h"

namespace host {

void show(const ShowCommand& command, Messages& messages) {
  const auto test = load_test(command.test, command.import, messages);
  print(command.json ? as_json(*test) : as_text(*test));
}

}  // namespace host
