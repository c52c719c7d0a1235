// Feeds any text to the parser of service URLs: what it accepts stays a URL with our path behind
// it, and what it refuses comes with a clause.
#include "NetworkMonitor/PublicInfo/ServiceUrl.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto url = ServiceUrl::parse(text);
  if (!url) {
    if (!url.error().starts_with("the ")) std::abort();
    return 0;
  }
  const std::string told = url->endpointTelling("/json/", "?fields=isp");
  for (const std::string& endpoint : {url->endpoint("/json/", "?fields=isp"), told}) {
    if (std::ranges::any_of(endpoint, [](char c) { return c <= ' ' || c > '~'; })) std::abort();
    if (endpoint.size() > ServiceUrl::longestBytes) continue;
    const auto again = ServiceUrl::parse(endpoint);
    if (!again || again->endpoint("/other", "?other") != endpoint) std::abort();
  }
  if (!told.ends_with("fields=isp")) std::abort();
  return 0;
}
