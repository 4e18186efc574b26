// Solutions of any bytes: the reader gives a map or raises its exception, and what it gives can be asked and ordered.
#include "projects/SolutionMap.h"

#include <string_view>

#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "projects/BuildOrder.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::string scratch;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    const qx::SolutionMap map = qx::ReadSolutionMap(qx::DecodeText(bytes, scratch));
    std::vector<std::vector<std::size_t>> needs;
    for (const qx::MappedProject& project : map.projects) {
      for (const std::string& name : map.configurations) qx::FindMapping(project, name);
      needs.emplace_back();
      for (const std::string& need : project.needs) needs.back().push_back(need.size() % map.projects.size());
    }
    if (qx::OrderByNeeds(needs).order.size() != map.projects.size()) __builtin_trap();
    for (const std::string& name : map.configurations) {
      if (!name.empty() && qx::FindConfiguration(map, name).empty()) __builtin_trap();
    }
  } catch (const qx::Exception&) {
    // A refusal is an answer.
  }
  return 0;
}
