// What libZIOPQueues.so shows: the search for the printing system's queues.
#include "port_driver/SearchModule.h"
#include "port_driver/queue_search/QueueSearch.h"

void ZIOPSearch(const ZIOPSearchRequest* request, ZIOPFoundCallback found, void* context) noexcept {
  ZIOP::ServeSearch(*request, found, context, ZIOP::SearchQueues);
}
