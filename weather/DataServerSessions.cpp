// SPDX-License-Identifier: MIT
#include "weather/DataServerSessions.h"

#include "product/Addresses.h"
#include "product/Product.h"
#include "weather/RetiredAddresses.h"

namespace weather {

platform::URLSessionOptions sessionOptions() {
    platform::URLSessionOptions options;
    options.userAgent = product::userAgent;
    options.successor = successorOf;
    // The service asks each program to send at most 100 requests per minute.
    options.hostLimits = {
        {.host = std::string(product::addresses::dataServerHost), .perMinute = 100, .atOnce = 4}};
    return options;
}

} // namespace weather
