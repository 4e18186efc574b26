#include "host/report/Reports.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::array kFormats{ReportFormat{"html", HtmlReport}, ReportFormat{"json", JsonReport},
                              ReportFormat{"junit", JunitReport}, ReportFormat{"sarif", SarifReport}};

}  // namespace

const ReportFormat* FindReportFormat(std::string_view name) {
  const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                  [name](const ReportFormat& format) { return format.name == name; });
  return found == kFormats.end() ? nullptr : &*found;
}

std::string ReportFormatNames() {
  std::vector<std::string_view> names;
  std::transform(kFormats.begin(), kFormats.end(), std::back_inserter(names),
                 [](const ReportFormat& format) { return format.name; });
  return Join(names, ", ");
}

}  // namespace qx
