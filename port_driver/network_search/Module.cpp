// What libZIOPNetwork.so shows: the search on the network.
#include "port_driver/SearchModule.h"
#include "port_driver/network_search/NetworkSearch.h"

void ZIOPSearch(const ZIOPSearchRequest* request, ZIOPFoundCallback found, void* context) noexcept {
  ZIOP::ServeSearch(*request, found, context, ZIOP::SearchNetwork);
}
