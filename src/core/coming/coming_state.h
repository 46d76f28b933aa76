#pragma once

#include <vector>

#include <QDateTime>

#include "coming/coming_lists.h"
#include "network/prefiles.h"

namespace sky::coming {

// What is known of VATSIM's coming traffic: its prefiled flights, controller bookings and events, and
// when the bookings and events were last had from their services (UTC; invalid: never).
struct ComingState {
    std::vector<network::Prefile> Prefiles;
    std::vector<Booking> Bookings;
    std::vector<Event> Events;
    QDateTime BookingsFetched;
    QDateTime EventsFetched;
    int PrefilesRevision = 0; // counts every change of the prefiles, so a search knows to index them again
};

} // namespace sky::coming
