#include "results/viewer_pages.h"

#include "results/viewer_state.h"

namespace pvx {

std::vector<Viewer_Page> Offered_Pages(const Result_Layout& layout, bool moisture, bool cooling_data_ok) {
  std::vector<Viewer_Page> pages;
  for (const Viewer_Page& page : Viewer_Pages) {
    const bool offered =
        page.Variable == Cooling_Page ? cooling_data_ok : Variable_Offered(layout, moisture, page.Variable);
    if (offered) pages.push_back(page);
  }
  return pages;
}

}  // namespace pvx
